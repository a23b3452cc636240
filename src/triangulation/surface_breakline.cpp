// Breaklines, and the constrained Delaunay triangulation round them.
#include <zyn/geometry.h>
#include <zyn/surface.h>

#include "triangulation/edge_maker.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"
#include "triangulation/ring.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <vector>

namespace zyn {
namespace {

template <class Real>
class Breaklines {
public:
    using Tri = TinRecord<Real>;
    using Pnt = XPnt3<Real>;

    Breaklines(DelaunayEngine<Real>& engine_, Real tolerance_, VertexArray<Real>& list,
               Pnt3Pool<Real>* pool)
        : engine(engine_), maker(engine_), tolerance(tolerance_), fixed(list), crossings(pool) {}

    /// All vertices come first, since the next one may flip an edge away.
    void add(Pnt3Array<Real>& points) {
        std::vector<Real*> vertices;
        for (Pnt& p : points) {
            Real* v = vertexAt(p);
            if (v == nullptr && insert(p)) { v = p; }
            if (v != nullptr && (vertices.empty() || vertices.back() != v)) {
                vertices.push_back(v);
            }
        }
        for (std::size_t i = 1; i < vertices.size(); ++i) {
            splitsLeft = engine.count();
            makeSegment(vertices[i - 1], vertices[i], 0);
        }
    }
    /// The edges of the polylines, each counted once.
    [[nodiscard]] int edges() const { return static_cast<int>(fixed.added()); }

private:
    using Maker = EdgeMaker<Real>;

    /// The nearest vertex that the point would be refused for, or null.
    Real* vertexAt(const Pnt& p) {
        Tri* const t = engine.locateFrom(hint(), {double(p.x), double(p.y)});
        if (t == nullptr) { return nullptr; }
        latest = t;
        return engine.cornerAt(t, p, tolerance);
    }
    /// Makes the point a vertex. A fixed edge on the rim, which no flip takes away, gets it too if it
    /// lies there.
    bool insert(Pnt& p) {
        if (!engine.insert(&p, tolerance, hint(), fixed)) { return false; }
        if constexpr (DelaunayEngine<Real>::isDouble) { engine.number(&p, 1); }
        Real* const v = p;
        forRing(engine.newest(), engine.newest()->index(v), engine.count(),
                [this, v](Tri* t, int i) {
                    fixed.giveWay(t->vertex[after[i]], t->vertex[before[i]], v);
                    return false;
                });
        fixed.requireMemory();
        return true;
    }
    Tri* hint() { return latest == nullptr ? engine.newest() : latest; }

    void makeSegment(Real* a, Real* b, int depth) {
        // More steps than there are vertices on the way only in a damaged network.
        for (std::size_t stepsLeft = 2 * engine.count() + 16; a != b && stepsLeft > 0;
             --stepsLeft) {
            const typename Maker::Step step = maker.look(a, b);
            if (step.way == Maker::Way::blocked) { return; }
            if (step.way == Maker::Way::edge) {
                fixed.add(a, step.vertex);
                a = step.vertex;
                continue;
            }
            Real* const end = maker.collect(a, b, step);
            if (end == nullptr) { return; }
            if (Real* const v = vertexAtCrossing(a, end, depth); v != nullptr) {
                makeSegment(a, v, depth + 1);
                a = v;
                continue;
            }
            if (!maker.flipAway(a, end)) { return; }
        }
    }

    /// Deals with the fixed edges among those that were collected between a and b: a vertex on the
    /// first of them when such are asked for, and then the network has changed; otherwise they give
    /// way, and the answer is null.
    Real* vertexAtCrossing(Real* a, Real* b, int depth) {
        constexpr int mostDepth = 32;
        for (const auto& c : maker.collected()) {
            if (!fixed.contains(c.upper, c.lower)) { continue; }
            // Rounding and tolerance can bring a vertex across another edge, whose vertex can do so
            // again: there is an end to that.
            if (crossings != nullptr && depth < mostDepth && splitsLeft > 0) {
                --splitsLeft;
                Real* const u = c.upper;
                Real* const w = c.lower;
                if (Real* const v = splitEdge(u, w, a, b, depth); v != nullptr) { return v; }
            }
            fixed.remove(c.upper, c.lower);
        }
        return nullptr;
    }
    /// Splits the fixed edge u-w where a-b crosses it; null, with nothing changed, when that brings
    /// a-b no farther.
    Real* splitEdge(Real* u, Real* w, Real* a, Real* b, int depth) {
        const Pnt p = crossing(u, w, a, b);
        Real* v = vertexAt(p);
        const Pnt place = v == nullptr ? p : Pnt(v);
        if (v != a && !(dist2_2d(place, Pnt(b)) < dist2_2d(Pnt(a), Pnt(b)))) { return nullptr; }
        if (v == nullptr) {
            Pnt* const stored = crossings->append(p);
            if (!insert(*stored)) { return nullptr; }
            v = *stored;
        }
        if (v != u && v != w) {
            const bool wasCounting = fixed.setCounting(fixed.counts(u, w));
            fixed.remove(u, w);
            makeSegment(u, v, depth + 1);
            makeSegment(v, w, depth + 1);
            fixed.setCounting(wasCounting);
        }
        return v;
    }
    static Pnt crossing(const Real* u, const Real* w, const Real* a, const Real* b) {
        const double toU = std::abs(Side(xyOf(a), xyOf(b), xyOf(u)).value);
        const double toW = std::abs(Side(xyOf(a), xyOf(b), xyOf(w)).value);
        const double share = toU + toW > 0 ? toU / (toU + toW) : 0.5;
        const auto between = [=](int axis) {
            return Real(double(u[axis]) + share * (double(w[axis]) - double(u[axis])));
        };
        return {between(0), between(1), between(2)};
    }

    DelaunayEngine<Real>& engine;
    Maker maker;
    Real tolerance;
    FixedEdges<Real> fixed;
    Pnt3Pool<Real>* crossings;
    Tri* latest = nullptr;  // where the last point was located
    std::size_t splitsLeft = 0;
};

/// Whether all points can become vertices.
template <class Real>
bool accepts(DelaunayEngine<Real>& engine, Pnt3Array<Real>* points) {
    if (points == nullptr || points->size() < 2) { return false; }
    TinRecord<Real>* hint = engine.newest();
    return std::all_of(points->begin(), points->end(), [&](const XPnt3<Real>& p) {
        hint = engine.locateFrom(hint, {double(p.x), double(p.y)});
        return hint != nullptr && std::isfinite(p.z);
    });
}

template <class Real>
ref_ptr<VertexArray<Real>> newVertexArray() {
    if constexpr (std::same_as<Real, double>) {
        return newPDoubleArray();
    } else {
        return newPFloatArray();
    }
}

/// Adds those of the polylines that can be; -1 when none can.
template <class Real, class Polylines>
int addAll(DelaunayInterface<Real>* interface, Polylines&& polylines, Real tolerance,
           VertexArray<Real>* fixed, Pnt3Pool<Real>* crossings) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr || !(tolerance >= 0)) { return -1; }
    ref_ptr<VertexArray<Real>> own;  // the host's list may have no count yet
    if (fixed == nullptr) { own = newVertexArray<Real>(); }
    VertexArray<Real>& list = fixed != nullptr ? *fixed : *own;
    std::optional<Breaklines<Real>> breaklines;
    for (Pnt3Array<Real>* const points : polylines) {
        if (!accepts(*engine, points)) { continue; }
        if (!breaklines) { breaklines.emplace(*engine, tolerance, list, crossings); }
        breaklines->add(*points);
    }
    return breaklines ? breaklines->edges() : -1;
}

}  // namespace

template <class Real>
int addBreakline(DelaunayInterface<Real>* engine, Pnt3Array<Real>* points,
                 std::type_identity_t<Real> tolerance, VertexArray<Real>* fixed,
                 Pnt3Pool<Real>* crossings) {
    return addAll(engine, std::array{points}, tolerance, fixed, crossings);
}

template <class Real>
int addBreaklines(DelaunayInterface<Real>* engine, Pnt3ArrayArray<Real>* polylines,
                  std::type_identity_t<Real> tolerance, VertexArray<Real>* fixed,
                  Pnt3Pool<Real>* crossings) {
    return polylines == nullptr ? -1 : addAll(engine, *polylines, tolerance, fixed, crossings);
}

namespace {

/// Whether no triangle runs clockwise and all links are mutual, across the same edge, and stay in the
/// network: then every flip lowers the surface over the paraboloid, and flipping ends.
template <class Real>
bool isOriented(DelaunayEngine<Real>& engine, TriangleNumbers<Real>& numberOf) {
    for (std::size_t n = 0; n < engine.count(); ++n) {
        const TinRecord<Real>* const t = engine.at(n);
        const auto& v = t->vertex;
        if (orientation(xyOf(v[0]), xyOf(v[1]), xyOf(v[2])) < 0) { return false; }
        for (int i = 0; i < 3; ++i) {
            const TinRecord<Real>* const next = t->neighbor[i];
            if (next == nullptr) { continue; }
            const int back = next->index(v[after[i]], v[before[i]]);
            if (back < 0 || next->neighbor[back] != t || numberOf(next) < 0) { return false; }
        }
    }
    return true;
}

}  // namespace

template <class Real>
int restoreDelaunay(DelaunayInterface<Real>* interface, const VertexArray<Real>* fixedVertices) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr) { return -1; }
    TriangleNumbers<Real> numberOf(*engine);
    if (!isOriented(*engine, numberOf)) { return -1; }
    const ref_ptr<VertexArray<Real>> copy =
        fixedVertices == nullptr ? newVertexArray<Real>() : fixedVertices->clone();
    const FixedEdges<Real> fixed(*copy);
    std::vector<TinRecord<Real>*> pending;  // each triangle once
    std::vector<bool> isPending(engine->count(), true);
    for (std::size_t n = engine->count(); n-- > 0;) { pending.push_back(engine->at(n)); }
    const auto lookAgainAt = [&](TinRecord<Real>* t) {
        const auto number = static_cast<std::size_t>(numberOf(t));
        if (!isPending[number]) { pending.push_back(t); }
        isPending[number] = true;
    };
    int flips = 0;
    while (!pending.empty()) {
        TinRecord<Real>* const t = pending.back();
        pending.pop_back();
        isPending[static_cast<std::size_t>(numberOf(t))] = false;
        for (int i = 0; i < 3; ++i) {
            TinRecord<Real>* const n = t->neighbor[i];
            const int j = n == nullptr ? 3 : n->index(t);
            Real* const a = t->vertex[after[i]];
            Real* const b = t->vertex[before[i]];
            if (j == 3 || inCircle(t->vertex[i], a, b, n->vertex[j]) <= 0 || fixed.contains(a, b)) {
                continue;
            }
            flipEdge(t, i, n, j);
            if (flips < std::numeric_limits<int>::max()) { ++flips; }
            lookAgainAt(n);
            lookAgainAt(t);
            break;
        }
    }
    return flips;
}

template int addBreakline(DelaunayInterface<float>*, Pnt3fArray*, float, PFloatArray*, Pnt3fPool*);
template int addBreakline(DelaunayInterface<double>*, Pnt3dArray*, double, PDoubleArray*,
                          Pnt3dPool*);
template int addBreaklines(DelaunayInterface<float>*, Pnt3fArrayArray*, float, PFloatArray*,
                           Pnt3fPool*);
template int addBreaklines(DelaunayInterface<double>*, Pnt3dArrayArray*, double, PDoubleArray*,
                           Pnt3dPool*);
template int restoreDelaunay(DelaunayInterface<float>*, const PFloatArray*);
template int restoreDelaunay(DelaunayInterface<double>*, const PDoubleArray*);

}  // namespace zyn
