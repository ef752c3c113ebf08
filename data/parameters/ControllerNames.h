// What a modulation track can drive: 128 controllers, then aftertouch and program change.
#pragma once

#include <array>
#include <span>
#include <string_view>

namespace ormund {

constexpr int kModTargets = 130;
constexpr int kTargetAftertouch = 128;
constexpr int kTargetProgramChange = 129;

std::string_view controllerName(int target); // empty outside 0 to 129
std::span<const std::string_view> controllerNames();

// The menu is split into 13 sub-menus.
constexpr int kControllerMenus = 13;
struct ControllerMenu {
    std::string_view title;
    int first; // target numbers, both inclusive
    int last;
};
extern const std::array<ControllerMenu, kControllerMenus> kControllerMenuTable;

} // namespace ormund
