// Predicates: on which side, and inside which circle, a point lies. Every sign is exact.
//
// Each test first computes in plain doubles with a bound on its error; only where the bound leaves
// the sign open does it go on to exact arithmetic. The signs have the properties that the walks and
// flips of the engine rest on: swapping two arguments negates them, a cyclic shift keeps them.
#pragma once

#include "triangulation/expansion.h"

#include <cmath>

namespace zyn {

/// A position in the plane. Floats are widened, so that both precisions share the predicates.
struct Xy {
    double x;
    double y;
};

template <class Real>
[[nodiscard]] inline Xy xyOf(const Real* p) {
    return {double(p[0]), double(p[1])};
}

/// Shewchuk's test of the same name, without a filter: twice the signed area of the triangle, with
/// the exact sign. Positive when pa, pb, pc run counter-clockwise. Reads x and y of each.
[[nodiscard]] double orient2dexact(const double* pa, const double* pb, const double* pc);

/// The parts of the plain test of the side of c against a-b, positive on the left.
struct Side {
    double value;  ///< twice the signed area, rounded
    double bound;  ///< the sign of `value` is certain if |value| > bound

    /// Each product carries three rounding errors, its two differences' and its own; the last
    /// difference adds one: Shewchuk's ccwerrboundA. The constant beside it covers underflow.
    Side(Xy a, Xy b, Xy c) {
        const double left = (a.x - c.x) * (b.y - c.y);
        const double right = (a.y - c.y) * (b.x - c.x);
        constexpr double eps = expansion::epsilon;
        value = left - right;
        bound = (3.0 + 16.0 * eps) * eps * (std::abs(left) + std::abs(right)) + 1e-300;
    }
};

[[nodiscard]] int orientationExact(Xy a, Xy b, Xy c);

/// 1 when a, b, c run counter-clockwise, -1 when clockwise, 0 when they are collinear; 0 too when a
/// coordinate is not finite.
[[nodiscard]] inline int orientation(Xy a, Xy b, Xy c) {
    const Side side(a, b, c);
    if (side.value > side.bound) { return 1; }
    if (side.value < -side.bound) { return -1; }
    return orientationExact(a, b, c);
}

[[nodiscard]] int inCircleExact(Xy p, Xy a, Xy b, Xy d);

/// 1 when d lies inside the circle through p, a, b, which run counter-clockwise, -1 when outside,
/// 0 when the four lie on one circle. On a triangle of no area, the limit: 1 when p lies strictly
/// between a and b. 0 when a coordinate is not finite.
///
/// The sign is that of the sine of the sum of the angles at p and d, which is the determinant of the
/// published in-circle test in another order: cosD·sinC + sinD·cosC, positive outside. REQUIRES of
/// the bound: |coordinate| <= 1e100.
template <class Real>
[[nodiscard]] inline int inCircle(const Real* p, const Real* a, const Real* b, const Real* d) {
    const double px = double(p[0]), py = double(p[1]), dx = double(d[0]), dy = double(d[1]);
    const double ax = double(a[0]), ay = double(a[1]), bx = double(b[0]), by = double(b[1]);
    const double apx = ax - px, apy = ay - py, bpx = bx - px, bpy = by - py;
    const double adx = ax - dx, ady = ay - dy, bdx = bx - dx, bdy = by - dy;

    const double sinC1 = apx * bpy, sinC2 = apy * bpx;
    const double cosC1 = apx * bpx, cosC2 = apy * bpy;
    const double sinD1 = bdx * ady, sinD2 = bdy * adx;
    const double cosD1 = adx * bdx, cosD2 = ady * bdy;
    const double value = (cosD1 + cosD2) * (sinC1 - sinC2) + (sinD1 - sinD2) * (cosC1 + cosC2);

    // A sine or cosine carries four rounding errors (two differences, a product, a sum), a product
    // of two of them nine, the last sum ten. (1 + e)^10 - 1, with the rounding of the permanent
    // itself, stays below (10 + 256 e) e. A product that underflows adds less than 2^-1073 times
    // the square of the largest difference: 1e-110 covers that up to 1e100.
    constexpr double eps = expansion::epsilon;
    constexpr double errorBound = (10.0 + 256.0 * eps) * eps;
    const double permanent =
        (std::abs(cosD1) + std::abs(cosD2)) * (std::abs(sinC1) + std::abs(sinC2)) +
        (std::abs(sinD1) + std::abs(sinD2)) * (std::abs(cosC1) + std::abs(cosC2));
    const double bound = errorBound * permanent + 1e-110;
    if (value > bound) { return -1; }
    if (value < -bound) { return 1; }
    return inCircleExact({px, py}, {ax, ay}, {bx, by}, {dx, dy});
}

}  // namespace zyn
