// Points in spatial order, and whole arrays of points for an engine.
#include <zyn/geometry.h>
#include <zyn/progress.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>
#include <random>
#include <vector>

#include "network.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

/// Checks the spatial order: it has all points, finite ones first, and keeps the order of those in
/// one place. Returns the length of the path through them.
double expectOrder(const std::vector<XPnt3d>& points) {
    const ref_ptr<Pnt3dArray> sorted = support::arrayOf<double>(points);
    const ref_ptr<IntArray> order = spatialOrder(sorted.get());
    spatialSort(sorted.get());
    const auto isFinite = [&](const XPnt3d& p) { return std::isfinite(p.x) && std::isfinite(p.y); };
    EXPECT_TRUE(std::is_partitioned(sorted->begin(), sorted->end(), isFinite));
    std::vector<int> all(order->begin(), order->end()), numbers(points.size());
    double sum = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const XPnt3d p = points.at(std::size_t(all[i])),
                     before = sorted->get(i == 0 ? 0 : int(i) - 1);
        EXPECT_EQ(std::memcmp(&p, &sorted->getRef(int(i)), sizeof p), 0);
        if (i > 0 && ((p.x == before.x && p.y == before.y) || !isFinite(before))) {
            EXPECT_LT(all[i - 1], all[i]);
        }
        sum += dist_2d(before, p);
    }
    std::sort(all.begin(), all.end());
    std::iota(numbers.begin(), numbers.end(), 0);
    EXPECT_EQ(all, numbers);
    return sum;
}

TEST(SpatialOrder, StepsFromCellToCell) {
    // The path through a square of 2^k by 2^k cells has no jump, whatever the order of the input.
    std::mt19937 random(support::newSeed());
    for (const int side : {2, 4, 16, 64}) {
        std::vector<XPnt3d> points;
        for (int i = 0; i < side * side; ++i) { points.emplace_back(i % side, i / side, i); }
        std::shuffle(points.begin(), points.end(), random);
        EXPECT_EQ(expectOrder(points), side * side - 1);
    }
}

TEST(SpatialOrder, IsShortForEveryFamily) {
    for (const std::string_view name : support::pointSetNames()) {
        const std::vector<XPnt3d> points = support::makePointSet(name, 5).points;
        Enve2d box;
        for (const XPnt3d& p : points) { box.SetBox(p.x, p.y); }
        // A bound for the path through n points in a box, from the theory of the curve.
        EXPECT_LE(expectOrder(points),
                  8 * std::max(box.width(), box.hight()) * std::sqrt(double(points.size())))
            << name;
    }
}

TEST(SpatialOrder, AcceptsAnyNumber) {
    std::mt19937 random(support::newSeed());
    const double extremes[] = {0, -0.0,      1e308, -1e308,   5e-324,
                               1, 1 + 1e-15, NAN,   HUGE_VAL, -HUGE_VAL};
    for (unsigned round = 0; round < 200; ++round) {
        std::vector<XPnt3d> points(100);
        const auto extreme = [&] { return extremes[random() % (1 + round % 10)]; };
        for (XPnt3d& p : points) { p = {extreme(), extreme(), 0}; }
        expectOrder(points);
    }
    spatialSort(static_cast<Pnt3fArray*>(nullptr));
    EXPECT_EQ(spatialOrder(static_cast<const Pnt3dArray*>(nullptr))->size(), 0);
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

template <class Real>
class AddPoints : public testing::Test {};
TYPED_TEST_SUITE(AddPoints, support::Precisions);

TYPED_TEST(AddPoints, RefusesInvalidPointsStopsOnDemandAndContinues) {
    support::Network<TypeParam> network(0, 0, 10, 10);
    auto* const engine = network.engine.get();
    const auto mixed = support::arrayOf<TypeParam>(
        {{1, 1}, {11, 1}, {2, 2}, {NAN, 1}, {2, 2}, {3, 3, HUGE_VAL}, {4, 4}});
    const ref_ptr<IntArray> rejected = newIntArray();
    rejected->append(99);
    EXPECT_EQ(addPoints(engine, mixed.get(), 0, nullptr, rejected.get()), 3);
    EXPECT_EQ(std::vector<int>(rejected->begin(), rejected->end()),
              (std::vector<int>{99, 1, 3, 4, 5}));
    EXPECT_EQ(addPoints<TypeParam>(engine, nullptr, 0), 0);
    EXPECT_EQ(addPoints<TypeParam>(nullptr, mixed.get(), 0), 0);

    const std::vector<XPnt3d> points =
        support::makePointSet("RefusedDuplicates", 1, 70000, {"", 0.07}).points;
    const auto many = support::arrayOf<TypeParam>(points);
    const ref_ptr<Progress> progress = new Progress;
    progress->limit = 3000;
    rejected->removeAll();
    const int some = addPoints(engine, many.get(), 0, progress.get(), rejected.get());
    EXPECT_GE(progress->position, 3000);
    EXPECT_LT(progress->position, 5000);
    EXPECT_EQ(some + rejected->size(), int(progress->position));
    EXPECT_EQ(validate(engine, true), QString());
    progress->limit = HUGE_VAL;
    progress->position = 0;
    rejected->removeAll();
    const int rest = addPoints(engine, many.get(), 0, progress.get(), rejected.get());
    EXPECT_EQ(progress->total, 70000);
    EXPECT_EQ(progress->position, 70000);
    EXPECT_EQ(rest + rejected->size(), 70000);
    EXPECT_TRUE(std::is_sorted(rejected->begin(), rejected->end()));
    EXPECT_EQ(engine->triangleCount(), 2 + 2 * (3 + some + rest));
    for (int i = 0; i < 70000; ++i) {  // numbered after the earlier points, and not moved
        ASSERT_EQ(many->get(i).inten, std::int16_t(std::uint16_t(70007 + i)));
        ASSERT_EQ(many->get(i), XPnt3<TypeParam>(points[std::size_t(i)]));
    }
    progress->limit = 0;
    EXPECT_EQ(addPoints(engine, mixed.get(), 0, progress.get()), 0);
}

}  // namespace
