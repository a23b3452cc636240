#include <zyn/transform.h>

#include "containers/gauss_jordan.h"
#include "geometry/rotation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zyn {

using namespace detail;

void ZynMatrix4d::setInvalid() noexcept { std::fill_n(m, 16, invalidComponent); }

int ZynMatrix4d::setIdentity() noexcept {
    setZero();
    m[0] = m[5] = m[10] = m[15] = 1;
    return 1;
}

int ZynMatrix4d::setZero() noexcept {
    std::fill_n(m, 16, 0.0);
    return 1;
}

bool ZynMatrix4d::isValid() const noexcept {
    return std::find(m, m + 16, invalidComponent) == m + 16 && hasUnitRowsAndColumns(*this);
}

ZynMatrix4d& ZynMatrix4d::operator*(const ZynMatrix4d& b) noexcept {
    const ZynMatrix4d left = *this, right = b;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            double sum = 0;
            for (int k = 0; k < 4; ++k) { sum += left.m[4 * r + k] * right.m[4 * k + c]; }
            m[4 * r + c] = sum;
        }
    }
    return *this;
}

ZynMatrix4d& ZynMatrix4d::operator+(const ZynMatrix4d& b) noexcept {
    for (int i = 0; i < 16; ++i) { m[i] += b.m[i]; }
    return *this;
}

ZynMatrix4d& ZynMatrix4d::operator-(const ZynMatrix4d& b) noexcept {
    for (int i = 0; i < 16; ++i) { m[i] -= b.m[i]; }
    return *this;
}

ZynMatrix4d& ZynMatrix4d::operator*=(double s) noexcept {
    for (double& e : m) { e *= s; }
    return *this;
}

ZynMatrix4d& ZynMatrix4d::operator+=(double s) noexcept {
    for (double& e : m) { e += s; }
    return *this;
}

ZynMatrix4d ZynMatrix4d::covariant() noexcept { return *this * getTransposed(); }

int ZynMatrix4d::transpose() noexcept {
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < r; ++c) { std::swap(m[4 * r + c], m[4 * c + r]); }
    }
    return 1;
}

ZynMatrix4d ZynMatrix4d::getTransposed() const noexcept {
    ZynMatrix4d result = *this;
    result.transpose();
    return result;
}

int ZynMatrix4d::invert() noexcept {
    GaussJordan<double>::Pivot pivots[4];
    return GaussJordan<double>(m, 4, pivots).invert() ? 1 : 0;
}

ZynMatrix4d ZynMatrix4d::getInverted() const noexcept {
    ZynMatrix4d result = *this;
    result.invert();
    return result;
}

int ZynMatrix4d::normalise(double lo, double hi) noexcept {
    const double min = *std::min_element(m, m + 16), max = *std::max_element(m, m + 16);
    for (double& e : m) { e = (e - min) / (max - min) * (hi - lo) + lo; }
    return 1;
}

ZynMatrix4d ZynMatrix4d::getNormalised(double lo, double hi) const noexcept {
    ZynMatrix4d result = *this;
    result.normalise(lo, hi);
    return result;
}

int ZynMatrix4d::fromQuad(ZynQuad q) noexcept {
    if (!q.isNormal()) { return -1; }
    setRotation(m, q);
    return 1;
}

int ZynMatrix4d::toQuad(ZynQuad& q) const noexcept {
    if (!isValid()) { return -1; }
    const auto [w, x, y, z] = quadOf(m);
    q.setValue(w, x, y, z);
    return 1;
}

ZynMatrix4d operator*(const ZynMatrix4d& m, double s) noexcept {
    ZynMatrix4d result = m;
    return result *= s;
}

XPnt3d operator*(const ZynMatrix4d& matrix, const XPnt3d& p) noexcept {
    const double* const m = matrix.m;
    return {m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3],
            m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7],
            m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11]};
}

}  // namespace zyn
