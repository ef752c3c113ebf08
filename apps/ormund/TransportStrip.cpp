#include "apps/ormund/TransportStrip.h"

#include "panel/Look.h"
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
constexpr int kHintSize = 11;
// By Leader: to choose, and who leads now.
constexpr const char* kLeaders[] = {"own", "JACK", "MIDI clock"};
constexpr const char* kLeads[] = {"Ormund leads", "JACK leads", "clock leads"};

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
    IconButton* toStart = add<IconButton>(
        at(8, 32), this, kToStart, frame, Icon::Previous, kNeutral, KWButton::kMomentary);
    toStart->isToEnd = true;
    place = add<StripText>(at(50, 70), frame, kLeftText, look::kText);
    playButton =
        add<IconButton>(at(124, 46), this, kPlay, frame, Icon::Play, kPitch, KWButton::kTrigger);
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
    label(490, 30, "sync");
    addSync(at(522, 110));
    leads = add<StripText>(at(640, 80), frame, kLeftText, look::kTextDim);
    sendButton = add<IconButton>(
        at(724, 32), this, kSendClock, frame, Icon::MidiDrag, kPitch, KWButton::kCycle);
    status = add<StripText>(at(764, kWidth - 774), frame, kRightText, look::kTextDim);

    addHint(toStart, "to the start (Home)");
    addHint(playButton, "play or stop (Space)");
    addHint(tempo, "tempo: drag, wheel or type");
    addHint(cycleButton, "cycle these bars");
    addHint(firstBar, "first bar of the cycle");
    addHint(lastBar, "last bar of the cycle");
    addHint(sync, "what leads the song");
    addHint(sendButton, "send MIDI clock");
}

void TransportStrip::addSync(const CRect& where)
{
    sync = add<KWOptionMenu>(where, this, kSync, frame, "",
        KWOptionMenu::kShowCurrent | KWOptionMenu::kAlignLeft | KWOptionMenu::kCheckCurrent);
    for (const char* leader : kLeaders)
        sync->addEntry(leader);
    sync->fontSize = kMenuRow;
    sync->listBackColor = look::kMenu;
    sync->listTextColor = look::kText;
    sync->selectedBackColor = look::kNeutral;
    sync->selectedTextColor = look::kInk;
    sync->separatorColor = look::kHairline;
    sync->frameColor = look::kMenuFrame;
    sync->textColor = look::kText;
    sync->backColor = look::kWell;
    sync->style = KWControl::kFillBackground;
    sync->arrowBitmap = arrow;
    sync->checkBitmap = check;
    sync->textOffset = 4;
}

// Over the panel below: the row has no room for it.
void TransportStrip::addHint(KWControl* control, const char* text)
{
    constexpr int kHintWidth = 180;
    constexpr int kHintHeight = 18;
    const int left = std::min(control->getViewSize().left, kWidth - kHintWidth);
    auto* hint = add<KWDisplay>(CRect{left, kHeight, left + kHintWidth, kHeight + kHintHeight},
        this, 0, frame, text, false);
    hint->backColor = look::kMenu;
    hint->textColor = look::kText;
    hint->fontSize = kHintSize;
    hint->setMouseEnabled(false);
    control->addHoverView(hint);
    hints.push_back(hint);
}

void TransportStrip::idle()
{
    LiveHost& host = player.effect();
    const bool plays = player.isPlaying();
    playButton->show(plays, plays ? Icon::Stop : Icon::Play);
    // One play button: the panel's, unless that shows what keys play.
    if (playButton->shown == player.panelPlaysTransport()) {
        playButton->setVisible(!playButton->shown);
        frame->invalidRect(playButton->getViewSize());
    }
    place->setText(placeText(host.position()));
    tempo->show(std::round(host.tempo() * 10) / 10);
    const SongSync& song = host.sync();
    if (const auto leader = static_cast<int>(song.leader());
        !sync->isOpen() && leader != static_cast<int>(sync->getValue()))
        sync->setValue(static_cast<float>(leader));
    leads->setText(std::string(kLeads[static_cast<size_t>(song.leads())]));
    sendButton->show(song.sendsClock(), Icon::MidiDrag);
    status->setText(player.soundText());
    frame->idle();
}

std::vector<CRect> TransportStrip::shownParts() const
{
    std::vector<CRect> parts = {{0, 0, kWidth, kHeight}};
    addLists(*sync, parts);
    for (const KWDisplay* hint : hints)
        if (hint->isVisible())
            parts.push_back(hint->getViewSize());
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
    case kSync:
        player.setLeader(static_cast<Leader>(static_cast<int>(sync->getValue())));
        break;
    case kSendClock:
        player.effect().sync().sendClock(isPressed);
        break;
    default:
        break;
    }
}

} // namespace ormund
