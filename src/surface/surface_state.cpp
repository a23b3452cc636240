// How a Surface changes.
#include "surface/surface_state.h"

#include "surface/breaklines.h"
#include "surface/close_hull.h"
#include "surface/insert.h"
#include "surface/queries.h"
#include "surface/restore.h"
#include "triangulation/ring.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zyn {
namespace {

/// Frames stay within what the predicates take.
constexpr double farthest = 1e90;

bool isPlaceable(const XPnt3d& p) {
    return std::abs(p.x) <= farthest && std::abs(p.y) <= farthest && std::isfinite(p.z);
}

}  // namespace

SurfaceNetwork::SurfaceNetwork(const PlanBox& box) : fixedList(newVertexArray<double>()) {
    constexpr double extents = 16;
    const double size =
        std::max({std::abs(box.minX), std::abs(box.maxX), std::abs(box.minY), std::abs(box.maxY)});
    const double margin = std::max(
        {extents * (box.maxX - box.minX), extents * (box.maxY - box.minY), 1e-6 * size, 1e-200});
    frame = {box.minX - margin, box.minY - margin, box.maxX + margin, box.maxY + margin};
    engine = new delaunayD(0, frame.minX, frame.minY, frame.maxX, frame.maxY);
    updateEdges();
}

bool SurfaceNetwork::holds(const PlanBox& box) const {
    return engine && (box.isEmpty() || (frame.minX < box.minX && box.maxX < frame.maxX &&
                                        frame.minY < box.minY && box.maxY < frame.maxY));
}

void SurfaceNetwork::noteNewVertex(const double* v) {
    tind* const newest = engine->newest();
    starts.note(xyOf(v), engine->count() - 1);
    if (isHullOpen) { return; }
    forRing(newest, newest->index(v), engine->count(), [this](const tind* n, int) {
        isHullOpen = engine->isFrameTriangle(n);
        return isHullOpen;
    });
}

bool SurfaceNetwork::remove(tind* t, int corner) {
    double* const v = t->vertex[corner];
    const auto kept = static_cast<std::int32_t>(engine->count() - 2);
    std::int32_t beside = -1;  // a triangle that keeps its number
    bool isOnLine = false, isOnRim = false;
    forRing(t, corner, engine->count(), [&](const tind* n, int i) {
        isOnLine = isFixed(v, n->vertex[after[i]]) || isFixed(v, n->vertex[before[i]]);
        isOnRim = isOnRim || engine->isFrameTriangle(n);
        if (beside < 0 || beside >= kept) { beside = starts.find(*engine, n->neighbor[i]); }
        return isOnLine;
    });
    if (isOnLine || !engine->removeVertex(t, corner)) { return false; }
    isHullOpen = isHullOpen || isOnRim;
    starts.noteRemoval(xyOf(v), beside < kept ? beside : -1);
    return true;
}

void SurfaceNetwork::closeHull() {
    if (!isHullOpen) { return; }
    detail::closeHull(*engine, *fixed, start(xyOf(engine->frameCorner(0))));
    isHullOpen = false;
}

/// Gets a network that can hold the points. One that has become too small is made anew.
void SurfaceState::makeRoom(std::span<const XPnt3d> newPoints) {
    PlanBox box = extent;
    for (const XPnt3d& p : newPoints) {
        if (isPlaceable(p)) { box.include(p); }
    }
    if (!network.holds(box)) {
        SurfaceNetwork next(box.isEmpty() ? PlanBox{0, 0, 0, 0} : box);
        enterVertices(next);
        network = std::move(next);
    }
    extent = box;
    renewStarts(network.engine->count() + 2 * newPoints.size());
}

/// Makes the starts of walks fit a network of this many triangles.
void SurfaceState::renewStarts(std::size_t triangles) {
    if (!network.starts.isWorn(triangles) || extent.isEmpty()) { return; }
    network.starts.lay(*network.engine, triangles, extent.minX, extent.minY, extent.maxX,
                       extent.maxY);
}

/// Inserts all vertices into a new network, and makes the edges that stay. These do not cross.
void SurfaceState::enterVertices(SurfaceNetwork& next) {
    std::vector<int> numbers;
    std::vector<XPnt3d> places;  // side by side, for the order
    for (int number = 0; number < static_cast<int>(vertices.size()); ++number) {
        if (!isVertex(number)) { continue; }
        numbers.push_back(number);
        places.push_back(points.at(number));
    }
    for (const std::int32_t i : insertionOrder(places.data(), static_cast<int>(places.size()))) {
        next.engine->insert(&points.at(numbers[static_cast<std::size_t>(i)]), 0);
    }
    if (!network.engine) { return; }
    Breaklines<double> breaklines(*next.engine, 0, *next.fixedList, nullptr);
    const PDoubleArray& edges = *network.fixedList;
    for (int i = 0; i + 1 < edges.size(); i += 2) {
        std::array<XPnt3d, 2> ends{XPnt3d(edges[i]), XPnt3d(edges[i + 1])};
        breaklines.add(ends, [](const XPnt3d&, const double*) {});
    }
    next.updateEdges();
    detail::restoreInside(*next.engine, *next.fixed);
}

PointReport SurfaceState::insert(std::span<XPnt3d> added, IZynProgress* progress) {
    PointReport report;
    report.first = static_cast<int>(vertices.size());
    makeRoom(added);
    vertices.resize(vertices.size() + added.size());
    Fallen fallen;
    const auto use = [&](std::int32_t index, bool isNew) {
        const XPnt3d& p = added[static_cast<std::size_t>(index)];
        const double* const other =
            isNew ? nullptr
                  : network.engine->inPlaceOf(p, options.tolerance, network.start({p.x, p.y}));
        if (isNew) {
            vertices[static_cast<std::size_t>(report.first + index)] = true;
            ++report.vertices;
            network.noteNewVertex(p);
        } else if (other != nullptr && std::isfinite(p.z)) {
            fallen.emplace_back(points.numberOf(other), report.first + index);
        } else {
            ++report.notFinite;
        }
    };
    const int count = static_cast<int>(added.size());
    const Xy firstPlace = added.empty() ? Xy{0, 0} : Xy{added[0].x, added[0].y};
    const auto insertBeside = [&](auto& fixed) {
        return insertAll(*network.engine, added.data(), count, options.tolerance, fixed,
                         network.start(firstPlace), progress, use);
    };
    const int offered =
        network.fixed->isEmpty() ? insertBeside(noFixedEdges) : insertBeside(*network.fixed);
    report.refused = static_cast<int>(fallen.size());
    report.skipped = count - offered;
    vertexCount += report.vertices;
    const bool isFirstWanted = options.heights == Heights::breakline;
    settleHeights(fallen, isFirstWanted ? Heights::first : options.heights, report.first);
    finish();
    return report;
}

namespace {

bool isLine(const Polyline& line) {
    const auto isElsewhere = [&line](const XPnt3d& p) {
        return p.x != line[0].x || p.y != line[0].y;
    };
    return std::ranges::all_of(line, isPlaceable) && std::ranges::any_of(line, isElsewhere);
}

}  // namespace

BreaklineReport SurfaceState::insert(std::span<const Polyline> lines,
                                     const BreaklineOptions& wanted) {
    BreaklineReport report;
    std::vector<XPnt3d> all;
    std::vector<std::size_t> lengths;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!isLine(lines[i])) {
            report.leftOut.push_back(static_cast<int>(i));
            continue;
        }
        all.insert(all.end(), lines[i].begin(), lines[i].end());
        lengths.push_back(lines[i].size());
    }
    if (wanted.soft) { takeHeights(all); }
    makeRoom(all);
    network.isHullOpen = true;
    const int first = points.size();
    std::span<XPnt3d> rest = points.append(all);
    vertices.resize(vertices.size() + all.size());

    Breaklines<double>::Keep keep;
    if (!wanted.giveWay) {
        keep = [&](const XPnt3d& p) {
            vertices.push_back(true);
            ++report.crossings;
            return points.append({&p, 1}).data();
        };
    }
    Fallen fallen;
    Breaklines<double> breaklines(*network.engine, wanted.tolerance, *network.fixedList,
                                  std::move(keep));
    for (const std::size_t length : lengths) {
        std::span<XPnt3d> line = rest.first(length);
        rest = rest.subspan(length);
        breaklines.add(line, [&](XPnt3d& p, const double* v) {
            const double* const own = p;
            const int number = points.numberOf(own);
            if (v == own) {
                vertices[static_cast<std::size_t>(number)] = true;
                ++report.vertices;
            } else {
                fallen.emplace_back(points.numberOf(v), number);
            }
        });
    }
    report.edges = breaklines.edges();
    report.lost = breaklines.lost();
    report.refused = static_cast<int>(fallen.size());
    vertexCount += report.vertices + report.crossings;
    const bool isLastWanted = wanted.heights == Heights::breakline;
    settleHeights(fallen, isLastWanted ? Heights::last : wanted.heights, first);
    network.updateEdges();
    detail::restoreInside(*network.engine, *network.fixed);
    finish();
    return report;
}

/// Gives the points the height of the surface where there is one.
void SurfaceState::takeHeights(std::span<XPnt3d> of) const {
    if (!network.engine) { return; }
    const SurfaceTriangles<double> surface(network.engine.get());
    for (XPnt3d& p : of) {
        const Xy q{p.x, p.y};
        if (const tind* const t = detail::triangleAt(surface, network.start(q), q)) {
            p.z = detail::heightIn(t, q);
        }
    }
}

/// Gives each vertex the height that the rule makes of those of the points that fell on it, in the
/// order of their numbers. The height of a vertex from before counts as that of its points.
void SurfaceState::settleHeights(Fallen& fallen, Heights rule, int firstNew) {
    std::ranges::sort(fallen);
    for (std::size_t i = 0; i < fallen.size();) {
        const int vertex = fallen[i].first;
        const bool isOld = vertex < firstNew;
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
                : rule == Heights::mean    ? between(z, heights[k], 1.0 / count)
                                           : z;
        }
    }
}

bool SurfaceState::remove(int number) {
    if (number < 0 || number >= points.size() || !isVertex(number)) { return false; }
    renewStarts(network.engine->count());
    network.starts.fillGaps();
    double* const v = points.at(number);
    tind* const t = network.engine->locateFrom(network.start(xyOf(v)), xyOf(v));
    const int corner = t == nullptr ? 3 : t->index(v);
    if (corner == 3 || !network.remove(t, corner)) { return false; }
    vertices[static_cast<std::size_t>(number)] = false;
    --vertexCount;
    finish();
    return true;
}

void SurfaceState::finish() {
    network.starts.fillGaps();
    network.closeHull();
}

}  // namespace zyn
