// Families of points that are hard to triangulate.
#pragma once

#include <zyn/point.h>

#include <span>
#include <string_view>
#include <vector>

namespace support {

struct PointSet {
    std::vector<zyn::XPnt3d> points;
    double minX = 0, minY = 0, maxX = 0,
           maxY = 0;          ///< the frame; it holds them unless they are wild
    bool duplicates = false;  ///< points in one place, to be kept
};

/// Where and how large a family is. At scale 1 its points are about 1 apart, near the origin.
struct Scale {
    std::string_view name;
    double spacing = 1, x = 0, y = 0;
    double lattice = 0;  ///< the unit to which coordinates are rounded, or 0
};
inline constexpr Scale atOrigin{"AtOrigin"};
inline constexpr Scale nano{"Nano", 1e-9};
inline constexpr Scale scales[] = {atOrigin,
                                   {"Utm", 1, 432100, 5411200, 1e-3},
                                   {"EarthCentred", 1, 4.2e6, -4.2e6},
                                   nano,
                                   {"Tera", 1e12}};

/// Returns the names for makePointSet whose points are finite and in their frame.
std::span<const std::string_view> pointSetNames();
/// Returns further names, whose points an engine refuses in part.
std::span<const std::string_view> wildPointSetNames();

/// Returns the family of that name, with the same points for the same seed.
PointSet makePointSet(std::string_view name, unsigned seed, int count = 2500,
                      const Scale& scale = atOrigin);

/// Returns `count` points, uniform in the unit square, sorted in narrow strips.
PointSet uniformPoints(int count, unsigned seed);

}  // namespace support
