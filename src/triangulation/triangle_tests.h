// Exact tests of whole triangles.
#pragma once

#include <zyn/tin.h>

#include "triangulation/predicates.h"

namespace zyn::detail {

/// Returns 1 if the corners run counter-clockwise, -1 if clockwise, 0 if the triangle is
/// degenerate.
template <class Real>
[[nodiscard]] inline int orientationOf(const TinRecord<Real>* t) {
    return orientation(xyOf(t->vertex[0]), xyOf(t->vertex[1]), xyOf(t->vertex[2]));
}

/// Returns whether the triangle exists, has an area, and runs counter-clockwise.
template <class Real>
[[nodiscard]] inline bool hasArea(const TinRecord<Real>* t) {
    return t != nullptr && orientationOf(t) > 0;
}

/// Returns whether the triangle has an area and contains q, edges included.
template <class Real>
[[nodiscard]] inline bool contains(const TinRecord<Real>* t, Xy q) {
    const Xy a = xyOf(t->vertex[0]), b = xyOf(t->vertex[1]), c = xyOf(t->vertex[2]);
    return orientation(a, b, q) >= 0 && orientation(b, c, q) >= 0 && orientation(c, a, q) >= 0 &&
           hasArea(t);
}

}  // namespace zyn::detail
