// Points as lines of text files.
#include <zyn/textfile.h>

#include "services/read_lines.h"

#include <QFile>
#include <QTextCodec>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

QString pointSeparators() { return QStringLiteral(" ,\t\n"); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Converts like QString::toDouble, but plain numbers without a QString.
bool toNumber(std::string_view field, double& value) {
    if (isDigit(field.back()) && (isDigit(field.front()) || field.front() == '-')) {
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
        if (error == std::errc() && end == field.data() + field.size()) { return true; }
    }
    bool converts = false;
    if (field.size() > std::size_t(std::numeric_limits<int>::max())) { return false; }
    value = QString::fromLatin1(field.data(), static_cast<int>(field.size())).toDouble(&converts);
    return converts;
}

/// Returns whether every byte is the same character in every codec that a locale may have.
bool isPlain(std::string_view line) {
    return std::all_of(line.begin(), line.end(),
                       [](char c) { return (c >= ' ' && c <= '~') || c == '\t'; });
}

bool toPoint(std::string_view line, XPnt2d& point) {
    double* const coordinates[] = {&point.x, &point.y};
    for (double* const coordinate : coordinates) {
        line.remove_prefix(std::min(line.find_first_not_of(" ,\t"), line.size()));
        const std::string_view field = line.substr(0, line.find_first_of(" ,\t"));
        if (field.empty() || !toNumber(field, *coordinate)) { return false; }
        line.remove_prefix(field.size());
    }
    return true;
}

bool toPoint(const QString& line, XPnt2d& point) {
    const ref_ptr<StringArray> fields = strSeperator(line, pointSeparators());
    if (fields->size() < 2) { return false; }
    bool hasX = false, hasY = false;
    point.set(fields->get(0).toDouble(&hasX), fields->get(1).toDouble(&hasY));
    return hasX && hasY;
}

/// Calls use(line, isEnded) for each line that is not empty, without carriage returns. `isEnded` is
/// false for a last line without a line feed. Returns whether the file could be read to its end.
template <class Use>
bool forEachLine(QFile& file, Use use) {
    constexpr std::size_t blockSize = std::size_t(1) << 18;
    std::vector<char> buffer;
    for (bool atEnd = false; !atEnd;) {
        const std::size_t kept = buffer.size();
        buffer.resize(kept + blockSize);
        const qint64 size = file.read(buffer.data() + kept, qint64(blockSize));
        if (size < 0) { return false; }
        atEnd = size == 0;
        buffer.resize(kept + std::size_t(size));
        buffer.erase(std::remove(buffer.begin() + std::ptrdiff_t(kept), buffer.end(), '\r'),
                     buffer.end());
        std::string_view text(buffer.data(), buffer.size());
        for (std::size_t from = kept;;) {
            const std::size_t end = text.find('\n', from);
            if (end == std::string_view::npos && !(atEnd && !text.empty())) { break; }
            const std::string_view line = text.substr(0, end);
            if (!line.empty()) { use(line, end != std::string_view::npos); }
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            from = 0;
        }
        buffer.erase(buffer.begin(), buffer.end() - std::ptrdiff_t(text.size()));
    }
    return true;
}

constexpr int mibUtf8 = 106;
constexpr const char* byteOrderMark = "\xEF\xBB\xBF";

/// Returns whether the line fits into a QString and does not start with a byte order mark, which a
/// codec would drop.
bool isDecodable(std::string_view line) {
    return line.size() <= std::size_t(std::numeric_limits<int>::max()) &&
           !line.starts_with(byteOrderMark);
}

/// Returns whether the file begins like UTF-16 or UTF-32, in which a byte is not a character.
bool isWide(const QByteArray& start) {
    return start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF") ||
           start.startsWith(QByteArray("\0\0\xFE\xFF", 4));
}

}  // namespace

// Reads lines of plain characters as bytes, which is fast, and decodes only the others to a
// QString.
bool readPnt2dArray(QString path, ref_ptr<Pnt2dArray>& pnts, IZynProgress*) {
    QFile file(path);
    if (!isFileExist(path) || !file.open(QIODevice::ReadOnly)) { return false; }
    const ref_ptr<Pnt2dArray> points = newPnt2dArray();
    XPnt2d point;
    bool hasLine = false;
    if (isWide(file.peek(4))) {
        const ref_ptr<StringArray> lines = readWholeFile(path);
        if (!lines) { return false; }
        for (const QString& line : *lines) {
            hasLine = true;
            if (toPoint(line, point)) { points->append(point); }
        }
    } else {
        const bool isUtf8 = file.peek(3) == byteOrderMark;
        if (isUtf8) { file.read(3); }
        const QTextCodec* const codec =
            isUtf8 ? QTextCodec::codecForMib(mibUtf8) : QTextCodec::codecForLocale();
        // Drops a character that the end of the file cuts off.
        const auto decoded = [codec](std::string_view line, bool isEnded) {
            QTextCodec::ConverterState cutOff(QTextCodec::IgnoreHeader);
            const int size = static_cast<int>(line.size());
            return isEnded ? codec->toUnicode(line.data(), size)
                           : codec->toUnicode(line.data(), size, &cutOff);
        };
        const bool isWhole = forEachLine(file, [&](std::string_view line, bool isEnded) {
            if (isPlain(line)) {
                hasLine = true;
                if (toPoint(line, point)) { points->append(point); }
                return;
            }
            const bool hasText = isDecodable(line);
            const QString text = hasText ? decoded(line, isEnded) : QString();
            hasLine = hasLine || isEnded || !hasText || !text.isEmpty();
            if (toPoint(text, point)) { points->append(point); }
        });
        if (!isWhole) { return false; }
    }
    if (!hasLine) { return false; }
    pnts = points;
    return true;
}

bool savePnt2dArray(QString path, ref_ptr<Pnt2dArray> pnts, IZynProgress*) {
    if (path.isEmpty() || !pnts) { return false; }
    constexpr int decimals = 10;
    const ref_ptr<StringArray> lines = newStringArray();
    lines->reserve(pnts->size());
    for (const XPnt2d& p : *pnts) { lines->append(p.toString(decimals) + QLatin1Char('\n')); }
    return writeLines(path, lines, nullptr);
}

}  // namespace zyn
