#pragma once

#include "controls/KWViewContainer.h"

#include <string>
#include <vector>

namespace ormund {

// A message to the user as a sheet above the panel: the text in as many lines as it needs, and a
// button that closes it. The host's window stays usable.
class MessageBox : public KWViewContainer, public CControlListener {
public:
    MessageBox(KWFrame* ownFrame, const std::string& title);

    void valueChanged(CControl* sender) override;
    // Any key but a modifier closes it.
    bool onKeyDown(const CKeyEvent& event) override;
    void show(const std::string& text);

protected:
    void drawBackground(CDrawContext* context) override;

private:
    void breakLines(const std::string& text);

    std::string title;
    std::vector<std::string> lines;
    class KWButton* button;
};

} // namespace ormund
