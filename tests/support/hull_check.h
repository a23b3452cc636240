// Checks that triangles fill the convex hull of their vertices, with arithmetic that shares nothing
// with the library.
#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "exact_signs.h"

namespace support {

inline std::pair<double, double> keyOf(Position p) { return {p.x, p.y}; }

/// Returns the hull, counter-clockwise from the least x, with the points on its edges: Andrew's
/// monotone chain.
inline std::vector<Position> hullOf(std::vector<Position> points) {
    std::ranges::sort(points, {}, keyOf);
    std::vector<Position> hull;
    for (std::size_t round = 0, floor = 0; round < 2; ++round, floor = hull.size() - 1) {
        for (const Position p : points) {
            while (hull.size() > floor + 1 &&
                   exactOrientation(hull.end()[-2], hull.back(), p) < 0) {
                hull.pop_back();
            }
            if (hull.empty() || keyOf(p) != keyOf(hull.back())) { hull.push_back(p); }
        }
        std::ranges::reverse(points);
    }
    hull.pop_back();
    return hull;
}

/// Checks the number and the area of triangles, three corners each. Returns the fault, or "".
inline std::string faultOfHull(const std::vector<Position>& points,
                               const std::vector<Position>& corners) {
    if (points.empty()) { return corners.empty() ? "" : "triangles without points"; }
    const std::vector<Position> hull = hullOf(points);
    const auto most = 2 * points.size() - std::min(2 * points.size(), hull.size() + 2);
    if (corners.size() != 3 * most) { return "not " + std::to_string(most) + " triangles"; }
    return haveAreaOf(corners, hull) ? "" : "another area";
}

}  // namespace support
