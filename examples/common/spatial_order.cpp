#include "spatial_order.h"

#include "point_reader.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace {

constexpr int levels = 16;

/// The place of cell (x, y) on the curve through a square of 2^levels by 2^levels cells.
std::uint32_t placeOnCurve(std::uint32_t x, std::uint32_t y) {
    std::uint32_t place = 0;
    for (int level = levels - 1; level >= 0; --level) {
        const std::uint32_t right = x >> level & 1U;
        const std::uint32_t upper = y >> level & 1U;
        place = place << 2U | ((3 * right) ^ upper);
        if (upper == 0) {
            if (right == 1) {
                x = ~x;
                y = ~y;
            }
            std::swap(x, y);
        }
    }
    return place;
}

}  // namespace

zyn::ref_ptr<zyn::Pnt3dArray> inSpatialOrder(zyn::Pnt3dArray& points) {
    const zyn::Enve2d box = boxAround(points);
    const double extent = std::max(box.width(), box.hight());
    const double cells = extent > 0 ? ((1U << levels) - 1) / extent : 0;

    std::vector<std::uint64_t> keys;  // the place on the curve, and below it the index
    keys.reserve(static_cast<std::size_t>(points.size()));
    for (const zyn::XPnt3d& p : points) {
        const auto x = static_cast<std::uint32_t>((p.x - box.minX) * cells);
        const auto y = static_cast<std::uint32_t>((p.y - box.minY) * cells);
        keys.push_back(std::uint64_t{placeOnCurve(x, y)} << 32U | keys.size());
    }
    std::ranges::sort(keys);

    zyn::ref_ptr<zyn::Pnt3dArray> ordered = zyn::newPnt3dArray();
    ordered->reserve(points.size());
    for (const std::uint64_t key : keys) { ordered->append(points.begin()[key & 0xFFFFFFFFU]); }
    return ordered;
}
