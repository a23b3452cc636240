// Exact predicates: the side of a line and the circle of three points.
//
// Each test first computes in plain doubles with a bound on its error. Only if the bound leaves the
// sign open does it continue in exact arithmetic. Every sign is exact, so swapping two arguments
// negates it and a cyclic shift keeps it. The walks and flips of the engine rely on these
// properties.
#pragma once

#include "triangulation/expansion.h"

#include <cmath>

namespace zyn::detail {

/// Holds a position in the plane. Floats are widened, so that both precisions share the predicates.
struct Xy {
    double x;
    double y;
};

template <class Real>
[[nodiscard]] inline Xy xyOf(const Real* p) {
    return {double(p[0]), double(p[1])};
}

/// Limits the coordinates for which the error bounds hold. Points beyond this limit are rejected
/// like points that are not finite.
inline constexpr double largestCoordinate = 1e100;

[[nodiscard]] inline bool isUsable(Xy q) {
    return std::abs(q.x) <= largestCoordinate && std::abs(q.y) <= largestCoordinate;
}

/// Returns twice the signed area of the triangle, rounded, with the exact sign: positive if pa, pb,
/// pc run counter-clockwise. Reads x and y of each point. This is Shewchuk's test of the same name,
/// without a filter.
[[nodiscard]] double orient2dexact(const double* pa, const double* pb, const double* pc);

/// Holds the plain test of the side of c with respect to a-b; positive values are on the left.
struct Side {
    double value;  ///< twice the signed area, rounded
    double bound;  ///< the sign of `value` is certain if |value| > bound

    /// Each product has three rounding errors, those of its two differences and its own, and the
    /// last difference adds one: Shewchuk's ccwerrboundA. The constant 1e-300 covers underflow.
    Side(Xy a, Xy b, Xy c) {
        const double left = (a.x - c.x) * (b.y - c.y);
        const double right = (a.y - c.y) * (b.x - c.x);
        constexpr double eps = expansion::epsilon;
        value = left - right;
        bound = (3.0 + 16.0 * eps) * eps * (std::abs(left) + std::abs(right)) + 1e-300;
    }
};

[[nodiscard]] int orientationExact(Xy a, Xy b, Xy c);

/// Returns 1 if a, b, c run counter-clockwise, -1 if clockwise, and 0 if they are collinear or a
/// coordinate is not finite.
[[nodiscard]] inline int orientation(Xy a, Xy b, Xy c) {
    const Side side(a, b, c);
    if (side.value > side.bound) { return 1; }
    if (side.value < -side.bound) { return -1; }
    return orientationExact(a, b, c);
}

/// Represents the angle from u to v by its cosine and sine, both times the lengths of u and v.
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
    /// Combines the cosine of one angle with the sine of another.
    Angle(const Angle& ofCosine, const Angle& ofSine) : Angle(ofCosine) {
        sine = ofSine.sine;
        sineSize = ofSine.sineSize;
    }
};

/// Holds the sine of the sum of two angles, times the four lengths.
struct AngleSum {
    double sine;
    double error;  ///< the bound of the error of `sine`, without that of underflow

    AngleSum(const Angle& p, const Angle& d)
        : sine(d.cosine * p.sine + d.sine * p.cosine),
          error(relativeError * (d.cosineSize * p.sineSize + d.sineSize * p.cosineSize)) {}

private:
    // A sine or cosine has four rounding errors (two differences, a product, a sum), a product of
    // two of them nine, and the last sum ten. (1 + e)^10 - 1, together with the rounding of the
    // permanent itself, is below (10 + 256 e) e.
    static constexpr double relativeError =
        (10.0 + 256.0 * expansion::epsilon) * expansion::epsilon;
};

[[nodiscard]] inline Xy operator-(Xy a, Xy b) { return {a.x - b.x, a.y - b.y}; }

/// Returns what inCircle() returns, without the filter. Takes pointers, so that calls of inCircle()
/// which do not need it make no copies.
template <class Real>
[[nodiscard, gnu::cold]] int inCircleExact(const Real* p, const Real* a, const Real* b,
                                           const Real* d);

/// Returns the side of the circle through p, a and b on which d is:
/// - 1 inside; on a degenerate triangle, 1 if p is strictly between a and b;
/// - -1 outside;
/// - 0 if the four points are on one circle, or a coordinate is not finite.
/// REQUIRES: p, a and b do not run clockwise, and no coordinate exceeds 1e100 in size.
///
/// The result is the negated sign of sin(C + D) = cosD·sinC + sinD·cosC, where C is the angle at p
/// and D the angle at d. That sum equals the determinant of the published in-circle test in another
/// order.
template <class Real>
[[nodiscard, gnu::always_inline]] inline int inCircle(const Real* p, const Real* a, const Real* b,
                                                      const Real* d) {
    const Xy atP = xyOf(p), atA = xyOf(a), atB = xyOf(b), atD = xyOf(d);
    const AngleSum sum(Angle(atA - atP, atB - atP), Angle(atB - atD, atA - atD));
    // A product that underflows adds less than 2^-1073 times the square of the largest difference.
    // Up to coordinates of 1e100, 1e-110 covers that.
    const double bound = sum.error + 1e-110;
    if (sum.sine > bound) { return -1; }
    if (sum.sine < -bound) { return 1; }
    return inCircleExact(p, a, b, d);
}

}  // namespace zyn::detail
