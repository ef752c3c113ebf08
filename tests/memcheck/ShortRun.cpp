// A short life of the plug-in for valgrind: the built module through its C interface, and an
// editor in memory.
#include "apps/host/ScriptedHost.h"
#include "controls/KWFrame.h"
#include "data/parameters/Tags.h"
#include "editor/KWUniClientEditor.h"
#include "host/plugin/KWUniClient.h"
#include "panel/ControlCatalogue.h"
#include "tests/support/OwnHome.h"
#include "view/offscreen/FrameUser.h"
#include "view/offscreen/OffscreenWindow.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>

using namespace ormund;

namespace {

constexpr VstInt32 kDoor = KWUniClient::kUniqueId;
constexpr int kLoadGlobal = 1;
constexpr int kSaveGlobal = 3;

// Every key of all zones, every kind of message, every parameter that a host moves.
void touchesEverything(ScriptedHost& host)
{
    for (int key = 0; key < 128; ++key) {
        const auto number = static_cast<uint8_t>(key);
        for (const uint8_t status : std::array<uint8_t, 5>{0x90, 0xB0, 0xD0, 0xE0, 0x80})
            host.send({status, number, 64});
        host.effect()->setParameter(
            host.effect(), key % kHostParameters, static_cast<float>(key % 5) / 4);
        host.run(100);
    }
}

bool playsSavesAndLoads(const std::string& module, const OwnHome& home)
{
    ScriptedHost host;
    if (!host.load(module, {.blockSize = 100}))
        return false;
    host.start();
    host.send({0x90, 60, 100});
    host.run(22050);
    touchesEverything(host);
    std::string song = home.file("song.kwe");
    const bool saved = host.dispatch(effVendorSpecific, kDoor, kSaveGlobal, song.data()) == 1;
    const bool loaded = host.dispatch(effVendorSpecific, kDoor, kLoadGlobal, song.data()) == 1;
    void* data = nullptr;
    const auto bytes = host.dispatch(effGetChunk, 0, 0, &data);
    std::vector<char> state(static_cast<char*>(data), static_cast<char*>(data) + bytes);
    const bool given = host.dispatch(effSetChunk, 0, bytes, state.data()) == 1;
    host.setSampleRate(96000);
    host.run(9600);
    // A sum looks at every sample: one that was never written is found.
    float sum = 0;
    for (const float sample : host.left)
        sum += sample * sample;
    return saved && loaded && given && host.faults.empty() && !host.events.empty()
        && std::isfinite(sum);
}

bool showsItsWindow()
{
    auto engine = std::make_unique<KWUniClient>(nullptr);
    KWUniClientEditor editor(*engine);
    auto window = std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight);
    if (!editor.openIn(std::move(window)))
        return false;
    FrameUser user(*editor.getFrame());
    float left[512];
    float* outputs[2] = {left, left};
    for (int y = 60; y < kPanelHeight; y += 90) {
        user.wait(2000);
        user.drag({300, y}, {500, y + 20});
        engine->processReplacing(nullptr, outputs, 512);
        editor.idle();
    }
    editor.close();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const OwnHome home;
    const bool works = argc > 1 && playsSavesAndLoads(argv[1], home) && showsItsWindow();
    std::puts(works ? "it works" : "it does not work");
    return works ? 0 : 1;
}
