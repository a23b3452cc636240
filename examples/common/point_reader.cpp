#include "point_reader.h"

#include "esri_grid.h"
#include "line_reader.h"

#include <vector>

using zyn::Pnt3dArray;
using zyn::XPnt3d;

namespace {

constexpr const char* noPoints = "no line of x y z in it";

PointFile readPointLines(LineReader& file, Columns columns) {
    PointLines lines(file, columns);
    int skipped = 0;
    do {
        if (file.line().empty()) { continue; }
        if (lines.atPoint()) {
            lines.append();
        } else {
            ++skipped;
        }
    } while (file.next());
    if (lines.points().size() == 0) { file.failWhole(noPoints); }
    const bool numbered = lines.finish();
    return {&lines.points(), skipped, numbered};
}

}  // namespace

PointFile readPoints(const std::string& path, Columns columns) {
    LineReader file(path);
    do {
        if (!file.next()) { file.failWhole("is empty"); }
    } while (file.line().empty());
    if (!startsEsriGrid(file.line())) { return readPointLines(file, columns); }
    PointFile grid;
    grid.skipped = readEsriGrid(file, *grid.points);
    return grid;
}

BreaklineFile readBreaklines(const std::string& path, Columns columns) {
    LineReader file(path);
    PointLines lines(file, columns);
    std::vector<int> starts;
    bool between = true;
    while (file.next()) {
        const std::string_view line = file.line();
        if (line.empty() || line.starts_with('#') || line.starts_with('>')) {
            between = true;
            continue;
        }
        if (between) { starts.push_back(lines.points().size()); }
        between = false;
        lines.append();
    }
    if (starts.empty()) { file.failWhole(noPoints); }
    BreaklineFile breaklines{.numbered = lines.finish()};
    starts.push_back(lines.points().size());
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        const zyn::ref_ptr<Pnt3dArray> polyline = zyn::newPnt3dArray();
        polyline->append(lines.points().data() + starts[i], starts[i + 1] - starts[i]);
        breaklines.polylines->append(polyline.get());
    }
    return breaklines;
}

zyn::Enve2d boxAround(Pnt3dArray& points) {
    zyn::Enve2d box;
    for (const XPnt3d& p : points) { box.SetBox(p); }
    return box;
}
