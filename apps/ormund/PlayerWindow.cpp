#include "apps/ormund/PlayerWindow.h"

#include "base/Product.h"
#include "skin/draw/AppIcon.h"

#include <cmath>

namespace ormund {

namespace {

constexpr int kIdleMs = 16;

PixelImage pixelsOf(const Image& image)
{
    PixelImage pixels;
    pixels.width = image.width();
    pixels.height = image.height();
    for (int y = 0; y < image.height(); ++y)
        pixels.pixels.insert(pixels.pixels.end(), image.row(y), image.row(y) + image.width());
    return pixels;
}

VstInt32 modifiersOf(const CKeyEvent& event)
{
    return (event.modifiers & kShift ? MODIFIER_SHIFT : 0)
        | (event.modifiers & kAlt ? MODIFIER_ALTERNATE : 0)
        | (event.modifiers & kControl ? MODIFIER_CONTROL : 0);
}

} // namespace

PlayerWindow::PlayerWindow(Player& ownPlayer)
    : player(ownPlayer), window(product::kName, TransportStrip::kWidth, TransportStrip::kHeight)
{
    if (!window.isOpen())
        return;
    window.setClass("ormund", product::kName);
    std::vector<PixelImage> icons;
    for (const int size : kIconSizes)
        icons.push_back(pixelsOf(*appIcon(size)));
    window.setIcon(icons);
    window.onKey = [this](const CKeyEvent& event, bool isPress) { key(event, isPress); };

    LiveHost& host = player.effect();
    ERect* rect = nullptr;
    host.dispatch(effEditGetRect, 0, 0, &rect);
    panelWidth = rect->right - rect->left;
    panelHeight = rect->bottom - rect->top;
    const double scale =
        CFrame::nearestScale(static_cast<double>(panelWidth) / TransportStrip::kWidth);
    panelPane = window.addPane({0, 0, 1, 1});
    stripPane = window.addPane({0, 0, 1, 1});
    strip.emplace(player, stripPane, scale, static_cast<int>(panelHeight / scale));
    setPanelSize(panelWidth, panelHeight);
    // The plug-in says during its opening, and whenever the user changes the scale, how large it
    // is.
    host.sizeWindow = [this](int width, int height) { setPanelSize(width, height); };
    host.dispatch(effEditOpen, 0, 0, panelPane);
}

PlayerWindow::~PlayerWindow()
{
    if (!window.isOpen())
        return;
    player.effect().sizeWindow = nullptr;
    player.effect().dispatch(effEditClose);
    strip.reset();
}

void PlayerWindow::setPanelSize(int width, int height)
{
    panelWidth = width;
    panelHeight = height;
    const double scale = CFrame::nearestScale(static_cast<double>(width) / TransportStrip::kWidth);
    strip->setScale(scale);
    const auto stripHeight = static_cast<int>(std::lround(TransportStrip::kHeight * scale));
    window.setSize(width, stripHeight + height);
    window.placePane(panelPane, {0, stripHeight, width, stripHeight + height});
    window.placePane(stripPane, {0, 0, width, stripHeight + height});
    shown.clear();
}

bool PlayerWindow::run()
{
    if (!window.wait(kIdleMs)) {
        if (!window.stayOpen()) {
            player.song().keepForNextStart(); // the screen is lost
            return false;
        }
        player.song().askToClose();
    }
    player.effect().dispatch(effEditIdle);
    strip->idle();
    if (std::vector<CRect> parts = strip->shownParts(); parts != shown) {
        shown = std::move(parts);
        window.shapePane(stripPane, shown);
    }
    showTitle();
    return !player.song().mayClose();
}

void PlayerWindow::showTitle()
{
    const std::string preset = player.presetName();
    std::string wanted = player.song().isChanged() ? "*" : "";
    wanted += preset.empty() ? std::string(product::kName) : preset + " – " + product::kName;
    if (wanted == title)
        return;
    title = std::move(wanted);
    window.setTitle(title);
}

void PlayerWindow::key(const CKeyEvent& event, bool isPress)
{
    if (isPress && strip->takeKey(event))
        return;
    player.effect().dispatch(isPress ? effEditKeyDown : effEditKeyUp,
        static_cast<VstInt32>(event.character), static_cast<VstIntPtr>(event.key), nullptr,
        static_cast<float>(modifiersOf(event)));
}

} // namespace ormund
