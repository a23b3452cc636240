#include "triangulation/exact_integer.h"

#include <cmath>
#include <utility>

namespace zyn {
namespace {

constexpr int digitBits = 32;
constexpr int mantissaBits = 53;

}  // namespace

int lowestBit(double value) {
    int exponent = 0;
    auto mantissa = static_cast<std::uint64_t>(
        std::ldexp(std::frexp(std::abs(value), &exponent), mantissaBits));
    exponent -= mantissaBits;
    for (; (mantissa & 1U) == 0; mantissa >>= 1U) { ++exponent; }
    return exponent;
}

ExactInteger::ExactInteger(double value, int unit) : negative(value < 0.0) {
    if (value == 0.0) { return; }
    int exponent = 0;
    const double fraction = std::frexp(std::abs(value), &exponent);
    auto mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, mantissaBits));
    int shift = exponent - mantissaBits - unit;
    if (shift < 0) {
        mantissa >>= static_cast<unsigned>(-shift);
        shift = 0;
    }
    magnitude.assign(static_cast<std::size_t>(shift / digitBits), 0);
    const auto rest = static_cast<unsigned>(shift % digitBits);
    magnitude.push_back(static_cast<std::uint32_t>(mantissa << rest));
    mantissa >>= digitBits - rest;
    magnitude.push_back(static_cast<std::uint32_t>(mantissa));
    magnitude.push_back(static_cast<std::uint32_t>(mantissa >> digitBits));
    trim(magnitude);
}

int ExactInteger::sign() const { return magnitude.empty() ? 0 : negative ? -1 : 1; }

ExactInteger operator+(const ExactInteger& a, const ExactInteger& b) {
    ExactInteger result;
    if (a.negative == b.negative) {
        result.magnitude = ExactInteger::add(a.magnitude, b.magnitude);
        result.negative = a.negative;
        return result;
    }
    const bool aIsLarger = ExactInteger::compare(a.magnitude, b.magnitude) >= 0;
    result.magnitude = aIsLarger ? ExactInteger::subtract(a.magnitude, b.magnitude)
                                 : ExactInteger::subtract(b.magnitude, a.magnitude);
    result.negative = aIsLarger ? a.negative : b.negative;
    return result;
}

ExactInteger operator-(const ExactInteger& a, const ExactInteger& b) {
    ExactInteger opposite = b;
    opposite.negative = !b.negative;
    return a + opposite;
}

ExactInteger operator*(const ExactInteger& a, const ExactInteger& b) {
    ExactInteger result;
    result.negative = a.negative != b.negative;
    result.magnitude.assign(a.magnitude.size() + b.magnitude.size(), 0);
    for (std::size_t i = 0; i < a.magnitude.size(); ++i) {
        std::uint64_t carry = 0;
        for (std::size_t j = 0; j < b.magnitude.size(); ++j) {
            carry += std::uint64_t{a.magnitude[i]} * b.magnitude[j] + result.magnitude[i + j];
            result.magnitude[i + j] = static_cast<std::uint32_t>(carry);
            carry >>= digitBits;
        }
        result.magnitude[i + b.magnitude.size()] = static_cast<std::uint32_t>(carry);
    }
    ExactInteger::trim(result.magnitude);
    return result;
}

int ExactInteger::compare(const Digits& a, const Digits& b) {
    if (a.size() != b.size()) { return a.size() < b.size() ? -1 : 1; }
    for (std::size_t i = a.size(); i-- > 0;) {
        if (a[i] != b[i]) { return a[i] < b[i] ? -1 : 1; }
    }
    return 0;
}

ExactInteger::Digits ExactInteger::add(const Digits& a, const Digits& b) {
    const Digits& longer = a.size() < b.size() ? b : a;
    const Digits& shorter = a.size() < b.size() ? a : b;
    Digits result = longer;
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < longer.size(); ++i) {
        carry += std::uint64_t{longer[i]} + (i < shorter.size() ? shorter[i] : 0U);
        result[i] = static_cast<std::uint32_t>(carry);
        carry >>= digitBits;
    }
    if (carry != 0) { result.push_back(static_cast<std::uint32_t>(carry)); }
    return result;
}

ExactInteger::Digits ExactInteger::subtract(const Digits& a, const Digits& b) {
    Digits result = a;
    std::uint64_t borrow = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const std::uint64_t taken = borrow + (i < b.size() ? b[i] : 0U);
        borrow = a[i] < taken ? 1 : 0;
        result[i] = static_cast<std::uint32_t>(a[i] - taken);
    }
    trim(result);
    return result;
}

void ExactInteger::trim(Digits& digits) {
    while (!digits.empty() && digits.back() == 0) { digits.pop_back(); }
}

}  // namespace zyn
