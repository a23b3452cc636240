// Whether a number or a point is between two others.
#pragma once

#include "triangulation/predicates.h"

#include <algorithm>

namespace zyn::detail {

/// Returns whether `value` is between the ends, ends included, in whichever order these come.
[[nodiscard]] inline bool isBetween(double end, double value, double otherEnd) {
    return std::min(end, otherEnd) <= value && value <= std::max(end, otherEnd);
}

/// Returns whether `value` is between the ends and is neither of them.
[[nodiscard]] inline bool isStrictlyBetween(double end, double value, double otherEnd) {
    return (end < value && value < otherEnd) || (otherEnd < value && value < end);
}

/// Returns whether p is between a and b, ends included. REQUIRES: the three are on one line.
[[nodiscard]] inline bool isBetween(Xy a, Xy p, Xy b) {
    return isBetween(a.x, p.x, b.x) && isBetween(a.y, p.y, b.y);
}

}  // namespace zyn::detail
