#include "geometry/rotation.h"

#include <algorithm>
#include <cmath>

namespace zyn::detail {

bool hasUnitRowsAndColumns(const ZynMatrix4d& m) {
    constexpr double lengthTolerance = 0.001;
    const auto isUnit = [](double a, double b, double c) {
        return !(std::abs(a * a + b * b + c * c - 1.0) > lengthTolerance);
    };
    for (int i = 0; i < 3; ++i) {
        if (!isUnit(m[i][0], m[i][1], m[i][2]) || !isUnit(m[0][i], m[1][i], m[2][i])) {
            return false;
        }
    }
    return true;
}

void setRotation(double* m, const tagZynQuad& q) {
    const auto [w, x, y, z] = q;
    m[0] = w * w + x * x - y * y - z * z;
    m[1] = 2 * (x * y - w * z);
    m[2] = 2 * (x * z + w * y);
    m[4] = 2 * (x * y + w * z);
    m[5] = w * w - x * x + y * y - z * z;
    m[6] = 2 * (y * z - w * x);
    m[8] = 2 * (x * z - w * y);
    m[9] = 2 * (y * z + w * x);
    m[10] = w * w - x * x - y * y + z * z;
    for (const int i : {3, 7, 11, 12, 13, 14}) { m[i] = 0; }
    m[15] = 1;
}

// Starts from the largest of 4w², 4x², 4y² and 4z², so that no divisor is small.
tagZynQuad quadOf(const double* m) {
    const double candidates[4] = {1 + m[0] + m[5] + m[10], 1 + m[0] - m[5] - m[10],
                                  1 - m[0] + m[5] - m[10], 1 - m[0] - m[5] + m[10]};
    const auto largest = std::max_element(candidates, candidates + 4) - candidates;
    const double s = std::sqrt(candidates[largest]) / 2;
    const double d = 4 * s;
    switch (largest) {
    case 0: return {s, (m[6] - m[9]) / d, (m[8] - m[2]) / d, (m[1] - m[4]) / d};
    case 1: return {(m[6] - m[9]) / d, s, (m[4] + m[1]) / d, (m[8] + m[2]) / d};
    case 2: return {(m[8] - m[2]) / d, (m[4] + m[1]) / d, s, (m[9] + m[6]) / d};
    default: return {(m[1] - m[4]) / d, (m[8] + m[2]) / d, (m[9] + m[6]) / d, s};
    }
}

}  // namespace zyn::detail
