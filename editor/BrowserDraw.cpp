// How the preset browser looks.
#include "editor/Browser.h"

#include "editor/BrowserPlaces.h"
#include "panel/Look.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

namespace ormund {

using namespace browser;

namespace {

constexpr int kTextSize = 11;
constexpr int kLabelSize = 9;
constexpr double kLabelTracking = 0.9;
constexpr int kDim = 168; // of 255: the panel under the sheet
constexpr CColor kCellLine = look::colourOf(palette::kCellLine);
constexpr CColor kPanelEdge = look::colourOf(palette::kPanelEdge);
constexpr CColor kDash = look::colourOf(palette::kDash);

void useText(
    CDrawContext* context, const CColor& colour, int face = kNormalFace, int size = kTextSize)
{
    context->setFont(nullptr, size, face);
    context->setFontColor(colour);
}

void drawLabel(
    CDrawContext* context, const char* text, const CRect& place, CHoriTxtAlign align = kLeftText)
{
    useText(context, look::kTextDim, kNormalFace, kLabelSize);
    context->setTracking(kLabelTracking);
    context->drawString(text, place, false, align);
    context->setTracking(0);
}

// As much of the text as fits, and an ellipsis.
std::string cut(CDrawContext* context, std::string text, int width)
{
    if (context->getStringWidth(text) <= width)
        return text;
    constexpr char kEllipsis[] = "\xE2\x80\xA6";
    while (!text.empty() && context->getStringWidth(text + kEllipsis) > width) {
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80)
            text.pop_back();
        if (!text.empty())
            text.pop_back();
    }
    return text + kEllipsis;
}

std::vector<std::string> wrapped(CDrawContext* context, const std::string& text, int width)
{
    std::istringstream stream(text);
    std::vector<std::string> lines;
    std::string line;
    for (std::string word; stream >> word;) {
        const std::string longer = line.empty() ? word : line + ' ' + word;
        if (!line.empty() && context->getStringWidth(longer) > width) {
            lines.push_back(line);
            line = word;
        } else {
            line = longer;
        }
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

void starShape(CDrawContext* context, const CRect& place, bool isOn)
{
    const double x = (place.left + place.right) / 2.0;
    const double y = (place.top + place.bottom) / 2.0;
    std::vector<CDrawPoint> points;
    for (int i = 0; i < 10; ++i) {
        const double radius = i % 2 == 0 ? 6 : 2.5;
        const double angle = (i * 36 - 90) * 3.14159265358979 / 180;
        points.push_back({x + radius * std::cos(angle), y + radius * std::sin(angle)});
    }
    context->setFillColor(look::kNeutral);
    context->setFrameColor(isOn ? look::kNeutral : look::kFrameHover);
    context->drawPolygon(points, isOn ? kDrawFilled : kDrawStroked);
    if (!isOn) { // closed
        points.push_back(points.front());
        points.erase(points.begin(), points.end() - 2);
        context->drawPolygon(points, kDrawStroked);
    }
}

void sketch(CDrawContext* context, const PresetSummary& summary, int x, const CRect& row)
{
    constexpr int kBar = 8;
    constexpr int kHigh = 14;
    const int bottom = row.bottom - 4;
    for (int i = 0; i < PresetSummary::kSketchSteps; ++i) {
        const float height = summary.sketch[static_cast<size_t>(i)];
        const int left = x + i * kBar + (i >= PresetSummary::kSketchSteps / 2 ? 1 : 0);
        if (height < 0) {
            context->setFillColor(kDash);
            context->fillRect({left + 2, bottom - 1, left + 5, bottom});
            continue;
        }
        const int top = bottom - 2 - static_cast<int>(std::lround(height * (kHigh - 2)));
        context->setFillColor(look::kPitch.withAlpha(110));
        context->fillRect({left, top, left + kBar - 1, bottom});
        context->setFillColor(look::kPitch);
        context->fillRect({left, top, left + kBar - 1, top + 2});
    }
}

std::string tempoText(float tempo)
{
    if (tempo <= 0)
        return "";
    char text[16];
    std::snprintf(text, sizeof text, "%.4g", static_cast<double>(tempo));
    return text;
}

std::string firstWordIn(const std::string& query, const PresetAbout& about)
{
    std::istringstream tags(about.tags);
    for (std::string tag; tags >> tag;)
        if (!query.empty() && tag.find(query) != std::string::npos)
            return tag;
    return "";
}

} // namespace

void Browser::draw(CDrawContext* context)
{
    setDirty(false);
    if (!isLive() || !isOpenNow)
        return;
    context->setLineWidth(1);
    placeTags(context);
    drawSheet(context);
    drawShelves(context);
    drawSearch(context);
    drawTags(context);
    drawHead(context);
    if (lines.empty())
        drawEmpty(context);
    else
        drawLines(context);
    drawChosen(context);
    drawFooter(context);
}

void Browser::placeTags(CDrawContext* context)
{
    constexpr int kPadding = 14;
    constexpr int kGap = 5;
    tagPlaces.clear();
    int left = kTags.left;
    const int right = query.tags.empty() ? kTags.right : kClearTags.left - kGap;
    useText(context, look::kText);
    for (const std::string& word : commonTags) {
        const bool isOn = std::count(query.tags.begin(), query.tags.end(), word) > 0;
        const int width =
            static_cast<int>(context->getStringWidth(word)) + kPadding + (isOn ? 2 : 0);
        if (left + width > right)
            break;
        tagPlaces.push_back({word, {left, kTags.top, left + width, kTags.bottom}});
        left += width + kGap;
    }
}

void Browser::drawSheet(CDrawContext* context) const
{
    context->setFillColor(look::colourOf(palette::kGround).withAlpha(kDim));
    context->fillRect(size);
    CRect shadow = kSheet;
    context->setFillColor(kBlackCColor.withAlpha(look::kMenuShadowAlpha));
    context->drawRoundRect(shadow.offset(0, look::kMenuShadow), 4, kDrawFilled);
    context->setFillColor(look::kMenu);
    context->setFrameColor(look::kMenuFrame);
    context->drawRoundRect(kSheet, 4, kDrawFilledAndStroked);
    drawLabel(context, "PRESETS", {kShelfLeft + 6, 58, kShelfRight, 82});
    drawLabel(context, "CHOSEN", {kChosen.left + 12, 58, kChosen.right, 82});
}

void Browser::drawShelves(CDrawContext* context) const
{
    constexpr int kFolderTitle = 20;
    bool hasTitle = false;
    for (const ShelfRow& row : shelves) {
        if (row.place.isEmpty())
            continue;
        if (row.shelf == Shelf::Folder && !hasTitle) {
            hasTitle = true;
            context->setFillColor(look::kHairline);
            context->fillRect({kShelfLeft, row.place.top - 24, kShelfRight, row.place.top - 23});
            drawLabel(context, "FOLDERS",
                {kShelfLeft + 6, row.place.top - kFolderTitle, kShelfRight, row.place.top - 2});
        }
        const bool isChosen =
            row.shelf == shelf && (shelf != Shelf::Folder || row.name == shelfFolder);
        if (isChosen || row.place.pointInside(pointer)) {
            context->setFillColor(isChosen ? look::kRaisedHover : look::kRaised);
            context->drawRoundRect(row.place, 2, kDrawFilled);
        }
        if (isChosen) {
            context->setFillColor(look::kText);
            context->fillRect(
                {row.place.left + 1, row.place.top + 3, row.place.left + 4, row.place.bottom - 3});
        }
        const CColor colour = row.count == 0 ? look::kTextDim
            : isChosen                       ? look::kText
                                             : look::kTextRaised;
        useText(context, colour, isChosen ? kBoldFace : kNormalFace);
        CRect place = row.place;
        place.left += 9;
        place.right -= 8;
        context->drawString(std::to_string(row.count), place, false, kRightText);
        place.right -= 26;
        context->drawString(cut(context, row.name, place.width()), place, false, kLeftText);
    }
}

void Browser::drawSearch(CDrawContext* context) const
{
    context->setFillColor(look::kWell);
    context->setFrameColor(listHasFocus ? look::kHairline : look::kFrameHover);
    context->drawRoundRect(kSearch, 2.5, kDrawFilledAndStroked);
    context->setFrameColor(look::kTextDim);
    context->setLineWidth(1.5);
    context->drawEllipse({kSearch.left + 8, kSearch.top + 7, kSearch.left + 16, kSearch.top + 15});
    context->moveTo({kSearch.left + 15, kSearch.top + 14});
    context->lineTo({kSearch.left + 18, kSearch.top + 17});
    context->setLineWidth(1);
    CRect place{kSearch.left + 26, kSearch.top, kSearch.right - 120, kSearch.bottom};
    const bool isEmpty = query.text.empty();
    useText(context, isEmpty ? look::kTextDim : look::kText, kNormalFace, look::kPresetNameSize);
    context->drawString(isEmpty ? "Search name, tag, author" : query.text, place, false, kLeftText);
    if (!listHasFocus) {
        const int caret =
            place.left + (isEmpty ? -2 : static_cast<int>(context->getStringWidth(query.text)) + 1);
        context->setFillColor(look::kText);
        context->fillRect({caret, kSearch.top + 5, caret + 1, kSearch.bottom - 5});
    }
    const std::string all = std::to_string(list.all().size());
    std::string count = isEmpty && query.tags.empty() ? all : std::to_string(hits) + " of " + all;
    if (list.isReading())
        count = std::to_string(list.read()) + " of " + all + " read";
    useText(context, look::kTextDim);
    context->drawString(count,
        {kSearch.right - 130, kSearch.top, kSearch.right - (isEmpty ? 8 : 28), kSearch.bottom},
        false, kRightText);
    if (isEmpty)
        return;
    context->setFillColor(kSearchCross.pointInside(pointer) ? look::kRaisedHover : look::kRaised);
    context->drawRoundRect(kSearchCross, 2, kDrawFilled);
    context->setFrameColor(look::kTextRaised);
    context->moveTo({kSearchCross.left + 5, kSearchCross.top + 5});
    context->lineTo({kSearchCross.right - 6, kSearchCross.bottom - 6});
    context->moveTo({kSearchCross.right - 6, kSearchCross.top + 5});
    context->lineTo({kSearchCross.left + 5, kSearchCross.bottom - 6});
}

void Browser::drawTags(CDrawContext* context) const
{
    for (const TagPlace& each : tagPlaces) {
        const bool isOn = std::count(query.tags.begin(), query.tags.end(), each.tag) > 0;
        const bool isUnder = each.place.pointInside(pointer);
        context->setFillColor(isOn ? look::kNeutral : isUnder ? look::kRaisedHover : look::kRaised);
        context->setFrameColor(isOn ? look::kNeutral
                : isUnder           ? look::kFrameHover
                                    : look::kRaisedFrame);
        context->drawRoundRect(each.place, 8.5, kDrawFilledAndStroked);
        useText(context, isOn ? look::kInk : look::kTextRaised, isOn ? kBoldFace : kNormalFace);
        context->drawString(each.tag, each.place);
    }
    if (query.tags.empty())
        return;
    useText(context, look::kTextRaised);
    context->drawString("Clear tags", kClearTags, false, kRightText);
}

void Browser::drawHead(CDrawContext* context) const
{
    context->setFillColor(look::kWell);
    context->setFrameColor(kPanelEdge);
    context->drawRect(
        {kHeadRow.left, kHeadRow.top, kList.right, kList.bottom}, kDrawFilledAndStroked);
    const auto column = [&](const char* text, Column which, CRect place, CHoriTxtAlign align) {
        drawLabel(context, text, place, align);
        if (which != sortBy)
            return;
        const double width = context->getStringWidth(text) * 1.15;
        const double x = align == kRightText ? place.right + 6 : place.left + width + 8;
        const double y = (place.top + place.bottom) / 2.0;
        const double rise = sortsDown ? 1.5 : -1.5;
        context->setFrameColor(look::kTextDim);
        context->drawPolygon({{x - 3, y - rise}, {x, y + rise}, {x + 3, y - rise}});
    };
    column("NAME", Column::Name, {kNameColumn, kHeadRow.top, kFolderColumn, kHeadRow.bottom},
        kLeftText);
    column("FOLDER", Column::Folder, {kFolderColumn, kHeadRow.top, kAuthorColumn, kHeadRow.bottom},
        kLeftText);
    column("AUTHOR", Column::Author, {kAuthorColumn, kHeadRow.top, kTempoRight, kHeadRow.bottom},
        kLeftText);
    column("BPM", Column::Tempo, {kTempoRight - 40, kHeadRow.top, kTempoRight, kHeadRow.bottom},
        kRightText);
    drawLabel(context, "PATTERN 1", {kSketchColumn, kHeadRow.top, kStarColumn, kHeadRow.bottom});
}

void Browser::drawLines(CDrawContext* context) const
{
    context->setClipRect(kList);
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
        const CRect row = lineRect(i);
        if (row.isEmpty())
            continue;
        if (presetOf(i)) {
            drawRow(context, i, row);
            continue;
        }
        context->setFillColor(look::kHead);
        context->fillRect(row);
        drawLabel(context, lines[size_t(i)].title.c_str(),
            {kNameColumn, row.top, kList.right, row.bottom});
    }
    context->resetClipRect();
    const int most = listHeight();
    if (most <= kList.height())
        return;
    constexpr int kShortest = 24;
    const int thumb = std::max(kShortest, kList.height() * kList.height() / most);
    const int top = kList.top + (kList.height() - thumb) * scroll / (most - kList.height());
    context->setFillColor(look::kFrameHover);
    context->drawRoundRect({kList.right - 6, top, kList.right - 2, top + thumb}, 2, kDrawFilled);
}

void Browser::drawRow(CDrawContext* context, int index, const CRect& row) const
{
    const ListedPreset& preset = *presetOf(index);
    const bool isChosen = index == chosen;
    const bool isLoaded = preset.path == loadedPath;
    const bool isDamaged = preset.isRead && !preset.summary.isReadable;
    if (isChosen || row.pointInside(pointer)) {
        context->setFillColor(isChosen ? look::kRaisedHover : look::kWellGroup);
        context->fillRect(row);
    }
    context->setFillColor(kCellLine);
    context->fillRect({kNameColumn, row.bottom - 1, kStarEnd, row.bottom});
    if (isChosen && listHasFocus) {
        context->setFrameColor(look::kText);
        context->drawRoundRect({row.left + 2, row.top, row.right - 7, row.bottom - 1}, 2.5);
    }
    const int middle = (row.top + row.bottom) / 2;
    if (preset.path == playingPath) {
        context->setFillColor(look::kText);
        constexpr int kBars[] = {6, 10, 8};
        for (int bar = 0; bar < 3; ++bar)
            context->fillRect({kMarkColumn + bar * 4, middle + 5 - kBars[bar],
                kMarkColumn + bar * 4 + 3, middle + 5});
    } else if (isLoaded) {
        context->setFrameColor(look::kText);
        context->setLineWidth(1.5);
        context->moveTo({kMarkColumn, middle});
        context->lineTo({kMarkColumn + 3, middle + 3});
        context->lineTo({kMarkColumn + 9, middle - 4});
        context->setLineWidth(1);
    }
    useText(context, isDamaged ? look::kTextDim : look::kText, isLoaded ? kBoldFace : kNormalFace);
    CRect place{kNameColumn, row.top, kFolderColumn - 8, row.bottom};
    const std::string name = cut(context, preset.name, place.width());
    context->drawString(name, place, false, kLeftText);
    place.left += static_cast<int>(context->getStringWidth(name)) + 8;
    useText(context, look::kTextDim);
    const std::string behind =
        isDamaged ? "cannot be read" : firstWordIn(query.text, preset.summary.about);
    if (place.width() > 12)
        context->drawString(cut(context, behind, place.width()), place, false, kLeftText);
    useText(context, look::kTextRaised);
    context->drawString(cut(context, preset.folder, kAuthorColumn - kFolderColumn - 6),
        {kFolderColumn, row.top, kAuthorColumn, row.bottom}, false, kLeftText);
    const PresetAbout& about = preset.summary.about;
    context->drawString(cut(context, about.author, 76),
        {kAuthorColumn, row.top, kTempoRight - 28, row.bottom}, false, kLeftText);
    context->drawString(tempoText(about.tempo),
        {kTempoRight - 40, row.top, kTempoRight, row.bottom}, false, kRightText);
    if (preset.summary.isReadable)
        sketch(context, preset.summary, kSketchColumn, row);
    starShape(
        context, {kStarColumn, row.top, kStarEnd, row.bottom}, favourites->contains(preset.path));
}

void Browser::drawEmpty(CDrawContext* context) const
{
    std::string text =
        query.text.empty() && query.tags.empty() ? "Nothing is here yet." : "Nothing matches ";
    if (!query.text.empty() || !query.tags.empty()) {
        std::string joined = query.text;
        for (const std::string& word : query.tags)
            joined += (joined.empty() ? "" : " and ") + word;
        text += joined + ".";
    }
    useText(context, look::kTextRaised);
    context->drawString(text, kList);
}

void Browser::drawChosen(CDrawContext* context) const
{
    context->setFillColor(look::kPanel);
    context->setFrameColor(kPanelEdge);
    context->drawRoundRect(kChosen, 3, kDrawFilledAndStroked);
    const ListedPreset* preset = presetOf(chosen);
    if (!preset)
        return;
    constexpr int kInset = 12;
    constexpr int kTextLine = 15;
    constexpr int kMostTextLines = 6;
    const PresetAbout& about = preset->summary.about;
    CRect place{kChosen.left + kInset, kChosen.top + 8, kChosen.right - kInset, kChosen.top + 26};
    useText(context, look::kText, kBoldFace, look::kPresetNameSize);
    context->drawString(cut(context, preset->name, place.width() - 18), place, false, kLeftText);
    starShape(context, {place.right - 14, place.top, place.right, place.bottom},
        favourites->contains(preset->path));
    const auto next = [&](int step) {
        place = {place.left, place.bottom, place.right, place.bottom + step};
    };
    next(kTextLine);
    useText(context, look::kTextRaised);
    const std::string from = preset->folder + (about.author.empty() ? "" : ", " + about.author);
    context->drawString(cut(context, from, place.width()), place, false, kLeftText);
    next(8);
    const std::vector<std::string> text = wrapped(context, about.description, place.width());
    for (size_t i = 0; i < text.size() && i < kMostTextLines; ++i) {
        next(kTextLine);
        context->drawString(text[i], place, false, kLeftText);
    }
    next(8);
    std::istringstream tags(about.tags);
    int left = place.left;
    int top = place.bottom;
    for (std::string word; tags >> word;) {
        const int width = static_cast<int>(context->getStringWidth(word)) + 14;
        if (left + width > place.right) {
            left = place.left;
            top += 22;
        }
        const CRect pill{left, top, left + width, top + 17};
        context->setFillColor(look::kRaised);
        context->setFrameColor(look::kRaisedFrame);
        context->drawRoundRect(pill, 8.5, kDrawFilledAndStroked);
        context->drawString(word, pill);
        left += width + 5;
    }
    place.bottom = top + (about.tags.empty() ? 0 : 22);
    const auto fact = [&](const char* what, const std::string& answer) {
        if (answer.empty())
            return;
        next(21);
        drawLabel(context, what, place);
        useText(context, look::kText);
        CRect right = place;
        right.left += 54;
        context->drawString(cut(context, answer, right.width()), right, false, kRightText);
    };
    next(8);
    context->setFillColor(look::kHairline);
    context->fillRect({place.left, place.top + 4, place.right, place.top + 5});
    fact("TEMPO", about.tempo > 0 ? tempoText(about.tempo) + " BPM" : "");
    fact("FILE", preset->folder + " / " + preset->name);
}

void Browser::drawFooter(CDrawContext* context) const
{
    context->setFillColor(look::kHairline);
    context->fillRect({kFooter.left, kFooter.top, kFooter.right, kFooter.top + 1});
    int left = kFooter.left + 12;
    const std::pair<const char*, const char*> keys[] = {{"\xE2\x86\x91 \xE2\x86\x93", "play"},
        {"\xE2\x86\x90 \xE2\x86\x92", "folder"}, {"Return", "keep"}, {"Esc", "back"},
        {"S", "star"}};
    for (const auto& [cap, meaning] : keys) {
        constexpr int kCapHeight = 15;
        useText(context, look::kText, kNormalFace, 10);
        const int width = static_cast<int>(context->getStringWidth(cap)) + 10;
        const int top = (kFooter.top + kFooter.bottom - kCapHeight) / 2;
        const CRect place{left, top, left + width, top + kCapHeight};
        context->setFillColor(look::kRaised);
        context->setFrameColor(look::kFrameHover);
        context->drawRoundRect(place, 2, kDrawFilledAndStroked);
        context->drawString(cap, place);
        useText(context, look::kTextRaised);
        const int textWidth = static_cast<int>(context->getStringWidth(meaning)) + 2;
        context->drawString(meaning,
            {place.right + 6, kFooter.top, place.right + 6 + textWidth, kFooter.bottom}, false,
            kLeftText);
        left = place.right + textWidth + 22;
    }
}

} // namespace ormund
