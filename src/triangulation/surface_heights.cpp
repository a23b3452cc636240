// The height of a surface at points.
#include <zyn/surface.h>

#include "triangulation/flip.h"
#include "triangulation/surface_triangles.h"

#include <cmath>
#include <limits>

namespace zyn {
namespace {

template <class Real>
bool isAt(const Real* v, Xy q) {
    return double(v[0]) == q.x && double(v[1]) == q.y;
}

/// The surface triangle that holds q, as a walk from `hint` finds it; null outside. On the rim the
/// walk may end in the frame triangle beside it.
template <class Real>
TinRecord<Real>* surfaceTriangleAt(DelaunayEngine<Real>& engine, TinRecord<Real>* hint, Xy q) {
    TinRecord<Real>* const t = engine.locateFrom(hint, q);
    const Surface<Real> surface(&engine);
    if (t == nullptr || surface.has(t)) { return t; }
    for (int i = 0; i < 3; ++i) {
        if (isAt(t->vertex[i], q)) { return surface.round(t, i); }
    }
    for (int i = 0; i < 3; ++i) {
        TinRecord<Real>* const n = t->neighbor[i];
        if (surface.has(n) &&
            orientation(xyOf(t->vertex[after[i]]), xyOf(t->vertex[before[i]]), q) == 0) {
            return n;
        }
    }
    return nullptr;
}

/// A corner has its own height, whatever the plane's rounding.
template <class Real>
double heightIn(const TinRecord<Real>* t, Xy q) {
    for (const Real* const v : t->vertex) {
        if (isAt(v, q)) { return double(v[2]); }
    }
    return HeightPlane(t).at(q.x, q.y);
}

}  // namespace

template <class Real>
bool heightAt(DelaunayInterface<Real>* interface, double x, double y, double& z) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr) { return false; }
    const auto* const t = surfaceTriangleAt(*engine, engine->newest(), {x, y});
    if (t == nullptr) { return false; }
    z = heightIn(t, {x, y});
    return true;
}

template <class Real>
int heightAt(DelaunayInterface<Real>* interface, Pnt3dArray* points) {
    auto* const engine = engineOf(interface);
    if (points == nullptr) { return 0; }
    int found = 0;
    TinRecord<Real>* hint = engine == nullptr ? nullptr : engine->newest();
    for (XPnt3d& p : *points) {
        p.z = std::numeric_limits<double>::quiet_NaN();
        if (engine == nullptr) { continue; }
        if (auto* const t = surfaceTriangleAt(*engine, hint, {p.x, p.y}); t != nullptr) {
            p.z = heightIn(t, {p.x, p.y});
            hint = t;
            ++found;
        }
    }
    return found;
}

template bool heightAt(DelaunayInterface<float>*, double, double, double&);
template bool heightAt(DelaunayInterface<double>*, double, double, double&);
template int heightAt(DelaunayInterface<float>*, Pnt3dArray*);
template int heightAt(DelaunayInterface<double>*, Pnt3dArray*);

}  // namespace zyn
