// Indices for the vertices of a network, which are distinguished by address.
#pragma once

#include <zyn/point.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyn::detail {

/// Numbers addresses in the order in which they first appear. It is a hash table of numbers;
/// vertices() holds the keys. Most vertices are side by side in the caller's arrays and are looked
/// up together with their neighbours. So the addresses of a block share a cache line of the table,
/// and the hash chooses only the line.
template <class Real>
class VertexNumbers {
public:
    /// Reserves memory for half as many vertices as triangles, the usual ratio of a network.
    explicit VertexNumbers(std::size_t triangles) {
        known.reserve(triangles / 2 + lineSize);
        resize(2 * known.capacity());
    }
    /// Returns the number of `p`; appends a new address to vertices().
    std::int32_t operator()(Real* p) {
        std::size_t place = placeOf(p);
        if (numbers[place] == none) {
            if (2 * known.size() >= numbers.size()) {
                resize(2 * numbers.size());
                place = placeOf(p);
            }
            known.push_back(p);
            numbers[place] = static_cast<std::int32_t>(known.size() - 1);
        }
        return numbers[place];
    }
    /// Returns the number of `p`, or -1. Allocates nothing.
    [[nodiscard]] std::int32_t find(const Real* p) const noexcept { return numbers[placeOf(p)]; }
    /// Returns every address so far, by number.
    [[nodiscard]] const std::vector<Real*>& vertices() const { return known; }

private:
    static constexpr std::int32_t none = -1;
    static constexpr std::size_t lineSize = 16;  // numbers in a cache line
    static constexpr std::size_t vertexBytes = sizeof(XPnt3<Real>);
    static constexpr std::size_t blockBytes = lineSize * vertexBytes;

    /// Returns the place that holds the number of `p`, or the free place for it. At least half of
    /// the places are free.
    [[nodiscard]] std::size_t placeOf(const Real* p) const noexcept {
        const auto address = reinterpret_cast<std::uintptr_t>(p);
        const std::uint64_t hash = address / blockBytes * 0x9E3779B97F4A7C15U;
        const std::size_t mask = numbers.size() - 1;
        // If vertices are farther apart, some places of every line would stay empty. Rotating by
        // another part of the hash makes all places equally likely.
        const std::size_t inLine = (address / vertexBytes + (hash >> 60U)) % lineSize;
        std::size_t place = ((hash >> 20U) * lineSize + inLine) & mask;
        while (numbers[place] != none && known[static_cast<std::size_t>(numbers[place])] != p) {
            place = (place + lineSize + 1) & mask;  // an odd step reaches every place
        }
        return place;
    }
    /// Makes at least `places` places, rounded up to a power of two, and enters the known numbers
    /// again.
    void resize(std::size_t places) {
        std::size_t size = lineSize;
        while (size < places) { size *= 2; }
        std::vector<std::int32_t>(size, none).swap(numbers);
        for (std::size_t n = 0; n < known.size(); ++n) {
            numbers[placeOf(known[n])] = static_cast<std::int32_t>(n);
        }
    }

    std::vector<std::int32_t> numbers;
    std::vector<Real*> known;
};

}  // namespace zyn::detail
