// The constrained Delaunay triangulation of a surface, whatever its frame.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

namespace zyn::detail {

/// Restores the edges between triangles of the surface, and leaves those of frame triangles alone.
void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed);
/// Restores them after a vertex was inserted into a surface whose hull is closed: outside it, frame
/// triangles are in the way of the flips. REQUIRES: v is a corner of the newest triangle.
void restoreRound(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed, const double* v);
/// Makes the surface the convex hull; see closeHull() of network.h.
void closeHull(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed);

/// Do both without memory, in sweeps over all triangles until one finds nothing to flip.
/// @{
void restoreInsideBySweeps(DelaunayEngine<double>& engine,
                           const FixedEdges<double>& fixed) noexcept;
void closeHullBySweeps(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed) noexcept;
/// @}

}  // namespace zyn::detail
