// What a Surface owns.
#pragma once

#include <zyn/surface.h>

#include "surface/point_store.h"
#include "surface/queries.h"
#include "surface/start_tree.h"
#include "surface/surface_triangles.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

/// A box in the plane, empty at first.
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

/// The triangles and the edges that stay.
struct SurfaceNetwork {
    SurfaceNetwork() = default;
    /// Makes a frame that is far from the box, so that few triangles lean on its corners, and farther
    /// than the tolerance, so that no point falls on one.
    SurfaceNetwork(const PlanBox& box, double tolerance);

    /// Returns whether the frame has room for the box, and is farther from it than the tolerance.
    [[nodiscard]] bool holds(const PlanBox& box, double tolerance) const;
    [[nodiscard]] bool isFixed(const double* a, const double* b) const {
        return fixed != nullptr && fixed->contains(a, b);
    }
    /// Returns a triangle at or near q.
    [[nodiscard]] tind* start(Xy q) const { return starts.near(*engine, q); }
    /// Returns a triangle at the vertex, with the number of its corner there; null where other vertices
    /// hide it.
    [[nodiscard]] std::pair<tind*, int> triangleAt(const double* v) const {
        tind* const t = engine->locateFrom(start(xyOf(v)), xyOf(v));
        const int corner = t == nullptr ? 3 : t->index(v);
        return {corner == 3 ? nullptr : t, corner};
    }
    /// Returns where to start walks, as startFrom of queries.h does.
    [[nodiscard]] detail::StartNear<double> startNear() const {
        return [this](tind* last, Xy q) { return starts.from(*engine, last, q); };
    }
    /// Notes whether the newest vertex, v, may have opened the hull.
    void noteNewVertex(const double* v);
    /// Removes the vertex at a corner of t. Returns false and changes nothing if a fixed edge ends
    /// there or the engine keeps the vertex.
    bool remove(tind* t, int corner);
    /// Makes the surface the convex hull again, unless all changes were inside of it.
    void closeHull();

    ref_ptr<delaunayD> engine;
    ref_ptr<PDoubleArray> fixedList;
    std::unique_ptr<FixedEdges<double>> fixed;
    StartTree starts;
    PlanBox frame;
    bool isHullOpen = true;    // the rim may turn inwards
    std::size_t removals = 0;  // since `starts` was noted
};

struct SurfaceState {
    /// Points that fell on a vertex, by the number of the vertex and their own.
    using Fallen = std::vector<std::pair<int, int>>;

    explicit SurfaceState(const SurfaceOptions& newOptions) : options(newOptions) {}

    // What throws leaves a sound surface, with a part of what was to change.

    /// Makes vertices of points, the last ones of the store, and closes the hull.
    PointReport addPoints(std::span<XPnt3d> added, IZynProgress* progress);
    BreaklineReport addLines(std::span<const Polyline> lines, const BreaklineOptions& wanted);
    bool remove(int number);

    [[nodiscard]] bool isVertex(int number) const {
        const auto place = static_cast<std::size_t>(number);
        return place < vertices.size() && vertices[place];
    }
    SurfaceOptions options;
    PointReport firstReport;  // of the constructor's points
    PointStore points;
    std::vector<bool> vertices;             // by point number; the last points may be missing
    std::unordered_map<int, int> standIns;  // vertices by the numbers of points that fell on them
    std::unordered_map<int, int> fallenCount;  // points at a vertex, where there are several
    SurfaceNetwork network;                    // without an engine until there are points
    int vertexCount = 0;

private:
    /// The numbers of points from `first` up to, but not including, `end`.
    struct Numbers {
        int first, end;
        [[nodiscard]] bool contains(int number) const { return first <= number && number < end; }
    };

    /// The points of several lines, one line behind the other.
    struct LinePoints {
        std::vector<XPnt3d> points;
        std::vector<std::size_t> lengths;
    };

    template <class Change>
    auto changeSafely(Change change);
    PointReport insertPoints(std::span<XPnt3d> added, IZynProgress* progress);
    BreaklineReport insertLines(std::span<const Polyline> lines, const BreaklineOptions& wanted);
    [[nodiscard]] LinePoints pointsOf(std::span<const Polyline> lines, bool soft,
                                      std::vector<int>& leftOut) const;
    bool removeVertex(int number);
    void makeRoom(std::span<const XPnt3d> newPoints, double tolerance);
    [[nodiscard]] StartTree newStarts() const;
    void enterVertices(SurfaceNetwork& next);
    void restoreAt(int first, int count);
    void takeHeights(std::span<XPnt3d> of) const;
    void settleHeights(Fallen& fallen, Heights rule, Numbers added);
    void mend() noexcept;

    PlanBox extent;  // of all points that could become vertices
};

}  // namespace zyn
