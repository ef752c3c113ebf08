#include "controls/KWFrame.h"
#include "controls/KWOptionMenu.h"
#include "editor/BitmapTable.h"
#include "editor/ControlFactory.h"
#include "editor/EngineLink.h"
#include "editor/LearnMenu.h"
#include "editor/ModeMenu.h"
#include "panel/Look.h"

namespace ormund {

namespace {

constexpr uint32_t kListStyle =
    KWOptionMenu::kShowCurrent | KWOptionMenu::kAlignLeft | KWOptionMenu::kCheckCurrent;
// Headers "Save Preset" and "Load Preset", then the folders; at rest the preset's name.
constexpr uint32_t kPresetStyle = KWOptionMenu::kPresetMode | KWOptionMenu::kNestedFolders
    | KWOptionMenu::kStepFiles | KWOptionMenu::kHeaderSave | KWOptionMenu::kHeaderLoad
    | KWOptionMenu::kHeaderPresets | KWOptionMenu::kSortFiles | KWOptionMenu::kAlignLeft
    | KWOptionMenu::kCheckCurrent;

bool isPreset(const ControlRow& row)
{
    return row.items == MenuItems::GlobalPresets || row.items == MenuItems::SynthPresets;
}

} // namespace

void ControlFactory::dress(KWOptionMenu& menu) const
{
    menu.fontSize = look::kMenuRow;
    menu.fontReduction = look::kMenuRow - look::kValueSize;
    menu.listBackColor = look::kMenu;
    menu.listTextColor = look::kText;
    menu.selectedTextColor = look::kInk;
    menu.separatorColor = look::kHairline;
    menu.frameColor = look::kMenuFrame;
    menu.textColor = look::kText;
    menu.arrowBitmap = BitmapTable::get(1094);
    menu.checkBitmap = BitmapTable::get(1096);
}

KWControl* ControlFactory::makeMenu(const ControlRow& row)
{
    if (row.items == MenuItems::TargetGroup)
        return nullptr; // made with the menu that it belongs to
    const CRect place{row.place.left, row.place.top, row.place.right, row.place.bottom};
    const char* extension = row.items == MenuItems::SynthPresets ? "kws" : "kwe";
    KWOptionMenu* menu = nullptr;
    if (row.items == MenuItems::LearnSteps)
        menu =
            new LearnMenu(place, &listener, row.tag, &frame, extension, KWOptionMenu::kAlignLeft);
    else if (row.items == MenuItems::Pictures)
        menu = new ModeMenu(place, &listener, row.tag, &frame, extension,
            KWOptionMenu::kAlignLeft | KWOptionMenu::kCheckCurrent);
    else
        menu = new KWOptionMenu(place, &listener, row.tag, &frame, extension,
            isPreset(row)                ? kPresetStyle
                : row.flags & kPopupOnly ? uint32_t(KWOptionMenu::kAlignLeft)
                                         : kListStyle);
    dress(*menu);
    menu->selectedBackColor = look::colourOf(row.hue);
    // The arrow is part of the field's picture; the low field of the scale has none.
    menu->textOffset = 1;
    menu->restRight = row.place.height() < 14 ? 0 : isPreset(row) ? 14 : 7;
    if (CBitmap* field = row.bitmap ? BitmapTable::get(row.bitmap) : nullptr)
        menu->setBackground(field);
    if (row.items == MenuItems::PanelScales) { // flat until hovered, as undo beside it
        menu->backColor = look::kHead;
        menu->textColor = look::kTextDim;
        menu->textOffset = 0;
        menu->restRight = 0;
        menu->noWheel = true; // no window changes its size by accident
    }
    if (isPreset(row)) {
        menu->title = "default"; // while no preset has a name
        if (row.items == MenuItems::GlobalPresets) {
            menu->restFontSize = look::kPresetNameSize;
            menu->restFontStyle = kBoldFace;
        }
        menu->maxWidth = 320;
        fillPresetMenu(
            *menu, row.items == MenuItems::SynthPresets ? PresetKind::Synth : PresetKind::Global);
    } else if (row.items == MenuItems::Targets) {
        for (int group = 0; group < kControllerMenus; ++group) {
            auto sub = std::make_unique<KWOptionMenu>(CRect{}, nullptr,
                kTargetSubMenuTag + 100 * row.track + group, &frame, "",
                KWOptionMenu::kCheckCurrent | KWOptionMenu::kAlignLeft);
            dress(*sub);
            sub->selectedBackColor = menu->selectedBackColor;
            const ControllerMenu& range = kControllerMenuTable[size_t(group)];
            for (int i = range.first; i <= range.last; ++i)
                sub->addEntry(std::string(controllerName(i)).c_str());
            menu->addSubMenu(std::move(sub), std::string(range.title).c_str());
        }
    } else {
        if (row.items == MenuItems::LearnSteps) {
            for (int title = 0; title < LearnMenu::kTitles; ++title)
                menu->addEntry("", -1, true);
        }
        for (const std::string& text : menuTexts(row))
            menu->addEntry(text.c_str());
    }
    return menu;
}

void ControlFactory::fillPresetMenu(KWOptionMenu& menu, PresetKind kind)
{
    menu.scanFolder(engine.presetFolder(kind).c_str(), presetKindRow(kind).extension);
    menu.selectedText = engine.presetName(kind);
    if (kind == PresetKind::Global && engine.hasRecovered())
        menu.addFolder(engine.recoveryFolder(), "Recovered");
}

} // namespace ormund
