// Breaklines in the network of an engine.
#include <zyn/network.h>

#include "surface/breaklines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace zyn {

using namespace detail;

namespace {

/// Returns whether there are at least two points, and all can become vertices.
template <class Real>
bool accepts(DelaunayEngine<Real>& engine, Pnt3Array<Real>* points,
             const detail::StartNear<Real>& start) {
    if (points == nullptr || points->size() < 2) { return false; }
    TinRecord<Real>* last = nullptr;
    return std::all_of(points->begin(), points->end(), [&](const XPnt3<Real>& p) {
        const Xy q{double(p.x), double(p.y)};
        last = engine.locateFrom(start(last, q), q);
        return last != nullptr && std::isfinite(p.z);
    });
}

/// Adds the polylines that can become edges. Returns the number of edges, or -1 if no polyline can.
template <class Real, class Polylines>
int addAll(DelaunayInterface<Real>* interface, Polylines&& polylines, Real tolerance,
           VertexArray<Real>* fixed, Pnt3Pool<Real>* crossings) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr || !(tolerance >= 0)) { return -1; }
    ref_ptr<VertexArray<Real>> own;  // the host's list may have no count yet
    if (fixed == nullptr) { own = newVertexArray<Real>(); }
    VertexArray<Real>& list = fixed != nullptr ? *fixed : *own;
    typename Breaklines<Real>::Keep keep;
    if (crossings != nullptr) {
        keep = [crossings](const XPnt3<Real>& p) { return crossings->append(p); };
    }
    constexpr double closeEdges = 256;
    TinRecord<Real>* latest = engine->newest();
    const detail::StartNear<Real> start = [&](TinRecord<Real>* last, Xy q) {
        if (last == nullptr) { last = latest; }
        if (last == nullptr || !detail::isWithinEdges(last, q, closeEdges)) {
            last = engine->sample(q);
        }
        return latest = last;
    };
    std::optional<FixedEdges<Real>> edges;
    std::optional<Breaklines<Real>> breaklines;
    for (Pnt3Array<Real>* const points : polylines) {
        if (!accepts(*engine, points, start)) { continue; }
        if (!breaklines) {
            edges.emplace(list);
            breaklines.emplace(*engine, tolerance, *edges, keep, start);
        }
        breaklines->add(*points, [](const XPnt3<Real>&, const Real*) {});
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

template int addBreakline(DelaunayInterface<float>*, Pnt3fArray*, float, PFloatArray*, Pnt3fPool*);
template int addBreakline(DelaunayInterface<double>*, Pnt3dArray*, double, PDoubleArray*,
                          Pnt3dPool*);
template int addBreaklines(DelaunayInterface<float>*, Pnt3fArrayArray*, float, PFloatArray*,
                           Pnt3fPool*);
template int addBreaklines(DelaunayInterface<double>*, Pnt3dArrayArray*, double, PDoubleArray*,
                           Pnt3dPool*);

}  // namespace zyn
