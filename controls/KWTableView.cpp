#include "controls/KWTableView.h"

#include "controls/KWFrame.h"
#include "data/tracks/KWInitInterface.h"
#include "platform/Messages.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ormund {

namespace {
constexpr int kTableKind = 4;
constexpr int kRulerHeight = 8;
constexpr int kExtraGap = 2;
constexpr int kExtraWidth = 10;
constexpr int kAccessPolls = 10000;
} // namespace

KWTableView::Access::Access(KWTable* heldTable) : table(heldTable)
{
    if (!table)
        return;
    table->reading.raise();
    for (int poll = 0; poll < kAccessPolls && !granted; ++poll)
        granted = !table->hasFlag(kTableLocked);
    if (!granted)
        table->reading.lower();
}

KWTableView::Access::~Access()
{
    if (granted)
        table->reading.lower();
}

KWTableView::KWTableView(const CRect& viewSize, CControlListener* controlListener, long controlTag,
    KWFrame* ownFrame, bool stamp)
    : KWControl(viewSize, controlListener, controlTag, ownFrame), layoutStamp(stamp)
{
    controlKind = kTableKind;
    layOut();
}

void KWTableView::setTable(KWTable* newTable)
{
    table = newTable;
    layOut();
    stepCache.clear();
    if (table && has(kTableWatchValues))
        stepCache.resize(static_cast<size_t>(stepCount()));
    setDirty(true);
}

void KWTableView::setStrip(CBitmap* strip, int frames)
{
    stripBitmap = strip;
    stripFrames = frames;
}

bool KWTableView::has(TableFlag flag) const { return table && table->hasFlag(flag); }

int KWTableView::stepCount() const { return table ? table->size() : 0; }

float KWTableView::valueRange() const { return std::fabs(table->maxValue() - table->minValue()); }

float KWTableView::normalised(int step) const
{
    return table->getNormalized(static_cast<float>(step));
}

void KWTableView::setNormalised(int step, float value01)
{
    table->setNormalized(static_cast<float>(step), value01);
}

float KWTableView::raw(int step) const { return table->getAtIndex(step); }

void KWTableView::setViewSize(const CRect& rect, bool invalidate)
{
    KWControl::setViewSize(rect, invalidate);
    layOut();
}

void KWTableView::layOut()
{
    gridRect = size;
    if (has(kTableRuler)) {
        rulerRect = size;
        rulerRect.bottom = rulerRect.top + kRulerHeight;
        gridRect.top += kRulerHeight;
        if (showExtra) {
            extraRect = rulerRect;
            extraRect.left = gridRect.right + kExtraGap;
            extraRect.right = extraRect.left + kExtraWidth;
        }
    }
    if (has(kTableLoopBar)) {
        gridRect.bottom -= table->loopBarHeight;
        loopRect =
            CRect(size.left, gridRect.bottom, size.right, gridRect.bottom + table->loopBarHeight);
        if (loopRect.left > loopRect.right)
            std::swap(loopRect.left, loopRect.right);
        if (loopRect.top > loopRect.bottom)
            std::swap(loopRect.top, loopRect.bottom);
    }
}

float KWTableView::screenToStep(int x) const
{
    const int count = stepCount();
    const int width = gridRect.width();
    if (count == 0 || width <= 0 || x < gridRect.left)
        return 0;
    if (x > gridRect.right)
        return static_cast<float>(count - 1);
    const float along = static_cast<float>(x - gridRect.left);
    if (has(kTableCells) && !has(kTableCurve)) {
        const int cell =
            static_cast<int>(along / (static_cast<float>(width) / static_cast<float>(count)));
        return static_cast<float>(std::min(cell, count - 1));
    }
    const int visibleSteps = static_cast<int>((1.0f - zoomX) * static_cast<float>(count));
    const float step = static_cast<float>(visibleSteps) / static_cast<float>(width) * along
        + static_cast<float>(count - visibleSteps) * scrollX;
    return std::clamp(step, 0.0f, std::nextafter(static_cast<float>(count), 0.0f));
}

float KWTableView::screenToValue(int y) const
{
    const int height = gridRect.height();
    if (!table || height <= 0 || y > gridRect.bottom)
        return 0;
    if (y < gridRect.top)
        return 1;
    const float h = static_cast<float>(height);
    const float zoom = zoomY * 5.0f + 1.0f;
    return (static_cast<float>(gridRect.bottom - y) - (1.0f - scrollY) * (h - h * zoom)) / h / zoom;
}

void KWTableView::updateControl(void* context)
{
    // A hidden view still takes its hover texts away, and looks at nothing else.
    if (!isLive()) {
        KWControl::updateControl(context);
        return;
    }
    if (table) {
        const bool stamp = has(kTableRelayout);
        if (stamp == layoutStamp) {
            layoutStamp = !stamp;
            layOut();
        }
    }
    for (CControl* button : childButtons) {
        if (auto* control = dynamic_cast<KWControl*>(button))
            control->updateControl(context);
    }
    if (table) {
        watchRunningStep();
        if (const uint32_t generation = table->generation(); generation != lastGeneration) {
            lastGeneration = generation;
            setDirty(true);
        }
    }
    // Twice, so that the hints of a grid come and go twice as fast as others.
    KWControl::updateControl(context);
    KWControl::updateControl(context);
    if (has(kTableWatchValues) && watchValues())
        setDirty(true);
}

void KWTableView::watchRunningStep()
{
    const float running = table->runningPosition.load();
    if (!has(kTableRunningStep) || running == lastRunningValue)
        return;
    lastRunningValue = running;
    setDirty(true);
}

bool KWTableView::watchValues()
{
    bool moved = false;
    const size_t count = std::min(stepCache.size(), static_cast<size_t>(stepCount()));
    for (size_t i = 0; i < count; ++i) {
        const float now = raw(static_cast<int>(i));
        moved = moved || now != stepCache[i];
        stepCache[i] = now;
    }
    return moved;
}

void KWTableView::valueChanged(CControl* sender)
{
    if (!sender)
        return;
    const long button = sender->getTag();
    const bool act = table && sender->getValue() == 1.0f;
    auto* const edits = dynamic_cast<KWInitInterface*>(table);
    if (button < kCopy || button > kReset) {
        showMessage("unknown value innKWTableView valuechanged : val:%ld", button);
    } else if (act) {
        openBracket();
        switch (button) {
        case kCopy:
            edits ? edits->copy(0, stepCount()) : table->markSource();
            break;
        case kPaste:
            edits ? edits->paste(0, stepCount()) : table->copyFromMarked();
            break;
        case kRandomise:
            if (edits)
                edits->randomize();
            break;
        default:
            table->clear();
            break;
        }
        closeBracket();
    }
    setDirty(true);
}

} // namespace ormund
