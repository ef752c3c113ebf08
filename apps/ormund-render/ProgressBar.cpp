#include "apps/ormund-render/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace ormund {

namespace {
constexpr int kCells = 40;
}

ProgressBar::ProgressBar() : isTerminal(isatty(STDERR_FILENO) != 0) { }

ProgressBar::~ProgressBar()
{
    if (isTerminal && shownPercent >= 0)
        std::fputs("\r\033[K", stderr);
}

void ProgressBar::show(double done)
{
    const int percent = static_cast<int>(std::clamp(done, 0.0, 1.0) * 100);
    if (!isTerminal || percent == shownPercent)
        return;
    shownPercent = percent;
    const int full = percent * kCells / 100;
    std::string bar;
    for (int i = 0; i < kCells; ++i)
        bar += i < full ? "\u2588" : "\u2591";
    std::fprintf(stderr, "\r%s %3d %%", bar.c_str(), percent);
    std::fflush(stderr);
}

} // namespace ormund
