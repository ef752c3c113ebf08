#include "data/music/BendShapes.h"

#include <algorithm>
#include <array>

namespace ormund {

namespace {

// 1 is a whole tone of our own synth, so 0.5 is a semitone.
struct Node {
    int point; // 0 to 31
    float value;
};

enum class Motion {
    Glide, // soft curves from node to node
    Hold,  // each node until the next
};

constexpr int kMaxNodes = 10;

struct Shape {
    std::string_view name;
    Motion motion;
    int nodes;
    std::array<Node, kMaxNodes> path;
};

// clang-format off
constexpr std::array<Shape, kBendShapes> kShapes = {{
    {"Scoop",            Motion::Glide, 3, {{{0, -1.0f}, {10, 0}, {31, 0}}}},
    {"Small scoop",      Motion::Glide, 3, {{{0, -0.5f}, {6, 0}, {31, 0}}}},
    {"Drop in",          Motion::Glide, 3, {{{0, 1.0f}, {8, 0}, {31, 0}}}},
    {"Fall",             Motion::Glide, 3, {{{0, 0}, {14, 0}, {31, -1.0f}}}},
    {"Small fall",       Motion::Glide, 3, {{{0, 0}, {18, 0}, {31, -0.5f}}}},
    {"Doit",             Motion::Glide, 3, {{{0, 0}, {18, 0}, {31, 1.0f}}}},
    {"Slow rise",        Motion::Glide, 2, {{{0, 0}, {31, 1.0f}}}},
    {"Slow dive",        Motion::Glide, 2, {{{0, 0}, {31, -1.0f}}}},
    {"Bend and release", Motion::Glide, 4, {{{0, 0}, {10, 1.0f}, {20, 1.0f}, {31, 0}}}},
    {"Prebend release",  Motion::Glide, 3, {{{0, 1.0f}, {12, 1.0f}, {24, 0}}}},
    {"Dip",              Motion::Glide, 4, {{{0, 0}, {6, -0.5f}, {12, 0}, {31, 0}}}},
    {"Turn",             Motion::Glide, 5, {{{0, 0}, {6, 0.5f}, {14, -0.5f}, {22, 0}, {31, 0}}}},
    {"Tone up",          Motion::Hold,  2, {{{0, 0}, {16, 1.0f}}}},
    {"Semitone up",      Motion::Hold,  2, {{{0, 0}, {16, 0.5f}}}},
    {"Semitone down",    Motion::Hold,  2, {{{0, 0}, {16, -0.5f}}}},
    {"Trill",            Motion::Hold,  8, {{{0, 0}, {4, 0.5f}, {8, 0}, {12, 0.5f}, {16, 0}, {20, 0.5f}, {24, 0}, {28, 0.5f}}}},
    {"Mordent",          Motion::Hold,  3, {{{0, 0}, {4, -0.5f}, {8, 0}}}},
    {"Stairs",           Motion::Hold,  4, {{{0, -1.0f}, {8, -0.5f}, {16, 0.5f}, {24, 1.0f}}}},
    {"Vibrato",          Motion::Glide, 9, {{{0, 0}, {4, 0.12f}, {8, -0.12f}, {12, 0.12f}, {16, -0.12f}, {20, 0.12f}, {24, -0.12f}, {28, 0.12f}, {31, 0}}}},
    {"Late vibrato",     Motion::Glide, 7, {{{0, 0}, {14, 0}, {18, 0.2f}, {22, -0.2f}, {26, 0.25f}, {30, -0.2f}, {31, 0}}}},
}};
// clang-format on

constexpr float valueAt(const Shape& shape, int point)
{
    int node = 0;
    while (node + 1 < shape.nodes && shape.path[static_cast<size_t>(node + 1)].point <= point)
        ++node;
    const Node& here = shape.path[static_cast<size_t>(node)];
    if (shape.motion == Motion::Hold || node + 1 == shape.nodes)
        return here.value;
    const Node& next = shape.path[static_cast<size_t>(node + 1)];
    const float t =
        static_cast<float>(point - here.point) / static_cast<float>(next.point - here.point);
    return here.value + (next.value - here.value) * (t * t * (3.0f - 2.0f * t));
}

constexpr auto kPoints = [] {
    std::array<std::array<float, kBendPoints>, kBendShapes> points{};
    for (size_t shape = 0; shape < points.size(); ++shape)
        for (size_t point = 0; point < points[shape].size(); ++point)
            points[shape][point] = valueAt(kShapes[shape], static_cast<int>(point));
    return points;
}();

size_t shapeAt(int shape) { return static_cast<size_t>(std::clamp(shape, 0, kBendShapes - 1)); }

} // namespace

float bendShapePoint(int shape, int point)
{
    return kPoints[shapeAt(shape)][static_cast<size_t>(std::clamp(point, 0, kBendPoints - 1))];
}

std::span<const float> bendShape(int shape) { return kPoints[shapeAt(shape)]; }
std::string_view bendShapeName(int shape) { return kShapes[shapeAt(shape)].name; }

} // namespace ormund
