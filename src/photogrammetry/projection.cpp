#include <zyn/camera.h>

// Keeps Armadillo from printing warnings about systems that it cannot solve.
#define ARMA_WARN_LEVEL 0
#include <armadillo>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace zyn {

namespace {

arma::mat33 rotationOf(const zynCamOutParam& cam) {
    const ZynMatrix4d m = rotationMatrix(cam);
    arma::mat33 rotation;
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) { rotation.at(arma::uword(r), arma::uword(c)) = m[r][c]; }
    }
    return rotation;
}

/// Rotates the columns of `fromCentre` into the image system by solving for `u`. Does not use
/// inv(), which throws if there is no inverse.
bool toImage(arma::mat& u, const arma::mat33& rotation, const arma::mat& fromCentre) {
    return rotation.is_finite() &&
           arma::solve(u, rotation, fromCentre, arma::solve_opts::no_approx);
}

void setFromCentre(double* column, const zynCamOutParam& cam, const XPnt3d& pnt) {
    column[0] = pnt.x - cam.X;
    column[1] = pnt.y - cam.Y;
    column[2] = pnt.z - cam.Z;
}

XPnt2d onImage(const double* u, double f) { return {-f * u[0] / u[2], -f * u[1] / u[2]}; }

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

}  // namespace

XPnt2d project(const zynCamOutParam& cam, double f, const XPnt3d& pnt) {
    arma::mat d(3, 1), u;
    setFromCentre(d.memptr(), cam, pnt);
    return toImage(u, rotationOf(cam), d) ? onImage(u.memptr(), f) : XPnt2d(nan, nan);
}

// Solves for as many points at once as fit into the first-level cache.
std::vector<XPnt2d> projectAll(const zynCamOutParam& cam, double f, std::span<const XPnt3d> pnts) {
    constexpr std::size_t most = 128;
    std::vector<XPnt2d> images(pnts.size(), XPnt2d(nan, nan));
    const arma::mat33 rotation = rotationOf(cam);
    arma::mat d, u;
    for (std::size_t first = 0; first < pnts.size(); first += most) {
        const auto part = pnts.subspan(first, std::min(most, pnts.size() - first));
        d.set_size(3, part.size());
        for (arma::uword i = 0; i < d.n_cols; ++i) { setFromCentre(d.colptr(i), cam, part[i]); }
        if (!toImage(u, rotation, d)) { break; }
        for (arma::uword i = 0; i < u.n_cols; ++i) { images[first + i] = onImage(u.colptr(i), f); }
    }
    return images;
}

}  // namespace zyn
