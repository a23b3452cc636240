// Flips to the constrained Delaunay triangulation around fixed edges.
#include <zyn/network.h>

#include "surface/restore.h"

#include "surface/lawson.h"
#include "triangulation/engine.h"
#include "triangulation/fixed_edges.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_numbers.h"
#include "triangulation/triangle_tests.h"

#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

/// Returns whether flipping ends. It does if no triangle is clockwise, and all links are mutual,
/// across the same edge and inside the network: each flip then lowers the surface over the
/// paraboloid.
template <class Real>
bool isOriented(DelaunayEngine<Real>& engine, TriangleNumbers<Real>& triangleIndex) {
    for (std::size_t n = 0; n < engine.count(); ++n) {
        const TinRecord<Real>* const t = engine.at(n);
        const auto& v = t->vertex;
        if (orientationOf(t) < 0) { return false; }
        for (int i = 0; i < 3; ++i) {
            const TinRecord<Real>* const next = t->neighbor[i];
            if (next == nullptr) { continue; }
            const int back = next->index(v[after[i]], v[before[i]]);
            if (back < 0 || next->neighbor[back] != t || triangleIndex(next) < 0) { return false; }
        }
    }
    return true;
}

/// Flips edges that fail the in-circle test and for which `mayFlip(t, i, n)` returns true, until
/// none is left. Returns the number of flips.
template <class Real, class MayFlip>
int flipIllegalEdges(DelaunayEngine<Real>& engine, TriangleNumbers<Real>& triangleIndex,
                     MayFlip mayFlip) {
    std::vector<TinRecord<Real>*> pending;  // each triangle once
    std::vector<bool> isPending(engine.count(), true);
    for (std::size_t n = engine.count(); n-- > 0;) { pending.push_back(engine.at(n)); }
    const auto lookAgainAt = [&](TinRecord<Real>* t) {
        const auto number = static_cast<std::size_t>(triangleIndex(t));
        if (!isPending[number]) { pending.push_back(t); }
        isPending[number] = true;
    };
    int flips = 0;
    while (!pending.empty()) {
        TinRecord<Real>* const t = pending.back();
        pending.pop_back();
        isPending[static_cast<std::size_t>(triangleIndex(t))] = false;
        TinRecord<Real>* const n = flipIllegalEdge(
            t,
            [&mayFlip, t](const TinRecord<Real>* next, int i, int) { return mayFlip(t, i, next); });
        if (n == nullptr) { continue; }
        if (flips < std::numeric_limits<int>::max()) { ++flips; }
        lookAgainAt(n);
        lookAgainAt(t);
    }
    return flips;
}

}  // namespace

template <class Real>
int restoreDelaunay(DelaunayInterface<Real>* interface, const VertexArray<Real>* fixedVertices) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr) { return -1; }
    TriangleNumbers<Real> triangleIndex(*engine);
    if (!isOriented(*engine, triangleIndex)) { return -1; }
    const ref_ptr<VertexArray<Real>> copy = copyOf<Real>(fixedVertices);
    const FixedEdges<Real> fixed(*copy);
    return flipIllegalEdges(*engine, triangleIndex, [&fixed](const auto* t, int i, const auto*) {
        return !fixed.contains(t->vertex[after[i]], t->vertex[before[i]]);
    });
}

namespace detail {
namespace {

bool isFreeInside(const DelaunayEngine<double>& engine, const FixedEdges<double>& fixed,
                  const tind* t, int i, const tind* n) {
    return !engine.isFrameTriangle(t) && !engine.isFrameTriangle(n) &&
           !fixed.contains(t->vertex[after[i]], t->vertex[before[i]]);
}

}  // namespace

void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed) {
    TriangleNumbers<double> triangleIndex(engine);
    flipIllegalEdges(engine, triangleIndex, [&](const auto* t, int i, const auto* n) {
        return isFreeInside(engine, fixed, t, i, n);
    });
}

void restoreInside(DelaunayEngine<double>& engine, const FixedEdges<double>& fixed,
                   std::vector<tind*> pending) {
    while (!pending.empty()) {
        tind* const t = pending.back();
        pending.pop_back();
        tind* const n = flipIllegalEdge(t, [&](const tind* next, int i, int) {
            return isFreeInside(engine, fixed, t, i, next);
        });
        if (n != nullptr) { pending.insert(pending.end(), {n, t}); }
    }
}

void restoreInsideBySweeps(DelaunayEngine<double>& engine,
                           const FixedEdges<double>& fixed) noexcept {
    for (bool hasFlipped = true; std::exchange(hasFlipped, false);) {
        for (std::size_t n = 0; n < engine.count(); ++n) {
            tind* const t = engine.at(n);
            const auto mayFlip = [&](const tind* next, int i, int) {
                return isFreeInside(engine, fixed, t, i, next);
            };
            while (flipIllegalEdge(t, mayFlip) != nullptr) { hasFlipped = true; }
        }
    }
}

}  // namespace detail

template int restoreDelaunay(DelaunayInterface<float>*, const PFloatArray*);
template int restoreDelaunay(DelaunayInterface<double>*, const PDoubleArray*);

}  // namespace zyn
