// Predicates: on which side, and inside which circle, a point lies. Every sign is exact.
//
// Each test first computes in plain doubles with a bound on its error; only where the bound leaves
// the sign open does it go on to exact arithmetic. The signs have the properties that the walks and
// flips of the engine rest on: swapping two arguments negates them, a cyclic shift keeps them.
#pragma once

#include "triangulation/expansion.h"

#include <cmath>

namespace zyn::detail {

/// A position in the plane. Floats are widened, so that both precisions share the predicates.
struct Xy {
    double x;
    double y;
};

template <class Real>
[[nodiscard]] inline Xy xyOf(const Real* p) {
    return {double(p[0]), double(p[1])};
}

/// The predicates' bounds hold up to here; a coordinate beyond it is refused like one that is not
/// finite.
inline constexpr double largestCoordinate = 1e100;

[[nodiscard]] inline bool isUsable(Xy q) {
    return std::abs(q.x) <= largestCoordinate && std::abs(q.y) <= largestCoordinate;
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

/// The angle from u to v by its cosine and its sine, both times the lengths of u and v.
struct Angle {
    double cosine, sine;          ///< rounded
    double cosineSize, sineSize;  ///< the same sums with the absolute values of their products

    Angle(Xy u, Xy v) {
        const double xx = u.x * v.x, yy = u.y * v.y, xy = u.x * v.y, yx = u.y * v.x;
        cosine = xx + yy;
        sine = xy - yx;
        cosineSize = std::abs(xx) + std::abs(yy);
        sineSize = std::abs(xy) + std::abs(yx);
    }
    /// The cosine of one and the sine of the other.
    Angle(const Angle& ofCosine, const Angle& ofSine) : Angle(ofCosine) {
        sine = ofSine.sine;
        sineSize = ofSine.sineSize;
    }
};

/// The sine of the sum of two angles, times the four lengths.
struct AngleSum {
    double sine;
    double error;  ///< the bound of the error of `sine`, without that of underflow

    AngleSum(const Angle& p, const Angle& d)
        : sine(d.cosine * p.sine + d.sine * p.cosine),
          error(relativeError * (d.cosineSize * p.sineSize + d.sineSize * p.cosineSize)) {}

private:
    // A sine or cosine carries four rounding errors (two differences, a product, a sum), a product
    // of two of them nine, the last sum ten. (1 + e)^10 - 1, with the rounding of the permanent
    // itself, stays below (10 + 256 e) e.
    static constexpr double relativeError =
        (10.0 + 256.0 * expansion::epsilon) * expansion::epsilon;
};

[[nodiscard]] inline Xy operator-(Xy a, Xy b) { return {a.x - b.x, a.y - b.y}; }

/// Takes pointers, since four copies would be made at every call of inCircle that needs none.
template <class Real>
[[nodiscard, gnu::cold]] int inCircleExact(const Real* p, const Real* a, const Real* b,
                                           const Real* d);

/// 1 when d lies inside the circle through p, a, b, which run counter-clockwise, -1 when outside,
/// 0 when the four lie on one circle. On a triangle of no area, the limit: 1 when p lies strictly
/// between a and b. 0 when a coordinate is not finite.
///
/// The sign is that of the sine of the sum of the angles at p and d, which is the determinant of the
/// published in-circle test in another order: cosD·sinC + sinD·cosC, positive outside. REQUIRES of
/// the bound: |coordinate| <= 1e100.
template <class Real>
[[nodiscard, gnu::always_inline]] inline int inCircle(const Real* p, const Real* a, const Real* b,
                                                      const Real* d) {
    const Xy atP = xyOf(p), atA = xyOf(a), atB = xyOf(b), atD = xyOf(d);
    const AngleSum sum(Angle(atA - atP, atB - atP), Angle(atB - atD, atA - atD));
    // A product that underflows adds less than 2^-1073 times the square of the largest difference:
    // 1e-110 covers that up to 1e100.
    const double bound = sum.error + 1e-110;
    if (sum.sine > bound) { return -1; }
    if (sum.sine < -bound) { return 1; }
    return inCircleExact(p, a, b, d);
}

}  // namespace zyn::detail
