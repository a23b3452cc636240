// Exact arithmetic for the rare coordinates outside the range in which expansions are exact:
// integers of any size, times powers of two.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zyn::detail {

/// Represents a sum of signed digits times powers of 2^32. A digit is at least -2^31 and below
/// 2^31. So the difference of a large number and a small one has few digits, with none between
/// them. Only digits other than 0 are stored, together with their places, which makes products of
/// sparse numbers cheap.
///
/// REQUIRES for all operations: a number is a product of at most four factors, each the sum of two
/// doubles.
class ExactInteger {
public:
    /// Makes 0.
    ExactInteger() = default;
    /// REQUIRES: `value` is finite.
    explicit ExactInteger(double value);
    ExactInteger(const ExactInteger& other) { *this = other; }
    ExactInteger& operator=(const ExactInteger& other);

    /// Returns -1, 0 or 1.
    [[nodiscard]] int sign() const;

    friend ExactInteger operator+(const ExactInteger& a, const ExactInteger& b);
    friend ExactInteger operator-(const ExactInteger& a, const ExactInteger& b);
    friend ExactInteger operator*(const ExactInteger& a, const ExactInteger& b);
    /// Returns the sign of ab - cd. Multiplies only if the leading digits do not decide.
    friend int compareProducts(const ExactInteger& a, const ExactInteger& b, const ExactInteger& c,
                               const ExactInteger& d);

private:
    struct Digit {
        std::int32_t place;  // the exponent of 2^32
        std::int32_t value;
    };
    class Builder;

    /// Returns the first two digits in units of the first, with a relative error of at most 2^-30.
    [[nodiscard]] double leading() const;
    [[nodiscard]] std::int32_t highestPlace() const { return digit[size - 1].place; }
    static ExactInteger sum(const ExactInteger& a, const ExactInteger& b, std::int32_t signOfB);

    // Four factors from 2^-1074 to 2^1025 have 8396 bits; the carries need a few more digits.
    static constexpr std::size_t capacity = 8396 / 32 + 8;
    std::size_t size = 0;
    std::array<Digit, capacity> digit;  // ascending places
};

}  // namespace zyn::detail
