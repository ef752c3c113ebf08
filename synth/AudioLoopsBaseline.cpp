#include "synth/AudioLoopsImpl.h"

const AudioLoops kBaselineLoops = {runVoices, runDelay};
