// The presets that MIDI program changes choose, ready for the audio thread.
#pragma once

#include "data/state/StateParts.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ormund {

class KWChunk;

// Checked and decoded beforehand. A change of program then only copies
// values: it allocates nothing and takes a bounded time.
class ProgramBank {
public:
    static constexpr int kPrograms = 128; // what a MIDI message can name

    ProgramBank();
    ~ProgramBank();
    ProgramBank(const ProgramBank&) = delete;
    ProgramBank& operator=(const ProgramBank&) = delete;

    // The loader's thread. `read` fills the chunk of a program from 0 on, or gives false; a program
    // that cannot be read keeps its number and does nothing.
    void rebuild(size_t count, const std::function<bool(size_t program, KWChunk& chunk)>& read);
    struct Chosen {
        size_t program = 0;
        std::string synthName; // of the synth preset that it was made with
        KeptRecords kept;      // what the file holds and this program does not know
    };
    // The last program taken since the last call. The loader's thread.
    std::optional<Chosen> takeChosen();
    int size() const; // the loader's thread

    // The audio thread. False when there is no such program.
    bool apply(int program, StateParts& parts);

private:
    struct Program;
    struct Bank;
    std::unique_ptr<Bank> owned;
    std::atomic<const Bank*> current{nullptr};
    OneWayFlag inUse;
    Mailbox chosen;
};

} // namespace ormund
