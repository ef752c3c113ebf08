// Opens the module's window as a host does, plays, turns its pages with a real mouse and writes
// what the screen shows. Run it on a display of its own: tools/screenshots does.
//
//     ormund-screenshots MODULE FOLDER SCALE PRESET
//
// SCALE is in percent, 100 or 200; the pictures are FOLDER/panel-NAME@1x.png or @2x.

#include "apps/host/ScriptedHost.h"
#include "data/library/PanelScaleKey.h"
#include "platform/KeyValueStore.h"
#include "platform/UserPlaces.h"

#include <cairo.h>
#include <X11/extensions/XTest.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

using namespace ormund;

namespace {

constexpr int kPanelWidth = 1001;
constexpr int kPanelHeight = 695;
constexpr int kFramesAnIdle = 44100 / 30;

// The tags that the tour turns by hand.
constexpr int kModSelect = 80;
constexpr int kTriggerMode = 325;
constexpr int kPage = 518;

class Tour {
public:
    Tour(const std::string& outFolder, int percent) : folder(outFolder), scale(percent / 100.0) { }
    ~Tour()
    {
        if (host.effect())
            host.dispatch(effEditClose);
        host.close();
        if (display)
            XCloseDisplay(display);
    }

    bool open(const std::string& module, std::string preset)
    {
        display = XOpenDisplay(nullptr);
        if (!display || !host.load(module, {})) {
            std::fprintf(
                stderr, "ormund-screenshots: %s\n", display ? host.error().c_str() : "no display");
            return false;
        }
        window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, scaled(kPanelWidth),
            scaled(kPanelHeight), 0, 0, 0);
        XMapWindow(display, window);
        XSync(display, False);
        host.keepOutput = false;
        host.dispatch(effEditOpen, 0, 0, reinterpret_cast<void*>(window)); // NOLINT
        constexpr VstInt32 kScript = 0x4B574F52;
        constexpr VstIntPtr kLoadGlobal = 1;
        host.dispatch(effVendorSpecific, kScript, kLoadGlobal, preset.data());
        set(kTriggerMode, 1.0f);
        set(kPage, 0.0f);
        host.start();
        play(45);
        return true;
    }

    void set(int tag, float value) { host.effect()->setParameter(host.effect(), tag, value); }

    // Lets music and window run for so many idle calls.
    void play(int idles)
    {
        for (int i = 0; i < idles; ++i) {
            host.run(kFramesAnIdle);
            host.dispatch(effEditIdle);
            std::this_thread::sleep_for(std::chrono::milliseconds(8));
        }
    }

    void moveTo(int x, int y)
    {
        XTestFakeMotionEvent(display, -1, int(x * scale), int(y * scale), 0);
        XSync(display, False);
        play(12);
    }

    void click(int x, int y, unsigned button = 1)
    {
        moveTo(x, y);
        for (const Bool down : {True, False}) {
            XTestFakeButtonEvent(display, button, down, 0);
            XSync(display, False);
            play(3);
        }
    }

    bool save(const std::string& name)
    {
        XImage* shot = XGetImage(display, DefaultRootWindow(display), 0, 0, scaled(kPanelWidth),
            scaled(kPanelHeight), AllPlanes, ZPixmap);
        if (!shot)
            return false;
        cairo_surface_t* picture =
            cairo_image_surface_create(CAIRO_FORMAT_RGB24, shot->width, shot->height);
        unsigned char* pixels = cairo_image_surface_get_data(picture);
        const int stride = cairo_image_surface_get_stride(picture);
        for (int y = 0; y < shot->height; ++y)
            for (int x = 0; x < shot->width; ++x)
                reinterpret_cast<uint32_t*>(pixels + y * stride)[x] =
                    uint32_t(XGetPixel(shot, x, y));
        cairo_surface_mark_dirty(picture);
        char suffix[32];
        std::snprintf(suffix, sizeof suffix, "@%gx.png", scale);
        const std::string path = folder + "/panel-" + name + suffix;
        const bool written =
            cairo_surface_write_to_png(picture, path.c_str()) == CAIRO_STATUS_SUCCESS;
        cairo_surface_destroy(picture);
        XDestroyImage(shot);
        std::printf("%s\n", path.c_str());
        return written;
    }

private:
    unsigned scaled(int length) const { return unsigned(std::lround(length * scale)); }

    ScriptedHost host;
    Display* display = nullptr;
    Window window = 0;
    std::string folder;
    double scale; // 1, 1.5 or 2
};

bool takeAll(Tour& tour)
{
    constexpr int kFreeX = 770, kFreeY = 8; // nothing answers the mouse there
    bool good = true;
    tour.moveTo(859, 505); // over a pad: lit, with its hint
    good &= tour.save("settings");

    tour.click(815, 67);
    tour.moveTo(826, 215);
    good &= tour.save("synth");

    tour.click(100, 545);
    tour.moveTo(130, 340);
    good &= tour.save("menu");
    tour.click(kFreeX, kFreeY);

    tour.set(kModSelect, 4.5f / 8.0f);
    tour.moveTo(450, 530);
    good &= tour.save("mod-track-5");

    tour.click(890, 30);
    tour.moveTo(kFreeX, kFreeY);
    good &= tour.save("about");
    return good;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: ormund-screenshots MODULE FOLDER SCALE PRESET\n");
        return 2;
    }
    const int percent = std::clamp(std::atoi(argv[3]), 100, 200);
    // The user's own settings stay out of it.
    std::error_code ignored;
    const std::string home = std::filesystem::temp_directory_path(ignored) / "ormund-screenshots";
    std::filesystem::create_directories(home, ignored);
    ::setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
    ::setenv("XDG_DATA_HOME", (home + "/data").c_str(), 1);
    KeyValueStore(UserPlaces::find().store).writeInt(kPanelScaleKey, percent);

    Tour tour(argv[2], percent);
    return tour.open(argv[1], argv[4]) && takeAll(tour) ? 0 : 1;
}
