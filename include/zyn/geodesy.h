/// @file
/// Geodetic and earth-centred Cartesian coordinates on the WGS 84 ellipsoid.
///
///     XPnt3d xyz = BLH2WGS(XPnt3d(48.0, 11.0, 520.0));    // latitude, longitude, height
///     XPnt3d blh = WGS2BLH(xyz);
///
/// Latitude and longitude are in degrees, heights above the ellipsoid and coordinates in metres.
#pragma once

#include <zyn/export.h>
#include <zyn/point.h>

namespace zyn {

/// X, Y, Z from latitude x, longitude y, height z. e^2 is 0.0066943799886513.
[[nodiscard]] ZYN_EXPORT XPnt3d BLH2WGS(const XPnt3d& blh) noexcept;

/// Latitude x, longitude y, height z from X, Y, Z, by iteration on the latitude to 1e-10 radians. e^2
/// is 0.006694379990126453. The longitude is an arc cosine: it lies between 0 and 180, that of a
/// point in the west comes back positive, and near 0 and 180 it is good to about 1e-6 degrees only.
/// On the axis: (90, 0, Z - b), in the south (-90, 0, -Z - b), with the semi-minor axis b.
[[nodiscard]] ZYN_EXPORT XPnt3d WGS2BLH(const XPnt3d& xyz) noexcept;

}  // namespace zyn
