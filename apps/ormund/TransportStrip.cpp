#include "apps/ormund/TransportStrip.h"

#include "data/library/Settings.h"
#include "panel/Look.h"
#include "platform/KWFileio.h"
#include "skin/SkinProvider.h"
#include "view/CDrawContext.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ormund {

namespace {

constexpr int kArrowBitmap = 1094;
constexpr int kCheckBitmap = 1096;
constexpr int kRow = 26; // height of a control
constexpr int kTop = (TransportStrip::kHeight - kRow) / 2;
constexpr int kMostBars = 999;
constexpr int kFirstCycleBars = 4;
constexpr int kMenuRow = 16;

constexpr CRect at(int left, int width) { return {left, kTop, left + width, kTop + kRow}; }

// The strip's own ground; what lies below it is not shown.
class Ground : public CView {
public:
    using CView::CView;
    void draw(CDrawContext* context) override
    {
        context->setFillColor(look::kPanel);
        context->fillRect(size);
        context->setFillColor(look::kHairline);
        context->fillRect(
            {size.left, TransportStrip::kHeight - 1, size.right, TransportStrip::kHeight});
        setDirty(false);
    }
};

void addLists(const KWOptionMenu& menu, std::vector<CRect>& parts)
{
    if (!menu.isOpen())
        return;
    parts.push_back(menu.getMenuRect());
    for (int i = 0; i < menu.getEntryCount(); ++i)
        if (const KWOptionMenu* sub = menu.getSubMenu(i))
            addLists(*sub, parts);
}

} // namespace

std::string placeText(double beat)
{
    constexpr int kSixteenths = 4;
    // Rounding must not show the last sixteenth of a beat that has come.
    const auto sixteenths = static_cast<long>(std::max(beat, 0.0) * kSixteenths + 1e-6);
    const long beats = sixteenths / kSixteenths;
    char text[48];
    std::snprintf(text, sizeof text, "%ld.%ld.%ld", beats / LiveHost::kBeatsPerBar + 1,
        beats % LiveHost::kBeatsPerBar + 1, sixteenths % kSixteenths + 1);
    return text;
}

TransportStrip::TransportStrip(Player& ownPlayer, void* pane, double scale, int panelHeight)
    : player(ownPlayer)
{
    SkinProvider::install();
    arrow = new CBitmap(kArrowBitmap);
    check = new CBitmap(kCheckBitmap);
    frame = new KWFrame({0, 0, kWidth, kHeight + panelHeight}, pane, this, this);
    frame->setScale(scale);
    build();
    idle();
    frame->repaint();
}

TransportStrip::~TransportStrip()
{
    frame->forget();
    arrow->forget();
    check->forget();
}

template <typename View, typename... Arguments>
View* TransportStrip::add(Arguments&&... arguments)
{
    auto* view = new View(std::forward<Arguments>(arguments)...);
    frame->addView(view);
    return view;
}

void TransportStrip::build()
{
    using palette::kGate;
    using palette::kNeutral;
    using palette::kPitch;
    add<Ground>(CRect{0, 0, kWidth, frame->getViewSize().bottom});
    const auto label = [this](int left, int width, const char* text) {
        add<StripText>(at(left, width), frame, kLeftText, look::kTextDim)->setText(text);
    };
    add<IconButton>(
        at(8, 32), this, kToStart, frame, Icon::Previous, kNeutral, KWButton::kMomentary)
        ->isToEnd = true;
    playButton =
        add<IconButton>(at(44, 48), this, kPlay, frame, Icon::Play, kPitch, KWButton::kTrigger);
    place = add<StripText>(at(104, 72), frame, kLeftText, look::kText);
    tempo = add<NumberField>(at(180, 62), this, kTempo, frame,
        NumberField::Range{LiveHost::kLowestTempo, LiveHost::kHighestTempo, 1, 1},
        player.effect().tempo());
    label(248, 40, "bpm");
    cycleButton =
        add<IconButton>(at(296, 32), this, kCycle, frame, Icon::Looper, kGate, KWButton::kCycle);
    label(338, 30, "bars");
    firstBar = add<NumberField>(
        at(368, 40), this, kFirstBar, frame, NumberField::Range{1, kMostBars, 1, 0}, 1);
    label(412, 14, "to");
    lastBar = add<NumberField>(at(428, 40), this, kLastBar, frame,
        NumberField::Range{1, kMostBars, 1, 0}, kFirstCycleBars);
    add<IconButton>(
        at(490, 26), this, kBack, frame, Icon::Previous, kNeutral, KWButton::kMomentary);
    presets = add<KWOptionMenu>(at(520, 190), this, kMenu, frame, "kwe",
        KWOptionMenu::kPresetMode | KWOptionMenu::kNestedFolders | KWOptionMenu::kStepFiles
            | KWOptionMenu::kSortFiles | KWOptionMenu::kAlignLeft | KWOptionMenu::kCheckCurrent);
    add<IconButton>(at(714, 26), this, kForth, frame, Icon::Next, kNeutral, KWButton::kMomentary);
    status = add<StripText>(at(750, kWidth - 760), frame, kRightText, look::kTextDim);

    presets->fontSize = kMenuRow;
    presets->listBackColor = look::kMenu;
    presets->listTextColor = look::kText;
    presets->selectedBackColor = look::kNeutral;
    presets->selectedTextColor = look::kInk;
    presets->separatorColor = look::kHairline;
    presets->frameColor = look::kMenuFrame;
    presets->textColor = look::kText;
    presets->backColor = look::kWell;
    presets->style = KWControl::kFillBackground;
    presets->arrowBitmap = arrow;
    presets->checkBitmap = check;
    presets->textOffset = 4;
    presets->title = "default"; // while no preset has a name
    presets->scanFolder(
        KWFileio::folderOf(Settings().presetPath(PresetKind::Global)).c_str(), "kwe");
}

void TransportStrip::idle()
{
    LiveHost& host = player.effect();
    const bool plays = player.isPlaying();
    playButton->show(plays, plays ? Icon::Stop : Icon::Play);
    place->setText(placeText(host.position()));
    tempo->show(std::round(host.tempo() * 10) / 10);
    const std::string name = player.presetName();
    if (name != presets->selectedText) {
        presets->selectedText = name;
        presets->setDirty(true);
    }
    status->setText(player.soundText());
    frame->idle();
}

std::vector<CRect> TransportStrip::shownParts() const
{
    std::vector<CRect> parts = {{0, 0, kWidth, kHeight}};
    addLists(*presets, parts);
    const double scale = frame->getScale();
    for (CRect& part : parts)
        part = {static_cast<int>(part.left * scale), static_cast<int>(part.top * scale),
            static_cast<int>(std::ceil(part.right * scale)),
            static_cast<int>(std::ceil(part.bottom * scale))};
    return parts;
}

bool TransportStrip::takeKey(const CKeyEvent& key)
{
    if (key.modifiers != 0)
        return false;
    if (key.key == CKey::Space || key.character == ' ') {
        if (!key.isRepeat)
            player.play(!player.isPlaying());
    } else if (key.key == CKey::Home)
        player.toStart();
    else
        return false;
    return true;
}

void TransportStrip::cycleChanged()
{
    if (lastBar->number() < firstBar->number())
        lastBar->show(firstBar->number());
    player.setCycle(cycleButton->getValue() >= 0.5f, static_cast<int>(firstBar->number()),
        static_cast<int>(lastBar->number()));
}

void TransportStrip::valueChanged(CControl* control)
{
    const bool isPressed = control->getValue() >= 0.5f;
    switch (control->getTag()) {
    case kToStart:
        if (isPressed)
            player.toStart();
        break;
    case kPlay:
        player.play(!player.isPlaying());
        break;
    case kTempo:
        player.setTempo(tempo->number());
        break;
    case kCycle:
    case kFirstBar:
    case kLastBar:
        cycleChanged();
        break;
    case kBack:
    case kForth:
        if (isPressed)
            player.stepPreset(control->getTag() == kBack ? -1 : 1);
        break;
    case kMenu:
        if (std::string path; presets->getPresetPath(path, "kwe"))
            player.choosePreset(path);
        break;
    default:
        break;
    }
}

} // namespace ormund
