// The base of our plug-ins. It adds nothing to the interface; it is the one place where all of
// them could get something in common.
#pragma once

#include "host/effect/AudioEffectX.h"

namespace ormund {

class KWPluginBase : public AudioEffectX {
public:
    using AudioEffectX::AudioEffectX;
};

} // namespace ormund
