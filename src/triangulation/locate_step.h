// One step of the walk to the triangle that contains a point.
#pragma once

#include <zyn/tin.h>

#include "core/float_parts.h"
#include "triangulation/predicates.h"

#include <cstdint>

namespace zyn::detail {

/// Tests the edges 01, 20 and 12 in this order and in plain arithmetic. Returns the neighbour across
/// the first edge that has q strictly outside, or null if that edge is open. If there is no such
/// edge, returns t and sets `isInside` if the signs are certain.
template <class Real>
inline TinRecord<Real>* stepTowards(TinRecord<Real>* t, Xy q, bool& isInside) {
    // Indexed by the edges that have q outside: bit 0 for edge 01, bit 1 for 20, bit 2 for 12. A
    // table, since branches would be mispredicted at every other step.
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
