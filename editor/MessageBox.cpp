#include "editor/MessageBox.h"

#include "controls/KWButton.h"
#include "controls/KWFrame.h"
#include "panel/Look.h"
#include "view/CDrawContext.h"

#include <algorithm>

namespace ormund {

namespace {

constexpr long kCloseTag = 1;
constexpr int kBoxWidth = 380;
constexpr int kMargin = 20;
constexpr int kLineHeight = 16;
constexpr int kHead = 40;
constexpr int kFoot = 52;
constexpr size_t kMaxLines = 24;
constexpr size_t kLineLength = 58; // letters of 11 px that surely fit

// The button of the box, in the panel's colours.
class CloseButton : public KWButton {
public:
    using KWButton::KWButton;
    void draw(CDrawContext* context) override
    {
        const bool down = getValue() != 0.0f;
        context->setFillColor(down ? look::kPressed : look::kRaised);
        context->setFrameColor(down ? look::kFrameHover : look::kRaisedFrame);
        context->setLineWidth(1);
        context->drawRoundRect(size, 2.5, kDrawFilledAndStroked);
        context->setFont(nullptr, 11, kBoldFace);
        context->setFontColor(down ? look::kText : look::kTextRaised);
        context->drawString("OK", size);
        setDirty(false);
    }
};

} // namespace

MessageBox::MessageBox(KWFrame* ownFrame, const std::string& boxTitle)
    : KWViewContainer({0, 0, kBoxWidth, kHead + kFoot}, nullptr, 0, ownFrame), title(boxTitle)
{
    const CRect place{0, 0, 72, 22};
    button = new CloseButton(place, this, kCloseTag, ownFrame, "OK", false, KWButton::kMomentary);
    button->editBrackets = false;
    addItem(button, kKeepPlace, 0); // the number of lines gives its place
    KWControl::setVisible(false);
}

void MessageBox::breakLines(const std::string& text)
{
    lines.clear();
    std::string line;
    std::string word;
    const auto endLine = [&] {
        if (lines.size() < kMaxLines)
            lines.push_back(line);
        line.clear();
    };
    const auto endWord = [&] {
        while (word.size() > kLineLength) { // a path without blanks
            if (!line.empty())
                endLine();
            line = word.substr(0, kLineLength);
            endLine();
            word.erase(0, kLineLength);
        }
        if (!line.empty() && line.size() + 1 + word.size() > kLineLength)
            endLine();
        if (!line.empty() && !word.empty())
            line += ' ';
        line += word;
        word.clear();
    };
    for (const char letter : text) {
        if (letter == '\n') {
            endWord();
            endLine();
        } else if (letter == ' ' || letter == '\t') {
            endWord();
        } else {
            word += letter;
        }
    }
    endWord();
    if (!line.empty() || lines.empty())
        endLine();
}

void MessageBox::show(const std::string& text)
{
    breakLines(text);
    const int height = kHead + int(lines.size()) * kLineHeight + kFoot;
    const CRect panel = frame->getViewSize();
    const CPoint corner{(panel.width() - kBoxWidth) / 2, (panel.height() - height) / 2};
    setViewSize({corner.x, corner.y, corner.x + kBoxWidth, corner.y + height});
    CRect place{0, 0, 72, 22};
    place.offset(corner.x + kBoxWidth - kMargin - 72, corner.y + height - kMargin - 22 + 4);
    button->setSizeAndArea(place);
    if (isOpen)
        setDirty(true);
    else
        beginModal(3, &corner, 0);
}

void MessageBox::drawBackground(CDrawContext* context)
{
    context->setFillColor(look::kMenu);
    context->setFrameColor(look::kMenuFrame);
    context->setLineWidth(1);
    context->drawRoundRect(size, 4, kDrawFilledAndStroked);
    context->setFont(nullptr, 13, kBoldFace);
    context->setFontColor(look::kText);
    CRect row{size.left + kMargin, size.top + 14, size.right - kMargin, size.top + 32};
    context->drawString(title, row, false, kLeftText);
    context->setFont(nullptr, 11, kNormalFace);
    context->setFontColor(look::kTextRaised);
    row = {row.left, size.top + kHead, row.right, size.top + kHead + kLineHeight};
    for (const std::string& line : lines) {
        context->drawString(line, row, false, kLeftText);
        row.offset(0, kLineHeight);
    }
}

void MessageBox::valueChanged(CControl* sender)
{
    if (sender->getTag() == kCloseTag && sender->getValue() == 0.0f)
        endModal(0);
}

bool MessageBox::onKeyDown(const CKeyEvent& event)
{
    const bool modifierAlone = event.key >= CKey::Shift && event.key <= CKey::Alt;
    if (isOpen && !modifierAlone)
        endModal(0);
    return true;
}

} // namespace ormund
