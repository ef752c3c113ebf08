// How a step grid draws: from a strip of frames, or with colours alone.
#include "controls/KWTableView.h"

#include "view/CBitmap.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace ormund {

namespace {
constexpr float kBeatLengths[] = {0.25f, 0.5f, 1, 2, 4, 8, 16, 32}; // in steps
constexpr float kBeatPixels = 16;
constexpr int kLeastLineGap = 8;
constexpr int kRulerFont = 10;
constexpr float kRulerPartsFrom = 20; // tick widths: from here labels between beats
constexpr float kRulerFractionFrom = 30;
constexpr CColor kRulerBeat = kBlackCColor;
constexpr CColor kRulerPart{25, 25, 25};
} // namespace

void KWTableView::draw(CDrawContext* context)
{
    if (!isLive())
        return;
    const Access access(table);
    if (!access.isGranted() || stepCount() == 0)
        return;
    if (firstDraw) {
        firstDraw = false;
        updateControl(nullptr);
    }
    if (stripBitmap)
        drawStrip(context);
    else
        drawColours(context);
    KWControl::draw(context);
}

void KWTableView::drawRect(CDrawContext* context, const CRect& updateRect)
{
    context->setClipRect(updateRect);
    draw(context);
    context->resetClipRect();
}

void KWTableView::drawStrip(CDrawContext* context)
{
    const int count = stepCount();
    const int cellW = size.width() / count;
    const int h = size.height();
    const float gridHeight = static_cast<float>(gridRect.height());
    const bool isRaw = valueRange() > 1 && has(kTableRawValues);
    const bool connected = has(kTableConnect);
    context->setFrameColor(colorLine);
    int previous = -1;
    for (int step = 0; step < count; ++step) {
        const int x = size.left + step * cellW;
        const float level = normalised(step);
        // Toward zero: a step at 0.999 does not reach the last frame.
        const int index = isRaw ? static_cast<int>(raw(step) - table->minValue())
                                : static_cast<int>(static_cast<float>(stripFrames - 1) * level);
        drawFrameOf(context, stripBitmap, {x, size.top, x + cellW, size.bottom},
            std::clamp(index, 0, std::max(stripFrames - 1, 0)) * h);
        // Deliberate: one height is scaled by h - 1 and the next by h, so that a line leaves a bar
        // at its top row and meets the next one below its edge.
        const int current = static_cast<int>((gridHeight - 1) * level);
        if (previous != -1 && connected && !isRaw)
            drawConnection(context, x, previous, current);
        previous = static_cast<int>(gridHeight * level);
    }
    if (isRaw && connected && noteHeights
        && static_cast<float>(noteHeights->size()) >= valueRange())
        drawNoteLines(context);
}

void KWTableView::drawConnection(CDrawContext* context, int x, int previous, int current) const
{
    int a = std::min(gridRect.bottom - previous, gridRect.bottom - 1);
    int b = gridRect.bottom - current;
    if (a > b)
        a = std::exchange(b, a + 1) - 1;
    if (a == b)
        return;
    context->moveTo({x - 1, a});
    context->lineTo({x - 1, b});
}

// The lines that meet the tops of the drawn notes.
void KWTableView::drawNoteLines(CDrawContext* context)
{
    const int cellW = size.width() / stepCount();
    const int last = static_cast<int>(noteHeights->size()) - 1;
    int previous = -1;
    int x = size.left - 1;
    for (int step = 0; step < stepCount(); ++step, x += cellW) {
        const int index = std::clamp(static_cast<int>(raw(step) - table->minValue()), 0, last);
        const int height = (*noteHeights)[static_cast<size_t>(index)];
        if (previous != -1) {
            context->moveTo({x, gridRect.bottom - previous});
            context->lineTo({x, gridRect.bottom - height});
        }
        previous = height;
    }
}

int KWTableView::pixelOfStep(float step) const
{
    return gridRect.left
        + static_cast<int>(static_cast<float>(gridRect.width()) * step
            / static_cast<float>(std::max(stepCount(), 1)));
}

int KWTableView::pixelOfValue(float level) const
{
    return gridRect.bottom - static_cast<int>(level * static_cast<float>(gridRect.height()));
}

void KWTableView::drawColours(CDrawContext* context)
{
    context->setLineWidth(1);
    context->setLineStyle(has(kTableDashGrid) ? kLineOnOffDash : kLineSolid);
    drawBackdrop(context);
    drawOverlay(context);
    context->setLineStyle(kLineSolid);
    if (has(kTableCurve))
        drawCurve(context);
    else
        drawBars(context);
    if (has(kTableBeatGrid))
        drawBeatLines(context);
    if (has(kTableRuler))
        drawRuler(context);
    if (has(kTableLoopBar))
        drawLoopBar(context);
    if (table->editPos >= 0) {
        context->setFrameColor(colorOther);
        const int x = pixelOfStep(table->editPos);
        context->moveTo({x, gridRect.top + 1});
        context->lineTo({x, gridRect.bottom - 1});
    }
}

void KWTableView::drawBackdrop(CDrawContext* context)
{
    if (!has(kTableNoBackground)) {
        if (backBitmap) {
            drawFrameOf(context, backBitmap, size, 0);
        } else {
            context->setFillColor(colorBack);
            context->drawRect(size, kDrawFilled);
        }
    }
    context->setFrameColor(colorGrid);
    const auto horizontal = [&](int y) {
        context->moveTo({gridRect.left, y});
        context->lineTo({gridRect.right - 1, y});
    };
    const float range = valueRange();
    const auto levelOf = [&](float v) {
        return range > 0 ? (v - table->minValue()) / range : 0.0f;
    };
    if (has(kTableCentreLine))
        horizontal((gridRect.top + gridRect.bottom) / 2);
    if (drawZeroLine)
        horizontal(pixelOfValue(levelOf(0)));
    if (drawDefaultLine)
        horizontal(pixelOfValue(levelOf(table->defaultValue())));
}

// One point per pixel column, as a single path: hundreds of strokes would cost a hundred times
// more.
void KWTableView::drawColumns(CDrawContext* context, const KWTable& shownTable, float perPixel)
{
    std::vector<CDrawPoint> points;
    points.reserve(static_cast<size_t>(std::max(gridRect.width(), 0)));
    for (int x = gridRect.left; x < gridRect.right; ++x) {
        const float step = static_cast<float>(x - gridRect.left) * perPixel;
        points.push_back({x + 0.5, pixelOfValue(shownTable.getNormalized(step)) + 0.5});
    }
    context->drawPolygon(points, kDrawStroked);
}

void KWTableView::drawOverlay(CDrawContext* context)
{
    if (!overlayTable || overlayTable->size() == 0)
        return;
    context->setFrameColor(colorGrid);
    drawColumns(context, *overlayTable,
        static_cast<float>(overlayTable->size()) / static_cast<float>(std::max(getWidth(), 1)));
}

void KWTableView::drawBars(CDrawContext* context)
{
    const int count = stepCount();
    const int width = gridRect.width();
    const bool beats = has(kTableBeatGrid);
    const int barW = std::max(beats ? (width - 2 * count + 2) / count : width / count - 1, 1);
    const int stride = barW + (beats ? 2 : 1);
    const int running =
        has(kTableRunningStep) ? static_cast<int>(table->runningPosition.load()) : -1;
    for (int step = 0; step < count; ++step) {
        const int x = gridRect.left + step * stride;
        const int height =
            static_cast<int>(normalised(step) * static_cast<float>(gridRect.height()));
        CRect bar(x, gridRect.bottom - height, x + barW, gridRect.bottom);
        if (has(kTableCentred)) {
            const int middle = (gridRect.top + gridRect.bottom) / 2;
            bar.bottom = std::max(bar.top, middle);
            bar.top = std::min(bar.top, middle);
        }
        if (cellBitmap) {
            if (has(kTableCellAlpha))
                cellBitmap->drawTransparent(context, bar);
            else
                cellBitmap->draw(context, bar);
        } else {
            context->setFillColor(
                step == running || !has(kTableRunningStep) ? colorBar : colorOther);
            context->drawRect(bar, kDrawFilled);
        }
        if (has(kTableCells) && step > 0) {
            context->setFrameColor(colorGrid);
            context->moveTo({x - 1, gridRect.top});
            context->lineTo({x - 1, gridRect.bottom - 1});
        }
    }
}

void KWTableView::drawCurve(CDrawContext* context)
{
    if (has(kTableDropLines)) {
        context->setFillColor(colorLine);
        for (int x = gridRect.left; x < gridRect.right; ++x) {
            const int top = pixelOfValue(table->getNormalized(screenToStep(x)));
            context->drawRect({x, top, x + 1, gridRect.bottom}, kDrawFilled);
        }
    }
    context->setFrameColor(colorLine);
    const float shownSteps = std::max((1.0f - zoomX) * static_cast<float>(stepCount()), 0.0f);
    drawColumns(context, *table, shownSteps / static_cast<float>(std::max(gridRect.width(), 1)));
}

// The shortest beat whose lines stand far enough apart.
void KWTableView::drawBeatLines(CDrawContext* context)
{
    context->setFrameColor(colorGrid);
    const float perStep = static_cast<float>(gridRect.width()) / static_cast<float>(stepCount());
    float beat = kBeatLengths[std::size(kBeatLengths) - 1];
    for (const float length : kBeatLengths) {
        if (length * perStep >= kBeatPixels) {
            beat = length;
            break;
        }
    }
    const float gap = std::max(beat * perStep, static_cast<float>(kLeastLineGap));
    // Multiples, as a sum of gaps would drift.
    const auto place = [gap](int line) { return static_cast<float>(line) * gap; };
    for (int line = 1; place(line) < static_cast<float>(gridRect.width()); ++line) {
        const int at = gridRect.left + static_cast<int>(place(line));
        context->moveTo({at, gridRect.top});
        context->lineTo({at, gridRect.bottom - 1});
    }
}

void KWTableView::drawRuler(CDrawContext* context)
{
    context->setFillColor(colorGrid);
    context->drawRect(rulerRect, kDrawFilled);
    context->setFont(font, kRulerFont);
    const float beat = table->beatWidth > 0 ? table->beatWidth.load() : 1.0f;
    const float perStep = static_cast<float>(gridRect.width()) / static_cast<float>(stepCount());
    for (int step = 0; step < stepCount(); ++step) {
        const float beats = static_cast<float>(step) / beat;
        const int whole = static_cast<int>(beats);
        const bool onBeat = beats == static_cast<float>(whole);
        if (!onBeat && perStep <= kRulerPartsFrom)
            continue;
        char text[32];
        if (onBeat || perStep <= kRulerFractionFrom)
            std::snprintf(text, sizeof text, "%d", onBeat ? whole + 1 : step + 1);
        else
            std::snprintf(text, sizeof text, "%d.%d", whole + 1,
                static_cast<int>(std::lround((beats - static_cast<float>(whole)) * beat)) + 1);
        context->setFontColor(onBeat ? kRulerBeat : kRulerPart);
        const int x = pixelOfStep(static_cast<float>(step));
        context->drawString(text,
            {x + 1, rulerRect.top, x + static_cast<int>(beat * perStep), rulerRect.bottom}, false,
            kLeftText);
    }
}

void KWTableView::drawLoopBar(CDrawContext* context)
{
    const CRect bar(
        pixelOfStep(table->loopStart), loopRect.top, pixelOfStep(table->loopEnd), loopRect.bottom);
    context->setFillColor(colorOther);
    context->setFrameColor(colorOther);
    context->drawRect(bar, kDrawFilledAndStroked);
}

} // namespace ormund
