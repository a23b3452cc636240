// The order of points along a Hilbert curve.
#pragma once

#include <zyn/point.h>

#include <cstdint>
#include <vector>

namespace zyn::detail {

/// Returns the indices of `count` points in the order of the curve; see spatialSort().
template <class Real>
[[nodiscard]] std::vector<std::int32_t> hilbertOrder(const XPnt3<Real>* points, int count);

}  // namespace zyn::detail
