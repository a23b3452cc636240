/// @file
/// Geometric queries: distances, closest points, crossings and side tests of points, lines, planes,
/// triangles, balls and boxes.
///
/// All functions are stateless, allocate nothing and take no locks. A function template on XPnt2 or
/// XPnt3 exists for float and double. Its points all have one precision, in which it computes.
/// Angles are in radians. A computed point has `inten` 0; a point that is copied keeps its `inten`.
/// Tests are exact comparisons of computed values, unless namespace `tolerance` names them. For
/// signs that are right on nearly collinear input, use the engine of delaunay.h. Division by zero
/// follows IEEE 754; functions check for it only where they say so.
///
/// Threads: any number may call these functions at once.
///
///     const XPnt3d a(0, 0, 0), b(1, 0, 0), c(0, 1, 0), p(0.25, 0.25, 3);
///     double away = dist2_tri(p, a, b, c);                        // 9: squared
///     int side = left_right(a.to2d(), b.to2d(), c.to2d());        // 1: c is on the left
///     XPnt3d foot;
///     double best = 16.0;                                         // nearer than 4 wanted
///     bool found = closer_on_tri(p, foot, a, b, c, best);         // true, best 9, foot in a-b-c
///     double t = 0.0;
///     line_plane_X(p, XPnt3d(0, 0, -1), a, b, c, foot, t);        // t = 3
#pragma once

#include <zyn/export.h>
#include <zyn/point.h>

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <type_traits>

class QString;

namespace zyn {

/// The bounds of the tests that are not exact. A value equal to its bound is not below it. Float
/// values are converted to double before the comparison.
namespace tolerance {
inline constexpr double equal = 1e-6;         ///< IsEqual: difference of two floats
inline constexpr double parallel = 1e-6;      ///< angle: 1 - |cosine|, below which it is 0
inline constexpr double length = 1e-6;        ///< normalize: shortest vector that it scales
inline constexpr double spatialLines = 1e-7;  ///< lines_intersect: |d1 x d2| squared
inline constexpr double planarLines = 1e-8;   ///< intersect_line: |determinant|
}  // namespace tolerance

/// A number in the precision of the points beside it. An argument of another type is converted.
template <class T>
using Scalar = std::type_identity_t<T>;

/// A parameter that takes the address of at least N consecutive coordinates: a pointer, an array,
/// or a point of precision T. A null literal, `{}`, and a point of too few coordinates do not
/// compile.
template <class T, int N>
class Coordinates {
public:
    /// Takes a pointer, an array or a point. Implicit, because functions have it as a parameter.
    /// @{
    template <class P>
        requires(CoordinatePointer<std::decay_t<P>, T> &&
                 !(std::is_bounded_array_v<P> && std::extent_v<P> < N))
    constexpr Coordinates(const P& c) noexcept : first(c) {}
    constexpr Coordinates(const PT3<T>& p) noexcept : first(&p.x) {}
    constexpr Coordinates(const PT2<T>& p) noexcept
        requires(N == 2)
        : first(&p.x) {}
    /// @}

    /// Returns coordinate `i`. REQUIRES: 0 <= i < N.
    constexpr T operator[](int i) const noexcept { return first[i]; }

private:
    const T* first;
};

// Vector algebra

/// Returns the scalar product.
template <class T>
[[nodiscard]] constexpr T dot(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
/// Returns the scalar product, as dot().
template <class T>
[[nodiscard]] constexpr T dot_d(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return dot(a, b);
}
/// Returns the vector product.
template <class T>
[[nodiscard]] constexpr XPnt3<T> cross(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
/// Returns the normal of the triangle, on the side from which its corners run counter-clockwise.
/// Its length is twice the area.
template <class T>
[[nodiscard]] constexpr XPnt3<T> cross(const XPnt3<T>& a, const XPnt3<T>& b,
                                       const XPnt3<T>& c) noexcept {
    return cross(a - c, b - c);
}
/// Returns a · (b x c).
template <class T>
[[nodiscard]] constexpr T det(const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c) noexcept {
    return dot(a, cross(b, c));
}
/// Returns cross(a, b, c) with length 1; the zero vector if its squared length is exactly 0.
template <class T>
[[nodiscard]] ZYN_EXPORT XPnt3<T> normal(const XPnt3<T>& a, const XPnt3<T>& b,
                                         const XPnt3<T>& c) noexcept;

/// Returns a + (b - a)·t, with the `inten` of `a`.
template <class T>
[[nodiscard]] constexpr XPnt3<T> getPoint(const XPnt3<T>& a, const XPnt3<T>& b,
                                          Scalar<T> t) noexcept {
    return a + (b - a) * t;
}
/// Returns the mean of the points, with the `inten` of `a`. Float only.
template <std::same_as<float> T>
[[nodiscard]] constexpr XPnt3<T> midPnt(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return {(a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2, a.inten};
}
/// Returns the mean of the points, with the `inten` of `a`. Float only.
template <std::same_as<float> T>
[[nodiscard]] constexpr XPnt3<T> midPnt(const XPnt3<T>& a, const XPnt3<T>& b,
                                        const XPnt3<T>& c) noexcept {
    return {(a.x + b.x + c.x) / 3, (a.y + b.y + c.y) / 3, (a.z + b.z + c.z) / 3, a.inten};
}
/// Returns `p` rotated by `angle` about the vertical through `c`, counter-clockwise, with its z and
/// `inten`.
template <class T>
[[nodiscard]] ZYN_EXPORT XPnt3<T> rotate_2d(const XPnt3<T>& c, Scalar<T> angle,
                                            const XPnt3<T>& p) noexcept;
/// Returns the zero point for all arguments. The function only keeps its place in the interface.
template <class T>
[[nodiscard]] constexpr XPnt3<T> rotate_3d(const XPnt3<T>&, const XPnt3<T>&, Scalar<T>,
                                           const XPnt3<T>&) noexcept {
    return {};
}

// Distances

/// Returns the distance of two points. The functions named dist2 return its square, except
/// dist2_line.
/// @{
template <class T>
[[nodiscard]] constexpr T dist2(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return (a - b).norm2();
}
template <class T>
[[nodiscard]] T dist(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return std::sqrt(dist2(a, b));
}
template <std::floating_point T>
[[nodiscard]] constexpr T dist2(const XPnt2<T>& a, const XPnt2<T>& b) noexcept {
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}
template <std::floating_point T>
[[nodiscard]] T dist(const XPnt2<T>& a, const XPnt2<T>& b) noexcept {
    return std::sqrt(dist2(a, b));
}
/// @}
/// Returns the squared distance of the x, y parts.
template <class T>
[[nodiscard]] constexpr T dist2_2d(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y);
}
/// Returns the distance of the x, y parts.
template <class T>
[[nodiscard]] T dist_2d(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return std::sqrt(dist2_2d(a, b));
}
/// Returns the largest of |dx|, |dy|, |dz|: the maximum norm, despite the name.
template <class T>
[[nodiscard]] T dist_manhattan(const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    return std::max({std::abs(a.x - b.x), std::abs(a.y - b.y), std::abs(a.z - b.z)});
}
/// Returns the distance, not squared, from `p` to the infinite line a-b. Sets `foot` to the foot of
/// the perpendicular, with the `inten` of `a`.
template <class T>
ZYN_EXPORT T dist2_line(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b,
                        XPnt3<T>& foot) noexcept;
/// Returns the squared distance from `p` to the segment a-b.
template <class T>
[[nodiscard]] ZYN_EXPORT T dist2_lineseg(const XPnt3<T>& p, const XPnt3<T>& a,
                                         const XPnt3<T>& b) noexcept;
/// Returns the squared distance from `p` to the triangle. For a point beyond two sides, the corner
/// between them counts as the nearest point. At an obtuse corner the result may then exceed the
/// distance to a side. A degenerate triangle counts as its side a-b.
template <class T>
[[nodiscard]] ZYN_EXPORT T dist2_tri(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b,
                                     const XPnt3<T>& c) noexcept;

/// Returns the distance of two points in space.
[[nodiscard]] inline double length(const PT3<double>& a, const PT3<double>& b) noexcept {
    return dist(XPnt3d(a.x, a.y, a.z), XPnt3d(b.x, b.y, b.z));
}
/// Returns the square of the distance of the x, y parts, despite the name.
[[nodiscard]] constexpr double length2d(const XPnt3d& a, const XPnt3d& b) noexcept {
    return dist2_2d(a, b);
}
/// Returns the distance of two points in the plane.
[[nodiscard]] ZYN_EXPORT float length(float x1, float y1, float x2, float y2) noexcept;
/// Returns the distance of two points of `n` coordinates each, 2 or 3; 0 for any other `n`.
/// REQUIRES: both have three coordinates if `n` is 3.
[[nodiscard]] ZYN_EXPORT float length(Coordinates<float, 2> a, Coordinates<float, 2> b,
                                      std::int32_t n) noexcept;
/// Returns the distance of two points in space.
[[nodiscard]] ZYN_EXPORT double dist3d(Coordinates<double, 3> a, Coordinates<double, 3> b) noexcept;
/// Returns the distance of two points in space, in float.
[[nodiscard]] ZYN_EXPORT float dist3f(Coordinates<float, 3> a, Coordinates<float, 3> b) noexcept;

/// Returns the area of a triangle in space, by Heron's formula.
[[nodiscard]] ZYN_EXPORT double area3d(Coordinates<double, 3> a, Coordinates<double, 3> b,
                                       Coordinates<double, 3> c) noexcept;
/// Returns the area of a triangle in space, by Heron's formula, in float.
[[nodiscard]] ZYN_EXPORT float area3f(Coordinates<float, 3> a, Coordinates<float, 3> b,
                                      Coordinates<float, 3> c) noexcept;

/// Returns the acute angle between two directions, 0 to π/2; NaN if one is the zero vector.
template <class T>
[[nodiscard]] ZYN_EXPORT T angle(const XPnt3<T>& u, const XPnt3<T>& v) noexcept;
/// Returns the acute angle between b - a and d - c.
template <class T>
[[nodiscard]] T angle(const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c,
                      const XPnt3<T>& d) noexcept {
    return angle(b - a, d - c);
}
/// Returns the turn from `u` to `v`: the difference of their directions, not wrapped, between -2π
/// and 2π.
template <std::floating_point T>
[[nodiscard]] ZYN_EXPORT double angle2d(const XPnt2<T>& u, const XPnt2<T>& v) noexcept;
/// Returns the turn from b - a to d - c.
template <std::floating_point T>
[[nodiscard]] double angle2d(const XPnt2<T>& a, const XPnt2<T>& b, const XPnt2<T>& c,
                             const XPnt2<T>& d) noexcept {
    return angle2d(XPnt2<T>(b.x - a.x, b.y - a.y), XPnt2<T>(d.x - c.x, d.y - c.y));
}

// Closest points

/// Returns whether the segment has a point nearer to `p` than the squared distance `best`. If so,
/// sets `out` to the nearest point and `best` to its squared distance. If not, changes nothing. A
/// search over many candidates passes the same `out` and `best` each time.
///
/// At an end, `out` becomes that point, `inten` included. Within the segment `out` keeps its
/// `inten`.
template <class T>
ZYN_EXPORT bool closer_on_lineseg(const XPnt3<T>& p, XPnt3<T>& out, const XPnt3<T>& a,
                                  const XPnt3<T>& b, Scalar<T>& best) noexcept;
/// Does the same for a triangle. Within the triangle, `inten` of `out` becomes 0. Corners are
/// chosen as in dist2_tri.
template <class T>
ZYN_EXPORT bool closer_on_tri(const XPnt3<T>& p, XPnt3<T>& out, const XPnt3<T>& a,
                              const XPnt3<T>& b, const XPnt3<T>& c, Scalar<T>& best) noexcept;

// Planes and lines

/// Returns 1 if `p` is above the plane through the triangle, on the side of cross(a, b, c);
/// otherwise 0.
template <class T>
[[nodiscard]] ZYN_EXPORT int above_plane(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b,
                                         const XPnt3<T>& c) noexcept;
/// Sets `out` to the point in which the line through `p` along `dir` meets the plane through a, b,
/// c, with the `inten` of `dir`. Sets `t` to its distance from `p` in units of `dir`, never
/// negative. Changes neither if the line is exactly parallel to the plane.
template <class T>
ZYN_EXPORT void line_plane_X(const XPnt3<T>& p, const XPnt3<T>& dir, const XPnt3<T>& a,
                             const XPnt3<T>& b, const XPnt3<T>& c, XPnt3<T>& out,
                             Scalar<T>& t) noexcept;
/// Does the same for the plane n·x + d = 0.
template <class T>
ZYN_EXPORT void line_plane_X(const XPnt3<T>& p, const XPnt3<T>& dir, const XPnt3<T>& n, Scalar<T> d,
                             XPnt3<T>& out, Scalar<T>& t) noexcept;
/// Sets `out` to the point of the line a-b that is nearest to the line c-d, with the `inten` of
/// `a`. Returns false and changes nothing if the lines count as parallel: |(b - a) x (d - c)|^2 is
/// below 1e-7. The bound is absolute, so short segments count as parallel at any angle.
template <class T>
ZYN_EXPORT bool lines_intersect(const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c,
                                const XPnt3<T>& d, XPnt3<T>& out) noexcept;
/// Sets the barycentric weights of `p` for a, b, c. Uses only two coordinates: drops the axis of
/// the largest component of the triangle's normal. In a degenerate triangle the weights are
/// infinite or NaN.
template <class T>
ZYN_EXPORT void bary(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c,
                     Scalar<T>& u, Scalar<T>& v, Scalar<T>& w) noexcept;
/// Sets the weights of the point in which the line through `p` along `dir` meets the plane; those
/// of the origin if the two do not meet.
template <class T>
ZYN_EXPORT void bary(const XPnt3<T>& p, const XPnt3<T>& dir, const XPnt3<T>& a, const XPnt3<T>& b,
                     const XPnt3<T>& c, Scalar<T>& u, Scalar<T>& v, Scalar<T>& w) noexcept;
/// Sets the weights of `p`, as the first bary(), for a triangle with the normal `n` of any length.
/// u, v and w belong to the corners o + e1, o + e2 and o, in this order.
template <class T>
ZYN_EXPORT void bary_fast(const XPnt3<T>& p, const XPnt3<T>& n, const XPnt3<T>& o,
                          const XPnt3<T>& e1, const XPnt3<T>& e2, Scalar<T>& u, Scalar<T>& v,
                          Scalar<T>& w) noexcept;
/// Returns the parameter of `p` on a-b, 0 at `a`, from the coordinate with the larger span.
[[nodiscard]] ZYN_EXPORT double getParam(const XPnt2d& a, const XPnt2d& b,
                                         const XPnt2d& p) noexcept;
/// Returns the parameter of `p` on a-b, 0 at `a`, from the coordinate with the largest span.
[[nodiscard]] ZYN_EXPORT double getParam(const XPnt3d& a, const XPnt3d& b,
                                         const XPnt3d& p) noexcept;
/// Returns len / |a - b|.
[[nodiscard]] inline double getParam(const XPnt3d& a, const XPnt3d& b, double len) noexcept {
    return len / dist(a, b);
}

// Balls and boxes. A box has the opposite corners lo and hi, or the centre bc and the half-size s.

/// Returns whether the ball about `c` with radius `r` is strictly inside the box.
template <class T>
[[nodiscard]] ZYN_EXPORT bool ball_within_bounds(const XPnt3<T>& c, Scalar<T> r, const XPnt3<T>& lo,
                                                 const XPnt3<T>& hi) noexcept;
/// Returns whether the ball is strictly inside the box, given by its centre and half-size.
template <class T>
[[nodiscard]] ZYN_EXPORT bool ball_within_bounds(const XPnt3<T>& c, Scalar<T> r, const XPnt3<T>& bc,
                                                 Scalar<T> s) noexcept;
/// Returns whether the ball and the box share more than a touching point.
template <class T>
[[nodiscard]] ZYN_EXPORT bool bounds_overlap_ball(const XPnt3<T>& c, Scalar<T> r,
                                                  const XPnt3<T>& lo, const XPnt3<T>& hi) noexcept;
/// Returns whether they share more than a touching point, with the box given by its centre and
/// half-size.
template <class T>
[[nodiscard]] ZYN_EXPORT bool bounds_overlap_ball(const XPnt3<T>& c, Scalar<T> r,
                                                  const XPnt3<T>& bc, Scalar<T> s) noexcept;
/// Returns whether two balls overlap, the first given by its squared radius, the second by its
/// radius.
template <class T>
[[nodiscard]] ZYN_EXPORT bool spheres_intersect(const XPnt3<T>& c1, const XPnt3<T>& c2,
                                                Scalar<T> r1sq, Scalar<T> r2) noexcept;

// Planar tests

/// Returns the side of `c` seen along a to b: 1 left, -1 right, 0 if the computed determinant is
/// exactly 0.
/// @{
template <std::floating_point T>
[[nodiscard]] ZYN_EXPORT std::int32_t left_right(const XPnt2<T>& a, const XPnt2<T>& b,
                                                 const XPnt2<T>& c) noexcept;
[[nodiscard]] ZYN_EXPORT std::int32_t left_right(Coordinates<double, 2> a, Coordinates<double, 2> b,
                                                 Coordinates<double, 2> c) noexcept;
[[nodiscard]] ZYN_EXPORT std::int32_t left_right(Coordinates<float, 2> a, Coordinates<float, 2> b,
                                                 Coordinates<float, 2> c) noexcept;
[[nodiscard]] ZYN_EXPORT std::int32_t left_right(double ax, double ay, double bx, double by,
                                                 double cx, double cy) noexcept;
/// @}
/// Returns whether the segments a-b and c-d cross. An end on the other segment counts; collinear
/// segments never cross.
/// @{
[[nodiscard]] ZYN_EXPORT bool isIntersect(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c,
                                          const XPnt2d& d) noexcept;
[[nodiscard]] ZYN_EXPORT bool isIntersect(double ax, double ay, double bx, double by, double cx,
                                          double cy, double dx, double dy) noexcept;
[[nodiscard]] ZYN_EXPORT bool isIntersect2d(const XPnt3d& a, const XPnt3d& b, const XPnt2d& c,
                                            const XPnt2d& d) noexcept;
/// @}
/// Finds the crossing of the lines a-b and c-d. Sets the parameters `t` on a-b and `u` on c-d, each
/// 0 to 1 within its segment. Returns false and writes neither if the lines count as parallel:
/// |(b - a) x (d - c)| < 1e-8. The bound is absolute, so two segments of length 1e-4, as in
/// degrees, count as parallel at any angle.
ZYN_EXPORT bool intersect_line(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c, const XPnt2d& d,
                               double& t, double& u) noexcept;
/// Returns whether the lines cross within both closed segments.
[[nodiscard]] ZYN_EXPORT bool intersect_seg(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c,
                                            const XPnt2d& d) noexcept;
/// Returns whether the lines cross within both closed segments. Sets `t` and `u` as
/// intersect_line() does, whenever the lines cross.
ZYN_EXPORT bool intersect_seg(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c, const XPnt2d& d,
                              double& t, double& u) noexcept;
/// Returns whether `p` is strictly inside the planar triangle, whichever way its corners run.
[[nodiscard]] ZYN_EXPORT bool isInTriangle(Coordinates<float, 2> a, Coordinates<float, 2> b,
                                           Coordinates<float, 2> c,
                                           Coordinates<float, 2> p) noexcept;
/// Returns whether `p` is strictly inside the planar triangle, in double.
[[nodiscard]] ZYN_EXPORT bool isInTriangle(Coordinates<double, 2> a, Coordinates<double, 2> b,
                                           Coordinates<double, 2> c,
                                           Coordinates<double, 2> p) noexcept;
/// Returns whether the projection of `p` on the plane of the triangle is in the triangle, boundary
/// included. Float only.
template <std::same_as<float> T>
[[nodiscard]] ZYN_EXPORT bool PntInTri(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b,
                                       const XPnt3<T>& c) noexcept;

// Scalars and equality

/// Returns the angle in radians, computed in double.
[[nodiscard]] ZYN_EXPORT float Degree2Radian(float degrees) noexcept;
/// Returns the angle in degrees, computed in double.
[[nodiscard]] ZYN_EXPORT float Radian2Degree(float radians) noexcept;
/// Scales the vector to length 1. Returns false and changes nothing if it is shorter than
/// tolerance::length.
ZYN_EXPORT bool normalize(float& x, float& y, float& z) noexcept;

/// Returns whether the difference is below tolerance::equal.
[[nodiscard]] ZYN_EXPORT bool IsEqual(float a, float b) noexcept;
/// Returns whether the difference is below `eps`; false if `eps` is 0.
[[nodiscard]] ZYN_EXPORT bool IsEqual(float a, float b, float eps) noexcept;
/// Compares x and y for `dim` 2, otherwise x, y and z, each within tolerance::equal after rounding
/// to float. So large coordinates that round to the same float are equal.
[[nodiscard]] ZYN_EXPORT bool IsEqual(const XPnt3d& a, const XPnt3d& b, std::int32_t dim) noexcept;
/// Compares the points at two addresses in the same way.
template <std::derived_from<XPnt3d> P>
[[nodiscard]] bool IsEqual(const P* a, const P* b, std::int32_t dim) noexcept {
    return IsEqual(*a, *b, dim);
}
/// Compares x, y and z in the same way.
[[nodiscard]] ZYN_EXPORT bool IsEqual(const PT3<double>& a, const PT3<double>& b) noexcept;
/// Returns whether the strings are equal, with or without regard to case.
template <std::same_as<QString> S>
[[nodiscard]] ZYN_EXPORT bool IsEqual(const S& a, const S& b, bool caseSensitive) noexcept;

}  // namespace zyn
