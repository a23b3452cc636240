#include <zyn/transform.h>

#include "containers/array_imp.h"
#include "geometry/rotation.h"

#include <cmath>
#include <memory>

namespace zyn {

using namespace detail;

namespace {

constexpr double normTolerance = 1e-6;

}  // namespace

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

// operator[] has no const overload, and its place in the interface is fixed.
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
