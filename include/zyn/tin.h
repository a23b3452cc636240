/// @file
/// Triangle records: the triangle of a triangulated irregular network, in float and double.
///
/// A record knows its three corners and its three neighbours, and that is the whole network; there
/// is no table of edges or vertices. Corners are pointers to x, y, z that the record does not own;
/// two corners are the same vertex when they are the same address. Records of a network are owned
/// by their engine (delaunay.h). Everything topological looks at x and y only.
///
///                  vertex[0]                 The corners run counter-clockwise seen from above.
///                    /    \                  neighbor[i] lies across the edge opposite vertex[i]
///      neighbor[2]  /      \  neighbor[1]    and is null on the outer boundary. Links are
///                  /        \                symmetric. Indices count modulo 3.
///          vertex[1] ------ vertex[2]
///                 neighbor[0]
///
///     if (tind* t = engine->locate(x, y); t != nullptr && !engine->isFrameTriangle(t)) {
///         double out = 0.0;                                  // height of z = 0 above the plane
///         if (t->IntersectVertical(x, y, 0.0, out)) { height = -out; }
///     }
///
/// One thread at a time. A float record computes in float where it says so and double elsewhere; take
/// it for small extents near the origin, and the double one for coordinates on the ground.
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/pool.h>

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace zyn {

template <class Real>
class TinRecord;

using tin = TinRecord<float>;    ///< The triangle in single precision.
using tind = TinRecord<double>;  ///< The triangle in double precision.

/// A copyable value of seven fields. A copy points at the same corners and neighbours.
template <class Real>
class TinRecord {
public:
    /// Arrays of pointers to coordinates.
    using RealPtrArray = std::conditional_t<std::same_as<Real, double>, PDoubleArray, PFloatArray>;

    Real* vertex[3] = {};         ///< The corners, counter-clockwise: x, y, z each.
    TinRecord* neighbor[3] = {};  ///< Across the edge opposite the corner of that index, or null.
    std::int16_t mark = -1;       ///< Copied and compared, otherwise neither read nor changed.

    /// Compares all seven fields: addresses, never coordinates.
    friend bool operator==(const TinRecord&, const TinRecord&) noexcept = default;

    // Locating. A walk steps from triangle to triangle across the first edge that the point lies
    // outside of. It answers null when it leaves the network, and when it would go round for ever,
    // which happens in a network that is not Delaunay. The first three may be called on a null
    // record.

    /// The triangle that holds (x, y); a point on an edge stays where the walk arrives.
    TinRecord* find(Real x, Real y);
    /// The same, but a point up to 1e-5 (float: 1e-6) outside an edge, as the value of the cross
    /// product, counts as inside.
    TinRecord* findRefine(Real x, Real y);
    /// The walk with a classification: 0 strictly inside `tri`, or outside the network with `tri`
    /// null; 1 on the edge opposite corner `*where`; 2 on corner `*where`; -1 when the triangle is
    /// too small to tell; -2 on a null record, with `tri` null. The tolerance is 1e-5, as above.
    /// `where` may be null, and is written for 1 and 2 only.
    std::int32_t find(double x, double y, TinRecord*& tri, std::int32_t* where)
        requires std::same_as<Real, double>;
    /// One step from the triangle that holds q towards the one that holds p: the neighbour across
    /// the first edge, in the order 01, 12, 20, that p lies strictly outside of and that the closed
    /// segment p-q touches; null if there is none.
    TinRecord* find(const Real* p, const Real* q);

    // Topology

    /// Index of the corner that is `p`; 3 when there is none.
    [[nodiscard]] int index(const Real* p) const noexcept {
        return p == vertex[0] ? 0 : p == vertex[1] ? 1 : p == vertex[2] ? 2 : 3;
    }
    /// Index of the neighbour slot that holds `n`; 3 when there is none.
    [[nodiscard]] int index(const TinRecord* n) const noexcept {
        return n == neighbor[0] ? 0 : n == neighbor[1] ? 1 : n == neighbor[2] ? 2 : 3;
    }
    /// The third index, 3 - a - b; -1 when that is not 0, 1 or 2.
    [[nodiscard]] static int index(int a, int b) noexcept;
    /// Index of the corner that is neither `a` nor `b`; -1 unless both are corners.
    [[nodiscard]] int index(const Real* a, const Real* b) const noexcept;
    /// The edge opposite corner `i`: corners 1 and 2, 0 and 2, 0 and 1. False, with nothing
    /// written, for any other index.
    bool get_edge(int i, Real*& a, Real*& b) const noexcept;
    /// The edge opposite corner `p`; false, with nothing written, when `p` is no corner.
    bool get_edge(const Real* p, Real*& a, Real*& b) const noexcept;
    /// Flips the edge opposite corner `p` if it is not locally Delaunay, by the sum of the angles
    /// opposite to it. The neighbour of before after a flip, otherwise null: also when `p` is no
    /// corner. In double, four points on a circle flip; in float, they stay.
    TinRecord* adjust(Real* p);
    /// Flips the edge opposite corner `p` if that helps to bring segment a-b into the network: the
    /// edge crosses it, the quadrilateral is strictly convex, and the new edge does not cross it.
    /// True when it flipped; false when `p` is no corner or has no neighbour.
    bool intersect(Real* p, Real* a, Real* b);

    // Vertices around a vertex. The result is appended to `out`; the size of `out` comes back.

    /// The ring of vertex[i], counter-clockwise from vertex[(i+2)%3]. A vertex on the outer boundary
    /// has the counter-clockwise run first, then the clockwise one. In float a ring ends after 53
    /// vertices. 0, and nothing done, for an index outside 0..2.
    std::int32_t findCone(int i, RealPtrArray* out);
    /// The same for corner `p`.
    std::int32_t findCone(const Real* p, RealPtrArray* out);
    /// Appends every vertex that edges reach from vertex[i] through vertices within `radius` of it
    /// in the plane, in the order of discovery, without vertex[i] itself. A negative radius works
    /// as its magnitude. REQUIRES: every vertex is a whole XPnt3.
    ///
    /// The search marks a vertex that it has found by an `inten` of 1, and afterwards sets `inten`
    /// to 0 in all of `out`. A vertex whose `inten` is 1 on entry counts as found: it is left out,
    /// and so is what only it leads to. So set `inten` to 0 in all points first. The double engine
    /// numbers points in `inten`: the second one, and every 65536th after it, has a 1.
    std::int32_t findCone(int i, Real radius, RealPtrArray* out);
    /// Does so from the corner nearest to `p` in the triangle where findRefine() ends. Returns 0 if
    /// no corner is nearer than `radius` and than 3162.27.
    std::int32_t findCone(const Real* p, Real radius, RealPtrArray* out);

    // Measures. A plane is ax + by + cz + d = 0, its normal not scaled; c > 0 on a triangle that
    // runs counter-clockwise. A false result leaves the outputs as they were unless it says more.

    /// Returns the area in space, by Heron's formula. Infinite only if it is beyond the largest
    /// number.
    [[nodiscard]] Real Area() const;
    /// Returns the area of the projection to the plane z = 0, likewise.
    [[nodiscard]] Real AreaHorizen() const;
    /// Always 0.
    [[nodiscard]] Real AreaVertical() const noexcept { return 0; }
    /// Diagonal of the bounding box in x, y.
    [[nodiscard]] Real BevelEdgeLength() const;
    /// Diagonal of the bounding box in space.
    [[nodiscard]] Real BevelEdgeLengthNew() const;
    /// Largest minus smallest z.
    [[nodiscard]] Real boxZ() const;
    /// Longest edge in x, y.
    [[nodiscard]] Real maxEdgeLen2d() const;
    /// Mean of the corners.
    /// @{
    void Center(Real& x, Real& y, Real& z) const;
    [[nodiscard]] XPnt3<Real> Center() const;
    /// @}
    /// False when a, b and c are all exactly 0.
    bool PlaneParam3D(Real& a, Real& b, Real& c, Real& d) const;
    /// PlaneParam3D without d.
    /// @{
    bool Normal(Real& a, Real& b, Real& c) const
        requires std::same_as<Real, double>;
    bool normal(Real& a, Real& b, Real& c) const
        requires std::same_as<Real, float>;
    /// @}
    /// The angles between the normal and the axes, in radians. Without a plane, or with a normal
    /// shorter than 1e-10, all three become 0 and the result is false.
    bool NormalAngle(Real& a, Real& b, Real& c) const;
    /// out = z minus the height of the plane at (x, y). False without a plane, or when |c| < 1e-10.
    bool IntersectVertical(Real x, Real y, Real z, Real& out) const;
    /// Whether `z` lies below at least one corner.
    [[nodiscard]] bool Z(Real z) const;
    /// Intersection of the whole line p1-p2 with the triangle; `*t` is the parameter of the point
    /// p1 + t (p2 - p1), 0 at p1. False when the line misses, with `*t` written if it meets the
    /// plane in a point.
    bool ray_intersect3d(const Real* p1, const Real* p2, Real* t) const;
    /// Always false; nothing is written.
    /// @{
    bool EdgeNormal(std::int32_t i, Real& a, Real& b, Real& c) const noexcept;
    bool intersect3d(Real* a, Real* b, Real* c) const noexcept;
    /// @}

private:
    TinRecord* _find(Real x, Real y);
    TinRecord* _findRefine(Real x, Real y);
    static bool _delaunay(const Real* a, const Real* b, const Real* c, const Real* d);
    void _swap(TinRecord* n);
};

extern template class ZYN_EXPORT TinRecord<float>;
extern template class ZYN_EXPORT TinRecord<double>;

// Arrays of records by value and by pointer; a copy taken out of a network points into it.

ZYN_ARRAY(TinArray, tin);
ZYN_ARRAY(TinDArray, tind);
ZYN_ARRAY(PTinArray, tin*);
ZYN_ARRAY(PTinDArray, tind*);
ZYN_ARRAY(PTinArrayArray, PTinArray*);
ZYN_ARRAY(PTinDArrayArray, PTinDArray*);

ZYN_POOL(PTinPool, tin*);
ZYN_POOL(PTindPool, tind*);

}  // namespace zyn
