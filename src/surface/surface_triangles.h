// The triangles of an engine that make up its surface.
#pragma once

#include <zyn/network.h>

#include "triangulation/engine.h"
#include "triangulation/ring.h"
#include "triangulation/vertex_position.h"

#include <cmath>
#include <cstddef>

namespace zyn::detail {

/// Selects the triangles of an engine that make up its surface: no corner is one of the frame, and
/// no edge is longer than `maxEdge`.
template <class Real>
class SurfaceTriangles {
public:
    using Tri = TinRecord<Real>;

    /// Has no triangles if `engine_` is null.
    explicit SurfaceTriangles(const DelaunayEngine<Real>* engine_, double maxEdge = anyEdge)
        : engine(engine_), most2(maxEdge < 0 ? -1 : maxEdge * maxEdge) {}

    [[nodiscard]] bool hasEngine() const { return engine != nullptr; }
    /// REQUIRES: hasEngine().
    [[nodiscard]] const DelaunayEngine<Real>& network() const { return *engine; }
    /// Returns the number of triangles of the network, in the surface or not.
    [[nodiscard]] std::size_t triangleCount() const {
        return engine == nullptr ? 0 : engine->count();
    }
    /// Returns whether t belongs to the surface; false for null.
    [[nodiscard]] bool has(const Tri* t) const {
        return t != nullptr && !engine->isFrameTriangle(t) &&
               (std::isinf(most2) || !(longestEdge2(t) > most2));
    }
    /// Returns a triangle of the surface around the vertex at corner `i` of t, or null.
    [[nodiscard]] Tri* triangleAround(Tri* t, int i) const {
        Tri* found = nullptr;
        forEachAround(t, i, engine->count(), [this, &found](Tri* n, int) {
            if (has(n)) { found = n; }
            return found != nullptr;
        });
        return found;
    }
    /// Calls `use(t, number)` for each triangle of the surface, in pool order.
    template <class Use>
    void forEach(Use use) const {
        for (std::size_t n = 0; n < triangleCount(); ++n) {
            if (const Tri* const t = engine->at(n); has(t)) { use(t, n); }
        }
    }

private:
    const DelaunayEngine<Real>* engine;
    double most2;  // the square of the longest edge allowed
};

}  // namespace zyn::detail
