// What is asked of the triangles of a surface, whoever holds the network. Reads only: any number of
// threads may ask at once.
#pragma once

#include <zyn/network.h>

#include "surface/surface_triangles.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <vector>

namespace zyn::detail {

/// Returns the triangle of the surface that holds q, found by a walk from `hint`; null off the
/// surface. On the rim the walk may end in the triangle beside it.
template <class Real>
[[nodiscard]] TinRecord<Real>* triangleAt(const SurfaceTriangles<Real>& surface,
                                          TinRecord<Real>* hint, Xy q);
/// Returns the height at q. REQUIRES: t holds q.
template <class Real>
[[nodiscard]] double heightIn(const TinRecord<Real>* t, Xy q);
/// Whether q is at most this many lengths of the triangle's edges from it, so that a walk is short.
template <class Real>
[[nodiscard]] bool isWithinEdges(const TinRecord<Real>* t, Xy q, double edges) {
    const auto length = [](Xy d) { return std::abs(d.x) + std::abs(d.y); };
    const Xy a = xyOf(t->vertex[0]);
    return length(q - a) <
           edges * std::max(length(xyOf(t->vertex[1]) - a), length(xyOf(t->vertex[2]) - a));
}
/// Returns the triangle from which to walk to a place, after a walk that ended at `last`, or null.
template <class Real>
using StartNear = std::function<TinRecord<Real>*(TinRecord<Real>* last, Xy q)>;
/// Sets the z of each point to the height there, NaN off the surface. Returns the number of heights.
template <class Real>
int heightsAt(const SurfaceTriangles<Real>& surface, std::span<XPnt3d> points,
              const StartNear<Real>& start);

/// The line from a to b on the surface, with a NaN where it comes back; see profile().
template <class Real>
[[nodiscard]] std::vector<XPnt3d> profileOf(const SurfaceTriangles<Real>& surface,
                                            TinRecord<Real>* hint, Xy a, Xy b);

/// Whether cells can fill the envelope.
[[nodiscard]] bool isGrid(const Enve2d& envelope, int columns, int rows);
/// Sets those cells whose centres are on the surface; see rasterize(). REQUIRES: isGrid().
template <class Real>
void fillCells(const SurfaceTriangles<Real>& surface, const Enve2d& envelope, int columns, int rows,
               double* cells);

/// Calls `use` with each line in turn; see contours().
template <class Real>
void forContours(const SurfaceTriangles<Real>& surface, std::span<const double> levels,
                 const std::function<void(std::span<const XPnt3d>)>& use);

template <class Real>
[[nodiscard]] SurfaceVolume volumeOf(const SurfaceTriangles<Real>& surface, double level);

}  // namespace zyn::detail
