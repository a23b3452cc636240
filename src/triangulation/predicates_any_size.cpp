#include "triangulation/predicates_any_size.h"

#include "core/float_parts.h"
#include "triangulation/exact_integer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace zyn::detail {
namespace {

bool allFinite(std::span<const double> coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(),
                       [](double c) { return std::isfinite(c); });
}

double sizeOf(Xy v) { return std::max(std::abs(v.x), std::abs(v.y)); }

/// Returns the vector times the power of two that brings `size` to between 1 and 2. REQUIRES:
/// `size` is at least that of the vector.
Xy scaled(Xy v, double size) {
    if (size == 0.0) { return v; }
    const double unit = powerOfTwoIn(size);
    return {v.x / unit, v.y / unit};
}
Xy scaled(Xy v) { return scaled(v, sizeOf(v)); }

// The plain tests again, for coordinates of very different sizes. Each vector that is a factor of
// the result is scaled, against overflow and underflow. The term 1e-300 covers what small
// components lose.

/// Computes with the two shorter sides of the triangle.
Sign scaledOrientation(Xy a, Xy b, Xy c) {
    const std::array<Xy, 3> sides{b - a, c - b, a - c};
    const auto longest = std::max_element(sides.begin(), sides.end(),
                                          [](Xy u, Xy v) { return sizeOf(u) < sizeOf(v); });
    const auto k = static_cast<std::size_t>(longest - sides.begin());
    const Side side(scaled(sides[(k + 1) % 3]), scaled(sides[(k + 2) % 3]), {0, 0});
    return {std::abs(side.value) > side.bound, side.value > 0 ? 1 : -1};
}

/// Computes the sines with the vector between a and b. If p or d is far away, that vector is more
/// precise than a difference of two long ones.
Sign scaledSineOfAngleSum(Xy p, Xy a, Xy b, Xy d) {
    const Xy ap = scaled(a - p), bd = scaled(b - d), ba = scaled(b - a);
    const double size = std::max(sizeOf(b - p), sizeOf(a - d));
    const Angle sineP(ap, ba), cosineP(ap, scaled(b - p, size));
    const Angle sineD(ba, bd), cosineD(bd, scaled(a - d, size));
    const AngleSum sum({cosineP, sineP}, {cosineD, sineD});
    return {std::abs(sum.sine) > sum.error + 1e-300, sum.sine > 0 ? 1 : -1};
}

/// Multiplies all coordinates by a power of two that makes expansions exact; this keeps the signs
/// of the predicates. Returns false and changes nothing if there is no such power, or if expansions
/// are exact already.
bool scale(std::span<double> coordinates) {
    double largest = 0.0, smallest = HUGE_VAL;
    for (const double c : coordinates) {
        if (c == 0.0) { continue; }
        largest = std::max(largest, std::abs(c));
        smallest = std::min(smallest, std::abs(c));
    }
    if (largest == 0.0 || (smallest >= smallestExact && largest <= largestExact)) { return false; }
    // Multiplies in two steps, since the power itself may exceed the largest double.
    const int shift = std::ilogb(largestExact) - 1 - std::ilogb(largest);
    const double first = std::ldexp(1.0, shift / 2), second = std::ldexp(1.0, shift - shift / 2);
    if (!(smallest * first * second >= smallestExact)) { return false; }
    for (double& c : coordinates) { c = c * first * second; }
    return true;
}

ExactInteger exact(double x, double y) { return ExactInteger(x) - ExactInteger(y); }

}  // namespace

// Never inlined, since their numbers take much of the stack.

[[gnu::noinline]] int orientationOfAnySize(Xy a, Xy b, Xy c) {
    std::array<double, 6> coordinates{a.x, a.y, b.x, b.y, c.x, c.y};
    if (!allFinite(coordinates)) { return 0; }
    if (const Sign sign = scaledOrientation(a, b, c); sign.isKnown) { return sign.sign; }
    if (scale(coordinates)) {
        const auto& [ax, ay, bx, by, cx, cy] = coordinates;
        return orientationExact({ax, ay}, {bx, by}, {cx, cy});
    }
    return compareProducts(exact(a.x, c.x), exact(b.y, c.y), exact(a.y, c.y), exact(b.x, c.x));
}

[[gnu::noinline]] int inCircleOfAnySize(Xy p, Xy a, Xy b, Xy d) {
    std::array<double, 8> coordinates{p.x, p.y, a.x, a.y, b.x, b.y, d.x, d.y};
    if (!allFinite(coordinates)) { return 0; }
    if (const Sign sine = scaledSineOfAngleSum(p, a, b, d); sine.isKnown) { return -sine.sign; }
    if (scale(coordinates)) {
        return inCircleExact(coordinates.data(), &coordinates[2], &coordinates[4], &coordinates[6]);
    }
    const std::array<ExactInteger, 8> v{exact(a.x, p.x), exact(a.y, p.y), exact(b.x, p.x),
                                        exact(b.y, p.y), exact(a.x, d.x), exact(a.y, d.y),
                                        exact(b.x, d.x), exact(b.y, d.y)};
    const auto [cosC, sinC, cosD, sinD] = cosinesAndSines(
        v, [](const auto& e, const auto& f) { return e + f; },
        [](const auto& e, const auto& f) { return e - f; },
        [](const auto& e, const auto& f) { return e * f; });
    return -compareProducts(cosD, sinC, ExactInteger() - sinD, cosC);
}

}  // namespace zyn::detail
