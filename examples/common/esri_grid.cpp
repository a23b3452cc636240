#include "esri_grid.h"

#include "fields.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>

namespace {

/// The numbers of the header, by keys in lower case.
using Header = std::map<std::string, double, std::less<>>;

constexpr std::string_view headerKeys[] = {"ncols",     "nrows",       "xllcorner", "xllcenter",
                                           "yllcorner", "yllcenter",   "cellsize",  "dx",
                                           "dy",        "nodata_value"};

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') { c = static_cast<char>(c - 'A' + 'a'); }
    }
    return lower;
}

bool isHeaderKey(std::string_view key) {
    return std::ranges::find(headerKeys, key) != std::end(headerKeys);
}

/// Reads the header. The reader is then at the first line of heights.
Header readHeader(LineReader& file) {
    Header header;
    do {
        std::string_view rest = file.line();
        if (rest.empty()) { continue; }
        const std::string_view word = takeField(rest);
        if (toNumber(word)) { return header; }
        const std::string key = lowerCase(word);
        if (!isHeaderKey(key)) { file.fail("no key of a grid's header: " + quoted(word)); }
        const std::optional<double> value = toNumber(takeField(rest));
        if (!value || !rest.empty()) { file.fail(quoted(word) + " needs one number"); }
        if (!header.emplace(key, *value).second) { file.fail(quoted(word) + " occurs twice"); }
    } while (file.next());
    file.failWhole("ends before the heights");
}

/// The places of the cells of a grid.
struct Grid {
    int columns, rows;
    double dx, dy;
    double west, north;  ///< the centre of the north-western cell
    double noData;

    /// Returns a cell's centre. Cells count from 0, row by row, from the north-western one.
    [[nodiscard]] zyn::XPnt3d pointOf(int cell, double height) const {
        const int row = cell / columns, column = cell % columns;
        return {west + column * dx, north - row * dy, height};
    }
    [[nodiscard]] bool isNoData(double height) const {
        return height == noData || (std::isnan(height) && std::isnan(noData));
    }
};

constexpr double missing = std::numeric_limits<double>::quiet_NaN();
constexpr int mostCells = std::numeric_limits<int>::max();

Grid gridOf(const Header& header, const LineReader& file) {
    const auto value = [&header](std::string_view key, double otherwise = missing) {
        const auto entry = header.find(key);
        return entry == header.end() ? otherwise : entry->second;
    };
    const auto require = [&file](bool holds, const std::string& what) {
        if (!holds) { file.failWhole("the header needs " + what); }
    };
    const auto isCount = [](double n) { return n >= 1 && n <= mostCells && n == std::floor(n); };
    const auto isLength = [](double n) { return n > 0 && std::isfinite(n); };

    const double columns = value("ncols"), rows = value("nrows");
    require(isCount(columns) && isCount(rows), "whole numbers above 0 for ncols and nrows");
    require(columns * rows <= mostCells, "fewer cells, " + std::to_string(mostCells) + " at most");
    const double dx = value("dx", value("cellsize")), dy = value("dy", value("cellsize"));
    require(isLength(dx) && isLength(dy), "cellsize, or dx and dy, above 0");
    const double west = value("xllcenter", value("xllcorner") + dx / 2);
    const double south = value("yllcenter", value("yllcorner") + dy / 2);
    const double north = south + (rows - 1) * dy, east = west + (columns - 1) * dx;
    require(isCoordinate(west) && isCoordinate(east), "xllcorner or xllcenter, at most 1e9");
    require(isCoordinate(south) && isCoordinate(north), "yllcorner or yllcenter, at most 1e9");
    const double noData = value("nodata_value", -9999);  // the format's default
    return {static_cast<int>(columns), static_cast<int>(rows), dx, dy, west, north, noData};
}

}  // namespace

bool startsEsriGrid(std::string_view line) { return isHeaderKey(lowerCase(takeField(line))); }

int readEsriGrid(LineReader& file, std::vector<zyn::XPnt3d>& points) {
    const Grid grid = gridOf(readHeader(file), file);
    const int cells = grid.columns * grid.rows;
    const std::string ofAll = " of " + std::to_string(cells) + " heights";
    constexpr int shortestHeight = 2;  // a digit and a blank; limits wrong headers
    points.reserve(
        static_cast<std::size_t>(std::min<std::int64_t>(cells, file.fileSize() / shortestHeight)));

    int cell = 0, skipped = 0;
    do {
        std::string_view rest = file.line();
        while (!rest.empty()) {
            const std::string_view field = takeField(rest);
            const std::optional<double> height = toNumber(field);
            if (cell == cells) { file.fail("continues after the last" + ofAll); }
            if (height && grid.isNoData(*height)) {
                ++skipped;
            } else if (height && isCoordinate(*height)) {
                points.push_back(grid.pointOf(cell, *height));
            } else {
                file.fail(quoted(field) + notACoordinate);
            }
            ++cell;
        }
    } while (file.next());
    if (cell < cells) { file.fail("ends after " + std::to_string(cell) + ofAll); }
    return skipped;
}
