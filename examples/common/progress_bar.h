// A progress bar on standard error; prints nothing if that is not a terminal.
#pragma once

class ProgressBar {
public:
    /// Makes a bar. REQUIRES: `title` outlives it.
    explicit ProgressBar(const char* title);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    /// Erases the bar.
    ~ProgressBar();

    /// Shows `fraction`, from 0 to 1.
    void show(double fraction);

private:
    const char* const title;
    const bool onTerminal;
    int shownPercent = -1;
};
