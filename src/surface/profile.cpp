// Profiles: the surface along a straight line.
#include <zyn/network.h>

#include "surface/height_plane.h"
#include "surface/interpolate.h"
#include "surface/queries.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_tests.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

/// Walks along a-b from triangle to triangle. A vertex on the line counts as left of it, as if the
/// line were moved to the right by an infinitely small distance. So the line meets no vertex, and
/// enters and leaves every triangle across an edge.
template <class Real>
class ProfileWalk {
public:
    using Tri = TinRecord<Real>;

    /// REQUIRES: a and b are different and usable.
    ProfileWalk(const SurfaceTriangles<Real>& surface_, Tri* hint_, Xy a_, Xy b_)
        : engine(surface_.network()), surface(surface_), hint(hint_), a(a_), b(b_) {}

    std::vector<XPnt3d> run() {
        addEnd(a);
        Tri* const first = firstTriangle();
        if (first == nullptr || !follow(first)) { reenter(); }
        isInterrupted = true;
        addEnd(b);
        return points;
    }
    /// Returns whether the walk met no triangle of the surface.
    [[nodiscard]] bool isMissed() const { return reached == -HUGE_VAL; }

private:
    [[nodiscard]] int side(const Real* v) const { return orientation(a, b, xyOf(v)); }
    /// Returns the edge across which the line leaves or enters t, or 3 if it misses t.
    [[nodiscard]] int crossedEdge(const Tri* t, bool leaving) const {
        for (int i = 0; i < 3; ++i) {
            const bool isRight = side(t->vertex[after[i]]) < 0;
            if (isRight == leaving && (side(t->vertex[before[i]]) < 0) != leaving) { return i; }
        }
        return 3;
    }
    /// Returns the place of p along the line: 0 at a, 1 at b.
    [[nodiscard]] double along(const XPnt3d& p) const {
        const Xy ab = b - a, ap = Xy{p.x, p.y} - a;
        return (ap.x * ab.x + ap.y * ab.y) / (ab.x * ab.x + ab.y * ab.y);
    }
    /// Returns the point at which the line crosses edge i of t. Returns an end of the edge, a or b
    /// exactly if it is within rounding of the crossing.
    [[nodiscard]] XPnt3d crossing(const Tri* t, int i) const {
        const Real* right = t->vertex[after[i]];
        const Real* left = t->vertex[before[i]];
        if (side(right) >= 0) { std::swap(left, right); }
        if (side(left) == 0) { return positionOf(left); }
        const double toRight = std::abs(Side(a, b, xyOf(right)).value);
        const double toLeft = std::abs(Side(a, b, xyOf(left)).value);
        const double share = toRight + toLeft > 0 ? toRight / (toRight + toLeft) : 0.5;
        const XPnt3d from = positionOf(right), to = positionOf(left);
        XPnt3d p(interpolate(from.x, to.x, share), interpolate(from.y, to.y, share),
                 interpolate(from.z, to.z, share));
        const double rounding =
            1e-14 * (std::abs(from.x) + std::abs(from.y) + std::abs(to.x) + std::abs(to.y));
        const auto isAt = [&p, rounding](Xy q) {
            return std::abs(p.x - q.x) <= rounding && std::abs(p.y - q.y) <= rounding;
        };
        for (const XPnt3d& end : {to, from}) {
            if (isAt({end.x, end.y})) { p = end; }
        }
        for (const Xy end : {a, b}) {
            if (isAt(end)) { p = {end.x, end.y, p.z}; }
        }
        return p;
    }

    /// Returns a triangle at a that the line goes through, or null.
    [[nodiscard]] Tri* firstTriangle() {
        std::vector<Tri*> around{engine.locateFrom(hint, a)};
        if (around[0] == nullptr) { return nullptr; }
        std::unordered_set<const Tri*> seen{around[0]};
        for (std::size_t n = 0; n < around.size(); ++n) {
            if (crossedEdge(around[n], true) != 3) { return around[n]; }
            for (Tri* const next : around[n]->neighbor) {
                if (next != nullptr && touchesStart(next) && seen.insert(next).second) {
                    around.push_back(next);
                }
            }
        }
        return nullptr;
    }
    [[nodiscard]] bool touchesStart(const Tri* t) const {
        for (int i = 0; i < 3; ++i) {
            const Real* const from = t->vertex[after[i]];
            if (orientation(xyOf(from), xyOf(t->vertex[before[i]]), a) < 0) { return false; }
        }
        return true;
    }
    /// Continues where the line enters the network, after it left the network or started outside.
    void reenter() {
        for (const auto& [where, t] : entries()) {
            if (where > reached) {
                isInterrupted = true;
                follow(t);
            }
        }
    }
    /// Returns the triangles at which the line enters the network, in their order along the line.
    [[nodiscard]] std::vector<std::pair<double, Tri*>> entries() {
        std::vector<std::pair<double, Tri*>> result;
        for (std::size_t n = 0; n < engine.count(); ++n) {
            Tri* const t = engine.record(n);
            if (std::find(t->neighbor, t->neighbor + 3, nullptr) == t->neighbor + 3) { continue; }
            const int in = crossedEdge(t, false);
            if (in == 3 || t->neighbor[in] != nullptr) { continue; }
            const double where = along(crossing(t, in));
            if (where >= 0 && where < 1) { result.emplace_back(where, t); }
        }
        std::sort(result.begin(), result.end());
        return result;
    }

    /// Walks from triangle to triangle, from t on. Returns whether it reached b.
    bool follow(Tri* t) {
        XPnt3d entry = crossing(t, crossedEdge(t, false));
        for (int out = crossedEdge(t, true); out != 3 && stepsLeft > 0; --stepsLeft) {
            XPnt3d exit = crossing(t, out);
            if (along(exit) < along(entry)) {  // by rounding
                exit.x = entry.x;
                exit.y = entry.y;
            }
            if (orientationOf(t) == 0) {
                // The neighbours of a degenerate triangle contain the same places.
            } else if (const Tri* const ground = surfaceAt(t)) {
                addStretch(ground, entry, exit);
            } else {
                addTouch(t, crossedEdge(t, false));
                addTouch(t, out);
                isInterrupted = true;
            }
            t = t->neighbor[out];
            if (along(exit) >= 1) { return true; }
            if (t == nullptr) { return false; }
            entry = exit;
            out = crossedEdge(t, true);
        }
        return false;
    }

    /// Returns the triangle of the surface below the line in t: t itself, or the one across an edge
    /// of t that the line follows. Returns null if there is none.
    [[nodiscard]] const Tri* surfaceAt(const Tri* t) const {
        if (surface.has(t)) { return t; }
        for (int i = 0; i < 3; ++i) {
            if (side(t->vertex[after[i]]) == 0 && side(t->vertex[before[i]]) == 0) {
                return surface.has(t->neighbor[i]) ? t->neighbor[i] : nullptr;
            }
        }
        return nullptr;
    }
    /// Adds the part of the line over `ground` that is between a and b.
    void addStretch(const Tri* ground, XPnt3d entry, XPnt3d exit) {
        if (along(exit) < 0 || along(entry) > 1) { return; }
        reached = std::max(reached, along(exit));
        const HeightPlane plane(ground);
        if (along(entry) < 0) { entry = {a.x, a.y, plane.at(a.x, a.y)}; }
        if (along(exit) >= 1) { exit = {b.x, b.y, plane.at(b.x, b.y)}; }
        add(entry);
        isInterrupted = false;
        add(exit);
    }
    /// Adds the vertex at which the line crosses edge i of t, if the surface touches the line
    /// there. REQUIRES: t does not belong to the surface.
    void addTouch(Tri* t, int i) {
        const int left = side(t->vertex[after[i]]) < 0 ? before[i] : after[i];
        if (side(t->vertex[left]) != 0) { return; }
        const XPnt3d p = positionOf(t->vertex[left]);
        const bool isInside = along(p) > 0 && along(p) < 1 && !isLast(p);
        if (isInside && touched.insert(t->vertex[left]).second &&
            surface.triangleAround(t, left) != nullptr) {
            add(p);
            isInterrupted = true;
        }
    }
    /// Adds an end of the line if it is on the surface, also where the rest of the line is outside.
    void addEnd(Xy end) {
        if (const Tri* const t = detail::triangleAt(surface, hint, end)) {
            add({end.x, end.y, detail::heightIn(t, end)});
        }
    }
    void add(const XPnt3d& p) {
        if (isLast(p)) { return; }
        if (isInterrupted && !points.empty()) {
            points.emplace_back(p.x, p.y, std::numeric_limits<double>::quiet_NaN());
        }
        points.push_back(p);
    }
    [[nodiscard]] bool isLast(const XPnt3d& p) const {
        return !points.empty() && points.back().x == p.x && points.back().y == p.y;
    }

    const DelaunayEngine<Real>& engine;
    const SurfaceTriangles<Real>& surface;
    Tri* const hint;
    const Xy a, b;
    std::vector<XPnt3d> points;
    std::unordered_set<const Real*> touched;     // vertices that addTouch() has tested
    std::size_t stepsLeft = 2 * engine.count();  // links of a damaged network may circle
    double reached = -HUGE_VAL;                  // the end of the latest part over the surface
    bool isInterrupted = false;
};

}  // namespace

namespace detail {

template <class Real>
std::vector<XPnt3d> profileOf(const SurfaceTriangles<Real>& surface, TinRecord<Real>* hint, Xy a,
                              Xy b) {
    std::vector<XPnt3d> points;
    if (!surface.hasEngine() || !isUsable(a) || !isUsable(b)) { return points; }
    const Xy step = b - a;
    if (step.x * step.x + step.y * step.y == 0) {
        if (const auto* const t = triangleAt(surface, hint, a)) {
            points.emplace_back(a.x, a.y, heightIn(t, a));
        }
        return points;
    }
    ProfileWalk<Real> walk(surface, hint, a, b);
    points = walk.run();
    if (walk.isMissed()) {  // the line may follow the rim, with the network on its left
        ProfileWalk<Real> back(surface, hint, b, a);
        std::vector<XPnt3d> found = back.run();
        if (!back.isMissed()) { points.assign(found.rbegin(), found.rend()); }
    }
    return points;
}

template std::vector<XPnt3d> profileOf(const SurfaceTriangles<double>&, TinRecord<double>*, Xy, Xy);

}  // namespace detail

template <class Real>
ref_ptr<Pnt3dArray> profile(DelaunayInterface<Real>* interface, const XPnt2d& a, const XPnt2d& b) {
    const auto* const engine = engineOf(interface);
    const std::vector<XPnt3d> found =
        detail::profileOf(SurfaceTriangles<Real>(engine),
                          engine == nullptr ? nullptr : engine->newest(), {a.x, a.y}, {b.x, b.y});
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    points->append(found.data(), static_cast<int>(found.size()));
    return points;
}

template ref_ptr<Pnt3dArray> profile(DelaunayInterface<float>*, const XPnt2d&, const XPnt2d&);
template ref_ptr<Pnt3dArray> profile(DelaunayInterface<double>*, const XPnt2d&, const XPnt2d&);

}  // namespace zyn
