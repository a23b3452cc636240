// The sort of points along a Hilbert curve.
#include "surface/spatial_order.h"

#include <zyn/network.h>

#include "surface/hilbert_curve.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace zyn {
namespace detail {

namespace {

struct Entry {
    std::uint32_t place;
    std::int32_t index;
};

/// Maps a box to cells, both axes by the same factor. The factor has two parts: a power of two,
/// which scales the box to about 1, and the rest, which therefore does not overflow for a tiny box.
/// Coordinates are quartered if their difference would overflow.
struct Cells {
    double minX, minY, part, toUnit, toCells;

    /// REQUIRES: one extent is above 0.
    Cells(double minX_, double minY_, double maxX, double maxY, double cells) {
        part = std::isfinite(std::max(maxX - minX_, maxY - minY_)) ? 1.0 : 0.25;
        minX = minX_ * part;
        minY = minY_ * part;
        const double extent = std::max(maxX * part - minX, maxY * part - minY);
        toUnit = std::ldexp(1.0, -std::clamp(std::ilogb(extent), -1000, 1020));
        toCells = cells / (extent * toUnit);
    }
    [[nodiscard]] std::uint32_t column(double x) const {
        return static_cast<std::uint32_t>((x * part - minX) * toUnit * toCells);
    }
    [[nodiscard]] std::uint32_t row(double y) const {
        return static_cast<std::uint32_t>((y * part - minY) * toUnit * toCells);
    }
};

template <class Real>
class HilbertSort {
public:
    using Pnt = XPnt3<Real>;

    explicit HilbertSort(const Pnt* points_) : points(points_) {}

    /// Sorts the entries, by a radix sort in two passes. REQUIRES: their points are finite.
    void operator()(std::span<Entry> entries) {
        if (!assignPlaces(entries)) { return; }
        scratch.resize(std::max(scratch.size(), entries.size()));
        const std::span<Entry> other(scratch.data(), entries.size());
        scatter(entries, other, 0);
        scatter(other, entries, digitBits);

        for (auto first = entries.begin(); first != entries.end();) {
            const auto end = std::find_if(
                first, entries.end(), [first](const Entry& e) { return e.place != first->place; });
            if (end - first > crowd) { crowded.emplace_back(first, end); }
            first = end;
        }
    }
    /// Sorts the points of crowded cells by finer cells.
    void refine() {
        while (!crowded.empty()) {
            const std::span<Entry> cell = crowded.back();
            crowded.pop_back();
            (*this)(cell);
        }
    }

private:
    static constexpr std::ptrdiff_t crowd = 16;

    /// Finds the place of each entry on the curve, and counts the digits. Returns false if all
    /// points are in one place.
    bool assignPlaces(std::span<Entry> entries) {
        double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;
        for (const Entry& e : entries) {
            const Pnt& p = points[e.index];
            minX = std::min(minX, double(p.x));
            minY = std::min(minY, double(p.y));
            maxX = std::max(maxX, double(p.x));
            maxY = std::max(maxY, double(p.y));
        }
        if (!(maxX > minX) && !(maxY > minY)) { return false; }
        axisBits = std::clamp((static_cast<int>(std::bit_width(entries.size())) + 3) / 2, 4, 14);
        digitBits = axisBits;
        // Slightly less than a whole number of cells, so that the far side is in the last cell.
        const Cells cells(minX, minY, maxX, maxY, std::ldexp(1.0, axisBits) * (1 - 1e-12));
        lowCounts.assign(std::size_t(1) << digitBits, 0);
        highCounts.assign(std::size_t(1) << digitBits, 0);
        const int nibbles = (axisBits + 3) / 4;
        const std::uint32_t mask = (1U << digitBits) - 1;
        for (Entry& e : entries) {
            const Pnt& p = points[e.index];
            e.place = placeOnCurve(cells.column(double(p.x)), cells.row(double(p.y)), nibbles);
            ++lowCounts[e.place & mask];
            ++highCounts[e.place >> digitBits & mask];
        }
        return true;
    }

    void scatter(std::span<const Entry> from, std::span<Entry> to, int shift) {
        std::vector<std::uint32_t>& counts = shift == 0 ? lowCounts : highCounts;
        std::uint32_t sum = 0;
        for (std::uint32_t& count : counts) { sum += std::exchange(count, sum); }
        const std::uint32_t mask = (1U << digitBits) - 1;
        for (const Entry& e : from) { to[counts[e.place >> shift & mask]++] = e; }
    }

    const Pnt* points;
    std::vector<Entry> scratch;
    std::vector<std::span<Entry>> crowded;
    std::vector<std::uint32_t> lowCounts, highCounts;
    int axisBits = 0, digitBits = 0;
};

template <class Array, class Real>
void sortArray(Array* array, const XPnt3<Real>* points) {
    if (array == nullptr) { return; }
    const std::vector<std::int32_t> order = hilbertOrder(points, array->size());
    std::vector<XPnt3<Real>> sorted;
    sorted.reserve(order.size());
    for (const std::int32_t index : order) { sorted.push_back(points[index]); }
    std::copy(sorted.begin(), sorted.end(), array->data());
}

template <class Real, class Array>
ref_ptr<IntArray> orderOf(const Array* array) {
    ref_ptr<IntArray> result = newIntArray();
    if (array != nullptr) {
        const std::vector<std::int32_t> order = hilbertOrder<Real>(array->data(), array->size());
        result->append(order.data(), static_cast<int>(order.size()));
    }
    return result;
}

}  // namespace

template <class Real>
std::vector<std::int32_t> hilbertOrder(const XPnt3<Real>* points, int count) {
    std::vector<Entry> entries;
    std::vector<std::int32_t> order, notFinite;
    entries.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        if (std::isfinite(points[i].x) && std::isfinite(points[i].y)) {
            entries.push_back({0, i});
        } else {
            notFinite.push_back(i);
        }
    }
    {
        HilbertSort<Real> sort(points);
        sort(entries);
        sort.refine();
    }
    order.reserve(static_cast<std::size_t>(count));
    for (const Entry& e : entries) { order.push_back(e.index); }
    order.insert(order.end(), notFinite.begin(), notFinite.end());
    return order;
}

template std::vector<std::int32_t> hilbertOrder(const XPnt3<float>*, int);
template std::vector<std::int32_t> hilbertOrder(const XPnt3<double>*, int);

}  // namespace detail

using namespace detail;

void spatialSort(Pnt3dArray* points) {
    sortArray(points, points == nullptr ? nullptr : points->data());
}
void spatialSort(Pnt3fArray* points) {
    sortArray(points, points == nullptr ? nullptr : points->data());
}
ref_ptr<IntArray> spatialOrder(const Pnt3dArray* points) { return orderOf<double>(points); }
ref_ptr<IntArray> spatialOrder(const Pnt3fArray* points) { return orderOf<float>(points); }

}  // namespace zyn
