#include "point_reader.h"

#include "esri_grid.h"
#include "fields.h"
#include "line_reader.h"

#include <algorithm>
#include <limits>

using zyn::Pnt3dArray;
using zyn::Pnt3dArrayArray;
using zyn::XPnt3d;

namespace {

constexpr const char* noPoints = "no line of x y z in it";

/// The point at the beginning of the line. Decimal commas would shift the coordinates, so a line
/// separates them with commas throughout or not at all.
XPnt3d pointIn(const LineReader& file) {
    std::string_view rest = file.line();
    XPnt3d point;
    bool commas[3] = {};
    for (int axis = 0; axis < 3; ++axis) {
        if (rest.empty()) { file.fail("a point is three numbers: x y z"); }
        const std::string_view field = takeField(rest, &commas[axis]);
        const std::optional<double> number = toNumber(field);
        if (!number || !isCoordinate(*number)) { file.fail(quoted(field) + notACoordinate); }
        point[axis] = *number;
    }
    if (commas[0] != commas[1]) { file.fail("both commas and blanks separate the numbers"); }
    return point;
}

/// Makes room for a file of lines as long as this one.
void reserveByLine(const LineReader& file, Pnt3dArray& points) {
    const std::int64_t lines = file.fileSize() / (std::ssize(file.line()) + 1);
    constexpr std::int64_t most = std::numeric_limits<int>::max();
    points.reserve(static_cast<int>(std::min(lines + 1, most)));
}

int readPointLines(LineReader& file, Pnt3dArray& points) {
    int skipped = 0;
    do {
        if (file.line().empty()) { continue; }
        if (!startsWithNumber(file.line())) {
            ++skipped;
            continue;
        }
        const XPnt3d point = pointIn(file);
        if (points.size() == 0) { reserveByLine(file, points); }
        points.append(point);
    } while (file.next());
    if (points.size() == 0) { file.failWhole(noPoints); }
    return skipped;
}

}  // namespace

int readPoints(const std::string& path, Pnt3dArray& points) {
    LineReader file(path);
    do {
        if (!file.next()) { file.failWhole("is empty"); }
    } while (file.line().empty());
    return startsEsriGrid(file.line()) ? readEsriGrid(file, points) : readPointLines(file, points);
}

zyn::ref_ptr<Pnt3dArrayArray> readBreaklines(const std::string& path) {
    LineReader file(path);
    zyn::ref_ptr<Pnt3dArrayArray> polylines = zyn::newPnt3dArrayArray();
    bool between = true;
    while (file.next()) {
        const std::string_view line = file.line();
        if (line.empty() || line.starts_with('#') || line.starts_with('>')) {
            between = true;
            continue;
        }
        if (between) { polylines->append(zyn::newPnt3dArray()); }
        between = false;
        polylines->last()->append(pointIn(file));
    }
    if (polylines->size() == 0) { file.failWhole(noPoints); }
    return polylines;
}

zyn::Enve2d boxAround(Pnt3dArray& points) {
    zyn::Enve2d box;
    for (const XPnt3d& p : points) { box.SetBox(p); }
    return box;
}
