// The Delaunay triangulation of CGAL, for programs that have it.
#pragma once

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "hull_check.h"

namespace support {

/// A triangle, and the opposite corners of the triangles across its edges.
struct TriangleAndRing {
    std::array<Position, 3> corners;
    std::vector<Position> across;
};

/// How a triangulation differs from CGAL's. Four points on one circle have two correct ones.
struct CgalDifference {
    std::size_t theirs = 0;  ///< CGAL's triangles
    int missing = 0;         ///< triangles that CGAL does not have
    int onCircle = 0;        ///< such triangles with a fourth point on their circle
};

inline CgalDifference differenceFromCgal(const std::vector<Position>& points,
                                         const std::vector<TriangleAndRing>& triangles) {
    using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
    const auto sorted = [](Position a, Position b, Position c) {
        std::array corners{keyOf(a), keyOf(b), keyOf(c)};
        std::ranges::sort(corners);
        return corners;
    };
    CGAL::Delaunay_triangulation_2<Kernel> peer;
    for (const Position p : points) { peer.insert({p.x, p.y}); }
    std::set<decltype(sorted({}, {}, {}))> theirs;
    for (const auto& face : peer.finite_face_handles()) {
        const auto corner = [&face](int i) -> Position {
            return {face->vertex(i)->point().x(), face->vertex(i)->point().y()};
        };
        theirs.insert(sorted(corner(0), corner(1), corner(2)));
    }
    CgalDifference difference{theirs.size()};
    for (const auto& [corners, across] : triangles) {
        const auto [a, b, c] = corners;
        if (theirs.contains(sorted(a, b, c))) { continue; }
        const bool isTie = std::ranges::any_of(
            across, [a, b, c](Position d) { return exactInCircle(a, b, c, d) == 0; });
        ++(isTie ? difference.onCircle : difference.missing);
    }
    return difference;
}

}  // namespace support
