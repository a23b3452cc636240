#include <zyn/referenced.h>

#include <algorithm>

namespace zyn {

// Takes one step of a linear congruential generator whose seed is the upper bound.
std::int32_t Rand(std::int32_t a, std::int32_t b) noexcept {
    const std::uint32_t state = static_cast<std::uint32_t>(b) * 214013u + 2531011u;
    const std::uint32_t drawn = (state >> 16) & 0x7fffu;

    const std::int64_t low = a;
    const std::int64_t high = b;
    // At most 2^32 in size, but rounded: on a wide range the result may exceed a bound by a few
    // units, so it is clamped.
    const float offset = static_cast<float>(drawn) * static_cast<float>(high - low) / -32767.0f;
    const std::int64_t result = low - static_cast<std::int64_t>(offset);
    return static_cast<std::int32_t>(std::clamp(result, std::min(low, high), std::max(low, high)));
}

}  // namespace zyn
