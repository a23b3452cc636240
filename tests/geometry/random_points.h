// Random points for the tests of this folder; a failing test shows the seed.
#pragma once

#include <gtest/gtest.h>
#include <zyn/point.h>

#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace zyn {

using Precisions = testing::Types<float, double>;

/// What a result of order 1 may lose to rounding.
template <class T>
constexpr double tolerated = 1e4 * double(std::numeric_limits<T>::epsilon());

class RandomPoints {
public:
    explicit RandomPoints(std::uint32_t seed)
        : trace(__FILE__, __LINE__, "seed " + std::to_string(seed)), engine(seed) {}

    int integer(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(engine); }
    template <class T>
    XPnt3<T> point(double half) {
        std::uniform_real_distribution<double> number(-half, half);
        const double x = number(engine), y = number(engine), z = number(engine);
        return {static_cast<T>(x), static_cast<T>(y), static_cast<T>(z)};
    }

private:
    testing::ScopedTrace trace;
    std::mt19937 engine;
};

}  // namespace zyn
