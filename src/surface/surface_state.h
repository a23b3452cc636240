// What a Surface owns.
#pragma once

#include <zyn/surface.h>

#include "surface/point_store.h"
#include "surface/start_grid.h"
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
    /// Makes a frame that is far from the box, so that few triangles lean on its corners.
    explicit SurfaceNetwork(const PlanBox& box);

    /// Returns whether the frame has room for the box.
    [[nodiscard]] bool holds(const PlanBox& box) const;
    /// Finds the edges of the list again after somebody else has changed it.
    void updateEdges() { fixed = std::make_unique<FixedEdges<double>>(*fixedList); }
    [[nodiscard]] bool isFixed(const double* a, const double* b) const {
        return fixed != nullptr && fixed->contains(a, b);
    }
    /// Returns a triangle near q.
    [[nodiscard]] tind* start(Xy q) const { return starts.at(*engine, q); }

    ref_ptr<delaunayD> engine;
    ref_ptr<PDoubleArray> fixedList;
    std::unique_ptr<FixedEdges<double>> fixed;
    StartGrid starts;
    PlanBox frame;
};

struct SurfaceState {
    /// Points that fell on a vertex, by the number of the vertex and their own.
    using Fallen = std::vector<std::pair<int, int>>;

    explicit SurfaceState(const SurfaceOptions& newOptions) : options(newOptions) {}

    /// Makes vertices of points that the store holds, and closes the hull.
    PointReport insert(std::span<XPnt3d> points, IZynProgress* progress);
    BreaklineReport insert(std::span<const Polyline> lines, const BreaklineOptions& wanted);
    bool remove(int number);

    [[nodiscard]] bool isVertex(int number) const {
        return vertices[static_cast<std::size_t>(number)];
    }
    SurfaceOptions options;
    PointReport firstReport;  // of the constructor's points
    PointStore points;
    std::vector<bool> vertices;             // by point number
    std::unordered_map<int, int> standIns;  // vertices by the numbers of points that fell on them
    std::unordered_map<int, int> fallenCount;  // points at a vertex, where there are several
    SurfaceNetwork network;                    // without an engine until there are points
    int vertexCount = 0;

private:
    void makeRoom(std::span<const XPnt3d> newPoints);
    void enterVertices(SurfaceNetwork& next);
    void takeHeights(std::span<XPnt3d> of) const;
    void settleHeights(Fallen& fallen, Heights rule, int firstNew);
    void finish();

    PlanBox extent;  // of all points that could become vertices
};

}  // namespace zyn
