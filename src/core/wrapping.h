// Arithmetic in a number type whatever it is: that of floats, and on integers the one that wraps
// around without undefined behaviour.
#pragma once

#include <concepts>

namespace zyn::detail::wrapping {

/// Integers as unsigned ones of at least 32 bits; floats as they are.
template <class T>
constexpr auto widened(T value) noexcept {
    if constexpr (std::integral<T>) {
        return static_cast<unsigned>(value);
    } else {
        return value;
    }
}
template <class T>
constexpr T plus(T a, T b) noexcept {
    return static_cast<T>(widened(a) + widened(b));
}
template <class T>
constexpr T minus(T a, T b) noexcept {
    return static_cast<T>(widened(a) - widened(b));
}
template <class T>
constexpr T times(T a, T b) noexcept {
    return static_cast<T>(widened(a) * widened(b));
}
template <class T>
constexpr T negated(T a) noexcept {
    return static_cast<T>(-widened(a));
}

}  // namespace zyn::detail::wrapping
