// Surface: many small changes.
#include <zyn/surface.h>

#include "seed.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <vector>

namespace zyn {
namespace {

// On a lattice, points fall on the rim, in line with it and on each other; beyond it the hull grows.
TEST(SurfaceChangeTest, StaysTheConvexHullThroughSinglePoints) {
    std::mt19937 random(support::newSeed());
    for (const int side : {4, 40, 100000}) {
        const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
        Surface ground;
        for (int n = 0; n < 600; ++n) {
            const XPnt3d p(pick(side), pick(side), pick(9));
            ground.addPoints({&p, 1});
            if (pick(5) < 2) { ground.removePoint(pick(ground.pointCount())); }
            if (n % 200 == 50) { ground.addBreaklines(std::vector<Polyline>{{p, {1, 2, 3}}}); }
            const auto fault = ground.validate();
            ASSERT_EQ(fault ? fault->text : "", "") << side << ' ' << n;
        }
        // Whatever the search for a triangle starts from, it ends in one that holds the place.
        for (const int number : ground.vertices()) {
            const XPnt3d p = ground.point(number);
            if (ground.triangleCount() > 0) { EXPECT_EQ(ground.heightAt(p.x, p.y), p.z); }
        }
    }
}

}  // namespace
}  // namespace zyn
