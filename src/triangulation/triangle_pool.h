// The pool that owns the triangles of a network, in blocks that never move.
#pragma once

#include <zyn/tin.h>

#include "triangulation/flip.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace zyn {

/// Triangles by number, without holes: block n holds the triangles from n * 1024 on, and only the
/// last block is not full. The last triangle is called the newest.
template <class Real>
class TrianglePool {
public:
    using Tri = TinRecord<Real>;
    static constexpr std::size_t blockSize = 1024;

    TrianglePool() { addBlock(); }

    [[nodiscard]] std::size_t count() const noexcept {
        return (blocks.size() - 1) * blockSize + blocks.back().size();
    }
    [[nodiscard]] Tri* at(std::size_t n) noexcept { return &blocks[n / blockSize][n % blockSize]; }
    [[nodiscard]] const Tri* at(std::size_t n) const noexcept {
        return &blocks[n / blockSize][n % blockSize];
    }
    /// Null in an empty pool.
    [[nodiscard]] Tri* newest() noexcept {
        return blocks.back().empty() ? nullptr : &blocks.back().back();
    }
    [[nodiscard]] bool owns(const Tri* t) const noexcept {
        return std::any_of(blocks.begin(), blocks.end(), [t](const Block& block) {
            return !std::less<>()(t, block.data()) && std::less<>()(t, block.data() + block.size());
        });
    }

    /// Makes sure that the next two triangles need no memory.
    void prepareTwo() {
        if (blocks.back().size() + 2 > blockSize && spare.capacity() == 0) {
            spare.reserve(blockSize);
            if (blocks.size() == blocks.capacity()) { blocks.reserve(2 * blocks.size()); }
        }
    }
    /// Adds a triangle at the end.
    Tri* newTriangle(const Tri& triangle) {
        if (blocks.back().size() == blockSize) { addBlock(); }
        blocks.back().push_back(triangle);
        return &blocks.back().back();
    }
    /// Drops `t` from the pool, which stays without holes: the newest triangle moves into its place,
    /// and its neighbours are linked to it there. Links to `t` are the caller's business. Gives the
    /// place that the newest triangle left, which is `t` if it was that itself. REQUIRES: `t` is of
    /// this pool.
    Tri* drop(Tri* t) {
        Tri* const last = &blocks.back().back();
        if (t != last) {
            std::copy_n(last->vertex, 3, t->vertex);
            std::copy_n(last->neighbor, 3, t->neighbor);
            for (Tri* const n : last->neighbor) { redirect(n, last, t); }
        }
        blocks.back().pop_back();
        if (blocks.back().empty() && blocks.size() > 1) { blocks.pop_back(); }
        return last;
    }
    void clear() {
        blocks.resize(1);
        blocks.back().clear();
    }

private:
    using Block = std::vector<Tri>;  // reserved whole, so that its triangles never move

    void addBlock() {
        spare.reserve(blockSize);
        blocks.push_back(std::move(spare));
        spare = Block();
    }

    std::vector<Block> blocks;
    Block spare;  // for the next addBlock, or without storage
};

/// The number of any triangle of a pool from its address.
template <class Real>
class TriangleNumbers {
public:
    using Tri = TinRecord<Real>;
    using Pool = TrianglePool<Real>;

    explicit TriangleNumbers(const Pool& pool) {
        for (std::size_t n = 0; n < pool.count(); n += Pool::blockSize) {
            blocks.push_back({pool.at(n), static_cast<std::int32_t>(n),
                              std::min(pool.count() - n, Pool::blockSize)});
        }
        std::sort(blocks.begin(), blocks.end(),
                  [](const Block& a, const Block& b) { return std::less<>()(a.first, b.first); });
    }
    /// -1 for null and for a triangle of no block.
    [[nodiscard]] std::int32_t operator()(const Tri* t) {
        if (t == nullptr) { return -1; }
        if (!holds(latest, t)) {
            const auto beyond = std::upper_bound(
                blocks.begin(), blocks.end(), t,
                [](const Tri* a, const Block& b) { return std::less<>()(a, b.first); });
            if (beyond == blocks.begin() || !holds(*(beyond - 1), t)) { return -1; }
            latest = *(beyond - 1);
        }
        return latest.number + static_cast<std::int32_t>(t - latest.first);
    }

private:
    struct Block {
        const Tri* first = nullptr;
        std::int32_t number = 0;
        std::size_t size = 0;
    };
    static bool holds(const Block& block, const Tri* t) {
        return !std::less<>()(t, block.first) && std::less<>()(t, block.first + block.size);
    }

    std::vector<Block> blocks;  // by address
    Block latest;               // where the last one was found: neighbours lie close together
};

}  // namespace zyn
