// One step of flipping to a Delaunay triangulation.
#pragma once

#include "triangulation/flip.h"
#include "triangulation/predicates.h"

namespace zyn::detail {

/// Returns the slot of `n` that links back to `t` across the edge of slot `i`, or 3 if there is
/// none. Compares the ends of the edge, since two triangles may share several edges beside points
/// in one place.
template <class Real>
inline int slotBack(const TinRecord<Real>* t, int i, const TinRecord<Real>* n) {
    for (int j = 0; n != nullptr && j < 3; ++j) {
        if (n->neighbor[j] == t && n->vertex[after[j]] == t->vertex[before[i]] &&
            n->vertex[before[j]] == t->vertex[after[i]]) {
            return j;
        }
    }
    return 3;
}

/// Flips the first edge of `t` that fails the exact in-circle test and for which `mayFlip(n, i, j)`
/// returns true. There, n is the neighbour in slot i of t, and t is the neighbour in slot j of n.
/// Returns n, or null if no edge was flipped.
template <class Real, class MayFlip>
TinRecord<Real>* flipIllegalEdge(TinRecord<Real>* t, MayFlip mayFlip) {
    for (int i = 0; i < 3; ++i) {
        TinRecord<Real>* const n = t->neighbor[i];
        const int j = n == nullptr ? 3 : n->index(t);
        if (j == 3 ||
            inCircle(t->vertex[i], t->vertex[after[i]], t->vertex[before[i]], n->vertex[j]) <= 0) {
            continue;
        }
        if (mayFlip(n, i, j)) {
            flipEdge(t, i, n, j);
            return n;
        }
    }
    return nullptr;
}

}  // namespace zyn::detail
