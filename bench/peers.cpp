// Surfaces in bulk against CGAL's Delaunay triangulation and the mesh generator, in one run.
//
// usage: bench_peers [POINTS [RUNS [PART]]]
// PART: one of the families uniform, clusters, grid, rows, scan, terrain; or queries; all of them else
//
// Everybody gets the same points, shuffled unless the family is an order by itself. All take turns,
// and the medians of the runs are compared.
#include "heap.h"
#include "measure.h"

#include <zyn/network.h>

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <triangle.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace zyn;
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Triangulation = CGAL::Delaunay_triangulation_2<Kernel>;

constexpr double extent = 1000.0;

// Points

using Points = std::vector<XPnt3d>;

double heightOf(double x, double y) { return 40 * std::sin(x / 60) * std::cos(y / 45) + x / 20; }

Points uniform(std::size_t n, std::mt19937_64& random) {
    std::uniform_real_distribution<double> coordinate(0, extent);
    Points points;
    while (points.size() < n) {
        const double x = coordinate(random);
        points.emplace_back(x, coordinate(random));
    }
    return points;
}

Points clusters(std::size_t n, std::mt19937_64& random) {
    const Points centres = uniform(50, random);
    std::normal_distribution<double> offset(0, extent / 200);
    Points points;
    while (points.size() < n) {
        const XPnt3d& c = centres[points.size() % centres.size()];
        const double x = c.x + offset(random);
        points.emplace_back(x, c.y + offset(random));
    }
    std::shuffle(points.begin(), points.end(), random);
    return points;
}

Points rows(std::size_t n, std::mt19937_64&) {
    const auto side = static_cast<std::size_t>(std::sqrt(double(n)));
    Points points;
    for (std::size_t i = 0; i < side * side; ++i) {
        points.emplace_back(double(i % side), double(i / side));
    }
    return points;
}

Points grid(std::size_t n, std::mt19937_64& random) {
    Points points = rows(n, random);
    std::shuffle(points.begin(), points.end(), random);
    return points;
}

/// Lines of a scanner: dense along the line, a tenth as dense across.
Points scan(std::size_t n, std::mt19937_64& random) {
    const double step = extent / std::sqrt(10 * double(n));
    std::normal_distribution<double> noise(0, step / 20);
    Points points;
    for (double y = 0; points.size() < n; y += 10 * step) {
        for (double x = 0; x < extent && points.size() < n; x += step) {
            const double jitter = noise(random);
            points.emplace_back(x + jitter, y + noise(random));
        }
    }
    return points;
}

/// The shipped terrain, repeated side by side until there are enough points.
Points terrain(std::size_t n, std::mt19937_64&) {
    std::ifstream file(TERRAIN_FILE);
    std::string key;
    std::size_t columns = 0, lines = 0;
    double skipped = 0, noData = 0;
    file >> key >> columns >> key >> lines;
    while (file >> key && key != "NODATA_value" && key != "nodata_value") { file >> skipped; }
    file >> noData;
    Points tile;
    for (std::size_t i = 0; i < columns * lines; ++i) {
        double z = 0;
        if (file >> z && z != noData) {
            tile.emplace_back(double(i % columns), double(lines - 1 - i / columns), z);
        }
    }
    if (tile.empty()) {
        std::fprintf(stderr, "the terrain cannot be read\n");
        std::exit(1);
    }
    Points points;
    for (std::size_t i = 0; points.size() < n; ++i) {
        const double shiftX = double(i % 8 * columns), shiftY = double(i / 8 * lines);
        for (std::size_t k = 0; k < tile.size() && points.size() < n; ++k) {
            points.emplace_back(tile[k].x + shiftX, tile[k].y + shiftY, tile[k].z);
        }
    }
    return points;
}

struct Family {
    const char* name;
    Points (*make)(std::size_t, std::mt19937_64&);
};
constexpr Family families[] = {{"uniform", uniform}, {"clusters", clusters}, {"grid", grid},
                               {"rows", rows},       {"scan", scan},         {"terrain", terrain}};

ref_ptr<Pnt3dArray> arrayOf(const Points& points) {
    ref_ptr<Pnt3dArray> array = newPnt3dArray();
    array->append(points.data(), static_cast<int>(points.size()));
    return array;
}

// The ways

struct Box {
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;

    explicit Box(const Points& points) {
        for (const XPnt3d& p : points) {
            minX = std::min(minX, p.x);
            minY = std::min(minY, p.y);
            maxX = std::max(maxX, p.x);
            maxY = std::max(maxY, p.y);
        }
    }
    [[nodiscard]] ref_ptr<IZynDelaunayD> engine() const {
        return newZynDelaunayDouble(0, minX - 1, minY - 1, maxX + 1, maxY + 1);
    }
    [[nodiscard]] ref_ptr<IZynDelaunay> floatEngine() const {
        return newZynDelaunay(0, float(minX - 1), float(minY - 1), float(maxX + 1),
                              float(maxY + 1));
    }
};

void callGenerator(std::vector<double>& coordinates, const char* switches) {
    triangulateio in = {}, out = {};
    in.pointlist = coordinates.data();
    in.numberofpoints = static_cast<int>(coordinates.size() / 2);
    std::fenv_t environment;
    std::fegetenv(&environment);
    std::string text = switches;
    triangulate(text.data(), &in, &out, nullptr);
    std::fesetenv(&environment);
    for (void* const list : std::initializer_list<void*>{
             out.pointlist, out.pointattributelist, out.pointmarkerlist, out.trianglelist,
             out.triangleattributelist, out.neighborlist, out.segmentlist, out.segmentmarkerlist,
             out.edgelist, out.edgemarkerlist}) {
        if (list != nullptr) { trifree(list); }
    }
}

std::vector<double> coordinatesOf(const Points& points) {
    std::vector<double> result;
    for (const XPnt3d& p : points) { result.insert(result.end(), {p.x, p.y}); }
    return result;
}

struct Measured {
    std::vector<double> sorted, sorting, unmoved, single, cgal, generator;
    double bytes = 0, cgalBytes = 0;
};

Measured insertion(const Points& points, int runs) {
    const Box box(points);
    std::vector<Kernel::Point_2> peerPoints;
    for (const XPnt3d& p : points) { peerPoints.emplace_back(p.x, p.y); }
    std::vector<double> coordinates = coordinatesOf(points);
    Measured times;
    for (int run = 0; run < runs; ++run) {
        {
            const ref_ptr<Pnt3dArray> array = arrayOf(points);
            const ref_ptr<IZynDelaunayD> engine = box.engine();
            const double sorting = bench::seconds([&] { spatialSort(array.get()); });
            const double inserting = bench::seconds([&] {
                for (XPnt3d& p : *array) { engine->addPoint(&p, 0); }
            });
            times.sorting.push_back(sorting);
            times.sorted.push_back(sorting + inserting);
        }
        {
            const ref_ptr<Pnt3dArray> array = arrayOf(points);
            const std::size_t before = bench::liveBytes();
            bench::resetPeak();
            const ref_ptr<IZynDelaunayD> engine = box.engine();
            times.unmoved.push_back(
                bench::seconds([&] { addPoints(engine.get(), array.get(), 0); }));
            times.bytes = double(bench::peakBytes() - before) / double(points.size());
        }
        {
            const ref_ptr<Pnt3fArray> array = newPnt3fArray();
            for (const XPnt3d& p : points) { array->append(XPnt3f(p)); }
            const ref_ptr<IZynDelaunay> engine = box.floatEngine();
            times.single.push_back(
                bench::seconds([&] { addPoints(engine.get(), array.get(), 0); }));
        }
        {
            const std::size_t before = bench::liveBytes();
            bench::resetPeak();
            Triangulation peer;
            times.cgal.push_back(
                bench::seconds([&] { peer.insert(peerPoints.begin(), peerPoints.end()); }));
            times.cgalBytes = double(bench::peakBytes() - before) / double(points.size());
        }
        times.generator.push_back(bench::seconds([&] { callGenerator(coordinates, "zQnN"); }));
    }
    return times;
}

void printInsertion(const char* family, std::size_t n, const Measured& m) {
    const double us = 1e6 / double(n);
    const double sorted = bench::median(m.sorted), unmoved = bench::median(m.unmoved);
    const double cgal = bench::median(m.cgal), generator = bench::median(m.generator);
    std::printf(
        "| %s | %zu | %.3f | %.3f | %.3f | %.3f | %.3f | %.3f | %.2f | %.2f | %.2f |"
        " %.1f | %.1f |\n",
        family, n, bench::median(m.sorting) * us, sorted * us, unmoved * us,
        bench::median(m.single) * us, cgal * us, generator * us, cgal / sorted, generator / sorted,
        cgal / unmoved, m.bytes, m.cgalBytes);
    std::fflush(stdout);
}

void oneShot(const Points& points, int runs) {
    const Box box(points);
    std::vector<double> wrapped, bare;
    std::vector<double> coordinates;
    for (const XPnt3d& p : points) {
        const volatile float x = float(p.x), y = float(p.y);
        coordinates.insert(coordinates.end(), {double(x), double(y)});
    }
    for (int run = 0; run < runs; ++run) {
        const ref_ptr<Pnt3dArray> array = arrayOf(points);
        const ref_ptr<IZynDelaunayD> engine = box.engine();
        wrapped.push_back(bench::seconds([&] { engine->triangulate(array.get()); }));
        bare.push_back(bench::seconds([&] { callGenerator(coordinates, "pcen"); }));
    }
    const double a = bench::median(wrapped), b = bench::median(bare);
    std::fprintf(stderr, "\ntriangulate %.3f s, the generator alone %.3f s: %.2f\n", a, b, a / b);
}

void queries(std::size_t n, int runs, std::mt19937_64& random) {
    Points points = uniform(n, random);
    for (XPnt3d& p : points) { p.z = heightOf(p.x, p.y); }
    // Both keep neighbours close to each other in memory: the peer sorts its points by itself.
    const ref_ptr<Pnt3dArray> array = arrayOf(points);
    spatialSort(array.get());
    const ref_ptr<IZynDelaunayD> engine = Box(points).engine();
    addPoints(engine.get(), array.get(), 0);
    Triangulation peer;
    std::vector<Kernel::Point_2> peerPoints;
    for (const XPnt3d& p : points) { peerPoints.emplace_back(p.x, p.y); }
    peer.insert(peerPoints.begin(), peerPoints.end());

    const ref_ptr<Pnt3dArray> places = arrayOf(uniform(n, random));
    spatialSort(places.get());
    std::vector<double> heights, locate, raster, lines, volumes;
    const ref_ptr<MatrixDbl> cells = newMatrixDbl();
    const ref_ptr<DoubleArray> levels = newDoubleArray();
    for (int i = 0; i < 10; ++i) { levels->append(-30.0 + 10 * i); }
    constexpr int side = 4000;
    const Enve2d area(1, 1, extent - 1, extent - 1);
    std::size_t found = 0, linePoints = 0;
    for (int run = 0; run < runs; ++run) {
        heights.push_back(
            bench::seconds([&] { found += std::size_t(heightAt(engine.get(), places.get())); }));
        locate.push_back(bench::seconds([&] {
            Triangulation::Face_handle hint;
            for (const XPnt3d& p : *places) {
                hint = peer.locate({p.x, p.y}, hint);
                found += peer.is_infinite(hint) ? 0 : 1;
            }
        }));
        raster.push_back(
            bench::seconds([&] { (void)rasterize(engine.get(), area, side, side, cells.get()); }));
        ref_ptr<Pnt3dArrayArray> result;
        lines.push_back(bench::seconds([&] { result = contours(engine.get(), levels.get()); }));
        linePoints = 0;
        for (const Pnt3dArray* const line : *result) { linePoints += std::size_t(line->size()); }
        volumes.push_back(
            bench::seconds([&] { found += volume(engine.get(), 10.0).cut > 0 ? 1 : 0; }));
    }
    const double us = 1e6 / double(n);
    const double h = bench::median(heights), l = bench::median(locate);
    const double r = bench::median(raster), c = bench::median(lines), v = bench::median(volumes);
    std::printf(
        "| %d | %.3f us | %.3f us | %.2f | %.0f million | %.3f s, %.0f ns a point | %.3f s |\n",
        engine->triangleCount(), h * us, l * us, l / h, side * side / r / 1e6, c,
        c * 1e9 / double(linePoints), v);
    std::fflush(stdout);
    if (found == 0) { std::exit(1); }
}

}  // namespace

int main(int argc, char** argv) {
    const auto n = static_cast<std::size_t>(argc > 1 ? std::atol(argv[1]) : 1000000);
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    const std::string only = argc > 3 ? argv[3] : "";
    std::mt19937_64 random(1);

    const auto isAsked = [&only](const std::string& part) { return only.empty() || only == part; };
    if (only != "queries") {
        std::printf("microseconds a point, bytes a point\n\n");
        std::printf(
            "| points | number | spatialSort | it and addPoint | addPoints | float | CGAL |"
            " generator | CGAL / sorted | generator / sorted | CGAL / addPoints | bytes |"
            " CGAL |\n|---|---|---|---|---|---|---|---|---|---|---|---|---|\n");
    }
    for (const Family& family : families) {
        if (!isAsked(family.name)) { continue; }
        const Points points = family.make(n, random);
        printInsertion(family.name, points.size(), insertion(points, runs));
    }
    if (isAsked("queries")) {
        std::printf(
            "\n| triangles | heightAt | CGAL locate | ratio | raster cells a second |"
            " 10 contours | volume |\n|---|---|---|---|---|---|---|\n");
        queries(n, runs, random);
        oneShot(uniform(n, random), runs);
    }
    return 0;
}
