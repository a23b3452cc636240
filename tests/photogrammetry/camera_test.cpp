// Cameras and geodetic coordinates.
#include <zyn/camera.h>
#include <zyn/geodesy.h>
#include <zyn/geometry.h>
#include <zyn/matrix.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "seed.h"

namespace {

using namespace zyn;

class CameraTest : public testing::Test {
protected:
    std::mt19937 random{support::newSeed()};
    double uniform(double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    }
    zynCamOutParam camera(double x, double y, double z) {
        zynCamOutParam cam;
        cam.X = x;
        cam.Y = y;
        cam.Z = z;
        cam.phi = uniform(-3, 3);
        cam.omega = uniform(-3, 3);
        cam.kappa = uniform(-3, 3);
        return cam;
    }
    /// Column i of the rotation: where the image's axis i points in the world.
    static XPnt3d axis(const zynCamOutParam& cam, int i) {
        const double sp = std::sin(cam.phi), cp = std::cos(cam.phi), so = std::sin(cam.omega),
                     co = std::cos(cam.omega), sk = std::sin(cam.kappa), ck = std::cos(cam.kappa);
        // R = Ry(phi) Rx(omega) Rz(kappa), factor by factor.
        const XPnt3d unit(i == 0, i == 1, i == 2);
        const XPnt3d k(ck * unit.x - sk * unit.y, sk * unit.x + ck * unit.y, unit.z);
        const XPnt3d o(k.x, co * k.y - so * k.z, so * k.y + co * k.z);
        return {cp * o.x - sp * o.z, o.y, sp * o.x + cp * o.z};
    }
};

TEST_F(CameraTest, ProjectInvertsTheCollinearityEquations) {
    for (int i = 0; i < 1000; ++i) {
        const zynCamOutParam cam = camera(5e5, 5.4e6, 1200);
        const double x = uniform(-0.1, 0.1), y = uniform(-0.1, 0.1), f = 0.15;
        const double depth = uniform(100, 3000);
        const XPnt3d pnt = XPnt3d(cam.X, cam.Y, cam.Z) +
                           (axis(cam, 0) * x + axis(cam, 1) * y - axis(cam, 2) * f) * depth;
        const XPnt2d image = project(cam, f, pnt);
        EXPECT_NEAR(image.x, x, 1e-9);
        EXPECT_NEAR(image.y, y, 1e-9);
    }
    zynCamOutParam down = camera(100, 200, 300);
    down.phi = down.omega = down.kappa = 0;
    EXPECT_EQ(project(down, 0.1, {130, 200, 0}), XPnt2d(0.1 * 30 / 300, 0));
    EXPECT_EQ(project(down, 0.1, {100, 200, 0}), XPnt2d(0, 0));
    down.kappa = std::nan("");
    testing::internal::CaptureStderr();
    EXPECT_TRUE(std::isnan(project(down, 0.1, {130, 200, 0}).x));
    down.kappa = HUGE_VAL;
    EXPECT_TRUE(std::isnan(project(down, 0.1, {130, 200, 0}).y));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(CameraTest, CentreComesFromTheCoefficients) {
    for (const double offset : {0.0, 500000.0, 5400000.0}) {
        for (int i = 0; i < 200; ++i) {
            const zynCamOutParam cam = camera(offset + 100, offset + 200, 300);
            const double f = 0.15, x0 = 0.001, y0 = -0.002;
            // x = x0 - f u1/u3 over the third row's value at the origin.
            const XPnt3d r1 = axis(cam, 0), r2 = axis(cam, 1), r3 = axis(cam, 2);
            const XPnt3d centre(cam.X, cam.Y, cam.Z);
            const double scale = -dot(r3, centre);
            if (std::abs(scale) < 10) { continue; }
            const XPnt3d a = (r1 * f - r3 * x0) / scale, b = (r2 * f - r3 * y0) / scale;
            const XPnt3d c = r3 / scale;
            zynCamParam p;
            p.in.f = f;
            p.L1 = a.x, p.L2 = a.y, p.L3 = a.z, p.L4 = -dot(a, centre);
            p.L5 = b.x, p.L6 = b.y, p.L7 = b.z, p.L8 = -dot(b, centre);
            p.L9 = c.x, p.L10 = c.y, p.L11 = c.z;
            ASSERT_TRUE(p.calcCameraOE());
            const double tolerance = 1e-9 * (1 + offset);
            EXPECT_NEAR(p.out.X, cam.X, tolerance);
            EXPECT_NEAR(p.out.Y, cam.Y, tolerance);
            EXPECT_NEAR(p.out.Z, cam.Z, tolerance);
            EXPECT_NEAR(p.in.x0, x0, 1e-9);
            EXPECT_NEAR(p.in.y0, y0, 1e-9);
            EXPECT_TRUE(p.in.f == f && p.out.phi == unsetCamera);
        }
    }
}

TEST_F(CameraTest, NoCameraChangesNothing) {
    zynCamParam p;
    std::memset(&p.L1, 0, 11 * sizeof(double));
    EXPECT_FALSE(p.isValid());
    p.in.f = 0.001;
    EXPECT_TRUE(p.isValid());
    const double nan = std::nan(""), huge = 1e300;
    const double coefficients[][4] = {// L1, L6, L11, L4
                                      {-1, 1, 1, 1},
                                      {0, 0, 0, 0},
                                      {1, 1, 0, 1},
                                      {1, 1, nan, 1},
                                      {1e-300, 1, 1, huge}};
    std::memset(&p.in, 1, sizeof p.in);
    std::memset(static_cast<void*>(&p.out), 1, sizeof p.out);
    for (const auto& [l1, l6, l11, l4] : coefficients) {
        p.L1 = l1, p.L6 = l6, p.L11 = l11, p.L4 = l4;
        const zynCamParam before = p;
        EXPECT_FALSE(p.calcCameraOE()) << l1 << ' ' << l6 << ' ' << l11;
        EXPECT_EQ(std::memcmp(&p, &before, sizeof p), 0);
    }
    // A real camera whose first coefficient happens to be -1.
    p.L6 = 1, p.L11 = 0.5, p.L4 = 0;
    p.L1 = 1;
    EXPECT_TRUE(p.calcCameraOE());
    p.L1 = -1;
    EXPECT_FALSE(p.calcCameraOE());
    p.out.tagA = p.out.tagB = 5;
    p.L2 = 7;
    p.setInvalid();
    EXPECT_TRUE(p.out.tagA == 5 && p.out.tagB == 5 && p.L2 == 7 && p.L1 == unsetCamera);
    p.out.setInvalid();
    const ref_ptr<DoubleArray> values = p.out.toArray();
    EXPECT_EQ(std::vector<double>(values->begin(), values->end()),
              std::vector<double>(9, unsetCamera));
    const ref_ptr<ZynPOS3dSArray> positions = newZynPOS3dSArray();
    positions->resize(3);
    ZynPOS3d pos = positions->get(2);
    EXPECT_EQ(pos.getXYZ(), XPnt3d(0, 0, 0));
    pos.setAngle(XPnt3d(4, 5, 6));
    pos.setXYZ(XPnt3d(1, 2, 3));
    EXPECT_TRUE(pos.getAngle() == XPnt3d(4, 5, 6) && pos.getXYZ() == XPnt3d(1, 2, 3));
}

TEST(Geodesy, KnownPlacesAndTheWayBack) {
    EXPECT_EQ(BLH2WGS({0, 0, 0}), XPnt3d(6378137.0, 0, 0));
    const XPnt3d pole = BLH2WGS({90, 0, 0});
    EXPECT_TRUE(pole.x > 3e-10 && pole.x < 5e-10 && pole.y == 0 && pole.z == 6356752.314249948);
    // P is not 0 there, so that the formula holds; H divides by the cosine.
    EXPECT_NEAR(WGS2BLH(pole).x, 90, 1e-9);

    std::vector<double> longitudes{0, 0.01, 179.99, 180};
    for (double l = 7.3; l < 180; l += 7.3) { longitudes.push_back(l); }
    for (const double l : longitudes) {
        for (const double b : {-89.0, -48.25, -1e-7, 0.0, 30.0, 75.5, 89.9}) {
            const XPnt3d blh(b, l, 432.1), xyz = BLH2WGS(blh);
            const XPnt3d there = BLH2WGS(WGS2BLH(xyz));
            EXPECT_LT(dist(there, xyz), l == 0 || l == 180 ? 1e-4 : 1e-5) << b << ' ' << l;
            EXPECT_NEAR(WGS2BLH(xyz).x, b, 1e-8);
            EXPECT_NEAR(WGS2BLH(BLH2WGS({b, -l, 0})).y, l,
                        1e-5);  // the west comes back as the east
        }
    }
}

TEST(Geodesy, TheAxis) {
    const double b = 6378137.0 * std::sqrt(1 - 0.006694379990126453);
    EXPECT_EQ(WGS2BLH({0, 0, 7e6}), XPnt3d(90, 0, 7e6 - b));
    EXPECT_EQ(WGS2BLH({0, -0.0, -7e6}), XPnt3d(-90, 0, 7e6 - b));
    EXPECT_EQ(WGS2BLH({0, 0, -0.0}), XPnt3d(90, 0, -b));
    EXPECT_TRUE(std::isnan(WGS2BLH({std::nan(""), 0, 0}).x));
    EXPECT_FALSE(std::isfinite(WGS2BLH({HUGE_VAL, 1, 1}).y));
}

}  // namespace
