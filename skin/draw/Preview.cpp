#include "skin/draw/Preview.h"

#include "skin/draw/Paint.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace ormund {

using namespace palette;

namespace {

// A frame of a strip at its place on the panel.
struct Placed {
    int bitmap;
    int frame;
    double x, y;
};

// ---- Typical states of the controls

constexpr Placed kAlways[] = {
    {1048, 0, 50, 19},
    {1047, 0, 829, 16},
    {1029, 0, 286, 19},
    {1111, 0, 318, 22},
    {1030, 0, 499, 19},
    {1063, 26, 26, 65},
    {1116, 0, 68, 100},
    {1027, 0, 56, 100},
    {1028, 0, 145, 100},
    {1035, 0, 60, 122},
    {1036, 0, 106, 122},
    {1038, 0, 7, 150},
    {1037, 0, 82, 150},
    {1135, 0, 42, 381},
    {1136, 0, 12, 450},
    {1034, 3, 8, 210},
    {1034, 0, 8, 230},
    {1050, 0, 14, 305},
    {1139, 0, 57, 489},
    {1112, 3, 14, 333},
    {1110, 7, 60, 317},
    {1061, 2, 20, 481},
    {1033, 0, 10, 571},
    {1031, 3, 135, 489},
    {1032, 3, 135, 562},
    {1025, 0, 57, 540},
    {1115, 0, 68, 538},
    {1026, 0, 140, 540},
    {1053, 0, 57, 596},
    {1054, 0, 81, 596},
    {1051, 0, 108, 603},
    {1052, 0, 122, 603},
    {1065, 24, 171, 597},
    {1019, 0, 194, 598},
    {1065, 100, 216, 597},
    {1039, 3, 307, 597},
    {1001, 3, 385, 600},
    {1001, 3, 825, 633},
    {1025, 0, 841, 635},
    {1114, 0, 852, 633},
    {1026, 0, 934, 635},
    {1010, 3, 834, 592},
    {1008, 0, 834, 380},
    {1009, 0, 904, 380},
    {1002, 3, 834, 431},
    {1003, 0, 904, 431},
    {1004, 2, 834, 482},
    {1005, 0, 904, 482},
    {1006, 1, 834, 533},
    {1007, 0, 904, 533},
    {1011, 24, 795, 380},
    {1011, 110, 957, 380},
    {1011, 63, 795, 431},
    {1011, 38, 957, 431},
    {1012, 90, 795, 431},
    {1045, 3, 55, 628},
    {1108, 0, 728, 646},
};

constexpr Placed kSettings[] = {
    {1117, 0, 789, 49},
    {1043, 0, 795, 56},
    {1049, 0, 862, 69},
    {1044, 3, 964, 56},
    {1097, 3, 843, 118},
    {1097, 1, 901, 118},
    {1040, 0, 843, 148},
    {1119, 15, 901, 148},
    {1041, 3, 843, 192},
    {1042, 6, 901, 192},
    {1025, 0, 844, 228},
    {1114, 0, 855, 226},
    {1026, 0, 934, 228},
    {1025, 0, 844, 288},
    {1114, 0, 855, 286},
    {1026, 0, 934, 288},
    {1091, 30, 844, 327},
};

constexpr Placed kSynth[] = {
    {1101, 0, 789, 49},
    {1043, 3, 795, 56},
    {1113, 0, 852, 61},
    {1025, 0, 841, 63},
    {1026, 0, 934, 63},
    {1044, 3, 964, 56},
    {1103, 66, 806, 90},
    {1103, 62, 852, 90},
    {1103, 105, 897, 90},
    {1103, 60, 942, 90},
    {1103, 10, 806, 139},
    {1103, 54, 852, 139},
    {1103, 84, 897, 139},
    {1103, 42, 942, 139},
    {1103, 54, 806, 201},
    {1103, 40, 852, 201},
    {1103, 76, 897, 201},
    {1103, 12, 806, 249},
    {1103, 70, 852, 249},
    {1103, 32, 897, 249},
    {1103, 52, 942, 249},
    {1103, 42, 806, 311},
    {1103, 56, 852, 311},
    {1103, 60, 897, 311},
    {1103, 40, 942, 311},
};

// Where a track's edit block begins, its lane of buttons at the right, its loop bar.
struct EditBlock {
    double x, y, right;
    bool vertical; // has shifts up and down
    int order;
    int loopHue, loopEnd;
    double loopTop;
};

constexpr EditBlock kEditBlocks[] = {
    {57, 64, 48, true, 0, 1, 15, 50},
    {57, 180, 157, true, 2, 2, 11, 159},
    {57, 283, 267, true, 1, 3, 15, 269},
    {12, 414, 377, false, 3, 4, 15, 379},
    {57, 506, 487, true, 5, 5, 31, 489},
};

class Panel {
public:
    explicit Panel(double pixels) : scale(pixels), image(std::make_unique<Image>(at(1001), at(695)))
    {
        put({1000, 0, 0, 0});
    }

    void put(const Placed& p)
    {
        drawFrame(image->get(), skinRow(p.bitmap), p.frame, scale, at(p.x), at(p.y));
    }

    void editBlock(const EditBlock& e)
    {
        put({1013, 0, e.x, e.y});
        put({1014, 0, e.x + 24, e.y});
        put({1021, 0, e.x + 47, e.y + 7});
        put({1022, 0, e.x + 65, e.y + 7});
        if (e.vertical) {
            put({1023, 0, e.x + 56, e.y - 2});
            put({1024, 0, e.x + 56, e.y + 16});
        }
        put({1015, e.order, e.x + 75, e.y});
        put({1016, 0, 763, e.right});
        put({1017, 0, 763, e.right + 20});
        put({1018, 0, 763, e.right + 40});
        for (int i = 0; i < 32; ++i) {
            const int part = i == 0 ? 1 : i < e.loopEnd ? 2 : i == e.loopEnd ? 3 : 0;
            put({1105, e.loopHue * 4 + part, step(i), e.loopTop});
        }
        put({1085, 0, step(10), e.loopTop + 4});
    }

    void tracks()
    {
        constexpr int kMelody[] = {0, 0, 2, 4, 3, 0, 7, 5, 4, 2, 0, -2, -1, 1, 2, 4};
        for (int i = 0; i < 32; ++i) {
            const double x = step(i), wave = std::sin(i * 0.45) * 0.5 + 0.5;
            const bool running = i == 10;
            put({1055, 12 + kMelody[i % 16] + i / 20, x, 59});
            put({1058, (2 + kMelody[i % 16] * 2 + 12) % 12, x, 124});
            if (i % 8 == 0)
                put({running ? 1069 : 1066, 0, x, 135});
            put({1056, i % 4 == 0 ? 58 : 20 + i * 7 % 24, x, 169});
            if (i % 11 != 5)
                put({running ? 1068 : 1067, 0, x, 235});
            const int gate = 10 + i * 7 % 31;
            put({1057, gate * 65 / 40, x, 280});
            put({1059, gate, x, 346});
            put({1064, 6 + int(wave * 58), x, 499});
            put({1060, int(wave * 127), x, 565});
            lines(i, x, running);
        }
    }

    void song()
    {
        for (int i = 0; i < 8; ++i) {
            const double x = 824 + i * 18;
            put({1105, i == 0 ? 1 : i < 3 ? 2 : i == 3 ? 3 : 0, x - 1, 650});
            if (i % 3 == 1)
                put({i == 1 ? 1083 : 1082, i, x, 665});
            if (i % 2 == 0)
                put({1080, (i * 5) % 15, x, 681});
        }
        put({1085, 0, 842, 654});
        for (int i = 0; i < 16; ++i) {
            const int look = i == 1 ? 2 : i == 4 ? 1 : i == 9 ? 3 : 0;
            const double x = 459 + i * 293 / 16;
            put({1084, look, x, 589});
            print(std::to_string(i + 1), x + 9, 602.5, look >= 2 ? kDarkInk : kBodyText, 11);
        }
    }

    void keys()
    {
        constexpr int kWhite[] = {0, 2, 4, 5, 7, 9, 11};
        constexpr int kBlack[] = {1, 3, 6, 8, 10};
        constexpr int kBlackAfter[] = {1, 2, 4, 5, 6};
        for (int i = 0; i < 56; ++i)
            key(24 + i / 7 * 12 + kWhite[i % 7], i * 12, 1099);
        for (int i = 0; i < 40; ++i) {
            const int octave = i / 5;
            key(24 + octave * 12 + kBlack[i % 5], (octave * 7 + kBlackAfter[i % 5]) * 12 - 4, 1102);
        }
        for (int octave = 0; octave < 8; ++octave)
            put({1106, 9, 55.0 + octave * 84, 646});
        constexpr double kActionKeys[] = {192, 204, 214, 216, 226, 228, 238, 240};
        for (int i = 0; i < 8; ++i)
            put({1107, i, 55 + kActionKeys[i], 646});
    }

    void print(const std::string& words, double x, double middle, const Ink& colour, double size,
        Align align = Align::Centre)
    {
        cairo_t* cr = cairo_create(image->get());
        cairo_scale(cr, scale, scale);
        Paint paint(cr, scale, 1001, 695);
        const Weight weight = size > 12 ? Weight::SemiBold : Weight::Medium;
        paint.text(words, x, middle, {size, 0, weight}, colour, align);
        cairo_destroy(cr);
    }

    std::unique_ptr<Image> take() { return std::move(image); }

private:
    static double step(int i) { return 172 + i * 18.0; }
    int at(double place) const { return int(std::floor(place * scale + 0.5)); }

    void lines(int i, double x, bool running)
    {
        const auto cell = [&](int bitmap, int value, double y) {
            if (value > 0)
                put({bitmap + (running ? 1 : 0), value - 1, x, y});
        };
        cell(1070, i % 5 == 0 ? i / 5 % 4 + 1 : 0, 389);
        cell(1072, i % 3 == 1 ? i * 2 / 3 % 20 + 1 : 0, 405);
        cell(1074, i % 4 == 0 || i > 24 ? i * 7 % 54 + 1 : 0, 421);
        cell(1076, i % 5 == 3 ? i * 3 % 18 + 1 : 0, 437);
        cell(1078, i % 2 == 1 ? i / 2 + 1 : 0, 453);
    }

    void key(int note, double x, int strip)
    {
        const int zone = note >= 36 && note < 52 ? 1
            : note >= 52 && note < 60            ? 2
            : note >= 60 && note <= 84           ? 3
                                                 : 0;
        const bool on = note == 37 || note == 71 || note == 91 || note == 74;
        put({strip, zone * 2 + (on ? 1 : 0), 55 + x, 646});
    }

    ;
    double scale;
    std::unique_ptr<Image> image;
};

} // namespace

std::unique_ptr<Image> panelPicture(double scale, Page page)
{
    Panel panel(scale);
    for (const Placed& placed : kAlways)
        panel.put(placed);
    for (const EditBlock& block : kEditBlocks)
        panel.editBlock(block);
    panel.tracks();
    panel.song();
    panel.keys();
    if (page == Page::Settings)
        for (const Placed& placed : kSettings)
            panel.put(placed);
    else
        for (const Placed& placed : kSynth)
            panel.put(placed);

    panel.print("Slow Harbour Lights", 326, 30, kText, 13, Align::Left);
    panel.print("retrigger action", 546, 29.5, kText, 11, Align::Left);
    panel.print("Dorian", 74, 106, kText, 11, Align::Left);
    panel.print("Cutoff", 74, 545.5, kText, 11, Align::Left);
    panel.print("4 Steps", 858, 640.5, kText, 11, Align::Left);
    if (page == Page::Settings) {
        panel.print("1 / 16", 861, 233.5, kText, 11, Align::Left);
        panel.print("1 / 16", 861, 293.5, kText, 11, Align::Left);
    } else {
        panel.print("Soft Reed", 858, 68.5, kText, 11, Align::Left);
    }
    constexpr int kValues[] = {81, 64, 103, 22, 0, 127, 40, 64};
    for (int track = 0; track < 8; ++track)
        panel.print(std::to_string(kValues[track]), 46, 560.5 - 10 * track,
            track == 2 ? kDarkInk : kBodyText, 9, Align::Right);
    return panel.take();
}

std::unique_ptr<Image> contactSheet(double scale)
{
    // Long strips show a choice of their frames; rows are filled from left to right.
    constexpr double kWidth = 1400, kGap = 8, kCaption = 13;
    constexpr int kMostFrames = 16;
    struct Entry {
        const SkinRow* row;
        double x, y;
    };
    std::vector<Entry> entries;
    double x = kGap, y = kGap, rowHeight = 0;
    const auto columnsOf = [&](const SkinRow& row) {
        return std::min(row.frames, int(kMostFrames));
    };
    for (const SkinRow& row : skinTable()) {
        if (row.number == kFirstBitmap)
            continue;
        const double shown = std::max(34.0, columnsOf(row) * (row.frameWidth + 3.0));
        if (x + shown > kWidth) {
            x = kGap;
            y += rowHeight + kGap;
            rowHeight = 0;
        }
        entries.push_back({&row, x, y});
        x += shown + kGap;
        rowHeight = std::max(rowHeight, row.frameHeight + kCaption);
    }
    auto sheet = std::make_unique<Image>(int(kWidth * scale), int((y + rowHeight + kGap) * scale));
    cairo_t* cr = cairo_create(sheet->get());
    cairo_scale(cr, scale, scale);
    Paint paint(cr, scale, kWidth, y + rowHeight + kGap);
    paint.rect(0, 0, kWidth, y + rowHeight + kGap, kPanel);
    for (const Entry& entry : entries)
        paint.text(std::to_string(entry.row->number), entry.x, entry.y + 5, type::kLabel, kLabel);
    cairo_destroy(cr);
    for (const Entry& entry : entries) {
        const int shown = columnsOf(*entry.row);
        for (int i = 0; i < shown; ++i) {
            const int frame = entry.row->frames > kMostFrames
                ? i * (entry.row->frames - 1) / (kMostFrames - 1)
                : i;
            drawFrame(sheet->get(), *entry.row, frame, scale,
                int((entry.x + i * (entry.row->frameWidth + 3)) * scale),
                int((entry.y + kCaption) * scale));
        }
    }
    return sheet;
}

} // namespace ormund
