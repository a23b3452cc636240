// An engine with the points that it stands on.
#pragma once

#include <zyn/delaunay.h>

#include <algorithm>
#include <deque>
#include <type_traits>
#include <vector>

#include "point_sets.h"

namespace support {

template <class Real>
zyn::XPnt3d pointOf(const Real* v) {
    return {double(v[0]), double(v[1]), double(v[2])};
}

template <class Real>
struct Network {
    using Tri = zyn::TinRecord<Real>;
    using Pnt = zyn::XPnt3<Real>;
    using Engine =
        std::conditional_t<std::is_same_v<Real, double>, zyn::IZynDelaunayD, zyn::IZynDelaunay>;

    Network(double minX, double minY, double maxX, double maxY) {
        if constexpr (std::is_same_v<Real, double>) {
            engine = zyn::newZynDelaunayDouble(1, minX, minY, maxX, maxY);
        } else {
            engine = zyn::newZynDelaunay(1, float(minX), float(minY), float(maxX), float(maxY));
        }
    }
    explicit Network(const PointSet& set) : Network(set.minX, set.minY, set.maxX, set.maxY) {}

    /// Offers a point to the engine; taken or not, it is the last of `points` afterwards.
    bool add(double x, double y, double z = 0, double tolerance = 0) {
        points.emplace_back(Real(x), Real(y), Real(z));
        return engine->addPoint(&points.back(), Real(tolerance));
    }
    Real* vertex(std::size_t i) { return points[i]; }

    /// Copies of all records in pool order: what has to be equal when nothing has changed.
    std::vector<Tri> records() {
        std::vector<Tri> result;
        engine->rewindTriangles();
        while (const Tri* const t = engine->nextTriangle()) { result.push_back(*t); }
        return result;
    }
    /// A triangle with that edge, or null.
    Tri* triangleOn(const Real* a, const Real* b) {
        engine->rewindTriangles();
        while (Tri* const t = engine->nextTriangle()) {
            if (t->index(a, b) != -1) { return t; }
        }
        return nullptr;
    }
    bool has(const Real* v) {
        const std::vector<Tri> all = records();
        return std::any_of(all.begin(), all.end(), [v](const Tri& t) { return t.index(v) != 3; });
    }

    zyn::ref_ptr<Engine> engine;
    std::deque<Pnt> points;
};

}  // namespace support
