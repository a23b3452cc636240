// DelaunayEngine: iteration, counts, areas and bounds.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/vertex_numbers.h"

#include <algorithm>

namespace zyn::detail {

template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::nextTriangle() {
    if (cursor >= Pool::count()) {
        cursor = ended;
        return nullptr;
    }
    return Pool::at(cursor++);
}

template <class Real>
Enve3d DelaunayEngine<Real>::getEnvelope() const {
    Real low[3] = {}, high[3] = {};
    if (!bounds(low[0], low[1], low[2], high[0], high[1], high[2])) { return {}; }
    return {double(low[0]),  double(low[1]),  double(low[2]),
            double(high[0]), double(high[1]), double(high[2])};
}

template <class Real>
bool DelaunayEngine<Real>::bounds(Real& minX, Real& minY, Real& minZ, Real& maxX, Real& maxY,
                                  Real& maxZ) const {
    Pnt low, high;
    bool isFirst = true;
    forEachSurfaceTriangle([&](const Tri* t) {
        for (const Real* const v : t->vertex) {
            const Pnt p(v);
            low = isFirst ? p : low.set_min(p);
            high = isFirst ? p : high.set_max(p);
            isFirst = false;
        }
    });
    if (isFirst) { return false; }
    minX = low.x;
    minY = low.y;
    minZ = low.z;
    maxX = high.x;
    maxY = high.y;
    maxZ = high.z;
    return true;
}

template <class Real>
int DelaunayEngine<Real>::allVertexCount() const {
    VertexNumbers<Real> numbers(Pool::count());
    for (std::size_t n = 0; n < Pool::count(); ++n) {
        for (Real* const v : Pool::at(n)->vertex) { numbers(v); }
    }
    return static_cast<int>(numbers.vertices().size());
}

template <class Real>
int DelaunayEngine<Real>::vertexCount() const {
    VertexNumbers<Real> numbers(Pool::count());
    for (std::size_t n = 0; n < Pool::count(); ++n) {
        for (Real* const v : Pool::at(n)->vertex) {
            if (!isFrameVertex(v)) { numbers(v); }
        }
    }
    return static_cast<int>(numbers.vertices().size());
}

template <class Real>
int DelaunayEngine<Real>::surfaceTriangleCount() const {
    int count = 0;
    forEachSurfaceTriangle([&count](const Tri*) { ++count; });
    return count;
}

template <class Real>
Real DelaunayEngine<Real>::surfaceArea() const {
    Real area = 0;
    forEachSurfaceTriangle([&area](const Tri* t) { area += t->Area(); });
    return area;
}

template <class Real>
Real DelaunayEngine<Real>::surfaceAreaHorizen() const {
    Real area = 0;
    forEachSurfaceTriangle([&area](const Tri* t) { area += t->AreaHorizen(); });
    return area;
}

}  // namespace zyn::detail
