#pragma once

#include "base/LastSeen.h"
#include "editor/ControlFactory.h"
#include "editor/EditorActions.h"
#include "editor/EditRecorder.h"
#include "editor/EngineLink.h"
#include "editor/KWEditorBase.h"
#include "editor/PageGates.h"
#include "editor/ScreenState.h"
#include "editor/ValueDispatch.h"
#include "platform/KWFileChooser.h"
#include "view/CControlListener.h"
#include "view/FrameWindow.h"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ormund {

class AboutBox;
class BitmapTable;
class CFontDesc;
class KWControl;
class KWDisplay;
class KWOptionMenu;
class KWUniClient;
class Browser;
class FileSheet;
class MessageBox;
class QuestionLine;
class UndoButton;
class UndoList;

// The plug-in's window. It holds no musical state: the controls read the engine through pointers
// and this class writes it through setParameter. The engine never calls it; it looks at the engine
// once an idle. Screen thread alone.
class KWUniClientEditor : public KWEditorBase, public CControlListener, private EditorActions {
public:
    explicit KWUniClientEditor(KWUniClient& engine);
    ~KWUniClientEditor() override;

    bool getRect(ERect** answer) override;
    bool fitInto(int& fittedWidth, int& fittedHeight, bool takes) override;
    bool open(void* parent) override;
    // As open, in a window that is given: memory, for tests and pictures.
    bool openIn(std::unique_ptr<FrameWindow> window);
    void close() override;
    void idle() override;
    bool onKeyDown(VstKeyCode& key) override;
    bool onKeyUp(VstKeyCode& key) override;

    void valueChanged(CControl* control) override;
    void controlBeginEdit(CControl* control) override;
    void controlEndEdit(CControl* control) override;

    bool frameKeyDown(const CKeyEvent& event) override;

    const KWSystemInfo* getTimingContext() const override;
    KWUniClient& getEngine() const { return engine; }
    // The control of a tag while the window is open; null for none.
    KWControl* getControl(int tag) const;
    const PageGates& getPages() const { return pages; }

private:
    struct FollowingMenu {
        KWOptionMenu* menu;
        const Crossing<float>* source;
        int shown;
    };

    // Where a step view looks for the step to mark as running.
    struct RunningCell {
        Crossing<float>* cell;
        ScreenLane lane;
    };

    // KWUniClientEditorBuild.cpp
    bool openFrame(void* parent, std::unique_ptr<FrameWindow> window);
    void buildControls();
    void bindHandles();
    void raiseMarkers();
    void bindRunningSteps();
    void bindHints();
    void bindPopups();
    void bindDragPad(KWControl& control);
    void pushPages();

    // KWUniClientEditorIdle.cpp: what is looked at once an idle
    void refresh();
    void refreshLanes();
    void refreshPages();
    void refreshMenus();
    void refreshHead();
    std::string learnText();
    void refreshMessages();
    void showLane(ScreenLane lane, float step);

    // KWUniClientEditorActions.cpp
    void showAbout() override;
    void askForMapToLoad() override;
    void askForMapToSave() override;
    void askForPresetToLoad(PresetKind kind) override;
    void askForPresetToSave(PresetKind kind) override;
    void loadPresetOfMenu(KWOptionMenu& menu, PresetKind kind) override;
    void undo() override;
    void redo() override;
    void redrawFrame() override;
    void togglePlay();
    void stepScale(int steps);
    void choosePanelScale(int index) override;
    void chooseFirstScale();
    void ask(const KWFileChooser::Request& request, KWFileChooser::Answer answer);
    void loadPreset(PresetKind kind, const std::string& path);
    std::string newPresetName(PresetKind kind) const;
    int midiBars() const;
    std::string midiFileName() const;
    void dragMidiFile();
    void askForMidiFile();

    // KWUniClientEditorDocument.cpp: the song as a document of the stand-alone program
    bool documentKey(const CKeyEvent& event);
    void refreshDocument();
    void saveSong(const std::function<void()>& then);
    void saveSongAs(const std::function<void()>& then);
    void newSong();
    // Asks first where the song has changes that lie nowhere.
    void leaveSong(const std::string& verb, const std::function<void()>& go,
        const std::function<void()>& stay);
    std::string songName() const;

    KWUniClient& engine;
    EngineLink link;
    ValueDispatch dispatch;
    EditRecorder recorder;
    KWFileChooser chooser;
    PageGates pages;
    ScreenState screen;
    Desktop desktop;
    bool desktopAsked = false;

    // From open to close.
    std::unique_ptr<BitmapTable> bitmaps;
    std::unique_ptr<ControlFactory> factory;
    std::map<int, KWControl*> controls; // by tag; the frame owns them
    std::vector<FollowingMenu> menus;
    std::vector<RunningCell> runningCells;
    MessageBox* messageBox = nullptr;
    FileSheet* fileSheet = nullptr;
    AboutBox* aboutBox = nullptr;
    KWDisplay* learnLine = nullptr;   // above the maker's name
    KWDisplay* trackNumber = nullptr; // of the mod track that is shown
    std::array<KWDisplay*, kModTracks> trackValues{};
    std::array<KWOptionMenu*, kPresetKinds> presetMenus{};
    Browser* browser = nullptr;
    QuestionLine* questionLine = nullptr;
    UndoList* undoList = nullptr;
    KWOptionMenu* scaleMenu = nullptr;
    UndoButton* undoButton = nullptr;
    UndoButton* redoButton = nullptr;
    bool isOpenNow = false;
    bool pagesShown = false; // since the opening
    bool keysTaken = false;  // a key goes to the panel rather than to the host
    std::string headText;
    int learningTag = -1; // what waited to be learned at the last idle
    int learnedIdles = 0; // so long does the line name what was learned
    unsigned shownMessage = 0;
};

} // namespace ormund
