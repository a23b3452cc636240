// Colours a terrain by classes of ground, as a display colours a classified point cloud: the program
// knows the numbers of the classes, a table that was read gives them names and colours.
#include "failure.h"
#include "folder.h"
#include "network.h"
#include "picture.h"
#include "point_reader.h"
#include "program.h"

#include <zyn/draw.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <limits>
#include <string>

using namespace zyn;

namespace {

constexpr const char* help = R"(usage: classes INPUT [OUT]

Colours a terrain by classes of ground, level, slope, steep and ridge, counts the triangles of each,
and writes the picture OUT/classes.png.

INPUT is an ESRI ASCII grid, or lines of points as the program surface recognizes them: x y z, or
a point number and x y z, in metres.
OUT is a folder, made if it is missing (.)

example: classes data/jacksboro.asc out
)";

enum Ground : std::int32_t { level = 2, slope = 3, steep = 4, ridge = 5 };

/// The class of a triangle, by its steepness and its height between the lowest and the highest.
Ground groundOf(const tind& t, const Measures& surface) {
    const double height = t.Center().z;
    if (height > surface.minZ + 0.7 * (surface.maxZ - surface.minZ)) { return ridge; }
    double a = 0, b = 0, c = 0;
    if (!t.Normal(a, b, c)) { return steep; }
    const double tangent = std::sqrt(a * a + b * b) / std::abs(c);
    return tangent < 0.08 ? level : tangent < 0.3 ? slope : steep;
}

/// What a file of classes would give. Nobody shows class 9.
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

void run(Arguments arguments) {
    const auto& [input, out] = InputAndOut(arguments);
    const ref_ptr<Pnt3dArray> points = readPoints(input, Columns::recognized).points;
    const ref_ptr<Pnt3dArrayArray> noBreaklines = newPnt3dArrayArray();
    constexpr double tolerance = 0.001;
    const Network network = triangulate(*points, *noBreaklines, tolerance);
    constexpr double anyLength = std::numeric_limits<double>::infinity();
    const Measures surface = measure(*network.engine, anyLength);
    if (surface.triangles == 0) { throw Failure(input, "gives no surface"); }

    const ref_ptr<IZynLasDrawParam> param = newZynLasDrawParam();
    for (const Ground ground : {level, slope, steep, ridge}) {
        param->classes[ground].value = ground;
    }
    param->assignPntClass(readClasses());

    Picture picture(surface.area2d);
    int triangles[ridge + 1] = {};
    forSurface(*network.engine, anyLength, [&](const tind& t) {
        const Ground ground = groundOf(t, surface);
        ++triangles[ground];
        const PntClass& drawn = param->classes[ground];
        if (drawn.visible) {
            picture.fill(t, [&](double) { return drawn.color; });
        }
    });
    int row = 0;
    for (const PntClass& c : param->classes) {
        if (!c.isValid()) { continue; }
        const std::string name = c.name.toStdString();
        picture.drawKey(row++, c.color, name);
        std::printf("%d %-8s %d triangles\n", c.value, name.c_str(), triangles[c.value]);
    }
    makeFolder(out);
    const std::string path = std::filesystem::path(out) / "classes.png";
    if (!picture.save(path)) { throw Failure(path, "cannot be written"); }
    std::printf("file %s\n", path.c_str());
}

}  // namespace

int main(int argc, char** argv) { return runProgram("classes", help, argc, argv, run); }
