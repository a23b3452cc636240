// Changes of the network of a Surface.
#include "surface/surface_network.h"

#include "surface/restore.h"
#include "triangulation/flip.h"
#include "triangulation/ring.h"

#include <algorithm>
#include <cmath>

namespace zyn::detail {

SurfaceNetwork::SurfaceNetwork(const PlanBox& box, double tolerance)
    : fixedList(newVertexArray<double>()), fixed(std::make_unique<FixedEdges<double>>(*fixedList)) {
    constexpr double extents = 16;
    const double size =
        std::max({std::abs(box.minX), std::abs(box.maxX), std::abs(box.minY), std::abs(box.maxY)});
    const double margin =
        std::max({extents * (box.maxX - box.minX), extents * (box.maxY - box.minY), 1e-6 * size,
                  2 * tolerance, 1e-200});
    frame = {box.minX - margin, box.minY - margin, box.maxX + margin, box.maxY + margin};
    engine = new delaunayD(0, frame.minX, frame.minY, frame.maxX, frame.maxY);
}

bool SurfaceNetwork::holds(const PlanBox& box, double tolerance) const {
    return engine && (box.isEmpty() ||
                      (frame.minX < box.minX - tolerance && box.maxX + tolerance < frame.maxX &&
                       frame.minY < box.minY - tolerance && box.maxY + tolerance < frame.maxY));
}

void SurfaceNetwork::noteNewVertex(const double* v) {
    if (isHullOpen) { return; }
    tind* const newest = engine->newest();
    forEachAround(newest, newest->index(v), engine->count(), [this](const tind* n, int) {
        isHullOpen = engine->isFrameTriangle(n);
        return isHullOpen;
    });
}

bool SurfaceNetwork::remove(tind* t, int corner) {
    double* const v = t->vertex[corner];
    bool isOnLine = false, isOnRim = false;
    forEachAround(t, corner, engine->count(), [&](const tind* n, int i) {
        isOnLine = isFixed(v, n->vertex[after[i]]) || isFixed(v, n->vertex[before[i]]);
        isOnRim = isOnRim || engine->isFrameTriangle(n);
        return isOnLine;
    });
    if (isOnLine || !engine->removeVertex(t, corner)) { return false; }
    isHullOpen = isHullOpen || isOnRim;
    // Each removal moves two triangles, so some cells of the tree become stale.
    constexpr std::size_t few = 128;
    if (++removals > engine->count() / few) {
        starts.noteAll(*engine);
        removals = 0;
    }
    return true;
}

void SurfaceNetwork::closeHull() {
    if (!isHullOpen) { return; }
    detail::closeHull(*engine, *fixed, start(xyOf(engine->frameCorner(0))));
    isHullOpen = false;
}

}  // namespace zyn::detail
