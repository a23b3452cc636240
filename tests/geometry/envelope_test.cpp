#include <gtest/gtest.h>
#include <zyn/envelope.h>
#include <zyn/las.h>

#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

#include "random_points.h"

namespace zyn {
namespace {

template <class Box, class... Args>
concept Grows = requires(Box box, Args... args) { box.SetBox(args...); };

static_assert(Grows<Enve2d, PNT2D> && Grows<Enve2d, ZynLasPntD> && Grows<Enve2d, int, int>);
static_assert(!Grows<Enve2d, double*> && !Grows<Enve2d, double>);
static_assert(Grows<Enve3d, LasPnt, LasPnt> && !Grows<Enve3d, XPnt2d> &&
              !Grows<Enve3d, double, double>);
static_assert(!std::is_convertible_v<Enve2d, Enve3d>);

TEST(Envelopes, GrowFromNothing) {
    Enve3d box;
    EXPECT_FALSE(box.isValid());
    box.SetBox(0.0, 0.0, 0.0);
    EXPECT_TRUE(box.isValid());
    EXPECT_EQ(box, Enve3d(0, 0, 0, 0, 0, 0));

    Enve2d plan;
    EXPECT_TRUE(plan.isEmpty());
    EXPECT_NEAR(plan.Width(), -4.29e9, 1e7);
    plan.SetBox(XPnt3f(1, 2, 3));
    EXPECT_TRUE(plan.isValid());
    plan.SetBox(std::numeric_limits<double>::quiet_NaN(), 5.0);
    EXPECT_EQ(plan, Enve2d(1, 2, 1, 5));
    EXPECT_FALSE(Enve2d(0, 0, -2147483647.0, 1).isValid());

    Enve3d fromPlan(9, 9, 9, 9, 9, 9);
    fromPlan = plan;
    EXPECT_TRUE(fromPlan.isValid());
    EXPECT_EQ(fromPlan.minZ, 2147483647.0);
    fromPlan = {};
    EXPECT_FALSE(fromPlan.isValid());

    EXPECT_EQ(Union(plan, Enve2d()), plan);
    EXPECT_EQ(Union(Enve2d(), plan), plan);
    EXPECT_FALSE(Union(Enve3d(), Enve3d()).isValid());
    EXPECT_EQ(Union(Enve3d(0, 0, 0, 1, 1, 1), Enve3d(-1, 2, 0, 0, 3, 9)),
              Enve3d(-1, 0, 0, 1, 3, 9));
}

TEST(Envelopes, SetBoxGrowsInThePlaneAndReplacesInSpace) {
    Enve2d plan(0, 0, 1, 1);
    plan.SetBox(XPnt2d(5, 6), XPnt2d(3, -4));
    EXPECT_EQ(plan, Enve2d(0, -4, 5, 6));
    plan.SetBox(7, 7, -7, -7);  // minima above and maxima below change nothing
    EXPECT_EQ(plan, Enve2d(0, -4, 5, 6));

    Enve3d box(-9, -9, -9, 9, 9, 9);
    box.SetBox(XPnt3d(3, 1, 2), XPnt3d(1, 2, 3));
    EXPECT_EQ(box, Enve3d(1, 1, 2, 3, 2, 3));
    LasPnt record;
    record.x = record.y = record.z = 4.0f;
    box.SetBox(record);
    EXPECT_EQ(box, Enve3d(1, 1, 2, 4, 4, 4));
    box.SetBox(record, record);
    EXPECT_EQ(box, Enve3d(4, 4, 4, 4, 4, 4));
    box.SetBox(5, 5, 5, 1, 1, 1);
    EXPECT_EQ(box.Width(), -4);
}

TEST(Envelopes, MoveScaleAndMeasure) {
    Enve2d plan(0, 0, 10, 20);
    plan.extendPercent(0.1);
    EXPECT_EQ(plan, Enve2d(-1, -2, 11, 22));
    plan += XPnt2d(1, 2);
    plan -= XPnt3d(0, 1, 99);
    EXPECT_EQ(plan, Enve2d(0, -1, 12, 23));
    plan *= plan.maxX;  // the factor is one of the bounds that change
    EXPECT_EQ(plan, Enve2d(0, -12, 144, 276));
    Enve2d reciprocal(0, 0, 49, 98);
    reciprocal /= 49;
    EXPECT_EQ(reciprocal.maxX, std::nextafter(1.0, 0.0));
    plan = Enve2d(10, 10, 0, 0);
    EXPECT_TRUE(plan.isEmpty());
    plan.Normalize();
    EXPECT_EQ(plan, Enve2d(0, 0, 10, 10));
    EXPECT_EQ(plan.getEnve3d(), Enve3d(0, 0, 0, 10, 10, 0));
    EXPECT_FALSE(plan.getCorner(4).isValid());
    EXPECT_EQ(plan.getCorner(1), XPnt2d(10, 0));
    EXPECT_EQ(plan.getCorner(3), XPnt2d(0, 10));

    Enve3d box(0, 0, 0, 2, 3, 6);
    EXPECT_EQ(box.area(), 72);
    EXPECT_EQ(box.Volume(), 36);
    EXPECT_EQ(box.getDiagonal(), 7);
    box -= XPnt3d(1, 1, 1);
    box += XPnt2d(1, 1);
    box.ScaleZ(2);
    box.Extend(1);
    EXPECT_EQ(box, Enve3d(-1, -1, -3, 3, 4, 11));
    EXPECT_EQ(box.MidPoint(), XPnt3d(1, 1.5, 4));

    Enve2i widest;
    EXPECT_EQ(widest.Width(), 0);
    widest.minX = std::numeric_limits<std::int32_t>::min();
    widest.maxX = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(widest.Width(), -1);
}

TEST(Envelopes, OrderBySizeThenByPosition) {
    const Enve2d plans[] = {
        {0, 0, 0, 9}, {0, 0, 2, 2}, {-1, 1, 0, 5}, {0, 0, 1, 4}, {9, 9, 12, 12}};
    for (std::size_t i = 0; i < std::size(plans); ++i) {
        for (std::size_t j = 0; j < std::size(plans); ++j) {
            EXPECT_EQ(plans[i] < plans[j], i < j) << i << j;
        }
    }
    // Volumes 8, 8, 8, 8 and surfaces 24, 28, 28, 28.
    const Enve3d boxes[] = {
        {5, 5, 5, 7, 7, 7}, {0, 0, 0, 1, 2, 4}, {0, 0, 1, 1, 2, 5}, {1, 0, 0, 2, 2, 4}};
    for (std::size_t i = 0; i < std::size(boxes); ++i) {
        for (std::size_t j = 0; j < std::size(boxes); ++j) {
            EXPECT_EQ(boxes[i] < boxes[j], i < j) << i << j;
        }
    }
}

TEST(Envelopes, CoverPointsAndBoxes) {
    EXPECT_FALSE(Enve2d(0, 0, 10, 10).isCover(10.0, 5.0));
    EXPECT_TRUE(Enve2d(0, 0, 10, 10).isCover(0.0, 0.0));
    EXPECT_TRUE(Enve3d(0, 0, 0, 10, 10, 10).isCover(10.0, 5.0, 10.0));
    EXPECT_TRUE(Enve2d(0, 0, 10, 10).isCover(Enve2d(0, 0, 10, 10)));
    EXPECT_FALSE(Enve2d(0, 0, 10, 10).isIntersect(Enve2d(10, 0, 20, 10)));
    EXPECT_TRUE(Enve2d(0, 0, 10, 10).isIntersect(Enve2d(9, 9, 20, 20)));

    const Enve3d large(0, 0, 0, 10, 10, 10), small(1, 1, 1, 2, 2, 2);
    EXPECT_TRUE(large.isCover(small));
    EXPECT_EQ(large.intersect(small), small);
    EXPECT_FALSE(small.isCover(large));
    EXPECT_FALSE(small.intersect(large).isValid());
    EXPECT_EQ(large.intersect(Enve3d(5, -5, 10, 20, 3, 11)), Enve3d(5, 0, 10, 10, 3, 10));

    EXPECT_FALSE(isIntersect(1, 1, 0, 2));
    EXPECT_FALSE(isIntersect(0.5, 1.5, 0, 2));
    EXPECT_TRUE(isIntersect(0, 1, 0, 2));
    EXPECT_TRUE(isIntersect(3, -1, 0, 2));
    EXPECT_FALSE(isIntersect(3, 2.5, 0, 2));
    EXPECT_TRUE(isIntersect(3, 2, 0, 2));
    EXPECT_TRUE(isCover(0.5, 1.5, 0, 2));
    EXPECT_FALSE(isCover(2, 3, 0, 2));
    EXPECT_FALSE(isCover(0, -1, 0, 2));
    EXPECT_TRUE(isCover(-1, 3, 0, 2));
}

TEST(Envelopes, SegmentsCrossTheOutline) {
    const Enve2d plan(0, 0, 10, 10);
    EXPECT_FALSE(plan.isRayIntersect({1, 1}, {9, 8}));
    EXPECT_TRUE(plan.isRayIntersect({1, 1}, {11, 8}));
    EXPECT_TRUE(plan.isRayIntersect({-1, 5}, {11, 5}));
    EXPECT_FALSE(plan.isRayIntersect({-1, 5}, {-3, 20}));
    EXPECT_TRUE(plan.isRayIntersect({0, 5}, {5, 5}));
    EXPECT_FALSE(plan.isIntersect({0, 5}, {5, 5}));
    EXPECT_TRUE(plan.isIntersect({5, 5}, {10, 5}));

    const Enve3d box(0, 0, 0, 10, 10, 10);
    EXPECT_TRUE(box.isIntersected({1, 1, 1}, {9, 9, 8}));
    EXPECT_FALSE(box.isIntersected({-1, 20, 5}, {11, 20, 5}));
    EXPECT_TRUE(box.isIntersected({-1, 5, 10}, {11, 5, 10}));  // in the plane of a side
    EXPECT_FALSE(box.isIntersected({-1, 11, 10}, {11, 11, 10}));
    EXPECT_TRUE(box.isIntersected({5, 5, 12}, {5, 5, 10}));
    EXPECT_FALSE(box.isIntersected({5, 5, 12}, {5, 5, 10.5}));
    // The segment reaches z = 0 away from the box, and its line the side at z = 10.
    EXPECT_TRUE(box.isIntersected({30, 5, -1}, {26, 5, 1}));

    RandomPoints random(71);
    for (int round = 0; round < 2000; ++round) {
        const XPnt3d a = random.point<double>(20), b = random.point<double>(20);
        bool passesThrough = false;
        for (int i = 0; i <= 200; ++i) {
            const XPnt3d p = a + (b - a) * (i / 200.0);
            passesThrough = passesThrough || box.isCover(p);
        }
        if (passesThrough) { EXPECT_TRUE(box.isIntersected(a, b)) << round; }
        const XPnt2d a2 = a.to2d(), b2 = b.to2d();
        EXPECT_EQ(plan.isIntersect(a2, b2), plan.isRayIntersect(a2, b2)) << round;
    }
}

TEST(Envelopes, ArraysFillWithTheirDefaults) {
    const ref_ptr<Enve2dArray> plans = newEnve2dArray();
    const ref_ptr<Enve2iArray> cells = newEnve2iArray();
    const ref_ptr<Enve3dArray> boxes = newEnve3dArray();
    plans->resize(1);
    cells->resize(1);
    boxes->resize(1);
    EXPECT_FALSE(plans->get(0).isValid());
    EXPECT_EQ(cells->get(0), Enve2i());
    EXPECT_FALSE(boxes->get(0).isValid());
}

class Geometry : public IZynGeometry {
public:
    explicit Geometry(std::uint8_t mark) { flag = mark; }
    [[nodiscard]] int getGeoType() const override { return 1; }
    [[nodiscard]] int mark() const { return flag; }
};

TEST(GeometryBase, DefaultsDoNothingAndCopiesTakeTheFlagOnly) {
    const ref_ptr<Geometry> first(new Geometry(200));
    const ref_ptr<Geometry> copy(new Geometry(*first));
    EXPECT_EQ(copy->mark(), 200);
    EXPECT_EQ(copy->referenceCount(), 1);
    const ref_ptr<Geometry> assigned(new Geometry(1));
    *assigned = *first;
    EXPECT_EQ(assigned->mark(), 200);
    EXPECT_EQ(assigned->referenceCount(), 1);

    IZynGeometry& base = *first;
    EXPECT_FALSE(base.getEnvelope().isValid());
    EXPECT_EQ(base.relation(Enve3d::stdEnve3d()), -1);
    EXPECT_EQ(base.move(1, 2, 3), 0);
    EXPECT_EQ(base.rotate(nullptr, nullptr, 1), 0);
}

}  // namespace
}  // namespace zyn
