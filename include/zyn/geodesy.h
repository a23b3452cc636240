/// @file
/// Geodetic and earth-centred Cartesian coordinates on the WGS 84 ellipsoid.
///
///     XPnt3d xyz = BLH2WGS(XPnt3d(48.0, 11.0, 520.0));    // latitude, longitude, height
///     XPnt3d blh = WGS2BLH(xyz);                          // latitude, longitude, height
///     const double metres = dist(xyz, BLH2WGS(XPnt3d(48.0, 11.001, 520.0)));    // geometry.h
///
/// Latitude and longitude are in degrees. Heights above the ellipsoid and Cartesian coordinates are
/// in metres. Threads: any number may call these functions at once.
#pragma once

#include <zyn/export.h>
#include <zyn/point.h>

namespace zyn {

/// Returns X, Y, Z for latitude x, longitude y and height z. Uses e^2 = 0.0066943799886513.
[[nodiscard]] ZYN_EXPORT XPnt3d BLH2WGS(const XPnt3d& blh) noexcept;

/// Returns latitude x, longitude y and height z for X, Y, Z. Iterates on the latitude to 1e-10
/// radians. Uses e^2 = 0.006694379990126453.
///
/// The longitude is an arc cosine, from 0 to 180 degrees: for a point in the west it comes back
/// positive. Near 0 and 180 it is accurate only to about 1e-6 degrees. On the axis the result is
/// (90, 0, Z - b), in the south (-90, 0, -Z - b), with the semi-minor axis b.
[[nodiscard]] ZYN_EXPORT XPnt3d WGS2BLH(const XPnt3d& xyz) noexcept;

}  // namespace zyn
