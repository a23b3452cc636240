// Compares surfaces in bulk with CGAL's Delaunay triangulation and the mesh generator, in one run.
//
// usage: bench_peers [POINTS [RUNS [PART]]]
//
// PART is one of these; default: all.
// - uniform, clusters, grid, rows, scan, terrain: one family of points;
// - surface: class Surface on all families;
// - singles: single queries and changes of a Surface;
// - queries: heights, contours, rasters, cut and fill.
//
// All libraries get the same points, shuffled unless the family defines an order. They take turns;
// the medians of the runs are compared.
#include "peers.h"
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
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace zyn;
using namespace bench;
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Triangulation = CGAL::Delaunay_triangulation_2<Kernel>;

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
            const double sorting = seconds([&] { spatialSort(array.get()); });
            const double inserting = seconds([&] {
                for (XPnt3d& p : *array) { engine->addPoint(&p, 0); }
            });
            times.sorting.push_back(sorting);
            times.sorted.push_back(sorting + inserting);
        }
        {
            const ref_ptr<Pnt3dArray> array = arrayOf(points);
            const std::size_t before = liveBytes();
            resetPeak();
            const ref_ptr<IZynDelaunayD> engine = box.engine();
            times.unmoved.push_back(seconds([&] { addPoints(engine.get(), array.get(), 0); }));
            times.bytes = double(peakBytes() - before) / double(points.size());
        }
        {
            const ref_ptr<Pnt3fArray> array = newPnt3fArray();
            for (const XPnt3d& p : points) { array->append(XPnt3f(p)); }
            const ref_ptr<IZynDelaunay> engine = box.floatEngine();
            times.single.push_back(seconds([&] { addPoints(engine.get(), array.get(), 0); }));
        }
        {
            const std::size_t before = liveBytes();
            resetPeak();
            Triangulation peer;
            times.cgal.push_back(
                seconds([&] { peer.insert(peerPoints.begin(), peerPoints.end()); }));
            times.cgalBytes = double(peakBytes() - before) / double(points.size());
        }
        times.generator.push_back(seconds([&] { callGenerator(coordinates, "zQnN"); }));
    }
    return times;
}

void printInsertion(const char* family, std::size_t n, const Measured& m) {
    const double us = 1e6 / double(n);
    const double sorted = median(m.sorted), unmoved = median(m.unmoved);
    const double cgal = median(m.cgal), generator = median(m.generator);
    std::printf(
        "| %s | %zu | %.3f | %.3f | %.3f | %.3f | %.3f | %.3f | %.2f | %.2f | %.2f |"
        " %.1f | %.1f |\n",
        family, n, median(m.sorting) * us, sorted * us, unmoved * us, median(m.single) * us,
        cgal * us, generator * us, cgal / sorted, generator / sorted, cgal / unmoved, m.bytes,
        m.cgalBytes);
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
        wrapped.push_back(seconds([&] { engine->triangulate(array.get()); }));
        bare.push_back(seconds([&] { callGenerator(coordinates, "pcen"); }));
    }
    const double a = median(wrapped), b = median(bare);
    std::fprintf(stderr, "\ntriangulate %.3f s, the generator alone %.3f s: %.2f\n", a, b, a / b);
}

void queries(std::size_t n, int runs, std::mt19937_64& random) {
    Points points = uniform(n, random);
    for (XPnt3d& p : points) { p.z = heightOf(p.x, p.y); }
    // Both keep neighbours close in memory: the peer sorts its points itself.
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
            seconds([&] { found += std::size_t(heightAt(engine.get(), places.get())); }));
        locate.push_back(seconds([&] {
            Triangulation::Face_handle hint;
            for (const XPnt3d& p : *places) {
                hint = peer.locate({p.x, p.y}, hint);
                found += peer.is_infinite(hint) ? 0 : 1;
            }
        }));
        raster.push_back(
            seconds([&] { (void)rasterize(engine.get(), area, side, side, cells.get()); }));
        ref_ptr<Pnt3dArrayArray> result;
        lines.push_back(seconds([&] { result = contours(engine.get(), levels.get()); }));
        linePoints = 0;
        for (const Pnt3dArray* const line : *result) { linePoints += std::size_t(line->size()); }
        volumes.push_back(seconds([&] { found += volume(engine.get(), 10.0).cut > 0 ? 1 : 0; }));
    }
    const double us = 1e6 / double(n);
    const double h = median(heights), l = median(locate);
    const double r = median(raster), c = median(lines), v = median(volumes);
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
    if (only != "queries" && only != "surface" && only != "singles") {
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
    if (isAsked("surface")) {
        printSurfaceHead();
        for (const Family& family : families) {
            printSurface(family.name, family.make(n, random), runs);
        }
    }
    if (isAsked("singles")) { printSingles(n, runs, random); }
    if (isAsked("queries")) {
        std::printf(
            "\n| triangles | heightAt | CGAL locate | ratio | raster cells a second |"
            " 10 contours | volume |\n|---|---|---|---|---|---|---|\n");
        queries(n, runs, random);
        oneShot(uniform(n, random), runs);
    }
    return 0;
}
