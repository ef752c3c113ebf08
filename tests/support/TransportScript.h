// Seeded performances of a host's transport, and the ways in which hosts report one. For tests.
#pragma once

#include "tests/support/StepModel.h"

#include <random>

namespace ormund {

// How a host reports where it stands.
enum class Reports {
    Exactly,
    LateReturn,   // for one block more beyond the end of a loop
    WholeSamples, // rounded
    CutSamples,   // the whole sample before
    Jitter,       // off by up to a microsecond
    StepsBack,    // now and then by less than a tick
    kKinds,
};

// What a host would report of one block.
struct ReportedBlock {
    int frames = 0;
    bool playing = false;
    double place = 0; // quarter notes
    double tempo = 120;
    bool loopOn = false;
    double loopStart = 0;
    double loopEnd = 0;
};

// What a host cannot do.
struct TransportLimits {
    double onlyRate = 0; // Hz; 0: any
    bool reportsLoops = true;
};

class TransportScript {
public:
    // The same seed gives the same performance: starts and stops, locates near and far, changes of
    // tempo, loops, count-ins, all at block sizes of any kind.
    explicit TransportScript(unsigned seed, TransportLimits limits = {});

    const StepModel& model() const { return song; }
    int speedIndex() const { return speed; }
    Reports reports() const { return kind; }
    // Samples by which a step may be off: places that are wrong may bring it a tick nearer or
    // later.
    int64_t tolerance() const;
    // Fixed when `size` is given; else of the script's own choice.
    std::vector<ReportedBlock> blocks(int size = 0);

private:
    double drawn(double from, double to)
    {
        return std::uniform_real_distribution<double>(from, to)(random);
    }
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random); }
    double drawnTempo();
    double drawnPlace(double tempo);
    void write();
    void addLocate(PlayedStretch& stretch);
    double reported(const PlayedStretch& stretch, int64_t at, int64_t frames);

    std::mt19937 random;
    TransportLimits limits;
    int speed;
    Reports kind;
    int blockSize; // 0: of changing size
    StepModel song;
};

} // namespace ormund
