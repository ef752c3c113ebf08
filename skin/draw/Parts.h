// Parts that several families of drawings share.
#pragma once

#include "skin/draw/Drawings.h"

#include <string>

namespace ormund {

inline constexpr double kFieldRadius = 2.5;
inline constexpr double kPadRadius = 4;

// A well with its hairline over the whole rectangle.
void well(Paint& paint, double x, double y, double width, double height,
    double radius = kFieldRadius, const Ink& frame = palette::kHairline);
// A raised body by its look: lighter under the mouse, dark when pressed.
void raised(Paint& paint, double x, double y, double width, double height, Look look,
    double radius = kFieldRadius);
// A body filled with its hue, lighter under the mouse.
void lit(Paint& paint, double x, double y, double width, double height, const Ink& hue, Look look,
    double radius = kFieldRadius);
// The colour of words and icons on a raised body.
Ink contentInk(Look look, const Ink& hue = palette::kText);
// 1 while pressed: what stands on a body goes down with it.
constexpr double pressShift(Look look) { return look == Look::Pressed ? 1 : 0; }
// The number with a real minus and a sign in front of positive ones.
std::string signedNumber(int value);

} // namespace ormund
