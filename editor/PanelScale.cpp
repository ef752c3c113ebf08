#include "editor/PanelScale.h"

#include "panel/ControlCatalogue.h"
#include "view/FrameWindow.h"

namespace ormund {

namespace {

constexpr int kTitleBar = 28;       // what the window's frame takes at the least
constexpr double kTolerance = 0.01; // scales come from decimal settings

} // namespace

int panelScaleIndex(double scale)
{
    int index = 0;
    for (int i = 0; i < int(kPanelScales.size()); ++i)
        if (kPanelScales[size_t(i)] <= scale + kTolerance)
            index = i;
    return index;
}

double fittingPanelScale(double wanted, const Desktop& desktop)
{
    int index = panelScaleIndex(wanted);
    const auto fits = [&](double scale) {
        return desktop.width == 0
            || (kPanelWidth * scale <= desktop.width
                && kPanelHeight * scale + kTitleBar <= desktop.height);
    };
    while (index > 0 && !fits(kPanelScales[size_t(index)]))
        --index;
    return kPanelScales[size_t(index)];
}

} // namespace ormund
