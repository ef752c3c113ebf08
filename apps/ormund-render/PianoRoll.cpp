#include "apps/ormund-render/PianoRoll.h"

#include "apps/ormund-render/NoteList.h"

#include <algorithm>
#include <cairo.h>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>

namespace ormund {

namespace {

struct Colour {
    double red, green, blue;
};
constexpr Colour colour(uint32_t rgb)
{
    return {(rgb >> 16 & 255) / 255.0, (rgb >> 8 & 255) / 255.0, (rgb & 255) / 255.0};
}
constexpr Colour kGround = colour(0x16181C);
constexpr Colour kRaised = colour(0x1D2026);
constexpr Colour kText = colour(0xE6E8EB);
constexpr Colour kPitch = colour(0xF2A541);
constexpr Colour kVelocity = colour(0xE4572E);
constexpr Colour kGate = colour(0x4EA5D9);
constexpr Colour kPerformance = colour(0x9B7EDE);
constexpr Colour kModulation = colour(0x3BB58F);

// Pixels.
constexpr double kWidth = 1920;
constexpr double kGutter = 132; // labels and keys
constexpr double kMargin = 28;
constexpr double kHeader = 84;
constexpr double kRuler = 24;
constexpr double kSteps = 22;
constexpr double kGap = 14;
constexpr double kVelocityHeight = 72;
constexpr double kGateHeight = 52;
constexpr double kCurveHeight = 42;
constexpr double kKeysInHeight = 64;
constexpr double kWaveHeight = 120;
constexpr double kNotesHeight = 420;
constexpr size_t kMostCurves = 9;
constexpr int kStepsPerBeat = 4;
constexpr double kFullGate = 1.0; // quarter notes that fill the gate lane
constexpr double kMostGain = 4.0; // quiet sound is drawn so much larger

constexpr const char* kNoteNames[] = {"C", "", "D", "", "E", "F", "", "G", "", "A", "", "B"};
bool isBlackKey(int pitch) { return *kNoteNames[pitch % 12] == 0; }

class Roll {
public:
    explicit Roll(const Rendering& rendering)
        : piece(rendering)
        , notes(notesOf(rendering.events, rendering.allBeats))
        , keysIn(notesOf(rendering.incoming, rendering.allBeats))
        , curves(curvesOf(rendering.events))
    {
        if (curves.size() > kMostCurves)
            curves.resize(kMostCurves);
        const double lanes = kVelocityHeight + kGateHeight + kWaveHeight + 3 * kGap
            + static_cast<double>(curves.size()) * (kCurveHeight + kGap / 2)
            + (keysIn.empty() ? 0 : kKeysInHeight + kGap);
        height = kHeader + kRuler + kSteps + kGap + kNotesHeight + kGap + lanes + kMargin;
        surface.reset(cairo_image_surface_create(
            CAIRO_FORMAT_RGB24, static_cast<int>(kWidth), static_cast<int>(height)));
        context.reset(cairo_create(surface.get()));
    }

    std::string draw(const std::string& path)
    {
        fill(kGround, 1);
        cairo_paint(cr());
        drawHeader();
        top = kHeader;
        drawRuler();
        drawSteps();
        drawNotes();
        drawVelocities();
        drawGates();
        for (const ControlCurve& curve : curves)
            drawCurve(curve);
        if (!keysIn.empty())
            drawKeysIn();
        drawWave();
        errno = 0;
        const cairo_status_t status = cairo_surface_write_to_png(surface.get(), path.c_str());
        if (status == CAIRO_STATUS_SUCCESS)
            return {};
        return "cannot write " + path + ": "
            + (errno ? std::strerror(errno) : cairo_status_to_string(status));
    }

private:
    cairo_t* cr() const { return context.get(); }
    double x(double beat) const
    {
        const double span = kWidth - kGutter - kMargin;
        return kGutter + beat / std::max(1e-6, piece.allBeats) * span;
    }
    void fill(Colour c, double alpha) const
    {
        cairo_set_source_rgba(cr(), c.red, c.green, c.blue, alpha);
    }
    void box(double left, double y, double width, double boxHeight) const
    {
        cairo_rectangle(cr(), left, y, width, boxHeight);
        cairo_fill(cr());
    }
    void roundBox(double left, double y, double width, double boxHeight, double radius) const
    {
        const double r = std::min({radius, width / 2, boxHeight / 2});
        cairo_new_sub_path(cr());
        cairo_arc(cr(), left + width - r, y + r, r, -M_PI / 2, 0);
        cairo_arc(cr(), left + width - r, y + boxHeight - r, r, 0, M_PI / 2);
        cairo_arc(cr(), left + r, y + boxHeight - r, r, M_PI / 2, M_PI);
        cairo_arc(cr(), left + r, y + r, r, M_PI, 3 * M_PI / 2);
        cairo_close_path(cr());
        cairo_fill(cr());
    }
    double write(
        const std::string& text, double left, double baseline, double size, bool bold = false) const
    {
        cairo_select_font_face(cr(), "Inter", CAIRO_FONT_SLANT_NORMAL,
            bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cr(), size);
        cairo_text_extents_t extents;
        cairo_text_extents(cr(), text.c_str(), &extents);
        cairo_move_to(cr(), left, baseline);
        cairo_show_text(cr(), text.c_str());
        return extents.x_advance;
    }
    void writeRight(const std::string& text, double right, double baseline, double size) const
    {
        cairo_select_font_face(cr(), "Inter", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
        cairo_set_font_size(cr(), size);
        cairo_text_extents_t extents;
        cairo_text_extents(cr(), text.c_str(), &extents);
        cairo_move_to(cr(), right - extents.x_advance, baseline);
        cairo_show_text(cr(), text.c_str());
    }

    // The ground of a lane with its bar lines; `top` stays at the lane's upper edge.
    void lane(const std::string& label, double laneHeight, Colour hue) const
    {
        fill(kRaised, 1);
        box(kGutter, top, kWidth - kGutter - kMargin, laneHeight);
        drawGrid(laneHeight);
        fill(hue, 1);
        roundBox(kMargin, top, 3, laneHeight, 1.5);
        fill(kText, 0.75);
        write(label, kMargin + 12, top + std::min(laneHeight / 2 + 4, 18.0), 12);
    }
    double gridSpacing() const // beats between the finest lines that can still be told apart
    {
        const double beatWidth = x(1) - x(0);
        return beatWidth > 48 ? 0.25 : beatWidth > 7 ? 1 : piece.beatsPerBar;
    }
    void drawGrid(double laneHeight) const
    {
        const double spacing = gridSpacing();
        if ((x(1) - x(0)) * piece.beatsPerBar < 3)
            return;
        const int lines = static_cast<int>((piece.allBeats + 1e-6) / spacing);
        for (int line = 0; line <= lines; ++line) {
            const double beat = line * spacing;
            const bool isBar = std::fmod(beat + 1e-6, piece.beatsPerBar) < 1e-3;
            const bool isBeat = std::fmod(beat + 1e-6, 1.0) < 1e-3;
            fill(kText, isBar ? 0.16 : isBeat ? 0.06 : 0.03);
            box(std::floor(x(beat)), top, 1, laneHeight);
        }
    }

    void drawHeader() const
    {
        fill(kPitch, 1);
        roundBox(kMargin, 30, 6, 30, 3);
        fill(kText, 1);
        const double after = kMargin + 20 + write(piece.title, kMargin + 20, 55, 30, true);
        fill(kText, 0.55);
        char line[160];
        std::snprintf(line, sizeof line, "%.4g bpm   %.4g bars   %zu notes", piece.tempo,
            piece.beats / piece.beatsPerBar, notes.size());
        write(line, after + 22, 55, 15);
        const struct {
            const char* text;
            Colour hue;
        } keys[] = {{"modulation", kModulation}, {"performance", kPerformance}, {"gate", kGate},
            {"velocity", kVelocity}, {"pitch", kPitch}};
        double right = kWidth - kMargin;
        for (const auto& key : keys) {
            fill(kText, 0.75);
            writeRight(key.text, right, 54, 13);
            cairo_text_extents_t extents;
            cairo_text_extents(cr(), key.text, &extents);
            right -= extents.x_advance + 16;
            fill(key.hue, 1);
            roundBox(right, 44, 10, 10, 3);
            right -= 18;
        }
    }

    void drawRuler()
    {
        const double barWidth = x(piece.beatsPerBar) - x(0);
        const int every = static_cast<int>(std::max(1.0, std::ceil(28 / std::max(barWidth, 0.01))));
        const int bars = static_cast<int>(std::ceil(piece.beats / piece.beatsPerBar - 1e-6));
        for (int bar = 0; bar < bars; bar += every) {
            fill(kText, 0.6);
            write(std::to_string(bar + 1), x(bar * piece.beatsPerBar) + 4, top + 15, 12);
        }
        top += kRuler;
    }

    // A cell for each step of a sixteenth, as bright as the loudest note that starts in it.
    void drawSteps()
    {
        fill(kText, 0.75);
        write("Steps", kMargin + 12, top + 15, 12);
        fill(kPitch, 1);
        roundBox(kMargin, top, 3, kSteps, 1.5);
        const int steps = static_cast<int>(std::ceil(piece.beats * kStepsPerBeat - 1e-6));
        std::vector<int> loudest(static_cast<size_t>(std::max(steps, 0)), 0);
        for (const PlayedNote& note : notes) {
            const auto step = static_cast<size_t>(note.start * kStepsPerBeat + 0.1);
            if (step < loudest.size())
                loudest[step] = std::max(loudest[step], note.velocity);
        }
        for (int step = 0; step < steps; ++step) {
            const int velocity = loudest[static_cast<size_t>(step)];
            const double left = x(step / static_cast<double>(kStepsPerBeat));
            const double width = x((step + 1) / static_cast<double>(kStepsPerBeat)) - left;
            if (velocity > 0)
                fill(kPitch, 0.25 + 0.75 * velocity / 127.0);
            else
                fill(kText, step % kStepsPerBeat == 0 ? 0.10 : 0.06);
            const double gap = width > 4 ? 1.5 : 0;
            roundBox(left + gap / 2, top, width - gap, kSteps, 3);
        }
        top += kSteps + kGap;
    }

    void drawNotes()
    {
        int low = 48;
        int high = 72;
        if (!notes.empty()) {
            const auto [lowest, highest] = std::minmax_element(notes.begin(), notes.end(),
                [](const PlayedNote& a, const PlayedNote& b) { return a.pitch < b.pitch; });
            low = lowest->pitch - 2;
            high = highest->pitch + 2;
            for (bool up = true; high - low < 23; up = !up)
                up ? ++high : --low;
            low = std::max(low, 0);
            high = std::min(high, 127);
        }
        const double row = kNotesHeight / (high - low + 1);
        const auto rowTop = [&](int pitch) { return top + (high - pitch) * row; };
        fill(kRaised, 1);
        box(kGutter, top, kWidth - kGutter - kMargin, kNotesHeight);
        for (int pitch = low; pitch <= high; ++pitch) {
            if (isBlackKey(pitch)) {
                fill(kGround, 0.55);
                box(kGutter, rowTop(pitch), kWidth - kGutter - kMargin, row);
            }
            fill(isBlackKey(pitch) ? colour(0x2A2E36) : colour(0xC9CDD3), 1);
            box(kGutter - 34, rowTop(pitch) + 0.5, 30, row - 1);
            if (pitch % 12 == 0) {
                fill(kText, rowTop(pitch) - top < 20 ? 0 : 0.75); // clear of the lane's own label
                writeRight(std::string("C").append(std::to_string(pitch / 12 - 1)), kGutter - 40,
                    rowTop(pitch) + row / 2 + 4, 12);
                fill(kText, 0.10);
                box(kGutter, rowTop(pitch) + row, kWidth - kGutter - kMargin, 1);
            }
        }
        fill(kPitch, 1);
        roundBox(kMargin, top, 3, kNotesHeight, 1.5);
        fill(kText, 0.75);
        write("Notes", kMargin + 12, top + 18, 12);
        drawGrid(kNotesHeight);
        for (const PlayedNote& note : notes) {
            const double left = x(note.start);
            const double width = std::max(2.5, x(note.end) - left - 1);
            fill(kPitch, 0.35 + 0.65 * note.velocity / 127.0);
            roundBox(left, rowTop(note.pitch) + 0.5, width, row - 1, 3);
            fill(colour(0xFFE0B0), 0.9);
            box(left, rowTop(note.pitch) + 1, 1.5, row - 2);
        }
        top += kNotesHeight + kGap;
    }

    void stem(double beat, double share, double laneHeight, Colour hue) const
    {
        const double size = std::clamp(share, 0.02, 1.0) * (laneHeight - 6);
        const double left = x(beat);
        fill(hue, 0.55);
        box(left, top + laneHeight - size, 2, size);
        fill(hue, 1);
        cairo_arc(cr(), left + 1, top + laneHeight - size, 2.6, 0, 2 * M_PI);
        cairo_fill(cr());
    }
    void drawVelocities()
    {
        lane("Velocity", kVelocityHeight, kVelocity);
        for (const PlayedNote& note : notes)
            stem(note.start, note.velocity / 127.0, kVelocityHeight, kVelocity);
        top += kVelocityHeight + kGap;
    }
    void drawGates()
    {
        lane("Gate time", kGateHeight, kGate);
        for (const PlayedNote& note : notes) {
            const double length = note.end - note.start;
            const double size = std::clamp(length / kFullGate, 0.04, 1.0) * (kGateHeight - 6);
            const double width = std::max(2.0, std::min(x(length) - x(0), x(0.25) - x(0) - 2));
            fill(kGate, 0.45);
            roundBox(x(note.start), top + kGateHeight - size, width, size, 2);
        }
        top += kGateHeight + kGap;
    }

    void drawCurve(const ControlCurve& curve)
    {
        const Colour hue = curve.isBend ? kPerformance : kModulation;
        lane(curve.label, kCurveHeight, hue);
        const double rest = curve.isBend ? 0.5 : 0.0;
        const auto y = [&](double value) { return top + 3 + (1 - value) * (kCurveHeight - 6); };
        double value = curve.isBend ? 0.5 : static_cast<double>(curve.points.front().value);
        cairo_new_path(cr());
        cairo_move_to(cr(), x(0), y(rest));
        cairo_line_to(cr(), x(0), y(value));
        for (const ControlPoint& point : curve.points) {
            cairo_line_to(cr(), x(point.beat), y(value));
            value = static_cast<double>(point.value);
            cairo_line_to(cr(), x(point.beat), y(value));
        }
        cairo_line_to(cr(), x(piece.allBeats), y(value));
        cairo_line_to(cr(), x(piece.allBeats), y(rest));
        fill(hue, 0.25);
        cairo_fill_preserve(cr());
        fill(hue, 0.9);
        cairo_set_line_width(cr(), 1.2);
        cairo_stroke(cr());
        top += kCurveHeight + kGap / 2;
    }

    void drawKeysIn()
    {
        lane("Keys in", kKeysInHeight, kPerformance);
        int low = 127;
        int high = 0;
        for (const PlayedNote& key : keysIn) {
            low = std::min(low, key.pitch);
            high = std::max(high, key.pitch);
        }
        const double row = std::min(8.0, (kKeysInHeight - 8) / (high - low + 1));
        for (const PlayedNote& key : keysIn) {
            fill(kPerformance, 0.5 + 0.5 * key.velocity / 127.0);
            const double width = std::max(3.0, x(key.end) - x(key.start) - 1);
            roundBox(
                x(key.start), top + 4 + (high - key.pitch) * row, width, std::max(4.0, row - 1), 2);
        }
        top += kKeysInHeight + kGap;
    }

    void drawWave()
    {
        lane("Sound", kWaveHeight, kText);
        const double middle = top + kWaveHeight / 2;
        const double gain =
            std::min(kMostGain, 1 / std::max(1e-6, static_cast<double>(piece.highest)));
        const double reach = (kWaveHeight / 2 - 4) * gain;
        const double span = kWidth - kGutter - kMargin;
        const auto columns = static_cast<size_t>(span);
        for (size_t column = 0; column < columns && !piece.peaks.empty(); ++column) {
            const size_t from = column * piece.peaks.size() / columns;
            const size_t to = std::max(from + 1, (column + 1) * piece.peaks.size() / columns);
            WavePeak peak;
            for (size_t i = from; i < std::min(to, piece.peaks.size()); ++i) {
                peak.low = std::min(peak.low, piece.peaks[i].low);
                peak.high = std::max(peak.high, piece.peaks[i].high);
            }
            const double high = static_cast<double>(peak.high) * reach;
            const double low = static_cast<double>(-peak.low) * reach;
            fill(kText, 0.72);
            box(kGutter + static_cast<double>(column), middle - high, 1, std::max(1.0, high + low));
        }
        char level[48] = "silent";
        if (piece.highest > 0)
            std::snprintf(level, sizeof level, "peak %.1f dB",
                20 * std::log10(static_cast<double>(piece.highest)));
        fill(kText, 0.55);
        write(level, kMargin + 12, top + 36, 11);
        top += kWaveHeight;
    }

    struct Destroy {
        void operator()(cairo_surface_t* s) const { cairo_surface_destroy(s); }
        void operator()(cairo_t* c) const { cairo_destroy(c); }
    };
    const Rendering& piece;
    std::vector<PlayedNote> notes;
    std::vector<PlayedNote> keysIn;
    std::vector<ControlCurve> curves;
    double height = 0;
    double top = 0;
    std::unique_ptr<cairo_surface_t, Destroy> surface;
    std::unique_ptr<cairo_t, Destroy> context;
};

} // namespace

std::string drawPianoRoll(const Rendering& rendering, const std::string& path)
{
    return Roll(rendering).draw(path);
}

} // namespace ormund
