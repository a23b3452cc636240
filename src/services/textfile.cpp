#include <zyn/progress.h>
#include <zyn/textfile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <system_error>
#include <vector>

namespace zyn {

namespace {

QString pointSeparators() { return QStringLiteral(" ,\t\n"); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// As QString::toDouble, without a QString for plain numbers.
bool toNumber(std::string_view field, double& value) {
    if (isDigit(field.back()) && (isDigit(field.front()) || field.front() == '-')) {
        const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
        if (error == std::errc() && end == field.data() + field.size()) { return true; }
    }
    bool converts = false;
    value = QString::fromLatin1(field.data(), static_cast<int>(field.size())).toDouble(&converts);
    return converts;
}

/// Whether all bytes mean themselves in every codec that a locale may have.
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

/// Whether the file begins like UTF-16 or UTF-32, in which bytes are not characters.
bool isWide(const QByteArray& start) {
    return start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF") ||
           start.startsWith(QByteArray("\0\0\xFE\xFF", 4));
}

}  // namespace

QString getFileDir(QString path) { return QFileInfo(path).absoluteDir().absolutePath(); }
QString getFileExt(QString path) { return QFileInfo(path).suffix(); }
QString getFileName(QString path) { return QFileInfo(path).fileName(); }
bool isFileExist(QString path) { return QFileInfo(path).isFile(); }

std::int32_t getTxtFileLineNum(QString path, IZynProgress*) {
    QFile file(path);
    if (!isFileExist(path) || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) { return 0; }
    std::vector<char> block(std::size_t(1) << 18);
    std::int64_t count = 0;
    for (qint64 size = 0; (size = file.read(block.data(), qint64(block.size()))) > 0;) {
        count += std::count(block.data(), block.data() + size, '\n');
    }
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(count, most));
}

ref_ptr<StringArray> readLines(QString path, IZynProgress*) {
    if (!isFileExist(path)) { return nullptr; }
    ref_ptr<StringArray> lines = newStringArray();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) { return lines; }
    QTextStream stream(&file);
    for (QString line; stream.readLineInto(&line);) {
        if (!line.isEmpty()) { lines->append(line); }
    }
    return lines;
}

bool writeLines(QString path, ref_ptr<StringArray> lines, IZynProgress* progress) {
    if (!lines) { return false; }
    QFile file(path);
    const bool isOpen = !path.isEmpty() && file.open(QIODevice::WriteOnly | QIODevice::Text);
    QTextStream stream;
    if (isOpen) { stream.setDevice(&file); }
    if (progress != nullptr) { progress->setTotal(1.0); }
    const int step = lines->size() / 20;
    int counter = 0;
    for (const QString& line : *lines) {
        if (++counter >= step) {
            if (progress != nullptr) { progress->step(0.02); }
            counter = 0;
        }
        if (isOpen) { stream << line; }
    }
    if (isOpen) { stream.flush(); }
    return true;
}

// Lines of plain characters are read as bytes; others take the way over QString.
bool readPnt2dArray(QString path, ref_ptr<Pnt2dArray>& pnts, IZynProgress* progress) {
    QFile file(path);
    if (!isFileExist(path) || !file.open(QIODevice::ReadOnly | QIODevice::Text)) { return false; }
    const ref_ptr<Pnt2dArray> points = newPnt2dArray();
    XPnt2d point;
    bool hasLine = false;
    if (isWide(file.peek(4))) {
        const ref_ptr<StringArray> lines = readLines(path, progress);
        for (const QString& line : *lines) {
            hasLine = true;
            if (toPoint(line, point)) { points->append(point); }
        }
    } else {
        if (file.peek(3) == "\xEF\xBB\xBF") { file.read(3); }
        for (QByteArray bytes; !(bytes = file.readLine()).isEmpty();) {
            std::string_view line(bytes.constData(), std::size_t(bytes.size()));
            if (line.back() == '\n') { line.remove_suffix(1); }
            if (line.empty()) { continue; }
            hasLine = true;
            const bool isPoint =
                isPlain(line)
                    ? toPoint(line, point)
                    : toPoint(QString::fromLocal8Bit(line.data(), int(line.size())), point);
            if (isPoint) { points->append(point); }
        }
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
