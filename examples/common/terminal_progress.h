// A progress bar on the terminal for operations of the library.
#pragma once

#include "progress_bar.h"

#include <zyn/progress.h>

#include <QString>

class TerminalProgress final : public zyn::IZynProgress {
public:
    /// Makes a progress. REQUIRES: `title` outlives it.
    explicit TerminalProgress(const char* title) : bar(title) {}

    void setTotal(double newTotal) override { total = newTotal; }
    void setPosition(double newPosition) override {
        position = newPosition;
        bar.show(total > 0 ? position / total : 1);
    }
    double getPosition() override { return position; }
    void step(double amount) override { setPosition(position + amount); }
    void setMessage(QString) override {}
    bool isCanceled() override { return false; }
    void finish() override { setPosition(total); }

private:
    ProgressBar bar;
    double total = 1;
    double position = 0;
};
