// Makes a surface from terrain points: reads them, triangulates them, inserts the breaklines,
// writes the network and prints a report.
#include "draft.h"
#include "failure.h"
#include "folder.h"
#include "options.h"
#include "point_reader.h"
#include "program.h"
#include "progress_bar.h"
#include "rounding.h"
#include "terminal_progress.h"
#include "terrain_picture.h"
#include "tolerance.h"

#include <zyn/surface.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

namespace {

using zyn::Surface;

class Stopwatch {
public:
    /// Returns the seconds since the last call, or since the start.
    double lap() {
        const Clock::time_point now = Clock::now();
        const std::chrono::duration<double> passed = now - std::exchange(last, now);
        return passed.count();
    }

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point last = Clock::now();
};

constexpr const char* programName = "surface";

struct Input {
    PointFile pointFile;
    BreaklineFile breaklineFile{};
};

Input readInput(const Options& options) {
    Input input{.pointFile = readPoints(options.input, options.columns)};
    if (!options.breaklines.empty()) {
        input.breaklineFile = readBreaklines(options.breaklines, options.columns);
    }
    if (const std::size_t count = input.pointFile.points.size(); count < 3) {
        throw Failure(options.input, "a surface needs three points, not " + std::to_string(count));
    }
    return input;
}

Surface makeSurface(const Input& input, double tolerance, double maxEdge) {
    const zyn::ref_ptr<TerminalProgress> progress = new TerminalProgress("triangulating");
    return Surface(input.pointFile.points,
                   {.tolerance = tolerance, .maxEdge = maxEdge, .progress = progress.get()});
}

/// Adds the breaklines to the surface. For a line without length, adds only its point.
zyn::BreaklineReport addBreaklines(Surface& surface, const Input& input, double tolerance) {
    const std::vector<zyn::Polyline>& lines = input.breaklineFile.polylines;
    zyn::BreaklineReport added = surface.addBreaklines(lines, {.tolerance = tolerance});
    for (const int i : added.leftOut) { surface.addPoints(lines[std::size_t(i)]); }
    return added;
}

void requireTriangles(const Surface& surface, const std::string& path) {
    if (surface.triangleCount() > 0) { return; }
    const bool isLimited = surface.withMaxEdge(zyn::anyEdge).triangleCount() > 0;
    throw Failure(path, isLimited ? "every triangle has an edge longer than --max-edge"
                                  : "all points lie on one line, or within --tolerance");
}

/// Returns the names of the files. None appears before all are written.
std::string writeFiles(const Surface& surface, double interval, const std::filesystem::path& out) {
    const Draft tin(out / "terrain.tin"), obj(out / "terrain.obj"), picture(out / "terrain.png");
    ProgressBar bar("writing");
    bar.show(0.0);
    tin.write([&](const std::string& path) { surface.writeNetwork(path); });
    bar.show(0.3);
    picture.write([&](const std::string& path) { writePicture(surface, interval, path); });
    bar.show(0.6);
    obj.write([&](const std::string& path) { surface.writeObj(path); });
    for (const Draft* const file : {&tin, &obj, &picture}) { file->publish(); }
    return tin.path + ", " + obj.path + ", " + picture.path;
}

/// Returns the number with at least four digits, since areas and lengths in degrees are far below
/// 1.
std::string measured(double value) { return withDecimals(value, decimalsFor(value, 4, 1)); }

std::string heightText(const zyn::Enve3d& box, double height) {
    return withDecimals(height, decimalsFor(box.HightZ(), 4, 3));
}

void report(const Input& input, const Surface& surface, const zyn::BreaklineReport& lines) {
    const auto note = [](bool numbered) {
        return numbered ? "; the first column is a point number" : "";
    };
    std::printf("points      %zu read, %d skipped, %d refused%s\n", input.pointFile.points.size(),
                input.pointFile.skipped, surface.pointReport().refused,
                note(input.pointFile.numbered));
    if (const std::size_t count = input.breaklineFile.polylines.size(); count > 0) {
        std::printf("breaklines  %zu with %d edges, %d crossings, %d lost, %zu without length%s\n",
                    count, lines.edges, lines.crossings, lines.lost, lines.leftOut.size(),
                    note(input.breaklineFile.numbered));
    }
    const zyn::Enve3d box = surface.bounds();
    std::printf("triangles   %d\n", surface.triangleCount());
    std::printf("area        %s on the surface, %s in plan\n", measured(surface.area()).c_str(),
                measured(surface.planArea()).c_str());
    std::printf("heights     %s to %s\n", heightText(box, box.minZ).c_str(),
                heightText(box, box.maxZ).c_str());
}

/// Prints the earthwork to the middle height, and the profile along the middle from west to east.
void reportShape(const Surface& surface) {
    const zyn::Enve3d box = surface.bounds();
    const zyn::XPnt3d middle = box.MidPoint();
    const zyn::SurfaceVolume earth = surface.volume(middle.z);
    std::printf("volume      cut %s above %s, fill %s below\n", measured(earth.cut).c_str(),
                heightText(box, middle.z).c_str(), measured(earth.fill).c_str());
    const zyn::Polyline way = surface.profile({box.minX, middle.y}, {box.maxX, middle.y});
    double length = 0, climb = 0, descent = 0;
    int edges = 0;
    bool isOn = false;
    for (std::size_t i = 1; i < way.size(); ++i) {
        const zyn::XPnt3d step = way[i] - way[i - 1];
        const bool wasOn = std::exchange(isOn, !std::isnan(step.z));
        if (!isOn) { continue; }  // a gap in the surface
        edges += wasOn ? 1 : 0;
        length += std::hypot(step.x, step.y, step.z);
        (step.z > 0 ? climb : descent) += std::abs(step.z);
    }
    std::printf("profile     west to east %s, up %s, down %s, across %d edges\n",
                measured(length).c_str(), measured(climb).c_str(), measured(descent).c_str(),
                edges);
}

void run(Arguments arguments) {
    const Options options = parseOptions(arguments);
    Stopwatch watch;
    const Input input = readInput(options);
    makeFolder(options.out);
    const double readingTime = watch.lap();

    const double tolerance = options.tolerance.value_or(defaultTolerance(input.pointFile.points));
    Surface surface = makeSurface(input, tolerance, options.maxEdge);
    const zyn::BreaklineReport lines = addBreaklines(surface, input, tolerance);
    requireTriangles(surface, options.input);
    const double networkTime = watch.lap();
    const std::string files = writeFiles(surface, options.contours, options.out);
    const double writingTime = watch.lap();

    if (surface.pointReport().refused > 0 && !options.tolerance) {
        warn(programName,
             aboutRefused(surface, tolerance) + "; --tolerance 0 refuses only duplicate points");
    }
    report(input, surface, lines);
    reportShape(surface);
    std::printf("seconds     %.2f reading, %.2f triangulating, %.2f writing\n", readingTime,
                networkTime, writingTime);
    std::printf("files       %s\n", files.c_str());
}

}  // namespace

int main(int argc, char** argv) { return runProgram(programName, helpText, argc, argv, run); }
