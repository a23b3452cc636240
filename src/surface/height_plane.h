// Heights over an edge and over a triangle.
#pragma once

#include <zyn/geometry.h>
#include <zyn/tin.h>

#include "core/float_parts.h"
#include "surface/interpolate.h"
#include "triangulation/predicates.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zyn::detail {

/// Returns the height at q on the edge a-b. Returns exactly the same for b-a.
template <class Real>
[[nodiscard]] double heightOnEdge(const Real* a, const Real* b, Xy q) {
    if (b[0] < a[0] || (b[0] == a[0] && b[1] < a[1])) { std::swap(a, b); }
    const Xy u = xyOf(b) - xyOf(a), v = q - xyOf(a);
    const double share = std::abs(u.x) >= std::abs(u.y) ? v.x / u.x : v.y / u.y;
    if (share >= 1) { return double(b[2]); }
    const auto [low, high] = std::minmax({double(a[2]), double(b[2])});
    return std::clamp(interpolate(double(a[2]), double(b[2]), share), low, high);
}

/// Returns heights over a triangle, never above its highest corner or below its lowest. If the
/// triangle is degenerate up to rounding, follows its longest edge instead.
class HeightPlane {
public:
    template <class Real>
    explicit HeightPlane(const TinRecord<Real>* t)
        : HeightPlane(positionOf(t->vertex[0]), positionOf(t->vertex[1]),
                      positionOf(t->vertex[2])) {}
    [[nodiscard]] double at(double x, double y) const {
        const double z = z0 + slopeX * (x - x0) + slopeY * (y - y0);
        return std::min(std::max(minZ, z), maxZ) * unit;  // minZ for a NaN
    }

private:
    HeightPlane(const XPnt3d& a, const XPnt3d& b, const XPnt3d& c) {
        fit(a, b, c);
        constexpr double large = 1e150;  // products with larger numbers could overflow
        const double sizes = std::abs(a.z) + std::abs(b.z) + std::abs(c.z);
        if (!(sizes + std::abs(slopeX) + std::abs(slopeY) < large)) { fitLarge(a, b, c); }
    }
    /// Fits the plane to heights in a larger unit, a power of two, which keeps every digit.
    [[gnu::cold, gnu::noinline]] void fitLarge(XPnt3d a, XPnt3d b, XPnt3d c) {
        const double most = std::max({std::abs(a.z), std::abs(b.z), std::abs(c.z), 1.0});
        if (!std::isfinite(most)) { return; }
        unit = powerOfTwoIn(most);
        for (XPnt3d* const p : {&a, &b, &c}) { p->z /= unit; }
        fit(a, b, c);
    }
    /// Finds the slopes of the plane through three points.
    void fit(const XPnt3d& a, const XPnt3d& b, const XPnt3d& c) {
        minZ = std::min({a.z, b.z, c.z});
        maxZ = std::max({a.z, b.z, c.z});
        const XPnt3d u = b - a, v = c - a;
        const double area2 = u.x * v.y - u.y * v.x;
        constexpr double unclear = 4 * std::numeric_limits<double>::epsilon();
        setOrigin(a);
        if (std::abs(area2) > unclear * (std::abs(u.x * v.y) + std::abs(u.y * v.x))) {
            slopeX = (u.z * v.y - v.z * u.y) / area2;
            slopeY = (u.x * v.z - v.x * u.z) / area2;
        } else {
            fitEdge(a, b, c);
        }
    }
    /// Fits the plane to the longest edge in plan.
    [[gnu::cold, gnu::noinline]] void fitEdge(const XPnt3d& a, const XPnt3d& b, const XPnt3d& c) {
        longest2 = 0;
        followEdge(a, b);
        followEdge(b, c);
        followEdge(c, a);
    }
    /// Follows the edge from a to b if it is longer in plan than those before.
    void followEdge(const XPnt3d& a, const XPnt3d& b) {
        const XPnt3d ab = b - a;
        const double length2 = ab.x * ab.x + ab.y * ab.y;
        if (!(length2 > longest2)) { return; }
        longest2 = length2;
        setOrigin(a);
        slopeX = ab.z / length2 * ab.x;
        slopeY = ab.z / length2 * ab.y;
    }
    void setOrigin(const XPnt3d& p) {
        x0 = p.x;
        y0 = p.y;
        z0 = p.z;
    }

    // All heights are in units of `unit`.
    double longest2 = 0;
    double x0 = 0, y0 = 0, z0 = 0;
    double slopeX = 0, slopeY = 0;
    double minZ = 0, maxZ = 0;
    double unit = 1;
};

}  // namespace zyn::detail
