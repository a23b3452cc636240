// Integers of any size, for the few predicates whose coordinates lie outside the range in which
// expansions are exact: doubles of any size become integers over one common power of two.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyn {

class ExactInteger {
public:
    /// 0
    ExactInteger() = default;
    /// value / 2^unit. REQUIRES: that is a whole number.
    ExactInteger(double value, int unit);

    /// -1, 0 or 1
    [[nodiscard]] int sign() const;

    friend ExactInteger operator+(const ExactInteger& a, const ExactInteger& b);
    friend ExactInteger operator-(const ExactInteger& a, const ExactInteger& b);
    friend ExactInteger operator*(const ExactInteger& a, const ExactInteger& b);

private:
    using Digits = std::vector<std::uint32_t>;  // least significant first, no leading zeros

    static int compare(const Digits& a, const Digits& b);
    static Digits add(const Digits& a, const Digits& b);
    static Digits subtract(const Digits& a, const Digits& b);  // REQUIRES: a >= b
    static void trim(Digits& digits);

    Digits magnitude;
    bool negative = false;
};

/// The exponent of the lowest bit of `value`, which is finite and not 0.
int lowestBit(double value);

}  // namespace zyn
