// DelaunayEngine: the triangles around a vertex that is to be removed.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_ring.inl"

#include <algorithm>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Describes the surroundings of a vertex, counter-clockwise. The edge from ring[i] to ring[i + 1]
/// is that of triangles[i] opposite the vertex. outer[i] is the triangle across that edge, and
/// link[i] is its slot that leads back.
template <class Real>
struct DelaunayEngine<Real>::Star {
    Real* centre = nullptr;
    std::vector<Real*> ring;
    std::vector<Tri*> triangles;
    std::vector<Tri*> outer;
    std::vector<int> link;
    std::vector<Tri*> folds;                                  // see collectFolds()
    std::vector<std::pair<const Tri*, std::size_t>> numbers;  // by address; see legaliseHole()

    [[nodiscard]] int size() const { return static_cast<int>(ring.size()); }
    [[nodiscard]] Xy at(int i) const { return xyOf(ring[static_cast<std::size_t>(i)]); }
};

/// Returns false if:
/// - the vertex is on the boundary;
/// - an edge of its ring is on the boundary and `mayBeOpen` is false;
/// - the ring does not close, or is longer than the records follow one.
template <class Real>
bool DelaunayEngine<Real>::collectStar(Tri* t, int corner, Star& star, bool mayBeOpen) const {
    constexpr auto longest = static_cast<std::size_t>(record::ringSteps<Real>);
    star.centre = t->vertex[corner];
    Tri* current = t;
    do {
        const int from = current->index(star.centre);
        if (from == 3) { return false; }
        current = current->neighbor[after[from]];
        const int at = current == nullptr ? 3 : current->index(star.centre);
        Tri* const outer = at == 3 ? nullptr : current->neighbor[at];
        const int link = outer == nullptr ? 3 : outer->index(current);
        const bool isOpen = outer == nullptr && at != 3 && mayBeOpen;
        if ((link == 3 && !isOpen) || star.ring.size() > std::min(longest, Pool::count())) {
            return false;
        }
        star.ring.push_back(current->vertex[after[at]]);
        star.triangles.push_back(current);
        star.outer.push_back(outer);
        star.link.push_back(link);
    } while (current != t);
    return star.size() >= 3;
}

}  // namespace zyn::detail
