// Changes of a Surface.
#include "surface/surface_state.h"

#include "surface/breaklines.h"
#include "surface/insert.h"
#include "surface/interpolate.h"
#include "surface/queries.h"
#include "surface/restore.h"
#include "surface/surface_triangles.h"
#include "triangulation/ring.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zyn::detail {

namespace {

/// Limits coordinates, so that frames stay in the range of the predicates.
constexpr double farthest = 1e90;

bool isPlaceable(const XPnt3d& p) {
    return std::abs(p.x) <= farthest && std::abs(p.y) <= farthest && std::isfinite(p.z);
}
/// Returns a tolerance with the same effect that leaves room for a frame.
double usableTolerance(double tolerance) { return std::min(tolerance, 2 * farthest); }

}  // namespace

/// Makes the change. If it throws, mends the surface.
template <class Change>
auto SurfaceState::changeSafely(Change change) {
    try {
        return change();
    } catch (...) {
        mend();
        throw;
    }
}

PointReport SurfaceState::addPoints(std::span<XPnt3d> added, IZynProgress* progress) {
    return changeSafely([&] { return insertPoints(added, progress); });
}
BreaklineReport SurfaceState::addLines(std::span<const Polyline> lines,
                                       const BreaklineOptions& wanted) {
    return changeSafely([&] { return insertLines(lines, wanted); });
}
bool SurfaceState::remove(int number) {
    return changeSafely([&] { return removeVertex(number); });
}

/// Replaces a network whose frame is too small for the points. Replaces a tree of starts that is
/// too coarse for them.
void SurfaceState::makeRoom(std::span<const XPnt3d> newPoints, double tolerance) {
    PlanBox box = extent;
    for (const XPnt3d& p : newPoints) {
        if (isPlaceable(p)) { box.include(p); }
    }
    if (!network.holds(box, tolerance)) {
        SurfaceNetwork next(box.isEmpty() ? PlanBox{0, 0, 0, 0} : box, tolerance);
        enterVertices(next);
        network = std::move(next);
    }
    extent = box;
    if (network.starts.isOutgrown(vertexCount + static_cast<int>(newPoints.size()))) {
        network.starts = newStarts(newPoints.size());
        network.starts.noteAll(*network.engine);
    }
}

/// Returns a tree of starts for the vertices and as many points as may become vertices.
StartTree SurfaceState::newStarts(std::size_t newPoints) const {
    std::vector<Xy> sample;
    const auto count = static_cast<std::size_t>(points.size());
    for (std::size_t n = 0; n < count; n = StartTree::nextOfSample(n)) {
        const XPnt3d& p = points.at(static_cast<int>(n));
        if (isPlaceable(p)) { sample.push_back({p.x, p.y}); }
    }
    return {std::move(sample), vertexCount + static_cast<int>(newPoints)};
}

/// Inserts all vertices into a new network, and makes the fixed edges, which do not cross.
void SurfaceState::enterVertices(SurfaceNetwork& next) {
    std::vector<int> numbers;
    std::vector<XPnt3d> places;  // contiguous, for insertionOrder()
    for (int number = 0; number < static_cast<int>(vertices.size()); ++number) {
        if (!isVertex(number)) { continue; }
        numbers.push_back(number);
        places.push_back(points.at(number));
    }
    for (const std::int32_t i : insertionOrder(places.data(), static_cast<int>(places.size()))) {
        next.engine->insert(&points.at(numbers[static_cast<std::size_t>(i)]), 0);
    }
    if (!network.engine) { return; }
    next.starts = newStarts(0);
    next.starts.noteAll(*next.engine);
    Breaklines<double> breaklines(*next.engine, 0, *next.fixed, nullptr, next.startNear());
    const PDoubleArray& edges = *network.fixedList;
    for (int i = 0; i + 1 < edges.size(); i += 2) {
        std::array<XPnt3d, 2> ends{XPnt3d(edges[i]), XPnt3d(edges[i + 1])};
        breaklines.add(ends, [](const XPnt3d&, const double*) {});
    }
    restoreInside(*next.engine, *next.fixed);
}

/// Remembers what insertPoints() has done so far.
struct SurfaceState::Insertion {
    std::span<XPnt3d> added;
    double tolerance;
    PointReport report;
    Fallen fallen;
};

PointReport SurfaceState::insertPoints(std::span<XPnt3d> added, IZynProgress* progress) {
    const int count = static_cast<int>(added.size());
    Insertion run{added, usableTolerance(options.tolerance), {}, {}};
    PointReport& report = run.report;
    report.first = points.size() - count;
    vertices.resize(static_cast<std::size_t>(points.size()));
    makeRoom(added, run.tolerance);
    tind* const start = count == 0 ? nullptr : network.start({added[0].x, added[0].y});
    const auto insert = [&](std::int32_t index, tind* from) { insertPoint(run, index, from); };
    const int offered = insertAll(*network.engine, added.data(), count, start, progress, insert);
    report.refused = static_cast<int>(run.fallen.size());
    report.skipped = count - offered;
    if (vertexCount > 0) { restoreAt(report.first, report.vertices); }
    vertexCount += report.vertices;
    const bool isFirstWanted = options.heights == Heights::breakline;
    settleHeights(run.fallen, isFirstWanted ? Heights::first : options.heights,
                  {report.first, points.size()});
    network.closeHull();
    return report;
}

/// Makes one of the added points a vertex, or counts it as one that cannot be a vertex. The search
/// for its triangle begins at `start`.
void SurfaceState::insertPoint(Insertion& run, int index, tind* start) {
    XPnt3d& p = run.added[static_cast<std::size_t>(index)];
    if (!isPlaceable(p)) {
        ++run.report.notFinite;
        return;
    }
    DelaunayEngine<double>& engine = *network.engine;
    const int number = run.report.first + index;
    const Xy place{p.x, p.y};
    if (network.fixed->isEmpty() ? engine.insert(&p, run.tolerance, start, noFixedEdges)
                                 : engine.insert(&p, run.tolerance, start, *network.fixed)) {
        network.fixed->requireMemory();
        network.noteNewVertex(p);
        vertices[static_cast<std::size_t>(number)] = true;
        // The first vertices are only an outline, whose triangles shrink until the end.
        const int outline = static_cast<int>(run.added.size() / 8);
        const int spacing = run.added.size() < 1024 ? 1 : 4;
        if (++run.report.vertices > outline && run.report.vertices % spacing == 0) {
            network.starts.note(place, engine.count() - 1);
        }
    } else if (const double* const other =
                   engine.inPlaceOf(p, run.tolerance, network.start(place))) {
        run.fallen.emplace_back(points.numberOf(other), number);
    } else {
        ++run.report.notFinite;
    }
}

/// Restores the edges at new vertices. Insertion only tests the edges opposite them. That is not
/// enough beside a closed hull, where frame triangles are not Delaunay.
void SurfaceState::restoreAt(int first, int count) {
    constexpr int few = 8;  // one in eight of all vertices
    if (count > vertexCount / few) {
        restoreInside(*network.engine, *network.fixed);
        return;
    }
    std::vector<tind*> pending;
    for (int number = first; number < points.size(); ++number) {
        if (!isVertex(number)) { continue; }
        const auto [t, corner] = network.triangleAt(points.at(number));
        if (t == nullptr) { continue; }
        forEachAround(t, corner, network.engine->count(), [&pending](tind* n, int) {
            pending.push_back(n);
            return false;
        });
    }
    restoreInside(*network.engine, *network.fixed, std::move(pending));
}

namespace {

/// Returns whether the points can become a chain of edges: all are placeable, and not all are in
/// one place.
bool isLine(const Polyline& line) {
    const auto isElsewhere = [&line](const XPnt3d& p) {
        return p.x != line[0].x || p.y != line[0].y;
    };
    return std::ranges::all_of(line, isPlaceable) && std::ranges::any_of(line, isElsewhere);
}

}  // namespace

/// Returns the points of the lines that can become edges, and the number of points of each. Appends
/// the indices of the other lines to `leftOut`.
SurfaceState::LinePoints SurfaceState::pointsOf(std::span<const Polyline> lines, bool soft,
                                                std::vector<int>& leftOut) const {
    LinePoints taken;
    Polyline line;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        line = lines[i];
        if (soft) { takeHeights(line); }
        if (isLine(line)) {
            taken.points.insert(taken.points.end(), line.begin(), line.end());
            taken.lengths.push_back(line.size());
        } else {
            leftOut.push_back(static_cast<int>(i));
        }
    }
    return taken;
}

BreaklineReport SurfaceState::insertLines(std::span<const Polyline> lines,
                                          const BreaklineOptions& wanted) {
    BreaklineReport report;
    const double tolerance = usableTolerance(wanted.tolerance);
    const LinePoints taken = pointsOf(lines, wanted.soft, report.leftOut);
    const int first = points.size();
    std::span<XPnt3d> rest = points.append(taken.points);
    const Numbers added{first, points.size()};
    vertices.resize(static_cast<std::size_t>(points.size()));
    makeRoom(taken.points, tolerance);

    Breaklines<double>::Keep keep;
    if (!wanted.giveWay) {
        keep = [&](const XPnt3d& p) {
            ++report.crossings;
            return keepCrossing(p);
        };
    }
    Fallen fallen;
    Changes<double> changes;
    Breaklines<double> breaklines(*network.engine, tolerance, *network.fixed, std::move(keep),
                                  network.startNear());
    breaklines.recordIn(changes);
    for (const std::size_t length : taken.lengths) {
        std::span<XPnt3d> line = rest.first(length);
        rest = rest.subspan(length);
        breaklines.add(line, [&](XPnt3d& p, const double* v) {
            const int number = points.numberOf(p);
            if (v != static_cast<const double*>(p)) {
                fallen.emplace_back(points.numberOf(v), number);
                return;
            }
            vertices[static_cast<std::size_t>(number)] = true;
            ++report.vertices;
            network.starts.note({p.x, p.y}, network.engine->count() - 1);
        });
    }
    report.edges = breaklines.edges();
    report.lost = breaklines.lost();
    report.refused = static_cast<int>(fallen.size());
    const Heights hard = wanted.heights == Heights::breakline ? Heights::last : wanted.heights;
    settleHeights(fallen, wanted.soft ? Heights::first : hard, added);
    restoreBeside(changes, report.vertices + report.crossings);
    return report;
}

/// Restores the surface beside what lines have changed. They made this many vertices.
void SurfaceState::restoreBeside(Changes<double>& changes, int made) {
    constexpr int few = 16;
    if (made > vertexCount / few) { network.starts.noteAll(*network.engine); }
    vertexCount += made;
    network.isHullOpen = network.isHullOpen || changes.touchTheFrame;
    restoreInside(*network.engine, *network.fixed, std::move(changes.triangles));
    network.closeHull();
}

/// Keeps a vertex at a crossing of lines. Returns its place.
XPnt3d* SurfaceState::keepCrossing(const XPnt3d& p) {
    XPnt3d* const stored = points.append({&p, 1}).data();
    vertices.resize(static_cast<std::size_t>(points.size()));
    vertices.back() = true;
    return stored;
}

/// Sets the height of each point that is on the surface to that of the surface.
void SurfaceState::takeHeights(std::span<XPnt3d> of) const {
    if (!network.engine) { return; }
    const SurfaceTriangles<double> surface(network.engine.get());
    for (XPnt3d& p : of) {
        const Xy q{p.x, p.y};
        if (const tind* const t = triangleAt(surface, network.start(q), q)) {
            p.z = heightIn(t, q);
        }
    }
}

/// Sets the height of each vertex by the rule, from its own height and those of the points that
/// fell on it, in the order of their numbers. An older vertex comes first, and counts as often as
/// the points it already represents. Vertices at crossings count as older, although their numbers
/// are later, since they were there before points fell on them.
void SurfaceState::settleHeights(Fallen& fallen, Heights rule, Numbers added) {
    std::ranges::sort(fallen);
    for (std::size_t i = 0; i < fallen.size();) {
        const int vertex = fallen[i].first;
        const bool isOld = !added.contains(vertex);
        std::vector<int> numbers;
        for (; i < fallen.size() && fallen[i].first == vertex; ++i) {
            numbers.push_back(fallen[i].second);
            standIns[fallen[i].second] = vertex;
        }
        numbers.insert(isOld ? numbers.begin() : std::ranges::lower_bound(numbers, vertex), vertex);
        std::vector<double> heights;
        for (const int number : numbers) { heights.push_back(points.at(number).z); }
        int& count = fallenCount.try_emplace(vertex, 1).first->second;
        double& z = points.at(vertex).z;
        z = heights[0];
        for (std::size_t k = 1; k < heights.size(); ++k) {
            ++count;
            z = rule == Heights::last      ? heights[k]
                : rule == Heights::lowest  ? std::min(z, heights[k])
                : rule == Heights::highest ? std::max(z, heights[k])
                : rule == Heights::mean    ? interpolate(z, heights[k], 1.0 / count)
                                           : z;
        }
    }
}

bool SurfaceState::removeVertex(int number) {
    if (number < 0 || number >= points.size() || !isVertex(number)) { return false; }
    const auto [t, corner] = network.triangleAt(points.at(number));
    if (t == nullptr || !network.remove(t, corner)) { return false; }
    vertices[static_cast<std::size_t>(number)] = false;
    --vertexCount;
    network.closeHull();
    return true;
}

/// Makes a valid surface from the state that a change left when it threw. Allocates nothing.
void SurfaceState::mend() noexcept {
    if (!network.engine) { return; }
    closeHullBySweeps(*network.engine, *network.fixed);
    std::fill(vertices.begin(), vertices.end(), false);
    for (std::size_t n = 0; n < network.engine->count(); ++n) {
        for (const double* const v : network.engine->at(n)->vertex) {
            const int number = points.numberOf(v);
            if (number >= 0) { vertices[static_cast<std::size_t>(number)] = true; }
        }
    }
    vertexCount = static_cast<int>(std::count(vertices.begin(), vertices.end(), true));
}

}  // namespace zyn::detail
