#include "editor/QuestionLine.h"

#include "controls/KWFrame.h"
#include "panel/Look.h"
#include "view/CDrawContext.h"

#include <utility>

namespace ormund {

namespace {

constexpr CRect kPlace{258, 50, 743, 80};
constexpr int kMargin = 12;
constexpr int kButtonWidth = 82;
constexpr int kButtonHeight = 21;
constexpr int kGap = 6;

} // namespace

QuestionLine::QuestionLine(KWFrame* ownFrame) : KWControl({0, 0, 1, 1}, nullptr, 0, ownFrame)
{
    KWControl::setVisible(false);
}

void QuestionLine::ask(const std::string& text, std::vector<Answer> possible)
{
    if (asking || possible.empty())
        return;
    question = text;
    answers = std::move(possible);
    chosen = 0;
    pointer = {-1, -1};
    asking = true;
    CView::setViewSize(kPlace);
    setVisible(true);
    beginModal(3, nullptr, 0);
}

// An answer may ask the next question, so this one has gone by then.
void QuestionLine::give(size_t index)
{
    if (!asking)
        return;
    asking = false;
    KWControl::endModal(0);
    setVisible(false);
    const std::vector<Answer> given = std::exchange(answers, {});
    if (given[index].take)
        given[index].take();
}

void QuestionLine::endModal(int) { give(answers.size() - 1); }

CRect QuestionLine::answerRect(size_t index) const
{
    if (index >= answers.size())
        return {};
    const auto behind = static_cast<int>(answers.size() - 1 - index);
    const int right = size.right - kMargin / 2 - behind * (kButtonWidth + kGap);
    const int top = (size.top + size.bottom - kButtonHeight) / 2;
    return {right - kButtonWidth, top, right, top + kButtonHeight};
}

CMouseEventResult QuestionLine::onMouseDown(const CPoint& where, int)
{
    if (!asking)
        return kMouseEventNotHandled;
    for (size_t i = 0; i < answers.size(); ++i)
        if (answerRect(i).pointInside(where)) {
            give(i);
            return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
        }
    if (!size.pointInside(where))
        give(answers.size() - 1);
    return kMouseDownEventHandledButDontNeedMovedOrUpEvents;
}

CMouseEventResult QuestionLine::onMouseMoved(const CPoint& where, int)
{
    pointer = where;
    setDirty(true);
    return kMouseEventHandled;
}

bool QuestionLine::onKeyDown(const CKeyEvent& event)
{
    const size_t last = answers.size() - 1;
    switch (event.key) {
    case CKey::Escape:
        give(last);
        break;
    case CKey::Return:
    case CKey::Enter:
        give(chosen);
        break;
    case CKey::Right:
    case CKey::Tab:
        chosen = chosen < last ? chosen + 1 : 0;
        setDirty(true);
        break;
    case CKey::Left:
        chosen = chosen > 0 ? chosen - 1 : last;
        setDirty(true);
        break;
    default:
        break;
    }
    return true;
}

void QuestionLine::draw(CDrawContext* context)
{
    setDirty(false);
    if (!isLive() || !asking)
        return;
    context->setLineWidth(1);
    context->setFillColor(look::kMenu);
    context->setFrameColor(look::kMenuFrame);
    context->drawRoundRect(size, 4, kDrawFilledAndStroked);
    CRect line = size;
    line.left += kMargin;
    line.right = answerRect(0).left - kGap;
    context->setFont(nullptr, 11, kNormalFace);
    context->setFontColor(look::kText);
    context->drawString(question, line, false, kLeftText);
    for (size_t i = 0; i < answers.size(); ++i) {
        const CRect place = answerRect(i);
        const bool isUnder = place.pointInside(pointer);
        const bool isChosen = i == chosen;
        context->setFillColor(isChosen ? look::kNeutral
                : isUnder              ? look::kRaisedHover
                                       : look::kRaised);
        context->setFrameColor(isChosen ? look::kText : look::kRaisedFrame);
        context->drawRoundRect(place, 2.5, kDrawFilledAndStroked);
        context->setFont(nullptr, 10, kBoldFace);
        context->setFontColor(isChosen ? look::kInk : look::kTextRaised);
        context->drawString(answers[i].text, place);
    }
}

} // namespace ormund
