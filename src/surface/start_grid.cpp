#include "surface/start_grid.h"

#include <algorithm>
#include <cmath>

namespace zyn {

void StartGrid::lay(const Engine& engine, std::size_t newTriangles, double minX_, double minY_,
                    double maxX, double maxY) {
    constexpr std::size_t trianglesPerCell = 8;
    constexpr double mostColumns = 1e6;
    starts.clear();  // no grid until there is memory for it
    minX = minX_;
    minY = minY_;
    const double width = maxX - minX, height = maxY - minY;
    const double cells = std::max(1.0, double(newTriangles / trianglesPerCell));
    // A strip has one row; its cells stay as few.
    const double side = std::max({std::sqrt(width * height / cells), width / mostColumns,
                                  height / mostColumns, std::max(width, height) / cells});
    perCell = side > 0 && std::isfinite(1 / side) ? 1 / side : 0;
    columns = static_cast<std::size_t>(width * perCell) + 1;
    rows = static_cast<std::size_t>(height * perCell) + 1;
    starts.assign(columns * rows, none);
    triangles = newTriangles;
    removals = 0;
    hasGaps = true;
    // The lowest number stays: removals take the highest ones first.
    for (std::size_t n = engine.count(); n-- > 0;) { note(xyOf(engine.at(n)->vertex[0]), n); }
}

void StartGrid::fillGaps() {
    if (!hasGaps) { return; }
    const auto isFilled = [](std::uint32_t start) { return start != none; };
    const auto first = std::ranges::find_if(starts, isFilled);
    std::uint32_t latest = first == starts.end() ? 0 : *first;
    for (std::uint32_t& start : starts) { latest = start = isFilled(start) ? start : latest; }
    hasGaps = false;
}

std::int32_t StartGrid::find(const Engine& engine, const Tri* t) {
    // Anew for each block of triangles, so that it costs next to nothing for one.
    if (!numberOf || engine.count() / Engine::blockSize > numbered / Engine::blockSize) {
        numberOf.emplace(engine);
        numbered = engine.count();
    }
    return (*numberOf)(t);
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
