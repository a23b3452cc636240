// Indices of the triangles of a pool, found by address.
#pragma once

#include "triangulation/triangle_pool.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace zyn::detail {

/// Finds the index of a triangle in its pool.
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
    /// Returns -1 for null and for a triangle outside the pool.
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
    Block latest;               // the block of the latest find: neighbours are close together
};

}  // namespace zyn::detail
