// What the screen costs: a whole repaint, a repaint of what a running song changes, and an idle
// call in which nothing has changed.

#include "apps/controls-gallery/Gallery.h"
#include "controls/KWButton.h"
#include "controls/KWDisplay.h"
#include "controls/KWKnob.h"
#include "view/Typeface.h"

#include <benchmark/benchmark.h>

namespace ormund {

namespace {

double scaleOf(const benchmark::State& state) { return static_cast<double>(state.range(0)) / 2; }

// Ready to paint: every strip is there at the scale, every text has been shaped once.
void warm(Gallery& gallery, double scale)
{
    gallery.isPlaying = false;
    gallery.frame().setScale(scale);
    gallery.idle();
}

void BM_GalleryFullRepaint(benchmark::State& state)
{
    Gallery gallery(nullptr);
    warm(gallery, scaleOf(state));
    for (auto _ : state) {
        gallery.frame().invalidAll();
        gallery.frame().repaint();
    }
}

// Twenty controls spread over the sheet.
void BM_GalleryRepaintOfTwenty(benchmark::State& state)
{
    constexpr size_t kDirty = 20;
    Gallery gallery(nullptr);
    warm(gallery, scaleOf(state));
    const std::vector<CView*>& views = gallery.frame().views();
    std::vector<CView*> chosen;
    for (size_t i = 0; chosen.size() < kDirty && i < views.size(); i += 2)
        if (views[i]->isVisible())
            chosen.push_back(views[i]);
    for (auto _ : state) {
        for (CView* view : chosen)
            view->setDirty();
        gallery.frame().repaint();
    }
    state.counters["controls"] = static_cast<double>(chosen.size());
}

void BM_GalleryPlaying(benchmark::State& state)
{
    Gallery gallery(nullptr);
    warm(gallery, scaleOf(state));
    gallery.isPlaying = true;
    for (auto _ : state)
        gallery.idle();
}

// 700 controls that watch values, half of them on a page that is not shown.
void BM_IdleWithNothingChanged(benchmark::State& state)
{
    constexpr int kControls = 700;
    constexpr int kColumns = 40;
    SkinProvider skin;
    CBitmap::setProvider(&skin);
    auto* const knobStrip = new CBitmap(1065);
    Crossing<float> source = 0.5f;
    KWBitSet128 pages;
    pages.set(1, true);
    {
        KWFrame frame({0, 0, 1001, 695}, nullptr, nullptr, nullptr);
        for (int i = 0; i < kControls; ++i) {
            const CRect place{i % kColumns * 25, i / kColumns * 25, i % kColumns * 25 + 21,
                i / kColumns * 25 + 21};
            KWControl* control = nullptr;
            if (i % 3 == 0) {
                auto* knob = new KWKnob(place, nullptr, i, &frame, knobStrip, 21, 127, 1);
                knob->valueSource = &source;
                control = knob;
            } else if (i % 3 == 1) {
                auto* button = new KWButton(place, nullptr, i, &frame, "x", false, 1);
                button->valueSource = &source;
                control = button;
            } else {
                auto* display = new KWDisplay(place, nullptr, i, &frame, "", true);
                display->valueSource = &source;
                control = display;
            }
            control->setGate(&pages, 1 + i % 2);
            frame.addView(control);
        }
        for (int i = 0; i < 10; ++i)
            frame.idle();
        for (auto _ : state)
            frame.idle();
    }
    knobStrip->forget();
    CBitmap::setProvider(nullptr);
}

// A text that was shown before and one that never was.
void BM_TextKnown(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Typeface::medium().width("Slow Harbour Lights", 11));
}

void BM_TextNew(benchmark::State& state)
{
    int number = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(Typeface::medium().width(std::to_string(++number), 11));
}

// The argument is twice the scale.
BENCHMARK(BM_GalleryFullRepaint)->Arg(2)->Arg(3)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GalleryRepaintOfTwenty)->Arg(2)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GalleryPlaying)->Arg(2)->Arg(4)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_IdleWithNothingChanged)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_TextKnown);
BENCHMARK(BM_TextNew);

} // namespace

} // namespace ormund
