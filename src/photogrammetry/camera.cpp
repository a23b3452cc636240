#include <zyn/camera.h>
#include <zyn/matrix.h>

#include "containers/array_imp.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace zyn {

using namespace detail;

namespace {

void unsetOrientation(zynCamOutParam& cam) {
    cam.X = cam.Y = cam.Z = unsetCamera;
    cam.phi = cam.omega = cam.kappa = unsetCamera;
}

constexpr auto unsetIndex = static_cast<std::int32_t>(unsetCamera);

}  // namespace

void zynCamOutParam::setInvalid() noexcept {
    unsetOrientation(*this);
    tagA = imageIndex = tagB = unsetIndex;
}

DoubleArray* zynCamOutParam::toArray() const {
    auto values = std::make_unique<ArrayImp<DoubleArray>>();
    const double all[] = {X,           Y, Z, phi, omega, kappa, double(tagA), double(imageIndex),
                          double(tagB)};
    values->assign(all, 9);
    return values.release();
}

zynCamParam::zynCamParam() noexcept { setInvalid(); }

void zynCamParam::setInvalid() noexcept {
    in.x0 = in.y0 = in.f = unsetCamera;
    unsetOrientation(out);
    out.imageIndex = unsetIndex;
    L1 = unsetCamera;
}

bool zynCamParam::calcCameraOE() {
    if (L1 == -1.0) { return false; }
    const double s = 1.0 / (L9 * L9 + L10 * L10 + L11 * L11);
    const double x0 = -(L9 * L1 + L10 * L2 + L11 * L3) * s;
    const double y0 = -(L9 * L5 + L10 * L6 + L11 * L7) * s;

    matrix<double> a(3, 3), b(3, 1);
    const double coefficients[3][4] = {{L1, L2, L3, -L4}, {L5, L6, L7, -L8}, {L9, L10, L11, -1.0}};
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) { a.set(r, c, coefficients[r][c]); }
        b.set(r, 0, coefficients[r][3]);
    }
    if (!a.invert()) { return false; }
    const matrix<double> centre = a * b;
    for (int i = 0; i < 3; ++i) {
        if (!std::isfinite(centre.get(i, 0))) { return false; }
    }
    in.x0 = x0;
    in.y0 = y0;
    out.X = centre.get(0, 0);
    out.Y = centre.get(1, 0);
    out.Z = centre.get(2, 0);
    return true;
}

ZynMatrix4d rotationMatrix(const zynCamOutParam& cam) noexcept {
    const double sp = std::sin(cam.phi), cp = std::cos(cam.phi);
    const double so = std::sin(cam.omega), co = std::cos(cam.omega);
    const double sk = std::sin(cam.kappa), ck = std::cos(cam.kappa);
    const double rows[3][3] = {{cp * ck - sp * so * sk, -cp * sk - sp * so * ck, -sp * co},
                               {co * sk, co * ck, -so},
                               {sp * ck + cp * so * sk, -sp * sk + cp * so * ck, cp * co}};
    ZynMatrix4d m;
    m.setIdentity();
    for (int r = 0; r < 3; ++r) { std::copy_n(rows[r], 3, &m[r][0]); }
    return m;
}

CamParaArray* newCamParaArray() { return new ArrayImp<CamParaArray>; }
ZynPOS3dSArray* newZynPOS3dSArray() { return new ArrayImp<ZynPOS3dSArray>; }
ImagePOSArray* newImagePOSArray() { return new ArrayImp<ImagePOSArray>; }

}  // namespace zyn
