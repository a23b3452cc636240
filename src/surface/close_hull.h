// The convex hull of the vertices as the rim of a surface.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

namespace zyn::detail {

/// Makes the rim convex, as closeHull() of network.h does, and returns what that returns. Finds the
/// frame by a walk from `start`.
template <class Real>
int closeHull(DelaunayEngine<Real>& engine, const FixedEdges<Real>& fixed, TinRecord<Real>* start);

}  // namespace zyn::detail
