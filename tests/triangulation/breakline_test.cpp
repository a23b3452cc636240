// Breaklines: every segment in the network, whatever it crosses.
#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "point_sets.h"
#include "seed.h"

namespace {

using namespace zyn;
using support::PointSet;

template <class Real>
struct Breaklines : testing::Test {
    using Network = support::Network<Real>;

    static auto newLine() {
        if constexpr (std::same_as<Real, double>) {
            return ref_ptr(newPnt3dArray());
        } else {
            return ref_ptr(newPnt3fArray());
        }
    }
    static auto newVertices() {
        if constexpr (std::same_as<Real, double>) {
            return ref_ptr(newPDoubleArray());
        } else {
            return ref_ptr(newPFloatArray());
        }
    }
    static auto newPool() {
        if constexpr (std::same_as<Real, double>) {
            return ref_ptr(newPnt3dPool());
        } else {
            return ref_ptr(newPnt3fPool());
        }
    }
    template <class Points>
    static auto lineOf(const Points& points) {
        auto line = newLine();
        for (const auto& p : points) { line->append(XPnt3<Real>(Real(p.x), Real(p.y), Real(p.z))); }
        return line;
    }

    using Edges = std::set<std::pair<const Real*, const Real*>>;
    static Edges edgesOf(Network& network) {
        Edges edges;
        for (const auto& t : network.records()) {
            for (int i = 0; i < 3; ++i) { edges.emplace(t.vertex[i], t.vertex[(i + 1) % 3]); }
        }
        return edges;
    }
    /// Whether edges of the list that lie straight between a and b lead all the way.
    template <class List>
    static bool reaches(const List& fixed, XPnt3d a, const XPnt3d& b) {
        while (a.x != b.x || a.y != b.y) {
            XPnt3d next = a;
            for (int i = 0; i < fixed->size(); ++i) {
                const XPnt3d v = support::pointOf(fixed->get(i));
                const XPnt3d w = support::pointOf(fixed->get(i ^ 1));
                const bool isAhead = v.x == a.x && v.y == a.y &&
                                     (b.x - a.x) * (w.y - a.y) == (b.y - a.y) * (w.x - a.x) &&
                                     (b.x - a.x) * (w.x - a.x) + (b.y - a.y) * (w.y - a.y) > 0;
                if (isAhead) { next = w; }
            }
            if (next.x == a.x && next.y == a.y) { return false; }
            a = next;
        }
        return true;
    }
    /// Every pair of the list is an edge, by the records.
    template <class List>
    static void expectEdges(Network& network, const List& fixed) {
        const Edges edges = edgesOf(network);
        ASSERT_EQ(fixed->size() % 2, 0);
        for (int i = 0; i < fixed->size(); i += 2) {
            const Real* const a = fixed->get(i);
            const Real* const b = fixed->get(i + 1);
            EXPECT_TRUE(edges.contains({a, b}) || edges.contains({b, a})) << i;
        }
    }
};
using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(Breaklines, Precisions);

TYPED_TEST(Breaklines, CrossDenseGridsAndClouds) {
    const unsigned seed = support::newSeed();
    std::mt19937 random(seed);
    for (const bool isGrid : {true, false}) {
        typename TestFixture::Network network(-1, -1, 101, 101);
        if (isGrid) {
            for (int i = 0; i < 50 * 50; ++i) { network.add(i % 50 * 2, i / 50 * 2); }
        } else {
            for (const XPnt3d& p : support::uniformPoints(3000, seed).points) {
                network.add(100 * p.x, 100 * p.y);
            }
        }
        std::vector<decltype(TestFixture::newLine())> lines;  // their points are vertices
        for (int n = 0; n < 60; ++n) {
            std::uniform_int_distribution<int> coordinate(0, 400);
            std::vector<XPnt3d> points;
            for (int i = 0; i < 2 + n % 4; ++i) {
                const double x = coordinate(random) / 4.0;
                points.emplace_back(x, coordinate(random) / 4.0, 1.0);
            }
            lines.push_back(TestFixture::lineOf(points));
            const auto fixed = TestFixture::newVertices();
            const int edges =
                addBreakline(network.engine.get(), lines.back().get(), 0, fixed.get());
            EXPECT_GE(edges, 1);
            TestFixture::expectEdges(network, fixed);
            if (n % 2 == 0) { restoreDelaunay(network.engine.get(), fixed.get()); }
            TestFixture::expectEdges(network, fixed);
            ASSERT_EQ(support::faultOf(*network.engine, {.delaunay = false}), "") << n;
            for (std::size_t i = 1; points.size() < 4 && i < points.size(); ++i) {
                EXPECT_TRUE(TestFixture::reaches(fixed, points[i - 1], points[i])) << n;
            }
        }
        restoreDelaunay(network.engine.get());
        EXPECT_EQ(support::faultOf(*network.engine), "");
        EXPECT_EQ(restoreDelaunay(network.engine.get()), 0);
    }
}

TYPED_TEST(Breaklines, KeepEarlierOnes) {
    typename TestFixture::Network network(-1, -1, 11, 11);
    for (int i = 0; i < 121; ++i) { network.add(i % 11 + (i / 11 % 2) * 0.25, i / 11); }
    const auto fixed = TestFixture::newVertices();
    const auto pool = TestFixture::newPool();
    const auto across = TestFixture::lineOf(std::vector<XPnt3d>{{0.5, 5.25, 10}, {9.5, 5.25, 10}});
    EXPECT_GT(addBreakline(network.engine.get(), across.get(), 0, fixed.get()), 0);

    // A vertex on the earlier line splits it, and does not flip it away.
    const auto touching = TestFixture::lineOf(std::vector<XPnt3d>{{4.5, 5.25, 10}, {4.5, 8, 20}});
    EXPECT_GT(addBreakline(network.engine.get(), touching.get(), 0, fixed.get()), 0);
    TestFixture::expectEdges(network, fixed);

    // With vertices at crossings both lines are there, the new vertex at the earlier one's height.
    const auto up = TestFixture::lineOf(std::vector<XPnt3d>{{7.125, 1, 0}, {7.125, 9, 0}});
    EXPECT_GT(addBreakline(network.engine.get(), up.get(), 0, fixed.get(), pool.get()), 0);
    ASSERT_EQ(pool->size(), 1U);
    EXPECT_TRUE(pool->at(0)->x == TypeParam(7.125) && pool->at(0)->y == TypeParam(5.25) &&
                pool->at(0)->z == 10);
    TestFixture::expectEdges(network, fixed);
    EXPECT_EQ(support::faultOf(*network.engine, {.delaunay = false}), "");
    const auto hasPart = [&](double x) {  // of the first line, along its length
        for (int i = 0; i < fixed->size(); i += 2) {
            const auto [low, high] = std::minmax(fixed->get(i)[0], fixed->get(i + 1)[0]);
            const bool isFlat =
                fixed->get(i)[1] == TypeParam(5.25) && fixed->get(i + 1)[1] == TypeParam(5.25);
            if (isFlat && double(low) <= x && x <= double(high)) { return true; }
        }
        return false;
    };
    for (double x = 0.6; x < 9.5; x += 0.1) { EXPECT_TRUE(hasPart(x)) << x; }

    // Without, the earlier one gives way there.
    const auto down = TestFixture::lineOf(std::vector<XPnt3d>{{2.125, 9, 0}, {2.125, 1, 0}});
    EXPECT_GT(addBreakline(network.engine.get(), down.get(), 0, fixed.get()), 0);
    TestFixture::expectEdges(network, fixed);
    EXPECT_TRUE(!hasPart(2.125) && hasPart(5) && pool->size() == 1);
    EXPECT_GT(restoreDelaunay(network.engine.get(), fixed.get()), 0);
    TestFixture::expectEdges(network, fixed);
}

TYPED_TEST(Breaklines, TangledLinesEnd) {
    std::mt19937 random(support::newSeed());
    typename TestFixture::Network network(-1, -1, 101, 101);
    const auto fixed = TestFixture::newVertices();
    const auto pool = TestFixture::newPool();
    std::uniform_real_distribution<double> coordinate(0, 100);
    std::vector<decltype(TestFixture::newLine())> lines;  // their points are vertices
    for (int n = 0; n < 40; ++n) {
        std::vector<XPnt3d> points;
        for (int i = 0; i < 5; ++i) {
            const double x = coordinate(random);
            points.emplace_back(x, coordinate(random), 0);
        }
        lines.push_back(TestFixture::lineOf(points));
        const TypeParam tolerance = n % 2 == 0 ? TypeParam(0) : TypeParam(0.5);
        EXPECT_GT(addBreakline(network.engine.get(), lines.back().get(), tolerance, fixed.get(),
                               pool.get()),
                  3);
        TestFixture::expectEdges(network, fixed);
        ASSERT_EQ(support::faultOf(*network.engine, {.delaunay = false}), "") << n;
    }
    EXPECT_GT(pool->size(), 100U);
}

TYPED_TEST(Breaklines, StartWithinRoundingOfALongEdge) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution<double> share(0, 1), side(-1e6, 1e6);
    for (int n = 0; n < 200; ++n) {
        typename TestFixture::Network network(-2e6, -2e6, 2e6, 2e6);
        const auto fixed = TestFixture::newVertices();
        const auto pool = TestFixture::newPool();
        const XPnt3d a(-1e6, side(random)), b(1e6, side(random));
        const auto first = TestFixture::lineOf(std::vector{a, b});
        const double t = share(random),
                     offset = std::ldexp(share(random) - 0.5, -int(random() % 40));
        const XPnt3d start(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y) + offset);
        const double x = side(random) / 1e4;
        const auto second = TestFixture::lineOf(std::vector{start, XPnt3d(x, side(random) / 1e4)});
        const TypeParam tolerance = n % 3 == 0 ? TypeParam(0.5) : TypeParam(0);
        auto* const engine = network.engine.get();
        EXPECT_GE(addBreakline(engine, first.get(), tolerance, fixed.get(), pool.get()), 1);
        EXPECT_GE(addBreakline(engine, second.get(), tolerance, fixed.get(), pool.get()), 1);
        TestFixture::expectEdges(network, fixed);
        EXPECT_EQ(validate(engine), QString());
    }
}

TYPED_TEST(Breaklines, FindTheVertexThatRefusesAPoint) {
    // The point plus the tolerance rounds onto the vertex, though it is farther away than that.
    typename TestFixture::Network network(500000, 4000000, 501000, 4001000);
    network.add(500500.03125, 4000500);
    const auto line = TestFixture::lineOf(
        std::vector<XPnt3d>{{500100, 4000100}, {500500, 4000500}, {500900, 4000100}});
    EXPECT_EQ(addBreakline(network.engine.get(), line.get(), TypeParam(0.02)), 2);
}

TYPED_TEST(Breaklines, RunAlongTheFrameFromVertexToVertex) {
    std::mt19937 random(support::newSeed());
    for (int n = 0; n < 100; ++n) {
        typename TestFixture::Network network(0, 0, 9, 9);
        std::set<int> places;
        for (int i = 0; i < 5; ++i) {
            const int x = 1 + int(random() % 8);
            if (places.insert(x).second) { network.add(x, 0); }
        }
        const auto fixed = TestFixture::newVertices();
        const auto line = TestFixture::lineOf(std::vector<XPnt3d>{{0, 0}, {9, 0}});
        EXPECT_EQ(addBreakline(network.engine.get(), line.get(), 0, fixed.get()),
                  int(places.size()) + 1);
        EXPECT_TRUE(TestFixture::reaches(fixed, {0, 0}, {9, 0}));
        const auto foot = TestFixture::lineOf(std::vector<XPnt3d>{{4.5, 0}, {4.5, 5}});
        EXPECT_EQ(addBreakline(network.engine.get(), foot.get(), 0, fixed.get()), 1);
        EXPECT_EQ(fixed->size() / 2, int(places.size()) + 3);
        EXPECT_TRUE(TestFixture::reaches(fixed, {0, 0}, {9, 0}));
    }
}

TYPED_TEST(Breaklines, CountWhatStands) {
    for (const bool asked : {false, true}) {
        typename TestFixture::Network network(-1, -1, 11, 11);
        const auto fixed = TestFixture::newVertices();
        const auto pool = TestFixture::newPool();
        const auto bow =
            TestFixture::lineOf(std::vector<XPnt3d>{{0, 0}, {10, 10}, {10, 0}, {0, 10}});
        const int edges = addBreakline(network.engine.get(), bow.get(), 0, fixed.get(),
                                       asked ? pool.get() : nullptr);
        EXPECT_EQ(edges, asked ? 5 : 2);
        EXPECT_EQ(edges, fixed->size() / 2);
        const int numbers[] = {bow->get(0).inten, bow->get(1).inten, bow->get(2).inten};
        EXPECT_EQ(addBreakline(network.engine.get(), bow.get(), 0), asked ? 5 : 2);
        EXPECT_TRUE(bow->get(1).inten == numbers[1] && bow->get(2).inten == numbers[2]);
    }
}

TYPED_TEST(Breaklines, RefuseWhatTheyCannotBe) {
    typename TestFixture::Network network(0, 0, 10, 10);
    network.add(5, 5);
    const auto before = network.records();
    const auto line = [](const std::vector<XPnt3d>& points) { return TestFixture::lineOf(points); };
    auto* const engine = network.engine.get();
    for (const auto& bad :
         {line({{1, 1, 0}}), line({{1, 1, 0}, {11, 1, 0}}), line({{1, 1, 0}, {NAN, 1, 0}}),
          line({{1, 1, 0}, {2, 1, HUGE_VAL}}), line({})}) {
        EXPECT_EQ(addBreakline(engine, bad.get(), 0), -1);
    }
    const auto good = line({{1, 1, 0}, {9, 9, 0}});
    EXPECT_EQ(addBreakline(engine, good.get(), TypeParam(-1)), -1);
    EXPECT_EQ(addBreakline(engine, good.get(), TypeParam(NAN)), -1);
    EXPECT_EQ(addBreakline<TypeParam>(engine, nullptr, 0), -1);
    EXPECT_EQ(addBreakline<TypeParam>(nullptr, good.get(), 0), -1);
    EXPECT_TRUE(network.records() == before);

    EXPECT_EQ(addBreakline(engine, good.get(), 0), 2);  // through the vertex in the middle
    const auto back = line({{9, 9, 0}, {1, 1, 0}, {1, 1, 0}, {9, 9, 0}});
    EXPECT_EQ(addBreakline(engine, back.get(), 0),
              2);  // the same edges, on vertices that are there
    EXPECT_EQ(engine->triangleCount(), 2 + 2 * 3);
    const auto side = line({{0, 0, 0}, {10, 0, 0}, {10, 10, 0}});  // the frame itself
    EXPECT_EQ(addBreakline(engine, side.get(), 0), 2);
}

}  // namespace
