// Random points for the tests of this folder; a failing test shows the seed.
#pragma once

#include <gtest/gtest.h>
#include <zyn/point.h>

#include <cstdint>
#include <random>
#include <string>

namespace zyn {

class RandomPoints {
public:
    explicit RandomPoints(std::uint32_t seed)
        : trace(__FILE__, __LINE__, "seed " + std::to_string(seed)), engine(seed) {}

    double number(double lo, double hi) {
        return std::uniform_real_distribution<double>(lo, hi)(engine);
    }
    int integer(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(engine); }
    template <class T>
    XPnt3<T> point(double half) {
        const double x = number(-half, half), y = number(-half, half), z = number(-half, half);
        return {static_cast<T>(x), static_cast<T>(y), static_cast<T>(z)};
    }

private:
    testing::ScopedTrace trace;
    std::mt19937 engine;
};

}  // namespace zyn
