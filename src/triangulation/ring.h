// The triangles around a vertex.
#pragma once

#include "triangulation/flip.h"

#include <cstddef>

namespace zyn::detail {

/// Calls `use(t, i)` for each triangle around the vertex at corner `slot` of `start`; the vertex is
/// corner i of t. Goes around once, or from `start` to an open edge in both directions. Stops when
/// `use` returns true, or after `most` triangles, since damaged links may form a loop.
template <class Real, class Use>
void forEachAround(TinRecord<Real>* start, int slot, std::size_t most, Use use) {
    const Real* const v = start->vertex[slot];
    if (use(start, slot)) { return; }
    for (const auto& side : {after, before}) {
        for (TinRecord<Real>* t = start->neighbor[side[slot]]; t != start; --most) {
            const int i = t == nullptr || most == 0 ? 3 : t->index(v);
            if (i == 3) { break; }
            if (use(t, i)) { return; }
            t = t->neighbor[side[i]];
            if (t == start) { return; }
        }
    }
}

}  // namespace zyn::detail
