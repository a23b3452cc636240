// Floating-point numbers split into sign, mantissa and exponent.
#pragma once

#include <bit>
#include <cmath>
#include <concepts>
#include <cstdint>

namespace zyn::detail {

/// Represents the number `mantissa` times 2^`exponent`.
struct FloatParts {
    std::int64_t mantissa;
    int exponent;
};

/// Returns the parts of `value`; the mantissa has 53 bits. REQUIRES: `value` is finite.
[[nodiscard]] inline FloatParts partsOf(double value) {
    constexpr int mantissaBits = 53;
    int exponent = 0;
    const double fraction = std::frexp(value, &exponent);
    return {static_cast<std::int64_t>(std::ldexp(fraction, mantissaBits)), exponent - mantissaBits};
}

/// Returns the largest power of two that is not above |value|, and infinity for an infinite value.
/// REQUIRES: `value` is neither 0 nor NaN.
template <std::floating_point Real>
[[nodiscard]] Real powerOfTwoIn(Real value) {
    return std::scalbn(Real(1), std::ilogb(value));
}

/// Returns 1 for a number below 0, otherwise 0, also for -0. Avoids a comparison, which compilers
/// turn into a branch.
[[nodiscard]] inline std::uint64_t signBit(double value) {
    return std::bit_cast<std::uint64_t>(value + 0.0) >> 63U;
}

}  // namespace zyn::detail
