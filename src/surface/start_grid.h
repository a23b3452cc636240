// Where to start a walk to a place.
#pragma once

#include "triangulation/engine.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyn {

using namespace detail;

/// A coarse grid over a network. Each cell names a triangle near it. A hint stays good enough as the
/// network changes; it may be stale, but leads to some triangle. Looking up changes nothing.
class StartGrid {
public:
    using Tri = TinRecord<double>;
    using Engine = DelaunayEngine<double>;

    /// A grid without cells. It names the newest triangle.
    StartGrid() = default;
    /// A grid over the box, with about four vertices a cell.
    StartGrid(const Engine& engine, double minX, double minY, double maxX, double maxY);
    /// Returns whether the network has more than twice as many triangles as when the grid was made.
    [[nodiscard]] bool isOutgrown(const Engine& engine) const {
        return engine.count() > 2 * triangles;
    }
    /// Returns a triangle near q; null in an empty network.
    [[nodiscard]] Tri* at(const Engine& engine, Xy q) const;
    /// Returns `last` if q is close to it, else a triangle near q.
    [[nodiscard]] Tri* from(const Engine& engine, Tri* last, Xy q) const;

private:
    [[nodiscard]] std::size_t cellOf(Xy q) const;

    double minX = 0, minY = 0;
    double perCell = 0;  // cells in a unit of length
    std::size_t columns = 0, rows = 0;
    std::vector<std::uint32_t> starts;  // numbers of triangles, row by row
    std::size_t triangles = 0;          // of the network when the grid was made
};

}  // namespace zyn
