// Heights, profiles and rasters of a network.
#include <zyn/network.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string_view>
#include <vector>

#include "network.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

using testing::NanSensitiveDoubleNear;
using Heights = std::vector<double>;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class Real>
class SurfaceHeights : public testing::Test, protected support::Network<Real> {
protected:
    SurfaceHeights() : support::Network<Real>(-100, -100, 200, 200) {}

    void addGrid(int side, double slopeX, double slopeY) {
        for (int n = 0; n < side * side; ++n) {
            this->add(n / side, n % side, slopeX * (n / side) + slopeY * (n % side));
        }
    }
    double height(double x, double y) {
        double z = nan;
        const bool found = heightAt(this->engine.get(), x, y, z);
        EXPECT_EQ(found, !std::isnan(z));
        return z;
    }
    /// Returns the points of a profile, after these checks: they are in order, on the line and on
    /// the surface, and the profile from b to a has the same heights.
    std::vector<XPnt3d> profileOf(XPnt2d a, XPnt2d b) {
        const auto line = profile(this->engine.get(), a, b);
        const auto back = profile(this->engine.get(), b, a);
        std::reverse(back->begin(), back->end());
        EXPECT_THAT(zOf(*line), testing::Pointwise(NanSensitiveDoubleNear(1e-9), zOf(*back)));
        const std::vector<XPnt3d> found(line->begin(), line->end());
        double last = -1;
        for (std::size_t i = 0; i < found.size(); ++i) {
            const XPnt3d p = found[i], ab(b.x - a.x, b.y - a.y), ap(p.x - a.x, p.y - a.y);
            EXPECT_GE(ap.x * ab.x + ap.y * ab.y, last);
            last = ap.x * ab.x + ap.y * ab.y;
            EXPECT_NEAR(ap.x * ab.y - ap.y * ab.x, 0, 1e-9);
            if (i > 0) { EXPECT_NE(found[i - 1], p); }
            const double z = height(p.x, p.y);  // NaN outside the rim
            if (!std::isnan(p.z) && !std::isnan(z)) { EXPECT_NEAR(p.z, z, 1e-9); }
        }
        return found;
    }
    static Heights zOf(const Pnt3dArray& points) {
        Heights result;
        for (const XPnt3d& p : points) { result.push_back(p.z); }
        return result;
    }
    Heights heightsOf(XPnt2d a, XPnt2d b) {  // -99 for a gap
        Heights result;
        for (const XPnt3d& p : profileOf(a, b)) { result.push_back(std::isnan(p.z) ? -99 : p.z); }
        return result;
    }
};
TYPED_TEST_SUITE(SurfaceHeights, support::Precisions);
using SurfaceProfile = SurfaceHeights<double>;

TYPED_TEST(SurfaceHeights, AgreeWithAPlaneUpToTheRim) {
    EXPECT_TRUE(std::isnan(this->height(1, 1)));
    this->addGrid(9, 0.5, -0.25);
    std::vector<XPnt3d> all{{nan, 0}, {0, HUGE_VAL}, {1e300, 1}, {300, 0}};
    for (int n = 0; n < 41 * 41; ++n) { all.emplace_back(n / 41 / 4.0 - 1, n % 41 / 4.0 - 1, 7); }
    const auto places = support::arrayOf<double>(all);
    EXPECT_EQ(heightAt(this->engine.get(), places.get()), 33 * 33);
    for (const XPnt3d& p : *places) {
        const bool isInside = p.x >= 0 && p.x <= 8 && p.y >= 0 && p.y <= 8;
        const double z = isInside ? 0.5 * p.x - 0.25 * p.y : nan;
        EXPECT_THAT(p.z, NanSensitiveDoubleNear(z, 1e-9));
        EXPECT_THAT(this->height(p.x, p.y), NanSensitiveDoubleNear(z, 1e-9));
    }
    DelaunayInterface<TypeParam>* const none = nullptr;
    double z = 3;
    EXPECT_FALSE(heightAt(none, 1, 1, z));
    EXPECT_FALSE(heightAt(this->engine.get(), 9, 1, z));
    EXPECT_EQ(z, 3);
    EXPECT_EQ(heightAt(none, places.get()), 0);
    EXPECT_TRUE(std::isnan(places->last().z));
    EXPECT_EQ(heightAt(this->engine.get(), nullptr), 0);
}

TEST_F(SurfaceProfile, StaysFiniteBetweenExtremeHeights) {
    for (const double top : {1e150, 1e300, std::numeric_limits<double>::max()}) {
        SCOPED_TRACE(top);
        support::Network<double> slope(-100, -100, 200, 200);
        slope.add(0, 0, -top), slope.add(10, 0, top), slope.add(0, 10, top);
        auto* const e = slope.engine.get();
        double z = nan;
        ASSERT_TRUE(heightAt(e, 3, 3, z));
        EXPECT_NEAR(z / top, 0.2, 1e-15);
        const auto line = profile(e, XPnt2d(4, 0), XPnt2d(4, 7));
        ASSERT_EQ(line->size(), 2);
        EXPECT_NEAR(line->first().z / top, -0.2, 1e-15);
        EXPECT_EQ(line->last().z, top);
        const ref_ptr<MatrixDbl> out = newMatrixDbl();
        ASSERT_TRUE(rasterize(e, Enve2d(2, 2, 4, 4), 1, 1, out.get()));
        EXPECT_EQ(out->get(0, 0), z);
        const ref_ptr<DoubleArray> levels = newDoubleArray();
        levels->append(top / 2);
        const auto lines = contours(e, levels.get());
        ASSERT_EQ(lines->size(), 1);
        EXPECT_NEAR(lines->get(0)->last().x + lines->get(0)->last().y, 7.5, 1e-14);
        const SurfaceVolume v = volume(e, -top);
        EXPECT_DOUBLE_EQ(v.cut / 50 / top, top < 1e306 ? 4.0 / 3 : HUGE_VAL);
        EXPECT_EQ(v.fill, 0);
    }
}

TYPED_TEST(SurfaceHeights, OfARasterAgreeWithThoseAtTheCentres) {
    const unsigned seed = support::newSeed();
    for (const std::string_view name : support::pointSetNames()) {
        // Each cell of that family would need exact products of hundreds of digits.
        if (name == "Subnormals") { continue; }
        SCOPED_TRACE(name);
        const support::PointSet set = support::makePointSet(name, seed);
        support::Network<TypeParam> network(set);
        for (const XPnt3d& p : set.points) { network.add(p.x, p.y, p.z, set.duplicates ? -1 : 0); }
        // A degenerate triangle at points in one place is a step in the surface.
        const double most = set.duplicates ? 2 : 1e-6;
        for (const int columns : {1, 61, 100}) {
            const int rows = columns + 3;
            const Enve2d box(set.minX, set.minY, set.maxX + 1, set.maxY);
            const ref_ptr<MatrixDbl> out = newMatrixDbl();
            ASSERT_TRUE(rasterize(network.engine.get(), box, columns, rows, out.get()));
            std::vector<XPnt3d> all;
            for (int n = 0; n < columns * rows; ++n) {
                all.emplace_back(box.minX + (n % columns + 0.5) * (box.Width() / columns),
                                 box.minY + (n / columns + 0.5) * (box.Hight() / rows), 0);
            }
            const auto centres = support::arrayOf<double>(all);
            heightAt(network.engine.get(), centres.get());
            for (int n = 0; n < centres->size(); ++n) {
                const double z = centres->get(n).z, cell = out->get(n / columns, n % columns);
                ASSERT_THAT(cell, NanSensitiveDoubleNear(z, most)) << n;
            }
        }
    }
}

TYPED_TEST(SurfaceHeights, OfARasterAgreeInSliversWithFewCentres) {
    // Slivers between two lines of points, in three directions. They miss most centres of a grid.
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution<double> anywhere(0, 40);
    for (const auto& [dx, dy] : {std::pair(0.0, 400.0), {297.3, 391.7}, {-20.1, 380.0}}) {
        SCOPED_TRACE(dx);
        support::Network<TypeParam> network(-1000, -1000, 1000, 1000);
        for (int i = 0; i < 300; ++i) {
            network.add(i % 3 == 0 ? i / 9 : anywhere(random), 0.25, std::sin(i));
            network.add(dx + (i % 3 == 0 ? i / 9 : anywhere(random)), dy, std::cos(i));
        }
        const ref_ptr<MatrixDbl> out = newMatrixDbl();
        ASSERT_TRUE(
            rasterize(network.engine.get(), {-0.5, -0.5, 299.5, 399.5}, 300, 400, out.get()));
        std::vector<XPnt3d> all;
        for (int n = 0; n < 300 * 400; ++n) { all.emplace_back(n % 300, n / 300, 0); }
        const auto centres = support::arrayOf<double>(all);
        EXPECT_GT(heightAt(network.engine.get(), centres.get()), 8000);
        for (int n = 0; n < 300 * 400; ++n) {
            const double z = centres->get(n).z, cell = out->get(n / 300, n % 300);
            ASSERT_THAT(cell, NanSensitiveDoubleNear(z, 1e-6)) << n;
        }
    }
}

TYPED_TEST(SurfaceHeights, OfARasterHoldOnLongEdgesAndNextToDegenerateTriangles) {
    // The edge runs through (0, 0) and (3, 1); the other triangles are far from there.
    support::Network<TypeParam> network(-1e10, -1e10, 1e10, 1e10);
    for (const auto& [x, y] : {std::pair(-3 << 20, -1 << 20), {6 << 20, 2 << 20}, {0, 3 << 20}}) {
        network.add(x, y, y);
    }
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    ASSERT_TRUE(rasterize(network.engine.get(), Enve2d(-0.5, -0.5, 6.5, 2.5), 7, 3, out.get()));
    for (int n = 0; n < 21; ++n) {
        const int x = n % 7, y = n / 7;
        EXPECT_THAT(out->get(y, x), NanSensitiveDoubleNear(x > 3 * y ? nan : y, 1e-8))
            << x << " " << y;
    }
    // A point occurs twice, and an edge leads away from it. Along it, the heights fall evenly.
    for (const bool isFirst : {true, false}) {
        support::Network<TypeParam> twice(-9, -9, 19, 19);
        twice.add(isFirst ? 0 : 8, 0, isFirst ? 8 : 0, -1), twice.add(0, 0, 8, -1);
        twice.add(8, 0, 0, -1), twice.add(4, 3, 4, -1), twice.add(4, -3, 4, -1);
        ASSERT_TRUE(rasterize(twice.engine.get(), Enve2d(-0.5, -0.5, 8.5, 0.5), 9, 1, out.get()));
        for (int x = 0; x <= 8; ++x) { EXPECT_NEAR(out->get(0, x), 8 - x, 1e-12); }
    }
}

TYPED_TEST(SurfaceHeights, OfARasterEqualThoseOfVerticesExactly) {
    support::Network<TypeParam> network(-9, -9, 19, 19);
    for (int n = 0; n < 100; ++n) { network.add(n % 10, n / 10, std::sin(n * n)); }
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    ASSERT_TRUE(rasterize(network.engine.get(), Enve2d(-0.5, -0.5, 9.5, 9.5), 10, 10, out.get()));
    for (int n = 0; n < 100; ++n) {
        EXPECT_EQ(out->get(n / 10, n % 10), double(network.points[std::size_t(n)].z)) << n;
    }
}

TYPED_TEST(SurfaceHeights, OfARasterNeedAValidBoxAndSize) {
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    out->setSize(2, 3, 5.0);
    const auto fills = [&](const Enve2d& box, int columns, int rows, double maxEdge) {
        return rasterize(this->engine.get(), box, columns, rows, out.get(), maxEdge);
    };
    const Enve2d good(1, 1, 2, 2);
    EXPECT_FALSE(fills(good, 0, 4, anyEdge));
    EXPECT_FALSE(fills(good, 4, -1, anyEdge));
    EXPECT_FALSE(rasterize<TypeParam>(nullptr, good, 4, 4, out.get()));
    EXPECT_FALSE(rasterize(this->engine.get(), good, 4, 4, nullptr));
    for (const Enve2d& bad : {Enve2d(), Enve2d(0, 0, 0, 1), Enve2d(0, nan, 1, 1),
                              Enve2d(0, 0, HUGE_VAL, 1), Enve2d(-HUGE_VAL, 0, 1, 1)}) {
        EXPECT_FALSE(fills(bad, 4, 4, anyEdge));
    }
    EXPECT_EQ(out->rows(), 2);
    EXPECT_EQ(out->cols(), 3);
    EXPECT_EQ(out->get(1, 2), 5);
    this->addGrid(4, 1, 10);
    EXPECT_TRUE(fills(good, 1, 1, 99));
    EXPECT_EQ(out->get(0, 0), 16.5);
    EXPECT_TRUE(fills(good, 1, 1, 9));
    EXPECT_TRUE(std::isnan(out->get(0, 0)));
}

TEST_F(SurfaceProfile, RunsThroughVerticesAlongEdgesAndAlongTheRim) {
    this->addGrid(4, 1, 10);
    const struct {
        XPnt2d a, b;
        Heights heights;
    } lines[] = {{{-1, 1}, {4, 1}, {10, 11, 12, 13}},      // vertices, edges
                 {{-1, 0}, {4, 0}, {0, 1, 2, 3}},          // the rim
                 {{3, 1.5}, {3, 9}, {18, 23, 33}},         // a part of the rim
                 {{0.25, 1}, {0.75, 1}, {10.25, 10.75}},   // within an edge
                 {{1, 1}, {1, 1}, {11}},                   // a point
                 {{-150, 2}, {250, 2}, {20, 21, 22, 23}},  // beyond the frame
                 {{-1, 0.5}, {0, 0.5}, {5}},               // to the rim only
                 {{0, 0}, {-1, -1}, {0}},                  // from the rim outwards
                 {{-1, 1}, {1, -1}, {0}},                  // touches a corner
                 {{-1, 2}, {-1, -2}, {}},                  // outside
                 {{150, 250}, {250, 150}, {}}};
    for (const auto& [a, b, heights] : lines) { EXPECT_EQ(heightsOf(a, b), heights); }
    for (const double bad : {nan, HUGE_VAL}) { EXPECT_EQ(heightsOf({0, 0}, {1, bad}), Heights{}); }
    EXPECT_EQ(profile<double>(nullptr, {0, 0}, {1, 1})->size(), 0);
}

TEST_F(SurfaceProfile, EndsOnAnEdgeWithoutAGap) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution<double> size(0.1, 100);
    for (int n = 0; n < 200; ++n) {  // near the end at 0, coordinates are finer than a crossing
        engine = newZynDelaunayDouble(0, -1000, -1000, 1000, 1000);
        const double x = size(random), y = size(random);
        for (const auto& [px, py] : {std::pair(-x, -y), {x, y}, {300., -300.}, {-300., 300.}}) {
            this->add(px, py, 7);
        }
        EXPECT_EQ(heightsOf({0, 0}, {size(random) + 50, -100}).size(), 2U);
    }
}

TEST_F(SurfaceProfile, HasAPointAtEveryEdgeOfARandomNetwork) {
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](int low, int high) {
        return double(std::uniform_int_distribution(low, high)(random));
    };
    for (int n = 0; n < 2000; ++n) {
        if (n % 20 == 0) {
            const double margin = std::array{0.0, 1.0, 100.0}[std::size_t(n / 20 % 3)];
            engine = newZynDelaunayDouble(0, -margin, -margin, 12 + margin, 12 + margin);
            for (int i = 0; i < 30; ++i) { this->add(pick(0, 12), pick(0, 12), pick(0, 99)); }
        }
        const double scale = n % 2 == 0 ? 1 : 0.37;
        const XPnt2d a(scale * pick(-2, 14), scale * pick(-2, 14));
        const XPnt2d b(scale * pick(-2, 14), scale * pick(-2, 14));
        SCOPED_TRACE(testing::Message() << a.x << " " << a.y << " " << b.x << " " << b.y);
        const std::vector<XPnt3d> line = profileOf(a, b);
        // Between two points the surface has no bend; in a gap there is none.
        for (std::size_t i = 1; i < line.size(); ++i) {
            const std::size_t gap = std::isnan(line[i].z) ? 1 : 0;
            const XPnt3d p = line[i - 1], q = line[i + gap];
            const double z = height((p.x + q.x) / 2, (p.y + q.y) / 2);
            EXPECT_THAT(z, NanSensitiveDoubleNear(gap == 1 ? nan : (p.z + q.z) / 2, 1e-9));
            i += gap;
        }
        for (const XPnt2d& end : {a, b}) {
            const bool isThere =
                !line.empty() && ((line[0].x == end.x && line[0].y == end.y) ||
                                  (line.back().x == end.x && line.back().y == end.y));
            const bool isInside = !std::isnan(height(end.x, end.y));
            const bool mayRound = isThere && scale != 1;
            if (!mayRound) { EXPECT_EQ(isThere, isInside); }
        }
        const bool isMet = std::ranges::any_of(line, [](auto& p) { return p.z == p.z; });
        for (int k = 1; k < 16 && !isMet; ++k) {
            const double t = k / 16.0;
            EXPECT_TRUE(std::isnan(height(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y))));
        }
    }
}

TEST_F(SurfaceProfile, SeparatesItsPartsByGaps) {
    // A triangle with a corner of the frame is between the points at the lower left.
    engine = newZynDelaunayDouble(0, 0, 0, 100, 100);
    add(18, 2, 1), add(2, 18, 2), add(11, 11, 3), add(40, 2, 4), add(2, 40, 5);
    EXPECT_EQ(heightsOf({18, 2}, {2, 18}), (Heights{1, -99, 2}));

    std::vector<XPnt3d> grid;  // a hull that is not linked to the frame
    for (int n = 0; n < 25; ++n) { grid.emplace_back(n / 5, n % 5, n / 5 + 10 * (n % 5)); }
    const auto hull = support::arrayOf<double>(grid);
    engine = newZynDelaunayDouble(0, -10, -10, 10, 10);
    if (!engine->triangulate(hull.get())) { GTEST_SKIP() << "there is no generator"; }
    for (const double far : {-1.0, -10.0, -20.0}) {
        for (const int y : {0, 2, 4}) {
            const double z = 10 * y;
            EXPECT_EQ(heightsOf({far, z / 10}, {6, z / 10}),
                      (Heights{z, z + 1, z + 2, z + 3, z + 4}));
        }
        EXPECT_EQ(heightsOf({3, far}, {3, 0}), (Heights{3}));
        EXPECT_EQ(heightsOf({far, 5}, {far, -5}), Heights{});
    }
}

}  // namespace
