// The data of a Surface.
#pragma once

#include <zyn/surface.h>

#include "surface/changes.h"
#include "surface/point_store.h"
#include "surface/surface_network.h"
#include "surface/surface_triangles.h"

#include <cstddef>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Owns the points and the network of a Surface, and changes them. If a change throws, the surface
/// stays valid, with a part of the change made.
struct SurfaceState {
    /// Lists points that fell on a vertex: the number of the vertex, then that of the point.
    using Fallen = std::vector<std::pair<int, int>>;

    explicit SurfaceState(const SurfaceOptions& newOptions) : options(newOptions) {}

    /// Makes vertices of points and closes the hull. REQUIRES: `added` are the last points of the
    /// store.
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
    std::vector<bool> vertices;             // whether points are vertices, by number; may end early
    std::unordered_map<int, int> standIns;  // the vertex, by the number of a point that fell on it
    std::unordered_map<int, int> fallenCount;  // of points at a vertex, if several
    SurfaceNetwork network;                    // has no engine at first
    int vertexCount = 0;

private:
    /// Represents the numbers from `first` up to, but not including, `end`.
    struct Numbers {
        int first, end;
        [[nodiscard]] bool contains(int number) const { return first <= number && number < end; }
    };

    /// Holds the points of several lines, one line after the other.
    struct LinePoints {
        std::vector<XPnt3d> points;
        std::vector<std::size_t> lengths;
    };

    struct Insertion;

    template <class Change>
    auto changeSafely(Change change);
    PointReport insertPoints(std::span<XPnt3d> added, IZynProgress* progress);
    void insertPoint(Insertion& run, int index, tind* start);
    BreaklineReport insertLines(std::span<const Polyline> lines, const BreaklineOptions& wanted);
    [[nodiscard]] LinePoints pointsOf(std::span<const Polyline> lines, bool soft,
                                      std::vector<int>& leftOut) const;
    void restoreBeside(Changes<double>& changes, int made);
    XPnt3d* keepCrossing(const XPnt3d& p);
    bool removeVertex(int number);
    void makeRoom(std::span<const XPnt3d> newPoints, double tolerance);
    [[nodiscard]] StartTree newStarts(std::size_t newPoints) const;
    void enterVertices(SurfaceNetwork& next);
    void restoreAt(int first, int count);
    void takeHeights(std::span<XPnt3d> of) const;
    void settleHeights(Fallen& fallen, Heights rule, Numbers added);
    void mend() noexcept;

    PlanBox extent;  // of all points that can become vertices
};

/// Returns the triangles of a surface without edges longer than `maxEdge`; none for null.
[[nodiscard]] inline SurfaceTriangles<double> trianglesOf(const SurfaceState* state,
                                                          double maxEdge) {
    return SurfaceTriangles<double>(state == nullptr ? nullptr : state->network.engine.get(),
                                    maxEdge);
}

}  // namespace zyn::detail
