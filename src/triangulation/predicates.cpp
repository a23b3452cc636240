#include "triangulation/predicates.h"

#include "core/float_parts.h"
#include "triangulation/exact_integer.h"

#include <algorithm>
#include <array>
#include <span>

namespace zyn::detail {
namespace {

using expansion::difference;
using expansion::Expansion;
using expansion::fromTwo;
using expansion::product;
using expansion::sum;
using expansion::Two;
using expansion::twoDiff;
using expansion::twoProduct;
using expansion::twoSum;

/// The published Two_Two_Diff of two exact products.
Expansion<4> productDifference(double a, double b, double c, double d) {
    return difference(fromTwo(twoProduct(a, b)), fromTwo(twoProduct(c, d)));
}

constexpr double smallestExact = 0x1p-150, largestExact = 0x1p200;

/// Whether products of four differences of such coordinates neither overflow nor lose a bit: the
/// lowest bit of a coordinate is then 2^-202 or above, that of a product 2^-808 or above.
bool expansionsAreExact(std::span<const double> coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(), [](double c) {
        const double size = std::abs(c);
        return c == 0.0 || (size >= smallestExact && size <= largestExact);
    });
}

/// Whether differences of coordinates are without rounding, as they are between points that lie close
/// to each other, and whether products of four of them neither overflow nor lose a bit.
bool areExact(std::span<const Two> differences) {
    return std::all_of(differences.begin(), differences.end(), [](const Two& d) {
        const double size = std::abs(d.high);
        return d.low == 0.0 && (d.high == 0.0 || (size >= 0x1p-200 && size <= 0x1p200));
    });
}

/// The sign of left - right, each the exact value of a product: rounding keeps their order.
int compare(const Two& left, const Two& right) {
    if (left.high != right.high) { return left.high > right.high ? 1 : -1; }
    return left.low > right.low ? 1 : left.low < right.low ? -1 : 0;
}

/// ab + cd to twice the precision of a double, and whether that is all of it in `high` alone.
struct SumOfProducts {
    double high, low, size;
    bool isPlain;

    SumOfProducts(double a, double b, double c, double d) {
        const Two first = twoProduct(a, b), second = twoProduct(c, d);
        const Two total = twoSum(first.high, second.high);
        high = total.high;
        low = total.low + (first.low + second.low);
        size = std::abs(first.high) + std::abs(second.high);
        isPlain = first.low == 0.0 && second.low == 0.0 && total.low == 0.0;
    }
};

/// Whether the sides from `at` to a and b are parallel to the axes and not to each other, or one of
/// them has no length: the cosine is 0. A grid is full of circles through two such corners.
bool isRightAngleByAxes(Xy at, Xy a, Xy b) {
    return (a.x == at.x || b.x == at.x) && (a.y == at.y || b.y == at.y);
}

/// A sign, or that it needs more arithmetic.
struct Sign {
    bool isKnown;
    int sign;
};

/// cosD·sinC + sinD·cosC in twice the precision of a double, from exact differences. Where the four
/// factors are single doubles, as on a grid of whole numbers, that is exact; else each of them, and
/// each product, carries errors of some 2^-106 of the sizes that it is made of.
Sign sineOfCloseAngles(const std::array<Two, 8>& v) {
    const auto& [apx, apy, bpx, bpy, adx, ady, bdx, bdy] = v;
    const SumOfProducts sinC(apx.high, bpy.high, -apy.high, bpx.high);
    const SumOfProducts cosC(apx.high, bpx.high, apy.high, bpy.high);
    const SumOfProducts sinD(bdx.high, ady.high, -bdy.high, adx.high);
    const SumOfProducts cosD(adx.high, bdx.high, ady.high, bdy.high);
    const Two first = twoProduct(cosD.high, sinC.high);
    const Two second = twoProduct(sinD.high, -cosC.high);
    if (sinC.isPlain && cosC.isPlain && sinD.isPlain && cosD.isPlain) {
        return {true, compare(first, second)};
    }
    const Two total = twoSum(first.high, -second.high);
    const double low = (first.low - second.low) + (cosD.high * sinC.low + cosD.low * sinC.high) +
                       (sinD.high * cosC.low + sinD.low * cosC.high);
    const double value = total.high + (total.low + low);
    const double bound = 0x1p-98 * (cosD.size * sinC.size + sinD.size * cosC.size);
    return {std::abs(value) > bound, value > 0 ? 1 : -1};
}

bool allFinite(std::span<const double> coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(),
                       [](double c) { return std::isfinite(c); });
}

double sizeOf(Xy v) { return std::max(std::abs(v.x), std::abs(v.y)); }

/// The vector times the power of two that brings `size`, one of its own or larger, to about 1.
Xy scaled(Xy v, double size) {
    if (size == 0.0) { return v; }
    const double unit = powerOfTwoIn(size);
    return {v.x / unit, v.y / unit};
}
Xy scaled(Xy v) { return scaled(v, sizeOf(v)); }

// The plain tests again for coordinates of very different sizes. Vectors that are a factor of the
// whole are scaled, against overflow and underflow. 1e-300 covers what is lost of small components.

/// Takes the two shorter sides of the triangle.
Sign scaledOrientation(Xy a, Xy b, Xy c) {
    const std::array<Xy, 3> sides{b - a, c - b, a - c};
    const auto longest = std::max_element(sides.begin(), sides.end(),
                                          [](Xy u, Xy v) { return sizeOf(u) < sizeOf(v); });
    const auto k = static_cast<std::size_t>(longest - sides.begin());
    const Side side(scaled(sides[(k + 1) % 3]), scaled(sides[(k + 2) % 3]), {0, 0});
    return {std::abs(side.value) > side.bound, side.value > 0 ? 1 : -1};
}

/// Takes the sines from the vector between a and b, which is clearer than the difference of two
/// long ones where p or d is far away.
Sign scaledSineOfAngleSum(Xy p, Xy a, Xy b, Xy d) {
    const Xy ap = scaled(a - p), bd = scaled(b - d), ba = scaled(b - a);
    const double size = std::max(sizeOf(b - p), sizeOf(a - d));
    const Angle sineP(ap, ba), cosineP(ap, scaled(b - p, size));
    const Angle sineD(ba, bd), cosineD(bd, scaled(a - d, size));
    const AngleSum sum({cosineP, sineP}, {cosineD, sineD});
    return {std::abs(sum.sine) > sum.error + 1e-300, sum.sine > 0 ? 1 : -1};
}

/// Multiplies all coordinates by the power of two that makes expansions exact, which leaves signs
/// as they are. Returns false and changes nothing if there is none, or they are exact already.
bool scale(std::span<double> coordinates) {
    double largest = 0.0, smallest = HUGE_VAL;
    for (const double c : coordinates) {
        if (c == 0.0) { continue; }
        largest = std::max(largest, std::abs(c));
        smallest = std::min(smallest, std::abs(c));
    }
    if (largest == 0.0 || (smallest >= smallestExact && largest <= largestExact)) { return false; }
    // In two steps, since one power of two may be beyond the largest number.
    const int shift = std::ilogb(largestExact) - 1 - std::ilogb(largest);
    const double first = std::ldexp(1.0, shift / 2), second = std::ldexp(1.0, shift - shift / 2);
    if (!(smallest * first * second >= smallestExact)) { return false; }
    for (double& c : coordinates) { c = c * first * second; }
    return true;
}

ExactInteger exact(double x, double y) { return ExactInteger(x) - ExactInteger(y); }

int signOf(double value) { return value > 0.0 ? 1 : value < 0.0 ? -1 : 0; }

/// Cosines and sines of the angles at p and d, by the differences to them, in any exact arithmetic.
template <class Number, class Sum, class Difference, class Product>
auto cosinesAndSines(const std::array<Number, 8>& v, Sum add, Difference minus, Product times) {
    const auto& [apx, apy, bpx, bpy, adx, ady, bdx, bdy] = v;
    return std::array{
        add(times(apx, bpx), times(apy, bpy)), minus(times(apx, bpy), times(apy, bpx)),
        add(times(adx, bdx), times(ady, bdy)), minus(times(bdx, ady), times(bdy, adx))};
}

// Where expansions may not be exact. Functions of their own, since their numbers take much of the
// stack.

[[gnu::noinline]] int orientationOfAnySize(Xy a, Xy b, Xy c) {
    std::array<double, 6> coordinates{a.x, a.y, b.x, b.y, c.x, c.y};
    if (!allFinite(coordinates)) { return 0; }
    if (const Sign sign = scaledOrientation(a, b, c); sign.isKnown) { return sign.sign; }
    if (scale(coordinates)) {
        const auto& [ax, ay, bx, by, cx, cy] = coordinates;
        return orientationExact({ax, ay}, {bx, by}, {cx, cy});
    }
    return compareProducts(exact(a.x, c.x), exact(b.y, c.y), exact(a.y, c.y), exact(b.x, c.x));
}

[[gnu::noinline]] int inCircleOfAnySize(Xy p, Xy a, Xy b, Xy d) {
    std::array<double, 8> coordinates{p.x, p.y, a.x, a.y, b.x, b.y, d.x, d.y};
    if (!allFinite(coordinates)) { return 0; }
    if (const Sign sine = scaledSineOfAngleSum(p, a, b, d); sine.isKnown) { return -sine.sign; }
    if (scale(coordinates)) {
        return inCircleExact(coordinates.data(), &coordinates[2], &coordinates[4], &coordinates[6]);
    }
    const std::array<ExactInteger, 8> v{exact(a.x, p.x), exact(a.y, p.y), exact(b.x, p.x),
                                        exact(b.y, p.y), exact(a.x, d.x), exact(a.y, d.y),
                                        exact(b.x, d.x), exact(b.y, d.y)};
    const auto [cosC, sinC, cosD, sinD] = cosinesAndSines(
        v, [](const auto& e, const auto& f) { return e + f; },
        [](const auto& e, const auto& f) { return e - f; },
        [](const auto& e, const auto& f) { return e * f; });
    return -compareProducts(cosD, sinC, ExactInteger() - sinD, cosC);
}

}  // namespace

double orient2dexact(const double* pa, const double* pb, const double* pc) {
    const auto ab = productDifference(pa[0], pb[1], pa[0], pc[1]);
    const auto bc = productDifference(pb[0], pc[1], pb[0], pa[1]);
    const auto ca = productDifference(pc[0], pa[1], pc[0], pb[1]);
    return sum(sum(ab, bc), ca).estimate();
}

int orientationExact(Xy a, Xy b, Xy c) {
    const std::array<Two, 4> v{twoDiff(a.x, c.x), twoDiff(b.y, c.y), twoDiff(a.y, c.y),
                               twoDiff(b.x, c.x)};
    if (areExact(v)) {
        return compare(twoProduct(v[0].high, v[1].high), twoProduct(v[2].high, v[3].high));
    }
    const std::array<double, 6> coordinates{a.x, a.y, b.x, b.y, c.x, c.y};
    if (expansionsAreExact(coordinates)) {
        return signOf(orient2dexact(coordinates.data(), &coordinates[2], &coordinates[4]));
    }
    return orientationOfAnySize(a, b, c);
}

template <class Real>
int inCircleExact(const Real* atP, const Real* atA, const Real* atB, const Real* atD) {
    const Xy p = xyOf(atP), a = xyOf(atA), b = xyOf(atB), d = xyOf(atD);
    if (isRightAngleByAxes(p, a, b) && isRightAngleByAxes(d, a, b)) { return 0; }
    const std::array<Two, 8> differences{twoDiff(a.x, p.x), twoDiff(a.y, p.y), twoDiff(b.x, p.x),
                                         twoDiff(b.y, p.y), twoDiff(a.x, d.x), twoDiff(a.y, d.y),
                                         twoDiff(b.x, d.x), twoDiff(b.y, d.y)};
    if (areExact(differences)) {
        if (const Sign sine = sineOfCloseAngles(differences); sine.isKnown) { return -sine.sign; }
    }
    const std::array<double, 8> coordinates{p.x, p.y, a.x, a.y, b.x, b.y, d.x, d.y};
    if (expansionsAreExact(coordinates)) {
        std::array<Expansion<2>, 8> v;
        std::transform(differences.begin(), differences.end(), v.begin(), fromTwo);
        const auto [cosC, sinC, cosD, sinD] = cosinesAndSines(
            v, [](const auto& e, const auto& f) { return sum(e, f); },
            [](const auto& e, const auto& f) { return difference(e, f); },
            [](const auto& e, const auto& f) { return product(e, f); });
        return -signOf(sum(product(cosD, sinC), product(sinD, cosC)).estimate());
    }
    return inCircleOfAnySize(p, a, b, d);
}

template int inCircleExact(const float*, const float*, const float*, const float*);
template int inCircleExact(const double*, const double*, const double*, const double*);

}  // namespace zyn::detail
