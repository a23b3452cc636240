// Expansions: exact sums of doubles, after Shewchuk, "Adaptive Precision Floating-Point Arithmetic
// and Fast Robust Geometric Predicates", 1997. An expansion is a short array of terms that do not
// overlap, in increasing magnitude. It represents the sum of its terms and omits zero terms.
// Results are exact in round-to-nearest mode as long as no product overflows or loses bits to
// underflow.
#pragma once

#include <cstddef>

namespace zyn::detail::expansion {

/// Splits a double into two halves of 26 bits: 2^27 + 1.
inline constexpr double splitter = 134217729.0;
/// Is half the distance from 1 to the next double.
inline constexpr double epsilon = 0x1p-53;

/// Represents the exact result of an operation on two doubles: `high` is the rounded result, `low`
/// its rounding error.
struct Two {
    double high;
    double low;
};

inline Two fastTwoSum(double a, double b) {  // REQUIRES: |a| >= |b|
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

inline Two twoSum(double a, double b) {
    const double sum = a + b;
    const double bVirtual = sum - a;
    const double aVirtual = sum - bVirtual;
    return {sum, (a - aVirtual) + (b - bVirtual)};
}

inline Two twoDiff(double a, double b) { return twoSum(a, -b); }

inline Two split(double a) {
    const double c = splitter * a;
    const double high = c - (c - a);
    return {high, a - high};
}

inline Two twoProduct(double a, double b) {
    const double product = a * b;
    const Two as = split(a);
    const Two bs = split(b);
    const double error = ((product - as.high * bs.high) - as.low * bs.high) - as.high * bs.low;
    return {product, as.low * bs.low - error};
}

template <std::size_t Capacity>
struct Expansion {
    double term[Capacity];
    int size = 0;

    void push(double t) {
        if (t != 0.0) { term[size++] = t; }
    }
    /// Returns the largest term, which has the sign of the sum and approximates it, or 0 for an
    /// empty expansion.
    [[nodiscard]] double estimate() const { return size == 0 ? 0.0 : term[size - 1]; }
};

inline Expansion<2> fromTwo(Two t) {
    Expansion<2> e;
    e.push(t.low);
    e.push(t.high);
    return e;
}

template <std::size_t N>
Expansion<N> negated(Expansion<N> e) {
    for (int i = 0; i < e.size; ++i) { e.term[i] = -e.term[i]; }
    return e;
}

/// Implements FAST-EXPANSION-SUM with zero elimination: merges the terms by magnitude and carries
/// upwards.
template <std::size_t N, std::size_t M>
Expansion<N + M> sum(const Expansion<N>& e, const Expansion<M>& f) {
    Expansion<N + M> h;
    int i = 0;
    int j = 0;
    const auto nextSmallest = [&] {
        const bool fromE =
            j == f.size || (i < e.size && (f.term[j] > e.term[i]) == (f.term[j] > -e.term[i]));
        return fromE ? e.term[i++] : f.term[j++];
    };
    const int total = e.size + f.size;
    if (total == 0) { return h; }
    double q = nextSmallest();
    for (int k = 1; k < total; ++k) {
        const Two s = twoSum(q, nextSmallest());
        h.push(s.low);
        q = s.high;
    }
    h.push(q);
    return h;
}

template <std::size_t N, std::size_t M>
Expansion<N + M> difference(const Expansion<N>& e, const Expansion<M>& f) {
    return sum(e, negated(f));
}

/// Implements SCALE-EXPANSION with zero elimination.
template <std::size_t N>
Expansion<2 * N> scaled(const Expansion<N>& e, double b) {
    Expansion<2 * N> h;
    if (e.size == 0) { return h; }
    Two q = twoProduct(e.term[0], b);
    h.push(q.low);
    for (int i = 1; i < e.size; ++i) {
        const Two product = twoProduct(e.term[i], b);
        const Two low = twoSum(q.high, product.low);
        h.push(low.low);
        q = fastTwoSum(product.high, low.high);
        h.push(q.low);
    }
    h.push(q.high);
    return h;
}

template <std::size_t N, std::size_t M>
Expansion<2 * N * M> product(const Expansion<N>& e, const Expansion<M>& f) {
    Expansion<2 * N * M> result;
    for (int i = 0; i < f.size; ++i) {
        const auto wider = sum(result, scaled(e, f.term[i]));
        result.size = wider.size;  // at most 2 N (i + 1) terms
        for (int k = 0; k < wider.size; ++k) { result.term[k] = wider.term[k]; }
    }
    return result;
}

}  // namespace zyn::detail::expansion
