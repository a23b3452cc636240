// One-shot triangulation in a build without the mesh generator.
#include "triangulation/engine.h"

namespace zyn::detail {

bool delaunayD::triangulate(double**, int) { return false; }
bool delaunayD::triangulate(Pnt3dArray*) { return false; }

}  // namespace zyn::detail
