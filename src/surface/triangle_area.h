// Normals and areas of triangles.
#pragma once

#include <zyn/geometry.h>
#include <zyn/tin.h>

#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>

namespace zyn::detail {

/// Returns the normal of a triangle with these two sides. Its length is twice the area in space. It
/// never points downwards, which rounding could cause for a needle.
[[nodiscard]] inline XPnt3d upwardNormal(const XPnt3d& u, const XPnt3d& v) {
    const XPnt3d n = cross(u, v);
    return {n.x, n.y, std::max(n.z, 0.0)};
}
/// Returns the upward normal of a triangle. Its length is twice the area in space.
[[nodiscard]] inline XPnt3d doubleArea(const tind& t) {
    const XPnt3d a = positionOf(t.vertex[0]);
    return upwardNormal(positionOf(t.vertex[1]) - a, positionOf(t.vertex[2]) - a);
}
[[nodiscard]] inline double lengthOf(const XPnt3d& p) { return std::hypot(p.x, p.y, p.z); }

/// Returns the area in plan. The error of Heron's formula would be a millionth for a needle.
[[nodiscard]] inline double planAreaOf(const tind& t) { return doubleArea(t).z / 2; }
/// Returns the area in space.
[[nodiscard]] inline double areaOf(const tind& t) {
    const double area = lengthOf(doubleArea(t)) / 2;
    return std::isfinite(area) ? area : t.Area();
}

}  // namespace zyn::detail
