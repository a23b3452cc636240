#include "rounding.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

double roundUp(double wanted) {
    const double power = std::pow(10.0, std::floor(std::log10(wanted)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (wanted <= factor * power) { return factor * power; }
    }
    return 10 * power;
}

int decimalsFor(double size, int digits, int least) {
    constexpr int most = 15;
    if (size == 0 || !std::isfinite(size)) { return least; }
    const double magnitude = std::floor(std::log10(std::abs(size)));
    return std::clamp(digits - 1 - static_cast<int>(magnitude), least, most);
}

std::string withDecimals(double value, int decimals) {
    char text[400];  // the longest double has 309 digits before its point
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}
