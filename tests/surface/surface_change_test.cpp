// Surface: many small changes.
#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "seed.h"

namespace {

using namespace zyn;

/// Checks that heights are found at all vertices, wherever the search for a triangle starts.
void expectOwnHeights(const Surface& ground) {
    if (ground.triangleCount() == 0) { return; }
    for (const int number : ground.vertices()) {
        const XPnt3d p = ground.point(number);
        EXPECT_EQ(ground.heightAt(p.x, p.y), p.z) << number;
    }
}

// On a lattice, points fall on the rim, in line with it and on each other; beyond it the hull grows.
TEST(SurfaceChanges, KeepTheConvexHullThroughSinglePointsAndLines) {
    std::mt19937 random(support::newSeed());
    for (const int side : {4, 40, 100000}) {
        const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
        Surface ground;
        for (int n = 0; n < 600; ++n) {
            const XPnt3d p(pick(side), pick(side), pick(9));
            ground.addPoints({&p, 1});
            if (pick(5) < 2) { ground.removePoint(pick(ground.pointCount())); }
            if (n % 100 == 50) { ground.addBreaklines(std::vector<Polyline>{{p, {1, 2, 3}}}); }
            const auto fault = ground.validate();
            ASSERT_EQ(fault ? fault->text : "", "") << side << ' ' << n;
        }
        expectOwnHeights(ground);
    }
}

TEST(SurfaceChanges, FindHeightsInClustersAndAfterRemovals) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution<double> place(0, 100);
    std::vector<XPnt3d> points{{1e9, -1e9, 5}};
    for (int n = 0; n < 6000; ++n) {
        const double shift = n % 2 * 1e6;
        points.emplace_back(shift + place(random), shift + place(random), place(random));
    }
    Surface ground(points);
    expectOwnHeights(ground);
    for (int n = 0; n < 5000; ++n) { ground.removePoint(int(random() % points.size())); }
    expectOwnHeights(ground);
    EXPECT_FALSE(ground.validate());
}

}  // namespace
