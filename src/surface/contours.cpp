// Contour lines of a surface.
#include <zyn/network.h>

#include "surface/interpolate.h"
#include "surface/queries.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_numbers.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

/// Represents a point where a line crosses an edge. `vertex` is set if that is an end of the edge.
template <class Real>
struct Node {
    XPnt3d position;
    const Real* vertex = nullptr;

    [[nodiscard]] bool isAt(const Node& other) const {
        return position.x == other.position.x && position.y == other.position.y;
    }
};

/// Represents a line from node to node. The last node of a closed line equals the first.
/// `isRidge[i]` is true if the step from node i to the next one is a ridge: an edge at the level,
/// with lower ground on both sides.
template <class Real>
struct Trace {
    std::vector<Node<Real>> nodes;
    std::vector<bool> isRidge;
    bool isClosed = false;

    /// Rotates a closed line so that it begins with a ridge; does nothing if it has none.
    void startAtRidge() {
        const auto ridge = std::find(isRidge.begin(), isRidge.end(), true);
        if (!isClosed || ridge == isRidge.end()) { return; }
        nodes.pop_back();
        std::rotate(nodes.begin(), nodes.begin() + (ridge - isRidge.begin()), nodes.end());
        nodes.push_back(nodes.front());
        std::rotate(isRidge.begin(), ridge, isRidge.end());
    }
};

/// Follows the lines of one level through the triangles. A vertex at the level counts as above it.
/// So each triangle has no crossed edge or two of them, and no line ends at a vertex.
template <class Real>
class ContourTracer {
public:
    using Tri = TinRecord<Real>;

    explicit ContourTracer(const SurfaceTriangles<Real>& surface)
        : triangleIndex(surface.network()), belongs(surface.triangleCount()) {
        surface.forEach([this](const Tri* t, std::size_t number) {
            belongs[number] = true;
            const auto [low, high] = std::minmax(
                {double(t->vertex[0][2]), double(t->vertex[1][2]), double(t->vertex[2][2])});
            if (low < high) { slanted.push_back({t, low, high}); }
        });
        lastLevelOf.assign(surface.triangleCount(), 0);
    }

    /// Appends the lines of the level to `pieces`, cut where they follow ridges.
    void trace(double newLevel, std::vector<std::vector<Node<Real>>>& pieces) {
        level = newLevel;
        ++levelNumber;
        for (const auto& [t, low, high] : slanted) {
            if (low < level && level <= high && !isDone(t)) { cut(follow(t), pieces); }
        }
    }

private:
    struct Slanted {
        const Tri* triangle;
        double low, high;
    };

    [[nodiscard]] bool isAbove(const Real* v) const { return double(v[2]) >= level; }
    [[nodiscard]] bool isDone(const Tri* t) {
        return lastLevelOf[std::size_t(triangleIndex(t))] == levelNumber;
    }
    /// Returns the neighbour across the edge opposite corner `i`, or null at the rim of the
    /// surface.
    [[nodiscard]] const Tri* beyond(const Tri* t, int i) {
        const Tri* const n = t->neighbor[i];
        const std::int32_t number = triangleIndex(n);
        return number >= 0 && belongs[std::size_t(number)] ? n : nullptr;
    }
    /// Returns the edge across which a line enters or leaves t, or 3 if there is none. Higher
    /// ground is on the left of a line. So the line enters where the heights fall along the
    /// counter-clockwise boundary of t.
    [[nodiscard]] int crossedEdge(const Tri* t, bool leaving) const {
        for (int i = 0; i < 3; ++i) {
            const bool from = isAbove(t->vertex[after[i]]), to = isAbove(t->vertex[before[i]]);
            if (from != to && to == leaving) { return i; }
        }
        return 3;
    }
    /// Returns the node at which the line crosses edge `i`. Computes it from the lower end, so both
    /// triangles of an edge get the same node.
    [[nodiscard]] Node<Real> crossing(const Tri* t, int i) const {
        const Real* low = t->vertex[after[i]];
        const Real* high = t->vertex[before[i]];
        if (isAbove(low)) { std::swap(low, high); }
        const XPnt3d a = positionOf(low), b = positionOf(high);
        if (b.z == level) { return {b, high}; }
        const double share = shareOf(a.z, b.z, level);
        return {{a.x + share * (b.x - a.x), a.y + share * (b.y - a.y), level}, nullptr};
    }
    /// Returns whether the step through t is a ridge: an edge of t at the level, with lower ground
    /// in t and beyond the edge. REQUIRES: t has a crossed edge.
    [[nodiscard]] bool isRidgeStep(const Tri* t) {
        for (int i = 0; i < 3; ++i) {
            if (isAbove(t->vertex[i])) { continue; }
            const Tri* const n = beyond(t, i);
            if (double(t->vertex[after[i]][2]) != level ||
                double(t->vertex[before[i]][2]) != level || n == nullptr) {
                return false;
            }
            const int back = n->index(t);
            return back != 3 && !isAbove(n->vertex[back]);
        }
        return false;
    }

    /// Returns the triangle into which a line that leaves t continues, or the one from which it
    /// came. Returns null at the end of the line, and where links of a damaged network do not fit
    /// together.
    [[nodiscard]] const Tri* next(const Tri* t, bool leaving) {
        const Tri* const n = beyond(t, crossedEdge(t, leaving));
        return n != nullptr && crossedEdge(n, leaving) != 3 && !isDone(n) ? n : nullptr;
    }
    /// Returns the whole line through t. Goes backwards first, to its start or around to t again.
    Trace<Real> follow(const Tri* t) {
        const Tri* start = t;
        for (std::size_t steps = 0; steps < belongs.size(); ++steps) {
            const Tri* const previous = next(start, false);
            if (previous == nullptr || previous == t) { break; }
            start = previous;
        }
        Trace<Real> line;
        line.nodes.push_back(crossing(start, crossedEdge(start, false)));
        const Tri* last = nullptr;
        for (const Tri* n = start; n != nullptr; n = next(n, true)) {
            lastLevelOf[std::size_t(triangleIndex(n))] = levelNumber;
            line.isRidge.push_back(isRidgeStep(n));
            line.nodes.push_back(crossing(n, crossedEdge(n, true)));
            last = n;
        }
        line.isClosed = beyond(last, crossedEdge(last, true)) == start;
        return line;
    }

    /// Cuts a line at its ridges. Leaves out the steps along ridges, and steps between nodes in one
    /// place.
    static void cut(Trace<Real> line, std::vector<std::vector<Node<Real>>>& pieces) {
        line.startAtRidge();
        std::vector<Node<Real>> piece{line.nodes[0]};
        const auto end = [&piece, &pieces] {
            if (piece.size() > 1) { pieces.push_back(std::move(piece)); }
            piece.clear();
        };
        for (std::size_t i = 0; i < line.isRidge.size(); ++i) {
            const Node<Real>& next = line.nodes[i + 1];
            if (line.isRidge[i]) { end(); }
            if (piece.empty() || !piece.back().isAt(next)) { piece.push_back(next); }
        }
        end();
    }

    TriangleNumbers<Real> triangleIndex;
    std::vector<bool> belongs;
    std::vector<Slanted> slanted;
    std::vector<std::uint32_t> lastLevelOf;  // by triangle, the latest level seen there
    std::uint32_t levelNumber = 0;
    double level = 0;
};

/// Joins pieces that were cut at ridges. A piece that ends at a vertex continues with one that
/// starts there. As many pieces start at a vertex as end there.
template <class Real>
void join(std::vector<std::vector<Node<Real>>>& pieces) {
    static constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::unordered_multimap<const Real*, std::size_t> startingAt;
    const auto isClosed = [](const auto& piece) { return piece.front().isAt(piece.back()); };
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const Real* const start = pieces[i].front().vertex;
        if (start != nullptr && !isClosed(pieces[i])) { startingAt.emplace(start, i); }
    }
    const auto take = [&startingAt](const Real* vertex, auto isWanted) {
        const auto [first, end] = startingAt.equal_range(vertex);
        const auto found =
            std::find_if(first, end, [&isWanted](const auto& e) { return isWanted(e.second); });
        if (found == end) { return none; }
        const std::size_t piece = found->second;
        startingAt.erase(found);
        return piece;
    };
    // A piece to which others are joined keeps its index; the others become empty.
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        while (!pieces[i].empty() && pieces[i].back().vertex != nullptr && !isClosed(pieces[i])) {
            const std::size_t next =
                take(pieces[i].back().vertex, [i](std::size_t other) { return other != i; });
            if (next == none) { break; }
            pieces[i].insert(pieces[i].end(), pieces[next].begin() + 1, pieces[next].end());
            pieces[next].clear();
            if (isClosed(pieces[i])) {
                take(pieces[i].front().vertex, [i](std::size_t other) { return other == i; });
            }
        }
    }
    std::erase_if(pieces, [](const auto& piece) { return piece.empty(); });
}

}  // namespace

namespace detail {

template <class Real>
void forEachContour(const SurfaceTriangles<Real>& surface, std::span<const double> levels,
                    const std::function<void(std::span<const XPnt3d>)>& use) {
    if (!surface.hasEngine()) { return; }
    ContourTracer<Real> tracer(surface);
    std::vector<std::vector<Node<Real>>> pieces;
    std::vector<XPnt3d> line;
    for (const double level : levels) {
        pieces.clear();
        tracer.trace(level, pieces);
        join(pieces);
        for (const std::vector<Node<Real>>& piece : pieces) {
            line.clear();
            for (const Node<Real>& node : piece) { line.push_back(node.position); }
            use(line);
        }
    }
}

template void forEachContour(const SurfaceTriangles<double>&, std::span<const double>,
                             const std::function<void(std::span<const XPnt3d>)>&);

}  // namespace detail

template <class Real>
ref_ptr<Pnt3dArrayArray> contours(DelaunayInterface<Real>* interface, const DoubleArray* levels,
                                  double maxEdge) {
    ref_ptr<Pnt3dArrayArray> lines = newPnt3dArrayArray();
    if (levels == nullptr) { return lines; }
    const SurfaceTriangles<Real> surface(engineOf(interface), maxEdge);
    const std::span<const double> all(levels->data(), static_cast<std::size_t>(levels->size()));
    detail::forEachContour(surface, all, [&lines](std::span<const XPnt3d> points) {
        const ref_ptr<Pnt3dArray> line = newPnt3dArray();
        line->append(points.data(), static_cast<int>(points.size()));
        lines->append(line.get());
    });
    return lines;
}

template ref_ptr<Pnt3dArrayArray> contours(DelaunayInterface<float>*, const DoubleArray*, double);
template ref_ptr<Pnt3dArrayArray> contours(DelaunayInterface<double>*, const DoubleArray*, double);

}  // namespace zyn
