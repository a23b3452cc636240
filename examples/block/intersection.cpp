#include "intersection.h"

#include <zyn/geometry.h>
#include <zyn/matrix.h>

#include <algorithm>
#include <cmath>

using namespace zyn;

namespace {

/// Returns the direction from the projection centre through a point on the image: R (x, y, -f).
XPnt3d rayThrough(const XPnt2d& p, const zynCamOutParam& cam, double f) {
    const double sp = std::sin(cam.phi), cp = std::cos(cam.phi);
    const double so = std::sin(cam.omega), co = std::cos(cam.omega);
    const double sk = std::sin(cam.kappa), ck = std::cos(cam.kappa);
    const double x = ck * p.x - sk * p.y, y = sk * p.x + ck * p.y;  // about Z
    const double y2 = co * y + so * f, z2 = so * y - co * f;        // about X
    XPnt3d ray(cp * x - sp * z2, y2, sp * x + cp * z2);             // about Y
    return ray / std::sqrt(dot(ray, ray));
}

}  // namespace

std::optional<Intersection> intersect(Pnt2dArray& pnts, CamParaArray& cams, double f) {
    // Each ray c + t d requires (I - d d') p = (I - d d') c. Coordinates are relative to the first
    // centre.
    const XPnt3d origin(cams.getRef(0).X, cams.getRef(0).Y, cams.getRef(0).Z);
    matrix<double> normal(3, 3), right(3, 1);
    constexpr double leastAngle = 1e-3;
    double widest = 0;
    const XPnt3d firstRay = rayThrough(pnts.get(0), cams.getRef(0), f);
    for (int i = 0; i < pnts.size(); ++i) {
        const zynCamOutParam& cam = cams.getRef(i);
        const XPnt3d d = rayThrough(pnts.get(i), cam, f), c = XPnt3d(cam.X, cam.Y, cam.Z) - origin;
        const XPnt3d across = cross(firstRay, d);
        widest = std::max(widest, std::sqrt(dot(across, across)));
        for (int r = 0; r < 3; ++r) {
            for (int k = 0; k < 3; ++k) {
                const double weight = double(r == k) - d[r] * d[k];
                normal.getRef(r, k) += weight;
                right.getRef(r, 0) += weight * c[k];
            }
        }
    }
    if (widest < leastAngle || !normal.invert()) { return {}; }
    const matrix<double> p = normal * right;
    Intersection result;
    result.point = origin + XPnt3d(p.get(0, 0), p.get(1, 0), p.get(2, 0));
    for (int i = 0; i < pnts.size(); ++i) {
        const double residual = dist(project(cams.getRef(i), f, result.point), pnts.get(i));
        if (!(residual <= result.worstResidual)) {  // NaN is bad too
            result.worst = i;
            result.worstResidual = residual;
        }
    }
    return result;
}
