// The surface out to the convex hull of its vertices.
#include <zyn/network.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "exact_signs.h"
#include "network.h"
#include "seed.h"

#ifdef ZYN_TEST_CGAL
#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#endif

namespace {

using namespace zyn;
using support::Position;

const auto keyOf = [](Position p) { return std::pair(p.x, p.y); };

/// Andrew's monotone chain, counter-clockwise, with the points on the hull's edges.
std::vector<Position> hullOf(std::vector<Position> points) {
    std::ranges::sort(points, {}, keyOf);
    std::vector<Position> hull;
    for (std::size_t round = 0, floor = 0; round < 2; ++round, floor = hull.size() - 1) {
        for (const Position p : points) {
            while (hull.size() > floor + 1 &&
                   support::exactOrientation(hull.end()[-2], hull.back(), p) < 0) {
                hull.pop_back();
            }
            if (hull.empty() || keyOf(p) != keyOf(hull.back())) { hull.push_back(p); }
        }
        std::ranges::reverse(points);
    }
    hull.pop_back();
    return hull;
}

template <class Real>
struct CloseHullTest : testing::Test {
    using Net = support::Network<Real>;
    static Position at(const Real* v) { return {double(v[0]), double(v[1])}; }
    static std::string fault(Net& net, bool delaunay) {
        return validate(net.engine.get(), delaunay).toStdString();
    }
    /// Checks the surface against the hull of all vertices, by exact arithmetic.
    static std::string faultOfHull(Net& net) {
        std::set<const Real*> vertices;
        std::vector<Position> corners, points;
        for (const auto* const t : net.triangles()) {
            for (const Real* const v : t->vertex) {
                if (!net.engine->isFrameVertex(v)) { vertices.insert(v); }
                if (!net.engine->isFrameTriangle(t)) { corners.push_back(at(v)); }
            }
        }
        std::ranges::transform(vertices, std::back_inserter(points), at);
        if (points.empty()) { return corners.empty() ? "" : "triangles of nothing"; }
        const std::vector<Position> hull = hullOf(points);
        const auto most = 2 * points.size() - std::min(2 * points.size(), hull.size() + 2);
        if (corners.size() != 3 * most) { return "not " + std::to_string(most) + " triangles"; }
        return support::haveAreaOf(corners, hull) ? "" : "another area";
    }
    /// The network of the points in a frame about them, as far off as `margin` times their extent.
    static Net networkOf(const std::vector<XPnt3d>& points, Pnt3Array<Real>* array, double margin) {
        const auto [left, right] = std::ranges::minmax(points, {}, &XPnt3d::x);
        const auto [low, high] = std::ranges::minmax(points, {}, &XPnt3d::y);
        const double wide = margin * std::max(right.x - left.x, high.y - low.y);
        const auto room = [wide](double a, double b) {
            return Real(a) < Real(b) ? wide : wide + 1 + 1e-3 * std::abs(a);
        };
        const double x = room(left.x, right.x), y = room(low.y, high.y);
        Net net(left.x - x, low.y - y, right.x + x, high.y + y);
        addPoints<Real>(net.engine.get(), array, 0);
        return net;
    }
};
TYPED_TEST_SUITE(CloseHullTest, support::Precisions);

TYPED_TEST(CloseHullTest, MakesTheDelaunayTriangulationOfEveryFamilyInAnyFrame) {
    const unsigned seed = support::newSeed();
    const auto expectClosed = [](const std::vector<XPnt3d>& points) {
        const auto array = support::arrayOf<TypeParam>(points);
        for (const double margin : {0.0, 0.01, 1000.0}) {
            auto net = TestFixture::networkOf(points, array.get(), margin);
            ASSERT_GE(closeHull(net.engine.get()), 0) << margin;
            EXPECT_EQ(TestFixture::fault(net, true), "") << margin;
            EXPECT_EQ(TestFixture::faultOfHull(net), "") << margin;
        }
    };
    const support::Scale degrees{"Degrees", 1e-5, 8.5, 47.4};
    for (const support::Scale& scale : {support::atOrigin, support::scales[1], degrees}) {
        for (const std::string_view name : support::pointSetNames()) {
            for (const int count : {1, 3, 10, 200}) {
                SCOPED_TRACE(testing::Message() << name << ' ' << scale.name << ' ' << count);
                expectClosed(support::makePointSet(name, seed, count, scale).points);
            }
        }
    }
    auto strip = support::uniformPoints(500, seed).points;
    for (XPnt3d& p : strip) { p.set(500 * p.x, 5 * p.y, 0); }
    expectClosed(strip);
}

TYPED_TEST(CloseHullTest, GoesOnAfterPointsComeAndGo) {
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
    for (const int step : {50, 20, 4, 1}) {
        for (const double tolerance : {-1, 0}) {  // with points in one place, and without
            support::Network<TypeParam> net(0, 0, 100, 100);
            auto* const engine = net.engine.get();
            for (int n = 0; n < 1500; ++n) {
                net.add(step * pick(100 / step + 1), step * pick(100 / step + 1), 0, tolerance);
                const auto& p = net.points[std::size_t(pick(n + 1))];
                // Without its duplicate, a triangle of no area would be a fault.
                if (tolerance == 0 && pick(3) > 0) { engine->removePoint(nullptr, p.x, p.y, 1); }
                if (pick(20) > 0) { continue; }
                ASSERT_GE(closeHull(engine), 0);
                ASSERT_EQ(this->fault(net, false), "") << n;
                if (tolerance < 0) { continue; }
                restoreDelaunay(engine);
                ASSERT_GE(closeHull(engine), 0);
                ASSERT_EQ(this->fault(net, true), "") << n;
                ASSERT_EQ(this->faultOfHull(net), "") << n;
                ASSERT_EQ(closeHull(engine), 0);
            }
        }
    }
}

TYPED_TEST(CloseHullTest, KeepsFixedEdgesAndRefusesAFrameThatIsNotWhole) {
    support::Network<TypeParam> net(-1, -1, 5, 3);
    auto* const engine = net.engine.get();
    EXPECT_EQ(closeHull(engine), 0);
    EXPECT_EQ(closeHull<TypeParam>(nullptr), -1);
    // The circle of the hull's triangle 0-2-1 holds vertex 3 beyond the edge 0-1.
    constexpr double places[][2] = {{0, 0}, {2, 0.1}, {4, 0}, {1, 0.06}, {2, 2}};
    for (const auto& [x, y] : places) { net.add(x, y); }
    TypeParam *const a = net.vertex(0), *const b = net.vertex(1);
    const auto fixed = support::newVertices<TypeParam>();
    for (TypeParam* const end : {a, b}) { fixed->append(end); }
    engine->enforceEdge(a, b, nullptr);
    EXPECT_GT(closeHull(engine, fixed.get()), 0);
    EXPECT_EQ(this->faultOfHull(net), "");
    EXPECT_NE(net.triangleOn(a, b), nullptr);
    restoreDelaunay(engine);
    EXPECT_GT(closeHull(engine), 0);
    EXPECT_EQ(net.triangleOn(a, b), nullptr);

    ASSERT_TRUE(engine->deleteTriangle(engine->locate(-0.5, -0.75)));
    const auto before = net.records();
    EXPECT_EQ(closeHull(engine), -1);
    EXPECT_EQ(net.records(), before);
}

TYPED_TEST(CloseHullTest, IsClosedAllRoundOrNotAtAll) {
    // Both sides have a pocket that takes in four vertices.
    std::vector<XPnt3d> points;
    for (int i = 0; i < 12; ++i) {
        points.emplace_back(i % 6, (i < 6 ? 0.01 : -0.01) * (i % 6) * (5 - i % 6) + i / 6);
    }
    const auto array = support::arrayOf<TypeParam>(points);
    auto net = this->networkOf(points, array.get(), 0.1);
    ASSERT_GE(closeHull(net.engine.get()), 8);
    EXPECT_EQ(this->fault(net, true), "");
    // Back to the frame with one side alone.
    auto* const t = net.engine->locate(TypeParam(2.5), TypeParam(0.001));
    auto* const frame = net.engine->locate(TypeParam(2.5), TypeParam(-0.001));
    ASSERT_TRUE(net.engine->isFrameTriangle(frame));
    ASSERT_FALSE(net.engine->isFrameTriangle(t));
    frame->adjust(frame->vertex[frame->index(t)]);
    EXPECT_EQ(this->fault(net, false), "");
    EXPECT_TRUE(this->fault(net, true).ends_with("edge that is not Delaunay"));
}

#ifdef ZYN_TEST_CGAL
// Where four points are on one circle, two triangulations are right.
TYPED_TEST(CloseHullTest, HasTheTrianglesOfCgal) {
    using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
    const auto sorted = [](Position a, Position b, Position c) {
        std::array corners{keyOf(a), keyOf(b), keyOf(c)};
        std::ranges::sort(corners);
        return corners;
    };
    const unsigned seed = support::newSeed();
    for (const std::string_view name : {"RandomOrder", "Circle", "TiltedGrid", "Clusters"}) {
        const auto points = support::makePointSet(name, seed, 5000).points;
        const auto array = support::arrayOf<TypeParam>(points);
        auto net = this->networkOf(points, array.get(), 0.01);
        closeHull(net.engine.get());
        CGAL::Delaunay_triangulation_2<Kernel> peer;
        for (const auto& p : *array) { peer.insert({double(p.x), double(p.y)}); }
        std::set<decltype(sorted({}, {}, {}))> theirs;
        for (const auto& face : peer.finite_face_handles()) {
            const auto corner = [&face](int i) -> Position {
                return {face->vertex(i)->point().x(), face->vertex(i)->point().y()};
            };
            theirs.insert(sorted(corner(0), corner(1), corner(2)));
        }
        EXPECT_EQ(std::size_t(surfaceTriangleCount(net.engine.get())), theirs.size()) << name;
        int onCircle = 0, missing = 0;
        for (const auto* const t : net.triangles()) {
            const Position a = this->at(t->vertex[0]), b = this->at(t->vertex[1]),
                           c = this->at(t->vertex[2]);
            if (net.engine->isFrameTriangle(t) || theirs.contains(sorted(a, b, c))) { continue; }
            const bool isTie = std::ranges::any_of(t->neighbor, [&](const auto* n) {
                const Position d = this->at(n->vertex[n->index(t)]);
                return !net.engine->isFrameTriangle(n) && support::exactInCircle(a, b, c, d) == 0;
            });
            ++(isTie ? onCircle : missing);
        }
        EXPECT_EQ(missing, 0) << name << ", " << onCircle << " on circles";
    }
}
#endif

}  // namespace
