// Pictures to look at while drawing: all strips on one sheet, and the panel with its controls.
#pragma once

#include "skin/draw/Strip.h"

namespace ormund {

std::unique_ptr<Image> contactSheet(double scale);
enum class Page { Settings, Synth };
std::unique_ptr<Image> panelPicture(double scale, Page page);

} // namespace ormund
