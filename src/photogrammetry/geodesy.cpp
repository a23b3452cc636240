#include <zyn/geodesy.h>

#include <cmath>

namespace zyn {

namespace {

constexpr double semiMajorAxis = 6378137.0;
constexpr double pi = 3.141592653589793;

}  // namespace

XPnt3d BLH2WGS(const XPnt3d& blh) noexcept {
    constexpr double e2 = 0.0066943799886513;
    constexpr double oneMinusE2 = 0.9933056200113487;
    const double latitude = blh.x / 180.0 * pi;
    const double longitude = blh.y / 180.0 * pi;
    const double sine = std::sin(latitude), cosine = std::cos(latitude);
    const double normal = semiMajorAxis / std::sqrt(1.0 - e2 * sine * sine);
    return {std::cos(longitude) * (normal + blh.z) * cosine,
            std::sin(longitude) * (normal + blh.z) * cosine, (normal * oneMinusE2 + blh.z) * sine};
}

XPnt3d WGS2BLH(const XPnt3d& xyz) noexcept {
    constexpr double e2 = 0.006694379990126453;
    constexpr double tolerance = 1e-10;
    const double fromAxis = std::sqrt(xyz.x * xyz.x + xyz.y * xyz.y);
    if (fromAxis == 0.0) {
        const double semiMinorAxis = semiMajorAxis * std::sqrt(1.0 - e2);
        return {xyz.z < 0.0 ? -90.0 : 90.0, 0.0, std::abs(xyz.z) - semiMinorAxis};
    }
    const auto normalAt = [](double latitude) {
        const double sine = std::sin(latitude);
        return semiMajorAxis / std::sqrt(1.0 - e2 * sine * sine);
    };
    double latitude = std::atan(xyz.z / fromAxis);
    for (double before = -999.0; std::abs(latitude - before) > tolerance;) {
        before = latitude;
        latitude = std::atan((normalAt(before) * e2 * std::sin(before) + xyz.z) / fromAxis);
    }
    const double height = fromAxis / std::cos(latitude) - normalAt(latitude);
    return {latitude / pi * 180.0, std::acos(xyz.x / fromAxis) / pi * 180.0, height};
}

}  // namespace zyn
