// Conversion between numbers and little-endian bytes on any machine.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string>

namespace zyn::detail {

/// Returns the bytes in reverse order on a big-endian machine, and unchanged elsewhere.
template <std::size_t Size>
[[nodiscard]] std::array<char, Size> swappedIfBig(std::array<char, Size> bytes) {
    if constexpr (std::endian::native == std::endian::big) { std::ranges::reverse(bytes); }
    return bytes;
}

/// Appends the bytes of `value`, lowest first.
template <class Number>
void appendLittleEndian(std::string& bytes, Number value) {
    const auto ordered = swappedIfBig(std::bit_cast<std::array<char, sizeof(Number)>>(value));
    bytes.append(ordered.data(), ordered.size());
}

/// Returns the number whose bytes start at `bytes`, lowest first.
template <class Number>
[[nodiscard]] Number fromLittleEndian(const char* bytes) {
    std::array<char, sizeof(Number)> ordered;
    std::memcpy(ordered.data(), bytes, ordered.size());
    return std::bit_cast<Number>(swappedIfBig(ordered));
}

}  // namespace zyn::detail
