// Positions of vertices in double.
#pragma once

#include <zyn/geometry.h>
#include <zyn/tin.h>

#include <algorithm>

namespace zyn::detail {

/// Returns the position and height of a vertex.
template <class Real>
[[nodiscard]] inline XPnt3d positionOf(const Real* v) {
    return {double(v[0]), double(v[1]), double(v[2])};
}

/// Returns the square of the longest edge in space.
template <class Real>
[[nodiscard]] inline double longestEdge2(const TinRecord<Real>* t) {
    const XPnt3d a = positionOf(t->vertex[0]), b = positionOf(t->vertex[1]),
                 c = positionOf(t->vertex[2]);
    return std::max({dist2(a, b), dist2(b, c), dist2(c, a)});
}

}  // namespace zyn::detail
