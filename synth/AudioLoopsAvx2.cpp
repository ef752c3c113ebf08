// Compiled with AVX2 switched on, and reached only on a processor that has it.
#if defined(ORMUND_AVX2_LOOPS)
#include "synth/AudioLoopsImpl.h"

namespace ormund {

const AudioLoops kAvx2Loops = {runVoices, runDelay};

} // namespace ormund
#endif
