// The ten ways to blend two colours, written channel by channel.
#pragma once

#include <zyn/color.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace support {

inline constexpr auto blends = std::to_array<decltype(&zyn::IZynColorRamp::InterpolateLinear)>(
    {&zyn::IZynColorRamp::InterpolateLinear, &zyn::IZynColorRamp::InterpolateFlatStart,
     &zyn::IZynColorRamp::InterpolateFlatMid, &zyn::IZynColorRamp::InterpolateFlatEnd,
     &zyn::IZynColorRamp::InterpolateCosine, &zyn::IZynColorRamp::InterpolateHSLClockwise,
     &zyn::IZynColorRamp::InterpolateHSLAntiClockwise, &zyn::IZynColorRamp::InterpolateHSLShortest,
     &zyn::IZynColorRamp::InterpolateHSLLongest, &zyn::IZynColorRamp::InterpolateReverse});

inline std::uint32_t lowByte(float v) {
    return std::abs(v) < 9e15F ? std::uint32_t(std::int64_t(v) & 0xFF) : 0U;
}

using Triple = std::array<float, 3>;

inline Triple hslOf(Triple c) {
    const auto [r, g, b] = c;
    const float M = std::max(r, std::max(g, b)), m = std::min(r, std::min(g, b));
    float h = 0, s = 0;
    const float l = (M + m) * 0.5F;
    if (l > 0 && M - m > 0) {
        s = (M - m) / (l <= 0.5F ? M + m : 2.0F - M - m);
        const float rr = (M - r) / (M - m), gg = (M - g) / (M - m), bb = (M - b) / (M - m);
        if (r == M) {
            h = g == m ? 5 + bb : 1 - gg;
        } else if (g == M) {
            h = b == m ? 1 + rr : 3 - bb;
        } else {
            h = r == m ? 3 + gg : 5 - rr;
        }
        h /= 6;
    }
    return {h - std::floor(h), s, l};
}

inline Triple rgbOf(Triple c) {
    const auto [h, s, l] = c;
    const float v = l <= 0.5F ? l * (1 + s) : l + s - l * s;
    if (!(v > 0)) { return {0, 0, 0}; }
    const float m = l + l - v;
    const int k = std::abs(h) < 1e6F ? int(h * 6) : -1;
    const float w = (v - m) / v * v * (h * 6 - float(k)), p = m + w, q = v - w;
    const Triple table[] = {{v, p, m}, {q, v, m}, {m, v, p}, {m, q, v}, {p, m, v}, {v, m, q}};
    return k >= 0 && k < 6 ? table[k] : Triple{0, 0, 0};
}

inline std::uint32_t plainBlend(std::uint32_t mode, std::uint32_t c0, std::uint32_t c1, float pos,
                                float start, float end) {
    if (mode == 1) { return c0; }
    if (mode == 3) { return c1; }
    if ((mode == 0 || mode == 9) && start == end) { return c0; }
    if (mode == 9) { std::swap(c0, c1); }
    if ((mode == 0 || mode == 9) && pos == start) { return c0; }
    if ((mode == 0 || mode == 9) && pos == end) { return c1; }
    const auto channels = [](std::uint32_t c, float over) {
        return Triple{float(c & 255) / over, float(c / 256 & 255) / over,
                      float(c / 65536 & 255) / over};
    };
    Triple a = channels(c0, 1), b = channels(c1, 1), out = {};
    const float up = pos - start, down = end - pos, n = end - start;
    if (mode >= 5 && mode <= 8) {
        a = hslOf(channels(c0, 255));
        b = hslOf(channels(c1, 255));
        const float h0 = a[0], h1 = b[0], e = (h1 - h0) - std::floor(h1 - h0);
        const float shifted = h0 > h1 ? h1 + 1 : h1 - 1;
        if (mode == 5 && h1 < h0) { b[0] += 1; }
        if (mode == 6 && h0 < h1) { b[0] += 1; }
        const bool turned = mode == 7 ? e > 0.5F : 0.5F > e;
        if (mode >= 7) { b[0] = (turned ? h0 > h1 : h1 >= h0) ? h1 : shifted; }
        Triple hsl;
        for (std::size_t i = 0; i < 3; ++i) { hsl[i] = (up * b[i] + down * a[i]) / n; }
        if (mode >= 7) { hsl[0] -= std::floor(hsl[0]); }
        if (mode < 7 && hsl[0] >= 1) { hsl[0] -= 1; }
        out = rgbOf(hsl);
        for (float& c : out) { c *= 255.0F; }
    }
    const float m = (1 - std::cos(up / n * 3.1415927F)) * 0.5F;
    for (std::size_t i = 0; i < 3; ++i) {
        if (mode == 0 || mode == 9) { out[i] = (b[i] * up + a[i] * down) / n; }
        if (mode == 2) { out[i] = std::floor((a[i] + b[i]) / 2); }
        if (mode == 4) { out[i] = a[i] * (1 - m) + b[i] * m; }
    }
    return lowByte(out[0]) | lowByte(out[1]) << 8 | lowByte(out[2]) << 16;
}

}  // namespace support
