#pragma once

#include "view/DrawnScales.h"

namespace ormund {

struct Desktop;

// The sizes that the panel is offered in, device pixels to a panel pixel.
inline constexpr auto& kPanelScales = kDrawnScales;

// The place of the largest of them that is not above `scale`; 0 when all are.
int panelScaleIndex(double scale);
// The largest of them up to `wanted` at which the panel fits on the desktop's screen, window frame
// included; the smallest when none does.
double fittingPanelScale(double wanted, const Desktop& desktop);

} // namespace ormund
