// Linear interpolation of numbers of any size.
#pragma once

#include <cmath>
#include <limits>

namespace zyn::detail {

/// Returns the number at `share` of the way from one number to another. Does not overflow, even if
/// their difference does. REQUIRES: `share` is from 0 to 1.
[[nodiscard]] inline double interpolate(double from, double to, double share) {
    const double step = to - from;
    const bool isLarge = !(std::abs(step) <= std::numeric_limits<double>::max() / 2);
    return isLarge ? from * (1 - share) + to * share : from + step * share;
}

/// Returns the share of the way from one number to another at which `value` is.
[[nodiscard]] inline double shareOf(double from, double to, double value) {
    const double step = to - from;
    return std::isfinite(step) ? (value - from) / step
                               : (value / 2 - from / 2) / (to / 2 - from / 2);
}

}  // namespace zyn::detail
