// Files of lines, points and settings; logs; numbers and keys as text.
#include <zyn/guid.h>
#include <zyn/log.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>

#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <span>

#include "bytes.h"
#include "memory_file.h"

namespace {

using namespace zyn;

QString text(std::span<const std::uint8_t> bytes) {
    return QString::fromLocal8Bit(reinterpret_cast<const char*>(bytes.data()),
                                  static_cast<int>(bytes.size()));
}

bool areEqual(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

/// Returns whether a file keeps the text unchanged. Codecs differ on other text.
bool isKept(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= ' ' && c <= '~'; });
}

/// Checks that points, up to six digits, and lines read back as they were written.
void writeAndRead(const ref_ptr<Pnt2dArray>& points, const ref_ptr<StringArray>& lines) {
    const MemoryFile file;
    const QString path = QString::fromStdString(file.path);
    ref_ptr<Pnt2dArray> pointsAgain;
    FUZZ_REQUIRE(savePnt2dArray(path, points, nullptr));
    FUZZ_REQUIRE(readPnt2dArray(path, pointsAgain, nullptr) == (points->size() > 0));
    const auto isClose = [](double a, double b) {
        return areEqual(a, b) || std::abs(a - b) <= std::max(5.1e-6 * std::abs(a), 1e-300);
    };
    for (int n = 0; n < points->size(); ++n) {
        FUZZ_REQUIRE(isClose(points->get(n).x, pointsAgain->get(n).x));
        FUZZ_REQUIRE(isClose(points->get(n).y, pointsAgain->get(n).y));
    }
    const ref_ptr<StringArray> ended = newStringArray();
    for (const QString& line : *lines) { ended->append(line + QLatin1Char('\n')); }
    FUZZ_REQUIRE(writeLines(path, ended, nullptr));
    const ref_ptr<StringArray> linesAgain = readLines(path, nullptr);
    for (int n = 0; n < lines->size() && isKept(lines->get(n)); ++n) {
        FUZZ_REQUIRE(linesAgain->get(n) == lines->get(n));
    }
}

/// Checks that a log accepts any text.
void writeLog(const QString& message) {
    const MemoryFile file;
    {
        const ref_ptr<IZynLog> log = newZynLog(QString::fromStdString(file.path), true, false);
        FUZZ_REQUIRE(log->isOpen());
        log->setName(message.left(9));
        log->info(message);
        log->error(message);
    }
    const ref_ptr<StringArray> lines = readLines(QString::fromStdString(file.path), nullptr);
    FUZZ_REQUIRE(lines->size() >= 2);
    for (const QString& line : *lines) {
        FUZZ_REQUIRE(!isKept(message) || line.endsWith(QLatin1Char(' ') + message));
    }
}

/// Checks that the fast reader finds the same points as the documented way, line by line. In plain
/// text both also agree on whether there is a line; truncated characters may add or remove one.
void readFile(const QString& path, bool isPlain, std::int64_t lineFeeds) {
    const ref_ptr<StringArray> lines = readLines(path, nullptr);
    FUZZ_REQUIRE(lines);
    FUZZ_REQUIRE(getTxtFileLineNum(path, nullptr) == lineFeeds);
    ref_ptr<Pnt2dArray> points;
    const bool isRead = readPnt2dArray(path, points, nullptr);
    FUZZ_REQUIRE(!isPlain || isRead == (lines->size() > 0));
    int n = 0;
    for (const QString& line : *lines) {
        const ref_ptr<StringArray> fields = strSeperator(line, QStringLiteral(" ,\t\n"));
        bool hasX = false, hasY = false;
        if (fields->size() < 2) { continue; }
        const double x = fields->get(0).toDouble(&hasX), y = fields->get(1).toDouble(&hasY);
        if (!hasX || !hasY) { continue; }
        FUZZ_REQUIRE(n < points->size());
        FUZZ_REQUIRE(areEqual(points->get(n).x, x) && areEqual(points->get(n).y, y));
        ++n;
    }
    FUZZ_REQUIRE(!points || n == points->size());
    if (points) { writeAndRead(points, lines); }
}

/// Checks that each setting is found after reading, and again after saving.
void readSettings(const QString& path) {
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    FUZZ_REQUIRE(settings->open(path) == 0);
    const ref_ptr<StringArray> lines = readLines(path, nullptr);
    FUZZ_REQUIRE(settings->save() == 0);
    const ref_ptr<IZynSetting> again = newZynSetting(QString());
    FUZZ_REQUIRE(again->open(path) == 0);
    const QString marks = QStringLiteral("[]=\n");
    for (const QString& line : *lines) {
        const ref_ptr<StringArray> pieces = strSeperator(line, marks);
        if (pieces->size() < 2) { continue; }
        const QString value = settings->getValue(pieces->get(0));
        FUZZ_REQUIRE(!value.isNull());
        if (!value.isEmpty() && isKept(pieces->get(0)) && isKept(value)) {
            FUZZ_REQUIRE(again->getValue(pieces->get(0)) == value);
        }
    }
}

void convert(Bytes& bytes) {
    const auto value = bytes.take<double>();
    const QString written = tostring(value);
    // The largest number rounded to fifteen digits is infinite.
    if (std::abs(value) > 1e-300 && std::abs(value) < 1.7976931348623e308) {
        FUZZ_REQUIRE(std::abs(written.toDouble() / value - 1) < 5.3e-15);
    }
    const auto number = bytes.take<std::int32_t>();
    const int base = bytes.take<std::int8_t>();
    FUZZ_REQUIRE(toLong(tostring(number)) == number);
    FUZZ_REQUIRE(tostring(number, base).isNull() == (base < 2 || base > 36));
    if (number != std::numeric_limits<std::int32_t>::min()) {
        FUZZ_REQUIRE(keyStrToNum(numToKeyStr(number)) == number);
    }
    const QString rest = text(bytes.all());
    (void)keyStrToNum(rest);
    (void)toDouble(rest);
    (void)toLong(rest);
    writeLog(rest);
    int size = 0;
    const ref_ptr<StringArray> pieces = strSeperator(rest, rest.left(2));
    for (const QString& piece : *pieces) {
        FUZZ_REQUIRE(!piece.isEmpty());
        size += piece.size();
    }
    FUZZ_REQUIRE(size <= rest.size());
    IZynGUID id;
    id.ref();
    FUZZ_REQUIRE(id.frString(rest) == 0);
    id.unref_nodelete();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const int kind = bytes.below(3);
    if (kind == 2) {
        convert(bytes);
        return 0;
    }
    const MemoryFile file(bytes.all());
    const QString path = QString::fromStdString(file.path);
    if (kind == 0) {
        const auto content = bytes.all();
        readFile(path,
                 std::all_of(content.begin(), content.end(),
                             [](std::uint8_t byte) { return byte < 0x80; }),
                 std::count(content.begin(), content.end(), '\n'));
    } else {
        readSettings(path);
    }
    return 0;
}
