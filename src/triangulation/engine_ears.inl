// DelaunayEngine: how the hole of a removed vertex is divided into triangles.
#pragma once

#include "triangulation/cycle.h"
#include "triangulation/engine_star.inl"

#include <cmath>
#include <queue>
#include <vector>

namespace zyn::detail {

/// Rings that are longer than this are filled in another order. The float engine never has such a
/// ring.
inline constexpr int longRing = 64;

/// Returns the power of p with respect to the circle through a, b and c, rounded. REQUIRES: a, b
/// and c run counter-clockwise.
inline double powerOf(Xy p, Xy a, Xy b, Xy c) {
    const Xy pa = a - p, pb = b - p, pc = c - p, ab = b - a, ac = c - a;
    const auto cross = [](Xy u, Xy v) { return u.x * v.y - u.y * v.x; };
    const auto square = [](Xy u) { return u.x * u.x + u.y * u.y; };
    const double inside =
        square(pa) * cross(pb, pc) + square(pb) * cross(pc, pa) + square(pc) * cross(pa, pb);
    const double power = -inside / cross(ab, ac);
    return std::isnan(power) ? -HUGE_VAL : power;
}

// A hole is filled by cutting off ears of its ring. An ear is the triangle of a vertex and its two
// present neighbours. `ears` lists the vertices in the order of cutting.

/// Plans a fan of triangles at ring[0]. Returns false unless all are counter-clockwise.
template <class Real>
bool DelaunayEngine<Real>::planFan(const Star& star, std::vector<int>& ears) const {
    for (int i = 1; i + 1 < star.size(); ++i) {
        if (orientation(star.at(0), star.at(i), star.at(i + 1)) <= 0) { return false; }
        ears.push_back(i);
    }
    return true;
}

/// Plans the ears of any hole that can be filled. Every point of the ring is visible from the
/// centre. So an ear is valid if it is convex and the centre is not inside it: no other point can
/// be in it, and the rest stays visible from the centre.
template <class Real>
bool DelaunayEngine<Real>::planEars(const Star& star, std::vector<int>& ears) const {
    const int n = star.size();
    if (n > longRing && planEarsByPower(star, ears)) { return true; }
    Cycle ring(n);
    const Xy centre = xyOf(star.centre);
    ears.clear();
    int rest = n;
    for (int v = 0, misses = 0; rest > 2 && misses < rest;) {
        const int u = ring.previous(v);
        const int w = ring.next(v);
        const bool isEar = orientation(star.at(u), star.at(v), star.at(w)) > 0 &&
                           (rest == 3 || orientation(star.at(u), star.at(w), centre) >= 0);
        if (!isEar) {
            v = w;
            ++misses;
            continue;
        }
        ears.push_back(v);
        ring.remove(v);
        --rest;
        misses = 0;
        v = u;
    }
    return rest == 2;
}

/// Plans the ears of a large hole in O(n log n). Always cuts the ear for whose circle the centre
/// has the largest power. The triangles are then Delaunay at once if the ring's own vertices were.
/// Any order would be correct, since flips follow. Source: Devillers 1999.
template <class Real>
bool DelaunayEngine<Real>::planEarsByPower(const Star& star, std::vector<int>& ears) const {
    struct Ear {
        double power;
        int vertex;
        int version;  // of the vertex; an older one is outdated
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

}  // namespace zyn::detail
