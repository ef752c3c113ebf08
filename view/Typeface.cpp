#include "view/Typeface.h"

#include "view/CFontDesc.h"

#include <cairo.h>
#include <hb-ot.h>
#include <hb.h>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace ormund {

// The font files lie in the program as they are.
#define ORMUND_EMBED(symbol, path)                                                                 \
    __asm__(".pushsection .rodata, \"a\", @progbits\n"                                             \
            ".balign 16\n"                                                                         \
            ".globl " #symbol "\n.hidden " #symbol "\n" #symbol ":\n.incbin \"" path "\"\n"        \
            ".globl " #symbol "End\n.hidden " #symbol "End\n" #symbol "End:\n.byte 0\n"            \
            ".popsection\n");                                                                      \
    extern "C" const unsigned char symbol[] __attribute__((visibility("hidden")));                 \
    extern "C" const unsigned char symbol##End[] __attribute__((visibility("hidden")))

ORMUND_EMBED(ormundInterMedium, ORMUND_FONT_MEDIUM);
ORMUND_EMBED(ormundInterSemiBold, ORMUND_FONT_SEMI_BOLD);

namespace {

struct PlacedGlyph {
    hb_codepoint_t glyph;
    hb_position_t x; // font units
    hb_position_t y;
};

struct Line {
    std::vector<PlacedGlyph> glyphs;
    hb_position_t width = 0; // font units
};

// A glyph's outline as the calls that draw it, in font units, upwards positive.
struct OutlineStep {
    enum Kind : unsigned char { Move, Line, Curve, Close } kind;
    float p[6];
};
using Outline = std::vector<OutlineStep>;

void add(void* outline, OutlineStep step) { static_cast<Outline*>(outline)->push_back(step); }

// Goes with the module, which some hosts load and unload many times.
struct DestroyCalls {
    void operator()(hb_draw_funcs_t* calls) const { hb_draw_funcs_destroy(calls); }
};

hb_draw_funcs_t* outlineCalls()
{
    static const std::unique_ptr<hb_draw_funcs_t, DestroyCalls> calls([] {
        hb_draw_funcs_t* made = hb_draw_funcs_create();
        hb_draw_funcs_set_move_to_func(
            made,
            [](hb_draw_funcs_t*, void* outline, hb_draw_state_t*, float x, float y, void*) {
                add(outline, {OutlineStep::Move, {x, y}});
            },
            nullptr, nullptr);
        hb_draw_funcs_set_line_to_func(
            made,
            [](hb_draw_funcs_t*, void* outline, hb_draw_state_t*, float x, float y, void*) {
                add(outline, {OutlineStep::Line, {x, y}});
            },
            nullptr, nullptr);
        hb_draw_funcs_set_cubic_to_func(
            made,
            [](hb_draw_funcs_t*, void* outline, hb_draw_state_t*, float x1, float y1, float x2,
                float y2, float x, float y, void*) {
                add(outline, {OutlineStep::Curve, {x1, y1, x2, y2, x, y}});
            },
            nullptr, nullptr);
        hb_draw_funcs_set_close_path_func(
            made,
            [](hb_draw_funcs_t*, void* outline, hb_draw_state_t*, void*) {
                add(outline, {OutlineStep::Close, {}});
            },
            nullptr, nullptr);
        hb_draw_funcs_make_immutable(made);
        return made;
    }());
    return calls.get();
}

} // namespace

struct Typeface::Data {
    hb_face_t* face = nullptr;
    hb_font_t* font = nullptr;
    hb_buffer_t* buffer = nullptr;
    double unitsPerEm = 1;
    double capHeight = 0;
    double ascent = 0;
    double descent = 0;
    std::unordered_map<std::string, Line> lines;
    std::unordered_map<hb_codepoint_t, Outline> outlines;

    const Line& shape(std::string_view text);
    const Outline& outline(hb_codepoint_t glyph);
};

Typeface& Typeface::medium()
{
    static Typeface face(ormundInterMedium, ormundInterMediumEnd);
    return face;
}

Typeface& Typeface::semiBold()
{
    static Typeface face(ormundInterSemiBold, ormundInterSemiBoldEnd);
    return face;
}

Typeface& Typeface::forStyle(int txtFace) { return txtFace == kBoldFace ? semiBold() : medium(); }

Typeface::Typeface(const unsigned char* begin, const unsigned char* end)
    : data(std::make_unique<Data>())
{
    hb_blob_t* blob = hb_blob_create(reinterpret_cast<const char*>(begin),
        static_cast<unsigned>(end - begin), HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    data->face = hb_face_create(blob, 0);
    hb_blob_destroy(blob);
    data->font = hb_font_create(data->face);
    data->buffer = hb_buffer_create();
    data->unitsPerEm = hb_face_get_upem(data->face);
    hb_position_t position = 0;
    const auto metric = [&](hb_ot_metrics_tag_t which) {
        hb_ot_metrics_get_position_with_fallback(data->font, which, &position);
        return position;
    };
    data->capHeight = metric(HB_OT_METRICS_TAG_CAP_HEIGHT);
    data->ascent = metric(HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER);
    data->descent = -metric(HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER);
}

Typeface::~Typeface()
{
    hb_buffer_destroy(data->buffer);
    hb_font_destroy(data->font);
    hb_face_destroy(data->face);
}

const Line& Typeface::Data::shape(std::string_view text)
{
    // Values on the panel come and go; the words return all the time.
    constexpr size_t kMaxLines = 1500;
    std::string key(text);
    const auto known = lines.find(key);
    if (known != lines.end())
        return known->second;
    if (lines.size() >= kMaxLines)
        lines.clear();
    static const hb_feature_t kEqualDigits{
        HB_TAG('t', 'n', 'u', 'm'), 1, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END};
    hb_buffer_reset(buffer);
    hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), 0, -1);
    hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
    hb_buffer_set_script(buffer, HB_SCRIPT_LATIN);
    hb_buffer_set_language(buffer, hb_language_from_string("en", -1));
    hb_shape(font, buffer, &kEqualDigits, 1);
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* places = hb_buffer_get_glyph_positions(buffer, &count);
    Line line;
    line.glyphs.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        line.glyphs.push_back(
            {infos[i].codepoint, line.width + places[i].x_offset, places[i].y_offset});
        line.width += places[i].x_advance;
    }
    return lines.emplace(std::move(key), std::move(line)).first->second;
}

const Outline& Typeface::Data::outline(hb_codepoint_t glyph)
{
    const auto [place, isNew] = outlines.try_emplace(glyph);
    if (isNew)
        hb_font_get_glyph_shape(font, glyph, outlineCalls(), &place->second);
    return place->second;
}

void Typeface::forgetTexts()
{
    data->lines = {};
    data->outlines = {};
}

double Typeface::width(std::string_view text, double size, double tracking)
{
    const Line& line = data->shape(text);
    return line.width * size / data->unitsPerEm
        + tracking * static_cast<double>(line.glyphs.size());
}

double Typeface::capHeight(double size) const { return data->capHeight * size / data->unitsPerEm; }
double Typeface::ascent(double size) const { return data->ascent * size / data->unitsPerEm; }
double Typeface::descent(double size) const { return data->descent * size / data->unitsPerEm; }

void Typeface::addPath(
    cairo_t* context, std::string_view text, double size, double x, double y, double tracking)
{
    const double unit = size / data->unitsPerEm;
    int index = 0;
    for (const PlacedGlyph& placed : data->shape(text).glyphs) {
        const double left = x + placed.x * unit + index++ * tracking;
        const double base = y - placed.y * unit;
        const auto px = [&](float u) { return left + static_cast<double>(u) * unit; };
        const auto py = [&](float u) { return base - static_cast<double>(u) * unit; };
        for (const OutlineStep& step : data->outline(placed.glyph)) {
            const float* p = step.p;
            switch (step.kind) {
            case OutlineStep::Move:
                cairo_move_to(context, px(p[0]), py(p[1]));
                break;
            case OutlineStep::Line:
                cairo_line_to(context, px(p[0]), py(p[1]));
                break;
            case OutlineStep::Curve:
                cairo_curve_to(context, px(p[0]), py(p[1]), px(p[2]), py(p[3]), px(p[4]), py(p[5]));
                break;
            case OutlineStep::Close:
                cairo_close_path(context);
                break;
            }
        }
    }
}

} // namespace ormund
