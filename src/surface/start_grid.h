// Where to start a walk to a place.
#pragma once

#include "triangulation/engine.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

namespace zyn {

/// A coarse grid over a network. Each cell names a triangle near it. A hint stays good enough as the
/// network changes; it may be stale, but leads to some triangle. Looking up changes nothing.
class StartGrid {
public:
    using Tri = TinRecord<double>;
    using Engine = DelaunayEngine<double>;

    /// Lays the grid anew for this many triangles, about four vertices a cell, and notes those of the
    /// network. Cells without one stay open.
    void lay(const Engine& engine, std::size_t triangles, double minX, double minY, double maxX,
             double maxY);
    /// Returns whether the grid should be laid anew for a network of `count` triangles: it is too
    /// coarse, or the removal of vertices has moved many of the triangles that it names.
    [[nodiscard]] bool isWorn(std::size_t count) const {
        return count > 2 * triangles || 16 * removals > triangles;
    }
    /// Makes triangle `number` the start of walks to places near q.
    void note(Xy q, std::size_t number) {
        if (!starts.empty()) { starts[cellOf(q)] = static_cast<std::uint32_t>(number); }
    }
    /// Counts the removal of a vertex at q. `beside` is the number of a triangle there, or -1.
    void noteRemoval(Xy q, std::int32_t beside) {
        ++removals;
        if (beside >= 0) { note(q, static_cast<std::size_t>(beside)); }
    }
    /// Lets each open cell take the triangle of another cell near it.
    void fillGaps();
    /// Returns the number of a triangle. Returns -1 if it is not known: for null, and for some of the
    /// newest ones.
    [[nodiscard]] std::int32_t find(const Engine& engine, const Tri* t);
    /// Returns a triangle near q; null in an empty network.
    [[nodiscard]] Tri* at(const Engine& engine, Xy q) const;
    /// Returns `last` if q is close to it, else a triangle near q.
    [[nodiscard]] Tri* from(const Engine& engine, Tri* last, Xy q) const;

private:
    static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

    [[nodiscard]] std::size_t cellOf(Xy q) const;

    double minX = 0, minY = 0;
    double perCell = 0;  // cells in a unit of length
    std::size_t columns = 0, rows = 0;
    std::vector<std::uint32_t> starts;  // numbers of triangles, row by row
    std::size_t triangles = 0;          // that it was laid for
    std::size_t removals = 0;           // since then
    bool hasGaps = false;
    std::optional<TriangleNumbers<double>> numberOf;
    std::size_t numbered = 0;  // of the triangles, those that numberOf knows
};

}  // namespace zyn
