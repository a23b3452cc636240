// The signs of the predicates against exact arithmetic, on positions for which plain doubles are
// uncertain.
#include "triangulation/predicates.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "exact_signs.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;
using namespace zyn::detail;

constexpr double infinity = HUGE_VAL;

struct Scale {
    double offset;  // of all coordinates
    double size;    // of the figure
    int ulps;       // by which each coordinate is moved at most
};
const Scale scales[] = {{0, 1, 2},     {1, 1, 1},       {1e15, 64, 1},     {5e5, 1e-3, 1},
                        {0, 1e-9, 3},  {0, 4e-160, 1},  {0, 1e-310, 2},    {0, 5e-323, 3},
                        {0, 1e80, 1},  {1e80, 1e70, 2}, {1e-170, 1e40, 1}, {-1e60, 1e50, 1},
                        {0, 1e300, 1}, {1e100, 1e99, 3}};

/// Calls `check` thousands of times with four positions on a line or on a circle, each moved by
/// rounding and by some units in the last place.
template <class Check>
void forEachQuad(Check check) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution uniform(-1.0, 1.0);
    for (const Scale& scale : scales) {
        SCOPED_TRACE(testing::Message() << scale.offset << ", " << scale.size);
        std::uniform_int_distribution ulps(-scale.ulps, scale.ulps);
        const auto place = [&](double c) {
            c = scale.offset + scale.size * c;
            for (int n = ulps(random); n != 0; n += n < 0 ? 1 : -1) {
                c = std::nextafter(c, n < 0 ? -infinity : infinity);
            }
            return c;
        };
        for (int i = 0; i < 500 && !testing::Test::HasFailure(); ++i) {
            const double slope = uniform(random);
            Xy line[4], circle[4];
            for (std::size_t k = 0; k < 4; ++k) {
                const double t = uniform(random);
                line[k] = {place(t), place(slope * t)};
                circle[k] = {place(std::cos(4 * t)), place(std::sin(4 * t))};
            }
            check(line[0], line[1], line[2], line[3]);
            check(circle[0], circle[1], circle[2], circle[3]);
        }
    }
}

support::Position at(Xy p) { return {p.x, p.y}; }
int insideSign(const Xy& p, const Xy& a, const Xy& b, const Xy& d) {
    return inCircle(&p.x, &a.x, &b.x, &d.x);
}
int orient2dSign(const Xy& a, const Xy& b, const Xy& c) {
    const double value = orient2dexact(&a.x, &b.x, &c.x);
    return value > 0 ? 1 : value < 0 ? -1 : 0;
}

// A swap of two positions negates the sign; a cyclic shift of three keeps it.

TEST(Predicates, OrientationHasTheExactSign) {
    forEachQuad([](Xy a, Xy b, Xy c, Xy) {
        const int turn = support::exactOrientation(at(a), at(b), at(c));
        EXPECT_EQ(orientation(a, b, c), turn);
        EXPECT_EQ(orientation(b, c, a), turn);
        EXPECT_EQ(orientation(b, a, c), -turn);
        EXPECT_EQ(orientation(a, c, b), -turn);
        const double size = std::max({std::abs(a.x), std::abs(a.y), std::abs(b.x)});
        if (size > 1e150 || size < 1e-130) { return; }  // products are out of range
        EXPECT_EQ(orient2dSign(a, b, c), turn);
        EXPECT_EQ(orient2dSign(b, a, c), -turn);
    });
    const Xy p{0, 0}, q{4, 0}, r{0, 3};
    EXPECT_EQ(orient2dexact(&p.x, &q.x, &r.x), 12.0);
}

TEST(Predicates, InCircleHasTheExactSign) {
    forEachQuad([](Xy a, Xy b, Xy c, Xy d) {
        const int inside = support::exactInCircle(at(a), at(b), at(c), at(d));
        EXPECT_EQ(insideSign(a, b, c, d), inside);
        EXPECT_EQ(insideSign(b, c, a, d), inside);
        EXPECT_EQ(insideSign(b, a, c, d), -inside);
        EXPECT_EQ(insideSign(a, b, d, c), -inside);
    });
}

TEST(Predicates, SignsAreExactForCoordinatesOfVeryDifferentSizes) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution uniform(-1.0, 1.0);
    const auto check = [](Xy a, Xy b, Xy c, Xy d) {
        EXPECT_EQ(orientation(a, b, c), support::exactOrientation(at(a), at(b), at(c)));
        EXPECT_EQ(insideSign(a, b, c, d), support::exactInCircle(at(a), at(b), at(c), at(d)));
    };
    for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) {
        // Exponents of all sizes, or so close to each other that one scale makes products exact.
        const bool isWide = i % 2 == 0;
        std::uniform_int_distribution exponent(isWide ? -1074 : -900, isWide ? 330 : -700);
        const auto any = [&] { return std::ldexp(uniform(random), exponent(random)); };
        check({any(), any()}, {any(), any()}, {any(), any()}, {any(), any()});
        // On one circle, or with one position slightly off it.
        const double x = any(), w = any(), base = any(), high = any(), beside = any();
        check({-x, base}, {x, base}, {w, high}, {-w, high});
        check({-x, base}, {x, base}, {w, high}, {-w, std::nextafter(high, beside)});
        // On one line, or with one position slightly off it.
        const double t = std::ldexp(3, exponent(random)), u = std::ldexp(5, exponent(random));
        check({any(), any()}, {t, 3 * t}, {u, 3 * u}, {-u, -3 * u});
        check({t, 3 * t}, {u, 3 * u}, {-t, std::nextafter(-3 * t, beside)}, {0, 0});
    }
}

TEST(Predicates, NonFiniteCoordinatesHaveNoSide) {
    const Xy a{0, 0}, b{1, 0}, c{0, 1};
    for (const double bad : {std::nan(""), infinity, -infinity}) {
        EXPECT_EQ(orientation(a, b, {bad, 1}), 0);
        EXPECT_EQ(orientation({0, bad}, b, c), 0);
        EXPECT_EQ(insideSign(a, b, c, {1, bad}), 0);
        EXPECT_EQ(insideSign({bad, 0}, b, c, a), 0);
    }
}

}  // namespace
