// The height of a surface at points.
#include <zyn/network.h>

#include "core/prefetch.h"
#include "triangulation/flip.h"
#include "triangulation/locate_step.h"
#include "surface/surface_triangles.h"

#include <cstddef>
#include <limits>
#include <span>

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
    const SurfaceTriangles<Real> surface(&engine);
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

/// Several walks side by side, each through a part of the points: while one waits for memory, the
/// others go on.
template <class Real>
class HeightWalks {
public:
    using Tri = TinRecord<Real>;

    HeightWalks(DelaunayEngine<Real>& engine_, XPnt3d* points, std::size_t count)
        : engine(engine_), surface(&engine_) {
        for (std::size_t i = 0; i < mostWalks; ++i) {
            XPnt3d* const first = points + count * i / mostWalks;
            XPnt3d* const end = points + count * (i + 1) / mostWalks;
            if (first != end) { walks[running++] = {engine.newest(), first, end, 0}; }
        }
    }
    /// The number of points that lie on the surface.
    int run() {
        while (running > 0) {
            for (std::size_t i = 0; i < running; ++i) {
                if (step(walks[i])) { walks[i] = walks[--running]; }
            }
        }
        return found;
    }

private:
    static constexpr std::size_t mostWalks = 8;
    /// More steps than between neighbours: the plain walk, which notices when it circles, takes over.
    static constexpr int mostSteps = 256;
    struct Walk {
        Tri* at;
        XPnt3d* point;
        XPnt3d* end;
        int steps;
    };

    /// One step of a walk; true behind its last point.
    bool step(Walk& walk) {
        XPnt3d& p = *walk.point;
        const Xy q{p.x, p.y};
        bool isInside = false;
        if (walk.at != nullptr && isUsable(q) && ++walk.steps < mostSteps) {
            Tri* const next = stepTowards(walk.at, q, isInside);
            if (next != nullptr && next != walk.at) {
                prefetch(next);
                prefetch(&next->neighbor[2]);
                walk.at = next;
                return false;
            }
        }
        Tri* const t =
            isInside && surface.has(walk.at) ? walk.at : surfaceTriangleAt(engine, walk.at, q);
        p.z = t == nullptr ? std::numeric_limits<double>::quiet_NaN() : heightIn(t, q);
        if (t != nullptr) {
            walk.at = t;
            ++found;
        }
        walk.steps = 0;
        return ++walk.point == walk.end;
    }

    DelaunayEngine<Real>& engine;
    SurfaceTriangles<Real> surface;
    Walk walks[mostWalks] = {};
    std::size_t running = 0;
    int found = 0;
};

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
    return points == nullptr ? 0 : heightAt(interface, std::span(*points));
}

template <class Real>
int heightAt(DelaunayInterface<Real>* interface, std::span<XPnt3d> points) {
    if (auto* const engine = engineOf(interface); engine != nullptr) {
        return HeightWalks<Real>(*engine, points.data(), points.size()).run();
    }
    for (XPnt3d& p : points) { p.z = std::numeric_limits<double>::quiet_NaN(); }
    return 0;
}

template bool heightAt(DelaunayInterface<float>*, double, double, double&);
template bool heightAt(DelaunayInterface<double>*, double, double, double&);
template int heightAt(DelaunayInterface<float>*, Pnt3dArray*);
template int heightAt(DelaunayInterface<double>*, Pnt3dArray*);
template int heightAt(DelaunayInterface<float>*, std::span<XPnt3d>);
template int heightAt(DelaunayInterface<double>*, std::span<XPnt3d>);

}  // namespace zyn
