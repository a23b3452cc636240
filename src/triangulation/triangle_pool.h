// The pool that owns the triangles of a network, in blocks that never move.
#pragma once

#include <zyn/tin.h>

#include "triangulation/flip.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
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

    [[nodiscard]] std::size_t count() const noexcept { return used; }
    [[nodiscard]] Tri* at(std::size_t n) const noexcept {
        return &blocks[n / blockSize][n % blockSize];
    }
    /// Null in an empty pool.
    [[nodiscard]] Tri* newest() const noexcept { return used == 0 ? nullptr : at(used - 1); }

    [[nodiscard]] bool owns(const Tri* t) const noexcept {
        for (std::size_t b = 0; b < blocks.size(); ++b) {
            const Tri* const block = blocks[b].get();
            const std::size_t size = std::min(used - std::min(used, b * blockSize), blockSize);
            if (!std::less<>()(t, block) && std::less<>()(t, block + size)) { return true; }
        }
        return false;
    }

    /// Makes sure that the next `n` triangles need no memory.
    void reserveMore(std::size_t n) {
        while (used + n > blocks.size() * blockSize) { addBlock(); }
    }
    /// A default triangle at the end.
    Tri* newTriangle() {
        reserveMore(1);
        Tri* const t = at(used++);
        *t = Tri();
        return t;
    }
    /// Drops `t` from the pool, which stays without holes: the newest triangle moves into its place,
    /// and its neighbours are linked to it there. Links to `t` are the caller's business. Gives the
    /// place that the newest triangle left, which is `t` if it was that itself.
    Tri* drop(Tri* t) {
        Tri* const last = newest();
        if (t != last) {
            std::copy_n(last->vertex, 3, t->vertex);
            std::copy_n(last->neighbor, 3, t->neighbor);
            for (Tri* const n : last->neighbor) { redirect(n, last, t); }
        }
        --used;
        if (used % blockSize == 0 && used != 0) { blocks.resize(used / blockSize); }
        return last;
    }
    void clear() {
        used = 0;
        blocks.resize(1);
    }

private:
    void addBlock() { blocks.push_back(std::make_unique<Tri[]>(blockSize)); }

    std::vector<std::unique_ptr<Tri[]>> blocks;
    std::size_t used = 0;
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
        std::sort(blocks.begin(), blocks.end(), [](const Block& a, const Block& b) {
            return std::less<>()(a.first, b.first);
        });
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
