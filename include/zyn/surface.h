// Surfaces: what a host does with a network beyond the engine's own interface.
//
//     if (!writeObj(engine.get(), "terrain.obj")) { report("terrain.obj could not be written"); }
//
// Everything here works on engines of either precision, moves their cursor, and leaves out frame
// triangles.
#pragma once

#include <zyn/delaunay.h>
#include <zyn/export.h>

#include <limits>

namespace zyn {

/// Writes the surface as a Wavefront OBJ file: a line `v x y z` a vertex, in the order of first
/// appearance, each coordinate with the digits that bring back the same number; then a line
/// `f a b c` a triangle, counting vertices from 1. Triangles whose longest edge in space is above
/// `maxEdge` are left out. The file appears whole or not at all: false when anything could not be
/// written, and for a null engine.
template <class Real>
ZYN_EXPORT bool writeObj(DelaunayInterface<Real>* engine, const char* path,
                         double maxEdge = std::numeric_limits<double>::infinity());

}  // namespace zyn
