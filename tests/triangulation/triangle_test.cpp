// Triangle records in networks that are linked by hand.
#include <zyn/tin.h>

#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "network.h"
#include "testing.h"

namespace {

using namespace zyn;

/// Triangles over numbered points, linked wherever two have an edge in common.
template <class Real>
struct Mesh {
    Mesh(std::vector<XPnt3<Real>> points_, const std::vector<std::array<int, 3>>& corners)
        : points(std::move(points_)), triangles(corners.size()) {
        for (std::size_t n = 0; n < 3 * corners.size(); ++n) {
            triangles[n / 3].vertex[n % 3] = v(corners[n / 3][n % 3]);
        }
        link();
    }
    void link() {
        for (auto& t : triangles) {
            for (std::size_t n = 0; n < 9 * triangles.size(); ++n) {
                auto& other = triangles[n / 9];
                const std::size_t i = n / 3 % 3, j = n % 3;
                if (t.vertex[(i + 1) % 3] == other.vertex[(j + 2) % 3] &&
                    t.vertex[(i + 2) % 3] == other.vertex[(j + 1) % 3]) {
                    t.neighbor[i] = &other;
                }
            }
        }
    }
    Real* v(int i) { return points.data()[i]; }
    TinRecord<Real>* t(int n) { return n < 0 ? nullptr : triangles.data() + n; }

    std::vector<XPnt3<Real>> points;
    std::vector<TinRecord<Real>> triangles;
};

/// A hub, vertex 0, in a closed ring of `count` vertices; their positions do not matter.
template <class Real>
Mesh<Real> wheel(int count) {
    std::vector<std::array<int, 3>> corners;
    for (int i = 0; i < count; ++i) { corners.push_back({0, i + 1, (i + 1) % count + 1}); }
    return {std::vector<XPnt3<Real>>(corners.size() + 1), corners};
}

template <class Real>
struct Triangle : testing::Test {
    static constexpr bool isDouble = std::is_same_v<Real, double>;
};
TYPED_TEST_SUITE(Triangle, support::Precisions);

TYPED_TEST(Triangle, WalksCrossTheFirstEdgeInTheirOrder) {
    using Real = TypeParam;
    // Neighbours 1, 2 and 3, across the edges 12, 20 and 01, cover the whole plane.
    Mesh<Real> mesh({{0, 0}, {4, 0}, {0, 4}, {-900, -900}, {900, -900}, {0, 900}},
                    {{0, 1, 2}, {3, 4, 5}, {3, 4, 5}, {3, 4, 5}});
    auto* const t = mesh.t(0);
    for (int i = 0; i < 3; ++i) { t->neighbor[i] = mesh.t(i + 1); }
    const Real below = Real(this->isDouble ? -1e-5 : -1e-6) / 8;
    const Real points[][4] = {{-1, -1, 3, 3},   {6, -1, 3, 3},       {-1, 6, 2, 2}, {2, 0, 0, 0},
                              {0, 2, 0, 0},     {2, 2, 0, 0},        {0, 0, 0, 0},  {4, 0, 0, 0},
                              {2, below, 3, 0}, {2, 4 * below, 3, 3}};
    for (const auto& [x, y, found, refined] : points) {
        EXPECT_EQ(t->find(x, y), mesh.t(int(found))) << x << ", " << y;
        EXPECT_EQ(t->findRefine(x, y), mesh.t(int(refined))) << x << ", " << y;
    }
    constexpr Real segments[][3][2] = {{{-1, -1}, {1, 1}, {3}},  {{6, -2}, {2, 2}, {3}},
                                       {{-1, 6}, {1, 2}, {1}},   {{-1, 1}, {1, 1}, {2}},
                                       {{-1, 1}, {-2, 9}, {-1}}, {{0, 1}, {2, 1}, {-1}}};
    for (const auto& [from, to, n] : segments) { EXPECT_EQ(t->find(from, to), mesh.t(int(n[0]))); }
    t->neighbor[2] = nullptr;
    EXPECT_EQ(t->find(2, -1), nullptr);
    EXPECT_EQ(t->findRefine(2, -1), nullptr);
}

TEST(DoubleTriangle, TheClassifyingWalkReportsInsideEdgeOrCorner) {
    Mesh<double> mesh({{-2, -2}, {2, -2}, {2, 2}, {-2, 2}, {4, 4}, {4 + 1e-3, 4}, {4, 4 + 1e-3}},
                      {{0, 1, 2}, {2, 3, 0}, {4, 5, 6}});
    constexpr double cases[][5] = {// x, y; the result, the triangle and the place
                                   {1, -1, 0, 0, 9},       {-1, 1, 0, 1, 9},       {0, 0, 1, 0, 1},
                                   {2, 0, 1, 0, 0},        {0, -2, 1, 0, 2},       {2, -2, 2, 0, 1},
                                   {-2, 2, 2, 1, 1},       {2, 2, 2, 0, 2},        {5, 0, 0, -1, 9},
                                   {0, 2 + 2e-6, 1, 1, 2}, {0, 2 + 3e-6, 0, -1, 9}};
    tind* t = nullptr;
    for (const auto& [x, y, result, triangle, place] : cases) {
        std::int32_t where = 9;
        EXPECT_EQ(mesh.t(0)->find(x, y, t, &where), result) << x << ", " << y;
        EXPECT_EQ(t, mesh.t(int(triangle))) << x << ", " << y;
        EXPECT_EQ(where, place) << x << ", " << y;
    }
    EXPECT_EQ(mesh.t(2)->find(4 + 1e-4, 4 + 1e-4, t, nullptr), -1);
}

TYPED_TEST(Triangle, WalksInACircleEndWithNull) {
    // Three triangles, each of which sends the point to the next one.
    Mesh<TypeParam> mesh({{0, 0}, {4, 0}, {0, 4}}, {{0, 1, 2}, {0, 1, 2}, {0, 1, 2}});
    for (int n = 0; n < 3; ++n) { mesh.t(n)->neighbor[2] = mesh.t((n + 1) % 3); }
    EXPECT_EQ(mesh.t(0)->find(1, -1), nullptr);
    EXPECT_EQ(mesh.t(0)->findRefine(1, -1), nullptr);
    if constexpr (TestFixture::isDouble) {
        tind* t = mesh.t(0);
        EXPECT_EQ(mesh.t(0)->find(1, -1, t, nullptr), 0);
        EXPECT_EQ(t, nullptr);
    }
}

// This file is compiled so that a member function may be called on a null record.
TYPED_TEST(Triangle, WalksOnANullRecordReturnNull) {
    const std::vector<TinRecord<TypeParam>> lone(1);
    TinRecord<TypeParam>* const none = lone[0].neighbor[0];
    EXPECT_EQ(none->find(1, 2), nullptr);
    EXPECT_EQ(none->findRefine(1, 2), nullptr);
    if constexpr (TestFixture::isDouble) {
        tind record;
        tind* found = &record;
        std::int32_t where = 7;
        EXPECT_EQ(none->find(1, 2, found, &where), -2);
        EXPECT_EQ(found, nullptr);
        EXPECT_EQ(where, 7);
    }
}

TYPED_TEST(Triangle, IndexAndGetEdgeReportHitsAndMisses) {
    Mesh<TypeParam> mesh({{-2, -2}, {2, -2}, {2, 2}, {-2, 2}}, {{0, 1, 2}, {2, 3, 0}});
    auto* const t = mesh.t(0);
    EXPECT_EQ(t->index(mesh.t(1)), 1);
    EXPECT_EQ(t->index(t), 3);
    constexpr int most = std::numeric_limits<int>::max();
    for (const auto& [a, b, third] :
         {std::array{1, 2, 0}, {2, 0, 1}, {0, 0, -1}, {3, 0, 0}, {most, most, -1}}) {
        EXPECT_EQ(t->index(a, b), third);
    }
    const auto third = [&](int i, int j) { return t->index(mesh.v(i), mesh.v(j)); };
    EXPECT_EQ(third(2, 1), 0);
    EXPECT_EQ(third(1, 1), -1);
    EXPECT_EQ(third(1, 3), -1);
    constexpr int edges[][2] = {
        {1, 2}, {0, 2}, {0, 1}, {3, 3}};  // the last is a miss, and changes nothing
    for (int i = 0; i < 4; ++i) {
        TypeParam *a = mesh.v(3), *b = mesh.v(3);
        EXPECT_EQ(t->index(mesh.v(i)), i);
        EXPECT_EQ(t->get_edge(mesh.v(i), a, b), i < 3);
        EXPECT_EQ(a, mesh.v(edges[i][0]));
        EXPECT_EQ(b, mesh.v(edges[i][1]));
    }
}

TYPED_TEST(Triangle, AdjustFlipsEdgesThatAreNotDelaunay) {
    using Real = TypeParam;
    // At 2 the corners are on one circle; at 0 one triangle is degenerate.
    for (const auto& [low, high] : {std::pair(1, 1), {2, 2}, {3, 3}, {0, 9}}) {
        // A kite 1-3 across 0-2, with a triangle beyond each outer edge.
        Mesh<Real> kite(
            {{-2, 0}, {0, Real(-low)}, {2, 0}, {0, Real(high)}, {-9, -9}, {9, -9}, {9, 9}, {-9, 9}},
            {{1, 2, 0}, {3, 0, 2}, {0, 4, 1}, {1, 5, 2}, {2, 6, 3}, {3, 7, 0}});
        auto &s = *kite.t(0), &n = *kite.t(1);
        auto* const link = std::exchange(n.neighbor[0], nullptr);
        EXPECT_EQ(s.adjust(kite.v(1)), nullptr);
        EXPECT_EQ(n.adjust(kite.v(3)), nullptr);
        n.neighbor[0] = link;
        const bool flips = low < 2 || (low == 2 && this->isDouble);
        EXPECT_EQ(s.adjust(kite.v(1)), flips ? &n : nullptr);
        EXPECT_EQ(s.index(kite.v(3)), flips ? 2 : 3);  // (1, 2, 3) of (1, 2, 0)
        EXPECT_EQ(n.index(kite.v(1)), flips ? 2 : 3);  // (3, 0, 1) of (3, 0, 2)
        const auto triangles = kite.triangles;
        kite.link();
        EXPECT_EQ(kite.triangles, triangles) << "each has its neighbours in their slots";
        EXPECT_EQ(s.adjust(kite.v(4)), nullptr) << "no corner";
    }
}

TYPED_TEST(Triangle, IntersectFlipsOnlyEdgesThatTheSegmentNeedsFlipped) {
    using Real = TypeParam;
    // The corners opposite the edge from (0, -2) to (0, 2), the segment, and whether the edge
    // flips. It stays where the segment passes beside it, ends on it or goes through its end, where
    // the four corners are not convex or three lie on a line, and where the segment crosses the new
    // diagonal as well; in the last case only its line does.
    constexpr Real cases[][9] = {
        {-3, 0, 3, 0, -3, 0, 3, 0, true}, {-3, 1, 3, 1, -6, 0, 6, 0, true},
        {-3, 0, 3, 0, -3, 0, 3, 9},       {-3, 0, 3, 0, -3, 0, 0, 0},
        {-3, 0, 3, 0, -3, 0, 3, 4},       {-3, 0, 3, 9, -3, 0, 6, 0},
        {-3, 0, 3, 4, -3, 0, 6, 1},       {-3, 0, 3, -4, -3, 0, 6, -1},
        {-3, 1, 3, -1, -6, -1, 6, 1},     {-3, 0, 3, 0, Real(-0.5), Real(0.5), Real(0.5), 2, true}};
    for (const auto& [px, py, dx, dy, ax, ay, bx, by, flips] : cases) {
        Mesh<Real> mesh({{px, py}, {0, -2}, {0, 2}, {dx, dy}, {ax, ay}, {bx, by}},
                        {{0, 1, 2}, {3, 2, 1}});
        EXPECT_FALSE(mesh.t(0)->intersect(mesh.v(3), mesh.v(4), mesh.v(5)));  // no corner
        EXPECT_FALSE(mesh.t(0)->intersect(mesh.v(1), mesh.v(4), mesh.v(5)));  // no neighbour
        EXPECT_EQ(mesh.t(0)->intersect(mesh.v(0), mesh.v(4), mesh.v(5)), flips != 0);
    }
}

TYPED_TEST(Triangle, FindConeReturnsTheRingOfAVertex) {
    using Ring = std::vector<long>;
    const auto ringOf = [](Mesh<TypeParam>& mesh, int t, int v) {
        const auto ring = support::newVertices<TypeParam>();
        ring->append(mesh.v(v));  // findCone appends the ring to it
        const int size = mesh.t(t)->findCone(mesh.v(v), ring.get());
        EXPECT_EQ(size, size == 0 ? 0 : ring->size());
        Ring numbers;
        for (auto* p : *ring) {
            numbers.push_back(reinterpret_cast<XPnt3<TypeParam>*>(p) - mesh.points.data());
        }
        return numbers;
    };
    Mesh<TypeParam> hub = wheel<TypeParam>(5), large = wheel<TypeParam>(60);
    EXPECT_EQ(ringOf(hub, 3, 0), (Ring{0, 5, 1, 2, 3, 4}));
    EXPECT_EQ(ringOf(hub, 1, 2), (Ring{2, 0, 1, 3}));  // on the boundary: two runs
    EXPECT_EQ(ringOf(hub, 0, 4), (Ring{4}));           // no corner
    EXPECT_EQ(ringOf(large, 0, 0).size(), this->isDouble ? 61U : 54U);
    // Links that lead away from the hub end a run.
    TinRecord<TypeParam> stray;
    hub.t(1)->neighbor[1] = hub.t(4)->neighbor[2] = &stray;
    EXPECT_EQ(ringOf(hub, 0, 0), (Ring{0, 2, 3}));
    hub.t(0)->neighbor[1] = nullptr;
    EXPECT_EQ(ringOf(hub, 0, 0), (Ring{0, 2, 1, 5}));
}

TYPED_TEST(Triangle, RadiusSearchVisitsDepthFirstFromTheNearestCorner) {
    using Real = TypeParam;
    Mesh<Real> fan({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 1}, {1, 4}, {90000, 0}, {10000, 9}},
                   {{0, 1, 2}, {0, 2, 3}, {1, 4, 2}, {2, 5, 3}, {4, 6, 7}});
    const auto flood = [&fan](Real x, Real y, Real radius) {
        const Real p[3] = {x, y, 0};
        const auto found = support::newVertices<Real>();
        const int count = fan.t(0)->findCone(p, radius, found.get());
        EXPECT_EQ(count, found->size());
        for (const auto& q : fan.points) { EXPECT_EQ(q.inten, 0); }
        std::vector<int> numbers;
        for (auto* q : *found) {
            numbers.push_back(int(reinterpret_cast<XPnt3<Real>*>(q) - fan.points.data()));
        }
        return numbers;
    };
    using Found = std::vector<int>;
    EXPECT_EQ(flood(0, 0, 5), (Found{2, 3, 1, 4, 5}));
    EXPECT_EQ(flood(0, 0, 2), (Found{3, 1}));
    EXPECT_EQ(flood(Real(1.9), Real(0.1), 2), (Found{0, 2}));  // from the nearest corner, 1
    EXPECT_EQ(flood(1, Real(0.5), 1), Found{});                // no vertex is that near
    EXPECT_EQ(flood(-1, 1, 5), Found{});                       // outside
    const auto none = support::newVertices<Real>();
    for (const int corner : {-1, 3}) {
        EXPECT_EQ(fan.t(0)->findCone(corner, Real(9), none.get()), 0) << corner;
    }
    EXPECT_EQ(fan.t(0)->findCone(-1, none.get()), 0);
    const Real far[3] = {30000, 1, 0};  // no corner is within 3162.27
    EXPECT_EQ(fan.t(4)->findCone(far, Real(1e6), none.get()), 0);
}

TYPED_TEST(Triangle, MeasuresDoNotDependOnTheFirstCorner) {
    using Real = TypeParam;
    Mesh<Real> mesh({{0, 0, 0}, {4, 0, 3}, {0, 3, 0}}, {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}});
    for (const auto& t : mesh.triangles) {
        EXPECT_FLOAT_EQ(float(t.Area()), 7.5F);
        EXPECT_FLOAT_EQ(float(t.AreaHorizen()), 6.F);
        EXPECT_FLOAT_EQ(float(t.BevelEdgeLengthNew()), float(std::sqrt(34)));
        EXPECT_EQ(t.BevelEdgeLength(), 5);
        EXPECT_EQ(t.maxEdgeLen2d(), 5);
        EXPECT_EQ(t.boxZ(), 3);
        EXPECT_TRUE(t.Z(Real(2.9)));
        EXPECT_FALSE(t.Z(3));
        EXPECT_EQ(t.AreaVertical(), 0);
        const XPnt3<Real> c = t.Center();
        EXPECT_FLOAT_EQ(float(c.x), 4 / 3.F);
        EXPECT_EQ(c.y, 1);
        EXPECT_EQ(c.z, 1);
        EXPECT_EQ(c.inten, 0);
        Real n[3] = {}, angle[3] = {}, d = 9;
        EXPECT_TRUE(t.PlaneParam3D(n[0], n[1], n[2], d));
        EXPECT_EQ(d, 0);
        EXPECT_TRUE(t.NormalAngle(angle[0], angle[1], angle[2]));
        for (int i = 0; i < 3; ++i) { EXPECT_NEAR(std::cos(double(angle[i])) * 15, n[i], 1e-5); }
        EXPECT_FALSE(t.EdgeNormal(0, n[0], n[1], n[2]));
        EXPECT_FALSE(t.intersect3d(n, n, n));
        EXPECT_THAT(n, testing::ElementsAre(-9, 0, 12));
    }
    const Real huge = Real(this->isDouble ? 1e150 : 1e18);  // its fourth power overflows
    const Mesh<Real> large({{0, 0, 0}, {4 * huge, 0, 3 * huge}, {0, 3 * huge, 0}}, {{0, 1, 2}});
    EXPECT_FLOAT_EQ(float(large.triangles[0].Area() / huge / huge), 7.5F);
    EXPECT_FLOAT_EQ(float(large.triangles[0].AreaHorizen() / huge / huge), 6.F);
    for (auto& p : mesh.points) { p *= Real(1e-6); }  // a plane with too short a normal
    Real a = 9, b = 9, c = 9;
    EXPECT_FALSE(mesh.t(0)->IntersectVertical(0, 0, 0, a));
    EXPECT_EQ(a, 9);
    EXPECT_FALSE(mesh.t(0)->NormalAngle(a, b, c));
    EXPECT_THAT((std::array{a, b, c}), testing::Each(0));
    // These heights are below the start of the search for the highest.
    for (auto& p : mesh.points) { p.z = Real(-5e9); }
    EXPECT_EQ(mesh.t(0)->boxZ(), Real(this->isDouble ? 2852516353 : 2852516352));
}

TYPED_TEST(Triangle, OnlyTrianglesWithAreaHaveAPlane) {
    using Real = TypeParam;
    Mesh<Real> mesh({{1, 2, 3}, {5, 2, 3}, {1, 5, 15}, {3, 2, 5}, {9, 2, 3}},
                    {{0, 1, 2}, {0, 1, 3}, {0, 1, 4}});
    const auto &slope = *mesh.t(0), &wall = *mesh.t(1), &line = *mesh.t(2);
    Real n[3] = {9, 9, 9}, d = 9;
    EXPECT_FALSE(line.PlaneParam3D(n[0], n[1], n[2], d));
    EXPECT_FALSE(line.IntersectVertical(1, 1, 1, d));
    EXPECT_FALSE(wall.IntersectVertical(1, 0, 0, d));
    EXPECT_THAT(n, testing::Each(9));
    EXPECT_EQ(d, 9);
    EXPECT_FALSE(line.NormalAngle(n[0], n[1], n[2]));
    EXPECT_THAT(n, testing::Each(0));
    if constexpr (TestFixture::isDouble) {
        EXPECT_TRUE(slope.Normal(n[0], n[1], n[2]));
    } else {
        EXPECT_TRUE(slope.normal(n[0], n[1], n[2]));
    }
    EXPECT_THAT(n, testing::ElementsAre(0, -48, 12));
    EXPECT_TRUE(slope.PlaneParam3D(n[0], n[1], n[2], d));
    EXPECT_EQ(d, 60);
    EXPECT_TRUE(slope.IntersectVertical(3, 4, 1, d));
    EXPECT_EQ(d, -10);
}

TYPED_TEST(Triangle, LinesMeetTheTriangleWithinItsEdgesOnly) {
    using Real = TypeParam;
    for (const Real o : {Real(0), Real(500000)}) {
        // From the first corner on, z is 100 - x - y; each line is vertical and above the slope.
        Mesh<Real> slope({{o, o, 100}, {o + 60, o, 40}, {o, o + 70, 30}}, {{0, 1, 2}});
        constexpr int hits[][3] = {{1, 1, true},    {20, 30, true},  {40, 10, true},
                                   {-1, 20, false}, {20, -1, false}, {40, 40, false}};
        for (const auto& [x, y, meets] : hits) {
            const Real z = Real(100 - x - y);
            const Real from[3] = {o + Real(x), o + Real(y), z + 100};
            const Real to[3] = {from[0], from[1], z + 300};
            Real t = 9;
            EXPECT_EQ(slope.t(0)->ray_intersect3d(from, to, &t), bool(meets)) << x << ", " << y;
            EXPECT_NEAR(double(t), -0.5, 0.01);  // a meeting behind the first point counts
        }
    }
    Mesh<Real> ground({{-1, -1}, {1, -1}, {0, 2}}, {{0, 1, 2}, {0, 1, 1}});
    const Real origin[3] = {}, aside[3] = {1, 0, 0}, low[3] = {0, 0, 2}, high[3] = {0, 0, 4},
               level[3] = {1, 1, 4};
    Real t = 9;
    EXPECT_TRUE(ground.t(0)->ray_intersect3d(high, low, &t));
    EXPECT_EQ(t, 2);
    for (const Real* const to : {level, high}) {  // parallel to the plane, or no line
        EXPECT_FALSE(ground.t(0)->ray_intersect3d(high, to, &t));
    }
    EXPECT_FALSE(ground.t(0)->ray_intersect3d(origin, aside, &t)) << "in the plane";
    EXPECT_FALSE(ground.t(1)->ray_intersect3d(high, low, &t)) << "no plane";
    EXPECT_EQ(t, 2) << "no plane";
}

}  // namespace
