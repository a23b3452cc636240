#include "triangulation/exact_integer.h"

#include "core/float_parts.h"

#include <algorithm>
#include <cmath>

namespace zyn::detail {

/// Adds values at ascending places and turns them into digits.
class ExactInteger::Builder {
public:
    explicit Builder(ExactInteger& result_) : result(result_) {}
    void add(std::int32_t place, std::int64_t value) {
        carryTo(place);
        pending += value;
    }
    void finish() {
        while (pending != 0) { pushDigit(); }
    }

private:
    void carryTo(std::int32_t place) {
        while (pending != 0 && current < place) { pushDigit(); }
        current = place;
    }
    void pushDigit() {
        const auto value = static_cast<std::int32_t>(pending);  // modulo 2^32
        if (value != 0) { result.digit[result.size++] = {current, value}; }
        pending = (pending - value) >> 32U;
        ++current;
    }

    ExactInteger& result;
    std::int64_t pending = 0;
    std::int32_t current = 0;
};

ExactInteger::ExactInteger(double value) {
    const auto [mantissa, exponent] = partsOf(value);
    const std::int32_t place = exponent >> 5;
    const int shift = exponent - 32 * place;
    // Computes mantissa times 2^shift in two parts that fit into 64 bits.
    const std::int64_t high = mantissa >> 21U, low = mantissa - (high << 21U);
    const std::int64_t shiftedHigh = high << shift;  // times 2^21
    Builder builder(*this);
    builder.add(place, (low << shift) + ((shiftedHigh & 0x7ff) << 21U));
    builder.add(place + 1, shiftedHigh >> 11U);
    builder.finish();
}

ExactInteger& ExactInteger::operator=(const ExactInteger& other) {
    size = other.size;
    std::copy_n(other.digit.begin(), size, digit.begin());
    return *this;
}

/// The highest digit decides: all lower digits together are less than 1 in its place.
int ExactInteger::sign() const { return size == 0 ? 0 : digit[size - 1].value > 0 ? 1 : -1; }

double ExactInteger::leading() const {
    const Digit first = digit[size - 1];
    const bool isNext = size > 1 && digit[size - 2].place == first.place - 1;
    return first.value + (isNext ? 0x1p-32 * digit[size - 2].value : 0.0);
}

ExactInteger operator+(const ExactInteger& a, const ExactInteger& b) {
    return ExactInteger::sum(a, b, 1);
}

ExactInteger operator-(const ExactInteger& a, const ExactInteger& b) {
    return ExactInteger::sum(a, b, -1);
}

ExactInteger ExactInteger::sum(const ExactInteger& a, const ExactInteger& b, std::int32_t signOfB) {
    ExactInteger result;
    Builder builder(result);
    std::size_t i = 0, j = 0;
    while (i < a.size || j < b.size) {
        if (j == b.size || (i < a.size && a.digit[i].place <= b.digit[j].place)) {
            builder.add(a.digit[i].place, a.digit[i].value);
            ++i;
        } else {
            builder.add(b.digit[j].place, std::int64_t{signOfB} * b.digit[j].value);
            ++j;
        }
    }
    builder.finish();
    return result;
}

ExactInteger operator*(const ExactInteger& a, const ExactInteger& b) {
    ExactInteger result;
    if (a.size == 0 || b.size == 0) { return result; }
    const std::int32_t lowest = a.digit[0].place + b.digit[0].place;
    const std::int32_t highest = a.digit[a.size - 1].place + b.digit[b.size - 1].place + 1;
    const auto used = static_cast<std::size_t>(highest - lowest) + 1;
    std::array<std::int64_t, ExactInteger::capacity> total;
    std::fill_n(total.begin(), used, 0);
    for (std::size_t i = 0; i < a.size; ++i) {
        for (std::size_t j = 0; j < b.size; ++j) {
            const auto at = static_cast<std::size_t>(a.digit[i].place + b.digit[j].place - lowest);
            const std::int64_t product = std::int64_t{a.digit[i].value} * b.digit[j].value;
            total[at] += product & 0xffffffff;
            total[at + 1] += product >> 32U;
        }
    }
    ExactInteger::Builder builder(result);
    for (std::size_t n = 0; n < used; ++n) {
        if (total[n] != 0) { builder.add(lowest + static_cast<std::int32_t>(n), total[n]); }
    }
    builder.finish();
    return result;
}

int compareProducts(const ExactInteger& a, const ExactInteger& b, const ExactInteger& c,
                    const ExactInteger& d) {
    const int left = a.sign() * b.sign(), right = c.sign() * d.sign();
    if (left != right || left == 0) { return (left > right) - (left < right); }
    const double leftSize = std::abs(a.leading() * b.leading());
    const double rightSize = std::abs(c.leading() * d.leading());
    const std::int32_t places =
        a.highestPlace() + b.highestPlace() - c.highestPlace() - d.highestPlace();
    const double ratio = std::ldexp(leftSize / rightSize, 32 * std::clamp(places, -8, 8));
    if (ratio > 1 + 0x1p-25) { return left; }
    if (ratio < 1 - 0x1p-25) { return -left; }
    return (a * b - c * d).sign();
}

}  // namespace zyn::detail
