// Points in spatial order, and whole arrays of them into an engine.
#include <zyn/geometry.h>
#include <zyn/progress.h>
#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <vector>

#include "network_check.h"
#include "point_sets.h"
#include "seed.h"

namespace {

using namespace zyn;

ref_ptr<Pnt3dArray> arrayOf(const std::vector<XPnt3d>& points) {
    ref_ptr<Pnt3dArray> array = newPnt3dArray();
    array->append(points.data(), int(points.size()));
    return array;
}

double length(Pnt3dArray& points) {
    double sum = 0;
    for (int i = 1; i < points.size(); ++i) { sum += dist_2d(points.get(i), points.get(i - 1)); }
    return sum;
}

TEST(SpatialOrder, StepsFromCellToCell) {
    // A square of 2^k by 2^k cells is walked through without a jump, whatever order it comes in.
    std::mt19937 random(support::newSeed());
    for (const int side : {2, 4, 16, 64}) {
        std::vector<XPnt3d> points;
        for (int i = 0; i < side * side; ++i) { points.emplace_back(i % side, i / side, i); }
        std::shuffle(points.begin(), points.end(), random);
        const ref_ptr<Pnt3dArray> array = arrayOf(points);
        spatialSort(array.get());
        EXPECT_EQ(length(*array), side * side - 1);
        EXPECT_TRUE(std::is_permutation(points.begin(), points.end(), array->begin()));
    }
}

TEST(SpatialOrder, IsShortForEveryFamily) {
    for (const std::string_view name : support::pointSetNames()) {
        const std::vector<XPnt3d> points = support::makePointSet(name, 5).points;
        const ref_ptr<Pnt3dArray> array = arrayOf(points);
        const ref_ptr<IntArray> order = spatialOrder(array.get());
        ASSERT_EQ(order->size(), int(points.size()));
        const ref_ptr<Pnt3dArray> sorted = array->clone();
        spatialSort(sorted.get());
        for (int i = 0; i < order->size(); ++i) {
            ASSERT_TRUE(sorted->get(i) == points[std::size_t(order->get(i))]) << name << i;
        }
        Enve2d box;
        for (const XPnt3d& p : points) { box.SetBox(p.x, p.y); }
        // The longest tour of n points in a box, by the theory of the curve.
        EXPECT_LE(length(*sorted),
                  8 * std::max(box.width(), box.hight()) * std::sqrt(double(points.size())))
            << name;
    }
}

TEST(SpatialOrder, KeepsPointsInOnePlaceInOrderAndTakesAnyNumber) {
    std::mt19937 random(support::newSeed());
    const double extremes[] = {0, -0.0,      1e308, -1e308,   5e-324,
                               1, 1 + 1e-15, NAN,   HUGE_VAL, -HUGE_VAL};
    for (int round = 0; round < 200; ++round) {
        const ref_ptr<Pnt3dArray> points = newPnt3dArray();
        const std::size_t kinds = 1 + random() % std::size(extremes);
        for (int i = 0; i < 100; ++i) {
            points->append(XPnt3d(extremes[random() % kinds], extremes[random() % kinds], i));
        }
        const ref_ptr<IntArray> order = spatialOrder(points.get());
        std::vector<int> all(order->begin(), order->end());
        const auto isFinite = [&](int i) {
            return std::isfinite(points->get(i).x) && std::isfinite(points->get(i).y);
        };
        EXPECT_TRUE(std::is_partitioned(all.begin(), all.end(), isFinite));
        for (std::size_t i = 1; i < all.size(); ++i) {
            const XPnt3d a = points->get(all[i - 1]), b = points->get(all[i]);
            if ((a.x == b.x && a.y == b.y) || !isFinite(all[i - 1])) {
                EXPECT_LT(all[i - 1], all[i]);
            }
        }
        std::sort(all.begin(), all.end());
        std::vector<int> numbers(100);
        std::iota(numbers.begin(), numbers.end(), 0);
        EXPECT_EQ(all, numbers);
    }
    spatialSort(static_cast<Pnt3fArray*>(nullptr));
    EXPECT_EQ(spatialOrder(static_cast<const Pnt3dArray*>(nullptr))->size(), 0);
    spatialSort(static_cast<Pnt3dArray*>(nullptr));
}

struct Progress : IZynProgress {
    void setTotal(double t) override { total = t; }
    void setPosition(double) override {}
    double getPosition() override { return position; }
    void step(double amount) override { position += amount; }
    void setMessage(QString) override {}
    bool isCanceled() override { return position >= limit; }
    void finish() override {}
    double total = 0, position = 0, limit = HUGE_VAL;
};

TEST(AddPoints, InsertsEveryFamilyWhole) {
    for (const std::string_view name : support::pointSetNames()) {
        const support::PointSet set = support::makePointSet(name, 7);
        const ref_ptr<Pnt3dArray> points = arrayOf(set.points);
        const ref_ptr<IZynDelaunayD> engine =
            newZynDelaunayDouble(0, set.minX, set.minY, set.maxX, set.maxY);
        const ref_ptr<IntArray> rejected = newIntArray();
        const ref_ptr<Progress> progress = new Progress;
        const int count = points->size();
        const double tolerance = set.duplicates ? -1 : 0;
        const int taken =
            addPoints(engine.get(), points.get(), tolerance, progress.get(), rejected.get());
        EXPECT_EQ(taken + rejected->size(), count) << name;
        EXPECT_TRUE(std::is_sorted(rejected->begin(), rejected->end()));
        EXPECT_TRUE(progress->total == count && progress->position == count);
        EXPECT_EQ(engine->triangleCount(), 2 + 2 * taken);
        EXPECT_EQ(validate(engine.get(), !set.duplicates), QString()) << name;
        EXPECT_EQ(
            support::faultOf(*engine, {.delaunay = !set.duplicates, .duplicates = set.duplicates}),
            "")
            << name;
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(points->get(i).inten, std::int16_t(std::uint16_t(i)));
            ASSERT_TRUE(points->get(i) == set.points[std::size_t(i)]) << "moved";
        }
    }
}

TEST(AddPoints, RefusesStopsAndGoesOn) {
    const ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0, 0, 0, 10, 10);
    const ref_ptr<Pnt3dArray> mixed =
        arrayOf({{1, 1}, {11, 1}, {2, 2}, {NAN, 1}, {2, 2}, {3, 3, HUGE_VAL}, {4, 4}});
    const ref_ptr<IntArray> rejected = newIntArray();
    rejected->append(99);
    EXPECT_EQ(addPoints(engine.get(), mixed.get(), 0, nullptr, rejected.get()), 3);
    EXPECT_EQ(std::vector<int>(rejected->begin(), rejected->end()),
              (std::vector<int>{99, 1, 3, 4, 5}));
    EXPECT_EQ(addPoints<double>(engine.get(), nullptr, 0), 0);
    EXPECT_EQ(addPoints<double>(nullptr, mixed.get(), 0), 0);

    const ref_ptr<Pnt3dArray> many = arrayOf(support::uniformPoints(10000, 1).points);
    const ref_ptr<Progress> progress = new Progress;
    progress->limit = 3000;
    rejected->removeAll();
    const int taken = addPoints(engine.get(), many.get(), 0, progress.get(), rejected.get());
    EXPECT_TRUE(taken >= 3000 && taken < 5000 && rejected->size() == 0);
    EXPECT_EQ(validate(engine.get(), true), QString());
    EXPECT_EQ(many->last().inten, 10006);  // behind the seven of before
    XPnt3d next(9, 9);
    EXPECT_TRUE(engine->addPoint(&next, 0) && next.inten == 10007);
    progress->limit = 0;
    EXPECT_EQ(addPoints(engine.get(), mixed.get(), 0, progress.get()), 0);
}

TEST(AddPoints, WorksInFloat) {
    const ref_ptr<Pnt3fArray> points = newPnt3fArray();
    for (const XPnt3d& p : support::uniformPoints(5000, 3).points) { points->append(XPnt3f(p)); }
    const ref_ptr<IZynDelaunay> engine = newZynDelaunay(0, -1, -1, 2, 2);
    const int taken = addPoints(engine.get(), points.get(), 0);
    EXPECT_GT(taken, 4990);
    EXPECT_EQ(validate(engine.get(), true), QString());
    EXPECT_EQ(points->get(4999).inten, 4999);
}

}  // namespace
