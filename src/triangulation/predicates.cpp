#include "triangulation/predicates.h"

#include "triangulation/predicates_any_size.h"

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

/// Returns ab - cd exactly; published as Two_Two_Diff.
Expansion<4> productDifference(double a, double b, double c, double d) {
    return difference(fromTwo(twoProduct(a, b)), fromTwo(twoProduct(c, d)));
}

/// Returns whether products of four differences of such coordinates neither overflow nor lose a
/// bit. The lowest bit of a coordinate is then at least 2^-202, and that of a product at least
/// 2^-808.
bool expansionsAreExact(std::span<const double> coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(), [](double c) {
        const double size = std::abs(c);
        return c == 0.0 || (size >= smallestExact && size <= largestExact);
    });
}

/// Returns whether the differences have no rounding error, as between nearby points, and whether
/// products of four of them neither overflow nor lose a bit.
bool areExact(std::span<const Two> differences) {
    return std::all_of(differences.begin(), differences.end(), [](const Two& d) {
        const double size = std::abs(d.high);
        return d.low == 0.0 && (d.high == 0.0 || (size >= 0x1p-200 && size <= 0x1p200));
    });
}

/// Returns the sign of left - right. REQUIRES: each is the exact value of a product, so that
/// rounding keeps their order.
int compare(const Two& left, const Two& right) {
    if (left.high != right.high) { return left.high > right.high ? 1 : -1; }
    return left.low > right.low ? 1 : left.low < right.low ? -1 : 0;
}

/// Holds ab + cd to twice the precision of a double. `isPlain` says whether `high` alone is exact.
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

/// Returns whether the cosine of the angle at `at` is 0 because its sides are parallel to different
/// axes, or one of them has no length. A grid has many circles through two such corners.
bool isRightAngleByAxes(Xy at, Xy a, Xy b) {
    return (a.x == at.x || b.x == at.x) && (a.y == at.y || b.y == at.y);
}

/// Returns the sign of cosD·sinC + sinD·cosC from exact differences, in twice the precision of a
/// double. The result is exact if the four factors are single doubles, as on a grid of whole
/// numbers. Otherwise each factor and each product has an error of about 2^-106 of the terms in it.
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

int signOf(double value) { return value > 0.0 ? 1 : value < 0.0 ? -1 : 0; }

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
