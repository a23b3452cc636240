// A small host: it logs to a file and to the console, saves its settings, and shows its progress
// while it reads a text file of points into a pool.
#include "failure.h"
#include "folder.h"
#include "program.h"
#include "terminal_progress.h"

#include <zyn/log.h>
#include <zyn/pool.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

using namespace zyn;

namespace {

constexpr const char* help = R"(usage: host INPUT [OUT]

Reads points, writes a log to OUT/host.log, and saves settings in OUT/host.settings: the number of
its runs and the last file.

INPUT is text with one point per line, x y first; lines without a point are skipped.
OUT is a folder, created if it is missing; default: .

example: host data/points.txt out
)";

QString text(const std::string& s) { return QString::fromLocal8Bit(s.c_str()); }

ref_ptr<Pnt2dPool> load(const QString& path) {
    const ref_ptr<TerminalProgress> progress = new TerminalProgress("loading");
    ref_ptr<Pnt2dArray> points;
    if (!readPnt2dArray(path, points, progress.get())) {
        throw Failure(path.toStdString(), "cannot be read, or has no lines");
    }
    ref_ptr<Pnt2dPool> pool = newPnt2dPool();
    constexpr int part = 10000;
    progress->setTotal(points->size());
    for (int first = 0; first < points->size(); first += part) {
        const int count = std::min(part, points->size() - first);
        pool->append(points->data() + first, count);
        progress->step(count);
    }
    progress->finish();
    return pool;
}

void run(Arguments arguments) {
    const auto& [input, out] = InputAndOut(arguments);
    if (std::ifstream(input).fail()) { throw Failure(input, std::strerror(errno)); }
    makeFolder(out);
    const std::filesystem::path place = out;
    const ref_ptr<IZynLog> log = newZynLog(text(place / "host.log"), true, true);
    log->setName(QStringLiteral("host"));
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    if (settings->open(text(place / "host.settings")) != 0) {
        log->warn(QStringLiteral("settings cannot be saved"));
    }
    const QString runs = QStringLiteral("runs"), last = QStringLiteral("last file");
    const int number = toLong(settings->getValue(runs)) + 1;
    settings->setValue(runs, tostring(number), QString());
    log->info(QStringLiteral("run ") + tostring(number) + QStringLiteral(", last file: ") +
              settings->getValue(last));
    try {
        const ref_ptr<Pnt2dPool> pool = load(text(input));
        settings->setValue(last, text(input), QString());
        log->info(tostring(static_cast<int>(pool->size())) + QStringLiteral(" points in ") +
                  tostring(static_cast<int>(pool->blockCount())) + QStringLiteral(" blocks"));
    } catch (const Failure& failure) {
        log->error(text(failure.what()));
        throw;
    }
}

}  // namespace

int main(int argc, char** argv) { return runProgram("host", help, argc, argv, run); }
