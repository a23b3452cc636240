// The parts that both encodings of a TIN file share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace zyn::detail::tin_file {

inline constexpr std::string_view magic = "ZynTINFile10";
inline constexpr std::size_t binaryHeadSize = 64;

/// Holds the indices of three vertices and three neighbours.
using Record = std::int32_t[6];

}  // namespace zyn::detail::tin_file
