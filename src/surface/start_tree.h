// Where to start a walk to a place.
#pragma once

#include "triangulation/engine.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyn::detail {

/// A k-d tree over a sample of the vertices of a network, with a grid of cells in each leaf. A cell
/// names a triangle near it. The leaves have equal shares of the vertices, whatever their
/// distribution.
///
/// What a cell names may be stale, because flips and removals move triangles. Then the walk is longer,
/// or starts from another cell.
///
/// Threads: looking up changes nothing.
class StartTree {
public:
    using Tri = TinRecord<double>;
    using Engine = DelaunayEngine<double>;

    /// Returns the number of the next point of the sample: about every 32nd belongs to it, without a
    /// period that the order of points could have.
    [[nodiscard]] static std::size_t nextOfSample(std::size_t number) {
        constexpr std::uint32_t golden = 2654435769U;  // 2^32 over the golden ratio
        return number + 1 + ((static_cast<std::uint32_t>(number) * golden) >> 26U);
    }

    /// A tree without cells. It names the newest triangle.
    StartTree() = default;
    /// A tree whose cells name no triangle yet.
    explicit StartTree(std::vector<Xy> sample);

    /// Returns whether a network of `triangles` needs smaller cells.
    [[nodiscard]] bool isOutgrown(std::size_t triangles) const {
        constexpr std::size_t mostTriangles = 32;  // in a cell
        return triangles > mostTriangles * (cells.size() + 1);
    }
    /// Makes triangle `number` the start of walks to places near q.
    void note(Xy q, std::size_t number) {
        if (!cells.empty()) { cells[cellOf(q)] = static_cast<std::uint32_t>(number); }
    }
    /// Makes each cell name a triangle of the network as it is now, if there is one near it.
    void noteAll(const Engine& engine);
    /// Returns a triangle at q or a few steps from it; null in an empty network.
    [[nodiscard]] Tri* near(const Engine& engine, Xy q) const;
    /// Returns `last` if q is close to it, else a triangle from which the way to q is not long.
    [[nodiscard]] Tri* from(const Engine& engine, Tri* last, Xy q) const;

private:
    static constexpr std::size_t side = 8;  // cells along each side of a leaf
    /// The box of a leaf, and its cells in a unit of length.
    struct Leaf {
        double minX, minY;
        double perX, perY;
    };
    struct Box;

    [[nodiscard]] std::size_t cellOf(Xy q) const;
    [[nodiscard]] Tri* startAt(const Engine& engine, std::size_t cell) const;
    void split(Xy* first, Xy* end, std::size_t node, const Box& box);
    [[nodiscard]] std::size_t leavesUnder(std::size_t node) const;
    [[nodiscard]] bool splitsY(std::size_t node) const {
        return (levelsAlongY >> (std::bit_width(node) - 1U) & 1U) != 0;
    }

    // The root is node 1, and below node n are 2n and 2n + 1. The last half of the nodes are leaves.
    std::vector<double> splits;
    std::vector<Leaf> leaves;
    std::vector<std::uint32_t> cells;  // numbers of triangles, leaf by leaf
    std::uint64_t levelsAlongY = 0;    // by depth, whether nodes are split by y
};

}  // namespace zyn::detail
