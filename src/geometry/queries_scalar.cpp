// Angles in degrees, lengths of bare floats, and equality within a tolerance.

#include <zyn/geometry.h>

#include <QString>
#include <numbers>

namespace zyn {

namespace {

/// Compares the numbers rounded to float, which may make equal what is farther apart than the
/// tolerance.
bool equalAsFloats(double a, double b) {
    return IsEqual(static_cast<float>(a), static_cast<float>(b));
}

}  // namespace

float Degree2Radian(float degrees) noexcept {
    return static_cast<float>(double(degrees) * std::numbers::pi / 180.0);
}

float Radian2Degree(float radians) noexcept {
    return static_cast<float>(double(radians) / std::numbers::pi * 180.0);
}

bool normalize(float& x, float& y, float& z) noexcept {
    const float len = std::sqrt(x * x + y * y + z * z);
    if (tolerance::length > double(len)) { return false; }
    x /= len;
    y /= len;
    z /= len;
    return true;
}

float length(float x1, float y1, float x2, float y2) noexcept {
    return dist(XPnt2f(x1, y1), XPnt2f(x2, y2));
}

float length(Coordinates<float, 2> a, Coordinates<float, 2> b, std::int32_t n) noexcept {
    if (n == 2) { return length(a[0], a[1], b[0], b[1]); }
    if (n == 3) { return dist(XPnt3f(a[0], a[1], a[2]), XPnt3f(b[0], b[1], b[2])); }
    return 0;
}

bool IsEqual(float a, float b) noexcept { return tolerance::equal > double(std::abs(a - b)); }

bool IsEqual(float a, float b, float eps) noexcept { return eps > std::abs(a - b); }

bool IsEqual(const XPnt3d& a, const XPnt3d& b, std::int32_t dim) noexcept {
    return equalAsFloats(a.x, b.x) && equalAsFloats(a.y, b.y) &&
           (dim == 2 || equalAsFloats(a.z, b.z));
}

bool IsEqual(const PT3<double>& a, const PT3<double>& b) noexcept {
    return equalAsFloats(a.x, b.x) && equalAsFloats(a.y, b.y) && equalAsFloats(a.z, b.z);
}

template <std::same_as<QString> S>
bool IsEqual(const S& a, const S& b, bool caseSensitive) noexcept {
    return a.compare(b, caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
}

template bool IsEqual(const QString&, const QString&, bool) noexcept;

}  // namespace zyn
