// Breaklines, and the constrained Delaunay triangulation round them.
#include <zyn/geometry.h>
#include <zyn/surface.h>

#include "triangulation/edge_maker.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace zyn {
namespace {

template <class Real>
class Breaklines {
public:
    using Tri = TinRecord<Real>;
    using Pnt = XPnt3<Real>;

    Breaklines(DelaunayEngine<Real>& engine_, Real tolerance_, VertexArray<Real>* list,
               Pnt3Pool<Real>* pool)
        : engine(engine_), maker(engine_), tolerance(tolerance_), fixed(list), crossings(pool) {}

    /// Whether all points can become vertices.
    [[nodiscard]] bool accepts(Pnt3Array<Real>* points) {
        if (points == nullptr || points->size() < 2) { return false; }
        Tri* hint = engine.newest();
        return std::all_of(points->begin(), points->end(), [this, &hint](Pnt& p) {
            hint = engine.locateFrom(hint, {double(p.x), double(p.y)});
            return hint != nullptr && std::isfinite(p.z);
        });
    }
    /// The number of edges that the polyline became. All vertices come first, since the next one may
    /// flip an edge away.
    int add(Pnt3Array<Real>& points) {
        std::vector<Real*> vertices;
        for (Pnt& p : points) {
            if constexpr (DelaunayEngine<Real>::isDouble) { engine.number(&p, 1); }
            Real* v = vertexAt(p);
            if (v == nullptr && engine.insert(&p, tolerance, fixed)) { v = p; }
            if (v != nullptr && (vertices.empty() || vertices.back() != v)) {
                vertices.push_back(v);
            }
        }
        int edges = 0;
        for (std::size_t i = 1; i < vertices.size(); ++i) {
            splitsLeft = engine.count();
            edges += makeSegment(vertices[i - 1], vertices[i], 0);
        }
        return edges;
    }

private:
    using Maker = EdgeMaker<Real>;

    /// The nearest vertex that the point would be refused for, or null.
    Real* vertexAt(Pnt& p) {
        Tri* const t = engine.locateFrom(engine.newest(), {double(p.x), double(p.y)});
        if (t == nullptr) { return nullptr; }
        Real* const* const nearest = std::min_element(
            t->vertex, t->vertex + 3,
            [&p](const Real* a, const Real* b) { return distance(p, a) < distance(p, b); });
        return distance(p, *nearest) <= tolerance ? *nearest : nullptr;
    }
    /// The larger of the distances along the axes, as addPoint compares them.
    static Real distance(const Pnt& p, const Real* v) {
        return std::max(std::abs(p.x - v[0]), std::abs(p.y - v[1]));
    }

    int makeSegment(Real* a, Real* b, int depth) {
        int edges = 0;
        while (a != b) {
            const typename Maker::Step step = maker.look(a, b);
            if (step.way == Maker::Way::blocked) { break; }
            if (step.way == Maker::Way::edge) {
                fixed.add(a, step.vertex);
                a = step.vertex;
                ++edges;
                continue;
            }
            Real* const end = maker.collect(a, b, step);
            if (end == nullptr) { break; }
            if (Real* const v = vertexAtCrossing(a, end, depth); v != nullptr) {
                edges += makeSegment(a, v, depth + 1);
                a = v;
                continue;
            }
            if (!maker.flipAway(a, end)) { break; }
        }
        return edges;
    }

    /// Deals with the fixed edges among those that were collected between a and b: a vertex on the
    /// first of them when such are asked for; otherwise they give way, and the answer is null.
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
    /// Splits the fixed edge u-w where a-b crosses it; null when that brings a-b no farther.
    Real* splitEdge(Real* u, Real* w, Real* a, Real* b, int depth) {
        Pnt p = crossing(u, w, a, b);
        Real* v = vertexAt(p);
        if (v == nullptr) {
            Pnt* const stored = crossings->append(p);
            if (!engine.insert(stored, tolerance, fixed)) { return nullptr; }
            v = *stored;
        }
        if (v != a && !(dist2_2d(XPnt3<Real>(v), XPnt3<Real>(b)) <
                        dist2_2d(XPnt3<Real>(a), XPnt3<Real>(b)))) {
            return nullptr;
        }
        if (v != u && v != w) {
            fixed.remove(u, w);
            makeSegment(u, v, depth + 1);
            makeSegment(v, w, depth + 1);
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
    std::size_t splitsLeft = 0;
};

/// Adds those of the polylines that can be; -1 when none can.
template <class Real, class Polylines>
int addAll(DelaunayInterface<Real>* interface, Polylines&& polylines, Real tolerance,
           VertexArray<Real>* fixed, Pnt3Pool<Real>* crossings) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr || !(tolerance >= 0)) { return -1; }
    ref_ptr<VertexArray<Real>> list = fixed;
    if constexpr (std::same_as<Real, double>) {
        if (fixed == nullptr) { list = newPDoubleArray(); }
    } else {
        if (fixed == nullptr) { list = newPFloatArray(); }
    }
    Breaklines<Real> breaklines(*engine, tolerance, list.get(), crossings);
    int edges = -1;
    for (Pnt3Array<Real>* const points : polylines) {
        if (breaklines.accepts(points)) { edges = std::max(edges, 0) + breaklines.add(*points); }
    }
    return edges;
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

template <class Real>
int restoreDelaunay(DelaunayInterface<Real>* interface, const VertexArray<Real>* fixedVertices) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr) { return 0; }
    const ref_ptr<VertexArray<Real>> copy =
        fixedVertices == nullptr ? nullptr : fixedVertices->clone();
    const FixedEdges<Real> fixed(copy.get());
    std::vector<TinRecord<Real>*> pending;
    for (std::size_t n = engine->count(); n-- > 0;) { pending.push_back(engine->at(n)); }
    int flips = 0;
    while (!pending.empty()) {
        TinRecord<Real>* const t = pending.back();
        pending.pop_back();
        for (int i = 0; i < 3; ++i) {
            TinRecord<Real>* const n = t->neighbor[i];
            const int j = n == nullptr ? 3 : n->index(t);
            Real* const a = t->vertex[after[i]];
            Real* const b = t->vertex[before[i]];
            if (j == 3 || inCircle(t->vertex[i], a, b, n->vertex[j]) <= 0 || fixed.contains(a, b)) {
                continue;
            }
            flipEdge(t, i, n, j);
            ++flips;
            pending.push_back(n);
            pending.push_back(t);
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
