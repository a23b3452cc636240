// Points that stay in place, with their numbers.
#pragma once

#include <zyn/point.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Stores points by number, in the order in which they were added. The address of a point is valid
/// until the store is destroyed. Points that are added together are contiguous.
class PointStore {
public:
    [[nodiscard]] int size() const { return count; }
    [[nodiscard]] XPnt3d& at(int number) {
        const auto behind =
            std::upper_bound(chunks.begin(), chunks.end(), number,
                             [](int n, const Chunk& chunk) { return n < chunk.firstNumber; });
        Chunk& chunk = *std::prev(behind);
        return chunk.points[static_cast<std::size_t>(number - chunk.firstNumber)];
    }
    [[nodiscard]] const XPnt3d& at(int number) const {
        return const_cast<PointStore*>(this)->at(number);
    }
    /// Returns the number of the point that contains these coordinates, or -1 if it is not in the
    /// store.
    [[nodiscard]] int numberOf(const double* coordinates) const {
        const auto* const p = reinterpret_cast<const XPnt3d*>(coordinates);
        const auto behind = std::upper_bound(
            places.begin(), places.end(), p,
            [](const XPnt3d* a, const Place& b) { return std::less<>()(a, b.first); });
        if (behind == places.begin()) { return -1; }
        const Chunk& chunk = chunks[std::prev(behind)->second];
        const std::ptrdiff_t offset = p - chunk.points.data();
        return offset < std::ssize(chunk.points) ? chunk.firstNumber + static_cast<int>(offset)
                                                 : -1;
    }
    /// Adds points and takes over their memory. Returns the points in the store.
    std::span<XPnt3d> take(std::vector<XPnt3d>&& points) {
        if (points.empty()) { return {}; }
        places.reserve(places.size() + 1);
        chunks.push_back({std::move(points), count});
        return finishChunk();
    }
    /// Adds copies of points. Returns them. Puts them after the last points if there is room.
    std::span<XPnt3d> append(std::span<const XPnt3d> points) {
        if (points.empty()) { return {}; }
        std::vector<XPnt3d>* last = chunks.empty() ? nullptr : &chunks.back().points;
        if (last == nullptr || last->capacity() - last->size() < points.size()) {
            constexpr std::size_t room = 1024;
            std::vector<XPnt3d> fresh;
            fresh.reserve(std::max(room, points.size()));
            fresh.assign(points.begin(), points.end());
            return take(std::move(fresh));
        }
        last->insert(last->end(), points.begin(), points.end());
        count += static_cast<int>(points.size());
        return std::span(*last).last(points.size());
    }

private:
    struct Chunk {
        std::vector<XPnt3d> points;
        int firstNumber;
    };
    using Place = std::pair<const XPnt3d*, std::size_t>;  // start and index of a chunk

    std::span<XPnt3d> finishChunk() {
        Chunk& chunk = chunks.back();
        const Place place(chunk.points.data(), chunks.size() - 1);
        places.insert(std::upper_bound(places.begin(), places.end(), place,
                                       [](const Place& a, const Place& b) {
                                           return std::less<>()(a.first, b.first);
                                       }),
                      place);
        count += static_cast<int>(chunk.points.size());
        return chunk.points;
    }

    std::vector<Chunk> chunks;
    std::vector<Place> places;  // by address
    int count = 0;
};

}  // namespace zyn::detail
