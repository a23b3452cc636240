/// @file
/// Bare coordinates: two or three numbers, consecutive in memory, usable as an array.
///
/// PT2 and PT3 are the base of points (point.h) and laser records (las.h). They hold their numbers
/// and nothing else:
///
///     PT3<double> p(1.0, 2.0, 3.0);
///     const double* xyz = p;                    // three consecutive coordinates
///     bool same = p == PT3<double>(1, 2, 3);    // exactly
///     PT2<float> unset;                         // x and y are -99999
///     unset.x = 4.0F;
///     XPnt3d point = p;                         // with the geometry of point.h
#pragma once

#include <concepts>
#include <type_traits>

namespace zyn {

/// The value of default-constructed bare coordinates.
template <class T>
inline constexpr T unsetCoordinate = T(-99999);

/// A pointer to coordinates of type T, and nothing that merely converts to one.
template <class P, class T>
concept CoordinatePointer = std::same_as<P, T*> || std::same_as<P, const T*>;

/// Two bare coordinates, consecutive in memory. T is float, double or std::int32_t.
template <class T>
struct PT2 {
    using Coordinate = T;  ///< The type of a coordinate.

    T x = unsetCoordinate<T>;  ///< abscissa
    T y = unsetCoordinate<T>;  ///< ordinate

    constexpr PT2() noexcept = default;
    /// Makes the point (x_, y_).
    constexpr PT2(T x_, T y_) noexcept : x(x_), y(y_) {}

    /// Returns the address of `x`: an array of two coordinates.
    template <std::same_as<const T*> P>
    operator P() const noexcept {
        return &x;
    }
    /// Compares the coordinates exactly.
    friend constexpr bool operator==(const PT2& a, const PT2& b) noexcept {
        return a.x == b.x && a.y == b.y;
    }
};

/// Three bare coordinates, consecutive in memory. T is float or double.
template <class T>
struct PT3 {
    using Coordinate = T;  ///< The type of a coordinate.

    T x = unsetCoordinate<T>;  ///< abscissa
    T y = unsetCoordinate<T>;  ///< ordinate
    T z = unsetCoordinate<T>;  ///< height

    constexpr PT3() noexcept = default;
    /// Makes the point (x_, y_, z_).
    constexpr PT3(T x_, T y_, T z_) noexcept : x(x_), y(y_), z(z_) {}

    /// Returns the address of `x`: an array of three coordinates.
    template <std::same_as<const T*> P>
    operator P() const noexcept {
        return &x;
    }
    /// Compares the coordinates exactly, and nothing that a derived point adds.
    friend constexpr bool operator==(const PT3& a, const PT3& b) noexcept {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
};

/// Refuses to compare a point with an address of coordinates, and to subtract one from the other.
/// Without these, some compilers would convert the point to its own address.
/// @{
template <class P, CoordinatePointer<typename P::Coordinate> A>
bool operator==(const P&, A) = delete;
// Named by class: Clang 14 cannot try a bare P on the pointers that std::compare_three_way orders.
template <class T, CoordinatePointer<T> A>
bool operator<=>(const PT2<T>&, A) = delete;
template <class T, CoordinatePointer<T> A>
bool operator<=>(const PT3<T>&, A) = delete;
template <class P, CoordinatePointer<typename P::Coordinate> A>
void operator-(const P&, A) = delete;
template <class P, CoordinatePointer<typename P::Coordinate> A>
void operator-(A, const P&) = delete;
/// @}

/// The plain form of a double point in the plane, for signatures.
struct PNT2D : PT2<double> {
    using PT2<double>::PT2;
};
/// The plain form of a double point in space, for signatures.
struct PNT3D : PT3<double> {
    using PT3<double>::PT3;
};

}  // namespace zyn
