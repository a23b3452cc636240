#include "surface/start_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zyn {

using namespace detail;

StartGrid::StartGrid(const Engine& engine, double minX_, double minY_, double maxX, double maxY)
    : minX(minX_), minY(minY_), triangles(engine.count()) {
    constexpr std::size_t trianglesPerCell = 8;
    constexpr std::size_t stride = 3;  // odd, so that no regular order of triangles is met
    constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
    constexpr double mostColumns = 1e6;
    const double width = maxX - minX, height = maxY - minY;
    const double cells = std::max(1.0, double(triangles / trianglesPerCell));
    // A strip has one row; its cells stay as few.
    const double side = std::max({std::sqrt(width * height / cells), width / mostColumns,
                                  height / mostColumns, std::max(width, height) / cells});
    perCell = side > 0 && std::isfinite(1 / side) ? 1 / side : 0;
    columns = static_cast<std::size_t>(width * perCell) + 1;
    rows = static_cast<std::size_t>(height * perCell) + 1;
    starts.assign(columns * rows, none);
    for (std::size_t n = 0; n < triangles; n += stride) {
        starts[cellOf(xyOf(engine.at(n)->vertex[0]))] = static_cast<std::uint32_t>(n);
    }
    std::uint32_t latest = 0;
    for (std::uint32_t& start : starts) { latest = start = start == none ? latest : start; }
}

std::size_t StartGrid::cellOf(Xy q) const {
    const auto place = [this](double offset, std::size_t count) {
        const double cell = offset * perCell;
        return cell > 0 ? static_cast<std::size_t>(std::min(cell, double(count - 1))) : 0;
    };
    return place(q.y - minY, rows) * columns + place(q.x - minX, columns);
}

TinRecord<double>* StartGrid::at(const Engine& engine, Xy q) const {
    if (starts.empty() || engine.count() == 0) { return engine.newest(); }
    const std::size_t number = starts[cellOf(q)];
    return engine.record(std::min(number, engine.count() - 1));
}

TinRecord<double>* StartGrid::from(const Engine& engine, Tri* last, Xy q) const {
    constexpr double closeCells = 4;
    if (last == nullptr) { return at(engine, q); }
    const Xy offset = xyOf(last->vertex[0]) - q;
    const bool isClose = (std::abs(offset.x) + std::abs(offset.y)) * perCell < closeCells;
    return isClose ? last : at(engine, q);
}

}  // namespace zyn
