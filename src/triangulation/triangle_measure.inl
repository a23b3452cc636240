// TinRecord: areas, extents, the plane, and lines that cross it.
#pragma once

#include <zyn/geometry.h>
#include <zyn/tin.h>

#include "core/float_parts.h"

#include <algorithm>
#include <cmath>

namespace zyn::detail::record {

/// Holds the constants of measuring in which the two precisions differ.
template <class Real>
struct Measuring;

template <>
struct Measuring<double> {
    static constexpr double third = 0.3333333333333333;
    static constexpr double boxLimit = 2147483647.0;
    static constexpr double areaTolerance = 1e-6;
};

template <>
struct Measuring<float> {
    static constexpr float third = 0.33333334F;
    static constexpr float boxLimit = 2147483648.0F;
    static constexpr double areaTolerance = 1e-5;
};

/// Separates usable normals from shorter ones, which have no direction. A plane with a smaller z
/// component counts as vertical.
inline constexpr double smallestNormal = 1e-10;

/// Returns the area by Heron's formula. On a needle, rounding can make the product negative; it is
/// then taken as 0.
template <class Real>
Real heron(Real a, Real b, Real c) {
    const Real s = (a + b + c) * Real(0.5);
    return std::sqrt(std::max((s - a) * s * (s - b) * (s - c), Real(0)));
}

template <class Real>
Real length(const Real* p, const Real* q) {
    const Real dx = q[0] - p[0], dy = q[1] - p[1], dz = q[2] - p[2];
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

/// Returns the area by Heron's formula. If that overflows, uses the cross product of two sides, in
/// a unit near the largest coordinate.
template <class Real>
Real areaOf(XPnt3<Real> a, XPnt3<Real> b, XPnt3<Real> c) {
    const auto distance = [](const XPnt3<Real>& p, const XPnt3<Real>& q) {
        return length<Real>(p, q);
    };
    const Real area = heron(distance(a, b), distance(b, c), distance(c, a));
    Real most = 0;
    for (const XPnt3<Real>& p : {a, b, c}) {
        most = std::max({most, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
    }
    if (std::isfinite(area) || !std::isfinite(most)) { return area; }
    const Real unit = powerOfTwoIn(most);
    const Real share = 1 / unit;
    const XPnt3<Real> n = cross(a * share - c * share, b * share - c * share);
    return std::hypot(n.x, n.y, n.z) / 2 * unit * unit;
}

template <class Real>
Real length2d(const Real* p, const Real* q) {
    const Real dx = q[0] - p[0], dy = q[1] - p[1];
    return std::sqrt(dx * dx + dy * dy);
}

/// Returns the largest minus the smallest of one coordinate of the corners.
template <class Real>
Real extent(const TinRecord<Real>& t, int axis) {
    const auto [low, high] = std::minmax({t.vertex[0][axis], t.vertex[1][axis], t.vertex[2][axis]});
    return high - low;
}

}  // namespace zyn::detail::record

namespace zyn {

using namespace detail;

template <class Real>
Real TinRecord<Real>::Area() const {
    using Pnt = XPnt3<Real>;
    return record::areaOf(Pnt(vertex[0]), Pnt(vertex[1]), Pnt(vertex[2]));
}

template <class Real>
Real TinRecord<Real>::AreaHorizen() const {
    const auto inPlan = [](const Real* v) { return XPnt3<Real>(v[0], v[1], 0); };
    return record::areaOf(inPlan(vertex[0]), inPlan(vertex[1]), inPlan(vertex[2]));
}

template <class Real>
Real TinRecord<Real>::BevelEdgeLength() const {
    const Real dx = record::extent(*this, 0);
    const Real dy = record::extent(*this, 1);
    return std::sqrt(dx * dx + dy * dy);
}

template <class Real>
Real TinRecord<Real>::BevelEdgeLengthNew() const {
    const Real dx = record::extent(*this, 0);
    const Real dy = record::extent(*this, 1);
    const Real dz = record::extent(*this, 2);
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}

template <class Real>
Real TinRecord<Real>::boxZ() const {
    Real highest = -record::Measuring<Real>::boxLimit;
    Real lowest = record::Measuring<Real>::boxLimit;
    for (const Real* const v : vertex) {
        highest = v[2] > highest ? v[2] : highest;
        lowest = v[2] < lowest ? v[2] : lowest;
    }
    return highest - lowest;
}

template <class Real>
Real TinRecord<Real>::maxEdgeLen2d() const {
    using record::length2d;
    return std::max({length2d(vertex[0], vertex[1]), length2d(vertex[1], vertex[2]),
                     length2d(vertex[2], vertex[0])});
}

template <class Real>
void TinRecord<Real>::Center(Real& x, Real& y, Real& z) const {
    constexpr Real third = record::Measuring<Real>::third;
    x = (vertex[0][0] + vertex[1][0] + vertex[2][0]) * third;
    y = (vertex[0][1] + vertex[1][1] + vertex[2][1]) * third;
    z = (vertex[0][2] + vertex[1][2] + vertex[2][2]) * third;
}

template <class Real>
XPnt3<Real> TinRecord<Real>::Center() const {
    XPnt3<Real> centre;
    Center(centre.x, centre.y, centre.z);
    return centre;
}

template <class Real>
bool TinRecord<Real>::PlaneParam3D(Real& a, Real& b, Real& c, Real& d) const {
    const XPnt3<Real> p0(vertex[0]), p2(vertex[2]);
    const XPnt3<Real> n = cross(p0 - p2, XPnt3<Real>(vertex[1]) - p2);
    if (n.x == 0 && n.y == 0 && n.z == 0) { return false; }
    a = n.x;
    b = n.y;
    c = n.z;
    d = -(n.x * p0.x + n.y * p0.y + n.z * p0.z);
    return true;
}

template <class Real>
bool TinRecord<Real>::Normal(Real& a, Real& b, Real& c) const
    requires std::same_as<Real, double>
{
    Real d = 0;
    return PlaneParam3D(a, b, c, d);
}

template <class Real>
bool TinRecord<Real>::normal(Real& a, Real& b, Real& c) const
    requires std::same_as<Real, float>
{
    Real d = 0;
    return PlaneParam3D(a, b, c, d);
}

template <class Real>
bool TinRecord<Real>::NormalAngle(Real& a, Real& b, Real& c) const {
    Real nx = 0, ny = 0, nz = 0, d = 0;
    const bool hasPlane = PlaneParam3D(nx, ny, nz, d);
    const Real n = std::sqrt(nx * nx + ny * ny + nz * nz);
    if (!hasPlane || double(n) < record::smallestNormal) {
        a = b = c = 0;
        return false;
    }
    a = std::acos(nx / n);
    b = std::acos(ny / n);
    c = std::acos(nz / n);
    return true;
}

template <class Real>
bool TinRecord<Real>::IntersectVertical(Real x, Real y, Real z, Real& out) const {
    Real a = 0, b = 0, c = 0, d = 0;
    if (!PlaneParam3D(a, b, c, d) || std::abs(double(c)) < record::smallestNormal) { return false; }
    out = z + (a * x + b * y + d) / c;
    return true;
}

template <class Real>
bool TinRecord<Real>::Z(Real z) const {
    return z < vertex[0][2] || z < vertex[1][2] || z < vertex[2][2];
}

// Computes in double for both precisions: float would miss a third of the true hits near the
// origin.
template <class Real>
bool TinRecord<Real>::ray_intersect3d(const Real* p1, const Real* p2, Real* t) const {
    const auto wide = [](const Real* p) {
        return XPnt3d(double(p[0]), double(p[1]), double(p[2]));
    };
    XPnt3d corner[3] = {wide(vertex[0]), wide(vertex[1]), wide(vertex[2])};
    const XPnt3d from = wide(p1);
    const XPnt3d along = wide(p2) - from;
    const XPnt3d n = cross(corner[0] - corner[2], corner[1] - corner[2]);
    if (n == XPnt3d()) { return false; }
    const double divisor = dot(n, along);
    if (divisor == 0.0 || !std::isfinite(divisor)) { return false; }

    const double d = -(n.x * corner[0].x + n.y * corner[0].y + n.z * corner[0].z);
    const double parameter = -(n.x * from.x + n.y * from.y + n.z * from.z + d) / divisor;
    *t = static_cast<Real>(parameter);
    XPnt3d hit = from + along * parameter;
    const double area = area3d(corner[0], corner[1], corner[2]);
    const double parts = area3d(hit, corner[2], corner[1]) + area3d(hit, corner[0], corner[1]) +
                         area3d(hit, corner[0], corner[2]);
    return std::abs(parts - area) < record::Measuring<Real>::areaTolerance;
}

template <class Real>
bool TinRecord<Real>::EdgeNormal(std::int32_t, Real&, Real&, Real&) const noexcept {
    return false;
}

template <class Real>
bool TinRecord<Real>::intersect3d(Real*, Real*, Real*) const noexcept {
    return false;
}

}  // namespace zyn
