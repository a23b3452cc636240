#include <zyn/color.h>

#include <algorithm>
#include <cmath>

namespace zyn {

namespace {

bool isUnit(double v) { return v >= 0.0 && v <= 1.0; }

}  // namespace

int HSV2RGB(double h, double s, double v, double* r, double* g, double* b) noexcept {
    if (!isUnit(s) || !isUnit(v) || !(h >= 0.0 && h <= 360.0)) { return -1; }
    const auto give = [=](double red, double green, double blue) {
        *r = red;
        *g = green;
        *b = blue;
        return 0;
    };
    if (s == 0.0) { return give(v, v, v); }
    const double sixths = (h == 360.0 ? 0.0 : h) / 60.0;
    const int sector = static_cast<int>(sixths);
    const double f = sixths - sector;
    const double p = (1.0 - s) * v, q = (1.0 - f * s) * v, t = (1.0 - (1.0 - f) * s) * v;
    switch (sector) {
    case 0: return give(v, t, p);
    case 1: return give(q, v, p);
    case 2: return give(p, v, t);
    case 3: return give(p, q, v);
    case 4: return give(t, p, v);
    case 5: return give(v, p, q);
    default: return give(0.0, 0.0, 0.0);
    }
}

std::uint32_t HSV2RGB(double h, double s, double v) noexcept {
    double r = 0, g = 0, b = 0;
    if (HSV2RGB(h, s, v, &r, &g, &b) != 0) { return 0; }
    const auto byte = [](double c) {
        return static_cast<std::uint32_t>(static_cast<int>(std::ceil(c * 255.0 - 0.5))) & 0xFF;
    };
    return byte(r) | byte(g) << 8 | byte(b) << 16;
}

int RGB2HSV(double r, double g, double b, double* h, double* s, double* v) noexcept {
    if (!isUnit(r) || !isUnit(g) || !isUnit(b)) { return -1; }
    const double largest = std::max({r, g, b});
    const double d = largest - std::min({r, g, b});
    *v = largest;
    *s = largest > 0.0 ? d / largest : 0.0;
    *h = 0.0;
    if (*s == 0.0) { return 0; }
    const double sixths = r == largest   ? (g - b) / d
                          : g == largest ? (b - r) / d + 2.0
                                         : (r - g) / d + 4.0;
    *h = sixths * 60.0;
    if (*h < 0.0) { *h += 360.0; }
    return 0;
}

void RGB2HSV(std::int32_t c, double& h, double& s, double& v) noexcept {
    constexpr double step = 1.0 / 256;
    const auto packed = static_cast<std::uint32_t>(c);
    RGB2HSV((packed & 0xFF) * step, (packed >> 8 & 0xFF) * step, (packed >> 16 & 0xFF) * step, &h,
            &s, &v);
}

}  // namespace zyn
