// What the editor does with files, learning and settings, through the effect interface alone, so
// that tests and the offline renderer need no window.
#pragma once

#include "host/effect/EffectTypes.h"
#include "host/plugin/PluginLibrary.h"

namespace ormund {

// One command: its code, and what the code needs. 0 where it cannot be done.
VstIntPtr runScript(
    Sequencer& sequencer, PluginLibrary& library, VstIntPtr code, void* ptr, float opt);

} // namespace ormund
