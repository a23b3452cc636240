// Const operations of a Surface on many threads at once.
#include <zyn/surface.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "file_content.h"
#include "point_sets.h"
#include "testing.h"

namespace {

using namespace zyn;

void append(std::vector<double>& all, const Polyline& line) {
    for (const XPnt3d& p : line) { all.insert(all.end(), {p.x, p.y, std::isnan(p.z) ? -1 : p.z}); }
}

/// Calls every const operation and returns all their results.
std::vector<double> answersOf(const Surface& s, const std::string& path) {
    std::vector<double> all;
    for (const SurfaceView& view : {SurfaceView(s), s.withMaxEdge(2)}) {
        for (const SurfaceTriangle& t : view.triangles()) {
            const auto next = t.neighbor(1);
            append(all, {t.corner(0), t.normal()});
            all.insert(all.end(), {double(t.vertex(0)), t.area(), t.planArea(),
                                   next ? next->planArea() : -1, t.isBreakline(2) ? 1.0 : 0.0});
        }
        for (const int v : view.vertices()) { append(all, {s.point(v)}); }
        for (const auto& edges : {view.edges(), view.breaklineEdges()}) {
            for (const auto& [a, b] : edges) { all.push_back(a * 1e6 + b); }
        }
        for (const auto& line : view.rim()) { all.insert(all.end(), line.begin(), line.end()); }
        for (double x = -1; x < 32; x += 0.37) {
            const auto t = view.triangleAt(x, 31 - x);
            all.push_back(t ? t->vertex(0) : -1);
            all.push_back(view.heightAt(x, 31 - x).value_or(-1));
        }
        Polyline asked;
        for (int i = 0; i < 400; ++i) { asked.emplace_back(i % 37, i % 31); }
        all.push_back(view.heightsAt(asked));
        append(all, asked);
        append(all, view.profile({-1, 3}, {33, 29}));
        for (const double cell : view.rasterize({0, 0, 30, 30}, 40, 40).values) {
            all.push_back(std::isnan(cell) ? -1 : cell);
        }
        for (const Polyline& line : view.contours({0, 0.5})) { append(all, line); }
        const Enve3d box = view.bounds();
        all.insert(all.end(), {view.area(), view.planArea(), view.volume(0).cut, box.maxX, box.minZ,
                               double(view.triangleCount())});
        view.writeObj(path + ".obj");
        view.writePly(path + ".ply", PlyNormals::vertex);
        view.writeLandXml(path + ".xml", "ground");
        for (const char* const type : {".obj", ".ply", ".xml"}) {
            std::string content = support::contentOf(path + type);
            content.erase(0, content.find("<Units") + 1);  // LandXML has the time before it
            all.insert(all.end(), content.begin(), content.end());
        }
    }
    for (int i = 0; i < s.pointCount(); ++i) { all.push_back(s.vertexOf(i).value_or(-1)); }
    all.insert(all.end(), {double(s.vertexCount()), double(s.pointReport().refused),
                           s.validate() ? 1.0 : 0.0});
    return all;
}

TEST(SurfaceThreads, GetTheResultsOfASingleThread) {
    Surface s(support::makePointSet("Duplicates", 1, 1000).points);
    s.addBreaklines(std::vector<Polyline>{{{1, 1, 0}, {25, 26, 0}}, {{2, 25, 1}, {24, 3, 1}}});
    s.removePoint(7);
    const std::string path = testing::TempDir() + "zyn_threads_test";
    const std::vector<double> expected = answersOf(s, path);
    std::vector<std::vector<double>> answers(8);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        threads.emplace_back([&, i] { answers[i] = answersOf(s, path + std::to_string(i)); });
    }
    for (std::thread& thread : threads) { thread.join(); }
    for (const std::vector<double>& answer : answers) {
        const auto [other, own] = std::ranges::mismatch(answer, expected);
        EXPECT_EQ(other - answer.begin(), std::ssize(expected));
    }
}

}  // namespace
