// The pool that owns the triangles of a network, in blocks that never move.
#pragma once

#include <zyn/tin.h>

#include "triangulation/flip.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace zyn::detail {

/// Holds triangles by index, without gaps. Block n holds the triangles from n * 1024 on. The last
/// triangle is called the newest. The pool frees no memory until it is cleared: a damaged link from
/// a file may lead to any triangle that ever existed.
template <class Real>
class TrianglePool {
public:
    using Tri = TinRecord<Real>;
    static constexpr std::size_t blockSize = 1024;

    [[nodiscard]] std::size_t count() const noexcept { return size; }
    [[nodiscard]] Tri* at(std::size_t n) noexcept { return record(n); }
    [[nodiscard]] const Tri* at(std::size_t n) const noexcept { return record(n); }
    /// Returns triangle `n` of a pool that does not change.
    [[nodiscard]] Tri* record(std::size_t n) const noexcept {
        return reinterpret_cast<Tri*>(blocks[n / blockSize].get()) + n % blockSize;
    }
    /// Returns null if the pool is empty.
    [[nodiscard]] Tri* newest() const noexcept { return size == 0 ? nullptr : record(size - 1); }
    [[nodiscard]] bool owns(const Tri* t) const noexcept {
        for (std::size_t n = 0; n < size; n += blockSize) {
            const Tri* const first = at(n);
            const Tri* const end = first + std::min(blockSize, size - n);
            if (!std::less<>()(t, first) && std::less<>()(t, end)) { return true; }
        }
        return false;
    }
    [[nodiscard]] bool hasVertex(const Real* v) const noexcept {
        for (std::size_t n = 0; n < size; ++n) {
            if (placeOf(at(n)->vertex, v) != 3) { return true; }
        }
        return false;
    }

    /// Allocates, if necessary, so that the next two triangles need no memory.
    void prepareTwo() {
        if (size + 2 > blocks.size() * blockSize) { addBlock(); }
    }
    /// Appends a triangle.
    Tri* newTriangle(const Tri& triangle) {
        if (size == blocks.size() * blockSize) { addBlock(); }
        return std::construct_at(at(size++), triangle);
    }
    /// Removes `t` from the pool. The newest triangle moves into its place, and the neighbours of
    /// that triangle are linked to it there. The caller updates the links to `t`. Returns the
    /// former address of the newest triangle, which is `t` if that was the newest itself. REQUIRES:
    /// the pool owns `t`.
    Tri* drop(Tri* t) {
        Tri* const last = newest();
        if (t != last) {
            std::copy_n(last->vertex, 3, t->vertex);
            std::copy_n(last->neighbor, 3, t->neighbor);
            for (Tri* const n : last->neighbor) { redirect(n, last, t); }
        }
        --size;
        return last;
    }
    void clear() {
        size = 0;
        blocks.clear();
    }

private:
    using Block = std::unique_ptr<std::byte[]>;  // uninitialised until its triangles are made

    void addBlock() {
        blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(blockSize * sizeof(Tri)));
    }

    std::size_t size = 0;
    std::vector<Block> blocks;
};

}  // namespace zyn::detail
