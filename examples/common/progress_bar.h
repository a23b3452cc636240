// A progress bar on a terminal; nothing where standard error is none.
#pragma once

class ProgressBar {
public:
    /// `title` must outlive the bar.
    explicit ProgressBar(const char* title);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    /// Wipes the bar off the terminal.
    ~ProgressBar();

    /// `fraction` runs from 0 to 1.
    void show(double fraction);

private:
    const char* const title;
    const bool onTerminal;
    int shownPercent = -1;
};
