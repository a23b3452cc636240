// DelaunayEngine: the way of a point from addPoint to the triangle that it splits.
#pragma once

#include "triangulation/between.h"
#include "triangulation/engine.h"
#include "triangulation/flip.h"
#include "triangulation/locate_step.h"
#include "triangulation/triangle_tests.h"
#include "triangulation/walk.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <vector>

namespace zyn::detail {

template <class Real>
bool DelaunayEngine<Real>::addPoint(Pnt* p, Real tolerance) {
    if (p == nullptr) { return false; }
    if constexpr (isDouble) { number(p, 1); }
    return insert(p, tolerance);
}

template <class Real>
void DelaunayEngine<Real>::number(Pnt* points, int count) {
    for (Pnt* p = points; p != points + count; ++p) {
        p->inten = static_cast<std::int16_t>(static_cast<std::uint16_t>(pointCounter++));
    }
}

template <class Real>
template <class FixedEdges>
bool DelaunayEngine<Real>::insert(Pnt* p, Real tolerance, Tri* start, FixedEdges& fixed) {
    Real* const coordinates = *p;
    bool isInside = false;
    Tri* const t = locateFrom(start, xyOf(coordinates), isInside);
    if (t == nullptr || !std::isfinite(p->z) || std::isnan(tolerance) ||
        cornerAt(t, *p, tolerance) != nullptr) {
        return false;
    }
    Pool::prepareTwo();
    if (!isInside) { noteFlatTriangles(t, coordinates); }
    legalise({split(t, coordinates), 0}, coordinates, fixed);
    return true;
}

template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::locate(Real x, Real y) {
    return locateFrom(Pool::newest(), {double(x), double(y)});
}

/// Walks like TinRecord::find. Sets `isInside` if the sides of the last triangle leave no doubt;
/// that triangle is then the result. Returns null if q is outside the network.
template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::locateFrom(Tri* start, Xy q, bool& isInside) const {
    if (start == nullptr || !frameIsUsable || !isUsable(q)) { return nullptr; }
    Tri* t = start;
    const WalkEnd end =
        walk(t, [q, &isInside](Tri* from) { return stepTowards(from, q, isInside); });
    if (end == WalkEnd::circling) { return searchPool(q); }
    return isInside ? t : finishExactly(t, q);
}

template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::sample(Xy q) const {
    const auto stride = static_cast<std::size_t>(std::sqrt(double(Pool::count())));
    Tri* nearest = nullptr;
    double least2 = HUGE_VAL;
    for (std::size_t n = 0; n < Pool::count(); n += stride) {
        const Xy offset = xyOf(Pool::record(n)->vertex[0]) - q;
        const double distance2 = offset.x * offset.x + offset.y * offset.y;
        if (nearest == nullptr || distance2 < least2) {
            nearest = Pool::record(n);
            least2 = distance2;
        }
    }
    return nearest;
}

/// Continues by exact orientation, since rounding may have stopped the walk too early.
template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::finishExactly(Tri* t, Xy q) const {
    const auto step = [q](Tri* from) -> Tri* {
        const Xy a = xyOf(from->vertex[0]), b = xyOf(from->vertex[1]), c = xyOf(from->vertex[2]);
        if (orientation(a, b, q) < 0) { return from->neighbor[2]; }
        if (orientation(c, a, q) < 0) { return from->neighbor[1]; }
        if (orientation(b, c, q) < 0) { return from->neighbor[0]; }
        return from;
    };
    switch (walk(t, step)) {
    case WalkEnd::left: return nullptr;
    case WalkEnd::circling: return searchPool(q);
    case WalkEnd::arrived: break;
    }
    return hasArea(t) ? t : leaveDegenerate(t, q);
}

/// Returns how soon to cross edge i of a degenerate triangle on the way to q, which is on the
/// triangle's line: 2 if the edge contains q, 1 for the longest edge, beyond which the triangles
/// reach farther, and 0 otherwise.
template <class Real>
int crossingRank(const TinRecord<Real>* flat, int i, Xy q) {
    const Xy a = xyOf(flat->vertex[after[i]]), b = xyOf(flat->vertex[before[i]]);
    const Xy c = xyOf(flat->vertex[i]);
    return isBetween(a, q, b) ? 2 : isBetween(a, c, b) ? 1 : 0;
}

/// Starts in a degenerate triangle, whose exact sides cannot tell the points of its line apart.
/// Returns the triangle with an area that contains q, found by way of degenerate neighbours.
template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::leaveDegenerate(Tri* flat, Xy q) const {
    std::vector<Tri*> toVisit{flat};
    std::unordered_set<const Tri*> seen{flat};
    while (!toVisit.empty()) {
        Tri* const t = toVisit.back();
        toVisit.pop_back();
        for (int wanted = 0; wanted < 3; ++wanted) {  // what is pushed last is visited first
            for (int i = 0; i < 3; ++i) {
                Tri* const n = t->neighbor[i];
                if (n == nullptr || crossingRank(t, i, q) != wanted || !seen.insert(n).second) {
                    continue;
                }
                if (contains(n, q)) { return n; }
                if (orientationOf(n) == 0) { toVisit.push_back(n); }
            }
        }
    }
    return searchPool(q);
}

template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::searchPool(Xy q) const {
    for (std::size_t n = 0; n < Pool::count(); ++n) {
        if (Tri* const t = Pool::record(n); contains(t, q)) { return t; }
    }
    return nullptr;
}

template <class Real>
Real* DelaunayEngine<Real>::cornerAt(Tri* t, const Pnt& p, Real tolerance) const {
    if (Real* const corner = cornerWithin(t, p, tolerance)) { return corner; }
    Real* const coordinates = const_cast<Pnt&>(p);
    const bool isVertex = t->index(coordinates) != 3 || flatVertices.contains(coordinates);
    return isVertex ? coordinates : nullptr;
}

template <class Real>
Real* DelaunayEngine<Real>::cornerWithin(const Tri* t, const Pnt& p, Real tolerance) {
    if (tolerance < 0) { return nullptr; }  // far from 0, the square would round to a point
    const Real minX = p.x - tolerance, maxX = p.x + tolerance;
    const Real minY = p.y - tolerance, maxY = p.y + tolerance;
    Real* nearest = nullptr;
    double least2 = HUGE_VAL;
    for (Real* const c : t->vertex) {
        if (!(maxX >= c[0] && c[0] >= minX && maxY >= c[1] && c[1] >= minY)) { continue; }
        const Xy offset = xyOf(c) - Xy{double(p.x), double(p.y)};
        const double distance2 = offset.x * offset.x + offset.y * offset.y;
        if (nearest == nullptr || distance2 < least2) {
            nearest = c;
            least2 = distance2;
        }
    }
    return nearest;
}

/// Notes the corners of the degenerate triangles that remain after p splits t. They arise on the
/// edges of t that contain p. A flip removes each of them unless p is at an end of the edge, or no
/// triangle with an area is beyond the edge.
template <class Real>
void DelaunayEngine<Real>::noteFlatTriangles(const Tri* t, Real* p) {
    const auto isAt = [p](const Real* v) { return v[0] == p[0] && v[1] == p[1]; };
    const bool isOnRim = std::find(t->neighbor, t->neighbor + 3, nullptr) != t->neighbor + 3;
    const bool isAtCorner = std::any_of(t->vertex, t->vertex + 3, isAt);
    const bool hasNone = flatVertices.empty() && wholePoints;  // a file may contain such triangles
    if (!isOnRim && !isAtCorner && hasNone) { return; }

    bool isLeft = false;
    for (int i = 0; i < 3; ++i) {
        Real* const a = t->vertex[after[i]];
        Real* const b = t->vertex[before[i]];
        const Side side(xyOf(a), xyOf(b), xyOf(p));
        if (side.value > side.bound) { continue; }
        const bool canFlip = !isAt(a) && !isAt(b) && hasArea(t->neighbor[i]);
        if (!canFlip && orientationExact(xyOf(a), xyOf(b), xyOf(p)) == 0) {
            flatVertices.insert({a, b});
            isLeft = true;
        }
    }
    // Comes last, since p is no vertex if the allocations above fail.
    if (isLeft) { flatVertices.insert(p); }
}

/// Splits t = (P0, P1, P2) at p. Then t is (p, P1, P2), and beside it are the new triangles a = (p,
/// P2, P0) and b = (p, P0, P1). Returns b, which is the newest. REQUIRES: the pool has room for two
/// triangles.
template <class Real>
TinRecord<Real>* DelaunayEngine<Real>::split(Tri* t, Real* p) {
    Real* const p0 = t->vertex[0];
    Tri* const n1 = t->neighbor[1];
    Tri* const n2 = t->neighbor[2];
    Tri* const a =
        Pool::newTriangle({.vertex = {p, t->vertex[2], p0}, .neighbor = {n1, nullptr, t}});
    Tri* const b = Pool::newTriangle({.vertex = {p, p0, t->vertex[1]}, .neighbor = {n2, t, a}});
    a->neighbor[1] = b;
    t->vertex[0] = p;
    t->neighbor[1] = a;
    t->neighbor[2] = b;
    redirect(n1, t, a);
    redirect(n2, t, b);
    return b;
}

/// Makes the edges opposite p Delaunay after a split. The order of the tests is that of a stack
/// onto which t, a and b are pushed, and both triangles of each flip again. That is once around p,
/// clockwise from b. Every flip brings one more triangle to p, so a count of those to test replaces
/// the stack.
template <class Real>
template <class FixedEdges>
void DelaunayEngine<Real>::legalise(Corner corner, Real* p, FixedEdges& fixed) {
    // Allows at most as many flips as triangles, so that damaged links from a file cannot cause an
    // endless loop.
    std::size_t flipsLeft = Pool::count();
    for (int pending = 3; pending > 0;) {
        if (const Corner flipped = flipIfIllegal(corner, fixed); flipped.triangle != nullptr) {
            if (flipsLeft-- == 0) { return; }
            corner = flipped;
            ++pending;
        } else {
            Tri* const next = corner.triangle->neighbor[before[corner.slot]];
            if (next == nullptr) { return; }
            corner = {next, placeOf(next->vertex, p)};
            if (corner.slot == 3) { return; }
            --pending;
        }
    }
}

/// Flips the edge opposite a corner if the Delaunay rule says so. Returns the corner of the same
/// vertex in the former neighbour, or none without a flip. The decision is exact. Flipping an
/// illegal edge leaves two counter-clockwise triangles. Flipping among four cocircular points does
/// so unless two of them coincide, or one is collinear with two others.
template <class Real>
template <class FixedEdges>
inline auto DelaunayEngine<Real>::flipIfIllegal(Corner corner, FixedEdges& fixed) -> Corner {
    const auto [t, slot] = corner;
    Tri* const n = t->neighbor[slot];
    const int j = n == nullptr ? 3 : placeOf(n->neighbor, t);
    if (j == 3) { return {}; }
    Real* const p = t->vertex[slot];
    Real* const a = t->vertex[after[slot]];
    Real* const b = t->vertex[before[slot]];
    const Real* const d = n->vertex[j];
    const int inside = inCircle(p, a, b, d);
    if (inside < 0) { return {}; }
    if (inside == 0) {
        // Four points on one circle: the threshold of the double records flips, that of the float
        // records does not.
        const bool isStrict = orientation(xyOf(p), xyOf(a), xyOf(d)) > 0 &&
                              orientation(xyOf(p), xyOf(d), xyOf(b)) > 0;
        if (!isDouble || !isStrict) { return {}; }
    }
    if (!fixed.giveWay(a, b, p)) { return {}; }
    flipEdge(t, slot, n, j);
    return {n, before[j]};
}

}  // namespace zyn::detail
