// The panel's colours and measures for what a control draws by itself. The colours are those of the
// palette in the form that views take.
#pragma once

#include "panel/Hues.h"
#include "panel/Palette.h"
#include "view/Geometry.h"

namespace ormund {

namespace look {

constexpr CColor colourOf(const Ink& colour)
{
    const auto part = [](double share) { return static_cast<int>(share * 255 + 0.5); };
    return {part(colour.red), part(colour.green), part(colour.blue), part(colour.alpha)};
}

inline constexpr CColor kHead = colourOf(palette::kHead);
inline constexpr CColor kPanel = colourOf(palette::kPanel);
inline constexpr CColor kWell = colourOf(palette::kWell);
inline constexpr CColor kWellGroup = colourOf(palette::kWellGroup);
inline constexpr CColor kHairline = colourOf(palette::kHairline);
inline constexpr CColor kRaised = colourOf(palette::kBody);
inline constexpr CColor kRaisedFrame = colourOf(palette::kBodyFrame);
inline constexpr CColor kRaisedHover = colourOf(palette::kBodyHover);
inline constexpr CColor kFrameHover = colourOf(palette::kFrameHover);
inline constexpr CColor kPressed = colourOf(palette::kBodyPressed);
inline constexpr CColor kText = colourOf(palette::kText);
inline constexpr CColor kTextRaised = colourOf(palette::kBodyText);
inline constexpr CColor kTextDim = colourOf(palette::kLabel);
inline constexpr CColor kTextDisabled = colourOf(palette::kDisabled);
inline constexpr CColor kInk = colourOf(palette::kDarkInk);
inline constexpr CColor kPitch = colourOf(palette::kPitch);
inline constexpr CColor kVelocity = colourOf(palette::kVelocity);
inline constexpr CColor kGate = colourOf(palette::kGate);
inline constexpr CColor kPerformance = colourOf(palette::kPerformance);
inline constexpr CColor kModulation = colourOf(palette::kModulation);
inline constexpr CColor kNeutral = colourOf(palette::kNeutral);
inline constexpr CColor kMenu = colourOf(palette::kMenu);
inline constexpr CColor kMenuFrame = colourOf(palette::kMenuFrame);
inline constexpr CColor kOutsideDash = colourOf(palette::kLoopRest);

constexpr CColor colourOf(Hue hue)
{
    constexpr CColor kHues[] = {kNeutral, kPitch, kVelocity, kGate, kPerformance, kModulation};
    return kHues[size_t(hue)];
}

inline constexpr int kValueSize = 11;      // of values and menu rows; labels have 9
inline constexpr int kPresetNameSize = 13; // and Semi Bold
inline constexpr int kMenuRow = 16;
inline constexpr int kMenuShadow = 3; // pixels down, at 35 %
inline constexpr int kMenuShadowAlpha = 89;

} // namespace look

} // namespace ormund
