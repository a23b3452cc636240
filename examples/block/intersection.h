// Forward intersection: the point in space that is closest to rays from several images.
#pragma once

#include <zyn/camera.h>

#include <optional>

struct Intersection {
    zyn::XPnt3d point;
    int worst = 0;             ///< the observation with the largest residual
    double worstResidual = 0;  ///< in the unit of the image
};

/// Returns the least-squares point for the distances to the rays, each through the projection
/// centre `cams[i]` and the measurement `pnts[i]`. Returns nothing if all rays are parallel within
/// a milliradian.
std::optional<Intersection> intersect(zyn::Pnt2dArray& pnts, zyn::CamParaArray& cams, double f);
