// What a Surface promises: the convex hull, heights, breaklines, queries and errors.
#include <zyn/surface.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <random>
#include <ranges>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "file_content.h"
#include "hull_check.h"
#include "point_sets.h"
#include "seed.h"
#include "surface_check.h"
#include "testing.h"

#ifdef ZYN_TEST_CGAL
#include "cgal_triangles.h"
#endif

namespace {

using namespace zyn;
using support::Position;

static_assert(std::forward_iterator<SurfaceTriangleIterator>);

Position placeOf(const XPnt3d& p) { return {p.x, p.y}; }
std::vector<Position> placesOf(const Surface& s, const std::vector<int>& numbers) {
    std::vector<Position> places;
    for (const int number : numbers) { places.push_back(placeOf(s.point(number))); }
    return places;
}
std::vector<std::pair<double, double>> keysOf(const std::vector<Position>& places) {
    std::vector<std::pair<double, double>> keys;
    std::ranges::transform(places, std::back_inserter(keys), support::keyOf);
    return keys;
}
/// Checks the surface against the convex hull of its vertices, by exact arithmetic.
void expectHull(const Surface& s) {
    std::vector<Position> corners;
    for (const SurfaceTriangle& t : s.triangles()) {
        for (int i = 0; i < 3; ++i) {
            corners.push_back(placeOf(t.corner(i)));
            EXPECT_EQ(support::keyOf(placeOf(s.point(t.vertex(i)))),
                      support::keyOf(corners.back()));
        }
    }
    for (const SurfaceTriangle& t : s.triangles()) {
        const XPnt3d n = t.normal();
        EXPECT_NEAR(std::hypot(n.x, n.y, n.z), 1, 1e-15);
        EXPECT_GE(n.z, 0);
    }
    const std::vector<Position> places = placesOf(s, s.vertices());
    EXPECT_EQ(support::faultOfHull(places, corners), "");
    ASSERT_EQ(s.rim().size(), corners.empty() ? 0U : 1U);
    if (corners.empty()) { return; }
    std::vector<Position> rim = placesOf(s, s.rim()[0]);
    std::rotate(rim.begin(), std::ranges::min_element(rim, {}, support::keyOf), rim.end());
    double hullArea = 0, size2 = 0;
    for (std::size_t i = 1; i < rim.size(); ++i) {
        const Position o = rim[0], a = rim[i - 1], b = rim[i];
        hullArea += ((a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x)) / 2;
        size2 = std::max(size2, (b.x - o.x) * (b.x - o.x) + (b.y - o.y) * (b.y - o.y));
    }
    EXPECT_NEAR(s.planArea(), hullArea, 1e-13 * size2);
    EXPECT_EQ(keysOf(rim), keysOf(support::hullOf(places)));
}

void expectHullOf(const std::vector<XPnt3d>& points) {
    const Surface s(points);
    ASSERT_EQ(support::faultOf(s), "");
    expectHull(s);
    const PointReport report = s.pointReport();
    EXPECT_EQ(s.pointCount(), int(points.size()));
    EXPECT_EQ(s.vertexCount(), report.vertices);
    const auto isFinite = [](const XPnt3d& p) { return std::isfinite(p.x + p.y + p.z); };
    EXPECT_EQ(report.notFinite, std::ranges::count_if(points, std::not_fn(isFinite)));
    EXPECT_EQ(report.vertices + report.refused + report.notFinite, s.pointCount());
    for (int i = 0; i < s.pointCount(); ++i) {
        const auto vertex = s.vertexOf(i);
        EXPECT_EQ(vertex.has_value(), isFinite(points[std::size_t(i)])) << i;
        if (!vertex) { continue; }
        EXPECT_EQ(support::keyOf(placeOf(s.point(*vertex))),
                  support::keyOf(placeOf(points[std::size_t(i)])));
    }
}

TEST(Surface, IsTheConvexHullOfEveryFamily) {
    const unsigned seed = support::newSeed();
    std::vector<support::Scale> scales(std::begin(support::scales), std::end(support::scales));
    scales.push_back({"Degrees", 1e-5, 8.5, 47.4});
    for (const support::Scale& scale : scales) {
        for (const auto names : {support::pointSetNames(), support::wildPointSetNames()}) {
            for (const std::string_view name : names) {
                for (const int count : {0, 1, 2, 3, 10, 200}) {
                    SCOPED_TRACE(testing::Message() << name << ' ' << scale.name << ' ' << count);
                    expectHullOf(support::makePointSet(name, seed, count, scale).points);
                }
            }
        }
    }
    auto strip = support::uniformPoints(500, seed).points;
    for (XPnt3d& p : strip) { p.set(500 * p.x, 5 * p.y, 0); }
    expectHullOf(strip);
    expectHullOf({{1e90, 0, 0}, {-1e90, 1e90, 0}, {0, 1e-90, 0}, {1e90, 1e90, 1e300}});
    EXPECT_EQ(Surface(std::vector<XPnt3d>{{1.01e90, 0, 0}, {0, 0, 0}}).pointReport().notFinite, 1);
}

#ifdef ZYN_TEST_CGAL
TEST(Surface, HasTheTrianglesOfCgal) {
    const unsigned seed = support::newSeed();
    for (const std::string_view name : {"RandomOrder", "Circle", "TiltedGrid", "Clusters"}) {
        Surface s(support::makePointSet(name, seed, 3000).points);
        s.addPoints(support::makePointSet(name, seed + 1, 2000).points);
        std::vector<support::TriangleAndRing> ours;
        for (const SurfaceTriangle& t : s.triangles()) {
            support::TriangleAndRing& one = ours.emplace_back();
            for (int i = 0; i < 3; ++i) {
                one.corners[std::size_t(i)] = placeOf(t.corner(i));
                const auto next = t.neighbor(i);
                for (int k = 0; next && k < 3; ++k) {
                    if (next->neighbor(k) == t) { one.across.push_back(placeOf(next->corner(k))); }
                }
            }
        }
        const auto difference = support::differenceFromCgal(placesOf(s, s.vertices()), ours);
        EXPECT_EQ(ours.size(), difference.theirs) << name;
        EXPECT_EQ(difference.missing, 0) << name << ", " << difference.onCircle << " on circles";
    }
}
#endif

TEST(Surface, StaysValidThroughChanges) {
    std::mt19937 random(support::newSeed());
    const auto whole = [&random](int most) { return int(random() % unsigned(most + 1)); };
    for (int round = 0; round < 20; ++round) {
        Surface s;
        double size = 8;
        const auto place = [&] { return XPnt3d(size * whole(64) / 64, size * whole(64) / 64, 1); };
        for (int step = 0; step < 40; ++step) {
            SCOPED_TRACE(testing::Message() << round << ", " << step);
            if (whole(9) == 0) { size *= 16; }  // soon outside the frame
            std::vector<XPnt3d> points(std::size_t(whole(30)));
            std::ranges::generate(points, place);
            if (whole(2) == 0) {
                s.addBreaklines(std::vector<Polyline>{points, {place(), place()}},
                                {.tolerance = whole(1) * 0.01, .giveWay = whole(1) == 0});
            } else if (whole(1) == 0) {
                const int first = s.pointCount();
                EXPECT_EQ(s.addPoints(points).first, first);
            } else if (s.pointCount() > 0) {
                const int number = whole(s.pointCount() - 1), before = s.vertexCount();
                const bool isVertex = s.vertexOf(number) == number;
                const bool isOnLine = std::ranges::any_of(
                    s.breaklineEdges(),
                    [=](const support::NumberPair& e) { return e[0] == number || e[1] == number; });
                EXPECT_EQ(s.removePoint(number), isVertex && !isOnLine) << number;
                EXPECT_EQ(s.vertexCount(), before - int(isVertex && !isOnLine));
            }
            ASSERT_EQ(support::faultOf(s), "");
            if (step % 10 == 9) { expectHull(s); }
            ASSERT_FALSE(testing::Test::HasFailure());
        }
    }
}

TEST(Surface, ResolvesHeightsByItsRule) {
    struct Case {
        Heights rule;
        double points, added, line;  // the height after each step
    };
    const std::vector<XPnt3d> points{{0, 0, 5}, {9, 0, 0}, {0, 9, 0}, {0, 0, 3}, {0.25, 0, 7}};
    for (const Case& c : {Case{Heights::first, 5, 5, 5}, Case{Heights::last, 7, 6, 1},
                          Case{Heights::lowest, 3, 2, 1}, Case{Heights::highest, 7, 7, 7},
                          Case{Heights::mean, 5, 23.0 / 5, 4}, Case{Heights::breakline, 5, 5, 1}}) {
        SCOPED_TRACE(int(c.rule));
        Surface s(points, {.tolerance = 0.5, .heights = c.rule});
        EXPECT_EQ(s.pointReport().refused, 2);
        const int vertex = s.vertexOf(0).value();  // the library chooses one of the three
        EXPECT_EQ(s.vertexOf(4), vertex);
        EXPECT_DOUBLE_EQ(s.point(vertex).z, c.points);
        EXPECT_EQ(s.addPoints(std::vector<XPnt3d>{{0, 0, 2}, {0, 0.125, 6}}).refused, 2);
        EXPECT_EQ(s.vertexOf(6), vertex);
        EXPECT_DOUBLE_EQ(s.point(vertex).z, c.added);
        const auto report = s.addBreaklines(std::vector<Polyline>{{{0, 0, 1}, {9, 9, 1}}},
                                            {.tolerance = 0.5, .heights = c.rule});
        EXPECT_EQ(report.refused, 1);
        EXPECT_DOUBLE_EQ(s.point(vertex).z, c.line);
    }
    // Every point is within the tolerance of the first one; the frame is farther away.
    for (const double tolerance : {100.0, 1e90, HUGE_VAL}) {
        Surface s(points, {.tolerance = tolerance, .heights = Heights::highest});
        s.addBreaklines(std::vector<Polyline>{{{3, 3, 8}, {4, 4, 1}}}, {.tolerance = tolerance});
        EXPECT_EQ(s.vertexCount(), 1) << tolerance;
        EXPECT_EQ(s.point(s.vertices().at(0)).z, 1) << tolerance;
    }
}

TEST(Surface, TakesTheHeightsOfBreaklines) {
    const std::vector<XPnt3d> square{{0, 0, 0}, {10, 0, 10}, {10, 10, 20}, {0, 10, 10}};
    // The third line has a point at the crossing of the first two.
    const Polyline rising{{1, 1, 50}, {9, 9, 50}}, falling{{1, 9, 60}, {9, 1, 60}},
        across{{5, 5, 70}, {5, 8, 70}};
    Surface hard(square), soft(square);
    EXPECT_EQ(hard.addBreaklines(std::vector{rising, falling}).crossings, 1);
    EXPECT_EQ(hard.heightAt(5, 5), 50);
    Surface atOnce(square);
    const auto report = atOnce.addBreaklines(std::vector{rising, falling, across});
    EXPECT_EQ(report.edges, 5);
    EXPECT_EQ(atOnce.heightAt(5, 5), 70) << "the last breakline there";

    const double volume = soft.volume(0).cut;
    soft.addBreaklines(std::vector{rising, falling, Polyline{{0.25, 0, 99}, {9, 2, 99}}},
                       {.tolerance = 0.5, .soft = true});
    EXPECT_EQ(soft.heightAt(0, 0), 0) << "the vertex within the tolerance keeps its height";
    EXPECT_NEAR(soft.volume(0).cut, volume, 1e-9);
}

TEST(Surface, LosesNoBreakline) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution<double> place(0, 100);
    std::vector<Polyline> lines(300);
    for (Polyline& line : lines) {
        line = {{place(random), place(random), 1}, {place(random), place(random), 2}};
    }
    lines[0].insert(lines[0].end(), {{50, 50, 3}, lines[0][0]});
    Surface s(support::makePointSet("Grid", 1, 400).points);
    const BreaklineReport report = s.addBreaklines(lines);
    ASSERT_EQ(support::faultOf(s), "");
    expectHull(s);
    EXPECT_EQ(report.lost, 0);
    EXPECT_GT(report.crossings, 1000);
    EXPECT_EQ(report.edges, int(s.breaklineEdges().size()));
    EXPECT_EQ(s.vertexCount(), 400 + report.vertices + report.crossings);
    EXPECT_EQ(s.addBreaklines(lines).crossings, 0) << "the same lines again";

    Surface other;
    const Polyline ring{{0, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}};
    const auto made = other.addBreaklines(
        std::vector<Polyline>{{}, ring, {{1, 1}}, {{2, 2}, {2, 2}}, {{0, 0}, {NAN, 1}}});
    EXPECT_EQ(made.leftOut, (std::vector{0, 2, 3, 4}));
    EXPECT_EQ(made.edges, 4);
    EXPECT_EQ(other.addBreaklines({}).edges, 0);
    EXPECT_EQ(other.addBreaklines(std::vector<Polyline>{{{-1, 2}, {5, 2}}}, {.giveWay = true}).lost,
              2);
    EXPECT_EQ(support::faultOf(other), "");
}

TEST(Surface, LeavesTheSameTrianglesOutOfEveryQuery) {
    std::mt19937 random(support::newSeed());
    auto points = support::makePointSet("Grid", 1, 600).points;  // without needles, and with gaps
    std::erase_if(points, [&random](const XPnt3d&) { return random() % 3 == 0; });
    for (XPnt3d& p : points) { p.z = double(random() % 8) / 8; }
    Surface s(points);
    for (const double most : {anyEdge, 3.5, 2.5, 1.5, -1.0}) {
        SCOPED_TRACE(most);
        s.setMaxEdge(most);
        const SurfaceView view = s.withMaxEdge(most);
        int count = 0, open = 0;
        double plan = 0, space = 0;
        Enve3d box;
        for (const SurfaceTriangle& t : view.triangles()) {
            ++count;
            plan += t.planArea();
            space += t.area();
            for (int i = 0; i < 3; ++i) {
                const XPnt3d a = t.corner(i), b = t.corner((i + 1) % 3);
                EXPECT_LE(std::hypot(a.x - b.x, a.y - b.y, a.z - b.z), most * (1 + 1e-15));
                box.SetBox(a);
                open += t.neighbor(i) ? 0 : 1;
            }
        }
        EXPECT_EQ(s.triangleCount(), count);
        EXPECT_EQ(s.planArea(), plan);
        EXPECT_EQ(s.area(), space);
        EXPECT_EQ(s.bounds().minX, box.minX);
        EXPECT_EQ(s.bounds().maxZ, box.maxZ);
        const SurfaceVolume volume = s.volume(0);
        EXPECT_NEAR(volume.cutArea + volume.fillArea, plan, 1e-9 * plan);
        int rim = 0;
        double enclosed = 0;
        for (const std::vector<int>& line : s.rim()) {
            rim += int(line.size());
            const XPnt3d o = s.point(line[0]);
            for (std::size_t i = 1; i < line.size(); ++i) {
                const XPnt3d a = s.point(line[i - 1]), b = s.point(line[i]);
                enclosed += ((a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x)) / 2;
            }
        }
        EXPECT_EQ(rim, open);
        EXPECT_NEAR(enclosed, plan, 1e-9 * plan) << "gaps run clockwise";
        const std::string path = testing::TempDir() + "zyn_surface_test.obj";
        s.writeObj(path);
        EXPECT_EQ(std::ranges::count(support::contentOf(path), 'f'), count);
        for (const Polyline& line : s.contours({0.25})) {
            const XPnt3d middle = line[0] + (line[1] - line[0]) / 2.0;
            EXPECT_NEAR(s.heightAt(middle.x, middle.y).value_or(0.25), 0.25, 1e-12);
        }
        for (const XPnt3d& p : s.profile({-1, 0.5}, {25, 22})) {
            if (std::isnan(p.z)) { continue; }  // a gap
            EXPECT_NEAR(s.heightAt(p.x, p.y).value_or(p.z), p.z, 1e-12);
        }
    }
}

TEST(Surface, HeightsEqualThoseOfItsRasterExactly) {
    const unsigned seed = support::newSeed();
    std::mt19937 random(seed);
    for (const std::string_view name : {"Grid", "TiltedGrid", "RandomOrder", "UlpGrid", "Circle"}) {
        for (const double x0 : {0.0, 432100.0}) {
            auto points = support::makePointSet(name, seed, 400).points;
            for (XPnt3d& p : points) { p.set(p.x + x0, p.y, std::ldexp(random(), -20)); }
            Surface s(points);
            for (const double most : {anyEdge, 500.0, 2.5}) {
                s.setMaxEdge(most);
                // Centres at multiples of a quarter: on vertices, on edges and inside.
                const Enve2d box(x0 - 1.125, -1.125, x0 + 20.875, 20.875);
                const Raster raster = s.rasterize(box, 88, 88);
                int different = 0, heights = 0;
                std::vector<XPnt3d> asked;
                for (std::size_t i = 0; i < raster.values.size(); ++i) {
                    asked.emplace_back(x0 - 1 + double(i % 88) / 4, -1 + double(i / 88) / 4);
                    const double z = s.heightAt(asked[i].x, asked[i].y).value_or(NAN);
                    const double cell = raster.values[i];
                    const bool isNone = std::isnan(z) && std::isnan(cell);
                    different += isNone || z == cell ? 0 : 1;
                    heights += std::isnan(z) ? 0 : 1;
                }
                EXPECT_EQ(different, 0) << name << ' ' << x0 << ' ' << most;
                EXPECT_EQ(s.heightsAt(asked), heights);
            }
        }
    }
}

TEST(Surface, LoopsOverTrianglesNestAndNeighborsLinkBack) {
    Surface s(support::makePointSet("RandomOrder", support::newSeed(), 60).points);
    s.addBreaklines(std::vector<Polyline>{{{1, 1, 0}, {6, 6, 0}}});
    const int count = s.triangleCount();
    std::size_t pairs = 0, breaklines = 0;
    for (const SurfaceTriangle& t : s.triangles()) {
        pairs += std::size_t(std::ranges::distance(s.triangles()));
        const XPnt3d inside = (t.corner(0) + t.corner(1) + t.corner(2)) / 3.0;
        EXPECT_EQ(s.triangleAt(inside.x, inside.y), t);
        EXPECT_GT(t.normal().z, 0);
        EXPECT_NEAR(t.area() * t.normal().z, t.planArea(), 1e-14 * t.area());
        for (int i = 0; i < 3; ++i) {
            const auto next = t.neighbor(i);
            breaklines += t.isBreakline(i) ? (next ? 1U : 2U) : 0U;
            if (!next) { continue; }
            EXPECT_EQ(int(next->neighbor(0) == t) + int(next->neighbor(1) == t) +
                          int(next->neighbor(2) == t),
                      1);
        }
    }
    EXPECT_EQ(pairs, std::size_t(count) * std::size_t(count));
    EXPECT_EQ(breaklines, 2 * s.breaklineEdges().size());
    EXPECT_EQ(s.triangleAt(-5, 0), std::nullopt);
    EXPECT_EQ(s.heightAt(NAN, 0), std::nullopt);
}

TEST(Surface, IsEmptyWhenNewAndWhenMovedFrom) {
    Surface moved(std::vector<XPnt3d>{{0, 0, 1}, {8, 0, 1}, {0, 8, 1}});
    const SurfaceView view = moved;
    const Surface kept = std::move(moved);
    EXPECT_EQ(view.heightAt(1, 1), 1);
    EXPECT_EQ(SurfaceView().heightAt(1, 1), std::nullopt);
    Surface fresh;
    for (Surface* const s : {&fresh, &moved}) {
        EXPECT_EQ(support::faultOf(*s), "");
        expectHull(*s);
        EXPECT_EQ(s->pointCount(), 0);
        EXPECT_FALSE(s->bounds().isValid());
        EXPECT_EQ(s->heightAt(0, 0), std::nullopt);
        EXPECT_TRUE(std::isnan(s->rasterize({0, 0, 1, 1}, 1, 1).values.at(0)));
        EXPECT_THAT(s->profile({0, 0}, {1, 1}), testing::IsEmpty());
        EXPECT_THAT(s->contours({0}), testing::IsEmpty());
        s->setMaxEdge(5);
        EXPECT_FALSE(s->removePoint(0));
        s->addPoints(std::vector<XPnt3d>{{0, 0, 1}, {3, 0, 1}, {0, 3, 1}, {8, 8, 1}});
        EXPECT_EQ(s->triangleCount(), 1) << "setMaxEdge still applies";
        EXPECT_EQ(support::faultOf(*s), "");
    }
}

template <class Error, class Call>
std::string textOf(Call call) {
    try {
        call();
    } catch (const Error& error) { return error.what(); }
    return "nothing thrown";
}

TEST(Surface, NamesTheValueInItsErrors) {
    using Bad = std::invalid_argument;
    Surface s(std::vector<XPnt3d>{{0, 0, 1}, {8, 0, 1}, {0, 8, 1}});
    const auto expect = [](const std::string& text, const char* value) {
        EXPECT_THAT(text, testing::HasSubstr(value));
    };
    const auto make = [](SurfaceOptions options) { Surface(std::vector<XPnt3d>(), options); };
    expect(textOf<Bad>([&] { make({.tolerance = -2.5}); }), "-2.5");
    expect(textOf<Bad>([&] { make({.tolerance = -1e-9}); }), "-1e-09");
    expect(textOf<Bad>([&] { make({.tolerance = NAN}); }), "nan");
    expect(textOf<Bad>([&] { make({.maxEdge = NAN}); }), "nan");
    expect(textOf<Bad>([&] { s.addBreaklines({}, {.tolerance = -3}); }), "-3");
    expect(textOf<Bad>([&] { s.setMaxEdge(NAN); }), "nan");
    expect(textOf<Bad>([&] { (void)s.point(3); }), "3");
    expect(textOf<Bad>([&] { (void)s.vertexOf(-1); }), "-1");
    expect(textOf<Bad>([&] { (void)s.rasterize({0, 0, 1, 1}, 0, 7); }), "0");
    expect(textOf<Bad>([&] { (void)s.rasterize({0, 0, 0, 1}, 1, 1); }), "0");
    expect(textOf<Bad>([&] { (void)s.triangles().front().corner(3); }), "3");
    expect(textOf<std::system_error>([&] { s.writePly("/nowhere/x.ply"); }), "/nowhere/x.ply");
    expect(textOf<std::system_error>([&] { s.writeLandXml("", "x"); }), "No such file");
    EXPECT_EQ(support::faultOf(s), "");
}

}  // namespace
