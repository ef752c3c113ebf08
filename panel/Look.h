// The panel's colours and measures for whatever a control draws by itself.
#pragma once

#include "view/Geometry.h"

namespace ormund {

namespace look {

inline constexpr CColor kHead = CColor::hex(0x191C20);
inline constexpr CColor kPanel = CColor::hex(0x1F2329);
inline constexpr CColor kWell = CColor::hex(0x121417);
inline constexpr CColor kWellGroup = CColor::hex(0x191C20);
inline constexpr CColor kHairline = CColor::hex(0x2E343C);
inline constexpr CColor kRaised = CColor::hex(0x2A2F37);
inline constexpr CColor kRaisedFrame = CColor::hex(0x3A414B);
inline constexpr CColor kRaisedHover = CColor::hex(0x363D47);
inline constexpr CColor kFrameHover = CColor::hex(0x59626E);
inline constexpr CColor kPressed = CColor::hex(0x15181B);
inline constexpr CColor kText = CColor::hex(0xE6E8EB);
inline constexpr CColor kTextRaised = CColor::hex(0xB4BAC3);
inline constexpr CColor kTextDim = CColor::hex(0x8A929C);
inline constexpr CColor kTextDisabled = CColor::hex(0x4A515B);
inline constexpr CColor kInk = CColor::hex(0x121417);
inline constexpr CColor kPitch = CColor::hex(0xF2A541);
inline constexpr CColor kVelocity = CColor::hex(0xE4572E);
inline constexpr CColor kGate = CColor::hex(0x4EA5D9);
inline constexpr CColor kPerformance = CColor::hex(0x9B7EDE);
inline constexpr CColor kModulation = CColor::hex(0x3BB58F);
inline constexpr CColor kNeutral = CColor::hex(0xB7BEC9);
inline constexpr CColor kMenu = CColor::hex(0x262B32);
inline constexpr CColor kMenuFrame = CColor::hex(0x454D58);
inline constexpr CColor kOutsideDash = CColor::hex(0x333A43);

inline constexpr int kValueSize = 11;      // of values and menu rows; labels have 9
inline constexpr int kPresetNameSize = 13; // and Semi Bold
inline constexpr int kMenuRow = 16;
inline constexpr int kMenuShadow = 3; // pixels down, at 35 %
inline constexpr int kMenuShadowAlpha = 89;

} // namespace look

} // namespace ormund
