// The program's window: the strip above, the plug-in's own panel below, each in a part of its own.
#pragma once

#include "apps/ormund/TransportStrip.h"
#include "view/x11/HostWindow.h"

#include <optional>

namespace ormund {

// The screen's thread.
class PlayerWindow {
public:
    explicit PlayerWindow(Player& ownPlayer);
    ~PlayerWindow();
    PlayerWindow(const PlayerWindow&) = delete;
    PlayerWindow& operator=(const PlayerWindow&) = delete;

    // False when there is no X server.
    bool isOpen() const { return window.isOpen(); }
    // Some milliseconds of the window's life. False once the user closed it.
    bool run();

private:
    void setPanelSize(int width, int height); // device pixels
    void key(const CKeyEvent& event, bool isPress);
    void showTitle();

    Player& player;
    HostWindow window;
    void* panelPane = nullptr;
    void* stripPane = nullptr;
    std::optional<TransportStrip> strip;
    int panelWidth = 0; // device pixels
    int panelHeight = 0;
    std::vector<CRect> shown; // of the strip's pane
    std::string title;
};

} // namespace ormund
