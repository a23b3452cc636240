// The engines' operations, in both precisions.
#include <zyn/delaunay.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <set>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "seed.h"

namespace {

using namespace zyn;
using support::faultOf;

/// A network in the square from 0 to 10, with points to taste.
template <class Real>
class EngineTest : public testing::Test, protected support::Network<Real> {
protected:
    static constexpr bool isDouble = std::is_same_v<Real, double>;
    using Tri = TinRecord<Real>;
    using Net = support::Network<Real>;

    EngineTest() : Net(0, 0, 10, 10) {}

    void addRandom(int count) {
        std::mt19937 random(support::newSeed());
        std::uniform_real_distribution place(1.0, 9.0);
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(this->add(place(random), place(random), place(random)));
        }
    }
    /// Points beside each side of the frame, so that no vertex between them is linked to a side.
    void addGuards() {
        EXPECT_TRUE(this->add(5, 1) && this->add(9, 5) && this->add(5, 9) && this->add(1, 5));
    }
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(EngineTest, Precisions);

TYPED_TEST(EngineTest, ANewEngineHoldsTwoTrianglesInItsFrame) {
    using Real = TypeParam;
    auto& e = *this->engine;
    EXPECT_EQ(e.getGeoType(), 18);
    EXPECT_EQ(e.relation(Enve3d()) | e.move(1, 1, 1) | e.rotate(nullptr, nullptr, 1), 0);
    EXPECT_EQ(e.reservedA() | e.reservedB() | e.reservedC(), 0);

    auto* const first = e.nextTriangle();
    auto* const last = e.nextTriangle();
    ASSERT_TRUE(first != nullptr && last != nullptr);
    EXPECT_EQ(e.nextTriangle(), nullptr);
    EXPECT_EQ(e.nextTriangle(), nullptr);
    const Real* const corners[4] = {first->vertex[0], first->vertex[1], first->vertex[2],
                                    last->vertex[1]};
    constexpr Real expected[4][3] = {{0, 0, 1}, {10, 0, 1}, {10, 10, 1}, {0, 10, 1}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(std::equal(corners[i], corners[i] + 3, expected[i]));
        EXPECT_TRUE(e.isFrameVertex(corners[i]));
    }
    EXPECT_EQ(last->vertex[0], first->vertex[2]);
    EXPECT_EQ(last->vertex[2], first->vertex[0]);
    EXPECT_TRUE(e.isFrameTriangle(first) && e.isFrameTriangle(last));
    EXPECT_EQ(faultOf(e, {.vertices = 4}), "");

    EXPECT_EQ(e.triangleCount(), 2);
    EXPECT_EQ(vertexCount(&e), 0);
    EXPECT_EQ(allVertexCount(&e), 4);
    EXPECT_EQ(surfaceTriangleCount(&e), 0);
    EXPECT_EQ(surfaceArea(&e), 0);
    EXPECT_EQ(compactVertices(&e), 0);
    EXPECT_FALSE(e.getEnvelope().isValid());
    Real b[6] = {7, 7, 7, 7, 7, 7};
    EXPECT_FALSE(bounds(&e, b[0], b[1], b[2], b[3], b[4], b[5]));
    EXPECT_EQ(std::count(b, b + 6, Real(7)), 6);
    EXPECT_FALSE(e.removePoint(nullptr, 5, 5, 99));
    EXPECT_EQ(e.enforceEdge(first->vertex[0], first->vertex[1], nullptr), first);
}

TYPED_TEST(EngineTest, AddPointSplitsFlipsAndStoresInOrder) {
    // The newest triangle is left for the first one, which is split; then the diagonal flips.
    ASSERT_TRUE(this->add(5, 2));
    const auto t = this->records();
    ASSERT_EQ(t.size(), 4U);
    auto* const p = this->vertex(0);
    auto *const f0 = t[1].vertex[2], *const f1 = t[0].vertex[1], *const f2 = t[0].vertex[2],
                *const f3 = t[1].vertex[1];
    const TypeParam* const corners[]{p, f1, f2, p, f3, f0, p, f2, f3, p, f0, f1};
    for (std::size_t i = 0; i < 12; ++i) { EXPECT_EQ(t[i / 3].vertex[i % 3], corners[i]); }
    EXPECT_EQ(t[0].neighbor[1], t[1].neighbor[2]);  // the third triangle
    EXPECT_EQ(t[0].neighbor[2], t[1].neighbor[1]);  // the fourth
    EXPECT_EQ(faultOf(*this->engine, {.vertices = 5}), "");
}

TYPED_TEST(EngineTest, AddPointNumbersInDoubleAndRefusesWithoutAChange) {
    ASSERT_TRUE(this->add(2, 3, 4));
    const auto before = this->records();
    const double huge = std::numeric_limits<TypeParam>::max(), inf = HUGE_VAL, nan = std::nan("");
    const struct {
        double x, y, tolerance;
    } refused[] = {{2, 3, 0},     {2.25, 2.75, 0.25}, {1.75, 3.25, 0.25}, {0.5, 0.5, 0.5},
                   {10, 10, 0},   {-0.001, 5, 0},     {5, 10.001, 0},     {nan, 5, 0},
                   {5, nan, 0},   {inf, 5, 0},        {5, -inf, -1},      {huge, huge, 0},
                   {-1e-30, 5, 0}};
    for (const auto& [x, y, tolerance] : refused) {
        EXPECT_FALSE(this->add(x, y, 99, tolerance)) << x << ", " << y;
    }
    EXPECT_FALSE(this->engine->addPoint(nullptr, 0));
    EXPECT_EQ(this->records(), before);
    for (std::size_t i = 0; i < this->points.size(); ++i) {
        EXPECT_EQ(this->points[i].inten, this->isDouble ? int(i) : 0);
    }
    // The low 16 bits of the number, which goes on in refused points.
    for (std::size_t n = this->points.size(); n < 65540; ++n) {
        this->points[0].inten = 0;
        this->engine->addPoint(&this->points[0], 0);
        ASSERT_EQ(this->points[0].inten, this->isDouble ? static_cast<std::int16_t>(n) : 0);
    }
    const struct {
        double x, y, tolerance;
    } accepted[] = {{2.25, 2.74, 0.25}, {2.25, 2.74, -1}, {1.74, 3, 0.25},
                    {0, 5, 0},          {10, 0.5, 0.25},  {5, 0, 0},
                    {5, 10, 0},         {5, 5, 0},        {7, 7, 0}};
    for (const auto& [x, y, tolerance] : accepted) {
        EXPECT_TRUE(this->add(x, y, 0, tolerance)) << x << ", " << y;
    }
    EXPECT_EQ(this->engine->triangleCount(), 2 + 2 * 10);
    EXPECT_EQ(faultOf(*this->engine, {.duplicates = true, .vertices = 14}), "");
}

TYPED_TEST(EngineTest, FourPointsOnACircleFlipInDoubleOnly) {
    for (const auto& [x, y] : {XPnt2d(3, 3), XPnt2d(7, 3), XPnt2d(7, 7), XPnt2d(3, 7)}) {
        ASSERT_TRUE(this->add(x, y));
    }
    EXPECT_EQ(this->triangleOn(this->vertex(0), this->vertex(2)) != nullptr, !this->isDouble);
    EXPECT_EQ(this->triangleOn(this->vertex(1), this->vertex(3)) != nullptr, this->isDouble);
}

TYPED_TEST(EngineTest, PointsInOnePlaceKeepAStarOfTheirOwn) {
    // A vertex beside its duplicate has three triangles at least, whatever is flipped around it.
    constexpr int sets[][6][2] = {{{1, 1}, {1, 1}, {1, 3}, {2, 2}, {3, 3}, {1, 2}},
                                  {{2, 2}, {8, 2}, {2, 2}, {8, 2}, {5, 2}, {5, 2}},
                                  {{5, 5}, {5, 5}, {5, 5}, {5, 5}, {0, 0}, {0, 5}}};
    for (const auto& set : sets) {
        support::Network<TypeParam> network(0, 0, 10, 10);
        for (const auto& [x, y] : set) { EXPECT_TRUE(network.add(x, y, 0, -1)); }
        EXPECT_EQ(faultOf(*network.engine, {.delaunay = false, .duplicates = true, .vertices = 10}),
                  "");
    }
}

TYPED_TEST(EngineTest, LocateFindsTheTriangleThatHoldsThePosition) {
    this->addRandom(300);
    auto& e = *this->engine;
    for (std::size_t i = 0; i < this->points.size(); ++i) {
        auto* const v = this->vertex(i);
        auto* const t = e.locate(v[0], v[1]);
        ASSERT_NE(t, nullptr);
        EXPECT_NE(t->index(v), 3);
        EXPECT_EQ(t->find(v[0], v[1]), t);
    }
    EXPECT_NE(e.locate(0, 5), nullptr);
    EXPECT_NE(e.locate(10, 10), nullptr);
    EXPECT_EQ(e.locate(5, std::nextafter(TypeParam(10), TypeParam(11))), nullptr);
    EXPECT_EQ(e.locate(TypeParam(std::nan("")), 5), nullptr);
}

TYPED_TEST(EngineTest, EnforceEdgeFlipsTheCrossingEdges) {
    // Point 0 to point 1 across a column of points whose edges stand in the way.
    ASSERT_TRUE(this->add(1, 5) && this->add(9, 5));
    for (int i = 0; i < 3; ++i) { ASSERT_TRUE(this->add(4 + i, 5.25) && this->add(4 + i, 4.75)); }
    auto *const a = this->vertex(0), *const b = this->vertex(1);
    auto& e = *this->engine;
    ASSERT_EQ(this->triangleOn(a, b), nullptr);
    auto* t = e.enforceEdge(a, b, nullptr);
    EXPECT_NE(this->triangleOn(a, b), nullptr);
    ASSERT_NE(t, nullptr);
    EXPECT_NE(t->index(a), 3);
    EXPECT_EQ(faultOf(e, {.delaunay = false, .vertices = 12}), "");

    const auto before = this->records();
    t = e.enforceEdge(a, b, t);  // it is there already
    EXPECT_TRUE(t != nullptr && t->index(a) != 3);
    t = e.enforceEdge(b, a, t);
    EXPECT_TRUE(t != nullptr && t->index(b) != 3);
    TypeParam outside[3] = {11, 5, 0};
    EXPECT_EQ(e.enforceEdge(outside, a, nullptr), nullptr);
    EXPECT_EQ(e.enforceEdge(nullptr, a, nullptr), nullptr);
    EXPECT_NE(e.enforceEdge(a, outside, nullptr), nullptr);
    EXPECT_EQ(this->records(), before);
}

TYPED_TEST(EngineTest, RemovePointClosesTheHole) {
    auto& e = *this->engine;
    this->addGuards();
    ASSERT_TRUE(this->add(4, 4) && this->add(6, 4) && this->add(5, 6));
    // Degree 3: one triangle stays, linked to its three neighbours.
    ASSERT_TRUE(this->add(5, 4.5));
    ASSERT_TRUE(e.removePoint(nullptr, 5, 4.5, TypeParam(0.1)));
    EXPECT_EQ(faultOf(e, {.vertices = 11}), "");
    EXPECT_FALSE(this->has(this->vertex(7)));
    auto* const t = e.locate(5, 5);
    EXPECT_EQ(t->index(this->vertex(4)) + t->index(this->vertex(5)) + t->index(this->vertex(6)), 3);
    // The nearest corner goes, from a hint on, and only if it is nearer than the radius.
    EXPECT_FALSE(e.removePoint(t, 4.25, 4, TypeParam(0.25)));
    EXPECT_TRUE(e.removePoint(t, 4.25, 4, TypeParam(0.26)));
    EXPECT_FALSE(this->has(this->vertex(4)));
    EXPECT_EQ(faultOf(e, {.delaunay = false, .vertices = 10}), "");
}

TYPED_TEST(EngineTest, RemovePointFillsAHoleThatNoFanFills) {
    for (const int spikes : {4, 5, 12}) {
        SCOPED_TRACE(spikes);
        // A star, concave at every other vertex; edges from the hub, point 0, make it the hub's ring.
        typename TestFixture::Net star(0, 0, 10, 10);
        ASSERT_TRUE(star.add(5, 5));
        for (int i = 0; i < 2 * spikes; ++i) {
            const double angle = i * std::numbers::pi / spikes;
            const double radius = i % 2 == 0 ? 4 : 1;
            ASSERT_TRUE(star.add(5 + radius * std::cos(angle), 5 + radius * std::sin(angle)));
        }
        for (std::size_t i = 1; i < star.points.size(); ++i) {
            star.engine->enforceEdge(star.vertex(0), star.vertex(i), nullptr);
            ASSERT_NE(star.triangleOn(star.vertex(0), star.vertex(i)), nullptr);
        }
        EXPECT_TRUE(star.engine->removePoint(nullptr, 5, 5, TypeParam(0.5)));
        EXPECT_FALSE(star.has(star.vertex(0)));
        EXPECT_EQ(faultOf(*star.engine, {.delaunay = false, .vertices = 4 + 2 * spikes}), "");
    }
}

TYPED_TEST(EngineTest, RemovePointRefusesWithoutAChange) {
    auto& e = *this->engine;
    this->addGuards();
    ASSERT_TRUE(this->add(5, 5));
    const auto before = this->records();
    EXPECT_FALSE(e.removePoint(nullptr, 0, 0, 1));  // a corner of the frame
    EXPECT_FALSE(e.removePoint(nullptr, 5, 1, 1));  // an edge of the frame opposite
    EXPECT_FALSE(e.removePoint(nullptr, 5, 5, 0));  // nothing is nearer than 0
    EXPECT_FALSE(e.removePoint(nullptr, 5, TypeParam(5.5), TypeParam(0.4)));
    EXPECT_FALSE(e.removePoint(nullptr, 12, 5, 99));  // outside
    EXPECT_FALSE(e.removePoint(nullptr, TypeParam(std::nan("")), 5, 99));
    EXPECT_EQ(this->records(), before);
    EXPECT_TRUE(e.removePoint(nullptr, 5, 5, 1));
}

TYPED_TEST(EngineTest, AFloatEngineKeepsAHubOfMoreThan53Neighbours) {
    for (const int count : {53, 54}) {
        support::Network<TypeParam> hub(0, 0, 10, 10);
        ASSERT_TRUE(hub.add(5, 5));
        for (int i = 0; i < count; ++i) {
            const double angle = 2 * std::numbers::pi * i / count;
            ASSERT_TRUE(hub.add(5 + 3 * std::cos(angle), 5 + 3 * std::sin(angle)));
        }
        EXPECT_EQ(hub.engine->removePoint(nullptr, 5, 5, 1), this->isDouble || count == 53);
        EXPECT_EQ(faultOf(*hub.engine, {.delaunay = false}), "");
    }
}

TYPED_TEST(EngineTest, DeleteTriangleMovesTheNewestIntoItsPlace) {
    this->addRandom(1500);  // three blocks of triangles
    auto& e = *this->engine;
    std::vector<typename TestFixture::Tri*> all;
    e.rewindTriangles();
    while (auto* const t = e.nextTriangle()) { all.push_back(t); }
    ASSERT_EQ(all.size(), 3002U);
    EXPECT_FALSE(e.deleteTriangle(nullptr));
    EXPECT_FALSE(e.deleteTriangle(all.back()));
    typename TestFixture::Tri foreign = *all[5];
    EXPECT_FALSE(e.deleteTriangle(&foreign));

    auto* const victim = all[7];
    victim->mark = 77;
    std::vector<typename TestFixture::Tri**> links;
    for (auto* const n : victim->neighbor) {
        if (n != nullptr && n != all.back()) { links.push_back(&n->neighbor[n->index(victim)]); }
    }
    const auto newest = *all.back();
    ASSERT_TRUE(e.deleteTriangle(victim));
    EXPECT_EQ(e.triangleCount(), 3001);
    for (auto** const link : links) { EXPECT_EQ(*link, nullptr); }
    EXPECT_TRUE(std::equal(newest.vertex, newest.vertex + 3, victim->vertex));
    EXPECT_EQ(victim->mark, 77);
    for (auto* const n : victim->neighbor) {
        if (n != nullptr) { EXPECT_NE(n->index(victim), 3); }
    }
    // The cursor goes on past what is deleted under it, over the borders of blocks, to an end.
    e.rewindTriangles();
    int seen = 0, deleted = 0;
    while (auto* const t = e.nextTriangle()) {
        if (++seen % 3 != 0 && e.deleteTriangle(t)) { ++deleted; }
    }
    EXPECT_EQ(e.nextTriangle(), nullptr);
    EXPECT_EQ(e.triangleCount(), 3001 - deleted);
    EXPECT_EQ(seen, e.triangleCount());
    while (e.triangleCount() > 1) {
        e.rewindTriangles();
        ASSERT_TRUE(e.deleteTriangle(e.nextTriangle()));
    }
    e.rewindTriangles();
    EXPECT_FALSE(e.deleteTriangle(e.nextTriangle()));
}

TYPED_TEST(EngineTest, CountsAreasAndBoundsAreThoseOfTheSurface) {
    using Real = TypeParam;
    this->addRandom(200);
    auto& e = *this->engine;
    std::set<const Real*> vertices;
    double area = 0, plan = 0;
    int triangles = 0;
    Enve3d box;
    for (const auto& t : this->records()) {
        for (const Real* const v : t.vertex) {
            if (!e.isFrameVertex(v)) { vertices.insert(v); }
        }
        if (e.isFrameTriangle(&t)) { continue; }
        ++triangles;
        XPnt3d p[3];
        for (int i = 0; i < 3; ++i) {
            p[i] = support::pointOf(t.vertex[i]);
            box.SetBox(p[i]);
        }
        const XPnt3d u = p[1] - p[0], v = p[2] - p[0];
        const double x = u.y * v.z - u.z * v.y, y = u.z * v.x - u.x * v.z,
                     z = u.x * v.y - u.y * v.x;
        area += std::sqrt(x * x + y * y + z * z) / 2;
        plan += z / 2;
    }
    EXPECT_EQ(vertices.size(), 200U);
    EXPECT_EQ(vertexCount(&e), 200);
    EXPECT_EQ(allVertexCount(&e), 204);
    EXPECT_EQ(surfaceTriangleCount(&e), triangles);
    const double relative = this->isDouble ? 1e-9 : 1e-3;
    EXPECT_NEAR(double(surfaceArea(&e)), area, relative * area);
    EXPECT_NEAR(double(surfaceAreaHorizen(&e)), plan, relative * plan);
    EXPECT_EQ(e.getEnvelope(), box);
    Real b[6] = {};
    EXPECT_TRUE(bounds(&e, b[0], b[1], b[2], b[3], b[4], b[5]));
    EXPECT_EQ(Enve3d(b[0], b[1], b[2], b[3], b[4], b[5]), box);
}

TYPED_TEST(EngineTest, CompactVerticesFreesTheCallersPoints) {
    using Real = TypeParam;
    this->addRandom(100);
    auto& e = *this->engine;
    const auto before = this->records();
    std::set<const Real*> surface;
    for (const auto& t : before) {
        if (!e.isFrameTriangle(&t)) { surface.insert(t.vertex, t.vertex + 3); }
    }
    EXPECT_EQ(compactVertices(&e), int(surface.size()));
    const auto once = this->records();
    for (auto& p : this->points) {
        if (surface.contains(&p.x)) { p.set(-1, -1, -1); }
    }
    EXPECT_EQ(compactVertices(&e), int(surface.size()));
    const auto twice = this->records();
    EXPECT_EQ(faultOf(e, {.vertices = 104}), "");
    for (std::size_t n = 0; n < once.size(); ++n) {
        for (int i = 0; i < 3; ++i) {
            const Real *const v = once[n].vertex[i], *const w = twice[n].vertex[i];
            EXPECT_EQ(v != w, surface.contains(before[n].vertex[i]));
            EXPECT_TRUE(std::equal(v, v + 3, w));  // the first buffer is still there
        }
    }
}

TEST(Engine, FloatEnginesMeetLinesAndDoubleOnesDoNot) {
    support::Network<float> network(0, 0, 10, 10);
    for (const auto& [x, y] : {XPnt2d(3, 3), XPnt2d(7, 3), XPnt2d(7, 7), XPnt2d(3, 7)}) {
        ASSERT_TRUE(network.add(x, y, 2));
    }
    IZynDelaunay& e = *network.engine;
    ref_ptr<Pnt3fArray> hits = e.rayIntersections({4, 3.5F, 4}, {4, 3.5F, 8});
    ASSERT_EQ(hits->size(), 1);
    EXPECT_EQ(hits->get(0), XPnt3f(4, 3.5F, 2));
    float t = 9;
    EXPECT_TRUE(e.rayNearest({4, 3.5F, 4}, {4, 3.5F, 8}, &t));
    EXPECT_EQ(t, -0.5F);
    hits = e.rayIntersections({1, 1, 4}, {1, 1, 8});  // only frame triangles there
    EXPECT_EQ(hits->size(), 0);
    EXPECT_FALSE(e.rayNearest({1, 1, 4}, {1, 1, 8}, &t));
    EXPECT_TRUE(e.rayNearest({5, 4, 4}, {5, 4, 1}, &t));
    ASSERT_TRUE(network.add(5, 5, 6));  // a peak: the line from the side meets it twice
    EXPECT_TRUE(e.rayNearest({10, 4.75F, 3}, {0, 4.75F, 3}, &t));
    EXPECT_NEAR(t, 0.35F, 1e-6F);
    hits = e.rayIntersections({10, 4.75F, 3}, {0, 4.75F, 3});
    EXPECT_EQ(hits->size(), 2);

    support::Network<double> other(0, 0, 10, 10);
    double d = 9;
    EXPECT_EQ(other.engine->rayIntersections({}, {}), nullptr);
    EXPECT_FALSE(other.engine->rayNearest({}, {}, &d));
    EXPECT_EQ(d, 9);
}

/// Another maker's engine.
class ForeignEngine : public IZynDelaunay {
    int getGeoType() const override { return 0; }
    tin* nextTriangle() override { return nullptr; }
    void rewindTriangles() override {}
    int triangleCount() const override { return 7; }
    bool deleteTriangle(tin*) override { return true; }
    std::int32_t reservedA() override { return 0; }
    tin* locate(float, float) override { return nullptr; }
    bool isFrameTriangle(const tin*) const override { return true; }
    bool isFrameVertex(const float*) const override { return true; }
    tin* enforceEdge(float*, float*, tin*) override { return nullptr; }
    bool addPoint(XPnt3f*, float) override { return true; }
    bool removePoint(tin*, float, float, float) override { return true; }
    std::int32_t reservedB() override { return 0; }
    Pnt3fArray* rayIntersections(const XPnt3f&, const XPnt3f&) override { return nullptr; }
    bool rayNearest(const XPnt3f&, const XPnt3f&, float*) override { return true; }
    std::int32_t reservedC() override { return 0; }
};

TEST(Engine, FunctionsBesideTheInterfaceRefuseNullAndForeignEngines) {
    const ref_ptr<ForeignEngine> foreign = new ForeignEngine;
    for (DelaunayInterface<float>* const e :
         {static_cast<IZynDelaunay*>(foreign.get()), static_cast<IZynDelaunay*>(nullptr)}) {
        EXPECT_EQ(vertexCount(e) | allVertexCount(e) | surfaceTriangleCount(e), 0);
        EXPECT_EQ(surfaceArea(e) + surfaceAreaHorizen(e), 0);
        EXPECT_EQ(compactVertices(e), 0);
        float f = 3;
        EXPECT_FALSE(bounds(e, f, f, f, f, f, f));
        EXPECT_EQ(f, 3);
        EXPECT_FALSE(writeBinary(e, "x.tin") || writeText(e, "x.tin"));
        float* vertices = &f;
        int count = 5;
        EXPECT_FALSE(readBinary(e, "x.tin", vertices, count) || readText(e, "x", vertices, count));
        EXPECT_TRUE(vertices == nullptr && count == 0);
    }
}

}  // namespace
