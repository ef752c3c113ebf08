// Where things are in the preset browser, in panel pixels.
#pragma once

#include "view/Geometry.h"

namespace ormund::browser {

inline constexpr int kHeadEnd = 46; // of the panel, which stays clear
inline constexpr CRect kSheet{60, 50, 941, 686};
inline constexpr CRect kSearch{212, 58, 716, 82};
inline constexpr CRect kSearchCross{696, 62, 712, 78};
inline constexpr CRect kTags{212, 89, 716, 106};
inline constexpr CRect kClearTags{650, 89, 716, 106};
inline constexpr CRect kHeadRow{212, 114, 716, 134};
inline constexpr CRect kList{212, 134, 716, 642};
inline constexpr CRect kChosen{724, 89, 933, 642};
inline constexpr CRect kFooter{60, 650, 941, 686};
inline constexpr int kShelfLeft = 68;
inline constexpr int kShelfRight = 204;
inline constexpr int kShelfTop = 89;
inline constexpr int kShelfStep = 21;
inline constexpr int kShelfHeight = 20;
inline constexpr int kRow = 22;
inline constexpr int kGroup = 18;

// Columns of the list.
inline constexpr int kMarkColumn = 220;
inline constexpr int kNameColumn = 238;
inline constexpr int kFolderColumn = 406;
inline constexpr int kAuthorColumn = 492;
inline constexpr int kTempoRight = 598;
inline constexpr int kSketchColumn = 608;
inline constexpr int kStarColumn = 684;
inline constexpr int kStarEnd = 708;

} // namespace ormund::browser
