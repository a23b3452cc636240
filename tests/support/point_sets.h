// Families of points that are hard on a triangulation.
#pragma once

#include <zyn/point.h>

#include <string>
#include <string_view>
#include <vector>

namespace support {

struct PointSet {
    std::vector<zyn::XPnt3d> points;
    double minX = 0, minY = 0, maxX = 0, maxY = 0;  ///< a frame that holds them all
    bool duplicates = false;                        ///< points in one place, to be kept
};

/// The names that makePointSet knows.
const std::vector<std::string_view>& pointSetNames();

/// The family of that name: some thousand points, the same ones for the same seed.
PointSet makePointSet(std::string_view name, unsigned seed);

/// `count` points, uniform in the unit square, in the order of narrow strips.
PointSet uniformPoints(int count, unsigned seed);

}  // namespace support
