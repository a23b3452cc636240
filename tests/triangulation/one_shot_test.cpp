// The one-shot triangulation by the mesh generator.
#include <zyn/network.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <iterator>
#include <vector>

#include "network.h"
#include "testing.h"

namespace {

using namespace zyn;

constexpr auto arrayOf = support::arrayOf<double>;
ref_ptr<IZynDelaunayD> newEngine() { return newZynDelaunayDouble(0, -10, -10, 1e6, 1e6); }

TEST(OneShot, TriangulatesTheConvexHullOnce) {
    const ref_ptr<IZynDelaunayD> engine = newEngine();
    const auto square = arrayOf({{0, 0, 5}, {1, 0, 6}, {1, 1, 7}, {0, 1, 8}});
    square->getRef(2).inten = 77;
    ASSERT_TRUE(engine->triangulate(square.get()));
    ASSERT_FALSE(engine->triangulate(square.get()));
    EXPECT_EQ(engine->triangleCount(), 4);
    EXPECT_EQ(square->get(2).inten, 77);
    EXPECT_EQ(validate(engine.get(), true), QString());
    EXPECT_EQ(surfaceTriangleCount<double>(engine.get()), 2);
    EXPECT_EQ(vertexCount<double>(engine.get()), 4);
    engine->rewindTriangles();
    EXPECT_TRUE(engine->isFrameTriangle(engine->nextTriangle()));
    EXPECT_TRUE(engine->isFrameTriangle(engine->nextTriangle()));
    const tind* const t = engine->nextTriangle();
    EXPECT_TRUE(std::ranges::any_of(*square, [t](XPnt3d& p) { return &p.x == t->vertex[0]; }))
        << "the vertices are the caller's points";
    XPnt3d inside(0.25, 0.5), outside(2, 2);
    EXPECT_EQ(engine->locate(2, 2), nullptr);
    EXPECT_FALSE(engine->addPoint(&outside, 0));
    EXPECT_TRUE(engine->addPoint(&inside, 0));
    EXPECT_EQ(validate(engine.get(), true), QString());
}

TEST(OneShot, RoundsPointsToFloat) {
    // Pairs differ by less than float resolves, so one point of each stays out. An optimizer must
    // not drop the rounding.
    std::vector<XPnt3d> points;
    for (int i = 0; i < 64; ++i) {
        points.emplace_back(1 + i % 8 + 1e-12 * (i % 2), 1 + i / 8, i);
        points.emplace_back(1 + i % 8 - 1e-12, 1 + i / 8, i);
    }
    const ref_ptr<Pnt3dArray> array = arrayOf(points);
    const ref_ptr<IZynDelaunayD> engine = newEngine();
    volatile long double one = 1.0L;
    EXPECT_TRUE(engine->triangulate(array.get()));
    EXPECT_GT(one + LDBL_EPSILON, one) << "the precision of long double is changed";
    EXPECT_EQ(vertexCount<double>(engine.get()), 64);
    EXPECT_EQ(surfaceTriangleCount<double>(engine.get()), 98);
}

TEST(OneShot, MakesNoTriangleOfInvalidOrDegeneratePoints) {
    const ref_ptr<Pnt3dArray> good = arrayOf({{0, 0}, {1, 0}, {0, 1}});
    const std::vector<XPnt3d> sets[] = {{},
                                        {{0, 0}, {1, 1}},
                                        {{0, 0}, {1, 0}, {NAN, 1}},
                                        {{0, 0}, {1, 0}, {0, HUGE_VAL}},
                                        {{0, 0}, {1, 0}, {1e300, 1}},
                                        {{1, 1}, {1, 1}, {1 + 1e-12, 1}},
                                        {{0, 0}, {1, 1}, {2, 2}}};
    for (std::size_t n = 0; n < std::size(sets); ++n) {  // the last two succeed without a triangle
        const ref_ptr<IZynDelaunayD> engine = newEngine();
        EXPECT_EQ(engine->triangulate(arrayOf(sets[n]).get()), n >= 5) << n;
        EXPECT_EQ(engine->triangleCount(), 2);
    }
    const ref_ptr<IZynDelaunayD> engine = newEngine();
    double* pointers[] = {good->data()[0], nullptr, good->data()[2]};
    EXPECT_FALSE(engine->triangulate(nullptr));
    EXPECT_FALSE(engine->triangulate(nullptr, 3));
    EXPECT_FALSE(engine->triangulate(pointers, 3));
    XPnt3d p(1, 1);
    EXPECT_TRUE(engine->addPoint(&p, 0));
    EXPECT_FALSE(engine->triangulate(good.get()));
}

}  // namespace
