// TinRecord: walks to a point and along a segment.
#pragma once

#include <zyn/tin.h>

#include "triangulation/predicates.h"
#include "triangulation/walk.h"

#include <cmath>

namespace zyn::detail::record {

/// Holds the sign test and the tolerance in which the two precisions differ.
template <class Real>
struct Locating;

template <>
struct Locating<double> {
    static constexpr double refineTolerance = 1e-5;

    static int sign(const double* a, const double* b, const double* c) {
        const double value = orient2dexact(a, b, c);
        return value > 0.0 ? 1 : value < 0.0 ? -1 : 0;
    }
};

template <>
struct Locating<float> {
    static constexpr double refineTolerance = 1e-6;

    static int sign(const float* a, const float* b, const float* c) {
        const float value = (a[0] - c[0]) * (b[1] - c[1]) - (a[1] - c[1]) * (b[0] - c[0]);
        return value > 0.0F ? 1 : value < 0.0F ? -1 : 0;
    }
};

/// Holds the two products whose difference is the side of q with respect to u-w. Takes differences
/// in Real and the rest in double.
template <class Real>
struct SideProducts {
    double first;
    double second;

    SideProducts(const Real* u, const Real* w, Real x, Real y)
        : first(double(w[0] - x) * double(u[1] - y)), second(double(w[1] - y) * double(u[0] - x)) {}

    /// Returns a positive value if q is strictly to the right, which is outside a counter-clockwise
    /// triangle.
    [[nodiscard]] double value() const { return first - second; }
    [[nodiscard]] bool isOutside() const { return first > second; }
};

/// Limits the cross product up to which a point counts as on an edge.
inline constexpr double classifyTolerance = 1e-5;

/// Names the ends of an edge and the neighbour across it. The arrays have the order in which a step
/// tests the edges.
struct Edge {
    int from, to, across;
};
inline constexpr Edge stepOrder[3] = {{0, 1, 2}, {2, 0, 1}, {1, 2, 0}};
inline constexpr Edge segmentOrder[3] = {{0, 1, 2}, {1, 2, 0}, {2, 0, 1}};

/// Locates (x, y) with respect to `t` alone. Returns:
/// - 0, and sets `next` to the triangle to continue with, which is `t` if (x, y) is inside;
/// - 1 if (x, y) is on the edge opposite corner `where`;
/// - 2 if it is at corner `where`;
/// - -1 if it is too close to all three edges to decide.
template <class Real>
std::int32_t classify(TinRecord<Real>* t, Real x, Real y, TinRecord<Real>*& next,
                      std::int32_t& where) {
    int touching = 0;
    int touched = 0;     // the corner opposite the last edge that (x, y) touches
    int notTouched = 0;  // the corner opposite the last edge that it does not
    for (const auto [from, to, across] : stepOrder) {
        const double side = SideProducts<Real>(t->vertex[from], t->vertex[to], x, y).value();
        if (std::abs(side) < classifyTolerance) {
            touched = across;
            ++touching;
            continue;
        }
        notTouched = across;
        if (side > 0.0) {
            next = t->neighbor[across];
            return 0;
        }
    }
    switch (touching) {
    case 0: next = t; return 0;
    case 1: where = touched; return 1;
    case 2: where = notTouched; return 2;
    default: return -1;
    }
}

}  // namespace zyn::detail::record

namespace zyn {

using namespace detail;

template <class Real>
TinRecord<Real>* TinRecord<Real>::find(Real x, Real y) {
    TinRecord* t = this;
    if (t == nullptr) { return nullptr; }
    const WalkEnd end = walk(t, [x, y](TinRecord* from) { return from->_find(x, y); });
    return end == WalkEnd::arrived ? t : nullptr;
}

template <class Real>
TinRecord<Real>* TinRecord<Real>::findRefine(Real x, Real y) {
    TinRecord* t = this;
    if (t == nullptr) { return nullptr; }
    const WalkEnd end = walk(t, [x, y](TinRecord* from) { return from->_findRefine(x, y); });
    return end == WalkEnd::arrived ? t : nullptr;
}

template <class Real>
std::int32_t TinRecord<Real>::find(double x, double y, TinRecord*& tri, std::int32_t* where)
    requires std::same_as<Real, double>
{
    tri = this;
    if (tri == nullptr) { return -2; }
    std::int32_t found = 0;
    const WalkEnd end = walk(tri, [&](TinRecord* from) {
        TinRecord* next = nullptr;
        std::int32_t touched = 0;
        found = record::classify(from, static_cast<Real>(x), static_cast<Real>(y), next, touched);
        if (found == 0) { return next; }
        if (found > 0 && where != nullptr) { *where = touched; }
        return from;
    });
    if (end != WalkEnd::arrived) { tri = nullptr; }
    return end == WalkEnd::arrived ? found : 0;
}

template <class Real>
TinRecord<Real>* TinRecord<Real>::_find(Real x, Real y) {
    for (const auto [from, to, across] : record::stepOrder) {
        if (record::SideProducts<Real>(vertex[from], vertex[to], x, y).isOutside()) {
            return neighbor[across];
        }
    }
    return this;
}

template <class Real>
TinRecord<Real>* TinRecord<Real>::_findRefine(Real x, Real y) {
    for (const auto [from, to, across] : record::stepOrder) {
        const record::SideProducts<Real> side(vertex[from], vertex[to], x, y);
        if (side.value() > record::Locating<Real>::refineTolerance) { return neighbor[across]; }
    }
    return this;
}

template <class Real>
TinRecord<Real>* TinRecord<Real>::find(const Real* p, const Real* q) {
    const auto sign = record::Locating<Real>::sign;
    const auto notOneSide = [](int a, int b) { return a != b || a == 0; };
    for (const auto [from, to, across] : record::segmentOrder) {
        const Real* const u = vertex[from];
        const Real* const w = vertex[to];
        const int sideOfP = sign(u, w, p);
        if (sideOfP < 0 && notOneSide(sideOfP, sign(u, w, q)) &&
            notOneSide(sign(p, q, u), sign(p, q, w))) {
            return neighbor[across];
        }
    }
    return nullptr;
}

}  // namespace zyn
