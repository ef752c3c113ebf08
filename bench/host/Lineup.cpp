#include "bench/host/Lineup.h"

namespace ormund {

namespace {
std::function<std::unique_ptr<Instrument>()> vst2(const char* path)
{
    return [path] { return loadVst2(path); };
}
std::function<std::unique_ptr<Instrument>()> lv2(const char* uri)
{
    return [uri] { return loadLv2(uri); };
}
} // namespace

std::vector<Entrant> lineup(const std::string& module)
{
    const auto ours = [module](bool withSynth) {
        return [module, state = busyState(withSynth)] { return loadVst2(module, state); };
    };
    return {
        {"Floor", "the samples of eight voices and the delay, by hand", Role::Floor, 8, false,
            makeFloor},
        {"Floor's filters", "eight of our filters alone, each sample after the one before",
            Role::Floor, 8, false, makeFilters},
        {"Ormund, all", "sequencer; 2 saws, 2 pulses, 5-pole filter, 2 envelopes a voice; delay",
            Role::Whole, 8, false, ours(true)},
        {"Ormund, sequencer alone", "12 lanes, chords, 8 modulation tracks, swing, song",
            Role::Sequencer, 0, false, ours(false)},
        // Debian's packages follow.
        {"amsynth", "2 oscillators, 4-pole filter, LFO a voice; drive, reverb", Role::Synth, 8,
            true, vst2("/usr/lib/vst/amsynth_vst.so")},
        {"synthv1", "2 x 2 oscillators, 2 filters, 2 LFOs a voice; effects", Role::Synth, 8, true,
            lv2("http://synthv1.sourceforge.net/lv2")},
        {"mda JX10", "2 oscillators, 2-pole filter a voice", Role::Synth, 8, true,
            lv2("http://drobilla.net/plugins/mda/JX10")},
        {"Calf Monosynth", "2 oscillators, 2 filters; one voice", Role::Synth, 1, true,
            lv2("http://calf.sourceforge.net/plugins/Monosynth")},
        {"Calf Wavetable", "2 wavetable oscillators, filter a voice", Role::Synth, 8, true,
            lv2("http://calf.sourceforge.net/plugins/Wavetable")},
        {"ZynAddSubFX", "1 of 8 additive voices a part, no filter in this sound", Role::OtherSynth,
            8, true, vst2("/usr/lib/vst/ZynAddSubFX.so")},
        {"mda DX10", "2 sine operators a voice, no filter", Role::OtherSynth, 8, true,
            lv2("http://drobilla.net/plugins/mda/DX10")},
        {"Calf Organ", "9 drawbars, percussion a voice; vibrato, filters", Role::OtherSynth, 8,
            true, lv2("http://calf.sourceforge.net/plugins/Organ")},
        {"x42 stepseq", "8 notes, 8 steps", Role::Sequencer, 0, false,
            lv2("http://gareus.org/oss/lv2/stepseq#s8n8")},
        {"qmidiarp seq", "1 step row", Role::Sequencer, 0, false,
            lv2("https://git.code.sf.net/p/qmidiarp/seq")},
        {"qmidiarp arp", "1 arpeggio over held notes", Role::Sequencer, 0, true,
            lv2("https://git.code.sf.net/p/qmidiarp/arp")},
    };
}

} // namespace ormund
