/// @file
/// Envelopes: axis-aligned boxes, held as the bounds of each axis.
///
/// A new Enve2d or Enve3d is invalid: its minima stand above everything and its maxima below, so
/// that the first point or box that it grows by replaces them all, without a special case. The
/// fields run per axis, the minimum before the maximum, which is not the order of most arguments.
/// Growth ignores a coordinate that is not a number. Queries on an invalid box answer by the same
/// comparisons as on any other.
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

/// A point in space of either precision: PT3 and all that derives from it, laser points included.
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

    /// The length along x.
    [[nodiscard]] constexpr T Width() const noexcept { return span(minX, maxX); }
    /// The length along y.
    [[nodiscard]] constexpr T Hight() const noexcept { return span(minY, maxY); }
    /// Whether it has no inner point.
    [[nodiscard]] constexpr bool IsEmpty() const noexcept { return maxX <= minX || maxY <= minY; }
    /// Exact comparison of the bounds.
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

    /// Exact comparison of the bounds.
    friend constexpr bool operator==(const EnveBase3&, const EnveBase3&) noexcept = default;
};

/// Bare bounds in the plane, in double.
struct ENVE2D : EnveBase2<double> {};
/// Bare bounds in space, in double.
struct ENVE3D : EnveBase3<double> {};
/// Integer bounds; a new one has 0 in all four, and none is invalid.
struct Enve2i : EnveBase2<std::int32_t> {};

/// Box in the plane. A new one is invalid.
class ZYN_EXPORT Enve2d : public EnveBase2<double> {
public:
    constexpr Enve2d() noexcept
        : EnveBase2{invalidBound, -invalidBound, invalidBound, -invalidBound} {}
    /// The values as they are, even if a minimum is above its maximum.
    constexpr Enve2d(double minX_, double minY_, double maxX_, double maxY_) noexcept
        : EnveBase2{minX_, maxX_, minY_, maxY_} {}
    /// The box between two corners in any order.
    constexpr Enve2d(const XPnt2d& a, const XPnt2d& b) noexcept
        : Enve2d(std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)) {}

    // Reading

    /// False when any of the four bounds is at its mark.
    [[nodiscard]] constexpr bool isValid() const noexcept {
        return minX != invalidBound && minY != invalidBound && maxX != -invalidBound &&
               maxY != -invalidBound;
    }
    /// Whether it has no inner point.
    [[nodiscard]] constexpr bool isEmpty() const noexcept { return IsEmpty(); }
    /// The length along x.
    [[nodiscard]] constexpr double width() const noexcept { return Width(); }
    /// The length along y.
    [[nodiscard]] constexpr double hight() const noexcept { return Hight(); }
    /// Width times height.
    [[nodiscard]] constexpr double area() const noexcept { return Width() * Hight(); }
    /// The middle.
    [[nodiscard]] constexpr XPnt2d MidPoint() const noexcept {
        return {(minX + maxX) / 2, (minY + maxY) / 2};
    }
    /// The same.
    [[nodiscard]] constexpr XPnt2d midPoint() const noexcept { return MidPoint(); }
    /// Corner `i`, counter-clockwise from the lower left; an invalid point for an `i` outside 0..3.
    [[nodiscard]] XPnt2d getCorner(int i) const noexcept;
    /// A corner; y runs upwards.
    /// @{
    [[nodiscard]] constexpr XPnt2d LeftBottomCorner() const noexcept { return {minX, minY}; }
    [[nodiscard]] constexpr XPnt2d RightBottomCorner() const noexcept { return {maxX, minY}; }
    [[nodiscard]] constexpr XPnt2d RightTopCorner() const noexcept { return {maxX, maxY}; }
    [[nodiscard]] constexpr XPnt2d LeftTopCorner() const noexcept { return {minX, maxY}; }
    /// @}
    /// The same box at height 0.
    [[nodiscard]] Enve3d getEnve3d() const noexcept;
    /// By area, then by the sum of the bounds, then by minX.
    [[nodiscard]] bool operator<(const Enve2d& e) const noexcept;

    // Growing

    /// As a new one.
    constexpr void setInvalid() noexcept { *this = Enve2d(); }
    /// Grows by the point (x, y).
    void SetBox(double x, double y) noexcept { SetBox(x, y, x, y); }
    /// Grows: the first two move the minima only, the last two the maxima only.
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
    /// Each minimum becomes the smaller of the two, each maximum the larger.
    void Union(const Enve2d& e) noexcept { SetBox(e.minX, e.minY, e.maxX, e.maxY); }
    /// All four sides move out by `d`.
    void extend(double d) noexcept;
    /// Each side moves out by the fraction `p` of the size before: 0.1 for ten percent.
    void extendPercent(double p) noexcept;

    // Moving and scaling

    /// Moves.
    void offset(double dx, double dy) noexcept;
    /// Moves by x, y of the point.
    template <PlanarOrSpatialPoint P>
    Enve2d& operator+=(const P& p) noexcept {
        offset(double(p.x), double(p.y));
        return *this;
    }
    /// Moves back by them.
    template <PlanarOrSpatialPoint P>
    Enve2d& operator-=(const P& p) noexcept {
        offset(-double(p.x), -double(p.y));
        return *this;
    }
    /// Scales bounds about the origin; the division multiplies by 1/s.
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

    /// Whether `e` lies inside, bounds included.
    [[nodiscard]] bool isCover(const Enve2d& e) const noexcept;
    /// minX <= x < maxX and minY <= y < maxY: each point belongs to one cell of a grid of boxes.
    [[nodiscard]] bool isCover(double x, double y) const noexcept;
    /// Whether the ranges overlap on both axes, their bounds not counted.
    [[nodiscard]] bool isIntersect(const Enve2d& e) const noexcept;
    /// Whether the segment a-b crosses or touches the outline and does not have both its ends in the
    /// box, as isCover(x, y) tells it.
    [[nodiscard]] bool isIntersect(const XPnt2d& a, const XPnt2d& b) const noexcept;
    /// Whether the segment a-b crosses or touches the outline, by intersect_seg() with each side.
    [[nodiscard]] bool isRayIntersect(const XPnt2d& a, const XPnt2d& b) const noexcept;
};

/// Box in space. A new one is invalid.
class ZYN_EXPORT Enve3d : public EnveBase3<double> {
public:
    constexpr Enve3d() noexcept
        : EnveBase3{invalidBound,  -invalidBound, invalidBound,
                    -invalidBound, invalidBound,  -invalidBound} {}
    /// The values as they are, even if a minimum is above its maximum.
    constexpr Enve3d(double minX_, double minY_, double minZ_, double maxX_, double maxY_,
                     double maxZ_) noexcept
        : EnveBase3{minX_, maxX_, minY_, maxY_, minZ_, maxZ_} {}
    /// x and y from the argument; the bounds of z become invalid.
    template <std::derived_from<Enve2d> E>
    Enve3d& operator=(const E& e) noexcept {
        return *this = Enve3d(e.minX, e.minY, invalidBound, e.maxX, e.maxY, -invalidBound);
    }

    /// An invalid box.
    [[nodiscard]] static constexpr Enve3d invalid() noexcept { return {}; }
    /// The same.
    [[nodiscard]] static constexpr Enve3d invalidEnve3d() noexcept { return {}; }
    /// From -1 to 1 on every axis.
    [[nodiscard]] static constexpr Enve3d stdEnve3d() noexcept { return {-1, -1, -1, 1, 1, 1}; }

    // Reading

    /// False when all six bounds are at their marks.
    [[nodiscard]] constexpr bool isValid() const noexcept { return *this != invalid(); }
    /// The length along x; along y; along z.
    /// @{
    [[nodiscard]] constexpr double Width() const noexcept { return maxX - minX; }
    [[nodiscard]] constexpr double HightY() const noexcept { return maxY - minY; }
    [[nodiscard]] constexpr double HightZ() const noexcept { return maxZ - minZ; }
    /// @}
    /// The surface.
    [[nodiscard]] double area() const noexcept;
    /// The product of the three lengths.
    [[nodiscard]] double Volume() const noexcept;
    /// The length from corner to opposite corner.
    [[nodiscard]] double getDiagonal() const noexcept;
    /// The middle.
    [[nodiscard]] constexpr XPnt3d MidPoint() const noexcept {
        return {(minX + maxX) / 2, (minY + maxY) / 2, (minZ + maxZ) / 2};
    }
    /// The corner of all minima.
    [[nodiscard]] constexpr XPnt3d getMinPnt() const noexcept { return {minX, minY, minZ}; }
    /// The corner of all maxima.
    [[nodiscard]] constexpr XPnt3d getMaxPnt() const noexcept { return {maxX, maxY, maxZ}; }
    /// The bounds of x and y.
    [[nodiscard]] constexpr Enve2d getEnve2d() const noexcept { return {minX, minY, maxX, maxY}; }
    /// By volume, then by surface, then by the sum of the bounds, then by minX.
    [[nodiscard]] bool operator<(const Enve3d& e) const noexcept;

    // Growing and replacing

    /// As a new one.
    constexpr void setInvalid() noexcept { *this = Enve3d(); }
    /// Grows by the point.
    void SetBox(double x, double y, double z) noexcept { Union(Enve3d(x, y, z, x, y, z)); }
    /// The same.
    template <SpatialPoint P>
    void SetBox(const P& p) noexcept {
        SetBox(double(p.x), double(p.y), double(p.z));
    }
    /// Replaces by the box between two corners in any order, unlike Enve2d::SetBox.
    template <SpatialPoint P>
    void SetBox(const P& p, const P& q) noexcept {
        const auto [x0, x1] = std::minmax(p.x, q.x);
        const auto [y0, y1] = std::minmax(p.y, q.y);
        const auto [z0, z1] = std::minmax(p.z, q.z);
        SetBox(double(x0), double(y0), double(z0), double(x1), double(y1), double(z1));
    }
    /// Replaces by the values as they are.
    void SetBox(double minX_, double minY_, double minZ_, double maxX_, double maxY_,
                double maxZ_) noexcept {
        *this = Enve3d(minX_, minY_, minZ_, maxX_, maxY_, maxZ_);
    }
    /// Each minimum becomes the smaller of the two, each maximum the larger.
    constexpr void Union(const Enve3d& e) noexcept {
        minX = std::min(minX, e.minX);
        minY = std::min(minY, e.minY);
        minZ = std::min(minZ, e.minZ);
        maxX = std::max(maxX, e.maxX);
        maxY = std::max(maxY, e.maxY);
        maxZ = std::max(maxZ, e.maxZ);
    }
    /// All six sides move out by `d`.
    void Extend(double d) noexcept;

    // Moving and scaling

    /// Moves.
    void offset(double dx, double dy, double dz) noexcept;
    /// Moves by the coordinates of the point; one in the plane moves x and y.
    template <PlanarOrSpatialPoint P>
    Enve3d& operator+=(const P& p) noexcept {
        offset(double(p.x), double(p.y), heightOf(p));
        return *this;
    }
    /// Moves back by them.
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

    /// Whether the point lies in the box, or between the bounds of these two axes.
    /// @{
    [[nodiscard]] bool isCover(const XPnt3d& p) const noexcept { return isCover(p.x, p.y, p.z); }
    [[nodiscard]] bool isCover(double x, double y, double z) const noexcept;
    [[nodiscard]] bool isXYCover(double x, double y) const noexcept;
    [[nodiscard]] bool isXZCover(double x, double z) const noexcept;
    [[nodiscard]] bool isYZCover(double y, double z) const noexcept;
    /// @}
    /// Whether `e` lies within the bounds of x and y.
    [[nodiscard]] bool isCover(const Enve2d& e) const noexcept;
    /// Whether, on each axis, the bounds of this box reach a bound of `e`: isIntersect(min, max,
    /// e.min, e.max). So a box strictly inside `e` on any axis does not cover it.
    [[nodiscard]] bool isCover(const Enve3d& e) const noexcept;
    /// Whether the ranges of x and y overlap, their bounds not counted.
    [[nodiscard]] bool isIntersected(const Enve2d& e) const noexcept;
    /// Whether the segment a-b touches the box: both ends inside, or the line through them passes
    /// through a side of an axis on which the segment reaches a bound of the box. That side may lie
    /// beyond the segment's end.
    [[nodiscard]] bool isIntersected(const XPnt3d& a, const XPnt3d& b) const noexcept;
    /// The common part when isCover(e), otherwise an invalid box.
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

/// The first box grown by the second.
[[nodiscard]] ZYN_EXPORT Enve2d Union(const Enve2d& a, const Enve2d& b) noexcept;
/// The same in space.
[[nodiscard]] ZYN_EXPORT Enve3d Union(const Enve3d& a, const Enve3d& b) noexcept;

/// Whether the span from a0 to a1, in either direction, reaches a bound of the interval from b0 to
/// b1: not when it is a single value, lies wholly above or below the interval, or strictly inside.
[[nodiscard]] ZYN_EXPORT bool isIntersect(double a0, double a1, double b0, double b1) noexcept;
/// Whether the span from a0 to a1, in either direction, reaches into the interval from b0 to b1: not
/// when both are >= b1, or both <= b0.
[[nodiscard]] ZYN_EXPORT bool isCover(double a0, double a1, double b0, double b1) noexcept;

/// Base of everything that has an envelope.
class ZYN_EXPORT IZynGeometry : public ZynReferenced {
public:
    IZynGeometry() = default;
    IZynGeometry(const IZynGeometry&) = default;
    IZynGeometry& operator=(const IZynGeometry&) = default;

    /// A number for the kind of geometry.
    [[nodiscard]] virtual int getGeoType() const = 0;
    /// The bounds of all of it; here, an invalid envelope.
    [[nodiscard]] virtual Enve3d getEnvelope() const;
    /// How it lies to `e`; here, -1.
    [[nodiscard]] virtual std::int32_t relation(const Enve3d& e) const;
    /// Moves it; here, nothing moves. Gives 0.
    virtual std::int32_t move(double dx, double dy, double dz);
    /// Turns it; here, nothing turns. Gives 0.
    virtual std::int32_t rotate(const double* centre, const double* axis, double angle);

protected:
    ~IZynGeometry() override;

    /// A byte that a derived class gives its meaning; copied with the object.
    std::uint8_t flag = 0;
};

// Arrays of boxes

ZYN_ARRAY(Enve2dArray, Enve2d);
ZYN_ARRAY(Enve2iArray, Enve2i);
ZYN_ARRAY(Enve3dArray, Enve3d);

}  // namespace zyn
