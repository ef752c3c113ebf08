#include "apps/ormund-manual/PanelPictures.h"

#include "controls/KWFrame.h"
#include "data/state/DetachedSong.h"
#include "data/state/StateWriter.h"
#include "editor/KWUniClientEditor.h"
#include "host/plugin/KWUniClient.h"
#include "host/plugin/WrapperPort.h"
#include "panel/ControlCatalogue.h"
#include "presets/BankSource.h"
#include "view/offscreen/FrameUser.h"
#include "view/offscreen/OffscreenWindow.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <stdexcept>

namespace ormund {

namespace {

constexpr double kRate = 44100;
constexpr int kFramesAnIdle = 1470;

// A transport that rolls from the start.
class Transport final : public WrapperPort {
public:
    Transport()
    {
        time.sampleRate = kRate;
        time.tempo = 120;
        time.flags = kVstPpqPosValid | kVstTempoValid | kVstTransportPlaying;
    }
    const VstTimeInfo* timeRecord() override { return &time; }
    bool hasMidiOutput() const override { return false; }
    void midiOut(const VstMidiEvent&, double) override { }
    void advance(int frames) { time.ppqPos += frames * time.tempo / 60.0 / kRate; }

private:
    VstTimeInfo time{};
};

// A part of the panel: what encloses these controls, and as much around them as holds the words
// that are printed beside them.
struct Part {
    const char* name;
    std::initializer_list<int> tags;
    int left, right, above; // panel pixels; as much below as above
};

// Controls at the corners of each part.
const Part kParts[] = {
    // clang-format off
    {"top",         {565, 557, 466, 558, kPanelScaleTag, 547}, 10, 4, 7},
    {"pitch",       {0, 365, 388, 395, 396},             22,  4,  2},
    {"velocity",    {375, 501, 413, 420},                 3,  4,  3},
    {"gate",        {kMidiDragTag, 506, 428, 427},       10,  4,  3},
    {"performance", {524, 511, 464, 526},                 8,  4,  3},
    {"modulation",  {80, 37, 264, 258, 88},               6,  4,  3},
    {"global",      {538, 359},                          50, 10,  2},
    {"keyboard",    {551, 548, 578},                     34, 10,  2},
    {"setup",       {516},                                0,  0,  0},
    {"synth",       {516},                                0,  0,  0},
    {"actions",     {5, 6, 8, 16, 12},                    6,  1,  6},
    {"song",        {319, 357, 346, 349},                36, 20,  3},
    {"map",         {375, 374, 378},                      3,  4,  4},
    {"export",      {kMidiDragTag, 581},                 10, 10, 14},
    // clang-format on
};

const Part& partNamed(const std::string& name)
{
    for (const Part& part : kParts)
        if (name == part.name)
            return part;
    throw std::runtime_error("no part of the panel is called " + name);
}

const ControlRow& rowOf(int tag)
{
    if (const ControlRow* row = findControl(tag))
        return *row;
    throw std::runtime_error("no control has the tag " + std::to_string(tag));
}

CPoint middleOf(int tag)
{
    const Place& place = rowOf(tag).place;
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

CRect rectOf(const Part& part)
{
    CRect all;
    for (const int tag : part.tags) {
        const Place& place = rowOf(tag).place;
        all.unite({place.left, place.top, place.right, place.bottom});
    }
    return {std::max(all.left - part.left, 0), std::max(all.top - part.above, 0),
        std::min(all.right + part.right, kPanelWidth),
        std::min(all.bottom + part.above, kPanelHeight)};
}

cairo_status_t append(void* closure, const unsigned char* bytes, unsigned int count)
{
    auto& png = *static_cast<std::vector<unsigned char>*>(closure);
    png.insert(png.end(), bytes, bytes + count);
    return CAIRO_STATUS_SUCCESS;
}

class Camera {
public:
    Camera(const std::string& song, const std::string& presets)
    {
        engine.setWrapperPort(&transport);
        engine.setSampleRate(float(kRate));
        load(song, presets);
        engine.resume();
        auto ownWindow = std::make_unique<OffscreenWindow>(kPanelWidth, kPanelHeight);
        window = ownWindow.get();
        editor.setScale(kPictureScale);
        editor.openIn(std::move(ownWindow));
        user = std::make_unique<FrameUser>(*editor.getFrame());
        play(60);
    }

    void set(int tag, float value)
    {
        engine.setParameter(tag, value);
        play(2);
    }

    // Lets music and window run for so many idle calls.
    void play(int idles)
    {
        std::array<float, kFramesAnIdle> left{}, right{};
        float* outputs[] = {left.data(), right.data()};
        for (int i = 0; i < idles; ++i) {
            engine.processBlock(outputs, kFramesAnIdle);
            transport.advance(kFramesAnIdle);
            editor.idle();
        }
    }

    void rest(const CPoint& where)
    {
        user->wait(2000);
        user->move(where);
        play(6);
    }
    void click(const CPoint& where, int button = kLButton)
    {
        rest(where);
        user->click(where, button);
        play(3);
    }

    PanelPicture take(CRect rect)
    {
        editor.getFrame()->repaint();
        cairo_surface_t* image = window->image();
        cairo_surface_flush(image);
        cairo_surface_t* cut = cairo_surface_create_for_rectangle(image, rect.left * kPictureScale,
            rect.top * kPictureScale, rect.width() * kPictureScale, rect.height() * kPictureScale);
        // A picture of its own: the encoder would write the whole image otherwise.
        cairo_surface_t* own = cairo_image_surface_create(
            CAIRO_FORMAT_RGB24, rect.width() * kPictureScale, rect.height() * kPictureScale);
        cairo_t* context = cairo_create(own);
        cairo_set_source_surface(context, cut, 0, 0);
        cairo_paint(context);
        PanelPicture picture{rect.width(), rect.height(), {}};
        cairo_surface_write_to_png_stream(own, append, &picture.png);
        cairo_destroy(context);
        cairo_surface_destroy(own);
        cairo_surface_destroy(cut);
        return picture;
    }
    PanelPicture take(const std::string& part) { return take(rectOf(partNamed(part))); }
    PanelPicture takeAll() { return take(CRect(0, 0, kPanelWidth, kPanelHeight)); }

private:
    void load(const std::string& source, const std::string& presets)
    {
        const auto song = std::make_unique<DetachedSong>();
        std::string error;
        if (!readBankSource(source, presets, *song, error))
            throw std::runtime_error(error);
        song->position.names[size_t(PresetKind::Global)] = "Slow tide";
        KWChunk chunk;
        writeState(chunk, song->parts, PresetKind::Global);
        std::vector<uint32_t> words(chunk.words().begin(), chunk.words().end());
        engine.setChunk(words.data(), VstInt32(words.size() * sizeof(uint32_t)), false);
    }

    Transport transport;
    KWUniClient engine{nullptr};
    KWUniClientEditor editor{engine};
    OffscreenWindow* window = nullptr;
    std::unique_ptr<FrameUser> user;
};

constexpr CPoint kNowhere(770, 8); // nothing answers the mouse there

} // namespace

std::map<std::string, PanelPicture> takePanelPictures(
    const std::string& song, const std::string& presets)
{
    std::map<std::string, PanelPicture> pictures;
    Camera camera(song, presets);
    camera.set(Tag::LoopbarMode, 1.0f);
    camera.set(Tag::TriggerMode, 1.0f);

    camera.set(Tag::Page, 0.0f);
    camera.rest(middleOf(Tag::Swing));
    pictures["panel"] = camera.takeAll();
    pictures["top"] = camera.take("top");
    camera.rest(kNowhere);
    for (const char* part : {"pitch", "velocity", "gate", "performance", "modulation", "global",
             "keyboard", "setup", "song", "map", "export"})
        pictures[part] = camera.take(part);

    // The keys of the second mode.
    camera.set(Tag::KeyboardModeSecond, 1.0f);
    pictures["keyboard-4"] = camera.take("keyboard");
    camera.set(Tag::KeyboardModeSecond, 0.0f);

    camera.set(Tag::Looper, 1.0f);
    camera.rest(middleOf(Tag::Looper));
    pictures["actions"] = camera.take("actions");
    camera.set(Tag::Looper, 0.0f);

    camera.set(Tag::Page, 1.0f);
    camera.rest(kNowhere);
    pictures["synth"] = camera.take("synth");

    // What opens over the panel.
    const Place& chords = rowOf(Tag::Chord).place;
    const CPoint onChords(chords.left + 9, (chords.top + chords.bottom) / 2);
    camera.click(onChords);
    pictures["chords"] =
        camera.take(CRect(chords.left - 8, chords.top - 108, chords.left + 260, chords.bottom + 6));
    camera.click(kNowhere);

    const Place& pitch = rowOf(Tag::Pitch).place;
    const CPoint onStep(pitch.left + 4 * 18 + 9, pitch.top + 30);
    camera.click(onStep, kRButton);
    pictures["learn"] =
        camera.take(CRect(pitch.left - 8, pitch.top - 12, pitch.left + 260, pitch.bottom + 40));
    camera.click(kNowhere);

    const Place& presetMenu = rowOf(466).place;
    camera.click({presetMenu.right - 6, presetMenu.top + 8});
    pictures["presets"] =
        camera.take(CRect(presetMenu.left - 40, 4, presetMenu.right + 60, presetMenu.bottom + 132));
    camera.click(kNowhere);

    camera.click(middleOf(547));
    const Place& about = rowOf(kAboutTag).place;
    pictures["about"] =
        camera.take(CRect(about.left - 8, about.top - 8, about.right + 12, about.bottom + 12));
    return pictures;
}

} // namespace ormund
