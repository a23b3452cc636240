// Forward intersection: the point in space that rays from several images come closest to.
#pragma once

#include <zyn/camera.h>

#include <optional>

struct Intersection {
    zyn::XPnt3d point;
    int worst = 0;             ///< the observation with the largest residual
    double worstResidual = 0;  ///< on the image, in its unit
};

/// Least squares over the distances from the rays, each through the projection centre `cams[i]` and
/// the measurement `pnts[i]`. Nothing when all rays are parallel within a milliradian.
std::optional<Intersection> intersect(zyn::Pnt2dArray& pnts, zyn::CamParaArray& cams, double f);
