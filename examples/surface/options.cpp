#include "options.h"

#include "fields.h"

#include <cmath>

const char* const helpText =
    R"(usage: surface INPUT [--columns C] [--breaklines FILE] [--max-edge L] [--tolerance T]
               [--contours H] [--out DIR]

Triangulates terrain points, prints a report, and writes the surface to DIR/terrain.tin (the
network, binary), DIR/terrain.obj (points and faces as text) and DIR/terrain.png (a picture).

Lengths are in the unit of the coordinates, areas and volumes in its square and cube. If z has
another unit than x and y, as with degrees, only heights and areas in the plane are meaningful:
other areas, volumes, the length of the profile and --max-edge mix the units.

The program recognizes the form of INPUT:
  an ESRI ASCII grid    cells without data are skipped
  lines of points       x y z, or a point number and x y z, separated by blanks, tabs, commas or
                        semicolons; further columns are ignored, and lines that do not begin with a
                        number are skipped

  --columns xyz         lines begin with x
  --columns nxyz        lines begin with a number or name of the point. Without --columns, the
                        program assumes nxyz if each line has four numbers, the first is whole, and
                        one of these holds:
                          the first counts up by one, in three lines or more
                          x and y have decimals, and no number has two different points
  --breaklines FILE     polylines that become edges of the surface: lines of points like those of
                        INPUT, with a blank line, or one that begins with # or >, between polylines.
                        A point of INPUT takes the height of a breakline point at the same place; a
                        breakline without length is a point
  --max-edge L          leave triangles with an edge longer than L out of everything except
                        terrain.tin, to keep bays in the outline and gaps in the data open. The
                        default is the whole convex hull
  --tolerance T         refuse a point if both x and y are within T of an earlier point. The default
                        is a ten-millionth of the extent, at most 0.001; then the
                        program warns if it refuses points
  --contours H          height between two contours of the picture; 0, the default, chooses a round
                        number for about twelve contours
  --out DIR             folder of the files, created if it is missing; default: .

example: surface data/jacksboro.asc --out out
)";

namespace {

double lengthIn(const std::string& option, const std::string& text) {
    const std::optional<double> length = toNumber(text);
    if (!length || !std::isfinite(*length) || *length < 0) {
        throw WrongUsage(option + " needs a length, not '" + text + "'");
    }
    return *length;
}

Columns columnsOf(const std::string& text) {
    if (text == "xyz") { return Columns::xyz; }
    if (text == "nxyz") { return Columns::numberXyz; }
    throw WrongUsage("--columns needs xyz or nxyz, not '" + text + "'");
}

}  // namespace

Options parseOptions(Arguments arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string name = arguments[i];
        const auto value = [&]() -> std::string {
            std::string text = i + 1 < arguments.size() ? arguments[++i] : "";
            if (text.empty() || text.starts_with("--")) {
                throw WrongUsage(name + " needs a value");
            }
            return text;
        };
        if (name == "--columns") {
            options.columns = columnsOf(value());
        } else if (name == "--breaklines") {
            options.breaklines = value();
        } else if (name == "--max-edge") {
            options.maxEdge = lengthIn(name, value());
        } else if (name == "--tolerance") {
            options.tolerance = lengthIn(name, value());
        } else if (name == "--contours") {
            options.contours = lengthIn(name, value());
        } else if (name == "--out") {
            options.out = value();
        } else if (name.starts_with("-")) {
            throw WrongUsage("unknown option '" + name + "'");
        } else if (!options.input.empty()) {
            throw WrongUsage("one INPUT only, not '" + name + "' too");
        } else {
            options.input = name;
        }
    }
    if (options.input.empty()) { throw WrongUsage("INPUT is missing"); }
    return options;
}
