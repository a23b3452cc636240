// Distances to lines, segments and triangles, the closest points on them, and barycentric weights.

#include <zyn/geometry.h>

namespace zyn {

namespace {

template <class T>
void setCoordinates(XPnt3<T>& out, const XPnt3<T>& p) {
    out.set(p.x, p.y, p.z);
}

/// Copies the whole point `end` to `out` if it is nearer to `p` than the square root of `best`.
template <class T>
bool takeIfCloser(const XPnt3<T>& p, XPnt3<T>& out, const XPnt3<T>& end, T& best) {
    const T d = dist2(p, end);
    if (!(best > d)) { return false; }
    out = end;
    best = d;
    return true;
}

/// Describes the foot of the perpendicular from a point to the plane of a triangle.
template <class T>
struct PlaneFoot {
    XPnt3<T> e1, e2, normal;  ///< b - a, c - a and their cross product
    XPnt3<T> foot;
    T dist2;
};

template <class T>
PlaneFoot<T> footOnPlane(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b,
                         const XPnt3<T>& c) {
    const XPnt3<T> e1 = b - a;
    const XPnt3<T> e2 = c - a;
    const XPnt3<T> n = cross(e1, e2);
    const T i = 1 / n.norm2();
    const T s = dot(p - a, n);
    return {e1, e2, n, p - n * (s * i), s * s * i};
}

enum class Nearest { inside, cornerA, cornerB, cornerC, sideAB, sideAC, sideBC };

/// Returns the part of the triangle a, b, c that counts as nearest to a foot on its plane. The
/// weights of a degenerate triangle are NaN and lead to side ab.
template <class T>
Nearest nearestPart(const PlaneFoot<T>& plane, const XPnt3<T>& a) {
    T wa, wb, wc;
    bary_fast(plane.foot, plane.normal, a, plane.e1, plane.e2, wb, wc, wa);
    if (wa >= 0 && wb >= 0 && wc >= 0) { return Nearest::inside; }
    if (wa < 0 && wb < 0) { return Nearest::cornerC; }
    if (wa < 0 && wc < 0) { return Nearest::cornerB; }
    if (wa < 0) { return Nearest::sideBC; }
    if (wb < 0 && wc < 0) { return Nearest::cornerA; }
    if (wb < 0) { return Nearest::sideAC; }
    return Nearest::sideAB;
}

}  // namespace

template <class T>
T dist2_line(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b, XPnt3<T>& foot) noexcept {
    const XPnt3<T> ab = b - a;
    const XPnt3<T> ap = p - a;
    const T length = ab.norm();
    foot = a + ab * (dot(ap, ab) / length / length);
    return cross(ap, ab).norm() / length;
}

template <class T>
T dist2_lineseg(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b) noexcept {
    const XPnt3<T> ap = p - a;
    const XPnt3<T> ab = b - a;
    const T s = dot(ap, ab);
    if (s < 0) { return ap.norm2(); }
    if (s >= ab.norm2()) { return dist2(p, b); }
    return ap.norm2() - s * s / ab.norm2();
}

template <class T>
T dist2_tri(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c) noexcept {
    const PlaneFoot<T> plane = footOnPlane(p, a, b, c);
    switch (nearestPart(plane, a)) {
    case Nearest::inside: return plane.dist2;
    case Nearest::cornerA: return dist2(p, a);
    case Nearest::cornerB: return dist2(p, b);
    case Nearest::cornerC: return dist2(p, c);
    case Nearest::sideBC: return dist2_lineseg(p, b, c);
    case Nearest::sideAC: return dist2_lineseg(p, a, c);
    default: return dist2_lineseg(p, a, b);  // side ab
    }
}

template <class T>
bool closer_on_lineseg(const XPnt3<T>& p, XPnt3<T>& out, const XPnt3<T>& a, const XPnt3<T>& b,
                       Scalar<T>& best) noexcept {
    const XPnt3<T> ab = b - a;
    const XPnt3<T> ap = p - a;
    const T s = dot(ap, ab);
    if (s < 0) { return takeIfCloser(p, out, a, best); }
    const T f = s / ab.norm2();
    if (f >= 1) { return takeIfCloser(p, out, b, best); }
    const T d = ap.norm2() - f * s;
    if (!(best > d)) { return false; }
    best = d;
    setCoordinates(out, a + ab * f);
    return true;
}

template <class T>
bool closer_on_tri(const XPnt3<T>& p, XPnt3<T>& out, const XPnt3<T>& a, const XPnt3<T>& b,
                   const XPnt3<T>& c, Scalar<T>& best) noexcept {
    const PlaneFoot<T> plane = footOnPlane(p, a, b, c);
    // A degenerate triangle has no plane. Its distance is NaN, and the search must continue with
    // side ab.
    if (plane.dist2 >= best) { return false; }
    switch (nearestPart(plane, a)) {
    case Nearest::inside:
        best = plane.dist2;
        setCoordinates(out, plane.foot);
        out.inten = 0;
        return true;
    case Nearest::cornerA: return takeIfCloser(p, out, a, best);
    case Nearest::cornerB: return takeIfCloser(p, out, b, best);
    case Nearest::cornerC: return takeIfCloser(p, out, c, best);
    case Nearest::sideBC: return closer_on_lineseg(p, out, b, c, best);
    case Nearest::sideAC: return closer_on_lineseg(p, out, a, c, best);
    default: return closer_on_lineseg(p, out, a, b, best);  // side ab
    }
}

template <class T>
void bary(const XPnt3<T>& p, const XPnt3<T>& a, const XPnt3<T>& b, const XPnt3<T>& c, Scalar<T>& u,
          Scalar<T>& v, Scalar<T>& w) noexcept {
    const XPnt3<T> e1 = a - c;
    const XPnt3<T> e2 = b - c;
    bary_fast(p, cross(e1, e2), c, e1, e2, u, v, w);
}

template <class T>
void bary(const XPnt3<T>& p, const XPnt3<T>& dir, const XPnt3<T>& a, const XPnt3<T>& b,
          const XPnt3<T>& c, Scalar<T>& u, Scalar<T>& v, Scalar<T>& w) noexcept {
    XPnt3<T> crossing;
    T t = 0;
    line_plane_X(p, dir, a, b, c, crossing, t);
    bary(crossing, a, b, c, u, v, w);
}

template <class T>
void bary_fast(const XPnt3<T>& p, const XPnt3<T>& n, const XPnt3<T>& o, const XPnt3<T>& e1,
               const XPnt3<T>& e2, Scalar<T>& u, Scalar<T>& v, Scalar<T>& w) noexcept {
    int k = std::abs(n.y) > std::abs(n.x) ? 1 : 0;
    if (std::abs(n.z) > std::abs(n[k])) { k = 2; }
    const int i = (k + 1) % 3;
    const int j = (k + 2) % 3;
    const XPnt3<T> d = p - o;
    const T determinant = e1[i] * e2[j] - e1[j] * e2[i];
    u = (d[i] * e2[j] - d[j] * e2[i]) / determinant;
    v = (d[j] * e1[i] - d[i] * e1[j]) / determinant;
    w = 1 - u - v;
}

template float dist2_line(const XPnt3f&, const XPnt3f&, const XPnt3f&, XPnt3f&) noexcept;
template double dist2_line(const XPnt3d&, const XPnt3d&, const XPnt3d&, XPnt3d&) noexcept;
template float dist2_lineseg(const XPnt3f&, const XPnt3f&, const XPnt3f&) noexcept;
template double dist2_lineseg(const XPnt3d&, const XPnt3d&, const XPnt3d&) noexcept;
template float dist2_tri(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&) noexcept;
template double dist2_tri(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&) noexcept;
template bool closer_on_lineseg(const XPnt3f&, XPnt3f&, const XPnt3f&, const XPnt3f&,
                                float&) noexcept;
template bool closer_on_lineseg(const XPnt3d&, XPnt3d&, const XPnt3d&, const XPnt3d&,
                                double&) noexcept;
template bool closer_on_tri(const XPnt3f&, XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&,
                            float&) noexcept;
template bool closer_on_tri(const XPnt3d&, XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&,
                            double&) noexcept;
template void bary(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&, float&, float&,
                   float&) noexcept;
template void bary(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&, double&, double&,
                   double&) noexcept;
template void bary(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&,
                   float&, float&, float&) noexcept;
template void bary(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&,
                   double&, double&, double&) noexcept;
template void bary_fast(const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&, const XPnt3f&,
                        float&, float&, float&) noexcept;
template void bary_fast(const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&, const XPnt3d&,
                        double&, double&, double&) noexcept;

}  // namespace zyn
