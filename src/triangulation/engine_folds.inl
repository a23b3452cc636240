// DelaunayEngine: folds, which are degenerate triangles that coincident points leave behind.
#pragma once

#include "triangulation/between.h"
#include "triangulation/engine_insert.inl"
#include "triangulation/engine_star.inl"
#include "triangulation/triangle_tests.h"

namespace zyn::detail {

// Next to coincident points, a degenerate triangle may remain with a corner inside its longest
// edge. The flip that would remove it needs a triangle with an area beyond that edge. Such a fold
// can hide another one. The triangles that fill the hole of a removed vertex have an area, so the
// missing flips can be made then.

/// Returns whether corner `i` of t is inside the opposite edge.
template <class Real>
bool isFold(const TinRecord<Real>* t, int i) {
    const Xy p = xyOf(t->vertex[i]), a = xyOf(t->vertex[after[i]]), b = xyOf(t->vertex[before[i]]);
    if (orientation(p, a, b) != 0) { return false; }
    return isStrictlyBetween(a.x, p.x, b.x) || isStrictlyBetween(a.y, p.y, b.y);
}

/// Finds the folds whose longest edge is on the hole, and the folds behind them. Only degenerate
/// triangles have such neighbours.
template <class Real>
void DelaunayEngine<Real>::collectFolds(Star& star) const {
    const auto collect = [this, &folds = star.folds](Tri* t, int slot) {
        if (isFold(t, slot) && folds.size() < Pool::count()) { folds.push_back(t); }
    };
    for (std::size_t i = 0; i < star.outer.size(); ++i) {
        if (!hasArea(star.triangles[i])) { collect(star.outer[i], star.link[i]); }
    }
    for (std::size_t n = 0; n < star.folds.size(); ++n) {
        const Tri* const t = star.folds[n];
        for (Tri* const behind : t->neighbor) {
            const int back = behind == nullptr ? 3 : behind->index(t);
            if (back != 3) { collect(behind, back); }
        }
    }
}

/// Flips the longest edge of each fold, starting at the hole. No fold is left then.
template <class Real>
void DelaunayEngine<Real>::openFolds(const Star& star) {
    for (Tri* const t : star.folds) {
        for (int i = 0; i < 3; ++i) {
            if (!isFold(t, i)) { continue; }
            if (hasArea(t->neighbor[i])) { flipIfIllegal({t, i}); }
            break;
        }
    }
}

}  // namespace zyn::detail
