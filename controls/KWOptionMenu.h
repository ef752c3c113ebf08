// The editor's own menu: shows a choice at rest and opens a list that is drawn in the frame. It
// scrolls, nests, and can fill itself from a folder of presets.
#pragma once

#include "controls/KWControl.h"
#include "controls/KWOptionMenuExtraCallBack.h"
#include "controls/KWScrollbarY.h"
#include "view/CFontDesc.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ormund {

class KWMenuHelper;
class KWOptionMenu;

// One word of the caller's, carried by an entry.
class KWOptionMenuUserEntry {
public:
    virtual ~KWOptionMenuUserEntry() = default;
};

class KWOptionMenuUserEntryLong : public KWOptionMenuUserEntry {
public:
    explicit KWOptionMenuUserEntryLong(long word) : value(word) { }
    long value;
};

struct KWOptionMenuEntryInfo {
    std::unique_ptr<KWOptionMenu> subMenu;
    std::unique_ptr<KWOptionMenuUserEntry> userEntry;
    std::string text;
    bool checked = false;
    bool enabled = true;
    bool isTitle = false;
};

// Screen thread only. `value` is the index of the chosen entry, and `currentEntry` agrees with it
// after a choice; a menu with sub-menus counts its choices over the whole tree instead, unless the
// tree comes from a folder. Entries own their sub-menus. After a choice each menu on the way up has
// the row of its sub-menu as current; the one reports that has a listener of its own, the innermost
// first.
class KWOptionMenu : public KWControl, public CControlListener {
public:
    enum MenuStyle : uint32_t {
        kNoText = 1u << 0,
        kShowCurrent = 1u << 1,
        kPresetMode = 1u << 3, // the list comes from a folder
        kHeaderSelectFolder = 1u << 4,
        kNestedFolders = 1u << 5,
        kStepFiles = 1u << 6, // next and previous go by files; `selectedText` stands at rest
        kHeaderSave = 1u << 7,
        kHeaderPresets = 1u << 8,
        kHeaderLoad = 1u << 11,
        kSortFiles = 1u << 12,
        kWider = 1u << 13,
        kAlignLeft = 1u << 14,
        kTextAfterArrow = 1u << 15,
        kAlternateBack = 1u << 16,
        kCheckCurrent = 1u << 19,
        kAlignRight = 1u << 20,
        kForNestedToo = 1u << 21,
        kBracketHeaders = 1u << 22,
    };
    enum ButtonTag { kNext = 10051, kPrevious = 10052, kLoad = 10053, kSave = 10054 };
    static constexpr int kMaxEntries = 1024;
    static constexpr int kMaxFiles = 128;
    // One opening of a nested menu looks at no more than this, wherever it starts.
    static constexpr size_t kMaxScannedNames = 200'000;
    static constexpr int kMaxScannedFolders = 2'000;

    KWOptionMenu(const CRect& size, CControlListener* listener, long tag, KWFrame* ownFrame,
        const char* fileExtension, uint32_t styleBits);
    ~KWOptionMenu() override;

    void draw(CDrawContext* context) override;
    bool checkUpdate(const CRect& updateRect) const override;
    CMouseEventResult onMouseDown(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseUp(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseMoved(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseEntered(const CPoint& where, int buttons) override;
    CMouseEventResult onMouseExited(const CPoint& where, int buttons) override;
    using CView::onWheel;
    bool onWheel(const CPoint& where, float distance, int buttons) override;
    void setValue(float newValue) override;
    void beginModal(int mode, const CPoint* where, long forTag) override;
    void endModal(int result) override;
    void getViewRect(CRect& rect) const override;
    void updateControl(void* context) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    void setPopupControl(KWControl* popup) override { popupControl = popup; }
    void setMenuTag(long forTag) override { menuTag = forTag; }
    virtual long getMenuTag() const { return menuTag; }
    void setMenuStep(int step) override { menuStep = step; }
    int getMenuStep() const override { return menuStep; }
    bool onKeyDown(const CKeyEvent& event) override;

    // False at kMaxEntries entries. A negative index appends, one past the end too.
    virtual bool addEntry(const char* text, int index = -1, bool isTitle = false);
    virtual bool addSubMenu(std::unique_ptr<KWOptionMenu> sub, const char* text);
    virtual bool addEntryWithUser(const char* text, int index, long user);
    // Index and text of the chosen entry, -1 and "Empty" without entries. Without `withHeaders`
    // only plain entries count: no titles, and none whose text ends in "-T".
    virtual int getCurrent(std::string& text, bool withHeaders) const;
    virtual bool setCurrent(int index, bool withHeaders);
    virtual bool getEntryText(int index, std::string& text) const;
    virtual bool setEntryText(int index, const char* text);
    virtual bool removeEntry(int index);
    virtual void removeAllEntries();
    virtual int getEntryCount() const { return static_cast<int>(entries.size()); }
    virtual int findEntry(const char* text) const;
    virtual void setEntryChecked(int index, bool checked);
    virtual void setEntryEnabled(int index, bool enabled);
    virtual void checkOnly(int index);
    virtual bool isEntryChecked(int index) const;
    // In preset mode the file of the current choice, with nested folders through the open branch;
    // before any choice the default folder.
    virtual bool getPresetPath(std::string& out, const char* fileExtension) const;

    void valueChanged(CControl* sender) override;

    // Fills the menu from a folder: its headers, then its files and, nested, its sub-folders.
    void scanFolder(const char* folder, const char* fileExtension);
    // A folder from elsewhere below the rows that are there.
    void addFolder(const std::string& folder, const std::string& name);
    int headerCount() const;
    // Choices counted over the whole tree, depth first: no titles, no rows that hold a sub-menu.
    int getLeafCount() const;
    int getLeaf() const;
    bool setLeaf(int leaf);
    KWOptionMenu* getSubMenu(int index) const;
    long getUserWord(int index, long fallback = 0) const;
    bool isOpen() const { return open; }
    const CRect& getMenuRect() const { return menuRect; }
    CRect rowRect(int index) const;
    int rowAt(const CPoint& where) const;
    int getHoverEntry() const { return hoverEntry; }
    // Opens the list at a point, or below the control.
    void openMenu(const CPoint* where);

    std::string title;
    std::string selectedText;
    std::string alternateText;
    CColor listBackColor;
    CColor listTextColor;
    CColor selectedBackColor;
    CColor selectedTextColor;
    CColor separatorColor;
    CColor frameColor;
    CColor alternateBackColor;
    CBitmap* arrowBitmap = nullptr;
    CBitmap* checkBitmap = nullptr;
    CBitmap* listBitmap = nullptr;                // one row of the list; fixes its width
    const Crossing<float>* valueSource = nullptr; // the value to show, counted as `value` is
    std::string path;
    std::string defaultPath;
    std::string extension;
    KWOptionMenuExtraCallBack* extraCallBack = nullptr;
    // Runs at a press on the text at rest, in place of the list; the arrow behind it still opens
    // that. `restRight` is the arrow's room.
    std::function<void()> pressedText;
    std::function<void()> saveDialogue; // runs at the press of the save button
    int currentEntry = -1;
    uint32_t menuStyle;
    int topMargin = 2;
    int bottomMargin = 2;
    int leftMargin = 5;
    int rightMargin = 0;
    int fontReduction = 4;
    int textOffset = 0;
    int restFontSize = 0; // of the text at rest, pixels; 0: as in the list
    int restFontStyle = kNormalFace;
    int restRight = 0; // pixels at the right that the text leaves to the field's arrow
    bool noWheel = false;
    int minWidth = 0; // 0: no bound
    int maxWidth = 0;

protected:
    void drawHover(CDrawContext* context) const; // while the mouse is over it or its list is open

private:
    friend class KWMenuHelper;
    struct ScanBudget {
        size_t names = kMaxScannedNames;
        int folders = kMaxScannedFolders;
    };
    bool hasStyle(MenuStyle bit) const { return (menuStyle & bit) != 0; }
    bool isIndex(int index) const { return index >= 0 && index < getEntryCount(); }
    bool isHeader(int index) const { return hasStyle(kPresetMode) && index < headerCount(); }
    bool isPlain(int index) const;
    bool isChoosable(int index) const;
    KWOptionMenu* outermost();
    std::string restText() const;
    void drawRestText(CDrawContext* context, const CRect& rect) const;
    CHoriTxtAlign textAlignment() const;
    bool countsLeaves() const;
    void markCurrent(int index);
    bool stepLeaf(int steps, bool wrap);
    void childChose(const KWOptionMenu& sub);

    // KWOptionMenuList.cpp: the open list
    int textHeight() const;
    int visibleRows() const;
    int firstRow() const;
    void placeList(const CPoint& corner, const CRect* besides);
    void drawList(CDrawContext* context);
    void drawRow(CDrawContext* context, int index, const CRect& row);
    CMouseEventResult listMouseDown(const CPoint& where, int buttons);
    CMouseEventResult listMouseUp(const CPoint& where, int buttons);
    CMouseEventResult listMouseMoved(const CPoint& where, int buttons);
    bool listWheel(const CPoint& where, float distance);
    bool listKey(CKey key);
    bool covers(const CPoint& where) const;
    void hoverRow(int index);
    void revealRow(int row);
    void openSub(int index);
    void closeSub();
    void closeList();
    void take(int index);
    void takeHeader(int index);
    void invalidateList();
    CRect listArea() const;
    CRect openArea() const; // with all open sub-menus
    CRect scrollbarRectFor(const CRect& rect) const;
    int checkColumn() const;
    int widestRow() const;

    // KWOptionMenuFolder.cpp
    void addHeaders();
    void fillFromFolder(ScanBudget& budget);
    void addFolder(const std::string& folder, const std::string& name, ScanBudget& budget);
    std::vector<std::string> currentChain() const;
    void restoreChain(const std::vector<std::string>& chain);

    std::vector<KWOptionMenuEntryInfo> entries;
    std::unique_ptr<KWMenuHelper> helper;
    float scrollPosition = 0.0f;
    float scrollShare = 1.0f;
    std::unique_ptr<KWScrollbarY> scrollbar;
    CRect menuRect;
    KWOptionMenu* openSubMenu = nullptr;
    KWOptionMenu* parentMenu = nullptr;
    KWControl* popupControl = nullptr;
    CPoint openPoint;
    long menuTag = 0;
    int menuStep = -1;
    int menuWidth = 245;
    int hoverEntry = -1;
    std::optional<int> entryBeforeBranch; // while a press on a branch may still come to nothing
    bool open = false;
    bool mouseOnScrollbar = false;
    bool entryTaken = false;
    bool ignoreNextUp = false;
    bool moved = false;
    bool hovered = false;
};

} // namespace ormund
