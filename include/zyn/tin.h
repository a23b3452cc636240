/// @file
/// Triangle records: the triangle of a triangulated irregular network, in float and double.
///
/// A record holds its three corners and its three neighbours, and nothing else makes up the
/// network: there is no table of edges or vertices. Corners are pointers to x, y, z. Two corners
/// are the same vertex if they are the same address. All topological functions use x and y only.
///
///                  vertex[0]                 The corners run counter-clockwise seen from above.
///                    /    \                  neighbor[i] is across the edge opposite vertex[i],
///      neighbor[2]  /      \  neighbor[1]    and null on the outer boundary. Links are
///                  /        \                symmetric. Indices count modulo 3.
///          vertex[1] ------ vertex[2]
///                 neighbor[0]
///
///     tind* t = engine->locate(x, y);
///     if (t != nullptr && !engine->isFrameTriangle(t)) {
///         double out = 0.0;                                  // height of z = 0 above the plane
///         if (t->IntersectVertical(x, y, 0.0, out)) { height = -out; }
///         if (const tind* n = t->neighbor[0]) { use(n); }    // across vertex[1]-vertex[2]
///     }
///
/// Use the float record for small extents near the origin, and the double one for coordinates on
/// the ground. The float record measures in float, except in ray_intersect3d.
///
/// Ownership: a record owns neither its corners nor its neighbours; the engine (delaunay.h) owns
/// the records of its network.
///
/// Threads: use the records of a network on one thread at a time.
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

/// A copyable value of seven fields. A copy points to the same corners and neighbours.
template <class Real>
class TinRecord {
public:
    /// Arrays of pointers to coordinates.
    using RealPtrArray = std::conditional_t<std::same_as<Real, double>, PDoubleArray, PFloatArray>;

    Real* vertex[3] = {};         ///< The corners, counter-clockwise: x, y, z each.
    TinRecord* neighbor[3] = {};  ///< Each across the edge opposite that corner, or null.
    std::int16_t mark = -1;       ///< Copied and compared, otherwise neither read nor changed.

    /// Compares all seven fields: addresses, never coordinates.
    friend bool operator==(const TinRecord&, const TinRecord&) noexcept = default;

    // Locating. A walk steps from triangle to triangle, across the first edge that the point is
    // outside of. It returns null if it leaves the network. It also returns null if it would never
    // end, which happens in a network that is not Delaunay. The first three functions may be called
    // on a null record.

    /// Returns the triangle that contains (x, y). For a point on an edge it is the one where the
    /// walk arrives.
    TinRecord* find(Real x, Real y);
    /// Returns the triangle that contains (x, y), with a tolerance. A point up to 1e-5 (float:
    /// 1e-6) outside an edge, as the value of the cross product, counts as inside.
    TinRecord* findRefine(Real x, Real y);
    /// Walks to (x, y), sets `tri` to the triangle there, and returns the place:
    /// - 0: strictly inside `tri`, or outside the network with `tri` null;
    /// - 1: on the edge opposite corner `*where`;
    /// - 2: on corner `*where`;
    /// - -1: the triangle is too small to distinguish;
    /// - -2: this record is null, and so is `tri`.
    ///
    /// The tolerance is 1e-5, as a cross product. `where` may be null, and is written for 1 and 2
    /// only.
    std::int32_t find(double x, double y, TinRecord*& tri, std::int32_t* where)
        requires std::same_as<Real, double>;
    /// Makes one step from the triangle that contains q towards the one that contains p. Tests the
    /// edges in the order 01, 12, 20. Returns the neighbour across the first edge that p is
    /// strictly outside of and that the closed segment p-q touches, or null.
    TinRecord* find(const Real* p, const Real* q);

    // Topology

    /// Returns the index of the corner that is `p`; 3 if none is.
    [[nodiscard]] int index(const Real* p) const noexcept {
        return p == vertex[0] ? 0 : p == vertex[1] ? 1 : p == vertex[2] ? 2 : 3;
    }
    /// Returns the index of the neighbour that is `n`; 3 if none is.
    [[nodiscard]] int index(const TinRecord* n) const noexcept {
        return n == neighbor[0] ? 0 : n == neighbor[1] ? 1 : n == neighbor[2] ? 2 : 3;
    }
    /// Returns the third index, 3 - a - b; -1 if that is not 0, 1 or 2.
    [[nodiscard]] static int index(int a, int b) noexcept;
    /// Returns the index of the corner that is neither `a` nor `b`; -1 unless both are corners.
    [[nodiscard]] int index(const Real* a, const Real* b) const noexcept;
    /// Sets `a` and `b` to the ends of the edge opposite corner `i`: corners 1 and 2, 0 and 2, 0
    /// and 1. Returns false and writes nothing for any other index.
    bool get_edge(int i, Real*& a, Real*& b) const noexcept;
    /// Sets `a` and `b` to the ends of the edge opposite corner `p`. Returns false and writes
    /// nothing if `p` is no corner.
    bool get_edge(const Real* p, Real*& a, Real*& b) const noexcept;
    /// Flips the edge opposite corner `p` if it is not locally Delaunay, by the sum of the two
    /// angles opposite the edge. Returns the former neighbour after a flip, otherwise null, also if
    /// `p` is no corner. Four points on one circle flip in double, and do not in float.
    TinRecord* adjust(Real* p);
    /// Flips the edge opposite corner `p` if that helps to bring segment a-b into the network.
    /// Returns whether it flipped: false if `p` is no corner or has no neighbour. It flips if:
    /// - the edge crosses a-b;
    /// - the quadrilateral is strictly convex;
    /// - the new edge does not cross a-b.
    bool intersect(Real* p, Real* a, Real* b);

    // Vertices around a vertex. These functions append to `out` and return the size of `out`.

    /// Appends the ring of vertex[i]: the vertices that edges connect to it, counter-clockwise from
    /// vertex[(i+2)%3]. For a vertex on the outer boundary, the counter-clockwise part comes first,
    /// then the clockwise one. In float a ring ends after 53 vertices. Returns 0 and does nothing
    /// for an index outside 0..2.
    std::int32_t findCone(int i, RealPtrArray* out);
    /// Appends the ring of corner `p`. Returns 0 and does nothing if `p` is no corner.
    std::int32_t findCone(const Real* p, RealPtrArray* out);
    /// Appends every vertex that edges connect to vertex[i] through vertices within `radius` of it
    /// in the plane. They come in the order of discovery, without vertex[i] itself. A negative
    /// radius works as its magnitude. REQUIRES: every vertex is a whole XPnt3.
    ///
    /// The search marks each vertex that it finds by an `inten` of 1, and finally sets `inten` to 0
    /// in all of `out`. A vertex whose `inten` is 1 on entry counts as found. The result then lacks
    /// it, and the vertices that only it leads to. So set `inten` to 0 in all points first: the
    /// double engine stores a number there, which is 1 for the second point and every 65536th after
    /// it.
    std::int32_t findCone(int i, Real radius, RealPtrArray* out);
    /// Starts at the corner nearest to `p`, in the triangle where findRefine() ends. Returns 0 if
    /// no corner is nearer than `radius` and than 3162.27.
    std::int32_t findCone(const Real* p, Real radius, RealPtrArray* out);

    // Measures. A plane is ax + by + cz + d = 0 with a normal that is not scaled; c > 0 in a
    // triangle that runs counter-clockwise. A function that returns false leaves its outputs
    // unchanged, unless its comment says otherwise.

    /// Returns the area in space, by Heron's formula. It is infinite only if it exceeds the largest
    /// number.
    [[nodiscard]] Real Area() const;
    /// Returns the area of the projection to the plane z = 0, also by Heron's formula.
    [[nodiscard]] Real AreaHorizen() const;
    /// Returns 0.
    [[nodiscard]] Real AreaVertical() const noexcept { return 0; }
    /// Returns the diagonal of the bounding box in x, y.
    [[nodiscard]] Real BevelEdgeLength() const;
    /// Returns the diagonal of the bounding box in space.
    [[nodiscard]] Real BevelEdgeLengthNew() const;
    /// Returns the largest z minus the smallest.
    [[nodiscard]] Real boxZ() const;
    /// Returns the length of the longest edge in x, y.
    [[nodiscard]] Real maxEdgeLen2d() const;
    /// Returns the mean of the corners.
    /// @{
    void Center(Real& x, Real& y, Real& z) const;
    [[nodiscard]] XPnt3<Real> Center() const;
    /// @}
    /// Sets the plane of the triangle. Returns false if a, b and c are all exactly 0.
    bool PlaneParam3D(Real& a, Real& b, Real& c, Real& d) const;
    /// Sets the normal, as PlaneParam3D without d.
    /// @{
    bool Normal(Real& a, Real& b, Real& c) const
        requires std::same_as<Real, double>;
    bool normal(Real& a, Real& b, Real& c) const
        requires std::same_as<Real, float>;
    /// @}
    /// Sets the angles between the normal and the axes, in radians. Without a plane, or with a
    /// normal shorter than 1e-10, sets all three to 0 and returns false.
    bool NormalAngle(Real& a, Real& b, Real& c) const;
    /// Sets `out` to z minus the height of the plane at (x, y). Returns false without a plane, or
    /// if |c| < 1e-10.
    bool IntersectVertical(Real x, Real y, Real z, Real& out) const;
    /// Returns whether `z` is below at least one corner.
    [[nodiscard]] bool Z(Real z) const;
    /// Intersects the whole line p1-p2 with the triangle, in double. Sets `*t` to the parameter of
    /// the point p1 + t (p2 - p1), 0 at p1. Returns false if the line misses; `*t` is then written
    /// if the line meets the plane in a point. The point counts as inside if the areas of its three
    /// triangles sum to the whole within 1e-6 (float: 1e-5).
    bool ray_intersect3d(const Real* p1, const Real* p2, Real* t) const;
    /// Returns false and writes nothing.
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

// Arrays of records by value and by pointer. A copy taken out of a network points into it.

ZYN_ARRAY(TinArray, tin);
ZYN_ARRAY(TinDArray, tind);
ZYN_ARRAY(PTinArray, tin*);
ZYN_ARRAY(PTinDArray, tind*);
ZYN_ARRAY(PTinArrayArray, PTinArray*);
ZYN_ARRAY(PTinDArrayArray, PTinDArray*);

ZYN_POOL(PTinPool, tin*);
ZYN_POOL(PTindPool, tind*);

}  // namespace zyn
