// Interpolation between two colours in any of the ten modes, prepared for many positions on one
// interval.
#pragma once

#include <zyn/color.h>

#include <cstdint>

namespace zyn::detail {

using BlendMode = IZynColorRamp::Mode;
inline constexpr int blendModeCount = 10;

struct Stretch {
    std::uint32_t c0, c1;  ///< packed
    float start, end;

    friend bool operator==(const Stretch&, const Stretch&) = default;
};

/// Returns the low 8 bits of the truncated value. Returns 0 for NaN and beyond the range of int,
/// where a float has no such bits.
[[nodiscard]] std::uint32_t channelByte(float value) noexcept;

class Blend {
public:
    Blend(BlendMode mode, const Stretch& stretch) noexcept;
    /// Returns the packed colour at `pos`. Computes in float only.
    [[nodiscard]] std::uint32_t at(float pos) const noexcept;

private:
    struct Hsl {
        float h = 0, s = 0, l = 0;
    };
    static Hsl hslOf(std::uint32_t color) noexcept;
    static std::uint32_t rgbOf(const Hsl& hsl) noexcept;
    [[nodiscard]] float targetHue() const noexcept;
    [[nodiscard]] std::uint32_t throughHsl(float pos) const noexcept;

    BlendMode mode;
    Stretch on;
    Hsl from, to;  ///< used by the HSL modes; to.h is the target hue
};

}  // namespace zyn::detail
