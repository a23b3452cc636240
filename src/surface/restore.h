// The constrained Delaunay triangulation of a surface, whatever its frame.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

#include <vector>

namespace zyn::detail {

/// Restores the edges between triangles of the surface, and leaves those of frame triangles alone.
void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed);
/// Does so where only edges of the given triangles can be illegal.
void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed,
                   std::vector<tind*> pending);
/// Makes the surface the convex hull; see closeHull() of network.h. Finds the frame by a walk from
/// `start`.
void closeHull(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed, tind* start);

/// Do both without memory, in sweeps over all triangles until one finds nothing to flip.
/// @{
void restoreInsideBySweeps(DelaunayEngine<double>& engine,
                           const FixedEdges<double>& fixed) noexcept;
void closeHullBySweeps(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed) noexcept;
/// @}

}  // namespace zyn::detail
