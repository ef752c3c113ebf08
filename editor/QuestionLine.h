#pragma once

#include "controls/KWControl.h"

#include <functional>
#include <string>
#include <vector>

namespace ormund {

// A question in one line below the head, with a button for each answer. Return gives the chosen
// answer, at first the first one; Escape and a press elsewhere give the last.
class QuestionLine : public KWControl {
public:
    struct Answer {
        std::string text;
        std::function<void()> take;
    };

    explicit QuestionLine(KWFrame* ownFrame);

    void ask(const std::string& text, std::vector<Answer> possible);
    bool isAsking() const { return asking; }
    // Panel pixels; empty for none.
    CRect answerRect(size_t index) const;

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void endModal(int result) override;

private:
    void give(size_t index);

    std::string question;
    std::vector<Answer> answers;
    size_t chosen = 0;
    CPoint pointer;
    bool asking = false;
};

} // namespace ormund
