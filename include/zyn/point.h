/// @file
/// Points and vectors: small copyable values in two and three dimensions, in float and double.
///
/// XPnt2 and XPnt3 add geometry to the bare PT2 and PT3 of coordinates.h. XPnt3 carries a signed
/// 16-bit intensity, `inten`, which takes no part in norms, comparisons or coordinate arrays. The
/// Tag forms carry an `int tag`. Use the double forms for coordinates on the ground (UTM,
/// earth-centred). Use the float forms for display, and for clouds reduced to a local origin.
///
///     XPnt3d a(1.0, 2.0, 3.0), b(4.0, 6.0, 3.0);
///     XPnt3d direction = b - a;                 // (3, 4, 0)
///     double length = direction.norm();         // 5
///     direction.normalize();                    // (0.6, 0.8, 0)
///     XPnt3d half = a + direction * (length / 2);
///     const double* xyz = half;                 // three consecutive coordinates
///     half[2] = 7.0;                            // the same as half.z
///
/// A point is invalid if a coordinate is a finite mark, compared exactly: -2147483647 in double,
/// -99999 in float. A conversion between the precisions does not preserve the mark: ask isValid()
/// first.
#pragma once

#include <zyn/coordinates.h>
#include <zyn/export.h>

#include <cmath>
#include <concepts>
#include <cstdint>
#include <type_traits>

class QString;

namespace zyn {

struct LasPnt;

/// The mark of an invalid XPnt2 or XPnt3: -2147483647.0 in double, -99999.0f in float.
template <std::floating_point T>
inline constexpr T invalidCoordinate =
    std::same_as<T, double> ? T(-2147483647.0) : unsetCoordinate<T>;

template <class T>
class XPnt3;

/// A type P of bare coordinates: it is neither a point in space with an intensity nor a laser
/// record.
template <class P, class T>
concept BareCoordinates = std::derived_from<P, PT3<T>> && !std::derived_from<P, XPnt3<T>> &&
                          !std::derived_from<P, LasPnt>;

/// A type P that a Record can be assigned from as its base Head can, and that is no Record itself.
template <class P, class Record, class Head>
concept AssignableHead = !std::derived_from<P, Record> && std::is_assignable_v<Head&, const P&>;

/// A point in the plane. A new one is invalid.
template <std::floating_point T>
class XPnt2 : public PT2<T> {
public:
    using PT2<T>::x;
    using PT2<T>::y;

    constexpr XPnt2() noexcept : PT2<T>(invalidCoordinate<T>, invalidCoordinate<T>) {}
    /// Makes the origin for `false`, an invalid point for `true`; in XPnt2f only.
    template <std::same_as<bool> B>
    constexpr explicit XPnt2(B invalid) noexcept
        requires std::same_as<T, float>
        : PT2<T>(invalid ? invalidCoordinate<T> : T(0), invalid ? invalidCoordinate<T> : T(0)) {}
    /// Makes the point (x_, y_).
    constexpr XPnt2(T x_, T y_) noexcept : PT2<T>(x_, y_) {}
    /// Makes a point with these coordinates.
    constexpr XPnt2(const PT2<T>& p) noexcept : PT2<T>(p) {}

    /// Returns an invalid point.
    [[nodiscard]] static constexpr XPnt2 invalidPnt() noexcept { return {}; }

    /// Returns false if a coordinate is the mark; in float, also if one is not a number. A NaN in
    /// an XPnt2d counts as valid.
    [[nodiscard]] bool isValid() const noexcept {
        if constexpr (std::same_as<T, float>) {
            if (std::isnan(x) || std::isnan(y)) { return false; }
        }
        return x != invalidCoordinate<T> && y != invalidCoordinate<T>;
    }
    /// Returns coordinate `i`; x for an index other than 0 and 1.
    template <std::integral I>
    [[nodiscard]] constexpr const T& operator[](I i) const noexcept {
        return i == 1 ? y : x;
    }
    /// Returns coordinate `i`, to be written; x for an index other than 0 and 1.
    template <std::integral I>
    [[nodiscard]] constexpr T& operator[](I i) noexcept {
        return i == 1 ? y : x;
    }

    /// Replaces both coordinates.
    constexpr void set(T x_, T y_) noexcept {
        x = x_;
        y = y_;
    }
    /// Makes the point invalid.
    constexpr void setInvalid() noexcept { set(invalidCoordinate<T>, invalidCoordinate<T>); }

    /// Negates, adds or subtracts by coordinates.
    /// @{
    constexpr XPnt2 operator-() const noexcept { return {-x, -y}; }
    constexpr XPnt2& operator+=(const XPnt2& p) noexcept {
        x += p.x;
        y += p.y;
        return *this;
    }
    constexpr XPnt2& operator-=(const XPnt2& p) noexcept {
        x -= p.x;
        y -= p.y;
        return *this;
    }
    /// @}

    /// Returns the coordinates rounded to float.
    [[nodiscard]] constexpr XPnt2<float> to2f() const noexcept
        requires std::same_as<T, double>
    {
        return {static_cast<float>(x), static_cast<float>(y)};
    }
    /// Returns the coordinates widened to double.
    [[nodiscard]] constexpr XPnt2<double> to2d() const noexcept
        requires std::same_as<T, float>
    {
        return {double(x), double(y)};
    }
    /// Returns "x,y", each with six significant digits; ignores the argument.
    [[nodiscard]] ZYN_EXPORT QString toString(int) const
        requires std::same_as<T, double>;
    /// Reads two numbers, separated by the first comma. Returns false and changes nothing unless
    /// each of the two parts is a number as a whole.
    ZYN_EXPORT bool frString(QString text)
        requires std::same_as<T, double>;
};

using XPnt2d = XPnt2<double>;  ///< For coordinates on the ground.
using XPnt2f = XPnt2<float>;   ///< For display.

/// A point or vector in space, with an intensity. A new one is the origin.
template <class T>
class XPnt3 : public PT3<T> {
public:
    using PT3<T>::x;
    using PT3<T>::y;
    using PT3<T>::z;
    std::int16_t inten = 0;  ///< intensity; an engine numbers its points by it

    // Construction. A point made from bare coordinates has `inten` 0.

    constexpr XPnt3() noexcept : PT3<T>(0, 0, 0) {}
    /// Makes the point (x_, 0, 0).
    constexpr explicit XPnt3(T x_) noexcept : PT3<T>(x_, 0, 0) {}
    /// Makes the point (x_, y_, z_).
    constexpr XPnt3(T x_, T y_, T z_ = 0, std::int16_t inten_ = 0) noexcept
        : PT3<T>(x_, y_, z_), inten(inten_) {}
    /// Makes a point from three consecutive coordinates.
    template <CoordinatePointer<T> P>
    constexpr explicit XPnt3(P c) noexcept : PT3<T>(c[0], c[1], c[2]) {}
    /// Converts from the other precision, `inten` included. Rounds double to float.
    template <std::floating_point U>
        requires(!std::same_as<U, T>)
    constexpr XPnt3(const XPnt3<U>& p) noexcept
        : PT3<T>(static_cast<T>(p.x), static_cast<T>(p.y), static_cast<T>(p.z)), inten(p.inten) {}
    /// Makes a point from bare coordinates.
    template <BareCoordinates<T> P>
    constexpr XPnt3(const P& p) noexcept : PT3<T>(p) {}
    /// Makes a point from a laser point, `inten` included.
    template <std::derived_from<LasPnt> L>
    constexpr XPnt3(const L& p) noexcept : PT3<T>(T(p.x), T(p.y), T(p.z)), inten(p.inten) {}

    /// Takes the coordinates and `inten` of a laser point.
    template <std::derived_from<LasPnt> L>
    constexpr XPnt3& operator=(const L& p) noexcept {
        return *this = XPnt3(p);
    }
    /// Copies bare coordinates, double or of this precision; `inten` stays.
    template <class P>
        requires(BareCoordinates<P, double> || BareCoordinates<P, T>)
    constexpr XPnt3& operator=(const P& p) noexcept {
        return set(static_cast<T>(p.x), static_cast<T>(p.y), static_cast<T>(p.z));
    }
    /// Copies double coordinates in the plane, and sets z to 0; `inten` stays.
    template <std::derived_from<PT2<double>> P>
    constexpr XPnt3& operator=(const P& p) noexcept {
        return set(static_cast<T>(p.x), static_cast<T>(p.y), T(0));
    }

    // Reading

    /// Returns an invalid point with `inten` 0; in XPnt3d only.
    [[nodiscard]] static constexpr XPnt3 invalid() noexcept
        requires std::same_as<T, double>
    {
        return {invalidCoordinate<T>, invalidCoordinate<T>, invalidCoordinate<T>};
    }
    /// Returns an invalid point with `inten` 0; in XPnt3f only.
    [[nodiscard]] static constexpr XPnt3 invalidPnt() noexcept
        requires std::same_as<T, float>
    {
        return {invalidCoordinate<T>, invalidCoordinate<T>, invalidCoordinate<T>};
    }
    /// Returns false if a coordinate is the mark or not a number.
    [[nodiscard]] bool isValid() const noexcept {
        constexpr T mark = invalidCoordinate<T>;
        return !std::isnan(x) && !std::isnan(y) && !std::isnan(z) && x != mark && y != mark &&
               z != mark;
    }
    /// Returns coordinate `i`; x for an index other than 0, 1 and 2.
    template <std::integral I>
    [[nodiscard]] constexpr const T& operator[](I i) const noexcept {
        return i == 1 ? y : i == 2 ? z : x;
    }
    /// Returns coordinate `i`, to be written; x for an index other than 0, 1 and 2.
    template <std::integral I>
    [[nodiscard]] constexpr T& operator[](I i) noexcept {
        return i == 1 ? y : i == 2 ? z : x;
    }
    /// Returns the address of `x`: an array of three coordinates.
    template <CoordinatePointer<T> P>
    operator P() noexcept {
        return &x;
    }
    /// Returns the address of `x`, for reading.
    template <std::same_as<const T*> P>
    operator P() const noexcept {
        return &x;
    }

    /// Returns the square of the length.
    [[nodiscard]] constexpr T norm2() const noexcept { return x * x + y * y + z * z; }
    /// Returns the length.
    [[nodiscard]] T norm() const noexcept { return std::sqrt(norm2()); }
    /// Returns the length of the x, y part.
    [[nodiscard]] T norm_2d() const noexcept { return std::sqrt(x * x + y * y); }

    /// Returns x and y, rounded to float.
    [[nodiscard]] constexpr XPnt2<float> to2f() const noexcept
        requires std::same_as<T, double>
    {
        return {static_cast<float>(x), static_cast<float>(y)};
    }
    /// Returns x and y.
    [[nodiscard]] constexpr XPnt2<double> to2d() const noexcept
        requires std::same_as<T, double>
    {
        return {x, y};
    }
    /// Returns the bare coordinates.
    [[nodiscard]] constexpr PNT3D Copy() const noexcept
        requires std::same_as<T, double>
    {
        return {x, y, z};
    }

    // Changing the coordinates. All of these keep `inten`.

    /// Replaces all three coordinates.
    /// @{
    constexpr XPnt3& set(T x_, T y_, T z_) noexcept {
        x = x_;
        y = y_;
        z = z_;
        return *this;
    }
    template <CoordinatePointer<T> P>
    constexpr XPnt3& set(P c) noexcept {
        return set(c[0], c[1], c[2]);
    }
    constexpr XPnt3& set(const PT3<T>& p) noexcept { return set(p.x, p.y, p.z); }
    /// @}
    /// Sets coordinate `i`. Changes nothing for an index other than 0, 1 and 2.
    constexpr XPnt3& set(int i, T v) noexcept {
        if (i >= 0 && i <= 2) { (*this)[i] = v; }
        return *this;
    }
    /// Makes the point invalid.
    constexpr void setInvalid() noexcept {
        set(invalidCoordinate<T>, invalidCoordinate<T>, invalidCoordinate<T>);
    }
    /// Becomes the vector from `a` to `b`, each three coordinates.
    constexpr XPnt3& set_vec(const T* a, const T* b) noexcept {
        return set(b[0] - a[0], b[1] - a[1], b[2] - a[2]);
    }
    /// Keeps the larger of each coordinate.
    constexpr XPnt3& set_max(const XPnt3& p) noexcept {
        return set(p.x > x ? p.x : x, p.y > y ? p.y : y, p.z > z ? p.z : z);
    }
    /// Keeps the smaller of each coordinate.
    constexpr XPnt3& set_min(const XPnt3& p) noexcept {
        return set(p.x < x ? p.x : x, p.y < y ? p.y : y, p.z < z ? p.z : z);
    }

    /// Negates, adds, subtracts or multiplies by coordinates. The negated point is a new one, with
    /// `inten` 0.
    /// @{
    constexpr XPnt3 operator-() const noexcept { return {-x, -y, -z}; }
    constexpr XPnt3& operator+=(const XPnt3& p) noexcept { return set(x + p.x, y + p.y, z + p.z); }
    constexpr XPnt3& operator-=(const XPnt3& p) noexcept { return set(x - p.x, y - p.y, z - p.z); }
    constexpr XPnt3& operator*=(T s) noexcept { return set(x * s, y * s, z * s); }
    /// @}
    /// Multiplies by 1/s.
    constexpr XPnt3& operator/=(T s) noexcept { return *this *= T(1) / s; }

    /// Scales to unit length; a zero vector stays as it is.
    XPnt3& normalize() noexcept {
        const T s = norm2();
        return s == 0 ? *this : *this *= T(1) / std::sqrt(s);
    }
    /// Scales to length `len`; a zero vector stays as it is.
    XPnt3& set_norm(T len) noexcept {
        const T s = norm2();
        return s == 0 ? *this : *this *= len / std::sqrt(s);
    }
    /// Becomes (1-t)·p + t·q.
    constexpr XPnt3& lerp(T t, const XPnt3& p, const XPnt3& q) noexcept {
        const T u = T(1) - t;
        return set(u * p.x + t * q.x, u * p.y + t * q.y, u * p.z + t * q.z);
    }

    // Transforms. A 16-element `m` takes the point as a row vector, with the translation in
    // m[12..14]; its fourth column is not read. `r` is a 3 x 3 rotation, row by row.

    /// Multiplies the point by `m`.
    constexpr XPnt3& xform(const T* m) noexcept {
        return set(x * m[0] + y * m[4] + z * m[8] + m[12], x * m[1] + y * m[5] + z * m[9] + m[13],
                   x * m[2] + y * m[6] + z * m[10] + m[14]);
    }
    /// Inverts xform(m), for a rigid `m`.
    constexpr XPnt3& invxform(const T* m) noexcept {
        const XPnt3 d(x - m[12], y - m[13], z - m[14]);
        return set(d.x * m[0] + d.y * m[1] + d.z * m[2], d.x * m[4] + d.y * m[5] + d.z * m[6],
                   d.x * m[8] + d.y * m[9] + d.z * m[10]);
    }
    /// Becomes r·this + t.
    constexpr XPnt3& xform(const T (*r)[3], const T* t) noexcept { return setXformed(*this, r, t); }
    /// Becomes rᵀ·(this - t): the inverse of xform(r, t).
    constexpr XPnt3& invxform(const T (*r)[3], const T* t) noexcept {
        const XPnt3 d(x - t[0], y - t[1], z - t[2]);
        return set(r[0][0] * d.x + r[1][0] * d.y + r[2][0] * d.z,
                   r[0][1] * d.x + r[1][1] * d.y + r[2][1] * d.z,
                   r[0][2] * d.x + r[1][2] * d.y + r[2][2] * d.z);
    }
    /// Becomes r·p; `p` may be this point.
    constexpr XPnt3& setRotated(const XPnt3& p, const T (*r)[3]) noexcept {
        return set(r[0][0] * p.x + r[0][1] * p.y + r[0][2] * p.z,
                   r[1][0] * p.x + r[1][1] * p.y + r[1][2] * p.z,
                   r[2][0] * p.x + r[2][1] * p.y + r[2][2] * p.z);
    }
    /// Becomes r·p + t; `p` may be this point.
    constexpr XPnt3& setXformed(const XPnt3& p, const T (*r)[3], const T* t) noexcept {
        const T tx = t[0], ty = t[1], tz = t[2];  // `t` may be the coordinates of this point
        setRotated(p, r);
        return set(x + tx, y + ty, z + tz);
    }

    /// Becomes the centre of the smallest circle that contains the three points, in their plane,
    /// and returns its radius. For a right, obtuse or collinear triple the radius is half the
    /// longest side; otherwise the circle is the circumcircle. Each of the points may be this
    /// point.
    ZYN_EXPORT T smallest_circle(const XPnt3& a, const XPnt3& b, const XPnt3& c) noexcept;
};

using XPnt3d = XPnt3<double>;  ///< For coordinates on the ground.
using XPnt3f = XPnt3<float>;   ///< For display, and for clouds about a local origin.

/// Adds, subtracts or multiplies by coordinates. `inten` comes from the first point.
/// @{
template <class T>
[[nodiscard]] constexpr XPnt3<T> operator+(XPnt3<T> a,
                                           const std::type_identity_t<XPnt3<T>>& b) noexcept {
    return a += b;
}
template <class T>
[[nodiscard]] constexpr XPnt3<T> operator-(XPnt3<T> a,
                                           const std::type_identity_t<XPnt3<T>>& b) noexcept {
    return a -= b;
}
template <class T>
[[nodiscard]] constexpr XPnt3<T> operator*(XPnt3<T> p, std::type_identity_t<T> s) noexcept {
    return p *= s;
}
template <class T>
[[nodiscard]] constexpr XPnt3<T> operator*(std::type_identity_t<T> s, XPnt3<T> p) noexcept {
    return p *= s;
}
/// @}
/// Multiplies by 1/s.
template <class T>
[[nodiscard]] constexpr XPnt3<T> operator/(XPnt3<T> p, std::type_identity_t<T> s) noexcept {
    return p /= s;
}

/// A point in the plane with a label, -1 if it has none. A new one is invalid.
struct TagPnt2d : XPnt2d {
    std::int32_t tag = -1;  ///< label

    constexpr TagPnt2d() noexcept = default;
    /// Makes a point without a label.
    constexpr TagPnt2d(double x_, double y_) noexcept : XPnt2d(x_, y_) {}

    /// Takes the coordinates of a point; the label stays.
    template <AssignableHead<TagPnt2d, XPnt2d> P>
    constexpr TagPnt2d& operator=(const P& p) noexcept {
        XPnt2d::operator=(p);
        return *this;
    }
};

/// A point in space with a label, -1 if it has none. A new one is invalid, unlike a new XPnt3d.
struct TagPnt3d : XPnt3d {
    std::int32_t tag = -1;  ///< label

    constexpr TagPnt3d() noexcept : XPnt3d(XPnt3d::invalid()) {}
    /// Makes a point without a label.
    constexpr TagPnt3d(double x_, double y_, double z_) noexcept : XPnt3d(x_, y_, z_) {}

    /// Takes what an XPnt3d takes from a point; the label stays.
    template <AssignableHead<TagPnt3d, XPnt3d> P>
    constexpr TagPnt3d& operator=(const P& p) noexcept {
        XPnt3d::operator=(p);
        return *this;
    }
};

/// Five numbers that the library stores and copies. Their names and meaning belong to the
/// application.
struct ZynEllipse {
    double parameters[5] = {};  ///< the application's
};

}  // namespace zyn
