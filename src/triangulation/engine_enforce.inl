// DelaunayEngine: enforcing an edge by flips.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/flip.h"

namespace zyn::detail {
namespace {

/// Returns the triangles from `from`, which contains a, to the one that contains b. Stops after
/// `limit` triangles: only damaged links make a path that long.
template <class Real>
std::vector<TinRecord<Real>*> pathAlong(TinRecord<Real>* from, const Real* a, const Real* b,
                                        std::size_t limit) {
    std::vector<TinRecord<Real>*> path;
    for (TinRecord<Real>* t = from; t != nullptr && path.size() < limit; t = t->find(b, a)) {
        path.push_back(t);
    }
    return path;
}

/// Returns whether flipping the edge opposite corner `p` leaves two counter-clockwise triangles.
/// The float records decide this by plain products, and rounding can reverse the result.
template <class Real>
bool flipsCleanly(const TinRecord<Real>* t, const Real* p) {
    const int i = t->index(p);
    const TinRecord<Real>* const n = i == 3 ? nullptr : t->neighbor[i];
    const int j = n == nullptr ? 3 : n->index(t);
    if (j == 3) { return false; }
    const Xy corner = xyOf(p);
    const Xy opposite = xyOf(n->vertex[j]);
    return orientation(corner, xyOf(t->vertex[after[i]]), opposite) > 0 &&
           orientation(corner, opposite, xyOf(t->vertex[before[i]])) > 0;
}

}  // namespace

template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::enforceEdge(Real* a, Real* b, Tri* hint) {
    if (a == nullptr || b == nullptr || Pool::count() == 0) { return nullptr; }
    Tri* start = locateFrom(hint != nullptr ? hint : Pool::at(0), xyOf(a));
    if (start == nullptr) { return nullptr; }

    // Each pass starts in the same triangle. In exact arithmetic every flip removes one crossing
    // edge, so there are at most as many passes as crossings. The limit is for the float records
    // and for damaged networks.
    for (std::size_t passes = 0, mostPasses = 0; passes <= mostPasses; ++passes) {
        const std::vector<Tri*> path = pathAlong(start, a, b, Pool::count() + 1);
        const std::size_t crossings = path.size() - 1;
        if (passes == 0) { mostPasses = crossings; }
        if (path.size() > Pool::count()) { break; }  // damaged links form a loop

        std::vector<Real*> apex(crossings);
        for (std::size_t i = crossings; i-- > 0;) {
            apex[i] = path[i]->vertex[path[i]->index(path[i + 1])];
        }
        std::size_t flips = 0;
        for (std::size_t i = crossings; i-- > 0;) {
            if (flipsCleanly(path[i], apex[i]) && path[i]->intersect(apex[i], a, b)) { ++flips; }
        }
        if (flips == 0 || flips == crossings) { break; }
    }
    return start;
}

}  // namespace zyn::detail
