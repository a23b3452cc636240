// The network of a Surface.
#pragma once

#include <zyn/point.h>
#include <zyn/referenced.h>

#include "surface/queries.h"
#include "surface/start_tree.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

namespace zyn::detail {

/// Represents a box in plan. It is empty at first.
struct PlanBox {
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;

    [[nodiscard]] bool isEmpty() const { return minX > maxX; }
    void include(const XPnt3d& p) {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
    }
};

/// Owns the triangles and the fixed edges of a Surface.
struct SurfaceNetwork {
    SurfaceNetwork() = default;
    /// Makes a frame around the box. It is far away, so that few triangles have its corners, and
    /// farther than the tolerance, so that no point falls on a corner.
    SurfaceNetwork(const PlanBox& box, double tolerance);

    /// Returns whether the box is inside the frame and farther from it than the tolerance.
    [[nodiscard]] bool holds(const PlanBox& box, double tolerance) const;
    [[nodiscard]] bool isFixed(const double* a, const double* b) const {
        return fixed != nullptr && fixed->contains(a, b);
    }
    /// Returns a triangle at or near q.
    [[nodiscard]] tind* start(Xy q) const { return starts.near(*engine, q); }
    /// Returns a triangle at the vertex, with the index of its corner there. Returns null if other
    /// vertices in its place hide it.
    [[nodiscard]] std::pair<tind*, int> triangleAt(const double* v) const {
        tind* const t = engine->locateFrom(start(xyOf(v)), xyOf(v));
        const int corner = t == nullptr ? 3 : t->index(v);
        return {corner == 3 ? nullptr : t, corner};
    }
    /// Returns the function that finds starts of walks.
    [[nodiscard]] detail::StartNear<double> startNear() const {
        return [this](tind* last, Xy q) { return starts.from(*engine, last, q); };
    }
    /// Notes whether the newest vertex, v, may have opened the hull.
    void noteNewVertex(const double* v);
    /// Removes the vertex at a corner of t. Returns false and changes nothing if:
    /// - a fixed edge ends there;
    /// - the engine refuses the removal.
    bool remove(tind* t, int corner);
    /// Extends the surface to the convex hull; does nothing if all changes were inside it.
    void closeHull();

    ref_ptr<delaunayD> engine;
    ref_ptr<PDoubleArray> fixedList;
    std::unique_ptr<FixedEdges<double>> fixed;
    StartTree starts;
    PlanBox frame;
    bool isHullOpen = true;    // the rim may have reflex vertices
    std::size_t removals = 0;  // since starts.noteAll()
};

}  // namespace zyn::detail
