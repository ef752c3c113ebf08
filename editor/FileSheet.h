// The file question as a sheet above the panel, for desktops without a dialog program: folders and
// files to choose from, a name to type where something is saved.
#pragma once

#include "controls/KWControl.h"
#include "platform/KWFileChooser.h"

#include <string>
#include <vector>

namespace ormund {

// Screen thread. The answer comes once: with the chosen path, or empty when the sheet closes in
// another way. The same promises hold for the path as a KWFileChooser gives.
class FileSheet : public KWControl {
public:
    explicit FileSheet(KWFrame* ownFrame);

    void ask(const KWFileChooser::Request& request, KWFileChooser::Answer answer);
    bool isOpen() const { return isOpenNow; }

    void draw(CDrawContext* context) override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    bool onKeyDown(const CKeyEvent& event) override;
    void endModal(int result) override;
    CRect focusRect() const override { return {}; }

    // For tests: a row's rectangle, empty when it is not shown, and the two buttons.
    CRect rowRect(int index) const;
    int findRow(const std::string& name) const;
    CRect acceptRect() const;
    CRect cancelRect() const;
    const std::string& getFolder() const { return folder; }
    const std::string& getName() const { return name; }

private:
    struct Row {
        std::string name;
        bool isFolder = false;
    };
    void enter(const std::string& newFolder);
    void select(int index);
    void activate(int index);
    void accept();
    void finish(const std::string& path);
    void setName(const std::string& newName);
    // A marked name gives way to what is typed next.
    void markName(bool marked);
    void drawRow(CDrawContext* context, int index) const;
    void drawButton(CDrawContext* context, const CRect& place, const char* text) const;
    const char* acceptText() const;
    CRect listRect() const;
    CRect nameRect() const;
    int rowAt(const CPoint& where) const;
    std::string fullPath(const std::string& file) const;

    KWFileChooser::Request asked;
    KWFileChooser::Answer continuation;
    std::string folder; // without a slash at its end
    std::string name;
    bool nameMarked = false;
    std::vector<Row> rows;
    int firstRow = 0;
    int selected = -1;
    int hovered = -1;
    CPoint pointer;
    bool mayReplace = false; // the next accept is the answer to the overwrite question
    bool isOpenNow = false;
};

} // namespace ormund
