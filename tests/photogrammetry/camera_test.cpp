// Cameras and geodetic coordinates.
#include <zyn/camera.h>
#include <zyn/geodesy.h>
#include <zyn/geometry.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <random>
#include <vector>

#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

class Camera : public testing::Test {
protected:
    std::mt19937 random{support::newSeed()};
    double uniform(double low, double high) {
        return std::uniform_real_distribution(low, high)(random);
    }
    zynCamOutParam camera(const XPnt3d& centre) {
        zynCamOutParam cam;
        cam.X = centre.x, cam.Y = centre.y, cam.Z = centre.z;
        cam.phi = uniform(-3, 3), cam.omega = uniform(-3, 3), cam.kappa = uniform(-3, 3);
        return cam;
    }
    /// Returns the vector of the image in the world: R = Ry(phi) Rx(omega) Rz(kappa), factor by
    /// factor.
    static XPnt3d inWorld(const zynCamOutParam& cam, const XPnt3d& v) {
        const std::complex<double> k = std::complex(v.x, v.y) * std::polar(1.0, cam.kappa),
                                   o = std::complex(k.imag(), v.z) * std::polar(1.0, cam.omega),
                                   p = std::complex(k.real(), o.imag()) * std::polar(1.0, cam.phi);
        return {p.real(), o.real(), p.imag()};
    }
};

TEST_F(Camera, ProjectInvertsTheCollinearityEquations) {
    const XPnt3d centre(5e5, 5.4e6, 1200);
    zynCamOutParam cam;
    for (int i = 0; i < 1000; ++i) {
        cam = camera(centre);
        const double x = uniform(-0.1, 0.1), y = uniform(-0.1, 0.1), f = 0.15;
        const XPnt3d ray = inWorld(cam, {x, y, -f});
        const XPnt2d image = project(cam, f, centre + ray * uniform(100, 3000));
        EXPECT_NEAR(image.x, x, 1e-9);
        EXPECT_NEAR(image.y, y, 1e-9);
    }
    testing::internal::CaptureStderr();
    for (const double kappa : {std::nan(""), HUGE_VAL}) {
        cam.kappa = kappa;
        EXPECT_TRUE(std::isnan(project(cam, 0.1, {130, 200, 0}).x));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(Camera, ProjectAllAgreesWithProject) {
    const XPnt3d centre(5e5, 5.4e6, 1200);
    for (const std::size_t count : {0U, 1U, 127U, 128U, 129U, 300U}) {
        zynCamOutParam cam = camera(centre);
        std::vector<XPnt3d> points(count);
        for (XPnt3d& p : points) {
            const XPnt3d v(uniform(-0.1, 0.1), uniform(-0.1, 0.1), -0.15), ray = inWorld(cam, v);
            EXPECT_LT(dist(rotationMatrix(cam) * v, ray), 1e-15);
            p = centre + ray * uniform(100, 3000);
        }
        const std::vector<XPnt2d> images = projectAll(cam, 0.15, points);
        ASSERT_EQ(images.size(), count);
        for (std::size_t i = 0; i < count; ++i) {
            EXPECT_LT(dist(images[i], project(cam, 0.15, points[i])), 1e-14) << i;
        }
        cam.phi = HUGE_VAL;
        for (const XPnt2d& p : projectAll(cam, 0.15, points)) { EXPECT_TRUE(std::isnan(p.y)); }
    }
}

TEST_F(Camera, OrientationFollowsFromTheElevenCoefficients) {
    for (int i = 0; i < 600; ++i) {
        const double offset = i % 3 == 0 ? 0 : i % 3 == 1 ? 5e5 : 5.4e6;
        const XPnt3d centre(offset + 100, offset + 200, 300);
        const zynCamOutParam cam = camera(centre);
        const double f = 0.15, x0 = 0.001, y0 = -0.002;
        // x = x0 - f u1/u3 over the third row's value at the origin.
        const XPnt3d r3 = inWorld(cam, {0, 0, 1});
        const double scale = -dot(r3, centre);
        if (std::abs(scale) < 10) { continue; }
        const XPnt3d a = inWorld(cam, {f, 0, -x0}) / scale, b = inWorld(cam, {0, f, -y0}) / scale,
                     c = r3 / scale;
        zynCamParam p;
        p.in.f = f;
        p.L1 = a.x, p.L2 = a.y, p.L3 = a.z, p.L4 = -dot(a, centre);
        p.L5 = b.x, p.L6 = b.y, p.L7 = b.z, p.L8 = -dot(b, centre);
        p.L9 = c.x, p.L10 = c.y, p.L11 = c.z;
        ASSERT_TRUE(p.calcCameraOE());
        EXPECT_LT(dist(XPnt3d(p.out.X, p.out.Y, p.out.Z), centre), 1e-9 * (1 + offset));
        EXPECT_NEAR(p.in.x0, x0, 1e-9);
        EXPECT_NEAR(p.in.y0, y0, 1e-9);
        EXPECT_EQ(p.in.f, f);
        EXPECT_EQ(p.out.phi, unsetCamera);
    }
}

TEST_F(Camera, CoefficientsOfNoCameraChangeNothing) {
    zynCamParam p;
    std::memset(&p.L1, 0, 11 * sizeof(double));
    p.out.tagA = p.out.tagB = 5;
    const double coefficients[][4] = {                  // L1, L6, L11, L4
                                      {-1, 1, 0.5, 0},  // a real camera, except for the mark
                                      {0, 0, 0, 0},
                                      {1, 1, 0, 1},
                                      {1, 1, std::nan(""), 1},
                                      {1e-300, 1, 1, 1e300}};
    std::memset(&p.in, 1, sizeof p.in);
    for (const auto& [l1, l6, l11, l4] : coefficients) {
        p.L1 = l1, p.L6 = l6, p.L11 = l11, p.L4 = l4;
        const zynCamParam before = p;
        EXPECT_FALSE(p.calcCameraOE()) << l1 << ' ' << l6 << ' ' << l11;
        EXPECT_EQ(std::memcmp(&p, &before, sizeof p), 0);
    }
    p.setInvalid();
    EXPECT_EQ(p.out.tagA, 5);
    EXPECT_EQ(p.out.tagB, 5);
    EXPECT_EQ(p.L6, 1);
    EXPECT_EQ(p.L1, unsetCamera);
    const ref_ptr<DoubleArray> values = p.out.toArray();
    ASSERT_EQ(values->size(), 9);
    EXPECT_EQ(values->get(6), 5);
    EXPECT_EQ(values->get(7), unsetCamera);
}

TEST(Geodesy, CoordinatesConvertThereAndBack) {
    EXPECT_EQ(BLH2WGS({0, 0, 0}), XPnt3d(6378137.0, 0, 0));
    const XPnt3d pole = BLH2WGS({90, 0, 0});
    EXPECT_GT(pole.x, 3e-10);
    EXPECT_LT(pole.x, 5e-10);
    EXPECT_EQ(pole.y, 0);
    EXPECT_EQ(pole.z, 6356752.314249948);
    // p is not 0 at this pole, so the general formula applies; only the height divides by a cosine.
    EXPECT_NEAR(WGS2BLH(pole).x, 90, 1e-9);

    for (const double l : {0.0, 0.01, 7.3, 65.7, 89.9, 90.0, 95.0, 138.7, 179.99, 180.0}) {
        for (const double b : {-89.0, -48.25, -1e-7, 0.0, 30.0, 75.5, 89.9}) {
            const XPnt3d xyz = BLH2WGS({b, l, 432.1}), blh = WGS2BLH(xyz);
            EXPECT_LT(dist(BLH2WGS(blh), xyz), l == 0 || l == 180 ? 1e-4 : 1e-5) << b << ' ' << l;
            EXPECT_NEAR(blh.x, b, 1e-8);
            EXPECT_NEAR(WGS2BLH(BLH2WGS({b, -l, 0})).y, l,
                        1e-5);  // western longitudes return as eastern ones
        }
    }
}

TEST(Geodesy, PointsOnTheAxisHaveTheLatitudeOfAPole) {
    const double b = 6378137.0 * std::sqrt(1 - 0.006694379990126453);
    EXPECT_EQ(WGS2BLH({0, 0, 7e6}), XPnt3d(90, 0, 7e6 - b));
    EXPECT_EQ(WGS2BLH({0, -0.0, -7e6}), XPnt3d(-90, 0, 7e6 - b));
    EXPECT_EQ(WGS2BLH({0, 0, -0.0}), XPnt3d(90, 0, -b));
    EXPECT_TRUE(std::isnan(WGS2BLH({std::nan(""), 0, 0}).x));  // and the iteration ends
}

}  // namespace
