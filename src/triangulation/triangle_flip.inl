// TinRecord: corners and edges by index, the local Delaunay test, flips.
#pragma once

#include <zyn/tin.h>

#include "triangulation/flip.h"
#include "triangulation/triangle_walk.inl"

namespace zyn::detail::record {

/// Keeps an edge if the unscaled sine of the sum of its opposite angles reaches this value.
/// Therefore four points on a circle flip in double, but not in float.
template <class Real>
inline constexpr double delaunayThreshold = std::same_as<Real, double> ? 1e-8 : 0.0;

}  // namespace zyn::detail::record

namespace zyn {

using namespace detail;

template <class Real>
int TinRecord<Real>::index(int a, int b) noexcept {
    const std::int64_t third = std::int64_t{3} - a - b;
    return third >= 0 && third <= 2 ? static_cast<int>(third) : -1;
}

template <class Real>
int TinRecord<Real>::index(const Real* a, const Real* b) const noexcept {
    const int i = index(a);
    const int j = index(b);
    return i == 3 || j == 3 || i == j ? -1 : index(i, j);
}

template <class Real>
bool TinRecord<Real>::get_edge(int i, Real*& a, Real*& b) const noexcept {
    if (i < 0 || i > 2) { return false; }
    a = vertex[i == 0 ? 1 : 0];
    b = vertex[i == 2 ? 1 : 2];
    return true;
}

template <class Real>
bool TinRecord<Real>::get_edge(const Real* p, Real*& a, Real*& b) const noexcept {
    return get_edge(index(p), a, b);
}

template <class Real>
bool TinRecord<Real>::_delaunay(const Real* a, const Real* b, const Real* c, const Real* d) {
    const double acx = double(a[0] - c[0]), acy = double(a[1] - c[1]);
    const double bcx = double(b[0] - c[0]), bcy = double(b[1] - c[1]);
    const double adx = double(a[0] - d[0]), ady = double(a[1] - d[1]);
    const double bdx = double(b[0] - d[0]), bdy = double(b[1] - d[1]);
    const double sinC = acx * bcy - acy * bcx;
    const double cosC = acx * bcx + acy * bcy;
    const double sinD = bdx * ady - bdy * adx;
    const double cosD = adx * bdx + ady * bdy;
    return cosD * sinC + sinD * cosC >= record::delaunayThreshold<Real>;
}

template <class Real>
void TinRecord<Real>::_swap(TinRecord* n) {
    flipEdge(this, index(n), n, n->index(this));
}

template <class Real>
TinRecord<Real>* TinRecord<Real>::adjust(Real* p) {
    const int i = index(p);
    if (i == 3) { return nullptr; }
    TinRecord* const n = neighbor[i];
    const int j = n == nullptr ? 3 : n->index(this);
    if (j == 3) { return nullptr; }
    if (_delaunay(vertex[after[i]], vertex[before[i]], p, n->vertex[j])) { return nullptr; }
    _swap(n);
    return n;
}

template <class Real>
bool TinRecord<Real>::intersect(Real* p, Real* a, Real* b) {
    const int i = index(p);
    if (i == 3) { return false; }
    TinRecord* const n = neighbor[i];
    const int j = n == nullptr ? 3 : n->index(this);
    if (j == 3) { return false; }

    const auto sign = record::Locating<Real>::sign;
    const auto crosses = [sign](const Real* u, const Real* w, const Real* s, const Real* t) {
        return sign(u, w, s) * sign(u, w, t) < 0;  // s and t strictly on opposite sides of u-w
    };
    Real* const q1 = vertex[after[i]];
    Real* const q2 = vertex[before[i]];
    Real* const d = n->vertex[j];
    if (!crosses(a, b, q1, q2) || !crosses(q1, q2, a, b)) { return false; }
    if (sign(p, q1, d) <= 0 || sign(q2, p, d) <= 0) { return false; }
    if (crosses(a, b, d, p) && crosses(d, p, a, b)) { return false; }
    _swap(n);
    return true;
}

}  // namespace zyn
