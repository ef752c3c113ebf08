// Shows every control in a window, or plays a script on them and writes pictures.
#include "apps/controls-gallery/Gallery.h"
#include "apps/controls-gallery/Script.h"
#include "apps/options/CommandLine.h"
#include "view/x11/HostWindow.h"

#include <cmath>
#include <fstream>
#include <iostream>

using namespace ormund;

namespace {

constexpr int kIdleMs = 16;

int showWindow(double scale)
{
    HostWindow host("Ormund controls", Gallery::kWidth, Gallery::kHeight);
    if (!host.isOpen()) {
        std::cerr << "There is no X server.\n";
        return 1;
    }
    Gallery gallery(host.handle());
    if (scale > 0)
        gallery.frame().setScale(scale);
    const double shown = gallery.frame().getScale();
    host.setSize(static_cast<int>(std::lround(Gallery::kWidth * shown)),
        static_cast<int>(std::lround(Gallery::kHeight * shown)));
    while (host.wait(kIdleMs))
        gallery.idle();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    CommandLine line("Every control of the editor on one sheet", "controls-gallery");
    std::string script;
    std::string png;
    double scale = 0;
    line.text("--script", script, "Play this file instead of showing a window", "FILE");
    line.text("--png", png, "Write a picture instead of showing a window", "FILE");
    line.number("--scale", scale, "1, 1.5, 2 or 3; the desktop's setting otherwise", "N", {1, 3});
    if (const auto end = line.parse(argc, argv))
        return *end;
    if (script.empty() && png.empty())
        return showWindow(scale);

    Gallery gallery(nullptr);
    gallery.isPlaying = false;
    if (scale > 0)
        gallery.frame().setScale(scale);
    if (!script.empty()) {
        std::ifstream file(script);
        std::string error;
        if (!file || !playScript(gallery, file, error)) {
            std::cerr << (file ? error : script + " cannot be read") << '\n';
            return 1;
        }
    }
    if (!png.empty() && !writeGalleryPng(gallery, png)) {
        std::cerr << png << " cannot be written\n";
        return 1;
    }
    return 0;
}
