// A tree of places to start walks from.
#pragma once

#include "triangulation/engine.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace zyn::detail {

/// Finds a triangle from which the walk to a place is short. It is a k-d tree over a sample of the
/// vertices of a network, with a grid of cells in each leaf. A cell refers to a triangle near it.
/// The leaves have equal shares of the vertices, whatever their distribution.
///
/// The entry of a cell may be stale, because flips and removals move triangles. The walk is then
/// longer, or starts from another cell.
///
/// Threads: several may search the tree while none changes it.
class StartTree {
public:
    using Tri = TinRecord<double>;
    using Engine = DelaunayEngine<double>;

    /// Returns the number of the next point of the sample. About one point of 32 belongs to it,
    /// without a period that the order of points could have.
    [[nodiscard]] static std::size_t nextOfSample(std::size_t number) {
        constexpr std::uint32_t golden = 2654435769U;  // 2^32 over the golden ratio
        return number + 1 + ((static_cast<std::uint32_t>(number) * golden) >> 26U);
    }

    /// Makes a tree without cells, which returns the newest triangle.
    StartTree() = default;
    /// Makes a tree whose cells refer to no triangle yet.
    StartTree(std::vector<Xy> sample, int vertices);

    /// Returns whether a network of this many vertices needs another tree, because many of them came
    /// after the sample.
    [[nodiscard]] bool isOutgrown(int vertices) const {
        constexpr int few = 16;
        return vertices > sampled + sampled / few;
    }
    /// Sets triangle `number` as the start of walks to places near q.
    void note(Xy q, std::size_t number) {
        if (!cells.empty()) { cells[cellOf(q)] = static_cast<std::uint32_t>(number); }
    }
    /// Sets all cells from the triangles of the network. A cell without a triangle near it stays
    /// empty.
    void noteAll(const Engine& engine);
    /// Returns a triangle at q or a few steps away, or null in an empty network.
    [[nodiscard]] Tri* near(const Engine& engine, Xy q) const;
    /// Returns `last` if q is close to it, otherwise a triangle from which the walk to q is not
    /// long.
    [[nodiscard]] Tri* from(const Engine& engine, Tri* last, Xy q) const;

private:
    static constexpr std::size_t side = 8;  // cells along each side of a leaf
    /// Maps places in a leaf to its cells.
    struct Leaf {
        double minX, minY;
        double perX, perY;  // cells per unit of length
    };
    struct Split {
        double at;
        bool isAlongY;
    };
    [[nodiscard]] std::size_t cellOf(Xy q) const;
    [[nodiscard]] Tri* startAt(const Engine& engine, std::size_t cell) const;
    void split(std::span<Xy> sample, std::size_t node);
    [[nodiscard]] std::size_t leavesUnder(std::size_t node) const;

    // The root is node 1; the children of node n are 2n and 2n + 1. The second half of the nodes
    // are leaves.
    std::vector<Split> splits;
    std::vector<Leaf> leaves;
    std::vector<std::uint32_t> cells;  // numbers of triangles, leaf by leaf
    int sampled = 0;                   // number of vertices when the sample was taken
};

}  // namespace zyn::detail
