// The triangles around the corners of the frame, and the rim of the surface beside them.
#pragma once

#include "surface/lawson.h"
#include "triangulation/engine.h"
#include "triangulation/flip.h"

#include <cstddef>

namespace zyn::detail {

/// Finds the rim of a surface by a walk around the frame. The rim is the cycle of the edges
/// opposite corners of the frame, in triangles with one such corner. It is counter-clockwise, with
/// the surface on the left. Allocates nothing.
template <class Real>
class FrameRim {
public:
    using Tri = TinRecord<Real>;

    /// Represents the edge opposite corner `slot` of a frame triangle, from start() to end().
    struct Edge {
        Tri* triangle = nullptr;
        int slot = 0;

        [[nodiscard]] Real* start() const { return triangle->vertex[before[slot]]; }
        [[nodiscard]] Real* end() const { return triangle->vertex[after[slot]]; }
    };

    explicit FrameRim(DelaunayEngine<Real>& engine_) : engine(engine_) {}

    /// Walks from `from` to the frame, and goes once around all its corners. Returns false if:
    /// - a corner has no triangle;
    /// - the open edges there are not the four sides of the frame;
    /// - a link between triangles of one corner is not mutual.
    bool walk(Tri* from) {
        length = 0;
        first = diagonal = {};
        std::size_t stepsLeft = 4 * engine.count();  // a triangle has three corners
        const Edge start = triangleAtCorner(0, from, stepsLeft);
        Edge at = start;
        for (const int corner : {0, 3, 2, 1}) {
            if (at.triangle == nullptr || at.end() != engine.frameCorner((corner + 1) % 4)) {
                return false;
            }
            at = walkFan(at, corner, stepsLeft);
        }
        return at.triangle == start.triangle && at.slot == start.slot;
    }

    // Results of the walk
    std::size_t length = 0;  ///< number of edges of the rim
    Edge first;              ///< any edge of the rim; no triangle if there is none
    /// Has a frame triangle whose edge joins two opposite corners of the frame, or none.
    Edge diagonal;

    /// Returns the edge of the rim that starts where `e` ends. It has no triangle if damaged links
    /// interrupt the rim.
    [[nodiscard]] Edge next(Edge e) const { return turn(e, after, before); }
    /// Returns the edge that ends where `e` starts.
    [[nodiscard]] Edge previous(Edge e) const { return turn(e, before, after); }

    /// Returns whether the walk found a convex rim. The surface is then the convex hull of its
    /// vertices.
    [[nodiscard]] bool isConvex() const {
        if (first.triangle == nullptr) { return true; }
        Edge in = first;
        for (std::size_t left = length; left > 0; --left) {
            const Edge out = next(in);
            if (out.triangle == nullptr ||
                orientation(xyOf(in.start()), xyOf(in.end()), xyOf(out.end())) < 0) {
                return false;
            }
            in = out;
        }
        return diagonal.triangle == nullptr;
    }

private:
    /// Turns around the end of the edge at `ahead`, past corners of the frame, as far as the next
    /// vertex that is not one.
    [[nodiscard]] Edge turn(Edge e, const int (&ahead)[4], const int (&behind)[4]) const {
        const Real* const v = e.triangle->vertex[ahead[e.slot]];
        for (int corners = 0; corners < 5; ++corners) {
            Tri* const n = e.triangle->neighbor[behind[e.slot]];
            const int k = n == nullptr ? 3 : n->index(v);
            if (k == 3) { break; }
            if (!engine.isFrameVertex(n->vertex[behind[k]])) { return {n, ahead[k]}; }
            e = {n, behind[k]};
        }
        return {};
    }

    /// Returns the triangle on the side of the frame that starts at the corner, or none.
    Edge triangleAtCorner(int corner, Tri* from, std::size_t& stepsLeft) {
        const Real* const c = engine.frameCorner(corner);
        Tri* t = engine.locateFrom(from, xyOf(c));
        // A vertex in the place of the corner can hide it from the walk.
        for (std::size_t n = 0; n < engine.count() && (t == nullptr || t->index(c) == 3); ++n) {
            t = engine.at(n);
        }
        int i = t == nullptr ? 3 : t->index(c);
        while (i != 3 && t->neighbor[before[i]] != nullptr) {
            if (stepsLeft-- == 0) { return {}; }
            t = t->neighbor[before[i]];
            i = t->index(c);
        }
        return i == 3 ? Edge() : Edge{t, i};
    }

    /// Goes counter-clockwise around the corner of the frame in `at`. Returns the last triangle,
    /// with the slot of the previous corner of the frame, or none.
    Edge walkFan(Edge at, int corner, std::size_t& stepsLeft) {
        for (const Real* const c = engine.frameCorner(corner);;) {
            const auto [t, i] = at;
            if (stepsLeft-- == 0) { return {}; }
            const bool startIsFrame = engine.isFrameVertex(at.start());
            if (!startIsFrame && !engine.isFrameVertex(at.end())) {
                ++length;
                first = at;
            }
            Tri* const n = t->neighbor[after[i]];
            if (n == nullptr) {
                const bool isSide = at.start() == engine.frameCorner((corner + 3) % 4);
                return isSide ? Edge{t, before[i]} : Edge();
            }
            if (slotBack(t, after[i], n) == 3) { return {}; }
            if (startIsFrame) { diagonal = {t, after[i]}; }
            at = {n, n->index(c)};
        }
    }

    DelaunayEngine<Real>& engine;
};

}  // namespace zyn::detail
