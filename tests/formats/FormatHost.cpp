#include "tests/formats/FormatHost.h"

#include <algorithm>

namespace ormund {

void FormatHost::play(int64_t frames, int block, double loopEnd)
{
    while (frames > 0) {
        const int count = static_cast<int>(std::min<int64_t>(frames, block));
        runBlock(count);
        pending.clear();
        left.insert(left.end(), leftBlock, leftBlock + count);
        right.insert(right.end(), rightBlock, rightBlock + count);
        frame += count;
        frames -= count;
        if (playing)
            beat += count / kRate * tempo / 60.0;
        if (beat > loopEnd - 1e-6)
            beat -= loopEnd;
    }
}

void FormatHost::play(const ReportedBlock& block)
{
    playing = block.playing;
    beat = block.place;
    tempo = block.tempo;
    loopFrom = block.loopOn ? block.loopStart : 0;
    loopTo = block.loopOn ? block.loopEnd : 0;
    runBlock(block.frames);
    pending.clear();
    frame += block.frames;
}

void FormatHost::playLoop(int64_t frames, int block)
{
    while (frames > 0) {
        const int count = static_cast<int>(std::min<int64_t>(frames, block));
        play(count, block);
        frames -= count;
        if (beat >= loopTo - 1e-9)
            beat += loopFrom - loopTo;
    }
}

std::string FormatHost::onlyChunk(const std::string& text)
{
    std::string bytes;
    for (const std::string& word : {std::string("__dpf_state_begin__"), std::string("chunk"), text,
             std::string("__dpf_state_end__")})
        bytes += word + '\0';
    bytes += '\xfe';
    bytes += '\0';
    return bytes;
}

} // namespace ormund
