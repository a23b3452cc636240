// The surface along a straight line.
#include <zyn/surface.h>

#include "triangulation/flip.h"
#include "triangulation/surface_triangles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace zyn {
namespace {

/// Walks along a-b from triangle to triangle. A vertex on the line counts as lying to its left, which
/// is as if the line ran an infinitely small way farther right: it then meets no vertex, and comes
/// into every triangle across one edge and leaves it across another.
template <class Real>
class ProfileWalk {
public:
    using Tri = TinRecord<Real>;

    /// REQUIRES: a and b are different and usable.
    ProfileWalk(DelaunayEngine<Real>& engine_, Xy a_, Xy b_)
        : engine(engine_), surface(&engine_), a(a_), b(b_) {}

    ref_ptr<Pnt3dArray> run() {
        if (Tri* const t = firstTriangle()) { follow(t); }
        // A line that leaves the network, or starts outside it, may come in again.
        for (const auto& [where, t] : entries()) {
            if (where > reached) {
                isInterrupted = true;
                follow(t);
            }
        }
        return points;
    }

private:
    [[nodiscard]] int side(const Real* v) const { return orientation(a, b, xyOf(v)); }
    /// The edge across which the line leaves t, or comes into it; 3 when it misses t.
    [[nodiscard]] int crossedEdge(const Tri* t, bool leaving) const {
        for (int i = 0; i < 3; ++i) {
            const bool isRight = side(t->vertex[after[i]]) < 0;
            if (isRight == leaving && (side(t->vertex[before[i]]) < 0) != leaving) { return i; }
        }
        return 3;
    }
    /// 0 at a, 1 at b.
    [[nodiscard]] double along(const XPnt3d& p) const {
        const Xy ab = b - a, ap = Xy{p.x, p.y} - a;
        return (ap.x * ab.x + ap.y * ab.y) / (ab.x * ab.x + ab.y * ab.y);
    }
    /// Where the line crosses edge i of t.
    [[nodiscard]] XPnt3d crossing(const Tri* t, int i) const {
        const Real* right = t->vertex[after[i]];
        const Real* left = t->vertex[before[i]];
        if (side(right) >= 0) { std::swap(left, right); }
        if (side(left) == 0) { return positionOf(left); }
        const double toRight = std::abs(Side(a, b, xyOf(right)).value);
        const double toLeft = std::abs(Side(a, b, xyOf(left)).value);
        const double share = toRight + toLeft > 0 ? toRight / (toRight + toLeft) : 0.5;
        const XPnt3d from = positionOf(right);
        return from + (positionOf(left) - from) * share;
    }

    /// Of the triangles round a, one that the line goes through.
    [[nodiscard]] Tri* firstTriangle() {
        std::vector<Tri*> around{engine.locateFrom(engine.newest(), a)};
        if (around[0] == nullptr) { return nullptr; }
        for (std::size_t n = 0; n < around.size(); ++n) {
            if (crossedEdge(around[n], true) != 3) { return around[n]; }
            for (Tri* const next : around[n]->neighbor) {
                if (next != nullptr && touchesStart(next) &&
                    std::find(around.begin(), around.end(), next) == around.end()) {
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
    /// The triangles on the rim of the network where the line comes in, by where.
    [[nodiscard]] std::vector<std::pair<double, Tri*>> entries() {
        std::vector<std::pair<double, Tri*>> result;
        for (std::size_t n = 0; n < engine.count(); ++n) {
            Tri* const t = engine.at(n);
            if (std::find(t->neighbor, t->neighbor + 3, nullptr) == t->neighbor + 3) { continue; }
            const int in = crossedEdge(t, false);
            if (in == 3 || t->neighbor[in] != nullptr) { continue; }
            const double where = along(crossing(t, in));
            if (where >= 0 && where < 1) { result.emplace_back(where, t); }
        }
        std::sort(result.begin(), result.end());
        return result;
    }

    void follow(Tri* t) {
        std::size_t stepsLeft = engine.count();  // links of a damaged network may circle
        XPnt3d entry = crossing(t, crossedEdge(t, false));
        for (int out = crossedEdge(t, true); out != 3 && stepsLeft > 0; --stepsLeft) {
            const XPnt3d exit = crossing(t, out);
            addStretch(t, entry, exit);
            reached = std::max(reached, along(exit));
            t = t->neighbor[out];
            if (t == nullptr || reached >= 1) { return; }
            entry = exit;
            out = crossedEdge(t, true);
        }
    }

    /// A triangle of the surface for a line inside t: t itself, or the one across an edge that the
    /// line runs along.
    [[nodiscard]] const Tri* surfaceAt(const Tri* t) const {
        if (surface.has(t)) { return t; }
        for (int i = 0; i < 3; ++i) {
            if (side(t->vertex[after[i]]) == 0 && side(t->vertex[before[i]]) == 0) {
                return surface.has(t->neighbor[i]) ? t->neighbor[i] : nullptr;
            }
        }
        return nullptr;
    }
    /// Adds the part of the line inside t that lies between a and b.
    void addStretch(const Tri* t, XPnt3d entry, XPnt3d exit) {
        const Tri* const ground = surfaceAt(t);
        if (ground == nullptr) {
            isInterrupted = true;
            return;
        }
        const HeightPlane plane(ground);
        if (along(exit) < 0 || along(entry) > 1) { return; }
        if (along(entry) < 0) { entry = {a.x, a.y, plane.at(a.x, a.y)}; }
        if (along(exit) > 1) { exit = {b.x, b.y, plane.at(b.x, b.y)}; }
        if (isInterrupted && points->size() > 0 && !isLast(entry)) {
            points->append(XPnt3d(entry.x, entry.y, std::numeric_limits<double>::quiet_NaN()));
            points->append(entry);
        }
        isInterrupted = false;
        for (const XPnt3d& p : {entry, exit}) {
            if (points->size() == 0 || !isLast(p)) { points->append(p); }
        }
    }
    [[nodiscard]] bool isLast(const XPnt3d& p) const {
        const XPnt3d last = points->last();
        return last.x == p.x && last.y == p.y;
    }

    DelaunayEngine<Real>& engine;
    Surface<Real> surface;
    const Xy a, b;
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    double reached = -HUGE_VAL;
    bool isInterrupted = false;
};

}  // namespace

template <class Real>
ref_ptr<Pnt3dArray> profile(DelaunayInterface<Real>* interface, const XPnt2d& a, const XPnt2d& b) {
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    auto* const engine = engineOf(interface);
    const Xy from{a.x, a.y}, to{b.x, b.y};
    if (engine == nullptr || !isUsable(from) || !isUsable(to)) { return points; }
    if (a.x == b.x && a.y == b.y) {
        double z = 0;
        if (heightAt(interface, a.x, a.y, z)) { points->append(XPnt3d(a.x, a.y, z)); }
        return points;
    }
    points = ProfileWalk<Real>(*engine, from, to).run();
    if (points->size() == 0) {  // perhaps along the rim, with the network on its left
        points = ProfileWalk<Real>(*engine, to, from).run();
        std::reverse(points->begin(), points->end());
    }
    return points;
}

template ref_ptr<Pnt3dArray> profile(DelaunayInterface<float>*, const XPnt2d&, const XPnt2d&);
template ref_ptr<Pnt3dArray> profile(DelaunayInterface<double>*, const XPnt2d&, const XPnt2d&);

}  // namespace zyn
