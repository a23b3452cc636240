// Networks that closeHull extends to the convex hull of their vertices.
#include <zyn/network.h>

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

#include "hull_check.h"
#include "network.h"
#include "seed.h"
#include "testing.h"

#ifdef ZYN_TEST_CGAL
#include "cgal_triangles.h"
#endif

namespace {

using namespace zyn;
using support::Position;

template <class Real>
struct CloseHull : testing::Test {
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
        return support::faultOfHull(points, corners);
    }
    /// Returns the network of the points in a frame at a distance of `margin` times their extent.
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
TYPED_TEST_SUITE(CloseHull, support::Precisions);

TYPED_TEST(CloseHull, MakesTheDelaunayTriangulationOfEveryFamilyInAnyFrame) {
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

TYPED_TEST(CloseHull, ContinuesAfterPointsAreAddedAndRemoved) {
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
    for (const int step : {50, 20, 4, 1}) {
        for (const double tolerance : {-1, 0}) {  // with points in one place, and without
            support::Network<TypeParam> net(0, 0, 100, 100);
            auto* const engine = net.engine.get();
            for (int n = 0; n < 1500; ++n) {
                net.add(step * pick(100 / step + 1), step * pick(100 / step + 1), 0, tolerance);
                const auto& p = net.points[std::size_t(pick(n + 1))];
                // A degenerate triangle is valid at duplicates only.
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

TYPED_TEST(CloseHull, KeepsFixedEdgesAndRefusesAnIncompleteFrame) {
    support::Network<TypeParam> net(-1, -1, 5, 3);
    auto* const engine = net.engine.get();
    EXPECT_EQ(closeHull(engine), 0);
    EXPECT_EQ(closeHull<TypeParam>(nullptr), -1);
    // The circle of the triangle 0-2-1 at the hull holds vertex 3 across the edge 0-1.
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

TYPED_TEST(CloseHull, ValidationFindsAHullThatIsClosedOnOneSideOnly) {
    // Both sides have a pocket of four vertices.
    std::vector<XPnt3d> points;
    for (int i = 0; i < 12; ++i) {
        points.emplace_back(i % 6, (i < 6 ? 0.01 : -0.01) * (i % 6) * (5 - i % 6) + i / 6);
    }
    const auto array = support::arrayOf<TypeParam>(points);
    auto net = this->networkOf(points, array.get(), 0.1);
    ASSERT_GE(closeHull(net.engine.get()), 8);
    EXPECT_EQ(this->fault(net, true), "");
    // Opens one side to the frame again.
    auto* const t = net.engine->locate(TypeParam(2.5), TypeParam(0.001));
    auto* const frame = net.engine->locate(TypeParam(2.5), TypeParam(-0.001));
    ASSERT_TRUE(net.engine->isFrameTriangle(frame));
    ASSERT_FALSE(net.engine->isFrameTriangle(t));
    frame->adjust(frame->vertex[frame->index(t)]);
    EXPECT_EQ(this->fault(net, false), "");
    EXPECT_THAT(this->fault(net, true), testing::EndsWith("edge that is not Delaunay"));
}

#ifdef ZYN_TEST_CGAL
TYPED_TEST(CloseHull, HasTheTrianglesOfCgal) {
    const unsigned seed = support::newSeed();
    for (const std::string_view name : {"RandomOrder", "Circle", "TiltedGrid", "Clusters"}) {
        const auto points = support::makePointSet(name, seed, 5000).points;
        const auto array = support::arrayOf<TypeParam>(points);
        auto net = this->networkOf(points, array.get(), 0.01);
        closeHull(net.engine.get());
        std::vector<Position> places;
        for (auto& p : *array) { places.push_back(this->at(p)); }
        std::vector<support::TriangleAndRing> ours;
        for (const auto* const t : net.triangles()) {
            if (net.engine->isFrameTriangle(t)) { continue; }
            const auto& v = t->vertex;
            auto& across =
                ours.emplace_back(support::TriangleAndRing{
                                      {this->at(v[0]), this->at(v[1]), this->at(v[2])}, {}})
                    .across;
            for (const auto* const n : t->neighbor) {
                if (!net.engine->isFrameTriangle(n)) {
                    across.push_back(this->at(n->vertex[n->index(t)]));
                }
            }
        }
        const auto difference = support::differenceFromCgal(places, ours);
        EXPECT_EQ(ours.size(), difference.theirs) << name;
        EXPECT_EQ(difference.missing, 0) << name << ", " << difference.onCircle << " on circles";
    }
}
#endif

}  // namespace
