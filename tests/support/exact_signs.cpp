#include "exact_signs.h"

#include <gmpxx.h>

#include <cstddef>

namespace support {
namespace {

/// The vector from q to p. Its bits suffice for sums of products of four differences of doubles.
struct Vector {
    Vector(Position p, Position q) : x(exact(p.x) - exact(q.x)), y(exact(p.y) - exact(q.y)) {}

    mpf_class x, y;

private:
    static mpf_class exact(double c) { return {c, 9000}; }
};

mpf_class cross(const Vector& u, const Vector& v) { return u.x * v.y - u.y * v.x; }
mpf_class lift(const Vector& v) { return v.x * v.x + v.y * v.y; }

}  // namespace

int exactOrientation(Position a, Position b, Position c) { return sgn(cross({a, c}, {b, c})); }

int exactInCircle(Position a, Position b, Position c, Position d) {
    const Vector u(a, d), v(b, d), w(c, d);
    return sgn(mpf_class(lift(u) * cross(v, w) + lift(v) * cross(w, u) + lift(w) * cross(u, v)));
}

bool haveAreaOf(const std::vector<Position>& triangles, const std::vector<Position>& polygon) {
    mpf_class rest(0, 9000);
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
        const Position c = triangles[i + 2];
        rest += cross({triangles[i], c}, {triangles[i + 1], c});
    }
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
        rest -= cross({polygon[i], polygon[0]}, {polygon[i + 1], polygon[0]});
    }
    return rest == 0;
}

}  // namespace support
