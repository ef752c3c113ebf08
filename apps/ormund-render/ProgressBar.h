// A bar on the terminal's error output; silent where that is a pipe or a file.
#pragma once

namespace ormund {

class ProgressBar {
public:
    ProgressBar();
    ~ProgressBar(); // leaves an empty line behind
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    void show(double done); // 0 to 1

private:
    bool isTerminal;
    int shownPercent = -1;
};

} // namespace ormund
