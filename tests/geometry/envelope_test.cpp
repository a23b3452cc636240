#include <gtest/gtest.h>
#include <zyn/envelope.h>
#include <zyn/las.h>

#include <limits>
#include <type_traits>

#include "random_points.h"

namespace zyn {
namespace {

template <class Box, class... Args>
concept Grows = requires(Box box, Args... args) { box.SetBox(args...); };

static_assert(Grows<Enve2d, PNT2D> && Grows<Enve2d, ZynLasPntD> && Grows<Enve3d, LasPnt, LasPnt>);
static_assert(!Grows<Enve2d, double*> && !Grows<Enve2d, double> && !Grows<Enve3d, XPnt2d> &&
              !Grows<Enve3d, double, double> && !std::is_convertible_v<Enve2d, Enve3d>);

TEST(Envelopes, GrowFromNothing) {
    Enve2d plan;
    plan.SetBox(XPnt3f(1, 2, 3));
    plan.SetBox(std::numeric_limits<double>::quiet_NaN(), 5.0);
    EXPECT_EQ(plan, Enve2d(1, 2, 1, 5));
    EXPECT_EQ(Union(plan, Enve2d()), plan);
    EXPECT_EQ(Union(Enve2d(), plan), plan);
    // One mark spoils a plan; only six spoil a box.
    const double mark = 2147483647.0;
    for (const Enve2d& spoilt :
         {Enve2d(mark, 0, 1, 1), {0, mark, 1, 1}, {0, 0, -mark, 1}, {0, 0, 1, -mark}}) {
        EXPECT_FALSE(spoilt.isValid()) << spoilt.minX << ' ' << spoilt.maxX;
    }
    Enve3d box;
    box = plan;
    EXPECT_TRUE(plan.isValid() && box.isValid());
    EXPECT_EQ(Union(Enve3d(0, 1, 2, 3, 4, 5), box), Enve3d(0, 1, 2, 3, 5, 5));
    box.setInvalid();
    EXPECT_FALSE(box.isValid() || Enve3d::invalidEnve3d().isValid());
}

TEST(Envelopes, SetBoxGrowsInThePlaneAndReplacesInSpace) {
    Enve2d plan(0, 0, 1, 1);
    plan.SetBox(XPnt2d(5, 6), XPnt2d(3, -4));
    plan.SetBox(7, 7, -7, -7);  // minima above and maxima below change nothing
    EXPECT_EQ(plan, Enve2d(0, -4, 5, 6));
    Enve3d box(-9, -9, -9, 9, 9, 9);
    box.SetBox(XPnt3d(3, 1, 2), XPnt3d(1, 2, 3));
    EXPECT_EQ(box, Enve3d(1, 1, 2, 3, 2, 3));
    box.SetBox(XPnt3f(4, 0, 4));
    EXPECT_EQ(box, Enve3d(1, 0, 2, 4, 2, 4));
}

TEST(Envelopes, HaveCornersAndMeasures) {
    const Enve2d plan(XPnt2d(3, 2), XPnt2d(1, 5));
    const XPnt2d corners[] = {{1, 2}, {3, 2}, {3, 5}, {1, 5}};
    for (int i = 0; i < 4; ++i) { EXPECT_EQ(plan.getCorner(i), corners[i]) << i; }
    EXPECT_FALSE(plan.getCorner(4).isValid() || plan.getCorner(-1).isValid());
    EXPECT_TRUE(plan.width() == 2 && plan.hight() == 3 && plan.area() == 6);
    EXPECT_EQ(plan.midPoint(), XPnt2d(2, 3.5));
    EXPECT_EQ(plan.getEnve3d(), Enve3d(1, 2, 0, 3, 5, 0));
    const Enve3d box(1, 2, 3, 3, 5, 9);  // 2 by 3 by 6
    EXPECT_TRUE(box.Volume() == 36 && box.area() == 72 && box.getDiagonal() == 7);
    EXPECT_EQ(box.MidPoint(), XPnt3d(2, 3.5, 6));
    EXPECT_TRUE(box.getMinPnt() == XPnt3d(1, 2, 3) && box.getMaxPnt() == XPnt3d(3, 5, 9));
    EXPECT_EQ(box.getEnve2d(), plan);
    EXPECT_EQ(Enve3d::stdEnve3d(), Enve3d(-1, -1, -1, 1, 1, 1));
}

TEST(Envelopes, AreOrderedGrownMovedAndScaled) {
    Enve2d plan(4, 2, 1, 6);
    EXPECT_TRUE(plan.isEmpty() && Enve2d(0, 3, 1, 3).isEmpty() && Enve2d().isEmpty());
    plan.Normalize();
    EXPECT_EQ(plan, Enve2d(1, 2, 4, 6));
    EXPECT_FALSE(plan.isEmpty());
    plan.extend(1);
    EXPECT_EQ(plan, Enve2d(0, 1, 5, 7));
    plan += XPnt3f(10, 20, 99);
    plan -= XPnt2d(5, 1);
    EXPECT_EQ(plan, Enve2d(5, 20, 10, 26));
    plan.ScaleX(2);
    plan.ScaleY(0.5);
    EXPECT_EQ(plan /= 2, Enve2d(5, 5, 10, 6.5));
    plan = Enve2d(0, 0, 10, 20);
    plan.extendPercent(0.1);
    EXPECT_EQ(plan, Enve2d(-1, -2, 11, 22));

    Enve3d box(4, 2, 8, 1, 6, 3);
    box.Normalize();
    EXPECT_EQ(box, Enve3d(1, 2, 3, 4, 6, 8));
    box.Extend(1);
    EXPECT_EQ(box, Enve3d(0, 1, 2, 5, 7, 9));
    box += XPnt3d(10, 20, 30);
    box -= XPnt2d(5, 1);
    EXPECT_EQ(box, Enve3d(5, 20, 32, 10, 26, 39));
    box.ScaleX(2);
    box.ScaleY(0.5);
    box.ScaleZ(-1);  // the values as they come
    EXPECT_EQ(box, Enve3d(10, 10, -32, 20, 13, -39));
}

TEST(Envelopes, ScaleByOneOfTheirBounds) {
    Enve2d plan(0, -1, 12, 23);
    plan *= plan.maxX;
    EXPECT_EQ(plan, Enve2d(0, -12, 144, 276));
}

template <class Box, std::size_t N>
void expectAscending(const Box (&boxes)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        for (std::size_t j = 0; j < N; ++j) { EXPECT_EQ(boxes[i] < boxes[j], i < j) << i << j; }
    }
}

TEST(Envelopes, OrderBySizeThenByPosition) {
    expectAscending<Enve2d>(
        {{0, 0, 0, 9}, {0, 0, 2, 2}, {-1, 1, 0, 5}, {0, 0, 1, 4}, {9, 9, 12, 12}});
    // Volumes 1, 8, 8, 8, 8 and surfaces 6, 24, 28, 28, 28.
    expectAscending<Enve3d>({{9, 9, 9, 10, 10, 10},
                             {5, 5, 5, 7, 7, 7},
                             {0, 0, 0, 1, 2, 4},
                             {0, 0, 1, 1, 2, 5},
                             {1, 0, 0, 2, 2, 4}});
}

TEST(Envelopes, CoverPointsAndBoxes) {
    const Enve2d plan(0, 0, 10, 10);
    const Enve3d large(0, 0, 0, 10, 10, 10);
    // A point moves along each axis through the middle; the high sides of a plan are outside.
    for (const double at : {-0.5, 0.0, 10.0, 10.5}) {
        const bool within = at >= 0 && at <= 10;
        EXPECT_TRUE(plan.isCover(at, 5.0) == (at == 0) && plan.isCover(5.0, at) == (at == 0));
        for (int axis = 0; axis < 3; ++axis) {
            XPnt3d p(5, 5, 5);
            p[axis] = at;
            EXPECT_EQ(large.isCover(p), within) << axis << at;
            EXPECT_EQ(large.isXYCover(p.x, p.y), within || axis == 2) << axis << at;
            EXPECT_EQ(large.isXZCover(p.x, p.z), within || axis == 1) << axis << at;
            EXPECT_EQ(large.isYZCover(p.y, p.z), within || axis == 0) << axis << at;
        }
    }
    const struct Box {
        Enve2d box;
        bool covered, overlapping;
    } boxes[] = {{plan, true, true},
                 {{2, 3, 4, 5}, true, true},
                 {{-1, 2, 5, 5}, false, true},
                 {{2, -1, 5, 5}, false, true},
                 {{2, 2, 11, 5}, false, true},
                 {{2, 2, 5, 11}, false, true},
                 {{10, 0, 20, 10}, false, false},
                 {{0, 10, 10, 20}, false, false},
                 {{-9, 0, 0, 10}, false, false},
                 {{0, -9, 10, 0}, false, false}};
    for (const auto& [box, covered, overlapping] : boxes) {
        EXPECT_TRUE(plan.isCover(box) == covered && large.isCover(box) == covered) << box.minX;
        EXPECT_EQ(plan.isIntersect(box), overlapping) << box.minX << ' ' << box.minY;
        EXPECT_EQ(large.isIntersected(box), overlapping) << box.minX << ' ' << box.minY;
    }

    EXPECT_EQ(large.intersect(Enve3d(5, -5, 10, 20, 3, 11)), Enve3d(5, 0, 10, 10, 3, 10));
    EXPECT_EQ(large.intersect(Enve3d(1, 1, 1, 2, 2, 2)), Enve3d(1, 1, 1, 2, 2, 2));
    for (const XPnt3d& lo : {XPnt3d(-5, 5, 5), XPnt3d(5, -5, 5), XPnt3d(5, 5, -5)}) {
        EXPECT_FALSE(large.intersect(Enve3d(lo.x, lo.y, lo.z, 15, 15, 15)).isValid());
    }

    // Against the interval from 0 to 2.
    const struct Case {
        double from, to;
        bool reachesBound, reachesInside;
    } cases[] = {{1, 1, false, true},    {0.5, 1.5, false, true}, {3, -1, true, true},
                 {3, 2, true, false},    {0, -1, true, false},    {0, 1, true, true},
                 {3, 2.5, false, false}, {-3, -1, false, false},  {2, 2, false, false}};
    for (const Case& span : cases) {
        EXPECT_EQ(isIntersect(span.from, span.to, 0, 2), span.reachesBound) << span.from;
        EXPECT_EQ(isCover(span.from, span.to, 0, 2), span.reachesInside) << span.from;
    }
}

TEST(Envelopes, SegmentsCrossTheOutline) {
    const Enve2d plan(0, 0, 10, 10);
    EXPECT_TRUE(plan.isRayIntersect({0, 5}, {5, 5}));
    EXPECT_FALSE(plan.isIntersect({0, 5}, {5, 5}));
    const Enve3d box(0, 0, 0, 10, 10, 10);
    EXPECT_TRUE(box.isIntersected({-1, 5, 10}, {11, 5, 10}));  // in the plane of a side
    EXPECT_FALSE(box.isIntersected({5, 5, 12}, {5, 5, 10.5}));
    for (int along = 0; along < 3; ++along) {
        for (const int across : {(along + 1) % 3, (along + 2) % 3}) {
            XPnt3d a(5, 5, 5), b(5, 5, 5);
            a[along] = -1, b[along] = 11;
            EXPECT_TRUE(box.isIntersected(a, b)) << along << across;
            a[across] = 12, b[across] = 10.5;
            EXPECT_FALSE(box.isIntersected(a, b)) << along << across;
        }
    }
    // The segment reaches z = 0 away from the box, and its line the side at z = 10.
    EXPECT_TRUE(box.isIntersected({30, 5, -1}, {26, 5, 1}));
    RandomPoints random(71);
    for (int round = 0; round < 2000; ++round) {
        const XPnt3d a = random.point<double>(20), b = random.point<double>(20);
        int inBox = 0, inPlan = 0;
        for (int i = 0; i <= 200; ++i) {
            const XPnt3d p = a + (b - a) * (i / 200.0);
            inBox += box.isCover(p);
            inPlan += plan.isCover(p.x, p.y);
        }
        if (inBox > 0) { EXPECT_TRUE(box.isIntersected(a, b)) << round; }
        const bool crosses = plan.isRayIntersect(a.to2d(), b.to2d());
        if (inPlan > 0) { EXPECT_EQ(crosses, inPlan <= 200) << round; }
        EXPECT_EQ(plan.isIntersect(a.to2d(), b.to2d()), crosses) << round;
    }
}

struct Shape : IZynGeometry {
    using IZynGeometry::flag;
    int getGeoType() const override { return 1; }
};

TEST(Geometry, IsNowhereAndStaysThere) {
    Shape shape;
    EXPECT_EQ(shape.flag, 0);
    EXPECT_FALSE(shape.getEnvelope().isValid());
    EXPECT_EQ(shape.relation(Enve3d::stdEnve3d()), -1);
    const double axis[3] = {};
    EXPECT_TRUE(shape.move(1, 2, 3) == 0 && shape.rotate(axis, axis, 1) == 0);
    shape.flag = 200;
    EXPECT_EQ(Shape(shape).flag, 200);
}

}  // namespace
}  // namespace zyn
