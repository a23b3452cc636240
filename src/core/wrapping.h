// Arithmetic for templates over number types. Integers wrap around without undefined behaviour;
// floats compute as usual.
#pragma once

#include <concepts>

namespace zyn::detail::wrapping {

/// Converts an integer to an unsigned one of at least 32 bits; returns a float unchanged.
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
