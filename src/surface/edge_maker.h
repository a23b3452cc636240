// Making a straight segment an edge of a network by flips.
#pragma once

#include "surface/changes.h"
#include "surface/step_search.h"
#include "triangulation/engine.h"
#include "triangulation/flip.h"

#include <cstddef>
#include <iterator>
#include <list>
#include <utility>

namespace zyn::detail {

/// Makes the segment between two vertices an edge, or a chain of edges through the vertices that
/// are on it. All signs are exact, and each flip leaves two counter-clockwise triangles, so the
/// network is valid at any time.
///
/// The edges that cross the segment from a to b form a list. Their upper ends, left of a-b, form a
/// chain from a to b. A corner of the chain can be cut off if its angle on the side of the segment
/// is below 180 degrees. One of the crossing edges that meet there can then be flipped, and each
/// flip takes one from the corner, until none is left. The corner farthest from a-b always has such
/// an angle, so the chain shrinks until a-b itself is left.
template <class Real>
class EdgeMaker {
public:
    using Tri = TinRecord<Real>;

    /// REQUIRES: the engine loses no points while the maker is used; it may get more.
    explicit EdgeMaker(DelaunayEngine<Real>& engine_) : engine(engine_) {}

    /// Lets the next search for a vertex begin at t.
    void startFrom(Tri* t) { hint = t; }
    /// Records the triangles that flips change, for as long as the maker is used.
    void recordIn(Changes<Real>& record) { changes = &record; }

    using Step = StepTowards<Real>;
    using Way = typename Step::Way;

    /// Returns the first step from a towards b. Takes time proportional to the number of triangles
    /// around a or b, whichever is smaller, plus that of edges that cross a-b.
    [[nodiscard]] Step look(Real* a, Real* b) {
        Tri* const start = triangleAt(a, hint == nullptr ? engine.newest() : hint);
        if (start == nullptr) { return {}; }
        constexpr int fewTurns = 32;
        Search search(start, a, b, engine.count());
        for (int turns = 0; !search.isDone(); ++turns) {
            if (turns == fewTurns) {
                if (const Step step = lookBack(search, a, b); step.way != Way::blocked) {
                    return step;
                }
            }
            if (!search.isDone()) { search.turn(); }
        }
        hint = search.step().triangle == nullptr ? start : search.step().triangle;
        return search.step();
    }

    /// Collects the edges that cross a-b, from the step `first` on. Calls `stop` with each crossing
    /// and the slot of the corner behind it. Returns the vertex at which the crossings end, which
    /// is b or the first vertex on the segment. Returns null if:
    /// - `stop` returns true;
    /// - the crossings end at a hole.
    template <class Stop>
    Real* collect(Real* a, Real* b, const Step& first, Stop stop) {
        crossings.clear();
        Real* upper = first.vertex;
        Real* lower = first.other;
        Tri* t = first.triangle;
        while (crossings.size() < engine.count()) {
            Tri* const n = t->neighbor[t->index(upper, lower)];
            const int back = n == nullptr ? 3 : n->index(t);
            if (back == 3 || n->index(upper, lower) != back) { return nullptr; }
            crossings.push_back({upper, lower, t, n});
            if (stop(crossings.back(), back)) { return nullptr; }
            Real* const apex = n->vertex[back];
            if (apex == b) { return b; }
            const int side = orientation(xyOf(a), xyOf(b), xyOf(apex));
            if (side == 0) { return apex; }
            (side > 0 ? upper : lower) = apex;
            t = n;
        }
        return nullptr;
    }

    /// Represents an edge that crosses the segment, with the triangles before and behind it.
    struct Crossing {
        Real* upper;
        Real* lower;
        Tri* before;
        Tri* behind;
    };
    [[nodiscard]] const std::list<Crossing>& collected() const { return crossings; }

    /// Flips the collected edges away. Returns false, with some of them left, only in a damaged
    /// network.
    bool flipAway(Real* a, Real* end) {
        Place corner = crossings.begin();  // a crossing at the current corner
        while (!crossings.empty()) {
            if (corner == crossings.end()) { return false; }
            Run run = runOf(corner, a, end);
            if (orientation(xyOf(run.left), xyOf(corner->upper), xyOf(run.right)) >= 0) {
                corner = run.end;
                continue;
            }
            if (!cutOff(run)) { return false; }
            // The cut changes the angles at the corners on either side.
            corner = run.end;
            if (corner != crossings.begin()) { corner = runOf(std::prev(corner), a, end).begin; }
        }
        return true;
    }

private:
    using Search = StepSearch<Real>;
    using Place = typename std::list<Crossing>::iterator;
    /// Represents the crossings that meet at one upper corner, with the chain's corners on either
    /// side.
    struct Run {
        Place begin, end;
        Real* left;
        Real* right;
        bool leftIsStart, rightIsEnd;
    };

    /// Returns a triangle at v, or null if other vertices in its place hide it.
    Tri* triangleAt(Real* v, Tri* start) {
        Tri* const t = engine.locateFrom(start, xyOf(v));
        return t == nullptr || t->index(v) == 3 ? nullptr : t;
    }
    /// Looks for the first step from a by a walk from b. Takes turns with `search`. Returns a
    /// blocked step if `search` is done first, or the result is not certain.
    Step lookBack(Search& search, Real* a, Real* b) {
        Tri* const newest = engine.newest();
        Tri* const start = newest->index(b) != 3 ? newest : triangleAt(b, engine.sample(xyOf(b)));
        if (start == nullptr) { return {}; }
        Search back(start, b, a, engine.count());
        while (!back.isDone() && !search.isDone()) {
            back.turn();
            search.turn();
        }
        if (!back.isCertain()) { return {}; }
        const Step& step = back.step();
        if (step.way == Way::edge) {
            if (step.vertex != a) { return {}; }
            return {Way::edge, b, nullptr, hint = step.triangle};
        }
        const auto toTheEnd = [](const Crossing&, int) { return false; };
        if (collect(b, a, step, toTheEnd) != a) { return {}; }
        const Crossing& last = crossings.back();
        return {Way::crossed, last.lower, last.upper, hint = last.behind};
    }

    Run runOf(Place corner, Real* a, Real* end) {
        Place first = corner, last = std::next(corner);
        while (first != crossings.begin() && std::prev(first)->upper == corner->upper) { --first; }
        while (last != crossings.end() && last->upper == corner->upper) { ++last; }
        const bool isFirst = first == crossings.begin(), isLast = last == crossings.end();
        return {first,   last,  isFirst ? a : std::prev(first)->upper, isLast ? end : last->upper,
                isFirst, isLast};
    }

    /// Flips all edges of the run away from its corner, and sets run.end to the place behind it. An
    /// edge that is flipped at either end of the run may still cross the segment, from the next
    /// corner then. Returns false if no edge can be flipped, which only happens in a damaged
    /// network.
    bool cutOff(Run& run) {
        for (Place at = run.begin; run.begin != run.end;) {
            if (at == run.end) { return false; }
            const Place next = std::next(at);
            const bool isFirst = at == run.begin, isLast = next == run.end;
            const Place previous = isFirst ? next : std::prev(at);
            if (!isFlippable(*at)) {
                at = next;
                continue;
            }
            const bool crosses = isFirst != isLast && !(isFirst ? run.leftIsStart : run.rightIsEnd);
            flip(at, isFirst, isLast, crosses);
            if (isFirst) { run.begin = next; }
            if (!crosses) {
                crossings.erase(at);
            } else if (isLast) {
                run.end = at;
            }
            at = previous;
        }
        return true;
    }
    static Real* apex(const Tri* t, const Crossing& c) {
        return t->vertex[t->index(c.upper, c.lower)];
    }
    /// Returns whether the flip leaves two counter-clockwise triangles; false if damaged links do
    /// not fit together.
    static bool isFlippable(const Crossing& c) {
        const int here = c.before->index(c.upper, c.lower);
        const int there = c.behind->index(c.upper, c.lower);
        if (here < 0 || there < 0 || c.before->neighbor[here] != c.behind ||
            c.behind->neighbor[there] != c.before) {
            return false;
        }
        const Xy p = xyOf(apex(c.before, c)), q = xyOf(apex(c.behind, c));
        return orientation(p, xyOf(c.lower), q) > 0 && orientation(q, xyOf(c.upper), p) > 0;
    }
    /// Flips one crossing, and updates the triangles of the crossings beside it. The triangle below
    /// the new edge keeps the old lower end, the one above it the old upper end.
    void flip(Place at, bool isFirst, bool isLast, bool crosses) {
        Tri* const below = at->before;
        Tri* const above = at->behind;
        Real* const p = apex(below, *at);
        Real* const q = apex(above, *at);
        flipEdge(below, below->index(at->upper, at->lower), above,
                 above->index(at->upper, at->lower));
        if (changes != nullptr) {
            changes->note(engine, below);
            changes->note(engine, above);
        }
        // If the new edge does not cross the segment, only one of the two triangles still does.
        Tri* first = isFirst && isLast ? below : above;
        Tri* second = first;
        if (crosses) {
            first = isFirst ? below : above;
            second = isFirst ? above : below;
            *at = {isFirst ? p : q, isFirst ? q : p, first, second};
        }
        if (at != crossings.begin()) { std::prev(at)->behind = first; }
        if (std::next(at) != crossings.end()) { std::next(at)->before = second; }
    }

    DelaunayEngine<Real>& engine;
    Tri* hint = nullptr;  // where the last step was found
    Changes<Real>* changes = nullptr;
    std::list<Crossing> crossings;
};

}  // namespace zyn::detail
