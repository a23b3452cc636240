// The colour between two, by any of the ten modes, prepared for many places on one stretch.
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

/// A channel's byte: truncated, the low 8 bits; 0 for NaN and beyond the range of int, where those
/// bits of a float are 0 anyhow.
[[nodiscard]] std::uint32_t channelByte(float value) noexcept;

class Blend {
public:
    Blend(BlendMode mode, const Stretch& stretch) noexcept;
    /// The packed colour at `pos`. All arithmetic is in float.
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
    Hsl from, to;  ///< of the HSL modes; to.h is where the hue goes
};

}  // namespace zyn::detail
