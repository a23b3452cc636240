// Conversion of rotations between matrices and quaternions.
#pragma once

#include <zyn/transform.h>

namespace zyn::detail {

/// Marks each component of an invalid matrix or quaternion.
inline constexpr double invalidComponent = invalidCoordinate<double>;

/// Returns whether the first three rows and columns have length 1, measured by their first three
/// elements.
[[nodiscard]] bool hasUnitRowsAndColumns(const ZynMatrix4d& m);
/// Sets the 16 elements at `m` to the rotation that `q` describes.
void setRotation(double* m, const tagZynQuad& q);
/// Returns the quaternion of the rotation in the 16 elements at `m`.
[[nodiscard]] tagZynQuad quadOf(const double* m);

}  // namespace zyn::detail
