// Surface: what it answers.
#include <zyn/geometry.h>
#include <zyn/surface.h>

#include "core/float_parts.h"
#include "surface/queries.h"
#include "surface/surface_error.h"
#include "surface/surface_state.h"
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

Triangles trianglesOf(const SurfaceState* state, double maxEdge) {
    return Triangles(state == nullptr ? nullptr : state->network.engine.get(), maxEdge);
}

int checkedSlot(int i) {
    if (i < 0 || i > 2) { throwBad("a triangle has corners 0 to 2", i); }
    return i;
}

/// Returns the normal of two sides, as long as twice the area in space. It points upwards, where
/// rounding could turn that of a needle over.
XPnt3d upwardNormal(const XPnt3d& u, const XPnt3d& v) {
    const XPnt3d n = cross(u, v);
    return {n.x, n.y, std::max(n.z, 0.0)};
}
XPnt3d doubleArea(const tind& t) {
    const XPnt3d a = positionOf(t.vertex[0]);
    return upwardNormal(positionOf(t.vertex[1]) - a, positionOf(t.vertex[2]) - a);
}
double lengthOf(const XPnt3d& p) { return std::hypot(p.x, p.y, p.z); }

// Heron's formula would be wrong by a millionth on a needle.
double planAreaOf(const tind& t) { return doubleArea(t).z / 2; }
double areaOf(const tind& t) {
    const double area = lengthOf(doubleArea(t)) / 2;
    return std::isfinite(area) ? area : t.Area();
}

/// Returns the side in a unit of its own, so that products neither overflow nor vanish. The unit is a
/// power of two, which keeps every digit.
XPnt3d inOwnUnit(const XPnt3d& side) {
    const double most = std::max({std::abs(side.x), std::abs(side.y), std::abs(side.z)});
    if (!(most > 0) || !std::isfinite(most)) { return side; }
    const double unit = powerOfTwoIn(most);
    return {side.x / unit, side.y / unit, side.z / unit};
}

}  // namespace

// A triangle

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

/// Whether a triangle of the view has the edge a-b.
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
        if (hasTriangleBeside(triangles, state->network, list[i], list[i + 1])) {
            pairs.push_back({state->points.numberOf(list[i]), state->points.numberOf(list[i + 1])});
        }
    }
    return pairs;
}

namespace {

/// An edge of a triangle: the one opposite corner `slot`, with the triangle on its left.
using RimEdge = std::pair<const tind*, int>;

/// Returns the edge of the rim that starts where this one ends.
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

// Files

namespace {

/// Writes the network, an empty one if there is no surface.
template <class Write>
void writeNetworkOf(const SurfaceState* state, const std::string& path, Write write) {
    SurfaceState empty{SurfaceOptions()};
    if (state == nullptr) {
        empty.addPoints({}, nullptr);
        state = &empty;
    }
    errno = 0;
    requireWritten(write(state->network.engine.get(), path.c_str()), path);
}

}  // namespace

void SurfaceView::writeObj(const std::string& path) const {
    writeNetworkOf(state, path, [this](auto* engine, const char* file) {
        return zyn::writeObj(engine, file, maxEdge);
    });
}

void SurfaceView::writePly(const std::string& path, PlyNormals normals) const {
    writeNetworkOf(state, path, [this, normals](auto* engine, const char* file) {
        return zyn::writePly(engine, file, maxEdge, normals);
    });
}

void SurfaceView::writeLandXml(const std::string& path, const QString& name,
                               LengthUnit unit) const {
    writeNetworkOf(state, path, [&](auto* engine, const char* file) {
        return zyn::writeLandXml(engine, file, name, unit, maxEdge);
    });
}

void SurfaceView::writeNetwork(const std::string& path) const {
    writeNetworkOf(state, path,
                   [](auto* engine, const char* file) { return writeBinary(engine, file); });
}

}  // namespace zyn
