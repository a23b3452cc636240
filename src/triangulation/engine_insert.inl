// The engine: a point's way from addPoint to the triangle that it lands in.
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

/// The triangle that holds q, or null outside the network. The walk is that of TinRecord::find. Where
/// the last triangle's sides leave no doubt, it is the answer, and `isInside` is set.
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

/// Goes on by exact orientation, from where rounding may have stopped the walk too early.
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

/// How promising it is to cross edge i of a triangle of no area on the way to q on its line: first
/// an edge that q lies on, then the longest, beyond which the triangles reach farther.
template <class Real>
int crossingRank(const TinRecord<Real>* flat, int i, Xy q) {
    const Xy a = xyOf(flat->vertex[after[i]]), b = xyOf(flat->vertex[before[i]]);
    const Xy c = xyOf(flat->vertex[i]);
    return isBetween(a, q, b) ? 2 : isBetween(a, c, b) ? 1 : 0;
}

/// From a triangle of no area, which holds every point of its line or none: the triangle with an
/// area beside it and its like that really holds q.
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
    if (tolerance < 0) { return nullptr; }  // far from 0 the square would round to the point
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

/// Notes the corners of the triangles of no area that will be left when p splits t. They arise on
/// the edges of t that p is on. A flip takes each away unless p is at an end of the edge, or the
/// edge has no triangle with an area beyond it.
template <class Real>
void DelaunayEngine<Real>::noteFlatTriangles(const Tri* t, Real* p) {
    const auto isAt = [p](const Real* v) { return v[0] == p[0] && v[1] == p[1]; };
    const bool isOnRim = std::find(t->neighbor, t->neighbor + 3, nullptr) != t->neighbor + 3;
    const bool isAtCorner = std::any_of(t->vertex, t->vertex + 3, isAt);
    const bool hasNone = flatVertices.empty() && wholePoints;  // a file may hold some
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
    // Last, since p is no vertex if memory runs out.
    if (isLeft) { flatVertices.insert(p); }
}

/// Splits t = (P0, P1, P2) at p: t becomes (p, P1, P2), beside it are the new triangles
/// a = (p, P2, P0) and b = (p, P0, P1). Returns b, the newest. REQUIRES: the pool is prepared for
/// two triangles.
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

/// Makes the edges opposite p Delaunay after a split. The order is that of a stack onto which t, a
/// and b are pushed, and each triangle of a flip again: once round p, clockwise, from b. Every flip
/// brings one more triangle to p, so the walk needs a count of those to look at, and no stack.
template <class Real>
template <class FixedEdges>
void DelaunayEngine<Real>::legalise(Corner corner, Real* p, FixedEdges& fixed) {
    // No more flips than triangles: a network that was damaged in a file must not circle.
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

/// Flips the edge opposite a corner if that is Delaunay's rule, and gives the vertex's corner in the
/// neighbour of before; none without a flip. Exact: a certain sign of the angle test decides, else
/// the in-circle determinant. A flip of an edge that is illegal leaves two counter-clockwise
/// triangles, a flip of four points on a circle does so unless two of them coincide or lie on one
/// line with a third.
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
        // On one circle: the double engine's threshold flips, the float engine's does not.
        const bool isStrict = orientation(xyOf(p), xyOf(a), xyOf(d)) > 0 &&
                              orientation(xyOf(p), xyOf(d), xyOf(b)) > 0;
        if (!isDouble || !isStrict) { return {}; }
    }
    if (!fixed.giveWay(a, b, p)) { return {}; }
    flipEdge(t, slot, n, j);
    return {n, before[j]};
}

}  // namespace zyn::detail
