// Distances, intersections, containment and the small measures of geometry.h.
#include <zyn/geometry.h>

#include <QString>
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "random_points.h"
#include "testing.h"

namespace zyn {
namespace {

template <class... A>
concept HasArea = requires(A... a) { area3d(a...); };
template <class... A>
concept ComparesEqual = requires(A... a) { IsEqual(a...); };

// A null pointer is no address of a point, and a point in the plane has no third coordinate.
static_assert(HasArea<double*, XPnt3d, PNT3D> && !HasArea<XPnt3d, XPnt3d, std::nullptr_t> &&
              !HasArea<XPnt2d, XPnt3d, XPnt3d> && !HasArea<double (&)[2], XPnt3d, XPnt3d> &&
              !ComparesEqual<XPnt3d*, std::nullptr_t, int> &&
              !ComparesEqual<const char*, const char*, bool>);

template <class T>
class Queries : public testing::Test {};
TYPED_TEST_SUITE(Queries, Precisions);

TYPED_TEST(Queries, DistancesAnglesAndSidesHaveKnownValues) {
    using T = TypeParam;
    using P = XPnt3<T>;
    P foot;
    const P o(0, 0, 0);
    EXPECT_EQ(dist2_line(P(7, 0, 3), o, P(2, 0, 0), foot), 3);
    EXPECT_EQ(foot, P(7, 0, 0));
    EXPECT_EQ(dist_2d(o, P(3, 4, 9)), 5);
    EXPECT_EQ(dist_manhattan(o, P(1, -2, 3)), 3);
    EXPECT_EQ(rotate_3d(P(1, 2, 3), P(0, 0, 1), 1, P(4, 5, 6)), o);
    EXPECT_NEAR(double(angle(P(1, 0, 0), P(-1, T(2e-3), 0))), 2e-3, 5e-5);
    EXPECT_EQ(angle(P(1, 2, 3), P(-2, -4, -6)), 0);
    const double square = double(angle(o, P(0, 2, 0), P(1, 1, 0), P(1, 1, 5)));
    EXPECT_NEAR(square, std::numbers::pi / 2, tolerated<T>);
    EXPECT_NEAR(angle2d(XPnt2d(-1, -1e-9), XPnt2d(-1, 1e-9)), 2 * std::numbers::pi, 1e-8);

    const P a(0, 0, 1), b(2, 0, 1), c(0, 5, 1);
    EXPECT_EQ(normal(a, b, c), P(0, 0, 1));
    EXPECT_EQ(normal(a, b, P(9, 0, 1)), o);
    EXPECT_EQ(det(P(1, 2, 3), P(0, 1, 4), P(5, 6, 0)), 1);
    EXPECT_EQ(getPoint(a, P(4, 8, 3), T(0.25)), P(1, 2, 1.5));
    EXPECT_EQ(above_plane(P(9, 9, 2), a, b, c), 1);
    EXPECT_EQ(above_plane(P(9, 9, 2), a, c, b), 0);
    EXPECT_EQ(above_plane(P(9, 9, 1), a, b, c), 0);
    const P turned = rotate_2d(P(1, 1, 0), T(std::numbers::pi / 2), P(3, 2, 5, 7));
    EXPECT_LT(double(dist(turned, P(0, 3, 5))), tolerated<T>);
    EXPECT_EQ(turned.inten, 7);
}

/// Returns the nearest point of a triangle. It is the foot on the plane, and `inside` is true, if
/// the foot is on the inner side of each edge; otherwise it is the best clamped foot on the three
/// edges.
XPnt3d nearestOfTriangle(const XPnt3d& p, const XPnt3d (&corners)[3], bool& inside) {
    const XPnt3d n = normal(corners[0], corners[1], corners[2]);
    const XPnt3d foot = p - n * dot(p - corners[0], n);
    inside = true;
    XPnt3d best(1e9, 0, 0);
    for (int i = 0; i < 3; ++i) {
        const XPnt3d from = corners[i], side = corners[(i + 1) % 3] - from;
        inside = inside && det(n, side, foot - from) >= 0;
        const XPnt3d q = from + side * std::clamp(dot(p - from, side) / side.norm2(), 0.0, 1.0);
        if (dist(p, q) < dist(p, best)) { best = q; }
    }
    return inside ? foot : best;
}

TYPED_TEST(Queries, NearestPointsAgreeWithASearchOverTheSides) {
    using T = TypeParam;
    using P = XPnt3<T>;
    RandomPoints random(81);
    for (int round = 0; round < 20000; ++round) {
        P a = random.point<T>(1), b = random.point<T>(1), c = random.point<T>(1);
        const P p = random.point<T>(3);
        if (cross(a, b, c).norm() < T(0.2)) { continue; }  // rounding would decide the plane
        bool inside = false;
        const XPnt3d nearest =
            nearestOfTriangle(XPnt3d(p), {XPnt3d(a), XPnt3d(b), XPnt3d(c)}, inside);
        const T d = dist2_tri(p, a, b, c);
        a.inten = 1, b.inten = 2, c.inten = 3;
        P out(8, 8, 8, 8);
        T best = d - T(0.01);
        EXPECT_FALSE(closer_on_tri(p, out, a, b, c, best)) << round;
        EXPECT_EQ(out, P(8, 8, 8)) << round;
        best = d + T(0.01);
        EXPECT_TRUE(closer_on_tri(p, out, a, b, c, best)) << round;
        EXPECT_NEAR(double(best), double(d), tolerated<T>);
        EXPECT_NEAR(double(dist2(p, out)), double(d), tolerated<T>);
        const int corner = out == a ? 1 : out == b ? 2 : out == c ? 3 : 0;
        EXPECT_EQ(out.inten, corner != 0 ? corner : inside ? 0 : 8) << round;
        // Behind an obtuse corner the result is the corner, although a side may be nearer.
        const bool obtuse = dot(b - a, c - a) < 0 || dot(a - b, c - b) < 0 || dot(a - c, b - c) < 0;
        const double excess = double(d) - dist2(XPnt3d(p), nearest);
        if (!(obtuse && excess > 0 && corner != 0)) { EXPECT_NEAR(excess, 0, tolerated<T>); }
    }
    EXPECT_EQ(dist2_tri(P(1, -1, 0), P(0, 0, 0), P(4, 0, 0), P(-4, 2, 0)),
              2);  // a side is at distance 1
    const P a(0, 0, 0), b(1, 0, 0);
    EXPECT_EQ(dist2_tri(P(5, 1, 0), a, b, P(9, 0, 0)), 17);  // degenerate: its side ab
}

TYPED_TEST(Queries, LinesMeetPlanesAndLinesInKnownPoints) {
    using T = TypeParam;
    using P = XPnt3<T>;
    const P a(0, 0, 0), b(1, 0, 0), c(0, 1, 0);
    P out;
    T t = 0;
    for (const T height : {T(3), T(-3)}) {
        const P p(5, 6, height), along(1, 1, 0);  // this direction changes nothing
        line_plane_X(p, P(1, 0, 1), a, b, c, out, t);
        line_plane_X(p, along, a, b, c, out, t);
        EXPECT_EQ(out, P(5 - height, 6, 0));
        EXPECT_EQ(t, 3);
        line_plane_X(p, P(1, 0, 1), P(0, 0, 2), -4, out, t);  // the plane z = 2
        line_plane_X(p, along, P(0, 0, 2), -4, out, t);
        EXPECT_EQ(out, P(7 - height, 6, 2));
        EXPECT_EQ(t, std::abs(2 - height));
    }
    EXPECT_FALSE(lines_intersect(a, b, c, P(1, 1, T(1e-4)), out));
    EXPECT_TRUE(lines_intersect(a, b, P(4, -1, 7), P(4, 2, 7), out));
    EXPECT_EQ(out, P(4, 0, 0));
}

TYPED_TEST(Queries, BarycentricWeightsReproduceThePoint) {
    using T = TypeParam;
    using P = XPnt3<T>;
    RandomPoints random(82);
    const P weights(0.25, 1.5, -0.75);
    for (int round = 0; round < 1000; ++round) {
        const P a = random.point<T>(1), b = random.point<T>(1), c = random.point<T>(1);
        const P n = cross(a, b, c), p = a * weights.x + b * weights.y + c * weights.z;
        if (n.norm() < T(0.2)) { continue; }
        P plain, fast, along;
        bary(p, a, b, c, plain.x, plain.y, plain.z);
        bary_fast(p, -n, c, a - c, b - c, fast.x, fast.y, fast.z);
        bary(p - n * T(3), n, a, b, c, along.x, along.y, along.z);
        const T error = std::max({dist(plain, weights), dist(fast, weights), dist(along, weights)});
        EXPECT_LT(double(error), tolerated<T>) << round;
    }
}

TYPED_TEST(Queries, BallsThatTouchAreOutsideAndApart) {
    using T = TypeParam;
    using P = XPnt3<T>;
    RandomPoints random(85);
    const P lo(0, 0, 0), hi(4, 4, 4), centre(2, 2, 2);
    for (int round = 0; round < 20000; ++round) {
        const auto number = [&](int from, int to) { return T(random.integer(from, to)); };
        const P c(number(-4, 8), number(-4, 8), number(-4, 8));
        const T r = number(1, 7), other = number(1, 4);
        T depth = 9, away2 = 0;  // inside the nearest side; outside the box
        for (int k = 0; k < 3; ++k) {
            depth = std::min({depth, c[k], 4 - c[k]});
            const T excess = c[k] - std::clamp(c[k], T(0), T(4));
            away2 += excess * excess;
        }
        const bool isWithin = r < depth, overlaps = away2 < r * r;
        EXPECT_EQ(ball_within_bounds(c, r, lo, hi), isWithin);
        EXPECT_EQ(ball_within_bounds(c, r, centre, 2), isWithin);
        EXPECT_EQ(bounds_overlap_ball(c, r, lo, hi), overlaps);
        EXPECT_EQ(bounds_overlap_ball(c, r, centre, 2), overlaps);
        EXPECT_EQ(spheres_intersect(lo, c, r * r, other), c.norm2() < (r + other) * (r + other));
    }
}

/// Cross product of b - a and d - c; exact on small whole numbers.
template <class P>
auto turn(const P& a, const P& b, const P& c, const P& d) {
    return (b.x - a.x) * (d.y - c.y) - (b.y - a.y) * (d.x - c.x);
}

TEST(PlanarQueries, SegmentIntersectionsAgreeWithFractions) {
    const XPnt2d left(0, 0), right(2, 0);  // ends belong to segments
    for (const double x : {0, 2}) {
        EXPECT_TRUE(intersect_seg(left, right, {x, -1}, {x, 1}));
        EXPECT_TRUE(intersect_seg({x, -1}, {x, 1}, left, right));
    }
    RandomPoints random(83);
    const auto point = [&] { return XPnt2d(random.integer(0, 6), random.integer(0, 6)); };
    for (int round = 0; round < 20000; ++round) {
        const XPnt2d a = point(), b = point(), c = point(), d = point();
        double t = -9, u = -9;
        const double den = turn(a, b, c, d);
        if (den == 0) {
            EXPECT_FALSE(intersect_seg(a, b, c, d, t, u)) << round;
            EXPECT_EQ(t, -9) << round;
            if (a != b && c != d) { EXPECT_FALSE(isIntersect(a, b, c, d)) << round; }
            continue;
        }
        const double onAb = turn(a, c, c, d) / den, onCd = turn(a, c, a, b) / den;
        // Positive within both segments, 0 at an end.
        const double within = std::min(onAb * (1 - onAb), onCd * (1 - onCd));
        EXPECT_TRUE(intersect_line(a, b, c, d, t, u));
        EXPECT_LT(std::max(std::abs(t - onAb), std::abs(u - onCd)), 1e-13) << round;
        EXPECT_EQ(isIntersect(a.x, a.y, b.x, b.y, c.x, c.y, d.x, d.y), within >= 0) << round;
        EXPECT_EQ(isIntersect2d(XPnt3d(a.x, a.y, 1), XPnt3d(b.x, b.y, 2), c, d), within >= 0);
        if (within != 0) { EXPECT_EQ(intersect_seg(a, b, c, d), within > 0) << round; }
    }
}

TEST(PlanarQueries, ContainmentInTrianglesAgreesWithWholeNumbers) {
    RandomPoints random(84);
    const auto number = [&] { return float(random.integer(-5, 5)); };
    for (int round = 0; round < 20000; ++round) {
        XPnt3f a, b, c, p(0, 0, 3);  // PntInTri takes the projection
        for (XPnt3f* q : {&a, &b, &c, &p}) { q->x = number(), q->y = number(); }
        if (turn(a, b, a, c) == 0) { continue; }
        const float side = turn(a, b, a, p);
        const auto [least, most] = std::minmax({side, turn(b, c, b, p), turn(c, a, c, p)});
        const bool inside = least > 0 || most < 0;
        EXPECT_EQ(isInTriangle(a, b, c, p), inside) << round;
        EXPECT_EQ(isInTriangle(XPnt3d(a), XPnt3d(b), XPnt3d(c), XPnt3d(p)), inside) << round;
        if (least * most != 0) { EXPECT_EQ(PntInTri(p, a, b, c), inside) << round; }
        const int sign = (side > 0) - (side < 0);
        EXPECT_EQ(left_right(a, b, p), sign);
        EXPECT_EQ(left_right(XPnt3d(a), XPnt3d(b), XPnt3d(p)), sign);
        EXPECT_EQ(left_right(a.x, a.y, b.x, b.y, p.x, p.y), sign);
    }
    EXPECT_TRUE(PntInTri(XPnt3f(2, 2, 0), {0, 0, 0}, {4, 0, 0}, {0, 4, 0}));
}

TEST(ScalarQueries, TheParameterFollowsTheLargestSpan) {
    // Of equal spans the later axis counts.
    const XPnt3d o(0, 0, 0), p(1, 20, -300);
    EXPECT_EQ(getParam(o, {4, 2, -2}, p), 0.25);
    EXPECT_EQ(getParam(o, {4, -4, 2}, p), -5);
    EXPECT_EQ(getParam(o, {2, 1, -2}, p), 150);
    EXPECT_EQ(getParam(o, {0, 3, 4}, 10), 2);
    EXPECT_EQ(getParam(XPnt2d(1, 1), XPnt2d(5, 4), XPnt2d(3, 9)), 0.5);
    EXPECT_EQ(getParam(XPnt2d(1, 1), XPnt2d(5, 5), XPnt2d(3, 9)), 2);
}

TEST(ScalarQueries, EqualityComparesInFloat) {
    EXPECT_FALSE(IsEqual(0, 0, 0));  // three floats: the difference must be below the bound
    EXPECT_TRUE(IsEqual(1, 1.5F, 0.6F));
    EXPECT_TRUE(IsEqual(1, 1.0000005F));
    EXPECT_FALSE(IsEqual(1, 1.000002F));
    const XPnt3d distant(1e9, 2, 3), merged(1e9 + 10, 2, 3);
    EXPECT_TRUE(IsEqual(distant, merged));
    EXPECT_TRUE(IsEqual(&distant, &merged, 0));
    for (int i = 0; i < 3; ++i) {
        const XPnt3d p(1, 20, -300);
        XPnt3d other = p;
        other[i] += 0.5;
        EXPECT_EQ(IsEqual(p, other, 2), i == 2) << i;
        EXPECT_FALSE(IsEqual(&p, &other, 0)) << i;
        EXPECT_FALSE(IsEqual(p, other)) << i;
    }
    const QString lower = QStringLiteral("net"), upper = QStringLiteral("NET");
    EXPECT_TRUE(IsEqual(lower, upper, false));
    EXPECT_FALSE(IsEqual(lower, upper, true));
}

TEST(ScalarQueries, LengthsAreasAndDegreesHaveKnownValues) {
    const float a[3] = {0, 0, 0}, b[3] = {3, 4, 12};
    EXPECT_EQ(length(a, b, 2), 5);
    EXPECT_EQ(length(a, b, 3), 13);
    EXPECT_EQ(length(a, b, 4), 0);
    EXPECT_EQ(length(1, 1, 4, 5), 5);
    EXPECT_EQ(dist3f(a, b), 13);
    const XPnt3d o(0, 0, 0), p(3, 4, 12), q(-4, 3, 0);  // q is at right angles to p
    EXPECT_EQ(length(o, p), 13);
    EXPECT_EQ(dist3d(o, p), 13);
    EXPECT_EQ(length2d(o, p), 25);
    EXPECT_NEAR(area3d(o, p, q), 32.5, 1e-13);
    EXPECT_NEAR(area3f(a, XPnt3f(b), XPnt3f(q)), 32.5F, 1e-4F);
    EXPECT_EQ(midPnt(XPnt3f(1, 2, 3), XPnt3f(3, 2, 6)), XPnt3f(2, 2, 4.5F));
    EXPECT_EQ(midPnt(XPnt3f(1, 2, 3), XPnt3f(3, 2, 6), XPnt3f(5, 5, 0)), XPnt3f(3, 3, 3));
    constexpr float pi = std::numbers::pi_v<float>;
    EXPECT_EQ(Degree2Radian(180), pi);
    EXPECT_EQ(Radian2Degree(pi / 4), 45);
}

TEST(ScalarQueries, NormalizeLeavesAVectorThatIsTooShort) {
    float x = 0, y = 9e-7F, z = 0;
    EXPECT_FALSE(normalize(x, y, z));
    EXPECT_EQ(y, 9e-7F);
    x = 3, y = -4;
    EXPECT_TRUE(normalize(x, y, z));
    EXPECT_THAT((std::array{x, y, z}), testing::ElementsAre(0.6F, -0.8F, 0));
}

}  // namespace
}  // namespace zyn
