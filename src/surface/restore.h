// The constrained Delaunay triangulation of a surface, whatever its frame.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

namespace zyn::detail {

/// Restores the edges between triangles of the surface, and leaves those of frame triangles alone.
void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed);

}  // namespace zyn::detail
