// What the operations on surfaces share: the triangles that belong to one, and their planes.
#pragma once

#include <zyn/geometry.h>
#include <zyn/network.h>

#include "triangulation/engine.h"
#include "triangulation/ring.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zyn::detail {

/// Which triangles of an engine make up its surface.
template <class Real>
class SurfaceTriangles {
public:
    using Tri = TinRecord<Real>;

    /// Without an engine there is no triangle.
    explicit SurfaceTriangles(const DelaunayEngine<Real>* engine_, double maxEdge = anyEdge)
        : engine(engine_), most2(maxEdge < 0 ? -1 : maxEdge * maxEdge) {}

    [[nodiscard]] bool hasEngine() const { return engine != nullptr; }
    /// REQUIRES: there is an engine.
    [[nodiscard]] const DelaunayEngine<Real>& network() const { return *engine; }
    /// Number of triangles of the network, in the surface or not.
    [[nodiscard]] std::size_t triangleCount() const {
        return engine == nullptr ? 0 : engine->count();
    }
    /// False for null too.
    [[nodiscard]] bool has(const Tri* t) const {
        return t != nullptr && !engine->isFrameTriangle(t) &&
               (std::isinf(most2) || !(longestEdge2(t) > most2));
    }
    /// A triangle of the surface round the vertex at corner `i` of t, or null.
    [[nodiscard]] Tri* triangleAround(Tri* t, int i) const {
        Tri* found = nullptr;
        forEachAround(t, i, engine->count(), [this, &found](Tri* n, int) {
            if (has(n)) { found = n; }
            return found != nullptr;
        });
        return found;
    }
    /// Calls `use(t, number)` for each of them, in pool order.
    template <class Use>
    void forEach(Use use) const {
        for (std::size_t n = 0; n < triangleCount(); ++n) {
            if (const Tri* const t = engine->at(n); has(t)) { use(t, n); }
        }
    }

private:
    const DelaunayEngine<Real>* engine;
    double most2;
};

/// Returns the number at `share` of the way, from 0 to 1, between two. Their difference may overflow.
[[nodiscard]] inline double between(double from, double to, double share) {
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

/// Returns the height at q on the edge a-b, the same for b-a.
template <class Real>
[[nodiscard]] double heightOnEdge(const Real* a, const Real* b, Xy q) {
    if (b[0] < a[0] || (b[0] == a[0] && b[1] < a[1])) { std::swap(a, b); }
    const Xy u = xyOf(b) - xyOf(a), v = q - xyOf(a);
    const double share = std::abs(u.x) >= std::abs(u.y) ? v.x / u.x : v.y / u.y;
    if (share >= 1) { return double(b[2]); }
    const auto [low, high] = std::minmax({double(a[2]), double(b[2])});
    return std::clamp(between(double(a[2]), double(b[2]), share), low, high);
}

/// The height over a triangle. Never above its highest corner or below its lowest. Over one that has
/// no area up to rounding, that of its longest edge.
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
    /// Fits the plane to smaller heights. A power of two as their unit keeps every digit.
    [[gnu::cold, gnu::noinline]] void fitLarge(XPnt3d a, XPnt3d b, XPnt3d c) {
        const double most = std::max({std::abs(a.z), std::abs(b.z), std::abs(c.z), 1.0});
        if (!std::isfinite(most)) { return; }
        unit = std::scalbn(1.0, std::ilogb(most));
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

    // Heights are in units of `unit`.
    double longest2 = 0;
    double x0 = 0, y0 = 0, z0 = 0;
    double slopeX = 0, slopeY = 0;
    double minZ = 0, maxZ = 0;
    double unit = 1;
};

}  // namespace zyn::detail
