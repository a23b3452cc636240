// Random points for the tests of this folder, the same at each run.
#pragma once

#include <zyn/point.h>

#include <cstdint>
#include <limits>
#include <random>

#include "testing.h"

namespace zyn {

using Precisions = testing::Types<float, double>;

/// What a result of order 1 may lose to rounding.
template <class T>
constexpr double tolerated = 1e4 * double(std::numeric_limits<T>::epsilon());

class RandomPoints {
public:
    explicit RandomPoints(std::uint32_t seed) : engine(seed) {}

    int integer(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(engine); }
    template <class T>
    XPnt3<T> point(double half) {
        std::uniform_real_distribution<double> number(-half, half);
        const double x = number(engine), y = number(engine), z = number(engine);
        return XPnt3d(x, y, z);
    }

private:
    std::mt19937 engine;
};

}  // namespace zyn
