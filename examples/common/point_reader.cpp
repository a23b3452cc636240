#include "point_reader.h"

#include "esri_grid.h"
#include "line_reader.h"

#include <utility>

namespace {

constexpr const char* noPoints = "has no line of x y z";

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
    if (lines.points().empty()) { file.failWhole(noPoints); }
    const bool numbered = lines.finish();
    return {std::move(lines.points()), skipped, numbered};
}

}  // namespace

PointFile readPoints(const std::string& path, Columns columns) {
    LineReader file(path);
    do {
        if (!file.next()) { file.failWhole("is empty"); }
    } while (file.line().empty());
    if (!startsEsriGrid(file.line())) { return readPointLines(file, columns); }
    PointFile grid;
    grid.skipped = readEsriGrid(file, grid.points);
    return grid;
}

BreaklineFile readBreaklines(const std::string& path, Columns columns) {
    LineReader file(path);
    PointLines lines(file, columns);
    std::vector<std::ptrdiff_t> starts;
    bool between = true;
    while (file.next()) {
        const std::string_view line = file.line();
        if (line.empty() || line.starts_with('#') || line.starts_with('>')) {
            between = true;
            continue;
        }
        if (between) { starts.push_back(std::ssize(lines.points())); }
        between = false;
        lines.append();
    }
    if (starts.empty()) { file.failWhole(noPoints); }
    BreaklineFile breaklines{.numbered = lines.finish()};
    starts.push_back(std::ssize(lines.points()));
    const auto first = lines.points().begin();
    for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
        breaklines.polylines.emplace_back(first + starts[i], first + starts[i + 1]);
    }
    return breaklines;
}
