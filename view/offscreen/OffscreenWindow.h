// A window that is memory: for tests, for screenshots, and where there is no window system.
#pragma once

#include "view/FrameWindow.h"

#include <cstdint>

namespace ormund {

class OffscreenWindow : public FrameWindow {
public:
    OffscreenWindow(int width, int height);
    ~OffscreenWindow() override;

    cairo_surface_t* image() override { return surface; }
    void present(std::span<const CRect> parts) override;
    void poll(CFrame&) override { }
    void resize(int width, int height) override;
    void setCursor(CCursor cursor) override { cursorSet = cursor; }
    bool hasFocus() const override { return focused; }
    void takeFocus() override { focused = true; }
    bool dragFiles(const std::vector<std::string>& paths) override;

    int getWidth() const;
    int getHeight() const;
    // 0xRRGGBB at a device pixel; 0 outside.
    uint32_t pixel(int x, int y) const;
    // False when the file cannot be written.
    bool writePng(const std::string& path) const;

    // What was shown by the last present, in device pixels, and how often something was.
    std::vector<CRect> presented;
    int presents = 0;
    std::vector<std::string> draggedFiles;
    CCursor cursorSet = CCursor::Arrow;
    bool focused = false;

private:
    cairo_surface_t* surface = nullptr;
};

} // namespace ormund
