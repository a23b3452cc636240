// The engine: taking triangles and vertices out.
#pragma once

#include "triangulation/cycle.h"
#include "triangulation/engine.h"
#include "triangulation/engine_insert.inl"
#include "triangulation/flip.h"
#include "triangulation/triangle_ring.inl"

#include <algorithm>
#include <cmath>
#include <queue>
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

/// What surrounds a vertex, counter-clockwise: ring[i] to ring[i + 1] is the edge of triangles[i]
/// opposite the vertex; outer[i] is the triangle across it, and link[i] its slot back.
template <class Real>
struct DelaunayEngine<Real>::Star {
    Real* centre = nullptr;
    std::vector<Real*> ring;
    std::vector<Tri*> triangles;
    std::vector<Tri*> outer;
    std::vector<int> link;
    std::vector<Tri*> folds;                                  // see collectFolds()
    std::vector<std::pair<const Tri*, std::size_t>> numbers;  // by address; see legaliseHole()

    [[nodiscard]] int size() const { return static_cast<int>(ring.size()); }
    [[nodiscard]] Xy at(int i) const { return xyOf(ring[static_cast<std::size_t>(i)]); }
};

/// A ring longer than this, which the float engine never has, is filled in another order.
inline constexpr int longRing = 64;

/// The power of p with respect to the circle through a, b, c, which run counter-clockwise, rounded.
inline double powerOf(Xy p, Xy a, Xy b, Xy c) {
    const Xy pa = a - p, pb = b - p, pc = c - p, ab = b - a, ac = c - a;
    const auto cross = [](Xy u, Xy v) { return u.x * v.y - u.y * v.x; };
    const auto square = [](Xy u) { return u.x * u.x + u.y * u.y; };
    const double inside =
        square(pa) * cross(pb, pc) + square(pb) * cross(pc, pa) + square(pc) * cross(pa, pb);
    const double power = -inside / cross(ab, ac);
    return std::isnan(power) ? -HUGE_VAL : power;
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

/// Returns false if:
/// - the vertex is on the boundary, or an edge of its ring is and may not be;
/// - the ring does not close, or is longer than the record follows one.
template <class Real>
bool DelaunayEngine<Real>::collectStar(Tri* t, int corner, Star& star, bool mayBeOpen) const {
    constexpr auto longest = static_cast<std::size_t>(record::ringSteps<Real>);
    star.centre = t->vertex[corner];
    Tri* current = t;
    do {
        const int from = current->index(star.centre);
        if (from == 3) { return false; }
        current = current->neighbor[after[from]];
        const int at = current == nullptr ? 3 : current->index(star.centre);
        Tri* const outer = at == 3 ? nullptr : current->neighbor[at];
        const int link = outer == nullptr ? 3 : outer->index(current);
        const bool isOpen = outer == nullptr && at != 3 && mayBeOpen;
        if ((link == 3 && !isOpen) || star.ring.size() > std::min(longest, Pool::count())) {
            return false;
        }
        star.ring.push_back(current->vertex[after[at]]);
        star.triangles.push_back(current);
        star.outer.push_back(outer);
        star.link.push_back(link);
    } while (current != t);
    return star.size() >= 3;
}

// A hole is filled by cutting off one ear of its ring after the other: the triangle of a vertex and
// the two beside it that are still there. `ears` names the vertices in the order of cutting.

/// All triangles at ring[0]: false unless each is counter-clockwise.
template <class Real>
bool DelaunayEngine<Real>::planFan(const Star& star, std::vector<int>& ears) const {
    for (int i = 1; i + 1 < star.size(); ++i) {
        if (orientation(star.at(0), star.at(i), star.at(i + 1)) <= 0) { return false; }
        ears.push_back(i);
    }
    return true;
}

/// Ears of any hole that can be filled. Every point of the ring is seen from the centre, so an ear is
/// good if it is convex and does not reach over the centre: nothing else can lie in it, and what
/// remains is still seen from the centre.
template <class Real>
bool DelaunayEngine<Real>::planEars(const Star& star, std::vector<int>& ears) const {
    const int n = star.size();
    if (n > longRing && planEarsByPower(star, ears)) { return true; }
    std::vector<int> next(static_cast<std::size_t>(n)), previous(static_cast<std::size_t>(n));
    const auto nextOf = [&next](int i) -> int& { return next[static_cast<std::size_t>(i)]; };
    const auto previousOf = [&previous](int i) -> int& {
        return previous[static_cast<std::size_t>(i)];
    };
    for (int i = 0; i < n; ++i) {
        nextOf(i) = (i + 1) % n;
        previousOf(i) = (i + n - 1) % n;
    }
    const Xy centre = xyOf(star.centre);
    ears.clear();
    int rest = n;
    for (int v = 0, misses = 0; rest > 2 && misses < rest;) {
        const int u = previousOf(v);
        const int w = nextOf(v);
        const bool isEar = orientation(star.at(u), star.at(v), star.at(w)) > 0 &&
                           (rest == 3 || orientation(star.at(u), star.at(w), centre) >= 0);
        if (!isEar) {
            v = w;
            ++misses;
            continue;
        }
        ears.push_back(v);
        nextOf(u) = w;
        previousOf(w) = u;
        --rest;
        misses = 0;
        v = u;
    }
    return rest == 2;
}

/// The ears of a large hole, in n log n: always the one whose circle has the centre least far
/// inside, by its power. That makes triangles which obey the Delaunay rule at once, where the
/// ring's own vertices did; any order would do, since flips follow. Source: Devillers 1999.
template <class Real>
bool DelaunayEngine<Real>::planEarsByPower(const Star& star, std::vector<int>& ears) const {
    struct Ear {
        double power;
        int vertex;
        int version;  // of the vertex: outdated when it has new neighbours
        bool operator<(const Ear& other) const { return power < other.power; }
    };
    const int n = star.size();
    const Xy centre = xyOf(star.centre);
    Cycle ring(n);
    std::vector<int> version(static_cast<std::size_t>(n), 0);
    std::priority_queue<Ear> queue;
    const auto offer = [&](int v) {
        const Xy a = star.at(ring.previous(v)), b = star.at(v), c = star.at(ring.next(v));
        const int now = ++version[static_cast<std::size_t>(v)];
        if (orientation(a, b, c) > 0 && orientation(a, c, centre) >= 0) {
            queue.push({powerOf(centre, a, b, c), v, now});
        }
    };
    for (int v = 0; v < n; ++v) { offer(v); }
    ears.clear();
    int last = 0;
    for (int rest = n; rest > 3 && !queue.empty();) {
        const Ear ear = queue.top();
        queue.pop();
        if (ear.version != version[static_cast<std::size_t>(ear.vertex)]) { continue; }
        ears.push_back(ear.vertex);
        last = ring.previous(ear.vertex);
        ring.remove(ear.vertex);
        --rest;
        offer(last);
        offer(ring.next(last));
    }
    ears.push_back(last);
    return star.size() == static_cast<int>(ears.size()) + 2 &&
           orientation(star.at(ring.previous(last)), star.at(last), star.at(ring.next(last))) > 0;
}

/// Makes the ears of the first triangles of the star, and links them to each other and outwards.
template <class Real>
void DelaunayEngine<Real>::fillHole(const Star& star, const std::vector<int>& ears) {
    const std::size_t n = star.ring.size();
    struct Behind {  // what lies across the open edge from ring vertex i to the next one left
        Tri* triangle;
        int slot;
    };
    std::vector<Behind> behind(n);
    std::vector<std::size_t> next(n), previous(n);
    for (std::size_t i = 0; i < n; ++i) {
        behind[i] = {star.outer[i], star.link[i]};
        next[i] = (i + 1) % n;
        previous[i] = (i + n - 1) % n;
    }
    const auto connect = [](Tri* t, int slot, Behind other) {
        t->neighbor[slot] = other.triangle;
        if (other.triangle != nullptr) { other.triangle->neighbor[other.slot] = t; }
    };
    for (std::size_t k = 0; k < ears.size(); ++k) {
        const auto v = static_cast<std::size_t>(ears[k]);
        const std::size_t u = previous[v];
        const std::size_t w = next[v];
        Tri* const t = star.triangles[k];
        t->vertex[0] = star.ring[u];
        t->vertex[1] = star.ring[v];
        t->vertex[2] = star.ring[w];
        connect(t, 0, behind[v]);
        connect(t, 2, behind[u]);
        if (k + 1 == ears.size()) { connect(t, 1, behind[w]); }
        behind[u] = {t, 1};
        next[u] = w;
        previous[w] = u;
    }
}

// Beside points in one place, a triangle of no area can be left with a corner inside its longest
// edge: the flip that would take it away needs a triangle with an area beyond that edge. Such a fold
// can hide another one. The hole of a removed point is filled with triangles that have an area, so
// that the flips can be made up for.

/// Whether corner `i` of t is inside the edge opposite it.
template <class Real>
bool isFold(const TinRecord<Real>* t, int i) {
    const Xy p = xyOf(t->vertex[i]), a = xyOf(t->vertex[after[i]]), b = xyOf(t->vertex[before[i]]);
    if (orientation(p, a, b) != 0) { return false; }
    const auto isBetween = [](double low, double middle, double high) {
        return (low < middle && middle < high) || (high < middle && middle < low);
    };
    return isBetween(a.x, p.x, b.x) || isBetween(a.y, p.y, b.y);
}

/// Finds the folds that meet the hole with their longest edge, and those behind them. Only triangles
/// of no area have such neighbours.
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

/// Flips the longest edge of each fold, from the hole outwards, which leaves no fold.
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

/// The last two triangles of the star are not needed any more. The newest triangle takes the place
/// of each, and the star follows it there.
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

/// One forward pass over the fan's inner edges.
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

/// Flips inner edges of the hole until none is illegal, in passes over its triangles in ring order.
/// Strictly: four points on a circle would flip to and fro. An edge that was flipped away does not
/// come back, so that pairs of vertices bound the flips; only in a damaged network, whose hole may
/// be linked to itself, are there more. A pass skips triangles beside which nothing has changed.
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
