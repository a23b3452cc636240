// Names of files, and files as lists of lines.
#include <zyn/progress.h>
#include <zyn/textfile.h>

#include "core/whole_file.h"
#include "services/read_lines.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <string_view>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

/// Counts in bytes side by side, which compilers turn into wide instructions.
std::int64_t lineFeeds(std::string_view text) {
    constexpr std::size_t width = 64, rounds = 255;
    std::int64_t count = 0;
    while (text.size() >= width) {
        std::array<std::uint8_t, width> lanes = {};
        const std::size_t part = std::min(text.size() / width, rounds);
        for (std::size_t n = 0; n < part; ++n) {
            const char* const bytes = text.data() + n * width;
            for (std::size_t i = 0; i < width; ++i) {
                lanes[i] = static_cast<std::uint8_t>(lanes[i] + (bytes[i] == '\n' ? 1 : 0));
            }
        }
        count = std::accumulate(lanes.begin(), lanes.end(), count);
        text.remove_prefix(part * width);
    }
    return count + std::count(text.begin(), text.end(), '\n');
}

}  // namespace

QString getFileDir(QString path) { return QFileInfo(path).absoluteDir().absolutePath(); }
QString getFileExt(QString path) { return QFileInfo(path).suffix(); }
QString getFileName(QString path) { return QFileInfo(path).fileName(); }
bool isFileExist(QString path) { return QFileInfo(path).isFile(); }

std::int32_t getTxtFileLineNum(QString path, IZynProgress*) {
    QFile file(path);
    if (!isFileExist(path) || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) { return 0; }
    std::vector<char> block(std::size_t(1) << 17);
    std::int64_t count = 0;
    qint64 size = 0;
    while ((size = file.read(block.data(), qint64(block.size()))) > 0) {
        count += lineFeeds({block.data(), std::size_t(size)});
    }
    if (size < 0) { return 0; }
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(count, most));
}

ref_ptr<StringArray> readLines(QString path, IZynProgress*) {
    if (!isFileExist(path)) { return nullptr; }
    const ref_ptr<StringArray> lines = readWholeFile(path);
    return lines ? lines : newStringArray();
}

bool writeLines(QString path, ref_ptr<StringArray> lines, IZynProgress* progress) {
    if (!lines) { return false; }
    WholeFile file(QFile::encodeName(path).constData());
    if (progress != nullptr) { progress->setTotal(1.0); }
    const int step = lines->size() / 20;
    const bool isWritten = file.write([&](QTextStream& stream) {
        int counter = 0;
        for (const QString& line : *lines) {
            if (progress != nullptr && ++counter >= step) {
                progress->step(0.02);
                counter = 0;
            }
            if (file.isOpen()) { stream << line; }
        }
    });
    if (isWritten) { (void)file.commit(); }  // a failure is not reported
    return true;
}

}  // namespace zyn
