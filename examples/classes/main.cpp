// Colours a terrain by ground classes, as a display colours a classified point cloud. The program
// knows the numbers of the classes; a table that it reads has their names and colours.
#include "draft.h"
#include "failure.h"
#include "folder.h"
#include "picture.h"
#include "point_reader.h"
#include "program.h"
#include "rounding.h"
#include "terminal_progress.h"
#include "tolerance.h"

#include <zyn/draw.h>
#include <zyn/surface.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

using namespace zyn;

namespace {

constexpr const char* programName = "classes";

constexpr const char* help = R"(usage: classes INPUT [OUT]

Colours the triangles of a terrain by ground classes, counts those of each class, and writes the
picture OUT/classes.png:
  ridge     centre above 70 % of the way from the lowest height to the highest, at any slope
  level     slope below 8 %
  slope     slope from 8 % to below 30 %
  steep     slope of 30 % and more

The slope is that of single triangles, so noise in the heights makes dense points steep.
x, y and z need the same unit: in degrees all ground is steep.

INPUT is an ESRI ASCII grid, or lines of points as the program surface recognizes them: x y z, or
a point number and x y z.
OUT is a folder, created if it is missing; default: .

example: classes data/jacksboro.asc out
)";

enum Ground : std::int32_t { level = 2, slope = 3, steep = 4, ridge = 5 };
constexpr Ground grounds[] = {level, slope, steep, ridge};

constexpr double levelBelow = 0.08, steepFrom = 0.3;  // rise over run

double ridgeAbove(const Enve3d& box) { return box.minZ + 0.7 * box.HightZ(); }

/// Returns the class of a triangle, by its slope and its relative height.
Ground groundOf(const SurfaceTriangle& t, const Enve3d& box) {
    const double height = (t.corner(0).z + t.corner(1).z + t.corner(2).z) / 3;
    if (height > ridgeAbove(box)) { return ridge; }
    const XPnt3d normal = t.normal();
    const double tangent = std::hypot(normal.x, normal.y) / normal.z;
    return tangent < levelBelow ? level : tangent < steepFrom ? slope : steep;
}

/// Returns the limits of a class for the legend of the picture.
std::string limitsOf(Ground ground, const Enve3d& box) {
    const std::string low = withDecimals(100 * levelBelow, 0);
    const std::string high = withDecimals(100 * steepFrom, 0);
    switch (ground) {
    case level: return "<" + low + "%";
    case slope: return low + "-" + high + "%";
    case steep: return ">=" + high + "%";
    default: break;
    }
    const int decimals = decimalsFor(box.HightZ(), 3, 0);
    const std::string height = withDecimals(ridgeAbove(box), decimals);
    return ">" + height;
}

/// Returns the classes that a file would contain. No triangle has class 9.
ref_ptr<PntClassArray> readClasses() {
    const auto name = [](const char* text) { return QString::fromLatin1(text); };
    ref_ptr<PntClassArray> classes = newPntClassArray();
    classes->append(PntClass(level, true, {112, 168, 96, 255}, name("LEVEL")));
    classes->append(PntClass(slope, true, {206, 196, 122, 255}, name("SLOPE")));
    classes->append(PntClass(steep, true, {178, 98, 58, 255}, name("STEEP")));
    classes->append(PntClass(ridge, true, {150, 150, 172, 255}, name("RIDGE")));
    classes->append(PntClass(9, true, ZynColor4b::Blue(), name("WATER")));
    return classes;
}

/// Returns the table that a display uses for the classes of this program.
ref_ptr<IZynLasDrawParam> newDrawParam() {
    ref_ptr<IZynLasDrawParam> param = newZynLasDrawParam();
    for (const Ground ground : grounds) { param->classes[ground].value = ground; }
    param->assignPntClass(readClasses());
    return param;
}

/// Returns the text of the legend for each of `grounds`.
std::vector<std::string> keysOf(const IZynLasDrawParam& param, const Enve3d& box) {
    std::vector<std::string> keys;
    for (const Ground ground : grounds) {
        keys.push_back(param.classes[ground].name.toStdString() + " " + limitsOf(ground, box));
    }
    return keys;
}

void writePicture(const Surface& surface, const IZynLasDrawParam& param, const std::string& path) {
    const Enve3d box = surface.bounds();
    const std::vector<std::string> keys = keysOf(param, box);
    const std::size_t letters = std::ranges::max(keys, {}, &std::string::size).size();
    Picture picture(surface, int(letters));
    for (const SurfaceTriangle& t : surface.triangles()) {
        const PntClass& drawn = param.classes[groundOf(t, box)];
        if (drawn.visible) {
            picture.fill(t, [&](double) { return drawn.color; });
        }
    }
    for (int row = 0; row < int(keys.size()); ++row) {
        picture.drawKey(row, param.classes[grounds[row]].color, keys[std::size_t(row)]);
    }
    picture.save(path);
}

void report(const Surface& surface, const IZynLasDrawParam& param) {
    const Enve3d box = surface.bounds();
    int triangles[ridge + 1] = {};
    for (const SurfaceTriangle& t : surface.triangles()) { ++triangles[groundOf(t, box)]; }
    for (const Ground ground : grounds) {
        const std::string name = param.classes[ground].name.toStdString();
        std::printf("%d %-8s %d triangles\n", ground, name.c_str(), triangles[ground]);
    }
}

void run(Arguments arguments) {
    const auto& [input, out] = InputAndOut(arguments);
    const PointFile file = readPoints(input, Columns::recognized);
    const double tolerance = defaultTolerance(file.points);
    const ref_ptr<TerminalProgress> progress = new TerminalProgress("triangulating");
    const Surface surface(file.points, {.tolerance = tolerance, .progress = progress.get()});
    if (surface.triangleCount() == 0) { throw Failure(input, "yields no surface"); }

    const ref_ptr<IZynLasDrawParam> param = newDrawParam();
    makeFolder(out);
    const Draft picture(std::filesystem::path(out) / "classes.png");
    picture.write([&](const std::string& path) { writePicture(surface, *param, path); });
    picture.publish();
    if (surface.pointReport().refused > 0) { warn(programName, aboutRefused(surface, tolerance)); }
    report(surface, *param);
    std::printf("file %s\n", picture.path.c_str());
}

}  // namespace

int main(int argc, char** argv) { return runProgram(programName, help, argc, argv, run); }
