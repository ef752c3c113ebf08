#include "synth/AudioLoopsImpl.h"

namespace ormund {

const AudioLoops kBaselineLoops = {runVoices, runDelay};

} // namespace ormund
