// Queries of the triangles of a surface, for engines and for class Surface.
//
// Threads: queries only read, so several threads may make them at once.
#pragma once

#include <zyn/network.h>

#include "surface/surface_triangles.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <vector>

namespace zyn::detail {

/// Returns the triangle of the surface that contains q, or null off the surface. Finds it by a walk
/// from `hint`, also if the walk ends in the triangle on the other side of the rim.
template <class Real>
[[nodiscard]] TinRecord<Real>* triangleAt(const SurfaceTriangles<Real>& surface,
                                          TinRecord<Real>* hint, Xy q);
/// Returns the height at q. REQUIRES: t contains q.
template <class Real>
[[nodiscard]] double heightIn(const TinRecord<Real>* t, Xy q);
/// Returns whether q is less than `edges` edge lengths away from the triangle, so that a walk is
/// short.
template <class Real>
[[nodiscard]] bool isWithinEdges(const TinRecord<Real>* t, Xy q, double edges) {
    const auto length = [](Xy d) { return std::abs(d.x) + std::abs(d.y); };
    const Xy a = xyOf(t->vertex[0]);
    return length(q - a) <
           edges * std::max(length(xyOf(t->vertex[1]) - a), length(xyOf(t->vertex[2]) - a));
}
/// Returns the triangle from which to walk to q. `last` is the end of the walk before, or null.
template <class Real>
using StartNear = std::function<TinRecord<Real>*(TinRecord<Real>* last, Xy q)>;
/// Sets the z of each point to the height of the surface, or to NaN off the surface. Returns the
/// number of points on the surface.
template <class Real>
int heightsAt(const SurfaceTriangles<Real>& surface, std::span<XPnt3d> points,
              const StartNear<Real>& start);

/// Returns the line from a to b on the surface. A point with NaN height marks each gap; see
/// profile().
template <class Real>
[[nodiscard]] std::vector<XPnt3d> profileOf(const SurfaceTriangles<Real>& surface,
                                            TinRecord<Real>* hint, Xy a, Xy b);

/// Returns whether the envelope can be divided into cells.
[[nodiscard]] bool isGrid(const Enve2d& envelope, int columns, int rows);
/// Sets the cells whose centres are on the surface; see rasterize(). REQUIRES: isGrid().
template <class Real>
void fillCells(const SurfaceTriangles<Real>& surface, const Enve2d& envelope, int columns, int rows,
               double* cells);

/// Calls `use` with each line in turn; see contours().
template <class Real>
void forEachContour(const SurfaceTriangles<Real>& surface, std::span<const double> levels,
                    const std::function<void(std::span<const XPnt3d>)>& use);

/// Returns cut and fill between the surface and the level; see volume().
template <class Real>
[[nodiscard]] SurfaceVolume volumeOf(const SurfaceTriangles<Real>& surface, double level);

}  // namespace zyn::detail
