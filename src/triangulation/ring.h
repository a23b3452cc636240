// The triangles round a vertex.
#pragma once

#include "triangulation/flip.h"

#include <cstddef>

namespace zyn::detail {

/// Calls `use(t, i)` for the triangles round the vertex at corner `slot` of `start`, where it is corner
/// i: round to `start` again, or from there to an open edge either way, until `use` gives true. No more
/// than `most` of them: links of a damaged network may circle.
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
