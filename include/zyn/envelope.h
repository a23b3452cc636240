/// @file
/// Envelopes: axis-aligned boxes, stored as the bounds of each axis.
///
/// A new Enve2d or Enve3d is invalid: its minima are above everything and its maxima below. So the
/// first point or box that it grows by replaces all bounds, without a special case. The fields are
/// in the order minX, maxX, minY, maxY; bounds as arguments are in the order minX, minY, maxX,
/// maxY. Growth ignores a coordinate that is not a number. Queries on an invalid box compare its
/// bounds like any others.
///
/// Threads: use a box on one thread at a time.
///
///     Enve3d box;                                   // invalid
///     for (const XPnt3d& p : *points) { box.SetBox(p); }
///     if (box.isValid()) {
///         XPnt3d middle = box.MidPoint();
///         double across = box.getDiagonal();
///     }
///     Enve2d plan = box.getEnve2d();
///     plan.extendPercent(0.1);                      // a tenth of the width on either side
///     bool inside = plan.isCover(x, y);             // the high sides are excluded
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/referenced.h>

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <type_traits>

namespace zyn {

class Enve3d;

/// The mark of an invalid envelope: each minimum is this, each maximum its negative.
inline constexpr double invalidBound = 2147483647.0;

/// A point in space of either precision: PT3 and what derives from it, laser points included.
template <class P>
concept SpatialPoint = std::derived_from<P, PT3<double>> || std::derived_from<P, PT3<float>>;

/// A point in the plane or in space.
template <class P>
concept PlanarOrSpatialPoint =
    SpatialPoint<P> || std::derived_from<P, PT2<double>> || std::derived_from<P, PT2<float>>;

/// Bare bounds in the plane. T is double, float or std::int32_t; integer widths wrap around.
template <class T>
struct EnveBase2 {
    T minX{}, maxX{}, minY{}, maxY{};  ///< bounds; 0 in a new one

    /// Returns the length along x.
    [[nodiscard]] constexpr T Width() const noexcept { return span(minX, maxX); }
    /// Returns the length along y.
    [[nodiscard]] constexpr T Hight() const noexcept { return span(minY, maxY); }
    /// Returns whether the box has no interior.
    [[nodiscard]] constexpr bool IsEmpty() const noexcept { return maxX <= minX || maxY <= minY; }
    /// Compares the bounds exactly.
    friend constexpr bool operator==(const EnveBase2&, const EnveBase2&) noexcept = default;

private:
    static constexpr T span(T lo, T hi) noexcept {
        if constexpr (std::integral<T>) {
            using U = std::make_unsigned_t<T>;
            return static_cast<T>(static_cast<U>(hi) - static_cast<U>(lo));
        } else {
            return hi - lo;
        }
    }
};

/// Bare bounds in space.
template <class T>
struct EnveBase3 {
    T minX{}, maxX{}, minY{}, maxY{}, minZ{}, maxZ{};  ///< bounds; 0 in a new one

    /// Compares the bounds exactly.
    friend constexpr bool operator==(const EnveBase3&, const EnveBase3&) noexcept = default;
};

/// Bare bounds in the plane, in double.
struct ENVE2D : EnveBase2<double> {};
/// Bare bounds in space, in double.
struct ENVE3D : EnveBase3<double> {};
/// Integer bounds; a new one has 0 in all four, and none is invalid.
struct Enve2i : EnveBase2<std::int32_t> {};

/// A box in the plane. A new one is invalid.
class ZYN_EXPORT Enve2d : public EnveBase2<double> {
public:
    constexpr Enve2d() noexcept
        : EnveBase2{invalidBound, -invalidBound, invalidBound, -invalidBound} {}
    /// Takes the values as they are, even if a minimum is above its maximum.
    constexpr Enve2d(double minX_, double minY_, double maxX_, double maxY_) noexcept
        : EnveBase2{minX_, maxX_, minY_, maxY_} {}
    /// Makes the box between two corners in any order.
    constexpr Enve2d(const XPnt2d& a, const XPnt2d& b) noexcept
        : Enve2d(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)) {}

    // Reading

    /// Returns false if any of the four bounds is at its mark.
    [[nodiscard]] constexpr bool isValid() const noexcept {
        return minX != invalidBound && minY != invalidBound && maxX != -invalidBound &&
               maxY != -invalidBound;
    }
    /// Returns whether the box has no interior.
    [[nodiscard]] constexpr bool isEmpty() const noexcept { return IsEmpty(); }
    /// Returns the length along x.
    [[nodiscard]] constexpr double width() const noexcept { return Width(); }
    /// Returns the length along y.
    [[nodiscard]] constexpr double hight() const noexcept { return Hight(); }
    /// Returns width times height.
    [[nodiscard]] constexpr double area() const noexcept { return Width() * Hight(); }
    /// Returns the middle.
    [[nodiscard]] constexpr XPnt2d MidPoint() const noexcept {
        return {(minX + maxX) / 2, (minY + maxY) / 2};
    }
    /// Returns the middle.
    [[nodiscard]] constexpr XPnt2d midPoint() const noexcept { return MidPoint(); }
    /// Returns corner `i`, counter-clockwise from the lower left; an invalid point for an `i`
    /// outside 0..3.
    [[nodiscard]] XPnt2d getCorner(int i) const noexcept;
    /// Returns a corner; y runs upwards.
    /// @{
    [[nodiscard]] constexpr XPnt2d LeftBottomCorner() const noexcept { return {minX, minY}; }
    [[nodiscard]] constexpr XPnt2d RightBottomCorner() const noexcept { return {maxX, minY}; }
    [[nodiscard]] constexpr XPnt2d RightTopCorner() const noexcept { return {maxX, maxY}; }
    [[nodiscard]] constexpr XPnt2d LeftTopCorner() const noexcept { return {minX, maxY}; }
    /// @}
    /// Returns this box in space, with both bounds of z at 0.
    [[nodiscard]] Enve3d getEnve3d() const noexcept;
    /// Compares by area, then by the sum of the bounds, then by minX.
    [[nodiscard]] bool operator<(const Enve2d& e) const noexcept;

    // Growing

    /// Makes the box invalid, like a new one.
    constexpr void setInvalid() noexcept { *this = Enve2d(); }
    /// Grows by the point (x, y).
    void SetBox(double x, double y) noexcept { SetBox(x, y, x, y); }
    /// Grows by two corners: the first two values change the minima only, the last two the maxima
    /// only.
    constexpr void SetBox(double minX_, double minY_, double maxX_, double maxY_) noexcept {
        minX = std::min(minX, minX_);
        minY = std::min(minY, minY_);
        maxX = std::max(maxX, maxX_);
        maxY = std::max(maxY, maxY_);
    }
    /// Grows by x, y of the point.
    template <PlanarOrSpatialPoint P>
    void SetBox(const P& p) noexcept {
        SetBox(double(p.x), double(p.y));
    }
    /// Grows by x, y of both points.
    template <PlanarOrSpatialPoint P>
    void SetBox(const P& p, const P& q) noexcept {
        SetBox(p);
        SetBox(q);
    }
    /// Grows by a box: each minimum becomes the smaller of the two, each maximum the larger.
    void Union(const Enve2d& e) noexcept { SetBox(e.minX, e.minY, e.maxX, e.maxY); }
    /// Moves all four sides outwards by `d`.
    void extend(double d) noexcept;
    /// Moves each side outwards by the fraction `p` of the previous size: 0.1 for ten percent.
    void extendPercent(double p) noexcept;

    // Moving and scaling

    /// Moves the box.
    void offset(double dx, double dy) noexcept;
    /// Moves the box by x, y of the point.
    template <PlanarOrSpatialPoint P>
    Enve2d& operator+=(const P& p) noexcept {
        offset(double(p.x), double(p.y));
        return *this;
    }
    /// Moves the box back by x, y of the point.
    template <PlanarOrSpatialPoint P>
    Enve2d& operator-=(const P& p) noexcept {
        offset(-double(p.x), -double(p.y));
        return *this;
    }
    /// Scales bounds about the origin. Division multiplies by 1/s.
    /// @{
    void ScaleX(double s) noexcept;
    void ScaleY(double s) noexcept;
    void Scale(double sx, double sy) noexcept;
    Enve2d& operator*=(double s) noexcept;
    Enve2d& operator/=(double s) noexcept { return *this *= 1.0 / s; }
    /// @}
    /// Swaps the bounds of an axis that are in the wrong order.
    void Normalize() noexcept;

    // Containment and crossing

    /// Returns whether `e` is inside, bounds included.
    [[nodiscard]] bool isCover(const Enve2d& e) const noexcept;
    /// Returns whether minX <= x < maxX and minY <= y < maxY. So each point belongs to one cell of
    /// a grid of boxes.
    [[nodiscard]] bool isCover(double x, double y) const noexcept;
    /// Returns whether the open ranges overlap on both axes.
    [[nodiscard]] bool isIntersect(const Enve2d& e) const noexcept;
    /// Returns whether the segment a-b crosses or touches the outline, unless both its ends are in
    /// the box by isCover(x, y).
    [[nodiscard]] bool isIntersect(const XPnt2d& a, const XPnt2d& b) const noexcept;
    /// Returns whether the segment a-b crosses or touches the outline, by intersect_seg() with each
    /// side.
    [[nodiscard]] bool isRayIntersect(const XPnt2d& a, const XPnt2d& b) const noexcept;
};

/// A box in space. A new one is invalid.
class ZYN_EXPORT Enve3d : public EnveBase3<double> {
public:
    constexpr Enve3d() noexcept
        : EnveBase3{invalidBound,  -invalidBound, invalidBound,
                    -invalidBound, invalidBound,  -invalidBound} {}
    /// Takes the values as they are, even if a minimum is above its maximum.
    constexpr Enve3d(double minX_, double minY_, double minZ_, double maxX_, double maxY_,
                     double maxZ_) noexcept
        : EnveBase3{minX_, maxX_, minY_, maxY_, minZ_, maxZ_} {}
    /// Takes x and y from the argument; the bounds of z become invalid.
    template <std::derived_from<Enve2d> E>
    Enve3d& operator=(const E& e) noexcept {
        return *this = Enve3d(e.minX, e.minY, invalidBound, e.maxX, e.maxY, -invalidBound);
    }

    /// Returns an invalid box.
    [[nodiscard]] static constexpr Enve3d invalid() noexcept { return {}; }
    /// Returns an invalid box.
    [[nodiscard]] static constexpr Enve3d invalidEnve3d() noexcept { return {}; }
    /// Returns the box from -1 to 1 on every axis.
    [[nodiscard]] static constexpr Enve3d stdEnve3d() noexcept { return {-1, -1, -1, 1, 1, 1}; }

    // Reading

    /// Returns false if all six bounds are at their marks.
    [[nodiscard]] constexpr bool isValid() const noexcept { return *this != invalid(); }
    /// Returns the length along x, y or z.
    /// @{
    [[nodiscard]] constexpr double Width() const noexcept { return maxX - minX; }
    [[nodiscard]] constexpr double HightY() const noexcept { return maxY - minY; }
    [[nodiscard]] constexpr double HightZ() const noexcept { return maxZ - minZ; }
    /// @}
    /// Returns the area of the surface of the box.
    [[nodiscard]] double area() const noexcept;
    /// Returns the product of the three lengths.
    [[nodiscard]] double Volume() const noexcept;
    /// Returns the length from corner to opposite corner.
    [[nodiscard]] double getDiagonal() const noexcept;
    /// Returns the middle.
    [[nodiscard]] constexpr XPnt3d MidPoint() const noexcept {
        return {(minX + maxX) / 2, (minY + maxY) / 2, (minZ + maxZ) / 2};
    }
    /// Returns the corner of all minima.
    [[nodiscard]] constexpr XPnt3d getMinPnt() const noexcept { return {minX, minY, minZ}; }
    /// Returns the corner of all maxima.
    [[nodiscard]] constexpr XPnt3d getMaxPnt() const noexcept { return {maxX, maxY, maxZ}; }
    /// Returns the bounds of x and y.
    [[nodiscard]] constexpr Enve2d getEnve2d() const noexcept { return {minX, minY, maxX, maxY}; }
    /// Compares by volume, then by surface, then by the sum of the bounds, then by minX.
    [[nodiscard]] bool operator<(const Enve3d& e) const noexcept;

    // Growing and replacing

    /// Makes the box invalid, like a new one.
    constexpr void setInvalid() noexcept { *this = Enve3d(); }
    /// Grows by the point.
    void SetBox(double x, double y, double z) noexcept { Union(Enve3d(x, y, z, x, y, z)); }
    /// Grows by the point.
    template <SpatialPoint P>
    void SetBox(const P& p) noexcept {
        SetBox(double(p.x), double(p.y), double(p.z));
    }
    /// Replaces the box by the one between two corners in any order. Enve2d::SetBox grows instead.
    template <SpatialPoint P>
    void SetBox(const P& p, const P& q) noexcept {
        const auto [x0, x1] = std::minmax(p.x, q.x);
        const auto [y0, y1] = std::minmax(p.y, q.y);
        const auto [z0, z1] = std::minmax(p.z, q.z);
        SetBox(double(x0), double(y0), double(z0), double(x1), double(y1), double(z1));
    }
    /// Replaces the bounds by the values as they are.
    void SetBox(double minX_, double minY_, double minZ_, double maxX_, double maxY_,
                double maxZ_) noexcept {
        *this = Enve3d(minX_, minY_, minZ_, maxX_, maxY_, maxZ_);
    }
    /// Grows by a box: each minimum becomes the smaller of the two, each maximum the larger.
    constexpr void Union(const Enve3d& e) noexcept {
        minX = std::min(minX, e.minX);
        minY = std::min(minY, e.minY);
        minZ = std::min(minZ, e.minZ);
        maxX = std::max(maxX, e.maxX);
        maxY = std::max(maxY, e.maxY);
        maxZ = std::max(maxZ, e.maxZ);
    }
    /// Moves all six sides outwards by `d`.
    void Extend(double d) noexcept;

    // Moving and scaling

    /// Moves the box.
    void offset(double dx, double dy, double dz) noexcept;
    /// Moves the box by the coordinates of the point; a point in the plane moves x and y.
    template <PlanarOrSpatialPoint P>
    Enve3d& operator+=(const P& p) noexcept {
        offset(double(p.x), double(p.y), heightOf(p));
        return *this;
    }
    /// Moves the box back by the coordinates of the point.
    template <PlanarOrSpatialPoint P>
    Enve3d& operator-=(const P& p) noexcept {
        offset(-double(p.x), -double(p.y), -heightOf(p));
        return *this;
    }
    /// Scales the bounds of an axis about the origin.
    /// @{
    void ScaleX(double s) noexcept;
    void ScaleY(double s) noexcept;
    void ScaleZ(double s) noexcept;
    /// @}
    /// Swaps the bounds of an axis that are in the wrong order.
    void Normalize() noexcept;

    // Containment and crossing. A point on a side is in the box, unlike in Enve2d.

    /// Returns whether the point is in the box, or between the bounds of these two axes.
    /// @{
    [[nodiscard]] bool isCover(const XPnt3d& p) const noexcept { return isCover(p.x, p.y, p.z); }
    [[nodiscard]] bool isCover(double x, double y, double z) const noexcept;
    [[nodiscard]] bool isXYCover(double x, double y) const noexcept;
    [[nodiscard]] bool isXZCover(double x, double z) const noexcept;
    [[nodiscard]] bool isYZCover(double y, double z) const noexcept;
    /// @}
    /// Returns whether `e` is within the bounds of x and y, bounds included.
    [[nodiscard]] bool isCover(const Enve2d& e) const noexcept;
    /// Returns whether, on each axis, the bounds of this box reach a bound of `e`: isIntersect(min,
    /// max, e.min, e.max). So a box that is strictly inside `e` on any axis does not cover it.
    [[nodiscard]] bool isCover(const Enve3d& e) const noexcept;
    /// Returns whether the open ranges of x and y overlap.
    [[nodiscard]] bool isIntersected(const Enve2d& e) const noexcept;
    /// Returns whether the segment a-b touches the box, by one of two tests:
    /// - Both ends are inside.
    /// - The segment reaches a bound of the box on some axis, and the whole line a-b passes through
    ///   the box's side there. That side may be beyond the end of the segment.
    [[nodiscard]] bool isIntersected(const XPnt3d& a, const XPnt3d& b) const noexcept;
    /// Returns the common part if isCover(e), otherwise an invalid box.
    [[nodiscard]] Enve3d intersect(const Enve3d& e) const noexcept;

private:
    template <PlanarOrSpatialPoint P>
    static constexpr double heightOf(const P& p) noexcept {
        if constexpr (SpatialPoint<P>) {
            return double(p.z);
        } else {
            return 0.0;
        }
    }
};

/// Returns the first box grown by the second.
[[nodiscard]] ZYN_EXPORT Enve2d Union(const Enve2d& a, const Enve2d& b) noexcept;
/// Returns the first box grown by the second.
[[nodiscard]] ZYN_EXPORT Enve3d Union(const Enve3d& a, const Enve3d& b) noexcept;

/// Returns whether the span from a0 to a1, in either direction, reaches a bound of the interval
/// from b0 to b1. Returns false if the span is:
/// - a single value;
/// - wholly above or below the interval;
/// - strictly inside the interval.
[[nodiscard]] ZYN_EXPORT bool isIntersect(double a0, double a1, double b0, double b1) noexcept;
/// Returns whether the span from a0 to a1, in either direction, reaches into the interval from b0
/// to b1. Returns false if both ends are >= b1, or both are <= b0.
[[nodiscard]] ZYN_EXPORT bool isCover(double a0, double a1, double b0, double b1) noexcept;

/// Base of everything that has an envelope.
class ZYN_EXPORT IZynGeometry : public ZynReferenced {
public:
    IZynGeometry() = default;
    IZynGeometry(const IZynGeometry&) = default;
    IZynGeometry& operator=(const IZynGeometry&) = default;

    /// Returns a number for the kind of geometry.
    [[nodiscard]] virtual int getGeoType() const = 0;
    /// Returns the bounds of the whole geometry; here, an invalid envelope.
    [[nodiscard]] virtual Enve3d getEnvelope() const;
    /// Returns the relation to `e`; here, -1.
    [[nodiscard]] virtual std::int32_t relation(const Enve3d& e) const;
    /// Moves the geometry; here, does nothing. Returns 0.
    virtual std::int32_t move(double dx, double dy, double dz);
    /// Rotates the geometry; here, does nothing. Returns 0.
    virtual std::int32_t rotate(const double* centre, const double* axis, double angle);

protected:
    ~IZynGeometry() override;

    /// A byte whose meaning a derived class defines; copied with the object.
    std::uint8_t flag = 0;
};

// Arrays of boxes

ZYN_ARRAY(Enve2dArray, Enve2d);
ZYN_ARRAY(Enve2iArray, Enve2i);
ZYN_ARRAY(Enve3dArray, Enve3d);

}  // namespace zyn
