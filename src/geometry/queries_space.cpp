// Planes, lines, balls and boxes in space.

#include <zyn/geometry.h>

namespace zyn {

namespace {

/// Sets `out` to p + at·dir and `t` to its distance from `p` in units of `dir`.
template <class T>
void placeOnLine(const XPnt3<T>& p, const XPnt3<T>& dir, T at, XPnt3<T>& out, T& t) {
    out = dir * at + p;
    t = at < 0 ? -at : at;
}

template <class T>
T heron(Coordinates<T, 3> a, Coordinates<T, 3> b, Coordinates<T, 3> c) {
    const XPnt3<T> pa(a[0], a[1], a[2]);
    const XPnt3<T> pb(b[0], b[1], b[2]);
    const XPnt3<T> pc(c[0], c[1], c[2]);
    const T l1 = dist(pa, pb);
    const T l2 = dist(pb, pc);
    const T l3 = dist(pc, pa);
    const T h = (l1 + l2 + l3) / 2;
    return std::sqrt(std::abs(h * (h - l1) * (h - l2) * (h - l3)));
}

template <class T>
T distance(Coordinates<T, 3> a, Coordinates<T, 3> b) {
    return dist(XPnt3<T>(a[0], a[1], a[2]), XPnt3<T>(b[0], b[1], b[2]));
}

}  // namespace

template <class T>
XPnt3<T> normal(const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c) noexcept {
    const XPnt3<T> n = cross(a, b, c);
    const T s = n.norm2();
    return s == 0 ? XPnt3<T>() : n * (1 / std::sqrt(s));
}

template <class T>
XPnt3<T> rotate_2d(const XPnt3<T>& c, Scalar<T> angle, const XPnt3<T>& p) noexcept {
    const XPnt3<T> d = p - c;
    const T r = d.norm_2d();
    const T direction = std::atan2(d.y, d.x) + angle;
    return {c.x + r * std::cos(direction), c.y + r * std::sin(direction), p.z, p.inten};
}

template <class T>
T angle(const XPnt3<T>& u, const XPnt3<T>& v) noexcept {
    const T cosine = std::abs(dot(u, v)) / (v.norm() * u.norm());
    if (tolerance::parallel > double(1 - cosine)) { return 0; }
    return std::acos(cosine);
}

template <class T>
int above_plane(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b,
                const XPnt3<T>& c) noexcept {
    const XPnt3<T> n = cross(a, b, c);
    return dot(n, p) > dot(n, a) ? 1 : 0;
}

template <class T>
void line_plane_X(const XPnt3<T>& p, const XPnt3<T>& dir, const XPnt3<T>& a, const XPnt3<T>& b,
                  const XPnt3<T>& c, XPnt3<T>& out, Scalar<T>& t) noexcept {
    const XPnt3<T> n = cross(a, b, c);
    const T e = dot(dir, n);
    if (e == 0) { return; }
    placeOnLine(p, dir, (dot(n, a) - dot(n, p)) / e, out, t);
}

template <class T>
void line_plane_X(const XPnt3<T>& p, const XPnt3<T>& dir, const XPnt3<T>& n, Scalar<T> d,
                  XPnt3<T>& out, Scalar<T>& t) noexcept {
    const T e = dot(dir, n);
    if (e == 0) { return; }
    placeOnLine(p, dir, -(dot(p, n) + d) / e, out, t);
}

template <class T>
bool lines_intersect(const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c, const XPnt3<T>& d,
                     XPnt3<T>& out) noexcept {
    const XPnt3<T> d1 = b - a;
    const XPnt3<T> d2 = d - c;
    const XPnt3<T> m = cross(d1, d2);
    const T length2 = m.norm2();
    if (tolerance::spatialLines > double(length2)) { return false; }
    const T s = dot(cross(c - a, d2), m);
    out = a + d1 * s / length2;
    return true;
}

double getParam(const XPnt3d& a, const XPnt3d& b, const XPnt3d& p) noexcept {
    const XPnt3d d = b - a;
    int k = std::abs(d.x) > std::abs(d.y) ? 0 : 1;
    if (!(std::abs(d[k]) > std::abs(d.z))) { k = 2; }
    return (p[k] - a[k]) / d[k];
}

template <std::same_as<float> T>
bool PntInTri(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c) noexcept {
    const XPnt3<T> e0 = c - a;
    const XPnt3<T> e1 = b - a;
    const XPnt3<T> e2 = p - a;
    const T d00 = dot(e0, e0);
    const T d01 = dot(e1, e0);
    const T d02 = dot(e2, e0);
    const T d11 = dot(e1, e1);
    const T d12 = dot(e2, e1);
    const T i = 1 / (d11 * d00 - d01 * d01);
    const T s = (d11 * d02 - d12 * d01) * i;
    if (s < 0 || s > 1) { return false; }
    const T r = (d12 * d00 - d02 * d01) * i;
    if (r < 0 || r > 1) { return false; }
    return 1 >= s + r;
}

template <class T>
bool ball_within_bounds(const XPnt3<T>& c, Scalar<T> r, const XPnt3<T>& lo,
                        const XPnt3<T>& hi) noexcept {
    for (int k = 0; k < 3; ++k) {
        if (!(r < c[k] - lo[k] && r < hi[k] - c[k])) { return false; }
    }
    return true;
}

template <class T>
bool ball_within_bounds(const XPnt3<T>& c, Scalar<T> r, const XPnt3<T>& bc, Scalar<T> s) noexcept {
    const T e = r - s;
    for (int k = 0; k < 3; ++k) {
        if (!(e < c[k] - bc[k] && e < bc[k] - c[k])) { return false; }
    }
    return true;
}

template <class T>
bool bounds_overlap_ball(const XPnt3<T>& c, Scalar<T> r, const XPnt3<T>& lo,
                         const XPnt3<T>& hi) noexcept {
    T sum = 0;
    for (int k = 0; k < 3; ++k) {
        T excess = 0;
        if (c[k] < lo[k]) {
            excess = lo[k] - c[k];
        } else if (c[k] > hi[k]) {
            excess = c[k] - hi[k];
        }
        sum += excess * excess;
        if (excess > r || sum > r * r) { return false; }
    }
    return r * r > sum;
}

template <class T>
bool bounds_overlap_ball(const XPnt3<T>& c, Scalar<T> r, const XPnt3<T>& bc, Scalar<T> s) noexcept {
    const XPnt3<T> half(s, s, s);
    return bounds_overlap_ball(c, r, bc - half, bc + half);
}

template <class T>
bool spheres_intersect(const XPnt3<T>& c1, const XPnt3<T>& c2, Scalar<T> r1sq,
                       Scalar<T> r2) noexcept {
    const T e = dist2(c1, c2) - r1sq - r2 * r2;
    return e < 0 || 2 * std::sqrt(r1sq) * r2 > e;
}

double dist3d(Coordinates<double, 3> a, Coordinates<double, 3> b) noexcept {
    return distance(a, b);
}

float dist3f(Coordinates<float, 3> a, Coordinates<float, 3> b) noexcept { return distance(a, b); }

double area3d(Coordinates<double, 3> a, Coordinates<double, 3> b,
              Coordinates<double, 3> c) noexcept {
    return heron(a, b, c);
}

float area3f(Coordinates<float, 3> a, Coordinates<float, 3> b, Coordinates<float, 3> c) noexcept {
    return heron(a, b, c);
}

template XPnt3f normal(const XPnt3f&, const XPnt3f&, const XPnt3f&) noexcept;
template XPnt3d normal(const XPnt3d&, const XPnt3d&, const XPnt3d&) noexcept;
template XPnt3f rotate_2d(const XPnt3f&, float, const XPnt3f&) noexcept;
template XPnt3d rotate_2d(const XPnt3d&, double, const XPnt3d&) noexcept;
template float angle(const XPnt3f&, const XPnt3f&) noexcept;
template double angle(const XPnt3d&, const XPnt3d&) noexcept;
template int above_plane(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&) noexcept;
template int above_plane(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&) noexcept;
template void line_plane_X(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&,
                           const XPnt3f&, XPnt3f&, float&) noexcept;
template void line_plane_X(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&,
                           const XPnt3d&, XPnt3d&, double&) noexcept;
template void line_plane_X(const XPnt3f&, const XPnt3f&, const XPnt3f&, float, XPnt3f&,
                           float&) noexcept;
template void line_plane_X(const XPnt3d&, const XPnt3d&, const XPnt3d&, double, XPnt3d&,
                           double&) noexcept;
template bool lines_intersect(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&,
                              XPnt3f&) noexcept;
template bool lines_intersect(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&,
                              XPnt3d&) noexcept;
template bool PntInTri(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&) noexcept;
template bool ball_within_bounds(const XPnt3f&, float, const XPnt3f&, const XPnt3f&) noexcept;
template bool ball_within_bounds(const XPnt3d&, double, const XPnt3d&, const XPnt3d&) noexcept;
template bool ball_within_bounds(const XPnt3f&, float, const XPnt3f&, float) noexcept;
template bool ball_within_bounds(const XPnt3d&, double, const XPnt3d&, double) noexcept;
template bool bounds_overlap_ball(const XPnt3f&, float, const XPnt3f&, const XPnt3f&) noexcept;
template bool bounds_overlap_ball(const XPnt3d&, double, const XPnt3d&, const XPnt3d&) noexcept;
template bool bounds_overlap_ball(const XPnt3f&, float, const XPnt3f&, float) noexcept;
template bool bounds_overlap_ball(const XPnt3d&, double, const XPnt3d&, double) noexcept;
template bool spheres_intersect(const XPnt3f&, const XPnt3f&, float, float) noexcept;
template bool spheres_intersect(const XPnt3d&, const XPnt3d&, double, double) noexcept;

}  // namespace zyn
