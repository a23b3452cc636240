#include "network.h"

#include "point_reader.h"
#include "progress_bar.h"

#include <zyn/geometry.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

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

int insertPoints(IZynDelaunayD& engine, Pnt3dArray& points, double tolerance) {
    ProgressBar bar("triangulating");
    int rejected = 0, done = 0;
    for (XPnt3d& p : points) {
        if (!engine.addPoint(&p, tolerance)) { ++rejected; }
        if (++done % 1024 == 0) { bar.show(double(done) / points.size()); }
    }
    return rejected;
}

/// The vertex for `p`: the point itself, or the one that it is refused for.
double* insertVertex(IZynDelaunayD& engine, XPnt3d& p, double tolerance) {
    if (engine.addPoint(&p, tolerance)) { return p; }
    const tind* const t = engine.locate(p.x, p.y);
    return *std::ranges::min_element(
        t->vertex, {}, [&p](const double* corner) { return dist2_2d(p, XPnt3d(corner)); });
}

using Edge = std::pair<double*, double*>;

std::vector<Edge> insertBreakline(IZynDelaunayD& engine, Pnt3dArray& breakline, double tolerance) {
    std::vector<Edge> edges;
    double* last = nullptr;
    for (XPnt3d& p : breakline) {
        double* const vertex = insertVertex(engine, p, tolerance);
        if (last != nullptr && last != vertex) { edges.emplace_back(last, vertex); }
        last = vertex;
    }
    return edges;
}

bool isEdge(IZynDelaunayD& engine, const Edge& edge) {
    const auto [a, b] = edge;
    const ref_ptr<PDoubleArray> around = newPDoubleArray();
    engine.locate(a[0], a[1])->findCone(a, around.get());
    return std::find(around->begin(), around->end(), b) != around->end();
}

}  // namespace

Network triangulate(Pnt3dArray& points, Pnt3dArrayArray& breaklines, double tolerance) {
    const Enve2d frame = frameAround(points, breaklines);
    Network network{newZynDelaunayDouble(0, frame.minX, frame.minY, frame.maxX, frame.maxY)};
    IZynDelaunayD& engine = *network.engine;
    network.rejectedPoints = insertPoints(engine, points, tolerance);

    // All vertices come before the first edge, since a new vertex may flip an edge away; so may an
    // edge that crosses another, which is why the network is asked at the end.
    std::vector<Edge> edges;
    for (Pnt3dArray* const breakline : breaklines) {
        std::ranges::copy(insertBreakline(engine, *breakline, tolerance),
                          std::back_inserter(edges));
    }
    for (const auto& [a, b] : edges) { engine.enforceEdge(a, b, engine.locate(a[0], a[1])); }
    for (const Edge& edge : edges) {
        ++network.breaklineEdges;
        if (!isEdge(engine, edge)) { ++network.missingEdges; }
    }
    return network;
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
