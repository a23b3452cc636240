// Heights, profiles and grids of a surface.
#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string_view>
#include <vector>

#include "network.h"
#include "point_sets.h"
#include "seed.h"

namespace {

using namespace zyn;

using Heights = std::vector<double>;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <class Real>
class SurfaceHeightsTest : public testing::Test, protected support::Network<Real> {
protected:
    SurfaceHeightsTest() : support::Network<Real>(-100, -100, 200, 200) {}

    void addGrid(int side, double slopeX, double slopeY) {
        for (int x = 0; x < side; ++x) {
            for (int y = 0; y < side; ++y) { this->add(x, y, slopeX * x + slopeY * y); }
        }
    }
    double height(double x, double y) {
        double z = nan;
        const bool found = heightAt(this->engine.get(), x, y, z);
        EXPECT_EQ(found, !std::isnan(z));
        return z;
    }
    /// The points of a profile, which also runs backwards, in order, on the surface.
    std::vector<XPnt3d> profileOf(XPnt2d a, XPnt2d b) {
        const auto line = profile(this->engine.get(), a, b);
        const auto back = profile(this->engine.get(), b, a);
        EXPECT_EQ(line->size(), back->size());
        const std::vector<XPnt3d> found(line->begin(), line->end());
        const XPnt2d ab(b.x - a.x, b.y - a.y);
        double last = -1;
        for (std::size_t i = 0; i < found.size(); ++i) {
            const XPnt3d p = found[i];
            const double along = (p.x - a.x) * ab.x + (p.y - a.y) * ab.y;
            EXPECT_GE(along, last);
            last = along;
            EXPECT_NEAR((p.x - a.x) * ab.y - (p.y - a.y) * ab.x, 0, 1e-9);
            EXPECT_TRUE(i == 0 || found[i - 1] != p);
            if (const double z = height(p.x, p.y); !std::isnan(z)) {  // NaN beside the rim
                EXPECT_TRUE(std::isnan(p.z) || std::abs(p.z - z) < 1e-9);
            }
        }
        for (int i = 0; i < std::min(line->size(), back->size()); ++i) {
            const double z = line->get(i).z, other = back->get(back->size() - 1 - i).z;
            EXPECT_TRUE((std::isnan(z) && std::isnan(other)) || std::abs(z - other) < 1e-9);
        }
        return found;
    }
    Heights heightsOf(XPnt2d a, XPnt2d b) {  // -99 for a gap
        Heights result;
        for (const XPnt3d& p : profileOf(a, b)) { result.push_back(std::isnan(p.z) ? -99 : p.z); }
        return result;
    }
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(SurfaceHeightsTest, Precisions);
using SurfaceProfileTest = SurfaceHeightsTest<double>;

TYPED_TEST(SurfaceHeightsTest, AreThoseOfThePlaneAndClosedOnTheRim) {
    EXPECT_TRUE(std::isnan(this->height(1, 1)));
    this->addGrid(9, 0.5, -0.25);
    const ref_ptr<Pnt3dArray> places = newPnt3dArray();
    for (int i = -4; i <= 36; ++i) {
        for (int j = -4; j <= 36; ++j) { places->append(XPnt3d(i / 4.0, j / 4.0, 7)); }
    }
    for (const auto& [x, y] : {std::pair(nan, 0.0), {0.0, HUGE_VAL}, {1e300, 1.0}, {300.0, 0.0}}) {
        places->append(XPnt3d(x, y, 7));
    }
    EXPECT_EQ(heightAt(this->engine.get(), places.get()), 33 * 33);
    for (const XPnt3d& p : *places) {
        const bool isInside = p.x >= 0 && p.x <= 8 && p.y >= 0 && p.y <= 8;
        EXPECT_TRUE(isInside ? p.z == 0.5 * p.x - 0.25 * p.y : std::isnan(p.z))
            << p.x << " " << p.y;
        EXPECT_TRUE(std::isnan(p.z) ? std::isnan(this->height(p.x, p.y))
                                    : this->height(p.x, p.y) == p.z);
    }
    DelaunayInterface<TypeParam>* const none = nullptr;
    double z = 3;
    EXPECT_TRUE(!heightAt(none, 1, 1, z) && !heightAt(this->engine.get(), 9, 1, z) && z == 3);
    EXPECT_EQ(heightAt(none, places.get()), 0);
    EXPECT_TRUE(std::isnan(places->get(0).z));
    EXPECT_EQ(heightAt(this->engine.get(), nullptr), 0);
}

TYPED_TEST(SurfaceHeightsTest, OfARasterAreThoseAtTheCentres) {
    const unsigned seed = support::newSeed();
    for (const std::string_view name : support::pointSetNames()) {
        if (name == "Subnormals") {
            continue;
        }  // exact products of hundreds of digits for each cell
        SCOPED_TRACE(name);
        const support::PointSet set = support::makePointSet(name, seed);
        support::Network<TypeParam> network(set);
        for (const XPnt3d& p : set.points) { network.add(p.x, p.y, p.z, set.duplicates ? -1 : 0); }
        // A triangle of no area, as there is beside points in one place, is a step in the surface.
        const double most = set.duplicates ? 2 : 1e-6;
        for (const int cells : {1, 61, 100}) {
            const Enve2d box(set.minX, set.minY, set.maxX + 1, set.maxY);
            const ref_ptr<MatrixDbl> out = newMatrixDbl();
            ASSERT_TRUE(rasterize(network.engine.get(), box, cells, cells + 3, out.get()));
            ASSERT_TRUE(out->rows() == cells + 3 && out->cols() == cells);
            const ref_ptr<Pnt3dArray> centres = newPnt3dArray();
            for (int n = 0; n < cells * (cells + 3); ++n) {
                centres->append(XPnt3d(box.minX + (n % cells + 0.5) * (box.Width() / cells),
                                       box.minY + (n / cells + 0.5) * (box.Hight() / (cells + 3)),
                                       0));
            }
            heightAt(network.engine.get(), centres.get());
            for (int n = 0; n < centres->size(); ++n) {
                const double z = centres->get(n).z, cell = out->data()[n];
                ASSERT_TRUE(std::isnan(z) ? std::isnan(cell) : std::abs(z - cell) < most)
                    << n << ": " << z << ", " << cell;
            }
        }
    }
}

TYPED_TEST(SurfaceHeightsTest, OfARasterOnTheVerticesComeBackExactly) {
    const double x0 = 432100.5, y0 = 5411200.5;
    support::Network<TypeParam> network(x0 - 50, y0 - 50, x0 + 90, y0 + 90);
    std::mt19937 random(support::newSeed());
    std::vector<float> heights;
    for (int n = 0; n < 40 * 30; ++n) {
        heights.push_back(std::uniform_real_distribution<float>(-1, 1)(random));
        network.add(x0 + n % 40, y0 + n / 40, heights.back());
    }
    // One row and column of cells more on each side.
    const Enve2d box(x0 - 1.5, y0 - 1.5, x0 + 40.5, y0 + 30.5);
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    ASSERT_TRUE(rasterize(network.engine.get(), box, 42, 32, out.get()));
    for (int r = 0; r < 32; ++r) {
        for (int c = 0; c < 42; ++c) {
            const bool isOutside = r == 0 || c == 0 || r == 31 || c == 41;
            EXPECT_TRUE(isOutside
                            ? std::isnan(out->get(r, c))
                            : out->get(r, c) == double(heights[std::size_t(40 * r + c - 41)]));
        }
    }
    ASSERT_TRUE(rasterize(network.engine.get(), box, 42, 32, out.get(), 0.5));
    EXPECT_TRUE(std::all_of(out->data(), out->data() + 42 * 32, [](double z) { return z != z; }));
}

TYPED_TEST(SurfaceHeightsTest, OfARasterHoldOnLongEdgesAndBesideFlatTriangles) {
    // The edge runs through (0, 0) and (3, 1); the other triangles are far from there.
    support::Network<TypeParam> network(-1e10, -1e10, 1e10, 1e10);
    for (const auto& [x, y] : {std::pair(-3 << 20, -1 << 20), {6 << 20, 2 << 20}, {0, 3 << 20}}) {
        network.add(x, y, y);
    }
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    ASSERT_TRUE(rasterize(network.engine.get(), Enve2d(-0.5, -0.5, 6.5, 2.5), 7, 3, out.get()));
    for (int n = 0; n < 21; ++n) {
        const int x = n % 7, y = n / 7;
        EXPECT_TRUE(x > 3 * y ? std::isnan(out->get(y, x)) : std::abs(out->get(y, x) - y) < 1e-8)
            << x << " " << y;
    }
    // Twice the same point, and an edge from there: along it, the heights go down evenly.
    for (const bool isFirst : {true, false}) {
        support::Network<TypeParam> twice(-9, -9, 19, 19);
        twice.add(isFirst ? 0 : 8, 0, isFirst ? 8 : 0, -1), twice.add(0, 0, 8, -1);
        twice.add(8, 0, 0, -1), twice.add(4, 3, 4, -1), twice.add(4, -3, 4, -1);
        ASSERT_TRUE(rasterize(twice.engine.get(), Enve2d(-0.5, -0.5, 8.5, 0.5), 9, 1, out.get()));
        for (int x = 0; x <= 8; ++x) { EXPECT_NEAR(out->get(0, x), 8 - x, 1e-12); }
    }
}

TYPED_TEST(SurfaceHeightsTest, OfARasterAreRefusedWithoutAPlaceForThem) {
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    out->setSize(2, 3, 5.0);
    auto* const surface = this->engine.get();
    const Enve2d good(0, 0, 1, 1);
    EXPECT_FALSE(rasterize<TypeParam>(nullptr, good, 4, 4, out.get()));
    EXPECT_FALSE(rasterize(surface, good, 0, 4, out.get()) ||
                 rasterize(surface, good, 4, -1, out.get()));
    for (const Enve2d& bad :
         {Enve2d(), Enve2d(0, 0, 0, 1), Enve2d(1, 1, 0, 0), Enve2d(0, nan, 1, 1),
          Enve2d(0, 0, HUGE_VAL, 1), Enve2d(-HUGE_VAL, 0, 1, 1)}) {
        EXPECT_FALSE(rasterize(surface, bad, 4, 4, out.get()));
    }
    EXPECT_FALSE(rasterize(surface, good, 4, 4, nullptr));
    EXPECT_TRUE(out->rows() == 2 && out->cols() == 3 && out->get(1, 2) == 5);
    EXPECT_TRUE(rasterize(surface, good, 1, 1, out.get()) && std::isnan(out->get(0, 0)));
}

TEST_F(SurfaceProfileTest, RunsThroughVerticesAlongEdgesAndAlongTheRim) {
    this->addGrid(4, 1, 10);
    EXPECT_EQ(heightsOf({-1, 1}, {4, 1}), (Heights{10, 11, 12, 13}));     // vertices, edges
    EXPECT_EQ(heightsOf({-1, 0}, {4, 0}), (Heights{0, 1, 2, 3}));         // the rim
    EXPECT_EQ(heightsOf({3, 1.5}, {3, 9}), (Heights{18, 23, 33}));        // of it, a part
    EXPECT_EQ(heightsOf({0.25, 1}, {0.75, 1}), (Heights{10.25, 10.75}));  // within an edge
    EXPECT_EQ(heightsOf({1, 1}, {1, 1}), Heights{11});
    EXPECT_EQ(heightsOf({-150, 2}, {250, 2}), (Heights{20, 21, 22, 23}));  // beyond the frame
    EXPECT_EQ(heightsOf({-1, 0.5}, {0, 0.5}), Heights{5});                 // to the rim only
    EXPECT_EQ(heightsOf({0, 0}, {-1, -1}), Heights{0});
    EXPECT_EQ(heightsOf({-1, 1}, {1, -1}), Heights{0});  // past a corner
    EXPECT_EQ(heightsOf({-1, 2}, {-1, -2}), Heights{});
    EXPECT_EQ(heightsOf({150, 250}, {250, 150}), Heights{});
    for (const double bad : {nan, HUGE_VAL}) { EXPECT_EQ(heightsOf({0, 0}, {1, bad}), Heights{}); }
    EXPECT_EQ(profile<double>(nullptr, {0, 0}, {1, 1})->size(), 0);
}

TEST_F(SurfaceProfileTest, HasAPointAtEveryEdgeOfARandomNetwork) {
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
        // Between two points the surface is there, without a bend; in a gap it is not.
        for (std::size_t i = 1; i < line.size(); ++i) {
            const std::size_t gap = std::isnan(line[i].z) ? 1 : 0;
            const XPnt3d p = line[i - 1], q = line[i + gap];
            const double z = height((p.x + q.x) / 2, (p.y + q.y) / 2);
            EXPECT_TRUE(gap == 1 ? std::isnan(z) : std::abs(z - (p.z + q.z) / 2) < 1e-9);
            i += gap;
        }
        for (const XPnt2d& end : {a, b}) {
            const bool isThere =
                !line.empty() && ((line[0].x == end.x && line[0].y == end.y) ||
                                  (line.back().x == end.x && line.back().y == end.y));
            const bool isInside = !std::isnan(height(end.x, end.y));
            EXPECT_TRUE(isThere == isInside || (isThere && scale != 1));  // but for rounding
        }
        const bool isMet =
            std::any_of(line.begin(), line.end(), [](auto& p) { return p.z == p.z; });
        for (int k = 1; k < 16 && !isMet; ++k) {
            const double t = k / 16.0;
            EXPECT_TRUE(std::isnan(height(a.x + t * (b.x - a.x), a.y + t * (b.y - a.y))));
        }
    }
}

TEST_F(SurfaceProfileTest, TellsThePartsApart) {
    // Between the points at the lower left, a corner of the frame cuts in.
    engine = newZynDelaunayDouble(0, 0, 0, 100, 100);
    add(18, 2, 1), add(2, 18, 2), add(11, 11, 3), add(40, 2, 4), add(2, 40, 5);
    EXPECT_EQ(heightsOf({18, 2}, {2, 18}), (Heights{1, -99, 2}));

    const ref_ptr<Pnt3dArray> grid = newPnt3dArray();  // a hull that is not linked to the frame
    for (int n = 0; n < 25; ++n) { grid->append(XPnt3d(n / 5, n % 5, n / 5 + 10 * (n % 5))); }
    engine = newZynDelaunayDouble(0, -10, -10, 10, 10);
    if (!engine->triangulate(grid.get())) { GTEST_SKIP() << "there is no generator"; }
    for (const double far : {-1.0, -10.0, -20.0}) {
        EXPECT_EQ(heightsOf({far, 2}, {6, 2}), (Heights{20, 21, 22, 23, 24}));
        EXPECT_EQ(heightsOf({far, 0}, {6, 0}), (Heights{0, 1, 2, 3, 4}));
        EXPECT_EQ(heightsOf({far, 4}, {6, 4}), (Heights{40, 41, 42, 43, 44}));
        EXPECT_EQ(heightsOf({3, far}, {3, 0}), (Heights{3}));
        EXPECT_EQ(heightsOf({far, 5}, {far, -5}), Heights{});
    }
}

}  // namespace
