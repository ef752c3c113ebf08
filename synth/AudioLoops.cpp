#include "synth/AudioLoops.h"

namespace ormund {

const AudioLoops& fastestLoops()
{
#if defined(ORMUND_AVX2_LOOPS)
    if (__builtin_cpu_supports("avx2"))
        return kAvx2Loops;
#endif
    return kBaselineLoops;
}

} // namespace ormund
