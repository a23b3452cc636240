#include <zyn/geometry.h>
#include <zyn/point.h>

#include <cmath>

namespace zyn {

namespace {

/// Describes a side of a triangle: its start, its vector, and its squared length.
template <class T>
struct Side {
    XPnt3<T> start;
    XPnt3<T> vector;
    T length2;
};

/// Returns the longest side. Of equal ones bc comes first, then ca.
template <class T>
const Side<T>& longest(const Side<T>& ab, const Side<T>& bc, const Side<T>& ca) {
    if (ab.length2 > bc.length2 && ab.length2 > ca.length2) { return ab; }
    return ca.length2 > bc.length2 ? ca : bc;
}

}  // namespace

template <class T>
T XPnt3<T>::smallest_circle(const XPnt3& a, const XPnt3& b, const XPnt3& c) noexcept {
    const Side<T> ab{a, b - a, dist2(a, b)};
    const Side<T> bc{b, c - b, dist2(b, c)};
    const Side<T> ca{c, a - c, dist2(c, a)};

    const Side<T>& side = longest(ab, bc, ca);
    const T others = (&side == &ab   ? bc.length2 + ca.length2
                      : &side == &bc ? ab.length2 + ca.length2
                                     : ab.length2 + bc.length2);
    if (side.length2 >= others) {
        const XPnt3 middle = side.start + side.vector * T(0.5);
        set(middle.x, middle.y, middle.z);
        return std::sqrt(side.length2) / 2;
    }

    const XPnt3 u = cross(ab.vector, cross(ab.vector, bc.vector));
    const T t = dot(ca.vector, bc.vector) / dot(ca.vector, u);
    const XPnt3 centre = ab.start + (ab.vector + u * t) * T(0.5);
    set(centre.x, centre.y, centre.z);
    return dist(centre, ab.start);
}

template float XPnt3<float>::smallest_circle(const XPnt3&, const XPnt3&, const XPnt3&) noexcept;
template double XPnt3<double>::smallest_circle(const XPnt3&, const XPnt3&, const XPnt3&) noexcept;

}  // namespace zyn
