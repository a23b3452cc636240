// DelaunayEngine: removal of triangles and vertices.
#pragma once

#include "triangulation/cycle.h"
#include "triangulation/engine.h"
#include "triangulation/engine_ears.inl"
#include "triangulation/engine_folds.inl"
#include "triangulation/engine_insert.inl"
#include "triangulation/engine_star.inl"
#include "triangulation/flip.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace zyn::detail {

template <class Real>
bool DelaunayEngine<Real>::deleteTriangle(Tri* t) {
    if (t == nullptr || t == Pool::newest() || !Pool::owns(t)) { return false; }
    for (Tri* const n : t->neighbor) { redirect(n, t, static_cast<Tri*>(nullptr)); }
    const Tri gone = *t;
    Pool::drop(t);
    for (Real* const v : gone.vertex) {
        if (flatVertices.contains(v) && !Pool::hasVertex(v)) { flatVertices.erase(v); }
    }
    return true;
}

template <class Real>
bool DelaunayEngine<Real>::removePoint(Tri* hint, Real x, Real y, Real radius) {
    Tri* const start = hint != nullptr ? hint : Pool::newest();
    if (start == nullptr) { return false; }
    Tri* t = start->findRefine(x, y);
    if (t == nullptr) { t = locateFrom(start, {double(x), double(y)}); }
    if (t == nullptr) { return false; }
    const Real position[3] = {x, y, 0};
    const int corner = nearestCorner(t, position, radius);

    Star star;
    std::vector<int> ears;
    if (corner == 3 || !collectStar(t, corner, star)) { return false; }
    const bool isFan = planFan(star, ears);
    if (!isFan && !planEars(star, ears)) { return false; }
    collectFolds(star);
    Passes passes(isFan ? 0 : star.ring.size() - 2, star.ring.size() * star.ring.size());
    star.numbers.reserve(star.ring.size());
    fillHole(star, ears);
    flatVertices.erase(star.centre);
    dropSurplus(star);
    if (isFan) {
        legaliseFan(star);
    } else {
        legaliseHole(star, passes);
    }
    openFolds(star);
    return true;
}

template <class Real>
bool DelaunayEngine<Real>::removeVertex(Tri* t, int corner) {
    Star star;
    std::vector<int> ears;
    if (!collectStar(t, corner, star, true) || !planEars(star, ears)) { return false; }
    Passes passes(star.ring.size() - 2, star.ring.size() * star.ring.size());
    star.numbers.reserve(star.ring.size());
    fillHole(star, ears);
    flatVertices.erase(star.centre);
    dropSurplus(star);
    legaliseHole(star, passes);
    return true;
}

/// Turns the first triangles of the star into the ears. Links them to each other and to the
/// triangles outside the hole.
template <class Real>
void DelaunayEngine<Real>::fillHole(const Star& star, const std::vector<int>& ears) {
    const std::size_t n = star.ring.size();
    struct Behind {  // the triangle across the edge from ring vertex i to the next one left
        Tri* triangle;
        int slot;
    };
    std::vector<Behind> behind(n);
    for (std::size_t i = 0; i < n; ++i) { behind[i] = {star.outer[i], star.link[i]}; }
    Cycle ring(star.size());
    const auto connect = [](Tri* t, int slot, Behind other) {
        t->neighbor[slot] = other.triangle;
        if (other.triangle != nullptr) { other.triangle->neighbor[other.slot] = t; }
    };
    for (std::size_t k = 0; k < ears.size(); ++k) {
        const auto v = static_cast<std::size_t>(ears[k]);
        const auto u = static_cast<std::size_t>(ring.previous(ears[k]));
        const auto w = static_cast<std::size_t>(ring.next(ears[k]));
        Tri* const t = star.triangles[k];
        t->vertex[0] = star.ring[u];
        t->vertex[1] = star.ring[v];
        t->vertex[2] = star.ring[w];
        connect(t, 0, behind[v]);
        connect(t, 2, behind[u]);
        if (k + 1 == ears.size()) { connect(t, 1, behind[w]); }
        behind[u] = {t, 1};
        ring.remove(ears[k]);
    }
}

/// Drops the last two triangles of the star, which the hole does not need. The newest triangle of
/// the pool moves into the place of each, and the star follows it there.
template <class Real>
void DelaunayEngine<Real>::dropSurplus(Star& star) {
    const std::size_t kept = star.triangles.size() - 2;
    for (std::size_t i = kept; i < kept + 2; ++i) {
        std::fill_n(star.triangles[i]->neighbor, 3, nullptr);
    }
    for (std::size_t i = kept; i < kept + 2; ++i) {
        Tri* const surplus = star.triangles[i];
        Tri* const moved = Pool::drop(surplus);
        std::replace(star.triangles.begin(), star.triangles.end(), moved, surplus);
        std::replace(star.folds.begin(), star.folds.end(), moved, surplus);
    }
    star.triangles.resize(kept);
}

/// Tests the inner edges of the fan in one forward pass.
template <class Real>
void DelaunayEngine<Real>::legaliseFan(const Star& star) {
    Tri* flipped = nullptr;
    const Real* w = nullptr;
    for (std::size_t j = 0; j + 1 < star.triangles.size(); ++j) {
        Tri* const t = star.triangles[j];
        if (flipped == nullptr) { w = t->vertex[after[t->index(star.ring[0])]]; }
        const int slot = t->index(w);
        flipped = slot == 3 ? nullptr : flipIfIllegal({t, slot}).triangle;
    }
}

/// Flips illegal inner edges of the hole, in passes over its triangles in ring order, until there
/// are none.
///
/// - Four cocircular points do not flip, since they would flip back and forth.
/// - An edge that was flipped away does not come back, so the number of vertex pairs bounds the
///   flips. Only a damaged network, whose hole may be linked to itself, could exceed that bound.
/// - A pass skips triangles whose surroundings have not changed.
template <class Real>
void DelaunayEngine<Real>::legaliseHole(Star& star, Passes& passes) {
    const std::vector<Tri*>& inner = star.triangles;
    auto& numbers = star.numbers;
    for (std::size_t n = 0; n < inner.size(); ++n) { numbers.emplace_back(inner[n], n); }
    const auto isBefore = [](const auto& a, const auto& b) {
        return std::less<>()(a.first, b.first);
    };
    std::sort(numbers.begin(), numbers.end(), isBefore);
    const auto triangleIndex = [&](const Tri* t) {
        const auto found = std::lower_bound(numbers.begin(), numbers.end(),
                                            std::pair(t, std::size_t{0}), isBefore);
        return found != numbers.end() && found->first == t ? found->second : inner.size();
    };
    const auto isIllegal = [&](const Tri* t, int slot) {
        Tri* const n = t->neighbor[slot];
        if (triangleIndex(n) == inner.size()) { return false; }
        const int j = n->index(t);
        return j != 3 && inCircle(t->vertex[slot], t->vertex[after[slot]], t->vertex[before[slot]],
                                  n->vertex[j]) > 0;
    };
    while (passes.next()) {
        Tri* const t = inner[passes.number()];
        for (int slot = 0; slot < 3; ++slot) {
            if (!isIllegal(t, slot)) { continue; }
            Tri* const n = t->neighbor[slot];
            flipIfIllegal({t, slot});
            for (const Tri* const changed : {t, n}) {
                passes.add(triangleIndex(changed));
                for (const Tri* const beside : changed->neighbor) {
                    passes.add(triangleIndex(beside));
                }
            }
        }
    }
}

}  // namespace zyn::detail
