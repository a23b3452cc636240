#include <gtest/gtest.h>
#include <zyn/geometry.h>

#include <QString>
#include <algorithm>
#include <array>
#include <cmath>
#include <concepts>
#include <limits>
#include <numbers>

#include "random_points.h"

namespace zyn {
namespace {

// No literal null becomes an address, and no point lends coordinates that it does not have.
template <class P>
concept AreaTakesNull =
    requires(P p) { area3d(p, 0, p); } || requires(P p) { area3d(p, p, nullptr); };
template <class P>
concept HasArea = requires(P p) { area3d(p, p, p); };
template <class P>
concept SideTakesNull = requires(P p) { left_right(p, nullptr, p); };
template <class... A>
concept ComparesEqual = requires(A... a) { IsEqual(a...); };
template <class P>
concept HasMiddle = requires(P p) { midPnt(p, p); };
template <class P, class Q>
concept HasDot = requires(P p, Q q) { dot(p, q); };

static_assert(HasArea<double*> && HasArea<const double*> && HasArea<XPnt3d> && HasArea<PNT3D>);
static_assert(!HasArea<XPnt2d> && !HasArea<double (&)[2]> && !HasArea<float*> && !HasArea<XPnt3f>);
static_assert(!AreaTakesNull<double*> && !AreaTakesNull<XPnt3d>);
static_assert(!SideTakesNull<double*> && !SideTakesNull<XPnt2f>);
static_assert(ComparesEqual<const XPnt3d*, XPnt3d*, int> && ComparesEqual<QString, QString, bool>);
static_assert(!ComparesEqual<std::nullptr_t, std::nullptr_t, int>);
static_assert(!ComparesEqual<std::nullptr_t, std::nullptr_t, bool>);
static_assert(!ComparesEqual<XPnt3d*, std::nullptr_t, int>);
static_assert(!ComparesEqual<const char*, const char*, bool>);
static_assert(HasMiddle<XPnt3f> && !HasMiddle<XPnt3d>);
static_assert(HasDot<TagPnt3d, XPnt3d> && !HasDot<XPnt3d, XPnt3f>);

// The triangle of many tests; its corners differ in `inten`.
template <class T>
const XPnt3<T> unitA(0, 0, 0, 1);
template <class T>
const XPnt3<T> unitB(1, 0, 0, 2);
template <class T>
const XPnt3<T> unitC(0, 1, 0, 3);

/// What a result of order 1 may lose to rounding.
template <class T>
constexpr double tolerated = 1000 * double(std::numeric_limits<T>::epsilon());

template <class T>
void expectNear(const XPnt3<T>& p, const XPnt3<T>& q, double tolerance = tolerated<T>) {
    EXPECT_LE(double(dist(p, q)), tolerance) << p.x << ' ' << p.y << ' ' << p.z;
}

template <class T>
class Queries : public testing::Test {};
using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(Queries, Precisions);

TYPED_TEST(Queries, VectorAlgebraKeepsItsIntensities) {
    using P = XPnt3<TypeParam>;
    const P p(2, 3, 5, 7), q(-1, 4, 2, 9);
    EXPECT_EQ(cross(p, q), P(-14, -9, 11));
    EXPECT_EQ(cross(p, q).inten, 0);
    EXPECT_EQ(cross(unitA<TypeParam>, unitB<TypeParam>, unitC<TypeParam>), P(0, 0, 1));
    EXPECT_EQ(det(p, q, P(1, 0, 0)), 3 * 2 - 5 * 4);
    EXPECT_EQ(normal(unitA<TypeParam>, unitC<TypeParam>, unitB<TypeParam>), P(0, 0, -1));
    EXPECT_EQ(normal(unitA<TypeParam>, unitB<TypeParam>, unitB<TypeParam>), P());
    EXPECT_EQ(getPoint(p, q, 2.0), P(-4, 5, -1));
    EXPECT_EQ(getPoint(p, q, 2.0).inten, 7);
    expectNear(rotate_2d(P(1, 1, 9), std::numbers::pi_v<TypeParam> / 2, P(3, 1, 5, 7)), P(1, 3, 5));
    EXPECT_EQ(rotate_2d(P(1, 1, 9), 0, P(3, 1, 5, 7)).inten, 7);
    const XPnt3f middle = midPnt(XPnt3f(1, 0, 0, 5), XPnt3f(1, 0, 3), XPnt3f(1, 3, 0));
    EXPECT_EQ(middle, XPnt3f(1, 1, 1));
    EXPECT_EQ(middle.inten, 5);
}

TYPED_TEST(Queries, NamesOfDistancesThatMislead) {
    using P = XPnt3<TypeParam>;
    EXPECT_EQ(dist_manhattan(P(0, 0, 0), P(1, -2, 3)), 3);
    EXPECT_EQ(dist_2d(P(0, 0, 0), P(3, 4, 9)), 5);
    EXPECT_EQ(length2d(XPnt3d(0, 0, 0), XPnt3d(3, 4, 9)), 25);
    EXPECT_EQ(length(PNT3D(0, 0, 0), PNT3D(2, 3, 6)), 7);
    P foot(9, 9, 9, 9);
    EXPECT_EQ(dist2_line(P(0, 2, 0), unitA<TypeParam>, P(2, 0, 0), foot), 2);
    EXPECT_EQ(foot, P(0, 0, 0));
    EXPECT_EQ(foot.inten, 1);
    EXPECT_EQ(dist2_line(P(7, 0, 3), unitA<TypeParam>, P(2, 0, 0), foot), 3);
    EXPECT_EQ(foot, P(7, 0, 0));

    const float p[3] = {0, 0, 0}, q[3] = {2, 3, 6};
    EXPECT_EQ(length(p, q, 2), std::sqrt(13.0f));
    EXPECT_EQ(length(p, q, 3), 7);
    EXPECT_EQ(length(p, q, 4), 0);
    EXPECT_EQ(dist3f(p, q), 7);
    EXPECT_EQ(area3d(XPnt3d(0, 0, 0), XPnt3d(3, 0, 0), XPnt3d(0, 4, 0)), 6);
    EXPECT_EQ(area3f(p, q, p), 0);
}

TYPED_TEST(Queries, DistanceToATriangle) {
    using P = XPnt3<TypeParam>;
    const P &a = unitA<TypeParam>, &b = unitB<TypeParam>, &c = unitC<TypeParam>;
    EXPECT_EQ(dist2_tri(P(0.25, 0.25, 3), a, b, c), 9);
    EXPECT_EQ(dist2_tri(P(-1, -1, 0), a, b, c), 2);
    EXPECT_EQ(dist2_tri(P(2, -1, 0), a, b, c), 2);
    EXPECT_EQ(dist2_tri(P(-1, 0.5, 0), a, b, c), 1);
    // Behind the obtuse corner the corner is taken, although side ab is at a distance of 1.
    EXPECT_EQ(dist2_tri(P(1, -1, 0), P(0, 0, 0), P(4, 0, 0), P(-4, 2, 0)), 2);
    // A degenerate triangle is its side ab.
    EXPECT_EQ(dist2_tri(P(5, 1, 0), a, b, P(9, 0, 0)), 17);
    P out(8, 8, 8, 8);
    TypeParam best = 18;
    EXPECT_TRUE(closer_on_tri(P(5, 1, 0), out, a, b, P(9, 0, 0), best));
    EXPECT_EQ(out, b);
}

/// The true nearest point of a triangle: its plane's foot if each side has it on the inner side,
/// otherwise the best of the clamped feet on the three sides.
XPnt3d nearestOfTriangle(const XPnt3d& p, const std::array<XPnt3d, 3>& corners) {
    const XPnt3d n = normal(corners[0], corners[1], corners[2]);
    const XPnt3d foot = p - n * dot(p - corners[0], n);
    bool inside = true;
    XPnt3d best;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < 3; ++i) {
        const XPnt3d& from = corners[i];
        const XPnt3d side = corners[(i + 1) % 3] - from;
        inside = inside && det(n, side, foot - from) >= 0;
        const XPnt3d q = from + side * std::clamp(dot(p - from, side) / side.norm2(), 0.0, 1.0);
        if (dist(p, q) < bestDistance) {
            bestDistance = dist(p, q);
            best = q;
        }
    }
    return inside ? foot : best;
}

TYPED_TEST(Queries, NearestPointsAgreeWithASearchOverTheSides) {
    using T = TypeParam;
    using P = XPnt3<T>;
    RandomPoints random(81);
    int acuteTriangles = 0;
    int cornersTaken = 0;
    for (int round = 0; round < 20000; ++round) {
        const P a = random.point<T>(1), b = random.point<T>(1), c = random.point<T>(1);
        const P p = random.point<T>(3);
        const std::array<XPnt3d, 3> corners{XPnt3d(a), XPnt3d(b), XPnt3d(c)};
        std::array<double, 3> side2{dist2(corners[0], corners[1]), dist2(corners[1], corners[2]),
                                    dist2(corners[2], corners[0])};
        std::sort(side2.begin(), side2.end());
        const double area = cross(corners[0], corners[1], corners[2]).norm() / 2;
        if (area < 0.05 * side2[2]) { continue; }  // a sliver, whose plane is all rounding

        const XPnt3d nearest = nearestOfTriangle(XPnt3d(p), corners);
        const double expected = dist2(XPnt3d(p), nearest);
        const T d = dist2_tri(p, a, b, c);
        P out(0, 0, 0, 5);
        T best = d - T(0.01);
        EXPECT_FALSE(closer_on_tri(p, out, a, b, c, best)) << round;
        EXPECT_EQ(best, d - T(0.01));
        EXPECT_EQ(out.inten, 5);
        best = d + T(0.01);
        EXPECT_TRUE(closer_on_tri(p, out, a, b, c, best)) << round;
        EXPECT_NEAR(double(best), double(d), tolerated<T>);
        EXPECT_NEAR(double(dist2(p, out)), double(best), 10 * tolerated<T>);

        if (side2[2] < side2[0] + side2[1]) {  // acute
            ++acuteTriangles;
            EXPECT_NEAR(double(d), expected, 10 * tolerated<T>) << round;
            expectNear(out, P(nearest), 10 * tolerated<T>);
        } else if (double(d) > expected + 10 * tolerated<T>) {
            ++cornersTaken;
            EXPECT_TRUE(out == a || out == b || out == c) << round;
        }
    }
    EXPECT_GT(acuteTriangles, 1000);
    EXPECT_GT(cornersTaken, 100);
}

TYPED_TEST(Queries, CloserOnASegmentChangesNothingInVain) {
    using T = TypeParam;
    using P = XPnt3<T>;
    const P &a = unitA<T>, &b = unitB<T>;
    P out(8, 8, 8, 8);
    T best = 4;
    EXPECT_FALSE(closer_on_lineseg(P(0.5, 2, 0), out, a, b, best));
    EXPECT_FALSE(closer_on_lineseg(P(-2, 0, 0), out, a, b, best));
    EXPECT_FALSE(closer_on_lineseg(P(0.5, 1, 0), out, a, a, best));
    EXPECT_EQ(out, P(8, 8, 8));
    EXPECT_EQ(best, 4);
    EXPECT_TRUE(closer_on_lineseg(P(0.5, 1.5, 0), out, a, b, best));
    EXPECT_EQ(best, T(2.25));
    EXPECT_EQ(out, P(0.5, 0, 0));
    EXPECT_EQ(out.inten, 8);
    EXPECT_TRUE(closer_on_lineseg(P(1, 1, 0), out, a, b, best));
    EXPECT_EQ(out.inten, 2);
    EXPECT_TRUE(closer_on_tri(P(0.25, 0.25, 0.5), out, a, b, unitC<T>, best));
    EXPECT_EQ(out.inten, 0);
    EXPECT_EQ(best, T(0.25));
    EXPECT_EQ(dist2_lineseg(P(3, 1, 0), a, b), 5);
    EXPECT_EQ(dist2_lineseg(P(3, 4, 0), a, a), 25);
}

TYPED_TEST(Queries, LinesAndPlanes) {
    using T = TypeParam;
    using P = XPnt3<T>;
    const P &a = unitA<T>, &b = unitB<T>, &c = unitC<T>;
    EXPECT_EQ(above_plane(P(9, 9, 0.5), a, b, c), 1);
    EXPECT_EQ(above_plane(P(9, 9, 0), a, b, c), 0);

    for (const T height : {T(3), T(-3)}) {
        P out;
        T t = 0;
        line_plane_X(P(5, 6, height, 4), P(1, 0, 1, 9), a, b, c, out, t);
        EXPECT_EQ(out, P(5 - height, 6, 0));
        EXPECT_EQ(out.inten, 9);
        EXPECT_EQ(t, 3);
        P same;
        line_plane_X(P(5, 6, height), P(1, 0, 1, 9), P(0, 0, 2), 0, same, t);
        EXPECT_EQ(same, out);
        EXPECT_EQ(t, 3);
        line_plane_X(P(5, 6, height), P(1, 1, 0), P(0, 0, 2), 0, same, t);
        line_plane_X(P(5, 6, height), P(1, 1, 0), a, b, c, same, t);
        EXPECT_EQ(same, out);
        EXPECT_EQ(t, 3);
    }

    P out(8, 8, 8, 8);
    EXPECT_FALSE(lines_intersect(a, b, P(0, 1, 0), P(1, 1, T(1e-4)), out));
    EXPECT_EQ(out, P(8, 8, 8));
    EXPECT_TRUE(lines_intersect(a, b, P(4, -1, 7), P(4, 2, 7), out));
    EXPECT_EQ(out, P(4, 0, 0));
    EXPECT_EQ(out.inten, 1);

    EXPECT_EQ(angle(P(1, 2, 3), P(-2, -4, -6)), 0);
    EXPECT_NEAR(double(angle(P(1, 0, 0), P(0, -5, 0))), std::numbers::pi / 2, 1e-6);
    EXPECT_EQ(angle(P(1, 0, 0), P(1, T(1e-3), 0)), 0);
    EXPECT_NEAR(double(angle(P(1, 0, 0), P(-1, T(2e-3), 0))), 2e-3, 5e-5);
    EXPECT_NEAR(double(angle(P(5, 5, 5), P(6, 5, 5), P(1, 1, 1), P(0, 2, 1))), std::numbers::pi / 4,
                1e-6);
    EXPECT_TRUE(std::isnan(angle(P(), P(1, 0, 0))));
}

TYPED_TEST(Queries, WeightsBringBackThePoint) {
    using T = TypeParam;
    using P = XPnt3<T>;
    RandomPoints random(82);
    T u, v, w;
    for (int round = 0; round < 1000; ++round) {
        const P a = random.point<T>(1), b = random.point<T>(1), c = random.point<T>(1);
        const P n = cross(a, b, c);
        if (n.norm() < T(0.2)) { continue; }
        const P p = a * T(0.25) + b * T(1.5) - c * T(0.75);
        bary(p, a, b, c, u, v, w);
        expectNear(P(u, v, w), P(0.25, 1.5, -0.75));
        bary_fast(p, -n, c, a - c, b - c, u, v, w);
        expectNear(P(u, v, w), P(0.25, 1.5, -0.75));
        bary(p - n * T(3), n, a, b, c, u, v, w);
        expectNear(P(u, v, w), P(0.25, 1.5, -0.75), 10 * tolerated<T>);
    }
    // A line along the plane: the weights of the origin.
    bary(P(7, 7, 7), P(1, 0, 0), unitA<T>, unitB<T>, unitC<T>, u, v, w);
    EXPECT_EQ(P(u, v, w), P(1, 0, 0));
}

TYPED_TEST(Queries, BallsAndBoxes) {
    using P = XPnt3<TypeParam>;
    const P lo(0, 0, 0), hi(4, 4, 4), centre(2, 2, 2);
    EXPECT_TRUE(ball_within_bounds(P(2, 2, 3), 0.5, lo, hi));
    EXPECT_FALSE(ball_within_bounds(P(2, 2, 3), 1, lo, hi));
    EXPECT_TRUE(ball_within_bounds(P(2, 1, 2), 0.5, centre, 2));
    EXPECT_FALSE(ball_within_bounds(P(2, 1, 2), 1, centre, 2));
    EXPECT_TRUE(bounds_overlap_ball(P(2, 2, 6), 2.5, lo, hi));
    EXPECT_FALSE(bounds_overlap_ball(P(2, 2, 6), 2, lo, hi));
    EXPECT_TRUE(bounds_overlap_ball(P(-3, 8, 2), 5.5, centre, 2));
    EXPECT_FALSE(bounds_overlap_ball(P(-3, 8, 2), 5, centre, 2));
    EXPECT_TRUE(spheres_intersect(P(0, 0, 0), P(3, 0, 0), 4, 2));
    EXPECT_FALSE(spheres_intersect(P(0, 0, 0), P(3, 0, 0), 1, 1));
    EXPECT_FALSE(spheres_intersect(P(0, 0, 0), P(1.5, 0, 0), 1, 0.5));
}

TEST(PlanarQueries, SidesAreExactComparisons) {
    EXPECT_EQ(left_right(XPnt2d(0, 0), XPnt2d(1, 0), XPnt2d(0, 1)), 1);
    EXPECT_EQ(left_right(XPnt2f(0, 0), XPnt2f(1, 0), XPnt2f(5, -1e-30f)), -1);
    EXPECT_EQ(left_right(0, 0, 1, 1, 3, 3), 0);
    const double a[2] = {0, 0}, b[2] = {1, 1}, nearly[2] = {2, std::nextafter(2.0, 3.0)};
    EXPECT_EQ(left_right(a, b, nearly), 1);
    EXPECT_EQ(left_right(b, a, nearly), -1);
    const float af[2] = {0, 0}, bf[2] = {1, 0}, cf[2] = {0, 1};
    EXPECT_EQ(left_right(af, bf, cf), 1);
}

/// num/den against the range 0 to 1: -1 outside, 0 at an end, 1 strictly within.
int place(int num, int den) {
    if (den < 0) { return place(-num, -den); }
    if (num == 0 || num == den) { return 0; }
    return num > 0 && num < den ? 1 : -1;
}

TEST(PlanarQueries, SegmentsAgreeWithFractions) {
    EXPECT_TRUE(isIntersect({0, 0}, {2, 0}, {1, 0}, {1, 1}));
    EXPECT_FALSE(isIntersect({0, 0}, {2, 0}, {1, 0}, {3, 0}));
    RandomPoints random(83);
    const auto coordinate = [&] { return random.integer(0, 6); };
    int touching = 0;
    for (int round = 0; round < 20000; ++round) {
        const int ax = coordinate(), ay = coordinate(), bx = coordinate(), by = coordinate();
        const int cx = coordinate(), cy = coordinate(), dx = coordinate(), dy = coordinate();
        const XPnt2d a(ax, ay), b(bx, by), c(cx, cy), d(dx, dy);
        double t = -9, u = -9;
        const int den = (bx - ax) * (dy - cy) - (by - ay) * (dx - cx);
        if (den == 0) {
            EXPECT_FALSE(intersect_seg(a, b, c, d, t, u));
            EXPECT_EQ(t, -9);
            if (a != b && c != d) { EXPECT_FALSE(isIntersect(a, b, c, d)) << round; }
            continue;
        }
        const int tNum = (cx - ax) * (dy - cy) - (cy - ay) * (dx - cx);
        const int uNum = (cx - ax) * (by - ay) - (cy - ay) * (bx - ax);
        const int where = std::min(place(tNum, den), place(uNum, den));
        touching += where == 0;
        EXPECT_TRUE(intersect_line(a, b, c, d, t, u));
        EXPECT_NEAR(t, double(tNum) / den, 1e-13);
        EXPECT_NEAR(u, double(uNum) / den, 1e-13);
        EXPECT_NEAR(getParam(a, b, {ax + (bx - ax) * t, ay + (by - ay) * t}), t, 1e-13);
        EXPECT_EQ(isIntersect(a, b, c, d), where >= 0) << round;
        EXPECT_EQ(isIntersect2d({a.x, a.y, 5}, {b.x, b.y, 6}, c, d), where >= 0) << round;
        if (where != 0) { EXPECT_EQ(intersect_seg(a, b, c, d), where == 1) << round; }
    }
    EXPECT_GT(touching, 1000);
}

TEST(PlanarQueries, TrianglesAgreeWithWholeNumbers) {
    RandomPoints random(84);
    const auto coordinate = [&] { return random.integer(-5, 5); };
    for (int round = 0; round < 20000; ++round) {
        int corner[3][2], p[2] = {coordinate(), coordinate()};
        for (auto& xy : corner) { xy[0] = coordinate(), xy[1] = coordinate(); }
        // The areas of the triangles that p makes with each side; all of one sign inside.
        int smallest = 1000, largest = -1000;
        for (int i = 0; i < 3; ++i) {
            const auto& from = corner[i];
            const auto& to = corner[(i + 1) % 3];
            const int area =
                (to[0] - from[0]) * (p[1] - from[1]) - (to[1] - from[1]) * (p[0] - from[0]);
            smallest = std::min(smallest, area);
            largest = std::max(largest, area);
        }
        const bool inside = smallest > 0 || largest < 0;
        const bool outside = smallest < 0 && largest > 0;
        if (!inside && !outside) { continue; }
        XPnt3f f[4];
        for (int i = 0; i < 3; ++i) { f[i] = XPnt3f(float(corner[i][0]), float(corner[i][1]), 0); }
        f[3] = XPnt3f(float(p[0]), float(p[1]), 3);
        EXPECT_EQ(isInTriangle(f[0], f[1], f[2], f[3]), inside) << round;
        EXPECT_EQ(isInTriangle(XPnt3d(f[0]), XPnt3d(f[1]), XPnt3d(f[2]), XPnt3d(f[3])), inside)
            << round;
        EXPECT_EQ(PntInTri(f[3], f[0], f[1], f[2]), inside) << round;
    }
    for (const XPnt2d& p : {XPnt2d(0, 0), XPnt2d(2, 0), XPnt2d(2, 2)}) {
        const XPnt3f edge{float(p.x), float(p.y), 0}, a(0, 0, 0), b(4, 0, 0), c(0, 4, 0);
        EXPECT_FALSE(isInTriangle(a, b, c, edge));
        EXPECT_TRUE(PntInTri(edge, a, b, c));
    }
}

TEST(PlanarQueries, TurnsAreNotWrapped) {
    EXPECT_NEAR(angle2d(XPnt2d(-1, -1e-9), XPnt2d(-1, 1e-9)), 2 * std::numbers::pi, 1e-8);
    EXPECT_NEAR(angle2d(XPnt2f(0, 1), XPnt2f(1, 0)), -std::numbers::pi / 2, 1e-6);
    EXPECT_NEAR(angle2d(XPnt2d(5, 5), XPnt2d(6, 5), XPnt2d(9, 9), XPnt2d(9, 10)),
                std::numbers::pi / 2, 1e-15);
}

TEST(ScalarQueries, ParametersFollowTheLargestSpan) {
    EXPECT_EQ(getParam(XPnt2d(0, 0), XPnt2d(2, 2), XPnt2d(9, 1)), 0.5);
    EXPECT_EQ(getParam(XPnt3d(0, 0, 0), XPnt3d(2, 2, 1), XPnt3d(9, 1, 9)), 0.5);
    EXPECT_EQ(getParam(XPnt3d(0, 0, 0), XPnt3d(2, 1, -2), XPnt3d(9, 9, -1)), 0.5);
    EXPECT_EQ(getParam(XPnt3d(0, 0, 0), XPnt3d(3, 2, 1), XPnt3d(6, 9, 9)), 2);
    EXPECT_EQ(getParam(XPnt3d(0, 0, 0), XPnt3d(0, 3, 4), 10.0), 2);
    EXPECT_TRUE(std::isnan(getParam(XPnt2d(1, 1), XPnt2d(1, 1), XPnt2d(1, 1))));
}

TEST(ScalarQueries, EqualityIsStrictAndInFloat) {
    EXPECT_FALSE(IsEqual(1.0f, 1.000002f));
    EXPECT_TRUE(IsEqual(1.0f, 1.0000005f));
    EXPECT_FALSE(IsEqual(0, 0, 0));  // three floats
    EXPECT_TRUE(IsEqual(1, 2, 1.5));
    const XPnt3d p(1e9, 2, 3), farther(1e9 + 10, 2, 4);
    EXPECT_TRUE(IsEqual(p, farther, 2));
    EXPECT_FALSE(IsEqual(p, farther, 3));
    EXPECT_FALSE(IsEqual(&p, &farther, 0));
    EXPECT_TRUE(IsEqual(&p, &farther, 2));
    EXPECT_TRUE(IsEqual(p.Copy(), PNT3D(1e9 + 10, 2, 3)));
    const QString lower = QStringLiteral("zyn"), upper = QStringLiteral("ZYN");
    EXPECT_FALSE(IsEqual(lower, upper, true));
    EXPECT_TRUE(IsEqual(lower, upper, false));
}

TEST(ScalarQueries, DegreesAndUnitVectors) {
    EXPECT_EQ(Degree2Radian(180.0f), 3.14159274f);
    EXPECT_EQ(Radian2Degree(Degree2Radian(90.0f)), 90.0f);
    float x = 0, y = 0, z = 9e-7f;
    EXPECT_FALSE(normalize(x, y, z));
    EXPECT_EQ(z, 9e-7f);
    z = 2e-6f;
    EXPECT_TRUE(normalize(x, y, z));
    EXPECT_EQ(z, 1.0f);
}

}  // namespace
}  // namespace zyn
