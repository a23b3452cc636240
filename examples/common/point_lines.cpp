#include "point_lines.h"

#include "fields.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <string>

using zyn::XPnt3d;

namespace {

/// Reserves memory for a file of lines as long as this one.
void reserveByLine(const LineReader& file, std::vector<XPnt3d>& points) {
    const std::int64_t lines = file.fileSize() / (std::ssize(file.line()) + 1);
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    points.reserve(static_cast<std::size_t>(std::min(lines + 1, most)));
}

/// Throws a Failure for decimal commas, which would shift the columns. All separators between
/// columns must be the same, also a comma after the last column if a digit follows it.
void requireOneSeparator(const LineReader& file, std::string_view separators,
                         std::string_view rest) {
    const std::string_view between = separators.substr(0, separators.size() - 1);
    const bool comma = separators.back() == ',' && !rest.empty() && isDigit(rest.front());
    if (between.find_first_not_of(between.front()) != std::string_view::npos ||
        (comma && between.front() != ',')) {
        file.fail("different separators between the numbers, whose decimals follow a point");
    }
}

double coordinateIn(const LineReader& file, std::string_view field) {
    const std::optional<double> number = toNumber(field);
    if (!number || !isCoordinate(*number)) { file.fail(quoted(field) + notACoordinate); }
    return *number;
}

/// Returns whether the number is written with decimals; an exponent counts as decimals.
bool hasDecimals(std::string_view number) {
    return number.find('.') != std::string_view::npos &&
           number.find_first_of("eE") == std::string_view::npos;
}

}  // namespace

PointLines::PointLines(const LineReader& file_, Columns columns_)
    : file(file_), columns(columns_), maybeNumbers(columns_ == Columns::recognized) {}

bool PointLines::atPoint() const {
    std::string_view line = file.line();
    if (columns == Columns::numberXyz) { takeField(line); }
    return startsWithNumber(line);
}

void PointLines::append() {
    std::string_view rest = file.line();
    std::string separators;
    const auto take = [&rest, &separators] {
        char separator = ' ';
        const std::string_view field = takeField(rest, &separator);
        separators += separator;
        return field;
    };
    if (columns == Columns::numberXyz) { take(); }
    std::string_view fields[3];
    XPnt3d point;
    for (int axis = 0; axis < 3; ++axis) {
        if (rest.empty()) { file.fail("a point is three numbers: x y z"); }
        fields[axis] = take();
        point[axis] = coordinateIn(file, fields[axis]);
    }
    requireOneSeparator(file, separators, rest);
    if (read.empty()) { reserveByLine(file, read); }
    read.push_back(point);
    if (maybeNumbers) {
        const bool goesOn = separators.back() == separators.front();
        noteNumber(fields[0], fields[1], fields[2], goesOn ? take() : "");
        if (maybeNumbers) { requireOneSeparator(file, separators, rest); }
    }
}

/// Records the columns of the current line. The first is `number` if there are point numbers.
void PointLines::noteNumber(std::string_view number, std::string_view x, std::string_view y,
                            std::string_view fourth) {
    const std::optional<double> z = toNumber(fourth);
    maybeNumbers = std::ranges::all_of(number, isDigit) && z && isCoordinate(*z);
    if (!maybeNumbers) {
        fourths = {};
        return;
    }
    fourths.push_back(*z);
    countsUp = countsUp && (read.size() == 1 || read.back().x == read[read.size() - 2].x + 1);
    decimalsInX = decimalsInX || hasDecimals(x);
    decimalsInY = decimalsInY || hasDecimals(y);
}

bool PointLines::finish() {
    if (!hasNumbers()) { return columns == Columns::numberXyz; }
    for (std::size_t i = 0; i < read.size(); ++i) {
        read[i] = XPnt3d(read[i].y, read[i].z, fourths[i]);
    }
    return true;
}

bool PointLines::hasNumbers() const {
    constexpr std::size_t leastCount = 3;
    return maybeNumbers && ((countsUp && read.size() >= leastCount) ||
                            (decimalsInX && decimalsInY && eachNumberHasOnePoint()));
}

/// Returns whether lines with the same number agree in the next three columns: closed breaklines
/// repeat a point.
bool PointLines::eachNumberHasOnePoint() const {
    std::vector<std::size_t> order(fourths.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto numberOf = [this](std::size_t i) { return read[i].x; };
    std::ranges::sort(order, {}, numberOf);
    const auto contradict = [&](std::size_t i, std::size_t j) {
        return numberOf(i) == numberOf(j) && (read[i] != read[j] || fourths[i] != fourths[j]);
    };
    return std::ranges::adjacent_find(order, contradict) == order.end();
}
