// Triangle records in networks that are linked by hand.
#include <zyn/tin.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>
#include <random>
#include <vector>

#include "network.h"
#include "seed.h"

namespace {

using namespace zyn;

/// Triangles over numbered points, linked wherever two have an edge in common.
template <class Real>
struct Mesh {
    using Tri = TinRecord<Real>;

    Mesh(std::vector<XPnt3<Real>> points_, const std::vector<std::array<std::size_t, 3>>& corners)
        : points(std::move(points_)), triangles(corners.size()) {
        std::map<std::pair<Real*, Real*>, std::pair<Tri*, std::size_t>> open;
        for (std::size_t n = 0; n < corners.size(); ++n) {
            Tri& t = triangles[n];
            for (std::size_t i = 0; i < 3; ++i) { t.vertex[i] = points[corners[n][i]]; }
            for (std::size_t i = 0; i < 3; ++i) {
                Real *const from = t.vertex[(i + 1) % 3], *const to = t.vertex[(i + 2) % 3];
                open[{from, to}] = {&t, i};
                if (const auto back = open.find({to, from}); back != open.end()) {
                    const auto [other, slot] = back->second;
                    other->neighbor[slot] = &t;
                    t.neighbor[i] = other;
                }
            }
        }
    }
    Real* v(std::size_t i) { return points[i]; }
    Tri* t(std::size_t n) { return &triangles[n]; }

    std::vector<XPnt3<Real>> points;
    std::vector<Tri> triangles;
};

template <class Real>
auto newRing() {
    if constexpr (std::is_same_v<Real, double>) {
        return ref_ptr<PDoubleArray>(newPDoubleArray());
    } else {
        return ref_ptr<PFloatArray>(newPFloatArray());
    }
}

/// A square of side 4 around (0, 0), split from corner 0 to corner 2.
template <class Real>
Mesh<Real> square() {
    return {{{-2, -2}, {2, -2}, {2, 2}, {-2, 2}}, {{0, 1, 2}, {2, 3, 0}}};
}

/// A hub, vertex 0, in a closed ring of `count` vertices.
template <class Real>
Mesh<Real> wheel(std::size_t count) {
    std::vector<XPnt3<Real>> points{{0, 0}};
    std::vector<std::array<std::size_t, 3>> corners;
    for (std::size_t i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi * double(i) / double(count);
        points.emplace_back(Real(9 * std::cos(angle)), Real(9 * std::sin(angle)));
        corners.push_back({0, i + 1, (i + 1) % count + 1});
    }
    return {points, corners};
}

template <class Real>
class TriangleTest : public testing::Test {
protected:
    static constexpr bool isDouble = std::is_same_v<Real, double>;
    static constexpr Real tolerance = isDouble ? Real(1e-5) : Real(1e-6);
    using Tri = TinRecord<Real>;
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(TriangleTest, Precisions);

TYPED_TEST(TriangleTest, StepsCrossTheFirstEdgeOfTheirOrder) {
    using Real = TypeParam;
    // Outside of two edges at a time, each neighbour being a triangle that holds everything.
    Real everything[3][3] = {{-900, -900, 0}, {900, -900, 0}, {0, 900, 0}};
    TinRecord<Real> holders[3];
    for (auto& h : holders) { std::copy_n(everything, 3, h.vertex); }
    Mesh<Real> mesh({{0, 0}, {4, 0}, {0, 4}}, {{0, 1, 2}});
    auto* const t = mesh.t(0);
    for (int i = 0; i < 3; ++i) { t->neighbor[i] = &holders[i]; }

    EXPECT_EQ(t->find(-1, -1), &holders[2]);  // 01 and 20
    EXPECT_EQ(t->find(6, -1), &holders[2]);   // 01 and 12
    EXPECT_EQ(t->find(-1, 6), &holders[1]);   // 20 and 12
    EXPECT_EQ(t->findRefine(-1, 6), &holders[1]);
    const auto step = [t](const XPnt3<Real>& p, const XPnt3<Real>& q) {
        return t->find(static_cast<const Real*>(p), static_cast<const Real*>(q));
    };
    EXPECT_EQ(step({-1, -1}, {1, 1}), &holders[2]);  // through a corner: touches 01 and 20
    EXPECT_EQ(step({6, -2}, {2, 2}), &holders[2]);   // 01 and 12
    EXPECT_EQ(step({-1, 6}, {1, 2}), &holders[0]);   // 12 and 20
    EXPECT_EQ(step({-1, 1}, {1, 1}), &holders[1]);
    EXPECT_EQ(step({-1, 1}, {-2, 9}), nullptr);  // outside of 20, which the segment misses
    EXPECT_EQ(step({1, 1}, {2, 1}), nullptr);
    EXPECT_EQ(step({0, 1}, {2, 1}), nullptr);  // on the edge is not outside

    constexpr Real onEdges[][2] = {{2, 0}, {0, 2}, {2, 2}, {0, 0}, {4, 0}};
    for (const auto& [x, y] : onEdges) { EXPECT_EQ(t->find(x, y), t); }
    EXPECT_EQ(t->findRefine(2, -this->tolerance / 8), t);  // the product with an edge of length 4
    EXPECT_EQ(t->findRefine(2, -this->tolerance / 2), &holders[2]);
    EXPECT_EQ(t->find(2, -this->tolerance / 8), &holders[2]);
    t->neighbor[2] = nullptr;
    EXPECT_EQ(t->find(2, -1), nullptr);
    EXPECT_EQ(t->findRefine(2, -1), nullptr);
}

TEST(TriangleTestDouble, ClassifyingWalkTellsInsideEdgeAndCorner) {
    Mesh<double> mesh = square<double>();
    const struct {
        double x, y;
        std::int32_t result;
        int triangle;  // -1: none
        std::int32_t where;
    } cases[] = {
        {1, -1, 0, 0, 9},        {-1, 1, 0, 1, 9}, {0, 0, 1, 0, 1},  {2, 0, 1, 0, 0},
        {0, -2, 1, 0, 2},        {2, -2, 2, 0, 1}, {-2, 0, 1, 1, 0}, {-2, 2, 2, 1, 1},
        {-2, -2, 2, 0, 0},       {2, 2, 2, 0, 2},  {5, 0, 0, -1, 9}, {0, 2 + 2e-6, 1, 1, 2},
        {0, 2 + 3e-6, 0, -1, 9},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << ", " << c.y);
        tind* t = nullptr;
        std::int32_t where = 9;
        EXPECT_EQ(mesh.t(0)->find(c.x, c.y, t, &where), c.result);
        EXPECT_EQ(t, c.triangle < 0 ? nullptr : mesh.t(std::size_t(c.triangle)));
        EXPECT_EQ(where, c.where);
        EXPECT_EQ(mesh.t(0)->find(c.x, c.y, t, nullptr), c.result);
    }
    Mesh<double> speck({{0, 0}, {1e-3, 0}, {0, 1e-3}}, {{0, 1, 2}});
    tind* t = nullptr;
    EXPECT_EQ(speck.t(0)->find(1e-4, 1e-4, t, nullptr), -1);
}

TYPED_TEST(TriangleTest, WalksInACircleEndWithNull) {
    using Real = TypeParam;
    // Three triangles, each of which sends the point to the next one.
    Mesh<Real> mesh({{0, 0}, {4, 0}, {0, 4}}, {{0, 1, 2}, {0, 1, 2}, {0, 1, 2}});
    for (std::size_t n = 0; n < 3; ++n) { mesh.t(n)->neighbor[2] = mesh.t((n + 1) % 3); }
    EXPECT_EQ(mesh.t(0)->find(1, -1), nullptr);
    EXPECT_EQ(mesh.t(0)->findRefine(1, -1), nullptr);
    if constexpr (TestFixture::isDouble) {
        tind* t = mesh.t(0);
        EXPECT_EQ(mesh.t(0)->find(1, -1, t, nullptr), 0);
        EXPECT_EQ(t, nullptr);
    }
    // A long walk is not taken for a circle.
    std::vector<XPnt3<Real>> points;
    std::vector<std::array<std::size_t, 3>> corners;
    for (std::size_t i = 0; i < 3000; ++i) {
        points.emplace_back(Real(i), Real(i % 2));
        if (i < 2) { continue; }
        corners.push_back({i - 2, i % 2 == 0 ? i : i - 1, i % 2 == 0 ? i - 1 : i});
    }
    Mesh<Real> strip(points, corners);
    EXPECT_EQ(strip.t(0)->find(Real(2998), Real(0.5)), strip.t(2997));
    EXPECT_EQ(strip.t(2997)->findRefine(Real(1), Real(0.5)), strip.t(0));
}

TYPED_TEST(TriangleTest, IndicesAndEdgesAnswerHitsAndMisses) {
    using Real = TypeParam;
    Mesh<Real> mesh = square<Real>();
    auto* const t = mesh.t(0);
    Real* const v0 = mesh.v(0);
    Real *const v1 = mesh.v(1), *const v2 = mesh.v(2), *const miss = mesh.v(3);
    EXPECT_EQ(t->index(v2), 2);
    EXPECT_EQ(t->index(miss), 3);
    EXPECT_EQ(t->index(mesh.t(1)), 1);
    EXPECT_EQ(t->index(t), 3);
    constexpr int most = std::numeric_limits<int>::max();
    const int thirds[][3] = {{1, 2, 0},  {2, 0, 1},  {0, 0, -1},       {3, 0, 0},
                             {3, 1, -1}, {-1, 2, 2}, {most, most, -1}, {-most, -most, -1}};
    for (const auto& [a, b, third] : thirds) { EXPECT_EQ(t->index(a, b), third); }
    EXPECT_EQ(t->index(v1, v2), 0);
    EXPECT_EQ(t->index(v2, v1), 0);
    EXPECT_EQ(t->index(v1, v1), -1);
    EXPECT_EQ(t->index(v1, miss), -1);

    const std::array<Real*, 2> edges[] = {{v1, v2}, {v0, v2}, {v0, v1}};
    for (int i = 0; i < 3; ++i) {
        std::array<Real*, 2> byIndex, byCorner;
        EXPECT_TRUE(t->get_edge(i, byIndex[0], byIndex[1]));
        EXPECT_TRUE(t->get_edge(mesh.v(std::size_t(i)), byCorner[0], byCorner[1]));
        EXPECT_EQ(byIndex, edges[i]);
        EXPECT_EQ(byCorner, edges[i]);
    }
    Real *a = miss, *b = miss;
    EXPECT_FALSE(t->get_edge(3, a, b) || t->get_edge(-1, a, b) || t->get_edge(miss, a, b));
    EXPECT_TRUE(a == miss && b == miss);

    TinRecord<Real> copy = *t;
    EXPECT_EQ(copy, *t);
    copy.mark = 1;
    EXPECT_NE(copy, *t);
    EXPECT_EQ(TinRecord<Real>().mark, -1);
}

TYPED_TEST(TriangleTest, AdjustFlipsWhatIsNotDelaunay) {
    using Real = TypeParam;
    // A kite 1-3 across 0-2, whose height decides, with a triangle beyond each outer edge.
    const auto kite = [](Real height) {
        return Mesh<Real>(
            {{-2, 0}, {0, -height}, {2, 0}, {0, height}, {-9, -9}, {9, -9}, {9, 9}, {-9, 9}},
            {{1, 2, 0}, {3, 0, 2}, {0, 4, 1}, {1, 5, 2}, {2, 6, 3}, {3, 7, 0}});
    };
    Mesh<Real> flat = kite(1);
    auto &s = *flat.t(0), &n = *flat.t(1);
    EXPECT_EQ(s.adjust(flat.v(1)), &n);
    // s = (P, A, Q), n = (Q, B, P), each with its neighbours in their slots.
    const TinRecord<Real> flippedS{.vertex = {flat.v(1), flat.v(2), flat.v(3)},
                                   .neighbor = {flat.t(4), &n, flat.t(3)}};
    const TinRecord<Real> flippedN{.vertex = {flat.v(3), flat.v(0), flat.v(1)},
                                   .neighbor = {flat.t(2), &s, flat.t(5)}};
    EXPECT_EQ(s, flippedS);
    EXPECT_EQ(n, flippedN);
    EXPECT_EQ(flat.t(2)->index(&n), 1);
    EXPECT_EQ(flat.t(4)->index(&s), 1);
    EXPECT_EQ(s.adjust(flat.v(2)), nullptr);  // Delaunay now

    Mesh<Real> tall = kite(3);
    EXPECT_EQ(tall.t(0)->adjust(tall.v(1)), nullptr);
    Mesh<Real> round = kite(2);
    EXPECT_EQ(round.t(0)->adjust(round.v(1)), this->isDouble ? round.t(1) : nullptr);

    Mesh<Real> noArea({{-2, 0}, {0, 0}, {2, 0}, {0, 9}}, {{1, 2, 0}, {3, 0, 2}});
    EXPECT_EQ(noArea.t(0)->adjust(noArea.v(1)), noArea.t(1));

    Mesh<Real> lone = kite(1);
    EXPECT_EQ(lone.t(0)->adjust(lone.v(3)), nullptr);  // no corner
    lone.t(1)->neighbor[0] = nullptr;                  // does not link back
    const std::vector<TinRecord<Real>> before = lone.triangles;
    EXPECT_EQ(lone.t(0)->adjust(lone.v(1)), nullptr);
    EXPECT_EQ(lone.t(1)->adjust(lone.v(3)), nullptr);  // no neighbour
    EXPECT_EQ(lone.triangles, before);
}

TYPED_TEST(TriangleTest, IntersectFlipsOnlyWhatBringsTheSegmentIn) {
    using Real = TypeParam;
    const struct {
        XPnt3<Real> p, d, a, b;  // corners opposite the edge from (0, -2) to (0, 2); the segment
        bool flips;
    } cases[] = {
        {{-3, 0}, {3, 0}, {-3, 0}, {3, 0}, true},    {{-3, 0}, {3, 0}, {-6, 0}, {6, 0}, true},
        {{-3, 0}, {3, 0}, {-3, 0}, {3, 9}, false},    // passes beside the edge
        {{-3, 0}, {3, 0}, {-3, 0}, {-1, 0}, false},   // ends before it
        {{-3, 0}, {3, 0}, {-3, 0}, {0, 0}, false},    // ends on it
        {{-3, 0}, {3, 0}, {-3, 0}, {3, 4}, false},    // through its end
        {{-3, 0}, {3, 9}, {-3, 0}, {6, 0}, false},    // not convex
        {{-3, 0}, {3, 4}, {-3, 0}, {6, 1}, false},    // nor with three corners on a line
        {{-3, 1}, {3, -1}, {-6, -1}, {6, 1}, false},  // the new diagonal crosses as well
        {{-3, 1}, {3, 1}, {-6, 0}, {6, 0}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        Mesh<Real> mesh({c.p, {0, -2}, {0, 2}, c.d, c.a, c.b}, {{0, 1, 2}, {3, 2, 1}});
        const std::vector<TinRecord<Real>> before = mesh.triangles;
        EXPECT_EQ(mesh.t(0)->intersect(mesh.v(0), mesh.v(4), mesh.v(5)), c.flips);
        EXPECT_EQ(mesh.triangles == before, !c.flips);
        EXPECT_EQ(mesh.t(0)->index(mesh.v(3)) != 3, c.flips);
    }
    Mesh<Real> mesh = square<Real>();
    EXPECT_FALSE(mesh.t(0)->intersect(mesh.v(3), mesh.v(1), mesh.v(3)));  // no corner
    EXPECT_FALSE(mesh.t(0)->intersect(mesh.v(0), mesh.v(1), mesh.v(3)));  // no neighbour
}

TYPED_TEST(TriangleTest, RingsRunRoundTheVertex) {
    using Real = TypeParam;
    const auto ringOf = [](Mesh<Real>& mesh, std::size_t t, std::size_t v) {
        const auto ring = newRing<Real>();
        ring->append(nullptr);  // stays: the ring is appended
        const std::int32_t size = mesh.t(t)->findCone(mesh.v(v), ring.get());
        EXPECT_EQ(size, ring->size());
        std::vector<std::size_t> numbers;
        for (int i = 1; i < ring->size(); ++i) {
            numbers.push_back(
                std::size_t(reinterpret_cast<XPnt3<Real>*>(ring->get(i)) - mesh.points.data()));
        }
        return numbers;
    };
    using Ring = std::vector<std::size_t>;
    Mesh<Real> hub = wheel<Real>(5);
    EXPECT_EQ(ringOf(hub, 0, 0), (Ring{2, 3, 4, 5, 1}));
    EXPECT_EQ(ringOf(hub, 3, 0), (Ring{5, 1, 2, 3, 4}));
    EXPECT_EQ(ringOf(hub, 1, 2), (Ring{0, 1, 3}));  // on the boundary: two runs
    EXPECT_EQ(ringOf(hub, 0, 2), (Ring{1, 0, 3}));
    Mesh<Real> lone({{0, 0}, {4, 0}, {0, 4}}, {{0, 1, 2}});
    EXPECT_EQ(ringOf(lone, 0, 1), (Ring{0, 2}));

    Mesh<Real> large = wheel<Real>(60);
    EXPECT_EQ(ringOf(large, 0, 0).size(), this->isDouble ? 60U : 53U);
    EXPECT_EQ(ringOf(large, 0, 0)[52], 54U);

    const auto ring = newRing<Real>();
    EXPECT_EQ(hub.t(0)->findCone(-1, ring.get()), 0);
    EXPECT_EQ(hub.t(0)->findCone(3, ring.get()), 0);
    EXPECT_EQ(hub.t(0)->findCone(3, Real(9), ring.get()), 0);
    EXPECT_EQ(hub.t(0)->findCone(hub.v(4), ring.get()), 0);
    EXPECT_EQ(ring->capacity(), 0);
    hub.t(0)->findCone(0, ring.get());
    EXPECT_EQ(ring->capacity() >= 1024, !this->isDouble);
}

TYPED_TEST(TriangleTest, FloodFindsEveryVertexWithinTheRadius) {
    using Real = TypeParam;
    // Around a vertex of a Delaunay network, the vertices within a radius hang together.
    std::mt19937 random(support::newSeed());
    std::uniform_int_distribution place(0, 40);
    support::Network<Real> network(-10, -10, 50, 50);
    while (network.engine->triangleCount() < 800) {
        if (!network.add(place(random), place(random))) { network.points.pop_back(); }
    }
    for (auto& p : network.points) { p.inten = 0; }
    for (std::size_t i = 0; i < 20; ++i) {
        const XPnt3<Real>& p = network.points[20 * i];
        const Real* const centre = p;
        const Real radius = Real(i) / 2;
        std::vector<Real*> expected;
        for (auto& q : network.points) {
            const Real dx = q.x - p.x, dy = q.y - p.y;
            if (&q != &p && dx * dx + dy * dy <= radius * radius) { expected.push_back(q); }
        }
        const auto found = newRing<Real>();
        auto* const t = network.engine->locate(p.x, p.y);
        EXPECT_EQ(t->findCone(centre, radius, found.get()), expected.size());
        std::sort(found->begin(), found->end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(std::vector<Real*>(found->begin(), found->end()), expected);
        for (const auto& q : network.points) { EXPECT_EQ(q.inten, 0); }
    }
}

TYPED_TEST(TriangleTest, FloodStartsAtTheNearestCorner) {
    using Real = TypeParam;
    Mesh<Real> hub = wheel<Real>(6);
    const auto found = newRing<Real>();
    const Real beside[3] = {Real(0.5), Real(0.25), 0}, outside[3] = {60, 60, 0};
    EXPECT_EQ(hub.t(3)->findCone(beside, Real(9.5), found.get()), 6);
    EXPECT_EQ(found->get(0), hub.v(2));
    found->removeAll();
    EXPECT_EQ(hub.t(3)->findCone(beside, Real(0.5), found.get()), 0);
    EXPECT_EQ(hub.t(3)->findCone(outside, Real(99), found.get()), 0);
}

TYPED_TEST(TriangleTest, FloodGoesDeepFromTheLatestVertex) {
    using Real = TypeParam;
    Mesh<Real> fan({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 1}, {1, 4}},
                   {{0, 1, 2}, {0, 2, 3}, {1, 4, 2}, {2, 5, 3}});
    const auto found = newRing<Real>();
    found->append(fan.v(1));  // its mark is cleared in the end as well
    fan.points[1].inten = 1;
    EXPECT_EQ(fan.t(0)->findCone(0, Real(5), found.get()), 5);
    const std::vector<Real*> order{fan.v(1), fan.v(2), fan.v(3), fan.v(5), fan.v(4)};
    EXPECT_EQ(std::vector<Real*>(found->begin(), found->end()), order);
    for (const auto& p : fan.points) { EXPECT_EQ(p.inten, 0); }
    found->removeAll();
    EXPECT_EQ(fan.t(0)->findCone(0, Real(1), found.get()), 0);
}

TYPED_TEST(TriangleTest, MeasuresAreThoseOfGeometry) {
    using Real = TypeParam;
    Mesh<Real> mesh({{1, 2, 3}, {5, 2, 3}, {1, 5, 15}}, {{0, 1, 2}});
    const auto* const t = mesh.t(0);
    const auto near = [](Real measured, double exact) {
        return std::abs(double(measured) - exact) <=
               8 * double(std::numeric_limits<Real>::epsilon()) * std::abs(exact);
    };
    const double slope = std::sqrt(153.0);
    EXPECT_PRED2(near, t->Area(), 2 * slope);
    EXPECT_PRED2(near, t->AreaHorizen(), 6.0);
    EXPECT_EQ(t->AreaVertical(), 0);
    EXPECT_PRED2(near, t->BevelEdgeLength(), 5.0);
    EXPECT_PRED2(near, t->BevelEdgeLengthNew(), 13.0);
    EXPECT_EQ(t->boxZ(), 12);
    EXPECT_EQ(t->maxEdgeLen2d(), 5);
    const XPnt3<Real> centre = t->Center();
    EXPECT_PRED2(near, centre.x, 7 / 3.0);
    EXPECT_PRED2(near, centre.y, 3.0);
    EXPECT_PRED2(near, centre.z, 7.0);
    Real a = 9, b = 9, c = 9, d = 9;
    EXPECT_TRUE(t->PlaneParam3D(a, b, c, d));
    EXPECT_EQ((std::array{a, b, c, d}), (std::array<Real, 4>{0, -48, 12, 60}));
    EXPECT_TRUE(t->NormalAngle(a, b, c));
    EXPECT_PRED2(near, a, std::numbers::pi / 2);
    EXPECT_PRED2(near, b, std::acos(-48 / (4 * slope)));
    EXPECT_PRED2(near, c, std::acos(12 / (4 * slope)));
    EXPECT_TRUE(t->IntersectVertical(3, 4, 1, d));
    EXPECT_EQ(d, -10);
    EXPECT_TRUE(t->Z(Real(14.9)));
    EXPECT_FALSE(t->Z(15));
    EXPECT_FALSE(t->EdgeNormal(0, a, b, c));
    EXPECT_FALSE(t->intersect3d(&a, &b, &c));

    // Without a plane, and with one that stands upright.
    Mesh<Real> line({{1, 1, 1}, {2, 2, 2}, {4, 4, 4}}, {{0, 1, 2}});
    const auto* const l = line.t(0);
    a = b = c = d = 9;
    EXPECT_FALSE(l->PlaneParam3D(a, b, c, d) || l->IntersectVertical(1, 1, 1, d));
    EXPECT_EQ((std::array{a, b, c, d}), (std::array<Real, 4>{9, 9, 9, 9}));
    EXPECT_FALSE(l->NormalAngle(a, b, c));
    EXPECT_EQ((std::array{a, b, c}), (std::array<Real, 3>{0, 0, 0}));
    for (int i = 1; i < 50; ++i) {  // Heron's product may round below 0
        const Real x = Real(i) / 10;
        Mesh<Real> needle({{0, 0, 0}, {x, x, x}, {x / 3, x / 3, x / 3}}, {{0, 1, 2}});
        EXPECT_GE(needle.t(0)->Area(), 0);
        EXPECT_GE(needle.t(0)->AreaHorizen(), 0);
    }
    Mesh<Real> wall({{0, 0, 0}, {4, 0, 0}, {2, 0, 5}}, {{0, 1, 2}});
    EXPECT_FALSE(wall.t(0)->IntersectVertical(1, 0, 0, d));
    EXPECT_EQ(d, 9);
}

TYPED_TEST(TriangleTest, LinesMeetTheTriangleOrMissIt) {
    using Real = TypeParam;
    std::mt19937 random(support::newSeed());
    std::uniform_int_distribution place(-100, 100);
    std::uniform_real_distribution weight(0.1, 0.3);
    constexpr int base[][2] = {{-50, -40}, {60, -30}, {10, 70}};
    for (const Real offset : {Real(0), Real(500000)}) {
        for (int i = 0; i < 200; ++i) {
            // A tilted triangle of some area, and a line through a point of its plane.
            std::vector<XPnt3<Real>> corners;
            for (const auto& [x, y] : base) {
                corners.emplace_back(Real(x + place(random) / 10) + offset,
                                     Real(y + place(random) / 10) + offset, Real(place(random)));
            }
            const double u = weight(random), v = weight(random);
            Mesh<Real> mesh(corners, {{0, 1, 2}});
            const auto lineThrough = [&](double s, double t, Real& parameter) {
                double hit[3];
                Real from[3], to[3];
                for (int k = 0; k < 3; ++k) {
                    hit[k] = double(corners[0][k]) * (1 - s - t) + double(corners[1][k]) * s +
                             double(corners[2][k]) * t;
                    from[k] = Real(hit[k]);
                    to[k] = Real(hit[k]);
                }
                from[2] += 100;
                to[2] += 300;
                return mesh.t(0)->ray_intersect3d(from, to, &parameter);
            };
            Real t = 9;
            EXPECT_TRUE(lineThrough(u, v, t));
            EXPECT_NEAR(double(t), -0.5, 0.01);  // behind the first point counts
            t = 9;
            EXPECT_FALSE(lineThrough(-u, v, t));
            EXPECT_NE(t, 9);  // it met the plane
        }
    }
    Mesh<Real> ground({{-1, -1}, {1, -1}, {0, 2}}, {{0, 1, 2}});  // its plane holds the origin
    const auto meets = [&ground](const XPnt3<Real>& p, const XPnt3<Real>& q, Real& t) {
        const Real *const from = p, *const to = q;
        return ground.t(0)->ray_intersect3d(from, to, &t);
    };
    Real t = 9;
    EXPECT_TRUE(meets({0, 0, 4}, {0, 0, 2}, t));
    EXPECT_EQ(t, 2);
    t = 9;
    EXPECT_FALSE(meets({0, 0, 4}, {1, 1, 4}, t));  // parallel
    EXPECT_FALSE(meets({0, 0, 0}, {1, 0, 0}, t));  // in the plane
    EXPECT_FALSE(meets({0, 0, 4}, {0, 0, 4}, t));  // no line
    ground.points[2] = ground.points[1];
    EXPECT_FALSE(meets({0, 0, 4}, {0, 0, 2}, t));  // no plane
    EXPECT_EQ(t, 9);
}

}  // namespace
