// What a Surface owns.
#pragma once

#include <zyn/surface.h>

#include "surface/point_store.h"
#include "surface/surface_network.h"

#include <cstddef>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Owns what a Surface holds, and changes it. If a change throws, the surface stays sound, with a part
/// of what was to change.
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

    struct Insertion;

    template <class Change>
    auto changeSafely(Change change);
    PointReport insertPoints(std::span<XPnt3d> added, IZynProgress* progress);
    void insertPoint(Insertion& run, int index, tind* start);
    BreaklineReport insertLines(std::span<const Polyline> lines, const BreaklineOptions& wanted);
    [[nodiscard]] LinePoints pointsOf(std::span<const Polyline> lines, bool soft,
                                      std::vector<int>& leftOut) const;
    XPnt3d* keepCrossing(const XPnt3d& p);
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

}  // namespace zyn::detail
