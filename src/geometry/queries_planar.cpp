// Side tests and crossings in the plane.

#include <zyn/geometry.h>

namespace zyn {

namespace {

template <class T>
std::int32_t side(T ax, T ay, T bx, T by, T cx, T cy) {
    const T v = (ax - cx) * (by - cy) - (bx - cx) * (ay - cy);
    if (v == 0) { return 0; }
    return v > 0 ? 1 : -1;
}

template <class T>
std::int32_t side(Coordinates<T, 2> a, Coordinates<T, 2> b, Coordinates<T, 2> c) {
    return side(a[0], a[1], b[0], b[1], c[0], c[1]);
}

template <class T>
bool insideTriangle(Coordinates<T, 2> a, Coordinates<T, 2> b, Coordinates<T, 2> c,
                    Coordinates<T, 2> p) {
    return side(a, b, p) == side(a, b, c) && side(a, c, p) == side(a, c, b) &&
           side(b, c, p) == side(b, c, a);
}

/// Returns the position of `p` between `a` and `b` along the axis on which they are farther apart.
double parameterOnLine(const XPnt2d& a, const XPnt2d& b, const XPnt2d& p) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    return std::abs(dx) > std::abs(dy) ? (p.x - a.x) / dx : (p.y - a.y) / dy;
}

bool withinSegment(double t) { return t >= 0.0 && t <= 1.0; }

}  // namespace

template <std::floating_point T>
std::int32_t left_right(const XPnt2<T>& a, const XPnt2<T>& b, const XPnt2<T>& c) noexcept {
    return side(a.x, a.y, b.x, b.y, c.x, c.y);
}

template std::int32_t left_right(const XPnt2f&, const XPnt2f&, const XPnt2f&) noexcept;
template std::int32_t left_right(const XPnt2d&, const XPnt2d&, const XPnt2d&) noexcept;

std::int32_t left_right(Coordinates<double, 2> a, Coordinates<double, 2> b,
                        Coordinates<double, 2> c) noexcept {
    return side(a, b, c);
}

std::int32_t left_right(Coordinates<float, 2> a, Coordinates<float, 2> b,
                        Coordinates<float, 2> c) noexcept {
    return side(a, b, c);
}

std::int32_t left_right(double ax, double ay, double bx, double by, double cx, double cy) noexcept {
    return side(ax, ay, bx, by, cx, cy);
}

bool isIntersect(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c, const XPnt2d& d) noexcept {
    return left_right(a, b, c) != left_right(a, b, d) && left_right(c, d, a) != left_right(c, d, b);
}

bool isIntersect(double ax, double ay, double bx, double by, double cx, double cy, double dx,
                 double dy) noexcept {
    return isIntersect(XPnt2d(ax, ay), XPnt2d(bx, by), XPnt2d(cx, cy), XPnt2d(dx, dy));
}

bool isIntersect2d(const XPnt3d& a, const XPnt3d& b, const XPnt2d& c, const XPnt2d& d) noexcept {
    return isIntersect(a.to2d(), b.to2d(), c, d);
}

bool intersect_line(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c, const XPnt2d& d, double& t,
                    double& u) noexcept {
    // Each line is A·x + B·y + C = 0.
    const double a1 = b.y - a.y;
    const double b1 = a.x - b.x;
    const double c1 = -a.x * a1 - a.y * b1;
    const double a2 = d.y - c.y;
    const double b2 = c.x - d.x;
    const double c2 = -c.x * a2 - c.y * b2;

    const double determinant = b2 * a1 - a2 * b1;
    if (tolerance::planarLines > std::abs(determinant)) { return false; }
    const XPnt2d crossing((c2 * b1 - b2 * c1) / determinant, (a2 * c1 - c2 * a1) / determinant);
    t = parameterOnLine(a, b, crossing);
    u = parameterOnLine(c, d, crossing);
    return true;
}

bool intersect_seg(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c, const XPnt2d& d) noexcept {
    double t = 0.0;
    double u = 0.0;
    return intersect_seg(a, b, c, d, t, u);
}

bool intersect_seg(const XPnt2d& a, const XPnt2d& b, const XPnt2d& c, const XPnt2d& d, double& t,
                   double& u) noexcept {
    return intersect_line(a, b, c, d, t, u) && withinSegment(t) && withinSegment(u);
}

bool isInTriangle(Coordinates<float, 2> a, Coordinates<float, 2> b, Coordinates<float, 2> c,
                  Coordinates<float, 2> p) noexcept {
    return insideTriangle(a, b, c, p);
}

bool isInTriangle(Coordinates<double, 2> a, Coordinates<double, 2> b, Coordinates<double, 2> c,
                  Coordinates<double, 2> p) noexcept {
    return insideTriangle(a, b, c, p);
}

template <std::floating_point T>
double angle2d(const XPnt2<T>& u, const XPnt2<T>& v) noexcept {
    return double(std::atan2(v.y, v.x)) - double(std::atan2(u.y, u.x));
}

template double angle2d(const XPnt2f&, const XPnt2f&) noexcept;
template double angle2d(const XPnt2d&, const XPnt2d&) noexcept;

double getParam(const XPnt2d& a, const XPnt2d& b, const XPnt2d& p) noexcept {
    return parameterOnLine(a, b, p);
}

}  // namespace zyn
