// Heights of a surface at points.
#include <zyn/network.h>

#include "core/prefetch.h"
#include "surface/height_plane.h"
#include "surface/queries.h"
#include "triangulation/flip.h"
#include "triangulation/locate_step.h"

#include <cstddef>
#include <limits>
#include <span>

namespace zyn {

using namespace detail;

namespace {

template <class Real>
bool isAt(const Real* v, Xy q) {
    return double(v[0]) == q.x && double(v[1]) == q.y;
}

}  // namespace

namespace detail {

template <class Real>
TinRecord<Real>* triangleAt(const SurfaceTriangles<Real>& surface, TinRecord<Real>* hint, Xy q) {
    TinRecord<Real>* const t = surface.network().locateFrom(hint, q);
    if (t == nullptr || surface.has(t)) { return t; }
    for (int i = 0; i < 3; ++i) {
        if (isAt(t->vertex[i], q)) { return surface.triangleAround(t, i); }
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

// Corners and edges are special cases, so that rounding of the planes does not affect them. A
// corner has its own height, and a place on an edge has the same height in both triangles.
template <class Real>
double heightIn(const TinRecord<Real>* t, Xy q) {
    for (const Real* const v : t->vertex) {
        if (isAt(v, q)) { return double(v[2]); }
    }
    for (int i = 0; i < 3; ++i) {
        const Real *const a = t->vertex[after[i]], *const b = t->vertex[before[i]];
        if (orientation(xyOf(a), xyOf(b), q) == 0) { return heightOnEdge(a, b, q); }
    }
    return HeightPlane(t).at(q.x, q.y);
}

}  // namespace detail

namespace {

/// Finds heights by several walks at once, each through a part of the points. While one of them
/// waits for memory, the others continue.
template <class Real>
class HeightWalks {
public:
    using Tri = TinRecord<Real>;

    HeightWalks(const SurfaceTriangles<Real>& surface_, std::span<XPnt3d> points,
                const detail::StartNear<Real>& start_)
        : surface(surface_), start(start_) {
        const std::size_t count = points.size();
        for (std::size_t i = 0; i < mostWalks; ++i) {
            XPnt3d* const first = points.data() + count * i / mostWalks;
            XPnt3d* const end = points.data() + count * (i + 1) / mostWalks;
            if (first != end) {
                walks[running++] = {start(nullptr, placeOf(*first)), first, end, 0};
            }
        }
    }
    /// Sets the heights. Returns the number of points on the surface.
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
    /// Limits the steps of one walk. A longer way is left to the plain walk, which detects circles.
    static constexpr int mostSteps = 256;
    struct Walk {
        Tri* at;
        XPnt3d* point;
        XPnt3d* end;
        int steps;
    };

    static Xy placeOf(const XPnt3d& p) { return {p.x, p.y}; }
    /// Makes one step of a walk. Returns true after its last point.
    bool step(Walk& walk) {
        XPnt3d& p = *walk.point;
        const Xy q = placeOf(p);
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
        const bool isClear = isInside && surface.has(walk.at);
        Tri* const t = isClear ? walk.at : detail::triangleAt(surface, walk.at, q);
        p.z = isClear        ? HeightPlane(t).at(q.x, q.y)
              : t == nullptr ? std::numeric_limits<double>::quiet_NaN()
                             : detail::heightIn(t, q);
        if (t != nullptr) {
            walk.at = t;
            ++found;
        }
        walk.steps = 0;
        if (++walk.point == walk.end) { return true; }
        walk.at = start(walk.at, placeOf(*walk.point));
        return false;
    }

    const SurfaceTriangles<Real>& surface;
    const detail::StartNear<Real>& start;
    Walk walks[mostWalks] = {};
    std::size_t running = 0;
    int found = 0;
};

}  // namespace

namespace detail {

template <class Real>
int heightsAt(const SurfaceTriangles<Real>& surface, std::span<XPnt3d> points,
              const StartNear<Real>& start) {
    return HeightWalks<Real>(surface, points, start).run();
}

template TinRecord<float>* triangleAt(const SurfaceTriangles<float>&, TinRecord<float>*, Xy);
template TinRecord<double>* triangleAt(const SurfaceTriangles<double>&, TinRecord<double>*, Xy);
template double heightIn(const TinRecord<float>*, Xy);
template double heightIn(const TinRecord<double>*, Xy);
template int heightsAt(const SurfaceTriangles<double>&, std::span<XPnt3d>,
                       const StartNear<double>&);

}  // namespace detail

template <class Real>
bool heightAt(DelaunayInterface<Real>* interface, double x, double y, double& z) {
    const auto* const engine = engineOf(interface);
    if (engine == nullptr) { return false; }
    const SurfaceTriangles<Real> surface(engine);
    const auto* const t = detail::triangleAt(surface, engine->newest(), {x, y});
    if (t == nullptr) { return false; }
    z = detail::heightIn(t, {x, y});
    return true;
}

template <class Real>
int heightAt(DelaunayInterface<Real>* interface, Pnt3dArray* points) {
    return points == nullptr ? 0 : heightAt(interface, std::span(*points));
}

template <class Real>
int heightAt(DelaunayInterface<Real>* interface, std::span<XPnt3d> points) {
    if (const auto* const engine = engineOf(interface); engine != nullptr) {
        return detail::heightsAt<Real>(
            SurfaceTriangles<Real>(engine), points,
            [engine](auto* last, Xy) { return last == nullptr ? engine->newest() : last; });
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
