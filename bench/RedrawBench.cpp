// What painting and idling cost: the sheet of all controls whole, twenty dirty controls of it, and
// an idle in which nothing changed over as many controls as the panel has.

#include "apps/controls-gallery/Gallery.h"
#include "controls/KWButton.h"
#include "controls/KWControl.h"
#include "controls/KWDisplay.h"
#include "controls/KWKnob.h"
#include "controls/KWTableView.h"
#include "data/KWTableXY.h"
#include "view/offscreen/OffscreenWindow.h"

#include <benchmark/benchmark.h>

namespace {

void BM_RedrawAll(benchmark::State& state)
{
    Gallery gallery(nullptr);
    gallery.isPlaying = false;
    gallery.frame().setScale(static_cast<double>(state.range(0)));
    gallery.idle();
    for (auto _ : state) {
        gallery.frame().invalidAll();
        gallery.frame().repaint();
    }
}
BENCHMARK(BM_RedrawAll)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

void BM_RedrawTwentyControls(benchmark::State& state)
{
    Gallery gallery(nullptr);
    gallery.isPlaying = false;
    gallery.frame().setScale(static_cast<double>(state.range(0)));
    std::vector<CView*> chosen;
    for (CView* view : gallery.frame().views())
        if (dynamic_cast<KWKnob*>(view) || dynamic_cast<KWButton*>(view))
            chosen.push_back(view);
    chosen.resize(std::min<size_t>(chosen.size(), 20));
    gallery.idle();
    for (auto _ : state) {
        for (CView* view : chosen)
            view->setDirty(true);
        gallery.frame().repaint();
    }
}
BENCHMARK(BM_RedrawTwentyControls)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// Half of them are hints and hidden pages, as on the panel.
void BM_IdleOverSevenHundred(benchmark::State& state)
{
    constexpr int kHints = 330;
    constexpr int kButtons = 200;
    constexpr int kKnobs = 156;
    constexpr int kGrids = 14;
    const CRect place(0, 0, 576, 65);
    KWSystemInfo info;
    KWTableXY table(&info, 32);
    table.setFlags(0x1A28300);
    Crossing<float> source = 0.0f;
    KWBitSet128 pages;
    pages.set(0, true);
    const auto frame = std::make_unique<KWFrame>(
        CRect(0, 0, 1001, 695), std::make_unique<OffscreenWindow>(1001, 695), nullptr, nullptr);
    KWFrame* f = frame.get();
    for (int i = 0; i < kHints; ++i) {
        auto* hint = new KWDisplay(place, nullptr, i, f, "hint", false);
        hint->setVisible(false);
        f->addView(hint);
    }
    for (int i = 0; i < kButtons; ++i) {
        auto* button = new KWButton(place, nullptr, i, f, "", false, KWButton::kCycle);
        button->valueSource = &source;
        button->setGate(&pages, i % 2);
        f->addView(button);
    }
    for (int i = 0; i < kKnobs; ++i) {
        auto* knob = new KWKnob(place, nullptr, i, f, nullptr, 0, 0, 1);
        knob->valueSource = &source;
        f->addView(knob);
    }
    for (int i = 0; i < kGrids; ++i) {
        auto* grid = new KWTableView(place, nullptr, i, f, true);
        grid->setTable(&table);
        f->addView(grid);
    }
    for (int i = 0; i < 3; ++i)
        f->idle();
    for (auto _ : state)
        f->idle();
}
BENCHMARK(BM_IdleOverSevenHundred)->Unit(benchmark::kMicrosecond);

} // namespace
