// A check at compile time that a struct which two threads share has no plain field, which one of
// them could find half written.
#pragma once

#include "base/Crossing.h"

namespace ormund {

namespace only_crossings {
// Becomes any Crossing and nothing else.
struct Value {
    template <typename T>
    operator Crossing<T>() const; // NOLINT
};
} // namespace only_crossings

// Whether every field of the aggregate `S`, in arrays and structs inside it as well, is a Crossing:
// as many values as it has fields fit, and then nothing more does.
template <typename S, typename... Values>
consteval bool onlyCrossings()
{
    if constexpr (requires { S{Values{}..., only_crossings::Value{}}; })
        return onlyCrossings<S, Values..., only_crossings::Value>();
    else
        return sizeof...(Values) > 0 && !requires { S{Values{}..., {}}; };
}

} // namespace ormund
