// The shapes of the pitch bend line.
#pragma once

#include <span>
#include <string_view>

namespace ormund {

constexpr int kBendShapes = 20;
constexpr int kBendPoints = 32;

// -1 to 1, full range of a bend. `shape` and `point` are clamped to the table.
float bendShapePoint(int shape, int point);
std::span<const float> bendShape(int shape); // 32 points
std::string_view bendShapeName(int shape);

} // namespace ormund
