// Rotations as matrices and as quaternions.
#pragma once

#include <zyn/transform.h>

namespace zyn::detail {

/// What stands in an invalid matrix or quaternion.
inline constexpr double invalidComponent = invalidCoordinate<double>;

/// Returns whether the first three rows and columns have length 1, as far as their first three
/// elements tell.
[[nodiscard]] bool hasUnitRowsAndColumns(const ZynMatrix4d& m);
/// Sets the 16 elements to the rotation of a quaternion.
void setRotation(double* m, const tagZynQuad& q);
/// Returns the quaternion of a rotation.
[[nodiscard]] tagZynQuad quadOf(const double* m);

}  // namespace zyn::detail
