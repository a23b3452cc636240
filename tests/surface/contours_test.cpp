// Contours and volumes of a network.
#include <zyn/network.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <set>
#include <vector>

#include "network.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

constexpr double pi = std::numbers::pi;

template <class Real>
ref_ptr<Pnt3dArrayArray> contoursOf(support::Network<Real>& network, std::vector<double> levels,
                                    double maxEdge = anyEdge) {
    const ref_ptr<DoubleArray> list = newDoubleArray();
    for (const double level : levels) { list->append(level); }
    return contours(network.engine.get(), list.get(), maxEdge);
}
bool isClosed(Pnt3dArray* line) {
    return line->first().x == line->last().x && line->first().y == line->last().y;
}
/// Returns the area in the line, positive if it runs counter-clockwise.
double areaIn(Pnt3dArray* line) {
    double sum = 0;
    for (int i = 1; i < line->size(); ++i) {
        const XPnt3d p = line->get(i - 1), q = line->get(i);
        sum += (p.x * q.y - p.y * q.x) / 2;
    }
    return sum;
}
template <class Real>
class ContoursAndVolumes : public testing::Test {};
TYPED_TEST_SUITE(ContoursAndVolumes, support::Precisions);

TYPED_TEST(ContoursAndVolumes, AgreeWithConesAndRasters) {
    for (const double slope : {-1.0, 1.0}) {  // a peak, a pit
        support::Network<TypeParam> cone(-3, -3, 3, 3);
        for (int n = 0; n < 121 * 121; ++n) {
            const double x = (n % 121 - 60) / 50.0, y = (n / 121 - 60) / 50.0;
            cone.add(x, y, slope * std::hypot(x, y));
        }
        const double level = slope * 0.777;
        const auto lines = contoursOf(cone, {level, 7, slope * 0.5, NAN, HUGE_VAL, -HUGE_VAL});
        ASSERT_EQ(lines->size(), 2);
        ASSERT_TRUE(isClosed(lines->get(0)));
        ASSERT_TRUE(isClosed(lines->get(1)));
        EXPECT_NEAR(areaIn(lines->get(0)), -slope * pi * 0.777 * 0.777, 1e-3);
        EXPECT_NEAR(areaIn(lines->get(1)), -slope * pi * 0.5 * 0.5, 1e-3);
        const SurfaceVolume v = volume(cone.engine.get(), level);
        EXPECT_NEAR(slope < 0 ? v.cut : v.fill, pi / 3 * std::pow(0.777, 3), 1e-3);
        EXPECT_NEAR(slope < 0 ? v.cutArea : v.fillArea, -slope * areaIn(lines->get(0)), 1e-6);
        // The sum over a grid of heights agrees.
        const ref_ptr<MatrixDbl> out = newMatrixDbl();
        ASSERT_TRUE(rasterize(cone.engine.get(), {-1.2, -1.2, 1.2, 1.2}, 500, 500, out.get()));
        double sum = 0;
        for (int n = 0; n < 250000; ++n) { sum += out->data()[n] - level; }
        EXPECT_NEAR(sum * 5.76 / 250000, v.cut - v.fill, 1e-5);
    }
}

constexpr int side = 6;
bool isOnRim(XPnt3d p) { return std::min({p.x, p.y, side - p.x, side - p.y}) == 0; }

/// Returns the number of segments of the contour: one for each triangle that the level crosses, and
/// one for each edge at the level that has lower ground on one side only.
template <class Real>
std::size_t segmentCount(support::Network<Real>& network, double level) {
    std::size_t count = 0;
    for (const auto& t : network.records()) {
        if (network.engine->isFrameTriangle(&t)) { continue; }
        double z[3];
        for (std::size_t i = 0; i < 3; ++i) { z[i] = double(t.vertex[i][2]); }
        const auto [low, high] = std::minmax({z[0], z[1], z[2]});
        count += low < level && level < high;
        for (std::size_t i = 0; i < 3; ++i) {
            const std::size_t a = (i + 1) % 3, b = (i + 2) % 3;
            if (z[i] >= level || z[a] != level || z[b] != level) { continue; }
            const auto* const n = t.neighbor[i];
            count += network.engine->isFrameTriangle(n) ||
                     double(n->vertex[n->index(t.vertex[a], t.vertex[b])][2]) >= level;
        }
    }
    return count;
}

TYPED_TEST(ContoursAndVolumes, SeparateHigherFromLowerGround) {
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](unsigned count) { return int(random() % count); };
    for (int n = 0; n < 300; ++n) {
        SCOPED_TRACE(n);
        // Small heights on a grid with gaps: every whole level has vertices, edges and flat ground.
        const bool hasLowRim = n % 2 == 0;
        const unsigned heights = 2 + unsigned(pick(3));
        support::Network<TypeParam> hills(-20, -20, side + 20, side + 20);
        for (int x = 0; x <= side; ++x) {
            for (int y = 0; y <= side; ++y) {
                const bool isRim = isOnRim({double(x), double(y), 0});
                if (!isRim && pick(8) == 0) { continue; }
                hills.add(x, y, isRim && hasLowRim ? -1 : pick(heights));
            }
        }
        auto* const engine = hills.engine.get();
        for (const double level : {-1.0, 0.0, 0.5, 1.0, 1.0 / 3, 2.0, 3.0}) {
            SCOPED_TRACE(level);
            using Segment = std::array<double, 4>;
            std::set<Segment> segments;
            double area = 0;
            const auto lines = contoursOf(hills, {level});
            for (Pnt3dArray* const line : *lines) {
                ASSERT_GE(line->size(), 2);
                if (!isClosed(line)) {
                    EXPECT_TRUE(isOnRim(line->first())) << testing::PrintToString(line->first());
                    EXPECT_TRUE(isOnRim(line->last())) << testing::PrintToString(line->last());
                }
                area += areaIn(line);
                for (int i = 1; i < line->size(); ++i) {
                    const XPnt3d p = line->get(i - 1), q = line->get(i);
                    EXPECT_EQ(p.z, level);
                    const Segment forth{p.x, p.y, q.x, q.y}, back{q.x, q.y, p.x, p.y};
                    EXPECT_TRUE(segments.insert(std::min(forth, back)).second);
                    const double dx = (q.x - p.x) * 1e-6, dy = (q.y - p.y) * 1e-6;
                    const double x = (p.x + q.x) / 2, y = (p.y + q.y) / 2;
                    double left = level, right = -HUGE_VAL;
                    heightAt(engine, x - dy, y + dx, left), heightAt(engine, x + dy, y - dx, right);
                    EXPECT_GE(left, level - 1e-12);
                    EXPECT_LT(right, level);
                    EXPECT_GT(dx * dx + dy * dy, 0);
                }
            }
            EXPECT_EQ(segments.size(), segmentCount(hills, level));
            if (hasLowRim && level > -1) {
                EXPECT_NEAR(area, volume(engine, level - 1e-9).cutArea, 1e-6);
            }
        }
    }
}

TYPED_TEST(ContoursAndVolumes, AreEmptyWithoutASurface) {
    support::Network<TypeParam> network(-9, -9, 19, 19);
    EXPECT_EQ(contoursOf(network, {0, 1, 5})->size(), 0);
    network.add(0, 0, 0), network.add(4, 0, 4), network.add(0, 3, 4);
    EXPECT_EQ(contours(network.engine.get(), nullptr)->size(), 0);
    EXPECT_EQ(contours<TypeParam>(nullptr, ref_ptr(newDoubleArray()).get())->size(), 0);
    EXPECT_EQ(volume<TypeParam>(nullptr, 0).cut, 0);
    for (const auto& [maxEdge, isThere] : {std::pair(5.7, true), {5.6, false}}) {  // from 0 to 4 up
        EXPECT_EQ(contoursOf(network, {2, 1}, maxEdge)->size(), isThere ? 2 : 0);
        EXPECT_NEAR(volume(network.engine.get(), -1, maxEdge).cut, isThere ? 22 : 0, 1e-9);
    }
}

TYPED_TEST(ContoursAndVolumes, DivideATriangleWhereThePlaneCutsIt) {
    const double all[] = {-3, -1, 0, 2, 5};
    for (int n = 0; n < 125; ++n) {
        const double a = all[n / 25], b = all[n / 5 % 5], c = all[n % 5];
        SCOPED_TRACE(testing::Message() << a << " " << b << " " << c);
        support::Network<TypeParam> network(-90, -90, 190, 190);
        network.add(0, 0, a + 7), network.add(4, 0, b + 7), network.add(0, 3, c + 7);
        const SurfaceVolume v = volume(network.engine.get(), 7);
        EXPECT_NEAR(v.cut - v.fill, 2 * (a + b + c), 1e-12);
        EXPECT_NEAR(v.cutArea + v.fillArea, 6, 1e-12);
        // The expected values are divided differences of truncated powers of distinct heights.
        const double h[] = {a - 1e-4, b - 2e-4, c - 3e-4};
        double cut = 0, cutArea = 0;
        for (int i = 0; i < 3; ++i) {
            const double top = std::max(h[i], 0.0);
            const double share = top * top / (h[i] - h[(i + 1) % 3]) / (h[i] - h[(i + 2) % 3]);
            cut += 2 * share * top;
            cutArea += 6 * share;
        }
        EXPECT_NEAR(v.cut, cut, 5e-3);
        EXPECT_NEAR(v.cutArea, cutArea, 5e-3);
    }
}

}  // namespace
