// Networks of families of points that are hard to triangulate: each is valid, and Delaunay by exact
// arithmetic.
#include <zyn/network.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "point_sets.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;
using support::PointSet;
using support::Scale;

/// Returns how many points are finite and in the frame, with duplicates only if the set keeps them.
template <class Real>
int countOfValid(const PointSet& set) {
    const Real minX = Real(set.minX), minY = Real(set.minY), maxX = Real(set.maxX),
               maxY = Real(set.maxY);
    std::vector<std::pair<Real, Real>> places;
    for (const XPnt3d& p : set.points) {
        const Real x = Real(p.x), y = Real(p.y);
        if (minX <= x && x <= maxX && minY <= y && y <= maxY && std::isfinite(p.z)) {
            places.emplace_back(x, y);
        }
    }
    if (set.duplicates) { return int(places.size()); }
    places.insert(places.end(), {{minX, minY}, {maxX, minY}, {maxX, maxY}, {minX, maxY}});
    std::ranges::sort(places);
    return int(std::unique(places.begin(), places.end()) - places.begin()) - 4;
}

enum class Way { onePointAtATime, allAtOnce };

/// Inserts the points and checks the network with both validators.
template <class Real>
void expectValidNetwork(const PointSet& set, Way way) {
    support::Network<Real> network(set);
    const ref_ptr<Pnt3Array<Real>> points = support::arrayOf<Real>(set.points);
    auto* const e = network.engine.get();
    const Real tolerance = set.duplicates ? Real(-1) : Real(0);
    int taken = 0;
    if (way == Way::allAtOnce) {
        taken = addPoints<Real>(e, points.get(), tolerance);
    } else {
        for (XPnt3<Real>& p : *points) { taken += e->addPoint(&p, tolerance); }
    }
    EXPECT_EQ(taken, countOfValid<Real>(set));
    EXPECT_EQ(e->triangleCount(), 2 + 2 * taken);
    EXPECT_EQ(support::faultOf(*e, {.duplicates = set.duplicates, .vertices = 4 + taken}), "");
    EXPECT_EQ(validate<Real>(e, !set.duplicates).toStdString(), "");
}

class PointFamily : public testing::TestWithParam<std::string_view> {};

/// Twenty thousand points run at one scale, which the seed selects. They are inserted all at once,
/// because in random order along a line each walk would be long. ZYN_ALL_SIZES runs all of them.
TEST_P(PointFamily, FormsAValidDelaunayNetwork) {
    const unsigned seed = support::newSeed();
    const bool isFull = std::getenv("ZYN_ALL_SIZES") != nullptr;
    for (std::size_t s = 0; s < std::size(support::scales); ++s) {
        const Scale& scale = support::scales[s];
        for (const int count : {0, 1, 2, 3, 10, 1000, 20000}) {
            if (count == 20000 && !isFull && s != seed % std::size(support::scales)) { continue; }
            SCOPED_TRACE(std::string(scale.name) + ", " + std::to_string(count));
            const PointSet set = support::makePointSet(GetParam(), seed, count, scale);
            if (count <= 1000 || isFull) {
                expectValidNetwork<double>(set, Way::onePointAtATime);
                expectValidNetwork<float>(set, Way::onePointAtATime);
            }
            if (count >= 1000) {
                expectValidNetwork<double>(set, Way::allAtOnce);
                expectValidNetwork<float>(set, Way::allAtOnce);
            }
        }
    }
}

constexpr auto nameOf = [](const auto& param) { return std::string(param.param); };
INSTANTIATE_TEST_SUITE_P(, PointFamily, testing::ValuesIn(support::pointSetNames()), nameOf);
INSTANTIATE_TEST_SUITE_P(Wild, PointFamily, testing::ValuesIn(support::wildPointSetNames()),
                         nameOf);

TEST(Delaunay, AHundredThousandPointsFormAValidNetwork) {
    const PointSet set = support::uniformPoints(100000, support::newSeed());
    expectValidNetwork<double>(set, Way::onePointAtATime);
    expectValidNetwork<float>(set, Way::onePointAtATime);
}

}  // namespace
