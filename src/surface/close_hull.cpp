// Flips that extend a surface to the convex hull of its vertices.
#include <zyn/network.h>

#include "surface/frame_rim.h"
#include "surface/lawson.h"
#include "surface/restore.h"
#include "triangulation/between.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_tests.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

/// Scans the rim as Graham's scan does. At each reflex vertex, flips away the edges to the corners
/// of the frame. Then flips inner edges that are not Delaunay any more.
///
/// At a reflex vertex v, where the rim goes from u over v to w, the angle outside the surface is
/// below 180 degrees. The angles of the frame at its corners are, too. The edges from v to the
/// corners can therefore be flipped one after the other, until the rim goes from u to w and v is
/// inside.
template <class Real>
class HullCloser {
public:
    using Tri = TinRecord<Real>;
    using Edge = typename FrameRim<Real>::Edge;

    /// Lets the walk to the frame begin at `start_`.
    HullCloser(DelaunayEngine<Real>& engine_, const FixedEdges<Real>& fixedEdges, Tri* start_)
        : engine(engine_), fixed(fixedEdges), start(start_), rim(engine_) {}

    /// Closes the hull, and restores the edges that this makes illegal. Returns the number of
    /// flips, or -1 if the frame is not whole.
    int close() {
        if (!closeOnly(true)) { return -1; }
        restore();
        return flips;
    }
    /// Closes the hull without allocation. May leave edges that are not Delaunay.
    void closeWithoutMemory() noexcept { closeOnly(false); }

private:
    /// Closes the hull. If allocation is allowed, notes in `pending` the triangles with edges that
    /// may be illegal then. Returns false if the frame is not whole.
    bool closeOnly(bool mayAllocate) {
        do {
            if (!rim.walk(start)) { return false; }
            if (rim.first.triangle == nullptr) { return true; }
        } while (rim.diagonal.triangle != nullptr && flip(rim.diagonal).triangle != nullptr);
        if (rim.diagonal.triangle != nullptr) { return true; }
        openFlats();
        if (mayAllocate) { pending.reserve(rim.length); }  // cutPockets() appends at most that many
        cutPockets();
        return true;
    }
    static int turnOf(const Real* a, const Real* b, const Real* c) {
        return orientation(xyOf(a), xyOf(b), xyOf(c));
    }
    static bool isOnePlace(const Real* a, const Real* b) { return a[0] == b[0] && a[1] == b[1]; }
    /// Returns whether p is on the edge from a to b, but at neither end.
    static bool isInsideEdge(const Real* a, const Real* p, const Real* b) {
        return turnOf(a, b, p) == 0 && isBetween(xyOf(a), xyOf(p), xyOf(b)) && !isOnePlace(p, a) &&
               !isOnePlace(p, b);
    }

    /// Flips an edge. Returns the old neighbour, with the slot of its corner that the flip keeps.
    /// Returns no triangle and changes nothing if:
    /// - the links do not fit together;
    /// - the new edge would join a vertex to itself, or two corners of the frame;
    /// - a new triangle would be clockwise;
    /// - more triangles than before would have zero area;
    /// - a new triangle would have one neighbour across two edges.
    Edge flip(Edge e) {
        const auto [t, i] = e;
        Tri* const n = t->neighbor[i];
        const int j = slotBack(t, i, n);
        if (j == 3) { return {}; }
        const Real *const p = t->vertex[i], *const q = n->vertex[j];
        const Real *const a = t->vertex[after[i]], *const b = t->vertex[before[i]];
        const int first = turnOf(p, a, q), second = turnOf(q, b, p);
        const bool makesDiagonal = engine.isFrameVertex(p) && engine.isFrameVertex(q);
        if (p == q || makesDiagonal || first < 0 || second < 0) { return {}; }
        // This can happen beside points in one place.
        const auto isTwice = [](const Tri* one, const Tri* other) {
            return one != nullptr && one == other;
        };
        if (isTwice(t->neighbor[before[i]], n->neighbor[after[j]]) ||
            isTwice(n->neighbor[before[j]], t->neighbor[after[i]])) {
            return {};
        }
        if (const int flat = int(first == 0) + int(second == 0); flat > 0) {
            if (flat > int(turnOf(p, a, b) == 0) + int(turnOf(q, b, a) == 0)) { return {}; }
        }
        flipEdge(t, i, n, j);
        countFlip();
        return {n, j};
    }
    void countFlip() {
        if (flips < std::numeric_limits<int>::max()) { ++flips; }
    }

    /// Moves zero-area triangles from the surface to the frame: a vertex inside an edge of the rim
    /// becomes part of the rim. Such triangles come from vertices on a side of the frame.
    void openFlats() {
        Edge e = rim.first;
        for (std::size_t left = rim.length; left > 0 && e.triangle != nullptr;) {
            const Edge opened = isOverFlat(e) ? flip(e) : Edge();
            if (opened.triangle != nullptr) {
                e = {opened.triangle, before[opened.slot]};  // the first half
                ++rim.length;
                ++left;
            } else {
                e = rim.next(e);
                --left;
            }
        }
        rim.first = e;
    }
    /// Returns whether the triangle of the surface beside an edge of the rim has its third vertex
    /// inside that edge, which is not fixed.
    bool isOverFlat(Edge e) const {
        const Tri* const n = e.triangle->neighbor[e.slot];
        const int j = slotBack(e.triangle, e.slot, n);
        if (j == 3 || engine.isFrameVertex(n->vertex[j]) || fixed.contains(e.start(), e.end())) {
            return false;
        }
        return isInsideEdge(e.start(), n->vertex[j], e.end());
    }

    /// Runs Graham's scan. Ends after a round that cuts off no vertex.
    void cutPockets() {
        Edge in = rim.first;
        for (std::size_t settled = 0; rim.length > 2 && settled < rim.length;) {
            const Edge out = in.triangle == nullptr ? in : rim.next(in);
            if (out.triangle == nullptr) { return; }
            if (isPocket(in.start(), in.end(), out.end()) && cutOff(in)) {
                --rim.length;
                // The turns at the vertices on either side have changed.
                settled = std::min(settled - std::min<std::size_t>(settled, 1), rim.length - 2);
                in = rim.previous(in);
            } else {
                ++settled;
                in = out;
            }
        }
    }
    /// Returns whether v is to be cut off between u and w: it is reflex, or in one place with u or
    /// w, which would hide a turn.
    static bool isPocket(const Real* u, const Real* v, const Real* w) {
        return u != w && (isOnePlace(u, v) || isOnePlace(v, w) || turnOf(u, v, w) < 0);
    }
    /// Takes the end of `in` out of the rim, and makes `in` the edge from its start to the next
    /// vertex. Returns false if an edge from that end to a corner of the frame cannot be flipped.
    bool cutOff(Edge& in) {
        for (;;) {
            const Edge cut = flip({in.triangle, before[in.slot]});
            if (cut.triangle == nullptr) { return false; }
            if (!engine.isFrameVertex(cut.triangle->vertex[cut.slot])) {
                if (pending.size() < pending.capacity()) { pending.push_back(cut.triangle); }
                return true;
            }
            in = cut;
        }
    }

    /// Flips illegal edges, from the new triangles on. Each flip lowers the surface when it is
    /// lifted to the paraboloid, so flipping ends.
    void restore() {
        while (!pending.empty()) {
            Tri* const t = pending.back();
            pending.pop_back();
            Tri* const n = flipIllegalEdge(
                t, [this, t](Tri* next, int i, int j) { return mayFlip(t, i, next, j); });
            if (n == nullptr) { continue; }
            countFlip();
            pending.insert(pending.end(), {n, t});
        }
    }
    bool mayFlip(const Tri* t, int i, const Tri* n, int j) const {
        return !engine.isFrameTriangle(n) && slotBack(t, i, n) == j && orientationOf(t) >= 0 &&
               orientationOf(n) >= 0 && !fixed.contains(t->vertex[after[i]], t->vertex[before[i]]);
    }

    DelaunayEngine<Real>& engine;
    const FixedEdges<Real>& fixed;
    Tri* start;
    FrameRim<Real> rim;
    std::vector<Tri*> pending;
    int flips = 0;
};

}  // namespace

template <class Real>
int closeHull(DelaunayInterface<Real>* interface, const VertexArray<Real>* fixedVertices) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr) { return -1; }
    const ref_ptr<VertexArray<Real>> copy = copyOf<Real>(fixedVertices);
    const FixedEdges<Real> fixed(*copy);
    return HullCloser<Real>(*engine, fixed, engine->newest()).close();
}

namespace detail {

void closeHull(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed, tind* start) {
    HullCloser<double>(engine, fixed, start).close();
}

void closeHullBySweeps(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed) noexcept {
    HullCloser<double>(engine, fixed, engine.newest()).closeWithoutMemory();
    restoreInsideBySweeps(engine, fixed);
}

}  // namespace detail

template int closeHull(DelaunayInterface<float>*, const PFloatArray*);
template int closeHull(DelaunayInterface<double>*, const PDoubleArray*);

}  // namespace zyn
