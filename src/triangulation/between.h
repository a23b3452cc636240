// Whether a number or a point is between two others.
#pragma once

#include "triangulation/predicates.h"

#include <algorithm>

namespace zyn::detail {

/// Returns whether `value` is between the two ends or equals one of them. The ends may come in
/// either order.
[[nodiscard]] inline bool isBetween(double end, double value, double otherEnd) {
    return std::min(end, otherEnd) <= value && value <= std::max(end, otherEnd);
}

/// Returns whether `value` is between the two ends and equals neither.
[[nodiscard]] inline bool isStrictlyBetween(double end, double value, double otherEnd) {
    return (end < value && value < otherEnd) || (otherEnd < value && value < end);
}

/// Returns whether p is between a and b or at one of them. REQUIRES: the three points are
/// collinear.
[[nodiscard]] inline bool isBetween(Xy a, Xy p, Xy b) {
    return isBetween(a.x, p.x, b.x) && isBetween(a.y, p.y, b.y);
}

}  // namespace zyn::detail
