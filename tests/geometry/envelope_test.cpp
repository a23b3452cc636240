// Boxes in the plane and in space: bounds, order, containment and intersection.
#include <zyn/envelope.h>
#include <zyn/las.h>

#include <limits>
#include <type_traits>

#include "random_points.h"
#include "testing.h"

namespace zyn {
namespace {

template <class Box, class... Args>
concept Grows = requires(Box box, Args... args) { box.SetBox(args...); };

static_assert(Grows<Enve2d, ZynLasPntD> && Grows<Enve3d, LasPnt, LasPnt> &&
              !Grows<Enve2d, double*> && !Grows<Enve2d, double> && !Grows<Enve3d, XPnt2d> &&
              !Grows<Enve3d, double, double> && !std::is_convertible_v<Enve2d, Enve3d>);

TEST(Envelopes, GrowToHoldPointsAndBoxes) {
    Enve2d plan;
    plan.SetBox(XPnt3f(1, 2, 3));
    plan.SetBox(std::numeric_limits<double>::quiet_NaN(), 5.0);
    EXPECT_EQ(Union(Enve2d(), plan), Enve2d(1, 2, 1, 5));
    Enve3d box;
    EXPECT_FALSE(box.isValid());
    box = plan;
    EXPECT_EQ(Union(Enve3d(0, 1, 2, 3, 4, 5), box), Enve3d(0, 1, 2, 3, 5, 5));
    EXPECT_TRUE(plan.isValid());
    EXPECT_TRUE(box.isValid()) << "a box without heights";
    // Two points grow a plan and replace a box.
    plan.SetBox(XPnt2d(5, 6), XPnt2d(3, -4));
    plan.SetBox(7, 7, -7, -7);  // larger minima and smaller maxima change nothing
    EXPECT_EQ(plan, Enve2d(1, -4, 5, 6));
    box.SetBox(XPnt3d(3, 1, 2), XPnt3d(1, 2, 3));
    box.SetBox(XPnt3f(4, 0, 4));
    EXPECT_EQ(box, Enve3d(1, 0, 2, 4, 2, 4));
}

TEST(Envelopes, AreInvalidInThePlaneWithOneMarkedBound) {
    const double mark = invalidBound;
    for (const Enve2d& marked :
         {Enve2d(mark, 0, 1, 1), {0, mark, 1, 1}, {0, 0, -mark, 1}, {0, 0, 1, -mark}}) {
        EXPECT_FALSE(marked.isValid()) << testing::PrintToString(marked);
    }
}

TEST(Envelopes, CornersRunCounterClockwise) {
    const Enve2d plan(XPnt2d(3, 2), XPnt2d(1, 5));
    const XPnt2d none, corners[] = {none, {1, 2}, {3, 2}, {3, 5}, {1, 5}, none};
    for (int i = -1; i < 5; ++i) { EXPECT_EQ(plan.getCorner(i), corners[i + 1]) << i; }
}

TEST(Envelopes, MeasuresFollowFromTheBounds) {
    const Enve2d plan(1, 2, 3, 5);
    EXPECT_EQ(plan.area(), 6);
    EXPECT_EQ(plan.midPoint(), XPnt2d(2, 3.5));
    EXPECT_EQ(plan.getEnve3d(), Enve3d(1, 2, 0, 3, 5, 0));
    const Enve3d box(1, 2, 3, 3, 5, 9);  // 2 by 3 by 6
    EXPECT_EQ(box.Volume(), 36);
    EXPECT_EQ(box.area(), 72);
    EXPECT_EQ(box.getDiagonal(), 7);
    EXPECT_EQ(box.MidPoint(), XPnt3d(2, 3.5, 6));
    EXPECT_EQ(box.getEnve2d(), plan);
    EXPECT_EQ(box.getMinPnt(), XPnt3d(1, 2, 3));
    EXPECT_EQ(box.getMaxPnt(), XPnt3d(3, 5, 9));
}

TEST(Envelopes, OperatorsChangeTheBoundsInPlace) {
    Enve2d plan(4, 2, 1, 6);
    EXPECT_TRUE(plan.isEmpty());
    EXPECT_TRUE(Enve2d(0, 3, 1, 3).isEmpty());
    plan.Normalize();                              // 1, 2, 4, 6
    plan.extend(1);                                // 0, 1, 5, 7
    (plan += XPnt3f(10, 20, 99)) -= XPnt2d(5, 1);  // 5, 20, 10, 26
    plan.ScaleX(2);
    plan.ScaleY(0.5);
    EXPECT_EQ(plan /= 2, Enve2d(5, 5, 10, 6.5));
    plan = Enve2d(0, 0, 10, 20);
    plan.extendPercent(0.1);
    EXPECT_EQ(plan, Enve2d(-1, -2, 11, 22));
    EXPECT_EQ(plan *= plan.maxX, Enve2d(-11, -22, 121, 242));

    Enve3d box(4, 2, 8, 1, 6, 3);
    box.Normalize();                                 // 1, 2, 3, 4, 6, 8
    box.Extend(1);                                   // 0, 1, 2, 5, 7, 9
    (box += XPnt3d(10, 20, 30)) -= XPnt3d(5, 1, 2);  // 5, 20, 30, 10, 26, 37
    box += XPnt2d(0, 0);
    box.ScaleX(2);
    box.ScaleY(0.5);
    box.ScaleZ(-1);  // scales both bounds, and keeps their order
    EXPECT_EQ(box, Enve3d(10, 10, -30, 20, 13, -37));
}

template <class Box>
void expectAscending(const Box (&boxes)[5]) {
    for (int i = 0; i < 25; ++i) { EXPECT_EQ(boxes[i / 5] < boxes[i % 5], i / 5 < i % 5) << i; }
}

TEST(Envelopes, AreOrderedBySizeThenByPosition) {
    expectAscending<Enve2d>(
        {{0, 0, 0, 9}, {0, 0, 2, 2}, {-1, 1, 0, 5}, {0, 0, 1, 4}, {9, 9, 12, 12}});
    // Volumes 1, 8, 8, 8, 8 and surfaces 6, 24, 28, 28, 28.
    expectAscending<Enve3d>({{9, 9, 9, 10, 10, 10},
                             {5, 5, 5, 7, 7, 7},
                             {0, 0, 0, 1, 2, 4},
                             {0, 0, 1, 1, 2, 5},
                             {1, 0, 0, 2, 2, 4}});
}

TEST(Envelopes, CoverPointsUpToTheirBounds) {
    const Enve2d plan(1, 1, 3, 3);
    const Enve3d large(1, 1, 1, 3, 3, 3);
    // A point moves along each axis through the middle; the high sides of a plan are outside.
    for (const double at : {0.5, 1.0, 3.0, 3.5}) {
        const bool within = at >= 1 && at <= 3;
        EXPECT_EQ(plan.isCover(at, 2.0), at == 1);
        EXPECT_EQ(plan.isCover(2.0, at), at == 1);
        for (int axis = 0; axis < 3; ++axis) {
            XPnt3d p(2, 2, 2);
            p[axis] = at;
            EXPECT_EQ(large.isCover(p), within);
            EXPECT_EQ(large.isXYCover(p.x, p.y), within || axis == 2);
            EXPECT_EQ(large.isXZCover(p.x, p.z), within || axis == 1);
            EXPECT_EQ(large.isYZCover(p.y, p.z), within || axis == 0);
        }
    }
}

TEST(Envelopes, CoverageAndIntersectionAgreeWithUnitSquares) {
    const Enve2d plan(1, 1, 3, 3);
    const Enve3d large(1, 1, 1, 3, 3, 3);
    RandomPoints random(70);
    for (int round = 0; round < 2000; ++round) {
        const double x = random.integer(0, 4), y = random.integer(0, 4);
        const Enve2d box(x, y, x + random.integer(1, 3), y + random.integer(1, 3));
        int common = 0;  // unit squares
        for (int i = 0; i < 64; ++i) {
            const double cx = i / 8 + 0.5, cy = i % 8 + 0.5;
            common += plan.isCover(cx, cy) && box.isCover(cx, cy);
        }
        const bool covered = common == box.area(), meets = common > 0;
        EXPECT_EQ(plan.isCover(box), covered) << round;
        EXPECT_EQ(large.isCover(box), covered) << round;
        EXPECT_EQ(plan.isIntersect(box), meets) << round;
        EXPECT_EQ(large.isIntersected(box), meets) << round;
    }
}

TEST(Envelopes, IntersectionIsInvalidIfTheOtherBoxStartsInsideOnAllAxesButOne) {
    const Enve3d large(1, 1, 1, 3, 3, 3);
    EXPECT_EQ(large.intersect(Enve3d(2, 0, 1, 9, 2, 4)), Enve3d(2, 1, 1, 3, 2, 3));
    for (int axis = 0; axis < 3; ++axis) {  // strictly within on one axis
        XPnt3d lo(2, 2, 2);
        lo[axis] = 0;
        EXPECT_FALSE(large.intersect(Enve3d(lo.x, lo.y, lo.z, 9, 9, 9)).isValid()) << axis;
    }
}

TEST(Intervals, ReachOrEnterTheIntervalFromZeroToTwo) {
    const struct Case {
        double from, to;
        bool reaches, enters;
    } cases[] = {{1, 1, false, true},    {0.5, 1.5, false, true}, {3, -1, true, true},
                 {3, 2, true, false},    {0, -1, true, false},    {0, 1, true, true},
                 {3, 2.5, false, false}, {-3, -1, false, false},  {2, 2, false, false}};
    for (const Case& span : cases) {
        EXPECT_EQ(isIntersect(span.from, span.to, 0, 2), span.reaches) << span.from;
        EXPECT_EQ(isCover(span.from, span.to, 0, 2), span.enters) << span.from;
    }
}

TEST(Envelopes, IntersectTheSegmentsThatReachThem) {
    const Enve2d plan(0, 0, 10, 10);
    EXPECT_TRUE(plan.isRayIntersect({0, 5}, {5, 5}));
    EXPECT_FALSE(plan.isIntersect({0, 5}, {5, 5}));
    const Enve3d box(0, 0, 0, 10, 10, 10);
    for (int i = 0; i < 6; ++i) {
        const int along = i / 2, across = (along + 1 + i % 2) % 3;
        XPnt3d a(5, 5, 5), b(5, 5, 5);
        a[along] = -1, b[along] = 11;
        EXPECT_TRUE(box.isIntersected(a, b)) << along << across;
        a[across] = b[across] = 10;  // in the plane of a side
        EXPECT_TRUE(box.isIntersected(a, b)) << along << across;
        a[across] = 12, b[across] = 10.5;
        EXPECT_FALSE(box.isIntersected(a, b)) << along << across;
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
    int getGeoType() const override { return 1; }
};

TEST(Geometry, HasNoEnvelopeAndNoRelationByDefault) {
    EXPECT_FALSE(Shape().getEnvelope().isValid());
    EXPECT_EQ(Shape().relation(Enve3d::stdEnve3d()), -1);
}

}  // namespace
}  // namespace zyn
