#include "exact_signs.h"

#include <gmpxx.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace support {
namespace {

struct Vector {
    mpz_class x;
    mpz_class y;
};

/// The vectors from the last position to each of the others, as integers over one power of two.
template <std::size_t N>
std::array<Vector, N - 1> differences(const std::array<Position, N>& positions) {
    constexpr int mantissaBits = 53;
    int unit = 2000;
    for (const Position& p : positions) {
        for (const double c : {p.x, p.y}) {
            if (c != 0.0) { unit = std::min(unit, std::ilogb(c) - mantissaBits); }
        }
    }
    const auto whole = [unit](double c) {
        int exponent = 0;
        mpz_class value(std::ldexp(std::frexp(c, &exponent), mantissaBits));
        if (c != 0.0) { value <<= static_cast<unsigned>(exponent - mantissaBits - unit); }
        return value;
    };
    std::array<Vector, N - 1> result;
    const mpz_class x = whole(positions[N - 1].x), y = whole(positions[N - 1].y);
    for (std::size_t i = 0; i + 1 < N; ++i) {
        result[i] = {whole(positions[i].x) - x, whole(positions[i].y) - y};
    }
    return result;
}

mpz_class cross(const Vector& u, const Vector& v) { return u.x * v.y - u.y * v.x; }
mpz_class lift(const Vector& v) { return v.x * v.x + v.y * v.y; }

}  // namespace

int exactOrientation(Position a, Position b, Position c) {
    const auto [u, v] = differences<3>({a, b, c});
    return sgn(cross(u, v));
}

int exactInCircle(Position a, Position b, Position c, Position d) {
    const auto [u, v, w] = differences<4>({a, b, c, d});
    return sgn(mpz_class(lift(u) * cross(v, w) + lift(v) * cross(w, u) + lift(w) * cross(u, v)));
}

}  // namespace support
