// Exact arithmetic for the few predicates whose coordinates are outside the range in which
// expansions are exact: whole numbers of any size, times powers of two.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace zyn::detail {

/// A sum of signed digits times powers of 2^32. Each digit is at least -2^31 and below 2^31, so
/// that the difference of a large number and a small one has few digits, with none between them.
/// Only digits other than 0 are kept, in place, which makes a product of sparse numbers cheap.
///
/// REQUIRES of all operations: no more than four factors, each a sum of two doubles.
class ExactInteger {
public:
    /// 0
    ExactInteger() = default;
    /// REQUIRES: `value` is finite.
    explicit ExactInteger(double value);
    ExactInteger(const ExactInteger& other) { *this = other; }
    ExactInteger& operator=(const ExactInteger& other);

    /// -1, 0 or 1
    [[nodiscard]] int sign() const;

    friend ExactInteger operator+(const ExactInteger& a, const ExactInteger& b);
    friend ExactInteger operator-(const ExactInteger& a, const ExactInteger& b);
    friend ExactInteger operator*(const ExactInteger& a, const ExactInteger& b);
    /// The sign of ab - cd. Multiplies only where the leading digits leave it open.
    friend int compareProducts(const ExactInteger& a, const ExactInteger& b, const ExactInteger& c,
                               const ExactInteger& d);

private:
    struct Digit {
        std::int32_t place;  // the exponent of 2^32
        std::int32_t value;
    };
    class Builder;

    /// The first two digits in units of the first, which is not more than 2^-30 off by its own
    /// size.
    [[nodiscard]] double leading() const;
    [[nodiscard]] std::int32_t highestPlace() const { return digit[size - 1].place; }
    static ExactInteger sum(const ExactInteger& a, const ExactInteger& b, std::int32_t signOfB);

    // Four factors from 2^-1074 to 2^1025 have 8396 bits; a few digits more for the carries.
    static constexpr std::size_t capacity = 8396 / 32 + 8;
    std::size_t size = 0;
    std::array<Digit, capacity> digit;  // ascending places
};

}  // namespace zyn::detail
