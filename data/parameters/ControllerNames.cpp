#include "data/parameters/ControllerNames.h"

namespace ormund {

namespace {

// Deliberate: small letters and the odd spellings are how the menus have always read.
// clang-format off
constexpr std::array<std::string_view, kModTargets> kNames = {
    /*   0 */ "Banksel", "Modulation", "Breath", "Ctrl3", "Foot", "Portamento", "Dataentry", "Volume", "Balance", "Ctrl9",
    /*  10 */ "pan", "Expression", "Genpurp 1", "Genpurp 2", "Genpurp 3", "Genpurp 4", "Ctrl 16", "Ctrl 17", "Ctrl 18", "Ctrl 19",
    /*  20 */ "Ctrl 20", "ctrl 21", "Ctrl 22", "Ctrl 23", "Ctrl 24", "Ctrl 25", "Ctrl 26", "Ctrl 27", "Ctrl 28", "Ctrl 29",
    /*  30 */ "Ctrl 30", "ctrl 31", "Banksel LSB", "Modulation LSB", "Breath LSB", "Foot LSB", "Portamento LSB", "Dataentry LSB", "Volume LSB", "Balance LSB",
    /*  40 */ "Ctrl 40", "pan LSB", "Expression LSB", "Ctrl 43", "Ctrl 44", "Ctrl 45", "Ctrl 46", "Ctrl 47", "Ctrl 48", "Ctrl 49",
    /*  50 */ "Ctrl 50", "ctrl 51", "Ctrl 52", "Ctrl 53", "Ctrl 54", "Ctrl 55", "Ctrl 56", "Ctrl 57", "Ctrl 58", "Ctrl 59",
    /*  60 */ "Ctrl 60", "Ctrl 61", "Ctrl 62", "Ctrl 63", "Sustain", "PortaOnOff", "Sostenuto", "Soft", "Legato", "Hold",
    /*  70 */ "Soundvar", "harmonique", "Release", "Attack", "Cutoff", "Ctrl 75", "Ctrl 76", "Ctrl 77", "Ctrl 78", "Ctrl 79",
    /*  80 */ "Genpurp 5", "genpurp 6", "Genpurp 7", "Genpurp 8", "Portactrl", "Ctrl 85", "Ctrl 86", "Ctrl 87", "Ctrl 88", "Ctrl 89",
    /*  90 */ "Ctrl 90", "extFx1 Depth", "ExtFx2 Depth", "ExtFx3 Depth", "ExtFx4 Depth", "ExtFx5 Depth", "Datainc", "Datadec", "Nrpn LSB", "Nrpn MSB",
    /* 100 */ "Rpn LSB", "rpn MSB", "Ctrl 102", "Ctrl 103", "Ctrl 104", "Ctrl 105", "Ctrl 106", "Ctrl 107", "Ctrl 108", "Ctrl 109",
    /* 110 */ "Ctrl 110", "ctrl 111", "Ctrl 112", "Ctrl 113", "Ctrl 114", "Ctrl 115", "Ctrl 116", "Ctrl 117", "Ctrl 118", "Ctrl 119",
    /* 120 */ "All snd off", "reset ctrl", "Localctrl", "All note off", "Omni ON", "Omni OFF", "Mono ON", "Poly ON", "aftertouch", "program change",
};
// clang-format on

} // namespace

std::string_view controllerName(int target)
{
    return target < 0 || target >= kModTargets ? std::string_view{}
                                               : kNames[static_cast<size_t>(target)];
}

std::span<const std::string_view> controllerNames() { return kNames; }

// Eleven in the first, so that the others begin where their titles say.
const std::array<ControllerMenu, kControllerMenus> kControllerMenuTable = {{
    {"Controllers 1-10 ", 0, 10},
    {"Controllers 11-20", 11, 20},
    {"Controllers 21-30", 21, 30},
    {"Controllers 31-40", 31, 40},
    {"Controllers 41-50", 41, 50},
    {"Controllers 51-60", 51, 60},
    {"Controllers 61-70", 61, 70},
    {"Controllers 71-80", 71, 80},
    {"Controllers 81-90", 81, 90},
    {"Controllers 91-100", 91, 100},
    {"Controllers 101-110", 101, 110},
    {"Controllers 111-120", 111, 120},
    {"Controllers 121-129", 121, 129},
}};

} // namespace ormund
