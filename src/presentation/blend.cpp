#include "presentation/blend.h"

#include <algorithm>
#include <cmath>

namespace zyn::detail {

namespace {

/// Returns channel 0, 1 or 2: red, green or blue.
std::uint32_t byteAt(std::uint32_t color, int channel) { return color >> (8 * channel) & 0xFF; }
float channelAt(std::uint32_t color, int channel) {
    return static_cast<float>(byteAt(color, channel));
}

std::uint32_t pack(std::uint32_t r, std::uint32_t g, std::uint32_t b) {
    return r | g << 8 | b << 16;
}

template <class Mix>
std::uint32_t mixed(std::uint32_t c0, std::uint32_t c1, Mix mix) {
    const auto byte = [&](int i) { return channelByte(mix(channelAt(c0, i), channelAt(c1, i))); };
    return pack(byte(0), byte(1), byte(2));
}

std::uint32_t straight(std::uint32_t c0, std::uint32_t c1, float pos, float start, float end) {
    if (start == end || pos == start) { return c0; }
    if (pos == end) { return c1; }
    const float a = pos - start, b = end - pos, n = end - start;
    return mixed(c0, c1, [=](float v0, float v1) { return (v1 * a + v0 * b) / n; });
}

float fraction(float v) { return v - std::floor(v); }

}  // namespace

std::uint32_t channelByte(float value) noexcept {
    constexpr float intLimit = 2147483648.0F;
    if (!(std::abs(value) < intLimit)) { return 0; }
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(value)) & 0xFF;
}

Blend::Blend(BlendMode mode_, const Stretch& stretch) noexcept : mode(mode_), on(stretch) {
    if (mode < IZynColorRamp::HSLClockwise || mode > IZynColorRamp::HSLLongest) { return; }
    from = hslOf(on.c0);
    to = hslOf(on.c1);
    from.h = fraction(from.h);
    to.h = fraction(to.h);
    to.h = targetHue();
}

std::uint32_t Blend::at(float pos) const noexcept {
    switch (mode) {
    case IZynColorRamp::Linear: return straight(on.c0, on.c1, pos, on.start, on.end);
    case IZynColorRamp::FlatStart: return on.c0;
    case IZynColorRamp::FlatMid:
        return pack((byteAt(on.c0, 0) + byteAt(on.c1, 0)) / 2,
                    (byteAt(on.c0, 1) + byteAt(on.c1, 1)) / 2,
                    (byteAt(on.c0, 2) + byteAt(on.c1, 2)) / 2);
    case IZynColorRamp::FlatEnd: return on.c1;
    case IZynColorRamp::Cosine: {
        constexpr float pi = 3.1415927F;
        const float m = (1.0F - std::cos((pos - on.start) / (on.end - on.start) * pi)) * 0.5F;
        return mixed(on.c0, on.c1, [m](float v0, float v1) { return v0 * (1.0F - m) + v1 * m; });
    }
    case IZynColorRamp::Reverse:
        // On an interval without length the first colour must not become the second.
        if (on.start == on.end) { return on.c0; }
        return straight(on.c1, on.c0, pos, on.start, on.end);
    default: return throughHsl(pos);
    }
}

float Blend::targetHue() const noexcept {
    const float h0 = from.h, h1 = to.h;
    const float rising = fraction(h1 - h0);
    const float shifted = h0 > h1 ? h1 + 1.0F : h1 - 1.0F;
    switch (mode) {
    case IZynColorRamp::HSLClockwise: return h1 >= h0 ? h1 : h1 + 1.0F;
    case IZynColorRamp::HSLAntiClockwise: return h0 >= h1 ? h1 : h1 + 1.0F;
    case IZynColorRamp::HSLShortest: return (rising > 0.5F ? h0 > h1 : h1 >= h0) ? h1 : shifted;
    default: return (0.5F > rising ? h0 > h1 : h1 >= h0) ? h1 : shifted;
    }
}

std::uint32_t Blend::throughHsl(float pos) const noexcept {
    const float a = pos - on.start, b = on.end - pos, n = on.end - on.start;
    Hsl mean{(a * to.h + b * from.h) / n, (a * to.s + b * from.s) / n, (a * to.l + b * from.l) / n};
    if (mode == IZynColorRamp::HSLClockwise || mode == IZynColorRamp::HSLAntiClockwise) {
        if (mean.h >= 1.0F) { mean.h -= 1.0F; }
    } else {
        mean.h = fraction(mean.h);
    }
    return rgbOf(mean);
}

Blend::Hsl Blend::hslOf(std::uint32_t color) noexcept {
    const float r = channelAt(color, 0) / 255.0F, g = channelAt(color, 1) / 255.0F,
                b = channelAt(color, 2) / 255.0F;
    const float largest = std::max({r, g, b}), smallest = std::min({r, g, b});
    Hsl hsl;
    hsl.l = (largest + smallest) * 0.5F;
    if (!(hsl.l > 0.0F)) { return hsl; }
    const float d = largest - smallest;
    hsl.s = d;
    if (!(d > 0.0F)) { return hsl; }
    hsl.s = hsl.l <= 0.5F ? d / (largest + smallest) : d / (2.0F - largest - smallest);
    const float fromR = (largest - r) / d, fromG = (largest - g) / d, fromB = (largest - b) / d;
    if (r == largest) {
        hsl.h = g != smallest ? 1.0F - fromG : fromB + 5.0F;
    } else if (g != largest) {
        hsl.h = r != smallest ? 5.0F - fromR : fromG + 3.0F;
    } else {
        hsl.h = b != smallest ? 3.0F - fromB : fromR + 1.0F;
    }
    hsl.h /= 6.0F;
    return hsl;
}

std::uint32_t Blend::rgbOf(const Hsl& hsl) noexcept {
    const float v = hsl.l <= 0.5F ? hsl.l * (1.0F + hsl.s) : hsl.l + hsl.s - hsl.l * hsl.s;
    if (!(v > 0.0F)) { return 0; }
    const float m = hsl.l + hsl.l - v;
    const float sextant = std::trunc(hsl.h * 6.0F);
    const float f = hsl.h * 6.0F - sextant;
    const float w = (v - m) / v * v * f;
    const float p = m + w, q = v - w;
    const auto packed = [](float r, float g, float b) {
        return pack(channelByte(r * 255.0F), channelByte(g * 255.0F), channelByte(b * 255.0F));
    };
    if (sextant == 0.0F) { return packed(v, p, m); }
    if (sextant == 1.0F) { return packed(q, v, m); }
    if (sextant == 2.0F) { return packed(m, v, p); }
    if (sextant == 3.0F) { return packed(m, q, v); }
    if (sextant == 4.0F) { return packed(p, m, v); }
    if (sextant == 5.0F) { return packed(v, m, q); }
    return 0;
}

}  // namespace zyn::detail
