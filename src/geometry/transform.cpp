#include <zyn/transform.h>

#include "containers/array_imp.h"
#include "containers/gauss_jordan.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace zyn {

using namespace detail;

namespace {

constexpr double invalidComponent = invalidCoordinate<double>;
constexpr double lengthTolerance = 0.001;
constexpr double normTolerance = 1e-6;

/// Whether the first three rows and columns have length 1, as far as three elements tell.
bool hasUnitRowsAndColumns(const ZynMatrix4d& m) {
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

/// From the largest of four times w², x², y² and z², so that nothing small is divided by.
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

}  // namespace

// ZynMatrix4d

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

// ZynQuad

ZynQuad::ZynQuad() noexcept
    : ZynQuad(invalidComponent, invalidComponent, invalidComponent, invalidComponent) {}
ZynQuad::ZynQuad(double w_, double x_, double y_, double z_) noexcept {
    w = w_;
    x = x_;
    y = y_;
    z = z_;
}
ZynQuad::ZynQuad(const double* q) noexcept : ZynQuad(q[0], q[1], q[2], q[3]) {}
ZynQuad::~ZynQuad() = default;

double ZynQuad::getNorm() const noexcept { return std::sqrt(getNorm2()); }
double ZynQuad::getNorm2() const noexcept { return w * w + x * x + y * y + z * z; }

std::int32_t ZynQuad::normalize() noexcept {
    if (isNormal()) { return 0; }
    *this *= 1.0 / getNorm();
    return 1;
}

bool ZynQuad::isNormal() const noexcept { return normTolerance > std::abs(getNorm() - 1.0); }

bool ZynQuad::isValid() const noexcept {
    return w != invalidComponent && x != invalidComponent && y != invalidComponent &&
           z != invalidComponent;
}

void ZynQuad::setInvalid() noexcept { *this = ZynQuad(); }

std::int32_t ZynQuad::setValue(double w_, double x_, double y_, double z_) noexcept {
    w = w_;
    x = x_;
    y = y_;
    z = z_;
    return 1;
}

std::int32_t ZynQuad::setValue(const double* q) noexcept {
    return setValue(q[0], q[1], q[2], q[3]);
}

DoubleArray* ZynQuad::getValue() const {
    auto values = std::make_unique<ArrayImp<DoubleArray>>();
    const double components[4] = {w, x, y, z};
    values->assign(components, 4);
    return values.release();
}

std::int32_t ZynQuad::getValue(double& w_, double& x_, double& y_, double& z_) const noexcept {
    w_ = w;
    x_ = x;
    y_ = y;
    z_ = z;
    return 0;
}

double& ZynQuad::operator[](int i) noexcept {
    switch (i) {
    case 0: return w;
    case 1: return x;
    case 2: return y;
    default: return z;
    }
}

ZynQuad& ZynQuad::operator=(const double* q) noexcept {
    setValue(q);
    return *this;
}

// The component operator has no const form, and its place in the interface is fixed.
ZynQuad& ZynQuad::operator=(const ZynQuad& q) noexcept {
    auto& source = const_cast<ZynQuad&>(q);
    setValue(source[0], source[1], source[2], source[3]);
    return *this;
}

ZynQuad& ZynQuad::operator+(const ZynQuad& q) noexcept {
    setValue(w + q.w, x + q.x, y + q.y, z + q.z);
    return *this;
}

ZynQuad& ZynQuad::operator-(const ZynQuad& q) noexcept {
    setValue(w - q.w, x - q.x, y - q.y, z - q.z);
    return *this;
}

ZynQuad& ZynQuad::operator*(double s) noexcept {
    setValue(w * s, x * s, y * s, z * s);
    return *this;
}

ZynQuad& ZynQuad::operator*(const ZynQuad& q) noexcept {
    setValue(w * q.w - x * q.x - y * q.y - z * q.z, w * q.x + x * q.w + y * q.z - z * q.y,
             w * q.y - x * q.z + y * q.w + z * q.x, w * q.z + x * q.y - y * q.x + z * q.w);
    return *this;
}

ZynQuad& ZynQuad::operator/(double s) noexcept { return *this * (1.0 / s); }
ZynQuad& ZynQuad::operator+=(const ZynQuad& q) noexcept { return *this + q; }
ZynQuad& ZynQuad::operator-=(const ZynQuad& q) noexcept { return *this - q; }
ZynQuad& ZynQuad::operator*=(double s) noexcept { return *this * s; }
ZynQuad& ZynQuad::operator*=(const ZynQuad& q) noexcept { return *this * q; }
ZynQuad& ZynQuad::operator/=(double s) noexcept { return *this / s; }

std::int32_t ZynQuad::fromMatrix(ZynMatrix4d& matrix) noexcept {
    if (!hasUnitRowsAndColumns(matrix)) {
        matrix.setInvalid();
        return -1;
    }
    const auto [w_, x_, y_, z_] = quadOf(matrix.m);
    setValue(w_, x_, y_, z_);
    return 0;
}

ZynMatrix4d ZynQuad::toMatrix() noexcept {
    ZynMatrix4d result;
    toMatrix(result);
    return result;
}

std::int32_t ZynQuad::toMatrix(ZynMatrix4d& matrix) noexcept {
    if (!isNormal()) { normalize(); }
    setRotation(matrix.m, *this);
    return 0;
}

std::int32_t ZynQuad::rotate(float x_, float y_, float z_, double angle) noexcept {
    const double sine = std::sin(angle / 2);
    ZynQuad turn(std::cos(angle / 2), double(x_) * sine, double(y_) * sine, double(z_) * sine);
    *this = turn *= *this;
    return 0;
}

}  // namespace zyn
