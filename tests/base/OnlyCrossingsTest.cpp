// Compiled or not: the check that guards every struct of settings must itself see a plain field.

#include "base/OnlyCrossings.h"

#include <array>

namespace ormund {

namespace {
struct Guarded {
    Crossing<int> one = 1;
    Crossing<float> other = 2.0f;
    std::array<Crossing<int>, 3> three{};
};
struct GuardedInside {
    Guarded first;
    Crossing<double> between = 0.0;
    Guarded last;
};
static_assert(onlyCrossings<Guarded>() && onlyCrossings<GuardedInside>());

struct PlainFirst {
    float plain = 0;
    Crossing<int> other = 1;
};
struct PlainBetween {
    Crossing<int> first = 1;
    bool plain = false;
    Crossing<int> last = 1;
};
struct PlainInside {
    Guarded first;
    PlainBetween between;
    Guarded last;
};
struct PlainArrayLast {
    Guarded first;
    std::array<int, 3> plain{};
};
static_assert(!onlyCrossings<PlainFirst>() && !onlyCrossings<PlainBetween>());
static_assert(!onlyCrossings<PlainInside>() && !onlyCrossings<PlainArrayLast>());
} // namespace

} // namespace ormund
