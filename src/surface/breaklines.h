// Breaklines: polylines that become constrained edges of a network.
#pragma once

#include <zyn/network.h>

#include "surface/edge_maker.h"
#include "surface/queries.h"
#include "surface/snap.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"
#include "triangulation/ring.h"

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Brings polylines into a network.
///
/// The vertex at a crossing of two lines is rounded, or is an older one within the tolerance, so
/// both lines bend there. Bent lines that run side by side could cross again and again. Two rules
/// prevent this:
/// - a line that passes close to an end of a fixed edge goes through that end;
/// - lines that cross close to an end of one of them meet at that end.
/// A new vertex is therefore made only where both lines clearly continue on either side. "Close"
/// means within the tolerance and the rounding of a crossing.
/// Source: iterated snap rounding, Halperin and Packer 2002, with squares about vertices as pixels.
template <class Real>
class Breaklines {
public:
    using Tri = TinRecord<Real>;
    using Pnt = XPnt3<Real>;

    /// Keeps a vertex at a crossing and returns its place.
    using Keep = std::function<Pnt*(const Pnt&)>;

    /// Makes edges of earlier lines give way if `keep_` is empty.
    Breaklines(DelaunayEngine<Real>& engine_, Real tolerance_, FixedEdges<Real>& fixed_, Keep keep_,
               detail::StartNear<Real> start_)
        : engine(engine_),
          maker(engine_),
          tolerance(tolerance_),
          snap(tolerance_),
          fixed(fixed_),
          keep(std::move(keep_)),
          start(std::move(start_)) {
        fixed.restartCounting();
    }
    /// Records the triangles beside which edges may not be Delaunay any more.
    void recordIn(Changes<Real>& record) {
        changes = &record;
        maker.recordIn(record);
    }

    /// Makes a polyline part of the network. Inserts all its points first, since each may flip an
    /// edge away. Calls `use` with each point and the vertex that it became or fell on.
    template <class Points, class Use>
    void add(Points& points, Use use) {
        std::vector<Real*> vertices;
        Tri* first = nullptr;
        for (Pnt& p : points) {
            Real* v = vertexAt(p);
            if (v == nullptr && insert(p)) { v = p; }
            if (v == nullptr) { continue; }
            use(p, v);
            if (first == nullptr) { first = latest; }
            if (vertices.empty() || vertices.back() != v) { vertices.push_back(v); }
        }
        maker.startFrom(first);
        for (std::size_t i = 1; i < vertices.size(); ++i) {
            allowance = unknown;
            segment = {vertices[i - 1], vertices[i]};
            splitsLeft = engine.count();
            if (keep == nullptr || !follow(segment)) { makeSegment(segment.from, segment.to, 0); }
        }
    }
    /// Returns the number of edges of the polylines, each counted once.
    [[nodiscard]] int edges() const { return static_cast<int>(fixed.added()); }
    /// Returns the number of fixed edges that gave way, plus that of segments that could not be
    /// made.
    [[nodiscard]] int lost() const { return lostEdges; }

private:
    using Maker = EdgeMaker<Real>;
    using Step = typename Maker::Step;
    using Crossing = typename Maker::Crossing;
    using Segment = VertexSegment<Real>;

    /// Returns a vertex within the tolerance, or null.
    Real* vertexAt(const Pnt& p) { return vertexNear(p, tolerance); }
    Real* vertexNear(const Pnt& p, Real within) {
        const Xy q{double(p.x), double(p.y)};
        Tri* const t = engine.locateFrom(start(latest, q), q);
        if (t == nullptr) { return nullptr; }
        latest = t;
        // An insertion of the point would fail because of a corner of t.
        if (Real* const corner = engine.cornerAt(t, p, within)) { return corner; }
        return within > 0 ? vertexBeyond(t, p, within) : nullptr;
    }
    /// Returns a vertex within the distance that is no corner of t, which holds p, or null. Such a
    /// vertex is behind an edge that passes close to p.
    Real* vertexBeyond(Tri* t, const Pnt& p, Real within) {
        const Snap<Real> square(within);
        std::vector<Tri*> pending{t};
        std::unordered_set<const Tri*> seen{t};
        while (!pending.empty()) {
            Tri* const from = pending.back();
            pending.pop_back();
            for (int i = 0; i < 3; ++i) {
                Tri* const n = from->neighbor[i];
                const Segment edge{from->vertex[after[i]], from->vertex[before[i]]};
                if (n == nullptr || !square.isClose(edge, p) || !seen.insert(n).second) {
                    continue;
                }
                if (Real* const corner = engine.cornerAt(n, p, within)) { return corner; }
                pending.push_back(n);
            }
        }
        return nullptr;
    }
    /// Makes the point a vertex. Also splits a fixed edge on the rim that the point is on, which
    /// the flips of the insertion do not reach. Returns false if the engine refuses the point.
    bool insert(Pnt& p) {
        if (!engine.insert(&p, tolerance, latest, fixed)) { return false; }
        latest = engine.newest();
        if constexpr (DelaunayEngine<Real>::isDouble) { engine.number(&p, 1); }
        Real* const v = p;
        forEachAround(latest, latest->index(v), engine.count(), [this, v](Tri* t, int i) {
            fixed.giveWay(t->vertex[after[i]], t->vertex[before[i]], v);
            noteChange(t);
            return false;
        });
        fixed.requireMemory();
        return true;
    }
    void noteChange(Tri* t) {
        if (changes != nullptr) { changes->note(engine, t); }
    }

    /// Counts fixed edges as the segment if a chain of them already leads from end to end close to
    /// it. Such a chain is an earlier segment that was bent since. Returns false and changes
    /// nothing if there is no such chain.
    bool follow(const Segment& line) {
        struct Place {
            Real* vertex;
            Tri* triangle;
        };
        const Xy from = xyOf(line.from);
        std::vector<Place> places{{line.from, engine.locateFrom(start(latest, from), from)}};
        std::unordered_map<Real*, Real*> cameFrom;
        while (!places.empty() && !cameFrom.contains(line.to)) {
            const auto [v, beside] = places.back();
            places.pop_back();
            const int slot = beside == nullptr ? 3 : beside->index(v);
            if (slot == 3) { continue; }
            forEachAround(beside, slot, engine.count(), [&, v = v](Tri* t, int i) {
                for (Real* const w : {t->vertex[after[i]], t->vertex[before[i]]}) {
                    if (fixed.contains(v, w) &&
                        planeDistance(w, line.to) < planeDistance(v, line.to) + snap.reach(line) &&
                        snap.isClose(line, w, Snap<Real>::bent) &&
                        cameFrom.try_emplace(w, v).second) {
                        places.push_back({w, t});
                    }
                }
                return false;
            });
        }
        const bool isFound = cameFrom.contains(line.to);
        for (Real* v = line.to; isFound && v != line.from; v = cameFrom[v]) {
            fixed.add(cameFrom[v], v);
        }
        return isFound;
    }

    void makeSegment(Real* a, Real* b, int depth) {
        // Only a damaged network needs more steps than it has vertices on the way.
        for (std::size_t stepsLeft = 2 * engine.count() + 16;
             a != nullptr && a != b && stepsLeft > 0; --stepsLeft) {
            a = advance(a, b, depth);
        }
        if (a != b) { ++lostEdges; }
    }

    /// Makes the next edge from a towards b, or clears the way for it. Returns the vertex to
    /// continue from, or null if the way is blocked.
    Real* advance(Real* a, Real* b, int depth) {
        const Step step = maker.look(a, b);
        if (step.way == Maker::Way::blocked) { return nullptr; }
        const bool mayBend = keep != nullptr && depth < mostDepth && splitsLeft > 0;
        Real* v = mayBend ? closeVertex(a, b, step) : nullptr;
        if (v == nullptr && step.way == Maker::Way::edge) {
            fixed.add(a, step.vertex);
            return step.vertex;
        }
        if (v != nullptr) { return goThrough(a, v, depth); }
        Segment crossed;
        Real* const end = maker.collect(a, b, step, [&](const Crossing& c, int slot) {
            if (!mayBend) { return false; }
            if (fixed.contains(c.upper, c.lower)) {
                crossed = {c.upper, c.lower};
                noteChange(c.before);
                noteChange(c.behind);
                return true;
            }
            v = closeCorner({a, b}, c.behind, slot);
            return v != nullptr;
        });
        if (v != nullptr) { return goThrough(a, v, depth); }
        if (crossed.from != nullptr) { return cross(crossed, {a, b}, depth); }
        if (end == nullptr) { return nullptr; }
        for (const Crossing& c : maker.collected()) { giveWay({c.upper, c.lower}); }
        return maker.flipAway(a, end) ? a : nullptr;
    }
    Real* goThrough(Real* a, Real* v, int depth) {
        if (splitsLeft > 0) { --splitsLeft; }
        makeSegment(a, v, depth + 1);
        return v;
    }
    /// Leads the line and the fixed edge that it crosses through one vertex. Without such a vertex,
    /// the edge gives way. Returns the vertex from which the line continues.
    Real* cross(const Segment& edge, const Segment& line, int depth) {
        Real* const v = meetingVertex(edge, line);
        const bool wasCounting = fixed.setCounting(fixed.counts(edge.from, edge.to));
        if (v == nullptr) {
            giveWay(edge);
        } else if (v != edge.from && v != edge.to) {
            fixed.remove(edge.from, edge.to);
            makeSegment(goThrough(edge.from, v, depth), edge.to, depth + 1);
        }
        fixed.setCounting(wasCounting);
        const bool isOnTheWay = v != nullptr && v != line.from && v != line.to;
        return isOnTheWay ? goThrough(line.from, v, depth) : line.from;
    }

    void giveWay(const Segment& edge) {
        if (!fixed.contains(edge.from, edge.to)) { return; }
        fixed.remove(edge.from, edge.to);
        ++lostEdges;
    }

    /// Returns a vertex of the triangles at the first step from a to b that the line is to go
    /// through, or null.
    Real* closeVertex(Real* a, Real* b, const Step& step) {
        Tri* const t = step.triangle;
        const bool isEdge = step.way == Maker::Way::edge;
        const Segment way{a, isEdge ? step.vertex : b};
        for (int i = 0; i < 3; ++i) {
            if (Real* const v = closeCorner(way, t, i)) { return v; }
        }
        const int across = isEdge ? t->index(a, step.vertex) : 3;
        Tri* const other = across < 0 || across == 3 ? nullptr : t->neighbor[across];
        const int apex = other == nullptr ? -1 : other->index(a, step.vertex);
        return apex < 0 ? nullptr : closeCorner(way, other, apex);
    }
    /// Returns corner `i` of t if the line is to go through it, or null. The corner is then close
    /// to the line and an end of a fixed edge.
    Real* closeCorner(const Segment& line, Tri* t, int i) {
        Real* const v = t->vertex[i];
        if (!snap.isClose(line, v) || !isBetween(line, v)) { return nullptr; }
        bool isOnFixed = false;
        forEachAround(t, i, engine.count(), [&](const Tri* n, int at) {
            isOnFixed =
                fixed.contains(v, n->vertex[after[at]]) || fixed.contains(v, n->vertex[before[at]]);
            return isOnFixed;
        });
        // A segment that was bent does not miss a vertex that it led through.
        const bool isOnSegment =
            orientation(xyOf(segment.from), xyOf(segment.to), xyOf<Real>(v)) == 0;
        return isOnFixed || isOnSegment ? v : nullptr;
    }

    /// Returns a vertex at which the two lines can meet: each line ends there or continues towards
    /// its end. Makes a new vertex if no old one serves. Returns null if there is none.
    Real* meetingVertex(const Segment& edge, const Segment& line) {
        const auto serves = [&](const Real* v) {
            return isEndOrBetween(edge, v) && isEndOrBetween(line, v);
        };
        const auto closeEnd = [&](const typename Snap<Real>::Reach& reach) -> Real* {
            for (Real* const v : {edge.from, edge.to}) {
                if (snap.isClose(line, v, reach) && serves(v)) { return v; }
            }
            for (Real* const v : {line.from, line.to}) {
                if (snap.isClose(edge, v, reach) && serves(v)) { return v; }
            }
            return nullptr;
        };
        if (Real* const v = closeEnd(Snap<Real>::straight)) { return v; }
        const Pnt p = crossingOf(edge, line);
        if (Real* const v = vertexNear(p, Real(snap.reach(line))); v != nullptr) {
            return serves(v) ? v : closeEnd(Snap<Real>::bent);
        }
        const Real* const place = p;
        if (!serves(place) || verticesLeft() == 0) { return closeEnd(Snap<Real>::bent); }
        Pnt* const stored = keep(p);
        --allowance;
        return insert(*stored) ? static_cast<Real*>(*stored) : nullptr;
    }
    /// Returns how many new vertices the segment may still make. It starts with one more than twice
    /// the number of fixed edges that clearly cross it.
    std::size_t verticesLeft() {
        if (allowance == unknown) { allowance = 2 * clearCrossings(segment) + 1; }
        return allowance;
    }
    /// Returns the number of fixed edges that cross the line, with no end of either close to the
    /// other.
    std::size_t clearCrossings(const Segment& line) {
        std::size_t clear = 0;
        const auto countClear = [&](const Crossing& c, int) {
            const Segment edge{c.upper, c.lower};
            const bool isClear = !snap.isClose(line, c.upper) && !snap.isClose(line, c.lower) &&
                                 !snap.isClose(edge, line.from) && !snap.isClose(edge, line.to);
            if (isClear && fixed.contains(c.upper, c.lower)) { ++clear; }
            return false;
        };
        Real* a = line.from;
        for (std::size_t stepsLeft = engine.count(); a != line.to && stepsLeft > 0; --stepsLeft) {
            const Step step = maker.look(a, line.to);
            a = step.way == Maker::Way::crossed ? maker.collect(a, line.to, step, countClear)
                                                : step.vertex;
            if (a == nullptr) { break; }
        }
        return clear;
    }

    static constexpr std::size_t unknown = static_cast<std::size_t>(-1);
    static constexpr int mostDepth = 64;  // of nested calls of makeSegment()

    DelaunayEngine<Real>& engine;
    Maker maker;
    Real tolerance;
    Snap<Real> snap;
    FixedEdges<Real>& fixed;
    Keep keep;
    detail::StartNear<Real> start;
    Changes<Real>* changes = nullptr;
    Tri* latest = nullptr;            // where the last point was located
    Segment segment;                  // the one of the polyline that is being made
    std::size_t allowance = unknown;  // of new vertices for the segment
    std::size_t splitsLeft = 0;
    int lostEdges = 0;
};

}  // namespace zyn::detail
