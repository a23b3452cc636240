// Turns terrain points into a surface: reads them, triangulates them, works the breaklines in,
// writes the network and reports what came out.
#include "failure.h"
#include "folder.h"
#include "network.h"
#include "options.h"
#include "point_reader.h"
#include "program.h"
#include "progress_bar.h"
#include "rounding.h"
#include "terrain_picture.h"

#include <zyn/geometry.h>
#include <zyn/network.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

namespace {

using zyn::IZynDelaunayD;

class Stopwatch {
public:
    /// Seconds since the last call, or since the start.
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
    BreaklineFile breaklineFile;
};

Input readInput(const Options& options) {
    Input input;
    input.pointFile = readPoints(options.input, options.columns);
    if (!options.breaklines.empty()) {
        input.breaklineFile = readBreaklines(options.breaklines, options.columns);
    }
    const int count = input.pointFile.points->size();
    if (count < 3) {
        throw Failure(options.input, "a surface needs three points, not " + std::to_string(count));
    }
    return input;
}

struct TemporaryFile {
    std::string path;
    ~TemporaryFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
};

struct Files {
    std::string tin, obj, picture;
};

/// Each file appears whole or not at all, and none before all are written.
void writeFiles(IZynDelaunayD* engine, const Files& files, const Measures& surface,
                const Options& options) {
    const TemporaryFile tin{files.tin + ".part"}, picture{files.picture + ".part"};
    ProgressBar bar("writing");
    bar.show(0.0);
    if (!writeBinary(engine, tin.path.c_str())) { throw Failure(files.tin, "cannot be written"); }
    bar.show(0.3);
    if (!writePicture(*engine, options, surface, picture.path)) {
        throw Failure(files.picture, "cannot be written");
    }
    bar.show(0.6);
    if (!writeObj(engine, files.obj.c_str(), options.maxEdge)) {
        throw Failure(files.obj, "cannot be written");
    }
    for (const auto& [from, to] : {std::pair(tin.path, files.tin), {picture.path, files.picture}}) {
        std::error_code error;
        std::filesystem::rename(from, to, error);
        if (error) { throw Failure(to, error.message()); }
    }
}

/// With four digits at least: degrees make areas and lengths far below 1.
std::string measured(double value) { return withDecimals(value, decimalsFor(value, 4, 1)); }

std::string heightText(const Measures& surface, double height) {
    return withDecimals(height, decimalsFor(surface.maxZ - surface.minZ, 4, 3));
}

void report(const Input& input, const Network& network, const Measures& surface) {
    const auto note = [](bool numbered) {
        return numbered ? "; the first column is a point number" : "";
    };
    std::printf("points      %d read, %d skipped, %d rejected%s\n", input.pointFile.points->size(),
                input.pointFile.skipped, network.rejectedPoints, note(input.pointFile.numbered));
    if (const int breaklines = input.breaklineFile.polylines->size(); breaklines > 0) {
        std::printf("breaklines  %d with %d edges, %d crossings%s\n", breaklines,
                    network.breaklineEdges, int(network.crossings->size()),
                    note(input.breaklineFile.numbered));
    }
    std::printf("triangles   %d\n", surface.triangles);
    std::printf("area        %s on the surface, %s in plan\n", measured(surface.area).c_str(),
                measured(surface.planArea).c_str());
    std::printf("heights     %s to %s\n", heightText(surface, surface.minZ).c_str(),
                heightText(surface, surface.maxZ).c_str());
}

/// Earthwork to the middle height, and the way along the middle from west to east.
void reportShape(IZynDelaunayD* engine, const Measures& surface, double maxEdge) {
    const double middle = (surface.minZ + surface.maxZ) / 2;
    const zyn::SurfaceVolume earth = volume(engine, middle, maxEdge);
    std::printf("volume      %s above %s, %s missing below\n", measured(earth.cut).c_str(),
                heightText(surface, middle).c_str(), measured(earth.fill).c_str());
    const zyn::Enve2d& box = surface.area2d;
    const double y = box.MidPoint().y;
    const zyn::ref_ptr<zyn::Pnt3dArray> way = profile(engine, {box.minX, y}, {box.maxX, y});
    double length = 0, climb = 0, descent = 0;
    for (int i = 1; i < way->size(); ++i) {
        const zyn::XPnt3d step = way->get(i) - way->get(i - 1);
        if (std::isnan(step.z)) { continue; }  // a gap in the surface
        length += dist(way->get(i), way->get(i - 1));
        (step.z > 0 ? climb : descent) += std::abs(step.z);
    }
    std::printf("profile     west to east %s, up %s, down %s, across %d edges\n",
                measured(length).c_str(), measured(climb).c_str(), measured(descent).c_str(),
                std::max(0, way->size() - 2));
}

void run(Arguments arguments) {
    const Options options = parseOptions(arguments);
    Stopwatch watch;
    const Input input = readInput(options);
    makeFolder(options.out);
    const double readingTime = watch.lap();

    zyn::Pnt3dArray& points = *input.pointFile.points;
    const double tolerance = options.tolerance.value_or(defaultTolerance(points));
    const Network network = triangulate(points, *input.breaklineFile.polylines, tolerance);
    IZynDelaunayD* const engine = network.engine.get();
    if (surfaceTriangleCount(engine) == 0) {
        throw Failure(options.input,
                      "all points lie on one line, or nearly so, or within --tolerance");
    }
    const Measures surface = measure(*engine, options.maxEdge);
    if (surface.triangles == 0) {
        throw Failure(options.input, "every triangle has an edge longer than --max-edge");
    }
    const double networkTime = watch.lap();

    const std::filesystem::path out = options.out;
    const Files files{out / "terrain.tin", out / "terrain.obj", out / "terrain.png"};
    writeFiles(engine, files, surface, options);
    const double writingTime = watch.lap();

    if (network.rejectedPoints > 0 && !options.tolerance) {
        warn(programName, aboutRejected(network, points.size(), tolerance) +
                              "; with --tolerance 0 only those in one place");
    }
    report(input, network, surface);
    reportShape(engine, surface, options.maxEdge);
    std::printf("seconds     %.2f reading, %.2f triangulating, %.2f writing\n", readingTime,
                networkTime, writingTime);
    std::printf("files       %s, %s, %s\n", files.tin.c_str(), files.obj.c_str(),
                files.picture.c_str());
}

}  // namespace

int main(int argc, char** argv) { return runProgram(programName, helpText, argc, argv, run); }
