#include "network.h"

#include "point_reader.h"
#include "terminal_progress.h"

#include <zyn/geometry.h>
#include <zyn/network.h>

#include <algorithm>
#include <cstdio>
#include <limits>

using namespace zyn;

namespace {

/// The corners of the frame take flat triangles on the surface's rim for themselves, the fewer the
/// farther away they are.
Enve2d frameAround(Pnt3dArray& points, Pnt3dArrayArray& breaklines) {
    Enve2d frame = boxAround(points);
    for (Pnt3dArray* const breakline : breaklines) { frame.Union(boxAround(*breakline)); }
    constexpr double margin = 1000;
    constexpr double leastExtent = 1;  // points in one place need a frame too
    frame.extend(margin * std::max({frame.width(), frame.hight(), leastExtent}));
    return frame;
}

/// A breakline of one vertex is a point.
void insertSinglePoints(IZynDelaunayD& engine, Pnt3dArrayArray& breaklines, double tolerance) {
    for (Pnt3dArray* const breakline : breaklines) {
        if (breakline->size() == 1) { addPoints(&engine, breakline, tolerance); }
    }
}

}  // namespace

double defaultTolerance(Pnt3dArray& points) {
    const Enve2d box = boxAround(points);
    constexpr double share = 1e-7, most = 0.001;
    return std::min(most, share * std::max(box.width(), box.hight()));
}

Network triangulate(Pnt3dArray& points, Pnt3dArrayArray& breaklines, double tolerance) {
    const Enve2d frame = frameAround(points, breaklines);
    Network network;
    network.engine = newZynDelaunayDouble(0, frame.minX, frame.minY, frame.maxX, frame.maxY);
    IZynDelaunayD* const engine = network.engine.get();
    const ref_ptr<TerminalProgress> progress = new TerminalProgress("triangulating");
    network.rejectedPoints = points.size() - addPoints(engine, &points, tolerance, progress.get());
    insertSinglePoints(*engine, breaklines, tolerance);

    // Where breaklines cross, both stay and share a vertex.
    const ref_ptr<PDoubleArray> fixed = newPDoubleArray();
    network.breaklineEdges = std::max(
        0, addBreaklines(engine, &breaklines, tolerance, fixed.get(), network.crossings.get()));
    if (fixed->size() > 0) { restoreDelaunay(engine, fixed.get()); }
    return network;
}

std::string aboutRejected(const Network& network, int points, double tolerance) {
    char text[160];
    std::snprintf(text, sizeof text,
                  "left out %d of %d points that are within %g of another in x and y",
                  network.rejectedPoints, points, tolerance);
    return text;
}

std::optional<XPnt2d> gradientOf(const tind& t) {
    const XPnt3d a(t.vertex[0]);
    const XPnt3d u = XPnt3d(t.vertex[1]) - a, v = XPnt3d(t.vertex[2]) - a;
    const double area2 = u.x * v.y - u.y * v.x;
    if (area2 == 0) { return {}; }
    return XPnt2d((u.z * v.y - u.y * v.z) / area2, (u.x * v.z - u.z * v.x) / area2);
}

void forSurface(IZynDelaunayD& engine, double maxEdge,
                const std::function<void(const tind&)>& use) {
    engine.rewindTriangles();
    while (const tind* const t = engine.nextTriangle()) {
        const XPnt3d a(t->vertex[0]), b(t->vertex[1]), c(t->vertex[2]);
        const double longest2 = std::max({dist2(a, b), dist2(b, c), dist2(c, a)});
        if (!engine.isFrameTriangle(t) && !(longest2 > maxEdge * maxEdge)) { use(*t); }
    }
}

Measures measure(IZynDelaunayD& engine, double maxEdge) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Measures surface;
    surface.minZ = infinity;
    surface.maxZ = -infinity;
    forSurface(engine, maxEdge, [&surface](const tind& t) {
        ++surface.triangles;
        surface.area += t.Area();
        surface.planArea += t.AreaHorizen();
        for (const double* const corner : t.vertex) {
            surface.minZ = std::min(surface.minZ, corner[2]);
            surface.maxZ = std::max(surface.maxZ, corner[2]);
            surface.area2d.SetBox(corner[0], corner[1]);
        }
    });
    return surface;
}
