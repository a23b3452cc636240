// The constrained Delaunay triangulation of a surface, independent of its frame.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

#include <vector>

namespace zyn::detail {

/// Flips edges between triangles of the surface until all are Delaunay or fixed. Leaves edges of
/// frame triangles unchanged.
void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed);
/// Does the same if only edges of the given triangles can be illegal.
void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed,
                   std::vector<tind*> pending);
/// Extends the surface to the convex hull; see closeHull() of network.h. Finds the frame by a walk
/// from `start`.
void closeHull(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed, tind* start);

/// Do the same without allocation, in sweeps over all triangles until one finds nothing to flip.
/// @{
void restoreInsideBySweeps(DelaunayEngine<double>& engine,
                           const FixedEdges<double>& fixed) noexcept;
void closeHullBySweeps(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed) noexcept;
/// @}

}  // namespace zyn::detail
