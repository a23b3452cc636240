// The operations of the engines, in both precisions.
#include <zyn/delaunay.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <set>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;
using support::faultOf;

/// A network in the square from 0 to 10.
template <class Real>
class Engine : public testing::Test, protected support::Network<Real> {
protected:
    using Net = support::Network<Real>;

    Engine() : Net(0, 0, 10, 10) {}

    void addRandom(int count) {
        const unsigned seed = support::newSeed();
        for (const XPnt3d& p :
             support::makePointSet("RandomOrder", seed, count, {"", 0.1}).points) {
            EXPECT_TRUE(this->add(p.x + 1, p.y + 1, p.z));
        }
    }
    void addSquare() {
        for (const auto& [x, y] : {XPnt2d(3, 3), XPnt2d(7, 3), XPnt2d(7, 7), XPnt2d(3, 7)}) {
            ASSERT_TRUE(this->add(x, y, x));
        }
    }
};
TYPED_TEST_SUITE(Engine, support::Precisions);

TYPED_TEST(Engine, ANewEngineHoldsTwoTrianglesInItsFrame) {
    auto& e = *this->engine;
    const auto t = this->triangles();
    ASSERT_EQ(t.size(), 2U);
    ASSERT_EQ(e.nextTriangle(), nullptr);
    EXPECT_TRUE(e.isFrameVertex(t[1]->vertex[1]));
    EXPECT_FALSE(e.isFrameTriangle(nullptr));
    EXPECT_EQ(e.enforceEdge(nullptr, t[0]->vertex[0], t[0]), nullptr);
    EXPECT_EQ(e.enforceEdge(t[0]->vertex[0], nullptr, t[0]), nullptr);
    EXPECT_NE(e.locate(0, 5), nullptr);
    EXPECT_NE(e.locate(10, 10), nullptr);
    EXPECT_EQ(e.locate(5, std::nextafter(TypeParam(10), TypeParam(11))), nullptr);
    EXPECT_EQ(e.getEnvelope(), Enve3d()) << "no surface yet";
    typename TestFixture::Net endless(0, 0, HUGE_VAL, 10);
    EXPECT_FALSE(endless.add(5, 5));
}

TYPED_TEST(Engine, AddPointRefusesPointsWithoutAChange) {
    ASSERT_TRUE(this->add(2, 3, 4));
    const auto before = this->records();
    const double huge = std::numeric_limits<TypeParam>::max(), inf = HUGE_VAL, nan = std::nan("");
    const double refused[][3] = {
        {2, 3, 0},      {2.25, 2.75, 0.25}, {1.75, 3.25, 0.25}, {10, 10, 0}, {-1e-30, 5, 0},
        {5, 10.001, 0}, {nan, 5, 0},        {5, nan, 0},        {inf, 5, 0}, {huge, huge, 0}};
    for (const auto& [x, y, tolerance] : refused) {
        EXPECT_FALSE(this->add(x, y, 99, tolerance)) << x << ", " << y;
    }
    EXPECT_FALSE(this->engine->addPoint(nullptr, 0));
    EXPECT_EQ(this->records(), before);
    constexpr double accepted[][3] = {{2.25, 2.74, 0.25}, {2.25, 2.74, -1}, {1.74, 3, 0.25},
                                      {0, 5, 0},          {10, 0.5, 0.25},  {5, 5, 0}};
    for (const auto& [x, y, tolerance] : accepted) {
        EXPECT_TRUE(this->add(x, y, 0, tolerance)) << x << ", " << y;
    }
    EXPECT_EQ(faultOf(*this->engine, {.duplicates = true, .vertices = 11}), "");
}

// A number has 16 bits. Refused points count too.
TYPED_TEST(Engine, AddPointNumbersPointsInDoubleOnly) {
    ASSERT_TRUE(this->add(2, 3, 4));
    for (std::size_t n = this->points.size(); n < 65540; ++n) {
        this->points[0].inten = 0;
        this->engine->addPoint(&this->points[0], 0);
        ASSERT_EQ(this->points[0].inten, this->isDouble ? static_cast<std::int16_t>(n) : 0);
    }
}

TYPED_TEST(Engine, FourPointsOnACircleFlipInDoubleOnly) {
    this->addSquare();
    EXPECT_EQ(this->triangleOn(this->vertex(0), this->vertex(2)) != nullptr, !this->isDouble);
    EXPECT_EQ(this->triangleOn(this->vertex(1), this->vertex(3)) != nullptr, this->isDouble);
    auto* const e = this->engine.get();
    EXPECT_EQ(vertexCount(e), 4);
    EXPECT_EQ(allVertexCount(e), 8);
    EXPECT_EQ(surfaceTriangleCount(e), 2);
    EXPECT_NEAR(double(surfaceArea(e)), 16 * std::numbers::sqrt2, 1e-5);
    EXPECT_EQ(e->getEnvelope(), Enve3d(3, 3, 3, 7, 7, 7));
}

TYPED_TEST(Engine, RemovePointClosesTheHoleOrChangesNothing) {
    auto& e = *this->engine;
    // A point near each side of the frame keeps the inner vertices unlinked from the sides.
    ASSERT_TRUE(this->add(5, 1));
    ASSERT_TRUE(this->add(9, 5));
    ASSERT_TRUE(this->add(5, 9));
    ASSERT_TRUE(this->add(1, 5));
    ASSERT_TRUE(this->add(4, 4));
    ASSERT_TRUE(this->add(6, 4));
    ASSERT_TRUE(this->add(5, 6));
    ASSERT_TRUE(this->add(5, 4.5));
    const auto before = this->records();
    // A frame vertex, a vertex opposite an edge of the frame, no vertex in the radius, and outside.
    const double nan = std::nan("");
    const double refused[][3] = {{0, 0, 1},       {5, 1, 1},   {5, 4.5, 0},
                                 {5, 4.75, 0.25}, {12, 5, 99}, {nan, 5, 99}};
    for (const auto& [x, y, radius] : refused) {
        EXPECT_FALSE(e.removePoint(nullptr, TypeParam(x), TypeParam(y), TypeParam(radius))) << x;
    }
    EXPECT_EQ(this->records(), before);
    // The vertex has degree 3, so one triangle remains.
    ASSERT_TRUE(e.removePoint(nullptr, 5, 4.75, TypeParam(0.26)));
    EXPECT_EQ(faultOf(e, {.vertices = 11}), "");
    auto* const t = e.locate(5, 5);
    EXPECT_THAT(std::vector(t->vertex, t->vertex + 3),
                testing::UnorderedElementsAre(this->vertex(4), this->vertex(5), this->vertex(6)));
}

TYPED_TEST(Engine, RemovePointFillsAHoleThatNoFanFills) {
    // A wheel, or a star if the inner radius is smaller. A float engine allows 53 neighbours.
    for (const auto& [count, inner] :
         {std::pair(8, 1), {10, 1}, {24, 1}, {53, 4}, {54, 4}, {100, 2}}) {
        SCOPED_TRACE(count);
        typename TestFixture::Net star(0, 0, 10, 10);
        ASSERT_TRUE(star.add(5, 5));
        for (int i = 0; i < count; ++i) {
            const double angle = 2 * i * std::numbers::pi / count, radius = i % 2 == 0 ? 4 : inner;
            ASSERT_TRUE(star.add(5 + radius * std::cos(angle), 5 + radius * std::sin(angle)));
        }
        for (std::size_t i = 1; i < star.points.size(); ++i) {
            star.engine->enforceEdge(star.vertex(0), star.vertex(i), nullptr);
            ASSERT_NE(star.triangleOn(star.vertex(0), star.vertex(i)), nullptr);
        }
        const bool goes = this->isDouble || count < 54;
        EXPECT_EQ(star.engine->removePoint(star.engine->locate(1, 1), 5, 5, TypeParam(0.5)), goes);
        EXPECT_EQ(faultOf(*star.engine, {.delaunay = false, .vertices = 5 - goes + count}), "");
    }
}

TYPED_TEST(Engine, RemovePointLeavesTheDelaunayDiagonal) {
    for (const int width : {1, 3}) {
        typename TestFixture::Net kite(0, 0, 10, 10);
        const int height = 4 - width;
        for (const auto& [x, y] : {XPnt2d(5 - width, 5), XPnt2d(5, 5 - height),
                                   XPnt2d(5 + width, 5), XPnt2d(5, 5 + height), XPnt2d(5, 5)}) {
            ASSERT_TRUE(kite.add(x, y));
        }
        ASSERT_TRUE(kite.engine->removePoint(nullptr, 5, 5, 1));
        EXPECT_EQ(faultOf(*kite.engine, {.vertices = 8}), "");
    }
}

TYPED_TEST(Engine, DeleteTriangleMovesTheNewestIntoItsPlace) {
    this->addRandom(1500);  // three blocks of triangles
    auto& e = *this->engine;
    const auto all = this->triangles();
    auto foreign = *all[5];
    EXPECT_FALSE(e.deleteTriangle(nullptr));
    EXPECT_FALSE(e.deleteTriangle(all.back()));
    EXPECT_FALSE(e.deleteTriangle(&foreign));
    const auto newest = *all.back();
    ASSERT_TRUE(e.deleteTriangle(all[7]));
    EXPECT_THAT(all[7]->vertex, testing::ElementsAreArray(newest.vertex));
    for (const auto* const t : this->triangles()) {  // each link has a counterpart
        for (auto* const n : t->neighbor) {
            if (n != nullptr) { EXPECT_NE(n->index(t), 3); }
        }
    }
    // The cursor passes deleted triangles and the ends of blocks, and reaches the end.
    e.rewindTriangles();
    int seen = 0;
    while (auto* const t = e.nextTriangle()) {
        if (++seen % 3 != 0) { e.deleteTriangle(t); }
    }
    EXPECT_EQ(seen, e.triangleCount());
    for (int left = seen; left > 0; --left) {
        e.rewindTriangles();
        ASSERT_EQ(e.deleteTriangle(e.nextTriangle()), left > 1)
            << "the last triangle cannot be deleted";
    }
}

TYPED_TEST(Engine, CompactVerticesFreesTheCallersPoints) {
    this->addRandom(100);
    auto& e = *this->engine;
    const auto before = this->records();
    const int count = compactVertices(&e);
    const auto once = this->records();
    std::set<const TypeParam*> copied;
    for (std::size_t n = 0; n < 3 * once.size(); ++n) {
        const TypeParam *const v = before[n / 3].vertex[n % 3], *const w =
                                                                    once[n / 3].vertex[n % 3];
        EXPECT_EQ(support::pointOf(v), support::pointOf(w));
        if (v != w) { copied.insert(v); }
    }
    EXPECT_EQ(int(copied.size()), count);
    for (auto& p : this->points) {
        if (copied.contains(&p.x)) { p.set(-1, -1, -1); }
    }
    EXPECT_EQ(compactVertices(&e), count);
    const auto twice = this->records();
    for (std::size_t n = 0; n < 3 * once.size(); ++n) {  // the first buffer is still there
        const TypeParam* const v = once[n / 3].vertex[n % 3];
        EXPECT_EQ(support::pointOf(v), support::pointOf(twice[n / 3].vertex[n % 3]));
    }
    EXPECT_EQ(faultOf(e, {.vertices = 104}), "");
}

using FloatEngine = Engine<float>;

TEST_F(FloatEngine, RaysMeetTheSurfaceButNotTheFrame) {
    addSquare();
    for (auto& p : points) { p.z = 2; }
    ASSERT_TRUE(add(5, 5, 6));  // a peak, which a level line meets twice
    float t = 9;
    EXPECT_TRUE(engine->rayNearest({10, 4.75F, 3}, {0, 4.75F, 3}, &t));
    EXPECT_NEAR(t, 0.35F, 1e-6F);
    EXPECT_EQ(ref_ptr(engine->rayIntersections({10, 4.75F, 3}, {0, 4.75F, 3}))->size(), 2);
    // Outside the surface there are only triangles of the frame.
    EXPECT_EQ(ref_ptr(engine->rayIntersections({1, 1, 4}, {1, 1, -8}))->size(), 0);
    EXPECT_FALSE(engine->rayNearest({1, 1, 4}, {1, 1, -8}, &t));
}

}  // namespace
