// SurfaceTriangle: one triangle of a surface.
#include <zyn/surface.h>

#include "core/float_parts.h"
#include "surface/surface_error.h"
#include "surface/surface_state.h"
#include "surface/triangle_area.h"
#include "triangulation/flip.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace zyn {

using namespace detail;

namespace {

int checkedSlot(int i) {
    if (i < 0 || i > 2) { throwBad("a triangle has corners 0 to 2", i); }
    return i;
}

/// Returns the side in a unit of its own, so that products neither overflow nor vanish. The unit is
/// a power of two, which keeps every digit.
XPnt3d inOwnUnit(const XPnt3d& side) {
    const double most = std::max({std::abs(side.x), std::abs(side.y), std::abs(side.z)});
    if (!(most > 0) || !std::isfinite(most)) { return side; }
    const double unit = powerOfTwoIn(most);
    return {side.x / unit, side.y / unit, side.z / unit};
}

}  // namespace

XPnt3d SurfaceTriangle::corner(int i) const { return positionOf(record->vertex[checkedSlot(i)]); }

int SurfaceTriangle::vertex(int i) const {
    return state->points.numberOf(record->vertex[checkedSlot(i)]);
}

std::optional<SurfaceTriangle> SurfaceTriangle::neighbor(int i) const {
    const tind* const n = record->neighbor[checkedSlot(i)];
    if (!trianglesOf(state, maxEdge).has(n)) { return std::nullopt; }
    return SurfaceTriangle(state, maxEdge, n);
}

bool SurfaceTriangle::isBreakline(int i) const {
    const int slot = checkedSlot(i);
    return state->network.isFixed(record->vertex[after[slot]], record->vertex[before[slot]]);
}

double SurfaceTriangle::area() const { return areaOf(*record); }

double SurfaceTriangle::planArea() const { return planAreaOf(*record); }

XPnt3d SurfaceTriangle::normal() const {
    const XPnt3d a = corner(0);
    const XPnt3d n = upwardNormal(inOwnUnit(corner(1) - a), inOwnUnit(corner(2) - a));
    const double length = lengthOf(n);
    if (!(length > 0) || !std::isfinite(length)) { return {0, 0, 1}; }
    return {n.x / length, n.y / length, n.z / length};
}

}  // namespace zyn
