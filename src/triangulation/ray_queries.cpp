// The float engine: where a line meets the surface.
#include "triangulation/engine.h"

#include <zyn/geometry.h>

#include <algorithm>

namespace zyn::detail {

Pnt3fArray* delaunayF::rayIntersections(const XPnt3f& p1, const XPnt3f& p2) {
    ref_ptr<Pnt3fArray> points = newPnt3fArray();
    const float* const from = p1;
    const float* const to = p2;
    rewindTriangles();
    while (const tin* const t = nextTriangle()) {
        float parameter = 0;
        if (!isFrameTriangle(t) && t->ray_intersect3d(from, to, &parameter)) {
            points->append(getPoint(p1, p2, parameter));
        }
    }
    Pnt3fArray* const result = points.get();
    result->ref();
    points = nullptr;
    result->unref_nodelete();
    return result;
}

bool delaunayF::rayNearest(const XPnt3f& p1, const XPnt3f& p2, float* t) {
    constexpr float none = 2147483648.0F;
    const float* const from = p1;
    const float* const to = p2;
    float nearest = none;
    rewindTriangles();
    while (tin* const triangle = nextTriangle()) {
        if (!isFrameTriangle(triangle) && triangle->ray_intersect3d(from, to, t)) {
            nearest = std::min(nearest, *t);
        }
    }
    if (nearest == none) { return false; }
    *t = nearest;
    return true;
}

}  // namespace zyn::detail
