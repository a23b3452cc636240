#include "exact_signs.h"

#include <gmpxx.h>

namespace support {
namespace {

/// From q to p. The bits suffice for sums of products of four differences of any doubles.
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

}  // namespace support
