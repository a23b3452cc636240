// Breaklines in networks: every segment becomes edges, whatever it crosses.
#include <zyn/geometry.h>
#include <zyn/network.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <set>
#include <vector>

#include "containers/pool_imp.h"
#include "network.h"
#include "network_check.h"
#include "seed.h"
#include "testing.h"
#include "triangulation/predicates.h"

namespace {

using namespace zyn;
using namespace zyn::detail;
using Line = std::vector<XPnt3d>;

/// A network with its breaklines.
template <class Real>
struct Ground : support::Network<Real> {
    using support::Network<Real>::Network;

    /// Adds a breakline, with vertices at crossings if `asked`.
    int addLine(const Line& line, double tolerance = 0, bool asked = false) {
        lines.push_back(support::arrayOf<Real>(line));
        const int edges = addBreakline(this->engine.get(), lines.back().get(), Real(tolerance),
                                       fixed.get(), asked ? pool.get() : nullptr);
        expectEdges();
        return edges;
    }
    /// Checks that every pair of `fixed` is an edge of the records, and that the network is valid.
    void expectEdges() {
        std::set<std::pair<const Real*, const Real*>> edges;
        for (const auto& t : this->records()) {
            for (int i = 0; i < 3; ++i) {
                edges.emplace(t.vertex[i], t.vertex[(i + 1) % 3]);
                edges.emplace(t.vertex[(i + 1) % 3], t.vertex[i]);
            }
        }
        for (int i = 0; i < fixed->size(); i += 2) {
            EXPECT_TRUE(edges.contains({fixed->get(i), fixed->get(i + 1)})) << i;
        }
        EXPECT_EQ(support::faultOf(*this->engine, {.delaunay = false}), "");
    }
    /// Checks that fixed edges on the segment from a to b lead all the way.
    testing::AssertionResult reaches(XPnt3d a, const XPnt3d& b) {
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
            if (next.x == a.x && next.y == a.y) {
                return testing::AssertionFailure() << "the line ends at " << a.x << ", " << a.y;
            }
            a = next;
        }
        return testing::AssertionSuccess();
    }

    std::vector<ref_ptr<Pnt3Array<Real>>> lines;  // own the vertices
    ref_ptr<VertexArray<Real>> fixed = support::newVertices<Real>();
    ref_ptr<Pnt3Pool<Real>> pool = new ZynPoolImp<Pnt3Pool<Real>>(64);
};

template <class Real>
struct Breaklines : testing::Test {};
TYPED_TEST_SUITE(Breaklines, support::Precisions);

TYPED_TEST(Breaklines, TangledLinesEnd) {
    const unsigned seed = support::newSeed();
    std::mt19937 random(seed);
    const auto quarter = [](auto& r) { return std::uniform_int_distribution(0, 400)(r) / 4.0; };
    for (const auto& [isGrid, asked] : {std::pair(true, false), {false, false}, {false, true}}) {
        Ground<TypeParam> ground(-1, -1, 101, 101);
        const support::PointSet cloud = support::uniformPoints(asked ? 100 : 2000, seed);
        for (int i = 0; isGrid && i < 50 * 50; ++i) { ground.add(i % 50 * 2, i / 50 * 2); }
        for (const XPnt3d& p : cloud.points) { ground.add(100 * p.x, 100 * p.y); }
        for (int n = 0; n < 40; ++n) {
            Line points(2 + random() % 4);
            for (XPnt3d& p : points) { p = {quarter(random), quarter(random), 1}; }
            points[1].x = points[0].x + (points[0].x < 50 ? 40 : -40);  // not one vertex
            EXPECT_GE(ground.addLine(points, asked && n % 2 == 0 ? 0.5 : 0, asked), 1);
            if (!asked && points.size() == 2) {
                EXPECT_TRUE(ground.reaches(points[0], points[1])) << n;
            }
            if (n % 2 == 0) { restoreDelaunay(ground.engine.get(), ground.fixed.get()); }
            ground.expectEdges();
            ASSERT_FALSE(this->HasFailure()) << n;
        }
        EXPECT_EQ(ground.pool->size() > 100, asked);
        restoreDelaunay(ground.engine.get());
        EXPECT_EQ(support::faultOf(*ground.engine), "");
        EXPECT_EQ(restoreDelaunay(ground.engine.get()), 0);
    }
}

TYPED_TEST(Breaklines, MeetInAHubThatHasManyEdges) {
    std::mt19937 random(support::newSeed());
    std::uniform_int_distribution<int> coordinate(-1000, 1000);
    Ground<TypeParam> ground(-2000, -2000, 2000, 2000);
    Line ends;
    for (int i = 0; i < 400; ++i) { ends.emplace_back(coordinate(random), coordinate(random), 1); }
    for (const XPnt3d& p : ends) { ground.add(p.x, p.y); }
    std::shuffle(ends.begin(), ends.end(), random);
    for (std::size_t i = 0; i < ends.size(); ++i) {
        const bool isNear = i % 2 == 0;  // from the hub, or to it, from a new point or an old one
        if (i % 3 == 0) { ends[i].x = coordinate(random); }
        ground.addLine(isNear ? Line{{0, 0}, ends[i]} : Line{ends[i], {0, 0}});
    }
    for (const XPnt3d& p : ends) { EXPECT_TRUE(ground.reaches({0, 0}, p)) << p.x << ", " << p.y; }
}

TYPED_TEST(Breaklines, StartAtTheNearestVertexWithinTheTolerance) {
    for (const double x : {4.25, 4.75}) {
        Ground<TypeParam> ground(0, 0, 10, 10);
        ground.add(4, 5), ground.add(5, 5), ground.add(4.5, 7);
        const auto line = support::arrayOf<TypeParam>({{x, 5.125, 0}, {8, 2, 0}});
        auto* const list = new ArrayImp<VertexArray<TypeParam>>;  // nobody counts it yet
        EXPECT_GT(addBreakline(ground.engine.get(), line.get(), TypeParam(0.875), list), 0);
        ground.fixed = list;
        EXPECT_EQ(ground.fixed->first(), ground.vertex(x > 4.5));
    }
}

// The segments do not cross; each is split at the points of the lattice on it.
TYPED_TEST(Breaklines, AreSplitAtTheVerticesOnThem) {
    std::mt19937 random(support::newSeed());
    for (int round = 0; round < 10; ++round) {
        constexpr int side = 40;
        Line all, ends;
        for (int i = 0; i < side * side; ++i) {
            if (random() % 3 != 0) { all.emplace_back(i % side, i / side); }
        }
        const auto turn = [](const XPnt3d& a, const XPnt3d& b, const XPnt3d& c) {
            const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
            return area > 0 ? 1 : area < 0 ? -1 : 0;
        };
        Ground<TypeParam> ground(-1, -1, side, side);
        const ref_ptr<Pnt3ArrayArray<TypeParam>> lines =
            new ArrayRefPointerImp<Pnt3ArrayArray<TypeParam>>;
        std::size_t pieces = 0;
        for (int tries = 0; tries < 300; ++tries) {
            const XPnt3d a = all[random() % all.size()], b = all[random() % all.size()];
            bool isFree = a != b;
            for (std::size_t i = 0; i < ends.size(); i += 2) {
                const XPnt3d &p = ends[i], &q = ends[i + 1];
                isFree = isFree &&
                         (turn(a, b, p) * turn(a, b, q) > 0 || turn(p, q, a) * turn(p, q, b) > 0);
            }
            if (!isFree) { continue; }
            ends.insert(ends.end(), {a, b});
            lines->append(support::arrayOf<TypeParam>({a, b}).get());
            pieces += std::size_t(std::ranges::count_if(all, [&](const XPnt3d& p) {
                const double along = (p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y);
                return turn(a, b, p) == 0 && along > 0 && along <= dist2_2d(a, b);
            }));
        }
        const auto points = support::arrayOf<TypeParam>(all);
        addPoints(ground.engine.get(), points.get(), 0);
        auto* const fixed = ground.fixed.get();
        EXPECT_EQ(addBreaklines(ground.engine.get(), lines.get(), 0, fixed), int(pieces));
        EXPECT_EQ(fixed->size(), 2 * int(pieces));
        restoreDelaunay(ground.engine.get(), fixed);
        ground.expectEdges();
        for (std::size_t i = 0; i < ends.size(); i += 2) {
            EXPECT_TRUE(ground.reaches(ends[i], ends[i + 1]));
        }
    }
}

TYPED_TEST(Breaklines, KeepEarlierLinesUnlessTheyCrossWithoutAVertex) {
    Ground<TypeParam> ground(-1, -1, 11, 11);
    for (int i = 0; i < 121; ++i) { ground.add(i % 11 + (i / 11 % 2) * 0.25, i / 11); }
    const auto hasFirst = [&ground] { return ground.reaches({0.5, 5.25}, {9.5, 5.25}); };
    EXPECT_GT(ground.addLine({{0.5, 5.25, 10}, {9.5, 5.25, 10}}), 0);
    // A vertex on the earlier line splits it and keeps both parts.
    EXPECT_GT(ground.addLine({{4.5, 5.25, 10}, {4.5, 8, 20}}), 0);
    EXPECT_TRUE(hasFirst());
    // A vertex at the crossing keeps both lines, at the height of the earlier one.
    EXPECT_GT(ground.addLine({{7.125, 1, 0}, {7.125, 9, 0}}, 0, true), 0);
    ASSERT_EQ(ground.pool->size(), 1U);
    EXPECT_EQ(*ground.pool->at(0), XPnt3<TypeParam>(TypeParam(7.125), TypeParam(5.25), 10));
    EXPECT_TRUE(hasFirst());
    EXPECT_TRUE(ground.reaches({7.125, 1}, {7.125, 9}));
    // Without such a vertex, the crossing edge of the earlier line is removed.
    EXPECT_GT(ground.addLine({{2.125, 9, 0}, {2.125, 1, 0}}), 0);
    EXPECT_FALSE(hasFirst());
    EXPECT_TRUE(ground.reaches({4.5, 5.25}, {9.5, 5.25}));
    EXPECT_GT(restoreDelaunay(ground.engine.get(), ground.fixed.get()), 0);
    ground.expectEdges();
}

/// Returns lines that coincide, up to the rounding of divisions.
std::vector<Line> overlappingLines(std::mt19937& random, bool isBundle) {
    std::uniform_real_distribution<double> place(0, 100), length(-1000, 1000);
    const bool isFarOff = random() % 2 == 0;
    const XPnt3d a((isFarOff ? 432100 : 0) + place(random),
                   (isFarOff ? 5411200 : 0) + place(random));
    const XPnt3d along(length(random), length(random));
    const double jitter = isBundle ? std::ldexp(1.0, -int(random() % 40)) / 1000 : 0;
    std::vector<Line> lines(12);
    for (Line& line : lines) {
        for (std::size_t i = 0, count = 2 + random() % 3; i < count; ++i) {
            const double share =
                isBundle ? double(i) / double(count - 1) : double(random() % 18) / 17;
            line.emplace_back(a.x + share * along.x + jitter * length(random),
                              a.y + share * along.y + jitter * length(random));
        }
    }
    return lines;
}

/// Returns the most vertices that the lines may make: two for each crossing, one for each segment.
template <class Real>
int allowance(const std::vector<Line>& lines) {
    std::vector<std::pair<Xy, Xy>> segments;
    int crossings = 0;
    for (const Line& line : lines) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            const XPnt3<Real> from(line[i - 1]), to(line[i]);
            const Xy a{double(from.x), double(from.y)}, b{double(to.x), double(to.y)};
            for (const auto& [c, d] : segments) {
                const bool isCut = orientation(a, b, c) * orientation(a, b, d) < 0;
                if (isCut && orientation(c, d, a) * orientation(c, d, b) < 0) { ++crossings; }
            }
            segments.emplace_back(a, b);
        }
    }
    return 2 * crossings + int(segments.size());
}

TYPED_TEST(Breaklines, ShareTheVerticesOfLinesThatOverlap) {
    std::mt19937 random(support::newSeed());
    for (int round = 0; round < 60; ++round) {
        const std::vector<Line> lines = overlappingLines(random, round % 2 == 0);
        const double tolerance = round % 3 == 0 ? 0.01 : 0;
        Ground<TypeParam> ground(-2e6, -2e6, 6e6, 6e6);
        for (const Line& line : lines) { EXPECT_GE(ground.addLine(line, tolerance, true), 0); }
        const std::size_t made = ground.pool->size();
        const auto most = std::size_t(allowance<TypeParam>(lines));
        EXPECT_LE(made, most);
        for (const Line& line : lines) { EXPECT_GE(ground.addLine(line, tolerance, true), 0); }
        // With a tolerance, a point may fall on a nearer vertex that was made since.
        EXPECT_LE(ground.pool->size(), tolerance == 0 ? made : made + most)
            << "the same lines again";
        ASSERT_FALSE(this->HasFailure()) << round;
    }
}

TYPED_TEST(Breaklines, StartWithinRoundingOfALongEdge) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution<double> share(0, 1), side(-1e6, 1e6);
    for (int n = 0; n < 200; ++n) {
        Ground<TypeParam> ground(-2e6, -2e6, 2e6, 2e6);
        const XPnt3d a(-1e6, side(random)), b(1e6, side(random));
        const double t = share(random),
                     offset = std::ldexp(share(random) - 0.5, -int(random() % 40));
        const XPnt3d start(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y) + offset);
        const double x = side(random) / 1e4, tolerance = n % 3 == 0 ? 0.5 : 0;
        EXPECT_GE(ground.addLine({a, b}, tolerance, true), 1);
        EXPECT_GE(ground.addLine({start, {x, side(random) / 1e4}}, tolerance, true), 1);
    }
}

TYPED_TEST(Breaklines, FindTheVertexThatRefusesAPoint) {
    // The vertex is farther away than the tolerance, but point plus tolerance rounds onto it.
    Ground<TypeParam> ground(500000, 4000000, 501000, 4001000);
    ground.add(500500.03125, 4000500);
    EXPECT_EQ(ground.addLine({{500100, 4000100}, {500500, 4000500}, {500900, 4000100}}, 0.02), 2);
}

TYPED_TEST(Breaklines, RunAlongTheFrameFromVertexToVertex) {
    std::mt19937 random(support::newSeed());
    for (int n = 0; n < 100; ++n) {
        Ground<TypeParam> ground(0, 0, 9, 9);
        std::set<int> places;
        for (int i = 0; i < 5; ++i) {
            const int x = 1 + int(random() % 8);
            if (places.insert(x).second) { ground.add(x, 0); }
        }
        EXPECT_EQ(ground.addLine({{0, 0}, {9, 0}}), int(places.size()) + 1);
        EXPECT_TRUE(ground.reaches({0, 0}, {9, 0}));
        EXPECT_EQ(ground.addLine({{4.5, 0}, {4.5, 5}}), 1);
        EXPECT_EQ(ground.fixed->size() / 2, int(places.size()) + 3);
        EXPECT_TRUE(ground.reaches({0, 0}, {9, 0}));
    }
}

TYPED_TEST(Breaklines, CountTheEdgesThatRemain) {
    for (const bool asked : {false, true}) {
        Ground<TypeParam> ground(-1, -1, 11, 11);
        const Line bow{{0, 0}, {10, 10}, {10, 0}, {0, 10}};
        EXPECT_EQ(ground.addLine(bow, 0, asked), asked ? 5 : 2);
        EXPECT_EQ(ground.fixed->size() / 2, asked ? 5 : 2);
        EXPECT_EQ(ground.addLine(bow), asked ? 5 : 2) << "on existing vertices";
        EXPECT_EQ(ground.engine->triangleCount(), asked ? 12 : 10);
    }
}

TYPED_TEST(Breaklines, RefuseInvalidPointsAndTolerances) {
    Ground<TypeParam> ground(0, 0, 10, 10);
    ground.add(5, 5);
    const auto before = ground.records();
    auto* const engine = ground.engine.get();
    const Line good{{1, 1}, {9, 9}};
    for (const Line& bad : {Line{}, Line{{1, 1}}, Line{{1, 1}, {11, 1}}, Line{{1, 1}, {NAN, 1}},
                            Line{{1, 1}, {2, 1, HUGE_VAL}}}) {
        EXPECT_EQ(ground.addLine(bad), -1);
    }
    EXPECT_EQ(ground.addLine(good, -1), -1);
    EXPECT_EQ(ground.addLine(good, NAN), -1);
    EXPECT_EQ(addBreakline<TypeParam>(engine, nullptr, 0), -1);
    EXPECT_EQ(addBreakline<TypeParam>(nullptr, ground.lines[0].get(), 0), -1);
    EXPECT_EQ(ground.records(), before);
    EXPECT_EQ(ground.addLine(good), 2) << "through the vertex in the middle";
    EXPECT_EQ(ground.addLine({{9, 9}, {1, 1}, {1, 1}, {9, 9}}), 2) << "the same edges";
    EXPECT_EQ(ground.addLine({{0, 0}, {10, 0}, {10, 10}}), 2) << "the frame itself";
}

}  // namespace
