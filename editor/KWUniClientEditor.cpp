#include "editor/KWUniClientEditor.h"

#include "controls/KWFrame.h"
#include "editor/BitmapTable.h"
#include "editor/Browser.h"
#include "host/plugin/KWUniClient.h"
#include "platform/Messages.h"
#include "view/CFontDesc.h"

namespace ormund {

KWUniClientEditor::KWUniClientEditor(KWUniClient& ownEngine)
    : KWEditorBase(&ownEngine, kPanelWidth, kPanelHeight)
    , engine(ownEngine)
    , link(ownEngine)
    , dispatch(link, *this)
    , recorder(ownEngine)
{
    setScale(link.storedPanelScale().value_or(1));
}

KWUniClientEditor::~KWUniClientEditor() { close(); }

const KWSystemInfo* KWUniClientEditor::getTimingContext() const { return &engine.info; }

KWControl* KWUniClientEditor::getControl(int tag) const
{
    const auto found = controls.find(tag);
    return found == controls.end() ? nullptr : found->second;
}

bool KWUniClientEditor::open(void* parent)
{
    engine.library.beginAutosave(); // what has a window is worked on
    return openFrame(parent, nullptr);
}

bool KWUniClientEditor::openIn(std::unique_ptr<FrameWindow> window)
{
    return openFrame(nullptr, std::move(window));
}

bool KWUniClientEditor::getRect(ERect** answer)
{
    chooseFirstScale();
    return KWEditorBase::getRect(answer);
}

void KWUniClientEditor::close()
{
    if (!isOpenNow)
        return;
    frame->letGo();
    isOpenNow = false;
    pagesShown = false;
    removeMessageViewer();
    chooser.cancel();
    menus.clear();
    runningCells.clear();
    controls.clear();
    messageBox = nullptr;
    fileSheet = nullptr;
    browser = nullptr;
    questionLine = nullptr;
    undoList = nullptr;
    scaleMenu = nullptr;
    undoButton = nullptr;
    redoButton = nullptr;
    freeFrame();
    factory.reset();
    bitmaps.reset();
    AEffGUIEditor::close();
}

void KWUniClientEditor::idle()
{
    if (!frame) {
        engine.library.runDeferred(); // hosts call idle for closed windows too
        recorder.watch();
        return;
    }
    refresh();
    if (engine.screen.redraw.isRaised()) {
        engine.screen.redraw.lower();
        frame->invalidAll();
    }
    frame->idle();
    AEffGUIEditor::idle();
}

void KWUniClientEditor::valueChanged(CControl* control)
{
    const ControlRow* row = findControl(int(control->getTag()));
    if (row && (row->action == Action::Undo || row->action == Action::Redo)) {
        dispatch.valueChanged(*control); // no gesture of its own: it moves among them
        return;
    }
    const EditGesture gesture(
        recorder, row ? scopeOf(*row) : EditScope::None, row ? editedTag(*row) : -1);
    dispatch.valueChanged(*control);
}

void KWUniClientEditor::controlBeginEdit(CControl* control)
{
    const int tag = int(control->getTag());
    const ControlRow* row = findControl(tag);
    recorder.begin(row ? scopeOf(*row) : EditScope::None, row ? editedTag(*row) : -1);
    link.beginEdit(tag);
}

void KWUniClientEditor::controlEndEdit(CControl* control)
{
    link.endEdit(int(control->getTag()));
    recorder.end();
}

// ---- the keyboard ----

bool KWUniClientEditor::onKeyDown(VstKeyCode& key)
{
    constexpr int kPlayKey = 41; // F2: it plays even where the host keeps the space bar to itself
    if (key.virt == kPlayKey) {
        togglePlay();
        return true;
    }
    if (!frame)
        return false;
    CKeyEvent event;
    event.character = char32_t(key.character > 0 ? key.character : 0);
    event.key = CKey(key.virt);
    event.modifiers = (key.modifier & MODIFIER_SHIFT ? kShift : 0)
        | (key.modifier & MODIFIER_ALTERNATE ? kAlt : 0)
        | (key.modifier & (MODIFIER_CONTROL | MODIFIER_COMMAND) ? kControl : 0);
    keysTaken = frame->windowKeyDown(event);
    return keysTaken;
}

bool KWUniClientEditor::onKeyUp(VstKeyCode& /*key*/) { return keysTaken; }

bool KWUniClientEditor::frameKeyDown(const CKeyEvent& event)
{
    if (documentKey(event))
        return true;
    const bool control = (event.modifiers & kControl) != 0;
    const char32_t letter = event.character | 0x20;
    if (control && letter == 'z') {
        event.modifiers& kShift ? redo() : undo();
        return true;
    }
    if (control && letter == 'y') {
        redo();
        return true;
    }
    if (control && (event.character == '+' || event.character == '=' || event.character == '-')) {
        stepScale(event.character == '-' ? -1 : 1);
        return true;
    }
    if (event.key == CKey::Escape && link.learnTag() >= 0) {
        link.setLearnTarget(-1, 0);
        return true;
    }
    if (event.character == '/' && !control && browser) {
        browser->show();
        return true;
    }
    if (event.key == CKey::Space || event.character == ' ') {
        if (!event.isRepeat)
            togglePlay();
        return true;
    }
    return false;
}

} // namespace ormund
