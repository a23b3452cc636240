#include <gtest/gtest.h>
#include <zyn/geometry.h>
#include <zyn/point.h>

#include <QLocale>
#include <QString>
#include <algorithm>
#include <array>
#include <clocale>
#include <cmath>
#include <concepts>
#include <limits>
#include <type_traits>

#include "random_points.h"

namespace zyn {
namespace {

template <class A, class B>
concept Comparable = requires(A a, B b) { a == b; };
template <class A, class B>
concept Subtractable = requires(A a, B b) { a - b; };

// What looks like a point or an address by accident is neither.
static_assert(!std::is_constructible_v<XPnt3f, std::nullptr_t>);
static_assert(!std::is_constructible_v<XPnt3d, std::nullptr_t>);
static_assert(!std::is_constructible_v<XPnt3d, float*> &&
              !std::is_constructible_v<XPnt3f, double*>);
static_assert(!std::is_convertible_v<double, XPnt3d> && !std::is_convertible_v<double*, XPnt3d>);
static_assert(!std::is_assignable_v<XPnt3d&, std::nullptr_t> &&
              !std::is_assignable_v<XPnt3f&, int>);
static_assert(!std::is_constructible_v<XPnt2f, float*> && !std::is_constructible_v<XPnt2f, int>);
static_assert(!std::is_constructible_v<XPnt2f, XPnt3f> && !std::is_constructible_v<XPnt2d, bool>);
static_assert(!Comparable<XPnt3d, double*> && !Comparable<XPnt3f, const float*>);
static_assert(!Comparable<double*, PNT2D> && !Comparable<XPnt3d, std::nullptr_t>);
static_assert(!Subtractable<XPnt3d, double*> && !Subtractable<const float*, XPnt2f>);
static_assert(Comparable<XPnt3f, XPnt3f> && Comparable<XPnt3d, PNT3D>);
static_assert(!Comparable<XPnt3f, XPnt3d> && !Comparable<XPnt2d, XPnt3d>);
// An address comes out of a point, and only that of its own coordinates.
static_assert(std::is_convertible_v<XPnt3d, double*> &&
              std::is_convertible_v<XPnt2f, const float*>);
static_assert(!std::is_convertible_v<const XPnt3d, double*> &&
              !std::is_convertible_v<XPnt2d, double*>);
static_assert(!std::is_convertible_v<XPnt3d, float*> && !std::is_convertible_v<XPnt3d, bool>);
static_assert(sizeof(XPnt2d) == 16 && sizeof(XPnt3f) == 16 && sizeof(PT3<float>) == 12);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Points, DefaultsAndInvalidMarks) {
    EXPECT_EQ(PT2<double>().x, -99999.0);
    EXPECT_EQ(PT2<std::int32_t>().y, -99999);
    EXPECT_EQ(XPnt2d().y, -2147483647.0);
    EXPECT_EQ(XPnt2f().x, -99999.0f);
    EXPECT_TRUE(XPnt2f(false).isValid());
    EXPECT_FALSE(XPnt2f(true).isValid());
    EXPECT_EQ(XPnt3d(), XPnt3d(0, 0, 0));
    EXPECT_FALSE(TagPnt3d().isValid());
    EXPECT_EQ(TagPnt3d(1, 2, 3).tag, -1);

    XPnt3f p(1, 2, 3, 7);
    p.setInvalid();
    EXPECT_FALSE(p.isValid());
    EXPECT_EQ(p.inten, 7);
    p = {};
    EXPECT_EQ(p.inten, 0);

    // The smaller mark means nothing in double, and a NaN is valid in an XPnt2d only.
    EXPECT_TRUE(XPnt2d(PT2<double>()).isValid());
    EXPECT_TRUE(XPnt2d(nan, 0).isValid());
    EXPECT_FALSE(XPnt2d(nan, 0).to2f().isValid());
    EXPECT_FALSE(XPnt3d(0, 0, nan).isValid());
    EXPECT_FALSE(XPnt3f(0, 0, -99999.0f).isValid());
    EXPECT_FALSE(XPnt3d(0, -2147483647.0, 0).isValid());
}

TEST(Points, IntensityTravelsWithTheFirstOperand) {
    const XPnt3f a(1, 2, 3, 7);
    const XPnt3f b(1, 1, 1, 9);
    EXPECT_EQ((a + b).inten, 7);
    EXPECT_EQ((2.0 * a).inten, 7);
    EXPECT_EQ((-a).inten, 0);
    EXPECT_EQ(XPnt3d(a).inten, 7);

    XPnt3d d(9, 9, 9, 5);
    d = PNT2D(1, 2);
    EXPECT_EQ(d, XPnt3d(1, 2, 0));
    d = PNT3D(1, 2, 3);
    EXPECT_EQ(d, XPnt3d(1, 2, 3));
    EXPECT_EQ(d.inten, 5);
    d = b;
    EXPECT_EQ(d.inten, 9);
    XPnt3f f(9, 9, 9, 5);
    f = XPnt2d(1, 2);
    EXPECT_EQ(f, XPnt3f(1, 2, 0));
    EXPECT_EQ(f.inten, 5);
    f = XPnt3d(1, 2, 3, 8);
    EXPECT_EQ(f.inten, 8);
}

TEST(Points, ScalingMultipliesByTheReciprocalAndSparesZero) {
    EXPECT_EQ((XPnt3d(49, 0, 0) / 49).x, std::nextafter(1.0, 0.0));
    XPnt3d p(1, -1, 0);
    p /= 0.0;
    EXPECT_EQ(p.x, std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(p.z));
    EXPECT_EQ(XPnt3f().normalize(), XPnt3f());
    EXPECT_EQ(XPnt3f().set_norm(3), XPnt3f());
    EXPECT_EQ(XPnt3d(0, 3, 4).set_norm(10), XPnt3d(0, 6, 8));
}

TEST(Points, IndicesOutsideTheRangeMeanX) {
    XPnt3d p(1, 2, 3);
    EXPECT_EQ(p[std::size_t(2)], 3);
    EXPECT_EQ(p[5], 1);
    EXPECT_EQ(p[-1], 1);
    EXPECT_EQ(p[std::size_t(1) << 32], 1);
    EXPECT_EQ(p[(std::size_t(1) << 32) + 1], 1);
    EXPECT_EQ(p.set(5, 9.0), XPnt3d(1, 2, 3));
    EXPECT_EQ(p.set(-1, 9.0), XPnt3d(1, 2, 3));
    EXPECT_EQ(XPnt2d(1, 2)[2u], 1);
}

template <class T>
class PointTransforms : public testing::Test {};
using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(PointTransforms, Precisions);

TYPED_TEST(PointTransforms, TheTranslationStandsInTheLastRow) {
    using T = TypeParam;
    // A quarter turn about z that takes a row vector (1, 0, 0) to (0, 1, 0); 9 marks what is not read.
    const T m[16] = {0, 1, 0, 9, -1, 0, 0, 9, 0, 0, 1, 9, 10, 20, 30, 9};
    EXPECT_EQ((XPnt3<T>(1, 2, 3).xform(m)), (XPnt3<T>(8, 21, 33)));
    const T r[3][3] = {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}};
    EXPECT_EQ((XPnt3<T>(1, 2, 3).xform(r, m + 12)), (XPnt3<T>(8, 21, 33)));
    EXPECT_EQ((XPnt3<T>().setRotated(XPnt3<T>(1, 2, 3), r)), (XPnt3<T>(-2, 1, 3)));
}

TYPED_TEST(PointTransforms, InvxformUndoesXform) {
    using T = TypeParam;
    RandomPoints random(61);
    for (int round = 0; round < 100; ++round) {
        XPnt3<T> row[3] = {random.point<T>(1).normalize()};
        row[1] = cross(row[0], random.point<T>(1)).normalize();
        row[1] = (row[1] - row[0] * dot(row[0], row[1])).normalize();  // what rounding left over
        row[2] = cross(row[0], row[1]);
        const XPnt3<T> t = random.point<T>(10);
        T r[3][3];
        T m[16] = {};
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) { r[i][j] = m[4 * j + i] = row[i][j]; }
            m[12 + i] = t[i];
        }
        const XPnt3<T> p = random.point<T>(10);
        XPnt3<T> q = p;
        const T tolerated = 100 * std::numeric_limits<T>::epsilon();
        EXPECT_LT(dist(p, q.xform(m).invxform(m)), tolerated);
        EXPECT_LT(dist(p, q.xform(r, t).invxform(r, t)), tolerated);
        EXPECT_LT(dist(XPnt3<T>(p).xform(m), XPnt3<T>(p).xform(r, t)), tolerated);
    }
}

TYPED_TEST(PointTransforms, TheTargetMayBeAnArgument) {
    using T = TypeParam;
    const T r[3][3] = {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}};
    XPnt3<T> p(1, 2, 3);
    EXPECT_EQ(p.setRotated(p, r), (XPnt3<T>(-2, 1, 3)));
    EXPECT_EQ(p.setXformed(p, r, p), (XPnt3<T>(-3, -1, 6)));
    EXPECT_EQ(p.lerp(T(0.5), XPnt3<T>(1, 1, 0), p), (XPnt3<T>(-1, 0, 3)));
    for (int target = 0; target < 3; ++target) {
        XPnt3<T> corners[3] = {{1, 0, 0}, {-1, 0, 0}, {T(0), T(1.5), T(0)}};
        XPnt3<T>& centre = corners[target];
        const T radius = centre.smallest_circle(corners[0], corners[1], corners[2]);
        EXPECT_NEAR(double(radius), 3.25 / 3, 1e-6);
        EXPECT_NEAR(double(centre.y), 1.25 / 3, 1e-6);
    }
}

TYPED_TEST(PointTransforms, SmallestCircle) {
    using T = TypeParam;
    XPnt3<T> centre(0, 0, 0, 4);
    EXPECT_EQ(centre.smallest_circle({0, 0, 0}, {1, 0, 0}, {5, 0, 0}), T(2.5));
    EXPECT_EQ(centre, (XPnt3<T>(T(2.5), 0, 0)));
    EXPECT_EQ(centre.inten, 4);
    EXPECT_EQ(centre.smallest_circle({0, 0, 0}, {6, 0, 0}, {0, 8, 0}), T(5));
    EXPECT_EQ(centre, (XPnt3<T>(3, 4, 0)));
    EXPECT_EQ(centre.smallest_circle({1, 2, 3}, {1, 2, 3}, {1, 2, 3}), T(0));
    EXPECT_EQ(centre, (XPnt3<T>(1, 2, 3)));
    const T radius = centre.smallest_circle({-1, 0, 0}, {1, 0, 0}, {0, std::sqrt(T(3)), 0});
    EXPECT_NEAR(double(radius), 2 / std::sqrt(3.0), 1e-6);

    // The radius is a·b·c / (4·area) or half the longest side, whichever a triangle calls for.
    RandomPoints random(62);
    const double tolerated = 1e3 * double(std::numeric_limits<T>::epsilon());
    for (int round = 0; round < 1000; ++round) {
        const XPnt3<T> a = random.point<T>(1), b = random.point<T>(1), c = random.point<T>(1);
        std::array<double, 3> side{dist(XPnt3d(a), XPnt3d(b)), dist(XPnt3d(b), XPnt3d(c)),
                                   dist(XPnt3d(c), XPnt3d(a))};
        std::sort(side.begin(), side.end());
        const double area = cross(XPnt3d(a), XPnt3d(b), XPnt3d(c)).norm() / 2;
        const bool acute = side[2] * side[2] < side[0] * side[0] + side[1] * side[1];
        const double expected = acute ? side[0] * side[1] * side[2] / (4 * area) : side[2] / 2;
        const double r = double(centre.smallest_circle(a, b, c));
        EXPECT_NEAR(r, expected, tolerated);
        for (const XPnt3<T>& p : {a, b, c}) { EXPECT_LT(double(dist(p, centre)), r + tolerated); }
    }
}

TEST(PointText, IsTheSameUnderAnyLocale) {
    const QLocale defaultLocale;
    QLocale::setDefault(QLocale(QLocale::German));
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    for (const double v : {0.0, -0.5, 1234567.0, 1e-7, 1e300, 123456.5, -2147483647.0}) {
        const QString expected =
            QString(QLatin1String("%1,%2")).arg(v, 0, 'g', -1).arg(-v, 0, 'g', -1);
        EXPECT_EQ(XPnt2d(v, -v).toString(10), expected) << v;
    }
    EXPECT_EQ(XPnt2d(1234567, 0.25).toString(0), QLatin1String("1.23457e+06,0.25"));
    XPnt2d p(7, 8);
    EXPECT_TRUE(p.frString(QLatin1String("1.5,-2e3")));
    EXPECT_EQ(p, XPnt2d(1.5, -2000));
    for (const char* text : {"", "1", "1,", ",2", "1;2", "1,2,3", "1,5;2,5", "1x,2", "1,2x"}) {
        EXPECT_FALSE(p.frString(QLatin1String(text))) << text;
        EXPECT_EQ(p, XPnt2d(1.5, -2000)) << text;
    }
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(defaultLocale);
}

}  // namespace
}  // namespace zyn
