// One step of the walk to the triangle that holds a point.
#pragma once

#include <zyn/tin.h>

#include "core/float_parts.h"
#include "triangulation/predicates.h"

#include <cstdint>

namespace zyn::detail {

/// The neighbour across the first edge, in the order 01, 20, 12, that q lies strictly outside of by
/// plain arithmetic, null if there is none; t itself when q lies outside of no edge. `isInside` is
/// then set when the sides leave no doubt.
template <class Real>
inline TinRecord<Real>* stepTowards(TinRecord<Real>* t, Xy q, bool& isInside) {
    // By the edges that q lies outside of: bit 0 for edge 01, 1 for 20, 2 for 12. Looked up, since a
    // branch an edge would be mispredicted at every other step.
    static constexpr signed char exit[8] = {3, 2, 1, 2, 0, 2, 1, 2};
    const Xy a = xyOf(t->vertex[0]), b = xyOf(t->vertex[1]), c = xyOf(t->vertex[2]);
    const Side ab(a, b, q), ca(c, a, q), bc(b, c, q);
    const std::uint64_t outside =
        signBit(ab.value) | signBit(ca.value) << 1U | signBit(bc.value) << 2U;
    if (outside != 0) { return t->neighbor[exit[outside]]; }
    isInside = ab.value > ab.bound && ca.value > ca.bound && bc.value > bc.bound;
    return t;
}

}  // namespace zyn::detail
