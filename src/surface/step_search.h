// The first step from one vertex of a network towards another.
#pragma once

#include "triangulation/flip.h"
#include "triangulation/predicates.h"
#include "triangulation/triangle_tests.h"

#include <cmath>
#include <cstddef>

namespace zyn::detail {

/// Describes what is first on the way from a vertex a to a vertex b.
template <class Real>
struct StepTowards {
    enum class Way {
        edge,     ///< an edge to `vertex`, which is b or on the segment
        crossed,  ///< an edge from `vertex`, on the left, to `other`, which crosses the segment
        blocked,  ///< a hole, or damage
    };
    Way way = Way::blocked;
    Real* vertex = nullptr;
    Real* other = nullptr;
    TinRecord<Real>* triangle = nullptr;  ///< at a, beside the edge or before the crossed one
};

/// Finds the step among the triangles around a. It starts at one of them and goes in both
/// directions, one triangle per turn. So it finds a step near the start soon, and two searches can
/// take turns.
template <class Real>
class StepSearch {
public:
    using Tri = TinRecord<Real>;
    using Step = StepTowards<Real>;
    using Way = typename Step::Way;

    /// Limits the search to `most_` triangles, since links of a damaged network may circle.
    /// REQUIRES: a is a corner of `start`.
    StepSearch(Tri* start, Real* a_, Real* b_, std::size_t most_)
        : a(a_), b(b_), most(most_), arm{{start, after}, {start, before}} {
        lookInside(start, start->index(a));
    }

    /// Returns whether the search has ended.
    [[nodiscard]] bool isDone() const { return isSure || !(arm[0].isOpen || arm[1].isOpen); }
    /// Returns whether no triangle that was not looked at can lead to a better step.
    [[nodiscard]] bool isCertain() const { return isSure; }
    /// Returns the best step found so far. Beside zero-area triangles several edges can lead
    /// towards b; the one to the nearest vertex counts.
    [[nodiscard]] const Step& step() const { return best; }

    /// Looks at one more triangle. REQUIRES: !isDone()
    void turn() {
        ++turns;
        const int now = !arm[1].isOpen || (arm[0].isOpen && turns % 2 == 0) ? 0 : 1;
        Arm& moving = arm[now];
        const Arm& other = arm[1 - now];
        Tri* const next = moving.triangle->neighbor[moving.side[moving.triangle->index(a)]];
        const int i = next == nullptr ? 3 : next->index(a);
        if (i == 3) {
            moving.isOpen = false;
        } else if (next == other.triangle || turns > most) {
            arm[0].isOpen = arm[1].isOpen = false;  // both directions have met
        } else {
            moving.triangle = next;
            lookInside(next, i);
        }
    }

private:
    /// Represents the search in one of the two directions.
    struct Arm {
        Tri* triangle;
        const int (&side)[4];
        bool isOpen = true;
    };

    /// Improves the step if t, with a at corner `i`, has a better one.
    void lookInside(Tri* t, int i) {
        Real* const right = t->vertex[after[i]];
        Real* const left = t->vertex[before[i]];
        const int sideOfRight = orientation(xyOf(a), xyOf(b), xyOf(right));
        const int sideOfLeft = orientation(xyOf(a), xyOf(b), xyOf(left));
        if (sideOfRight == 0 && isAhead(right)) { takeEdge(t, right, t->neighbor[before[i]]); }
        if (sideOfLeft == 0 && isAhead(left)) { takeEdge(t, left, t->neighbor[after[i]]); }
        if (best.way == Way::blocked && sideOfRight < 0 && sideOfLeft > 0) {
            best = {Way::crossed, left, right, t};
            isSure = hasArea(t);
        }
    }
    /// Takes the edge of t from a to v if it is the shortest so far; `beside` is the triangle
    /// across it. If neither triangle is degenerate, no other edge from a has the same direction.
    void takeEdge(Tri* t, Real* v, const Tri* beside) {
        if (best.way == Way::edge && !isNearer(v, best.vertex)) { return; }
        best = {Way::edge, v, nullptr, t};
        isSure = hasArea(t) && (beside == nullptr || hasArea(beside));
    }
    /// Returns whether v is nearer to a than w. REQUIRES: the three are collinear.
    [[nodiscard]] bool isNearer(const Real* v, const Real* w) const {
        return std::abs(v[0] - a[0]) < std::abs(w[0] - a[0]) ||
               std::abs(v[1] - a[1]) < std::abs(w[1] - a[1]);
    }
    /// Returns whether v is on the segment but not at a. REQUIRES: v is on the line through a and
    /// b.
    [[nodiscard]] bool isAhead(const Real* v) const {
        if (v == b) { return true; }
        const int axis = a[0] != b[0] ? 0 : 1;
        return b[axis] > a[axis] ? v[axis] > a[axis] && v[axis] <= b[axis]
                                 : v[axis] < a[axis] && v[axis] >= b[axis];
    }

    Real* a;
    Real* b;
    std::size_t most;
    std::size_t turns = 0;
    Arm arm[2];
    Step best;
    bool isSure = false;
};

}  // namespace zyn::detail
