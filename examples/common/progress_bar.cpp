#include "progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

ProgressBar::ProgressBar(const char* title_)
    : title(title_), onTerminal(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    const char* const eraseLine = "\r\x1b[K";
    if (shownPercent >= 0) { std::fputs(eraseLine, stderr); }
}

void ProgressBar::show(double fraction) {
    const int percent = static_cast<int>(100 * std::clamp(fraction, 0.0, 1.0));
    if (!onTerminal || percent == shownPercent) { return; }
    shownPercent = percent;
    std::string bar(50, '.');
    std::fill_n(bar.begin(), percent / 2, '#');
    std::fprintf(stderr, "\r%-14s[%s] %3d %%", title, bar.c_str(), percent);
}
