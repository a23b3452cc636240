/// @file
/// Ranges of the triangles of an engine, for loops and the algorithms of std::ranges.
///
///     double area = 0;
///     for (const tind& t : surfaceTriangles(*engine, 30.0)) { area += t.Area(); }
///     int flat = 0;
///     for (const tind& t : triangles(*engine)) { flat += t.AreaHorizen() == 0 ? 1 : 0; }
///     const auto isSteep = [](const tind& t) { return t.boxZ() > 10; };
///     const auto steep = std::ranges::count_if(surfaceTriangles(*engine), isSteep);
///
/// A range visits the pool in order and leaves the engine's cursor alone, so loops may be nested.
/// It refers to the engine, which must outlive it and its iterators. An iterator is valid until the
/// network changes. Threads: several may visit one engine while none changes it.
#pragma once

#include <zyn/delaunay.h>
#include <zyn/export.h>
#include <zyn/tin.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <ranges>

namespace zyn {

/// The value of `maxEdge` that leaves out no triangle.
inline constexpr double anyEdge = std::numeric_limits<double>::infinity();

/// @cond
namespace detail {

/// Represents up to 64 triangles in contiguous memory. Each triangle of the range has a bit in
/// `members`; the lowest bit is for `*first`.
template <class Real>
struct TriangleBlock {
    const TinRecord<Real>* first = nullptr;
    std::uint64_t members = 0;

    friend bool operator==(const TriangleBlock&, const TriangleBlock&) = default;
};

/// Returns the next block that has members, from triangle `number` on. Sets `number` to the
/// triangle after the block. Returns an empty block at the end. Members are the triangles of the
/// surface, or all triangles without a `maxEdge`.
template <class Real>
ZYN_EXPORT TriangleBlock<Real> nextBlock(const DelaunayInterface<Real>& engine, std::size_t& number,
                                         std::optional<double> maxEdge);

}  // namespace detail
/// @endcond

/// A forward iterator over the triangles of an engine: all, or those of the surface. A
/// default-constructed iterator is the end.
template <class Real>
class TriangleIterator {
public:
    /// These types are those that standard algorithms ask for.
    /// @{
    using value_type = TinRecord<Real>;
    using difference_type = std::ptrdiff_t;
    using reference = const TinRecord<Real>&;
    using pointer = const TinRecord<Real>*;
    using iterator_category = std::forward_iterator_tag;
    /// @}

    TriangleIterator() = default;
    /// Makes an iterator to the first triangle of the surface, or of the network without a
    /// `maxEdge`. It is the end if there is none.
    TriangleIterator(const DelaunayInterface<Real>& engine_, std::optional<double> maxEdge_)
        : engine(&engine_), maxEdge(maxEdge_) {
        block = detail::nextBlock(*engine, number, maxEdge);
    }

    /// Returns the triangle. REQUIRES: this is not the end.
    /// @{
    [[nodiscard]] reference operator*() const { return *operator->(); }
    [[nodiscard]] pointer operator->() const {
        return block.first + std::countr_zero(block.members);
    }
    /// @}
    /// Goes to the next triangle, or to the end. REQUIRES: this is not the end.
    /// @{
    TriangleIterator& operator++() {
        block.members &= block.members - 1;
        if (block.members == 0) { block = detail::nextBlock(*engine, number, maxEdge); }
        return *this;
    }
    TriangleIterator operator++(int) {
        TriangleIterator old = *this;
        ++*this;
        return old;
    }
    /// @}
    /// Returns whether both are at the same triangle. REQUIRES: both belong to one engine.
    friend bool operator==(const TriangleIterator& a, const TriangleIterator& b) {
        return a.block == b.block;
    }

private:
    const DelaunayInterface<Real>* engine = nullptr;
    std::optional<double> maxEdge;
    std::size_t number = 0;  // of the first triangle after the block
    detail::TriangleBlock<Real> block;
};

/// Refers to the triangles of an engine, as a view. triangles() and surfaceTriangles() make it.
template <class Real>
class TriangleRange {
public:
    /// Makes a view of the surface, or of all triangles if there is no `maxEdge`.
    TriangleRange(const DelaunayInterface<Real>& engine_, std::optional<double> maxEdge_)
        : engine(&engine_), maxEdge(maxEdge_) {}

    /// Returns an iterator to the first triangle.
    [[nodiscard]] TriangleIterator<Real> begin() const { return {*engine, maxEdge}; }
    /// Returns the end.
    [[nodiscard]] TriangleIterator<Real> end() const { return {}; }
    /// Returns whether there is no triangle.
    [[nodiscard]] bool empty() const { return begin() == end(); }

private:
    const DelaunayInterface<Real>* engine;
    std::optional<double> maxEdge;
};

/// Returns the triangles of the network, frame triangles included. It is empty for an engine that
/// this library did not make.
template <class Real>
[[nodiscard]] TriangleRange<Real> triangles(const DelaunayInterface<Real>& engine) {
    return {engine, std::nullopt};
}
/// Returns the triangles of the surface, as network.h describes it.
template <class Real>
[[nodiscard]] TriangleRange<Real> surfaceTriangles(const DelaunayInterface<Real>& engine,
                                                   double maxEdge = anyEdge) {
    return {engine, maxEdge};
}

}  // namespace zyn

/// @cond
template <class Real>
inline constexpr bool std::ranges::enable_view<zyn::TriangleRange<Real>> = true;
template <class Real>
inline constexpr bool std::ranges::enable_borrowed_range<zyn::TriangleRange<Real>> = true;
/// @endcond
