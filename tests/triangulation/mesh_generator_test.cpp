// The engine against an independent triangulation of the same points.
#include <gtest/gtest.h>
#include <triangle.h>

#include <algorithm>
#include <array>
#include <cfenv>
#include <unordered_map>
#include <vector>

#include "network.h"
#include "point_sets.h"
#include "seed.h"

namespace {

using namespace zyn;

/// The numbers of the corners of each triangle, each triple from its smallest on, in order.
using Triples = std::vector<std::array<int, 3>>;

void normalise(Triples& triples) {
    for (auto& t : triples) {
        std::rotate(t.begin(), std::min_element(t.begin(), t.end()), t.end());
    }
    std::sort(triples.begin(), triples.end());
}

/// The corners of the frame have the last four numbers.
Triples byEngine(const support::PointSet& set) {
    support::Network<double> network(set);
    std::unordered_map<const double*, int> numbers;
    for (const XPnt3d& p : set.points) {
        EXPECT_TRUE(network.add(p.x, p.y));
        numbers.emplace(network.points.back(), int(numbers.size()));
    }
    const XPnt2d corners[] = {
        {set.minX, set.minY}, {set.maxX, set.minY}, {set.maxX, set.maxY}, {set.minX, set.maxY}};
    Triples triples;
    for (const tind& t : network.records()) {
        auto& triple = triples.emplace_back();
        for (std::size_t i = 0; i < 3; ++i) {
            const double* const v = t.vertex[i];
            const auto known = numbers.find(v);
            triple[i] =
                known != numbers.end()
                    ? known->second
                    : int(set.points.size()) +
                          int(std::find(corners, corners + 4, XPnt2d(v[0], v[1])) - corners);
        }
    }
    normalise(triples);
    return triples;
}

Triples byMeshGenerator(const support::PointSet& set) {
    std::vector<double> coordinates;
    for (const XPnt3d& p : set.points) { coordinates.insert(coordinates.end(), {p.x, p.y}); }
    coordinates.insert(coordinates.end(), {set.minX, set.minY, set.maxX, set.minY, set.maxX,
                                           set.maxY, set.minX, set.maxY});
    triangulateio in = {}, out = {};
    in.pointlist = coordinates.data();
    in.numberofpoints = static_cast<int>(coordinates.size() / 2);
    char switches[] = "zQ";
    std::fenv_t environment;  // the generator changes the precision of the x87 unit
    std::fegetenv(&environment);
    triangulate(switches, &in, &out, nullptr);
    std::fesetenv(&environment);

    Triples triples(static_cast<std::size_t>(out.numberoftriangles));
    for (std::size_t i = 0; i < triples.size(); ++i) {
        std::copy_n(&out.trianglelist[3 * i], 3, triples[i].begin());
    }
    for (void* const list :
         {static_cast<void*>(out.pointlist), static_cast<void*>(out.pointmarkerlist),
          static_cast<void*>(out.trianglelist)}) {
        trifree(list);
    }
    normalise(triples);
    return triples;
}

TEST(Delaunay, TrianglesAreThoseOfTheMeshGenerator) {
    const unsigned seed = support::newSeed();
    const support::PointSet sets[] = {
        support::uniformPoints(100000, seed), support::makePointSet("Clusters", seed),
        support::makePointSet("SpacingNano", seed), support::makePointSet("Spiral", seed)};
    for (const support::PointSet& set : sets) {
        EXPECT_TRUE(byEngine(set) == byMeshGenerator(set));
    }
}

}  // namespace
