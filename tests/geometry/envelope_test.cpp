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
    EXPECT_FALSE(Enve2d(0, 0, -2147483647.0, 1).isValid());
    Enve3d box;
    box = plan;
    EXPECT_TRUE(box.isValid());
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
    // Volumes 8, 8, 8, 8 and surfaces 24, 28, 28, 28.
    expectAscending<Enve3d>(
        {{5, 5, 5, 7, 7, 7}, {0, 0, 0, 1, 2, 4}, {0, 0, 1, 1, 2, 5}, {1, 0, 0, 2, 2, 4}});
}

TEST(Envelopes, CoverPointsAndBoxes) {
    const Enve2d plan(0, 0, 10, 10);
    EXPECT_TRUE(plan.isCover(0.0, 0.0));
    EXPECT_FALSE(plan.isCover(10.0, 5.0));
    EXPECT_FALSE(plan.isIntersect(Enve2d(10, 0, 20, 10)));

    const Enve3d large(0, 0, 0, 10, 10, 10), small(1, 1, 1, 2, 2, 2);
    EXPECT_TRUE(large.isCover(10.0, 5.0, 10.0));
    EXPECT_FALSE(small.intersect(large).isValid());
    EXPECT_EQ(large.intersect(Enve3d(5, -5, 10, 20, 3, 11)), Enve3d(5, 0, 10, 10, 3, 10));

    // Against the interval from 0 to 2.
    const struct Case {
        double from, to;
        bool reachesBound, reachesInside;
    } cases[] = {{1, 1, false, true}, {0.5, 1.5, false, true}, {3, -1, true, true},
                 {3, 2, true, false}, {0, -1, true, false},    {3, 2.5, false, false}};
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

}  // namespace
}  // namespace zyn
