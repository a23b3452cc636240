// An engine and the points that are its vertices.
#pragma once

#include <zyn/network.h>

#include <deque>
#include <type_traits>
#include <vector>

#include "containers/array_imp.h"
#include "point_sets.h"
#include "testing.h"

namespace support {

using Precisions = testing::Types<double, float>;

template <class Real>
zyn::XPnt3d pointOf(const Real* v) {
    return {double(v[0]), double(v[1]), double(v[2])};
}

template <class Real>
zyn::ref_ptr<zyn::Pnt3Array<Real>> arrayOf(const std::vector<zyn::XPnt3d>& points) {
    zyn::ref_ptr<zyn::Pnt3Array<Real>> array = new zyn::detail::ArrayImp<zyn::Pnt3Array<Real>>;
    for (const zyn::XPnt3d& p : points) { array->append(zyn::XPnt3<Real>(p)); }
    return array;
}
template <class Real>
zyn::ref_ptr<zyn::VertexArray<Real>> newVertices() {
    return new zyn::detail::ArrayImp<zyn::VertexArray<Real>>;
}

template <class Real>
struct Network {
    using Tri = zyn::TinRecord<Real>;
    using Pnt = zyn::XPnt3<Real>;
    static constexpr bool isDouble = std::is_same_v<Real, double>;
    using Engine = std::conditional_t<isDouble, zyn::IZynDelaunayD, zyn::IZynDelaunay>;

    Network(double minX, double minY, double maxX, double maxY) {
        if constexpr (isDouble) {
            engine = zyn::newZynDelaunayDouble(1, minX, minY, maxX, maxY);
        } else {
            engine = zyn::newZynDelaunay(1, float(minX), float(minY), float(maxX), float(maxY));
        }
    }
    explicit Network(const PointSet& set) : Network(set.minX, set.minY, set.maxX, set.maxY) {}

    /// Adds a point to `points`, and then to the engine. Returns whether the engine accepts it.
    bool add(double x, double y, double z = 0, double tolerance = 0) {
        points.emplace_back(Real(x), Real(y), Real(z));
        return engine->addPoint(&points.back(), Real(tolerance));
    }
    Real* vertex(std::size_t i) { return points[i]; }

    /// Return all records in pool order, and copies of them, which are equal if nothing changes.
    /// @{
    std::vector<Tri*> triangles() {
        std::vector<Tri*> result;
        engine->rewindTriangles();
        while (Tri* const t = engine->nextTriangle()) { result.push_back(t); }
        return result;
    }
    std::vector<Tri> records() {
        std::vector<Tri> result;
        for (const Tri* const t : triangles()) { result.push_back(*t); }
        return result;
    }
    /// @}
    /// Returns a triangle with that edge, or null.
    Tri* triangleOn(const Real* a, const Real* b) {
        for (Tri* const t : triangles()) {
            if (t->index(a, b) != -1) { return t; }
        }
        return nullptr;
    }

    zyn::ref_ptr<Engine> engine;
    std::deque<Pnt> points;
};

}  // namespace support
