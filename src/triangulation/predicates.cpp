#include "triangulation/predicates.h"

#include "triangulation/exact_integer.h"

#include <algorithm>
#include <array>
#include <span>

namespace zyn {
namespace {

using expansion::difference;
using expansion::Expansion;
using expansion::fromTwo;
using expansion::product;
using expansion::sum;
using expansion::twoDiff;
using expansion::twoProduct;

/// The published Two_Two_Diff of two exact products.
Expansion<4> productDifference(double a, double b, double c, double d) {
    return difference(fromTwo(twoProduct(a, b)), fromTwo(twoProduct(c, d)));
}

/// Whether products of four differences of such coordinates neither overflow nor lose a bit: the
/// lowest bit of a coordinate is then 2^-202 or above, that of a product 2^-808 or above.
bool expansionsAreExact(std::span<const double> coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(), [](double c) {
        const double size = std::abs(c);
        return c == 0.0 || (size >= 0x1p-150 && size <= 0x1p200);
    });
}

bool allFinite(std::span<const double> coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(),
                       [](double c) { return std::isfinite(c); });
}

/// The power of two that every coordinate is a whole multiple of.
int commonUnit(std::span<const double> coordinates) {
    int unit = 1024;
    for (const double c : coordinates) {
        if (c != 0.0) { unit = std::min(unit, lowestBit(c)); }
    }
    return unit;
}

int signOf(double value) { return value > 0.0 ? 1 : value < 0.0 ? -1 : 0; }

/// cosD·sinC + sinD·cosC of the differences to p and d, in any exact arithmetic.
template <class Number, class Sum, class Difference, class Product>
auto sineOfAngleSum(const std::array<Number, 8>& v, Sum add, Difference minus, Product times) {
    const auto& [apx, apy, bpx, bpy, adx, ady, bdx, bdy] = v;
    const auto sinC = minus(times(apx, bpy), times(apy, bpx));
    const auto cosC = add(times(apx, bpx), times(apy, bpy));
    const auto sinD = minus(times(bdx, ady), times(bdy, adx));
    const auto cosD = add(times(adx, bdx), times(ady, bdy));
    return add(times(cosD, sinC), times(sinD, cosC));
}

}  // namespace

double orient2dexact(const double* pa, const double* pb, const double* pc) {
    const auto ab = productDifference(pa[0], pb[1], pa[0], pc[1]);
    const auto bc = productDifference(pb[0], pc[1], pb[0], pa[1]);
    const auto ca = productDifference(pc[0], pa[1], pc[0], pb[1]);
    return sum(sum(ab, bc), ca).estimate();
}

int orientationExact(Xy a, Xy b, Xy c) {
    const std::array<double, 6> coordinates{a.x, a.y, b.x, b.y, c.x, c.y};
    if (expansionsAreExact(coordinates)) {
        return signOf(orient2dexact(coordinates.data(), &coordinates[2], &coordinates[4]));
    }
    if (!allFinite(coordinates)) { return 0; }
    const int unit = commonUnit(coordinates);
    const auto exact = [unit](double u, double v) {
        return ExactInteger(u, unit) - ExactInteger(v, unit);
    };
    return (exact(a.x, c.x) * exact(b.y, c.y) - exact(a.y, c.y) * exact(b.x, c.x)).sign();
}

template <class Real>
int inCircleExact(const Real* atP, const Real* atA, const Real* atB, const Real* atD) {
    const Xy p = xyOf(atP), a = xyOf(atA), b = xyOf(atB), d = xyOf(atD);
    const std::array<double, 8> coordinates{p.x, p.y, a.x, a.y, b.x, b.y, d.x, d.y};
    if (expansionsAreExact(coordinates)) {
        const auto exact = [](double u, double v) { return fromTwo(twoDiff(u, v)); };
        const std::array<Expansion<2>, 8> v{exact(a.x, p.x), exact(a.y, p.y), exact(b.x, p.x),
                                            exact(b.y, p.y), exact(a.x, d.x), exact(a.y, d.y),
                                            exact(b.x, d.x), exact(b.y, d.y)};
        const auto sine = sineOfAngleSum(
            v, [](const auto& e, const auto& f) { return sum(e, f); },
            [](const auto& e, const auto& f) { return difference(e, f); },
            [](const auto& e, const auto& f) { return product(e, f); });
        return -signOf(sine.estimate());
    }
    if (!allFinite(coordinates)) { return 0; }
    const int unit = commonUnit(coordinates);
    const auto exact = [unit](double u, double v) {
        return ExactInteger(u, unit) - ExactInteger(v, unit);
    };
    const std::array<ExactInteger, 8> v{exact(a.x, p.x), exact(a.y, p.y), exact(b.x, p.x),
                                        exact(b.y, p.y), exact(a.x, d.x), exact(a.y, d.y),
                                        exact(b.x, d.x), exact(b.y, d.y)};
    return -sineOfAngleSum(
                v, [](const auto& e, const auto& f) { return e + f; },
                [](const auto& e, const auto& f) { return e - f; },
                [](const auto& e, const auto& f) { return e * f; })
                .sign();
}

template int inCircleExact(const float*, const float*, const float*, const float*);
template int inCircleExact(const double*, const double*, const double*, const double*);

}  // namespace zyn
