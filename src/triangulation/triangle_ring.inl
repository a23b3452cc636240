// TinRecord: the ring around a vertex, and the flood within a radius.
#pragma once

#include <zyn/tin.h>

#include "triangulation/flip.h"
#include "triangulation/triangle_walk.inl"
#include "triangulation/vertex_array.h"

#include <limits>

namespace zyn::detail::record {

/// Limits the number of triangles along a ring. `ringReserve` is the capacity reserved for one.
template <class Real>
inline constexpr int ringSteps = std::same_as<Real, double> ? std::numeric_limits<int>::max() : 52;
inline constexpr int ringReserve = 1024;

/// Limits the squared distance in the plane at which a corner can be the nearest.
template <class Real>
inline constexpr Real nearestLimit = Real(9999999.0);

template <class Real>
Real squaredDistance2d(const Real* a, const Real* b) {
    const Real dx = a[0] - b[0];
    const Real dy = a[1] - b[1];
    return dx * dx + dy * dy;
}

/// Returns the `inten` of a vertex. REQUIRES: the vertex is a whole point.
template <class Real>
std::int16_t& visited(Real* vertex) {
    return reinterpret_cast<XPnt3<Real>*>(vertex)->inten;
}

/// Clears the marks of all vertices that were found, even if allocation failed on the way.
template <class Real>
struct MarksUntilEnd {
    explicit MarksUntilEnd(typename TinRecord<Real>::RealPtrArray& out) : found(out) {}
    MarksUntilEnd(const MarksUntilEnd&) = delete;
    MarksUntilEnd& operator=(const MarksUntilEnd&) = delete;
    ~MarksUntilEnd() {
        for (Real* const q : found) { visited(q) = 0; }
    }

private:
    typename TinRecord<Real>::RealPtrArray& found;
};

}  // namespace zyn::detail::record

namespace zyn::detail {

/// Returns the corner of `t` that is nearest to p in the plane and nearer than `radius`, or 3 if
/// there is none.
template <class Real>
int nearestCorner(const TinRecord<Real>* t, const Real* p, Real radius) {
    int nearest = 3;
    Real best = record::nearestLimit<Real>;
    for (int i = 0; i < 3; ++i) {
        const Real d = record::squaredDistance2d(t->vertex[i], p);
        if (d < best && d < radius * radius) {
            nearest = i;
            best = d;
        }
    }
    return nearest;
}

}  // namespace zyn::detail

namespace zyn {

using namespace detail;

template <class Real>
std::int32_t TinRecord<Real>::findCone(int i, RealPtrArray* out) {
    if (i < 0 || i > 2) { return 0; }
    if constexpr (std::same_as<Real, float>) { out->reserve(record::ringReserve); }
    const Real* const centre = vertex[i];
    Real* const last = vertex[after[i]];
    out->append(vertex[before[i]]);

    // Counter-clockwise, each step appends a vertex and crosses the edge from the centre to it. The
    // walk ends at this record, at the boundary, or where the links leave the centre.
    TinRecord* t = neighbor[after[i]];
    int steps = 0;
    const auto counterClockwise = [&](TinRecord* from) -> TinRecord* {
        const int k = from->index(centre);
        if (from == this || k == 3 || steps == record::ringSteps<Real>) { return from; }
        ++steps;
        Real* const next = from->vertex[before[k]];
        out->append(next);
        if (std::same_as<Real, float> && next == last) { return from; }
        return from->neighbor[after[k]];
    };
    if (t != nullptr && walk(t, counterClockwise) != WalkEnd::left) { return out->size(); }

    out->append(last);
    t = neighbor[before[i]];
    const auto clockwise = [&](TinRecord* from) -> TinRecord* {
        const int k = from->index(centre);
        if (k == 3) { return from; }
        out->append(from->vertex[after[k]]);
        return from->neighbor[before[k]];
    };
    if (t != nullptr) { walk(t, clockwise); }
    return out->size();
}

template <class Real>
std::int32_t TinRecord<Real>::findCone(const Real* p, RealPtrArray* out) {
    return findCone(index(p), out);
}

template <class Real>
std::int32_t TinRecord<Real>::findCone(int i, Real radius, RealPtrArray* out) {
    if (i < 0 || i > 2) { return 0; }
    const auto ring = newVertexArray<Real>();
    const auto pending = newVertexArray<Real>();
    ring->reserve(record::ringReserve);
    pending->reserve(record::ringReserve);

    const record::MarksUntilEnd<Real> marks(*out);
    const Real* const centre = vertex[i];
    findCone(i, ring.get());
    for (;;) {
        for (Real* const q : *ring) {
            if (radius * radius >= record::squaredDistance2d<Real>(q, centre) && q != centre &&
                record::visited(q) != 1) {
                out->append(q);
                pending->append(q);
                record::visited(q) = 1;
            }
        }
        if (pending->size() == 0) { break; }
        const Real* const q = pending->last();
        pending->removeLast();
        ring->removeAll();
        if (TinRecord* const t = findRefine(q[0], q[1]); t != nullptr) {
            t->findCone(q, ring.get());
        }
    }
    return out->size();
}

template <class Real>
std::int32_t TinRecord<Real>::findCone(const Real* p, Real radius, RealPtrArray* out) {
    TinRecord* const t = findRefine(p[0], p[1]);
    return t == nullptr ? 0 : t->findCone(nearestCorner(t, p, radius), radius, out);
}

}  // namespace zyn
