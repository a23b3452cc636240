// The signs of the predicates against exact arithmetic, on positions that leave plain doubles in
// doubt.
#include "triangulation/predicates.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <utility>

#include "exact_signs.h"
#include "seed.h"

namespace {

using namespace zyn;

constexpr double infinity = HUGE_VAL;

/// Four positions, near one line and near one circle, at some scale.
using Quad = std::array<Xy, 4>;

struct Scale {
    double offset;  // of all coordinates
    double size;    // of the figure
    int ulps;       // by which each coordinate is moved at most
};
const Scale scales[] = {{0, 1, 2},     {1, 1, 1},       {1e15, 64, 1},     {5e5, 1e-3, 1},
                        {0, 1e-9, 3},  {0, 4e-160, 1},  {0, 1e-310, 2},    {0, 5e-323, 3},
                        {0, 1e80, 1},  {1e80, 1e70, 2}, {1e-170, 1e40, 1}, {-1e60, 1e50, 1},
                        {0, 1e300, 1}, {1e100, 1e99, 3}};

class PredicatesTest : public testing::Test {
protected:
    /// Calls `check` on thousands of such positions: on a common line or a common circle, up to the
    /// rounding and to some units in the last place.
    template <class Check>
    void forQuads(Check check) {
        const unsigned seed = support::newSeed();
        std::mt19937 random(seed);
        const auto uniform = [&random] {
            return std::uniform_real_distribution(-1.0, 1.0)(random);
        };
        for (const Scale& scale : scales) {
            SCOPED_TRACE("offset " + std::to_string(scale.offset) + ", size " +
                         std::to_string(scale.size));
            std::uniform_int_distribution ulps(-scale.ulps, scale.ulps);
            const auto place = [&](double c) {
                c = scale.offset + scale.size * c;
                for (int n = ulps(random); n != 0; n += n < 0 ? 1 : -1) {
                    c = std::nextafter(c, n < 0 ? -infinity : infinity);
                }
                return c;
            };
            for (int i = 0; i < 500 && !HasFailure(); ++i) {
                const double slope = uniform(), angle = uniform();
                Quad line, circle;
                for (std::size_t k = 0; k < 4; ++k) {
                    const double t = k == 3 && i % 2 == 0 ? angle : uniform();
                    line[k] = {place(t), place(slope * t)};
                    circle[k] = {place(std::cos(4 * t)), place(std::sin(4 * t))};
                }
                check(line);
                check(circle);
            }
        }
    }
};

support::Position at(Xy p) { return {p.x, p.y}; }
int signOf(double value) { return value > 0 ? 1 : value < 0 ? -1 : 0; }
int insideSign(const Xy& p, const Xy& a, const Xy& b, const Xy& d) {
    return inCircle(&p.x, &a.x, &b.x, &d.x);
}
int orient2dSign(const Xy& a, const Xy& b, const Xy& c) {
    return signOf(orient2dexact(&a.x, &b.x, &c.x));
}

TEST_F(PredicatesTest, OrientationHasTheExactSign) {
    forQuads([](const Quad& q) {
        EXPECT_EQ(orientation(q[0], q[1], q[2]),
                  support::exactOrientation(at(q[0]), at(q[1]), at(q[2])));
    });
}

TEST_F(PredicatesTest, InCircleHasTheExactSign) {
    forQuads([](const Quad& q) {
        EXPECT_EQ(insideSign(q[0], q[1], q[2], q[3]),
                  support::exactInCircle(at(q[0]), at(q[1]), at(q[2]), at(q[3])));
    });
}

TEST_F(PredicatesTest, SwapNegatesAndCyclicShiftKeepsTheSign) {
    forQuads([](const Quad& q) {
        const auto [a, b, c, d] = q;
        const int turn = orientation(a, b, c);
        EXPECT_EQ(orientation(b, a, c), -turn);
        EXPECT_EQ(orientation(a, c, b), -turn);
        EXPECT_EQ(orientation(b, c, a), turn);
        const int inside = insideSign(a, b, c, d);
        EXPECT_EQ(insideSign(b, a, c, d), -inside);
        EXPECT_EQ(insideSign(b, c, a, d), inside);
        EXPECT_EQ(insideSign(a, b, d, c), -inside);
    });
}

TEST_F(PredicatesTest, Orient2dexactHasTheExactSignWhereProductsAreInRange) {
    forQuads([](const Quad& q) {
        const auto [a, b, c, d] = q;
        const double size = std::max({std::abs(a.x), std::abs(a.y), std::abs(b.x)});
        if (size > 1e150 || size < 1e-130) { return; }
        const int turn = support::exactOrientation(at(a), at(b), at(c));
        EXPECT_EQ(orient2dSign(a, b, c), turn);
        EXPECT_EQ(orient2dSign(b, a, c), -turn);
        EXPECT_EQ(orient2dSign(c, a, b), turn);
    });
    // A line on which the plain cross product rounds to 2^-54.
    const Xy a{0.1, 0.1}, b{0.3, 0.3}, c{0.7, 0.7};
    EXPECT_EQ(orient2dexact(&a.x, &b.x, &c.x), 0.0);
    const Xy p{0, 0}, q{4, 0}, r{0, 3};
    EXPECT_EQ(orient2dexact(&p.x, &q.x, &r.x), 12.0);
}

TEST(Predicates, InCircleOnATriangleOfNoAreaIsTheLimit) {
    const Xy a{0, 0}, b{4, 2}, d{5, 0};
    EXPECT_EQ(insideSign({2, 1}, a, b, d), 1);   // between a and b
    EXPECT_EQ(insideSign({6, 3}, a, b, d), -1);  // beyond b
    EXPECT_EQ(insideSign({-2, -1}, a, b, d), -1);
    EXPECT_EQ(insideSign(a, a, b, d), 0);
    EXPECT_EQ(insideSign({2, 1}, a, b, {3, 1.5}), 0);
}

TEST(Predicates, WhatIsNotFiniteHasNoSide) {
    const Xy a{0, 0}, b{1, 0}, c{0, 1};
    for (const double bad : {std::nan(""), infinity, -infinity}) {
        EXPECT_EQ(orientation(a, b, {bad, 1}), 0);
        EXPECT_EQ(orientation({0, bad}, b, c), 0);
        EXPECT_EQ(insideSign(a, b, c, {1, bad}), 0);
        EXPECT_EQ(insideSign({bad, 0}, b, c, a), 0);
    }
}

}  // namespace
