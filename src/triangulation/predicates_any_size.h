// The predicates for coordinates on which expansions may not be exact.
#pragma once

#include "triangulation/predicates.h"

#include <array>

namespace zyn::detail {

/// Bound the coordinates, other than 0, on which expansions are exact.
inline constexpr double smallestExact = 0x1p-150, largestExact = 0x1p200;

/// Holds a sign, or says that more arithmetic is needed to know it.
struct Sign {
    bool isKnown;
    int sign;
};

/// Returns the cosines and sines of the angles at p and d from the differences to these points, in
/// any exact arithmetic.
template <class Number, class Sum, class Difference, class Product>
auto cosinesAndSines(const std::array<Number, 8>& v, Sum add, Difference minus, Product times) {
    const auto& [apx, apy, bpx, bpy, adx, ady, bdx, bdy] = v;
    return std::array{
        add(times(apx, bpx), times(apy, bpy)), minus(times(apx, bpy), times(apy, bpx)),
        add(times(adx, bdx), times(ady, bdy)), minus(times(bdx, ady), times(bdy, adx))};
}

/// Returns what orientation() returns, for coordinates of any size.
[[nodiscard]] int orientationOfAnySize(Xy a, Xy b, Xy c);
/// Returns what inCircle() returns, for coordinates of any size.
[[nodiscard]] int inCircleOfAnySize(Xy p, Xy a, Xy b, Xy d);

}  // namespace zyn::detail
