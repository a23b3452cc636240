// Networks of hard families of points: valid, and Delaunay by exact arithmetic.
#include <gtest/gtest.h>

#include <string>

#include "network.h"
#include "network_check.h"
#include "point_sets.h"
#include "seed.h"

namespace {

using namespace zyn;
using support::faultOf;
using support::PointSet;

/// Inserts all points of the set; those in one place only once, unless the set means them.
template <class Real>
void expectSoundNetwork(const PointSet& set) {
    support::Network<Real> network(set);
    int accepted = 0;
    for (const XPnt3d& p : set.points) {
        if (network.add(p.x, p.y, p.z, set.duplicates ? -1 : 0)) { ++accepted; }
    }
    EXPECT_GT(accepted, 0);
    EXPECT_EQ(network.engine->triangleCount(), 2 + 2 * accepted);
    EXPECT_EQ(faultOf(*network.engine, {.duplicates = set.duplicates, .vertices = 4 + accepted}),
              "");
}

class PointFamily : public testing::TestWithParam<std::string_view> {};

TEST_P(PointFamily, GivesASoundNetwork) {
    const unsigned seed = support::newSeed();
    const PointSet set = support::makePointSet(GetParam(), seed);
    {
        SCOPED_TRACE("double");
        expectSoundNetwork<double>(set);
    }
    SCOPED_TRACE("float");
    expectSoundNetwork<float>(set);
}

INSTANTIATE_TEST_SUITE_P(, PointFamily, testing::ValuesIn(support::pointSetNames()),
                         [](const auto& param) { return std::string(param.param); });

TEST(Delaunay, AHundredThousandPointsGiveASoundNetwork) {
    const unsigned seed = support::newSeed();
    const PointSet set = support::uniformPoints(100000, seed);
    expectSoundNetwork<double>(set);
    expectSoundNetwork<float>(set);
}

}  // namespace
