// SurfaceView: the queries of a surface.
#include <zyn/geometry.h>
#include <zyn/surface.h>

#include "surface/queries.h"
#include "surface/surface_error.h"
#include "surface/surface_state.h"
#include "surface/triangle_area.h"
#include "triangulation/flip.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <set>
#include <utility>

namespace zyn {

using namespace detail;

namespace {

using Triangles = SurfaceTriangles<double>;

}  // namespace

// Parts

SurfaceTriangleIterator& SurfaceTriangleIterator::operator++() {
    const Triangles triangles = trianglesOf(state, maxEdge);
    while (next < triangles.triangleCount()) {
        const tind* const t = triangles.network().at(next++);
        if (triangles.has(t)) {
            current = SurfaceTriangle(state, maxEdge, t);
            return *this;
        }
    }
    current = SurfaceTriangle();
    return *this;
}

SurfaceTriangleIterator SurfaceView::firstTriangle() const {
    SurfaceTriangleIterator first;
    first.state = state;
    first.maxEdge = maxEdge;
    return ++first;
}

int SurfaceView::triangleCount() const {
    int count = 0;
    trianglesOf(state, maxEdge).forEach([&count](const tind*, std::size_t) { ++count; });
    return count;
}

std::vector<int> SurfaceView::vertices() const {
    std::vector<int> numbers;
    for (int n = 0; state != nullptr && n < state->points.size(); ++n) {
        if (state->isVertex(n)) { numbers.push_back(n); }
    }
    return numbers;
}

std::vector<std::array<int, 2>> SurfaceView::edges() const {
    std::vector<std::array<int, 2>> pairs;
    const Triangles triangles = trianglesOf(state, maxEdge);
    triangles.forEach([&](const tind* t, std::size_t) {
        for (int i = 0; i < 3; ++i) {
            const tind* const n = t->neighbor[i];
            const int from = state->points.numberOf(t->vertex[after[i]]);
            const int to = state->points.numberOf(t->vertex[before[i]]);
            if (from < to || !triangles.has(n)) { pairs.push_back({from, to}); }
        }
    });
    return pairs;
}

namespace {

/// Returns whether a triangle of the view has the edge a-b.
bool hasTriangleBeside(const Triangles& triangles, const SurfaceNetwork& network, const double* a,
                       const double* b) {
    const auto [t, corner] = network.triangleAt(a);
    bool isFound = false;
    if (t == nullptr) { return false; }
    forEachAround(t, corner, network.engine->count(), [&](const tind* n, int) {
        isFound = triangles.has(n) && n->index(b) != 3;
        return isFound;
    });
    return isFound;
}

}  // namespace

std::vector<std::array<int, 2>> SurfaceView::breaklineEdges() const {
    std::vector<std::array<int, 2>> pairs;
    const Triangles triangles = trianglesOf(state, maxEdge);
    if (!triangles.hasEngine()) { return pairs; }
    const PDoubleArray& list = *state->network.fixedList;
    for (int i = 0; i + 1 < list.size(); i += 2) {
        if (maxEdge == anyEdge ||
            hasTriangleBeside(triangles, state->network, list[i], list[i + 1])) {
            pairs.push_back({state->points.numberOf(list[i]), state->points.numberOf(list[i + 1])});
        }
    }
    return pairs;
}

namespace {

/// Represents an edge by the triangle on its left and the slot opposite it.
using RimEdge = std::pair<const tind*, int>;

/// Returns the edge of the rim that starts at the end of e.
RimEdge nextOnRim(const Triangles& triangles, RimEdge e) {
    auto [t, slot] = e;
    slot = after[slot];
    while (triangles.has(t->neighbor[slot])) {
        const tind* const n = t->neighbor[slot];
        slot = after[n->index(t)];
        t = n;
    }
    return {t, slot};
}

}  // namespace

std::vector<std::vector<int>> SurfaceView::rim() const {
    std::vector<std::vector<int>> lines;
    const Triangles triangles = trianglesOf(state, maxEdge);
    std::set<RimEdge> seen;
    triangles.forEach([&](const tind* t, std::size_t) {
        for (int i = 0; i < 3; ++i) {
            RimEdge e{t, i};
            if (triangles.has(t->neighbor[i]) || seen.contains(e)) { continue; }
            std::vector<int>& line = lines.emplace_back();
            for (; seen.insert(e).second; e = nextOnRim(triangles, e)) {
                line.push_back(state->points.numberOf(e.first->vertex[after[e.second]]));
            }
        }
    });
    return lines;
}

std::optional<SurfaceTriangle> SurfaceView::triangleAt(double x, double y) const {
    const Triangles triangles = trianglesOf(state, maxEdge);
    if (!triangles.hasEngine()) { return std::nullopt; }
    const Xy q{x, y};
    const tind* const t = detail::triangleAt(triangles, state->network.start(q), q);
    if (t == nullptr) { return std::nullopt; }
    return SurfaceTriangle(state, maxEdge, t);
}

// Measures

double SurfaceView::area() const {
    double sum = 0;
    trianglesOf(state, maxEdge).forEach([&sum](const tind* t, std::size_t) { sum += areaOf(*t); });
    return sum;
}

double SurfaceView::planArea() const {
    double sum = 0;
    trianglesOf(state, maxEdge).forEach([&sum](const tind* t, std::size_t) {
        sum += planAreaOf(*t);
    });
    return sum;
}

Enve3d SurfaceView::bounds() const {
    Enve3d box;
    trianglesOf(state, maxEdge).forEach([&box](const tind* t, std::size_t) {
        for (const double* const v : t->vertex) { box.SetBox(positionOf(v)); }
    });
    return box;
}

SurfaceVolume SurfaceView::volume(double level) const {
    return detail::volumeOf(trianglesOf(state, maxEdge), level);
}

// Heights

std::optional<double> SurfaceView::heightAt(double x, double y) const {
    const Triangles triangles = trianglesOf(state, maxEdge);
    if (!triangles.hasEngine()) { return std::nullopt; }
    const Xy q{x, y};
    const tind* const t = detail::triangleAt(triangles, state->network.start(q), q);
    return t == nullptr ? std::nullopt : std::optional(detail::heightIn(t, q));
}

int SurfaceView::heightsAt(std::span<XPnt3d> points) const {
    const Triangles triangles = trianglesOf(state, maxEdge);
    if (triangles.hasEngine()) {
        return detail::heightsAt<double>(triangles, points, state->network.startNear());
    }
    for (XPnt3d& p : points) { p.z = std::numeric_limits<double>::quiet_NaN(); }
    return 0;
}

Polyline SurfaceView::profile(const XPnt2d& a, const XPnt2d& b) const {
    const Triangles triangles = trianglesOf(state, maxEdge);
    if (!triangles.hasEngine()) { return {}; }
    const Xy from{a.x, a.y}, to{b.x, b.y};
    return detail::profileOf(triangles, state->network.start(from), from, to);
}

Raster SurfaceView::rasterize(const Enve2d& envelope, int columns, int rows) const {
    if (columns < 1) { throwBad("a raster needs columns", columns); }
    if (rows < 1) { throwBad("a raster needs rows", rows); }
    if (!detail::isGrid(envelope, columns, rows)) {
        throwBad("the envelope of a raster has no area", envelope.area());
    }
    Raster raster{envelope, columns, rows, {}};
    const std::size_t cells = std::size_t(columns) * std::size_t(rows);
    if (cells > raster.values.max_size()) {
        throwBad("a raster has too many cells", double(cells));
    }
    raster.values.assign(cells, std::numeric_limits<double>::quiet_NaN());
    detail::fillCells(trianglesOf(state, maxEdge), envelope, columns, rows, raster.values.data());
    return raster;
}

std::vector<Polyline> SurfaceView::contours(std::span<const double> levels) const {
    std::vector<Polyline> lines;
    detail::forEachContour<double>(
        trianglesOf(state, maxEdge), levels,
        [&lines](std::span<const XPnt3d> line) { lines.emplace_back(line.begin(), line.end()); });
    return lines;
}

}  // namespace zyn
