#include "apps/ormund/PlayLink.h"

#include <algorithm>

namespace ormund {

namespace {
constexpr int kCalmIdles = 8; // some 130 ms: longer than a block of any device
}

PlayLink::Wish PlayLink::look(const Seen& seen)
{
    if (seen.transportRolls != rolled) {
        rolled = seen.transportRolls;
        calm = 0;
    }
    calm = std::min(calm + 1, kCalmIdles);
    if (!seen.followsTransport || calm < kCalmIdles || seen.panelPlays == seen.transportRolls)
        return Wish::Nothing;
    calm = 0;
    return seen.panelPlays ? Wish::Start : Wish::Stop;
}

} // namespace ormund
