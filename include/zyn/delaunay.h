/// @file
/// Delaunay engines: incremental triangulation of a set of points.
///
/// An engine is a triangulated irregular network inside a rectangular frame. It takes points one at
/// a time and keeps the Delaunay property in the plane: the circumcircle of a triangle contains no
/// vertex. Enforced edges, and the holes that removePoint closes, may break that property.
///
///     ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0.0, minX, minY, maxX, maxY);
///     for (XPnt3d& p : *points) { engine->addPoint(&p, 0.001); }
///     engine->rewindTriangles();
///     while (tind* t = engine->nextTriangle()) {
///         if (!engine->isFrameTriangle(t)) { area += t->Area(); }
///     }
///     writeBinary(engine.get(), "terrain.tin");
///
/// Use the double engine for coordinates on the ground. The float engine halves the memory of the
/// points, not of the triangles. Insertion is fastest if the points come in spatial order.
///
/// Frame: the four corners of the frame are vertices too. A triangle that touches one is a frame
/// triangle, and functions that report on the surface leave it out. Leave a margin between the
/// points and the frame. Coordinates are limited to 1e100: a point beyond is refused. An engine
/// whose frame goes beyond refuses every point and locates none.
///
/// Ownership: a vertex is a pointer to the caller's point, which must stay alive and in place for
/// the life of the engine. Reserve the array before filling it. The engine owns its triangle
/// records. A record keeps its address until deleteTriangle or removePoint moves records, or a read
/// replaces them all.
///
/// Validity: the network is valid after every call, except that triangulate may fold triangles. Its
/// triangles are counter-clockwise by exact arithmetic, and its links are symmetric. Zero-area
/// triangles occur only along the outer boundary of the network, and next to duplicate points. A
/// read checks the numbers in a file, but not the geometry. Even on a network from a damaged file
/// every call ends, and accesses no foreign memory.
///
/// Errors: if allocation fails, a call throws std::bad_alloc and leaves the network unchanged,
/// except:
/// - after enforceEdge some edges may have been flipped;
/// - after a read the network may be empty.
///
/// Threads: use an engine on one thread at a time. Several threads may call functions that take a
/// const reference, while none changes the engine. Different engines share nothing.
#pragma once

#include <zyn/array.h>
#include <zyn/envelope.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/referenced.h>
#include <zyn/tin.h>

#include <cstdint>
#include <optional>
#include <span>
#include <type_traits>

namespace zyn {

/// The operations of both engines, in the order of the interface. Of the operations of
/// IZynGeometry, getGeoType() returns 18 and getEnvelope() the bounds of the surface, invalid
/// without triangles. The others do nothing and return 0.
template <class Real>
class ZYN_EXPORT DelaunayInterface : public IZynGeometry {
public:
    using Tri = TinRecord<Real>;  ///< The triangle of this precision.
    using Pnt = XPnt3<Real>;      ///< The point of this precision.

    // Iteration, in the order of the pool, with the one cursor of the engine. rayIntersections,
    // rayNearest and exportObj move the cursor too; the ranges of triangles.h do not.

    /// Returns the triangle at the cursor and advances the cursor. Returns null after the last
    /// triangle, until the next rewind.
    virtual Tri* nextTriangle() = 0;
    /// Sets the cursor to the first triangle.
    virtual void rewindTriangles() = 0;
    /// Returns the number of triangles, frame triangles included. A new engine has 2, and each
    /// point adds 2.
    [[nodiscard]] virtual int triangleCount() const = 0;

    /// Removes `t`, and moves the newest triangle to its address. The links of its neighbours to it
    /// become null; the network is not repaired. Returns false and changes nothing if `t` is null,
    /// is no triangle of this engine, or is the newest.
    virtual bool deleteTriangle(Tri* t) = 0;
    /// Returns 0.
    virtual std::int32_t reservedA() = 0;

    /// Returns the triangle that contains (x, y), or null outside the network. The walk starts at
    /// the newest triangle.
    [[nodiscard]] virtual Tri* locate(Real x, Real y) = 0;
    /// Returns whether a corner of `t` is a corner of the frame.
    [[nodiscard]] virtual bool isFrameTriangle(const Tri* t) const = 0;
    /// Returns whether `p` points to a corner of the engine's frame.
    [[nodiscard]] virtual bool isFrameVertex(const Real* p) const = 0;

    /// Tries to bring edge a-b into the network, by flipping the edges that cross it. Starts at
    /// `hint`, or at the first triangle if `hint` is null. Returns the triangle that contains `a`,
    /// or null if `a` is outside. REQUIRES: `a` and `b` are vertices of the network.
    ///
    /// Success is not guaranteed: an edge that crosses many others often stays out, and calling
    /// again does not help. The edge is not recorded, so a later addPoint may flip it away.
    virtual Tri* enforceEdge(Real* a, Real* b, Tri* hint) = 0;

    /// Inserts the point, which becomes a vertex by its address. Returns false and changes no
    /// triangle if:
    /// - the point is outside the frame, is not finite, or x or y is beyond 1e100;
    /// - both x and y are within `tolerance` of a corner of the triangle that contains it;
    /// - the same object is a vertex already, whatever the tolerance;
    /// - `tolerance` is not a number, or `p` is null.
    ///
    /// Tolerance 0 refuses only equal x, y. A negative one lets other points into the same place:
    /// the network stays valid, but zero-area triangles between the points can hide an edge from
    /// its neighbour. The double engine first sets `inten` of the point, even if it then refuses
    /// the point. `inten` becomes the low 16 bits of the number of earlier calls.
    virtual bool addPoint(Pnt* p, Real tolerance) = 0;
};

/// The engine in single precision.
class ZYN_EXPORT IZynDelaunay : public DelaunayInterface<float> {
public:
    /// Removes the vertex nearest to (x, y) among the corners of the triangle there. Fills the hole
    /// with triangles, and makes them Delaunay as far as one pass over them can.
    ///
    /// The triangle is where findRefine() ends, from `hint`, or from the newest triangle if that is
    /// null. Its tolerance suits metres: for degrees, pass locate(x, y) as `hint`. The point's own
    /// record is not changed. Returns false and changes nothing:
    /// - if no corner is nearer than `radius` and than 3162.27 in the plane; a negative radius
    ///   works as its magnitude;
    /// - for a corner of the frame, and for a vertex with an edge of the frame in its ring;
    /// - for a vertex among duplicate points, if no triangles with an area fill the hole;
    /// - for a vertex with more than 53 neighbours.
    virtual bool removePoint(tin* hint, float x, float y, float radius) = 0;
    /// Returns 0.
    virtual std::int32_t reservedB() = 0;
    /// Returns a new array of the points in which the whole line p1-p2 meets the surface, in the
    /// order of the pool. Ownership: the caller takes the array into a ref_ptr, as a factory's.
    [[nodiscard]] virtual Pnt3fArray* rayIntersections(const XPnt3f& p1, const XPnt3f& p2) = 0;
    /// Sets `*t` to the smallest line parameter among those points: 0 at p1, 1 at p2, negative ones
    /// included. Returns false if the line misses the surface; `*t` then has no meaning.
    virtual bool rayNearest(const XPnt3f& p1, const XPnt3f& p2, float* t) = 0;
    /// Returns 0.
    virtual std::int32_t reservedC() = 0;
};

/// The engine in double precision.
class ZYN_EXPORT IZynDelaunayD : public DelaunayInterface<double> {
public:
    // Triangulation of a whole point set at once, in place of addPoint, by the mesh generator
    // (Triangle, Shewchuk 1996).

    /// Triangulates the convex hull of `count` points, pointers to x, y, z. They become vertices by
    /// their addresses and must stay in place. findCone with a radius and exportObj need pointers
    /// to whole XPnt3d.
    ///
    /// The generator rounds x and y to float. It ignores all but one of the points that are equal
    /// after rounding. Prefer addPoints() of network.h, unless the coordinates are small numbers.
    /// At coordinates of a national grid (1e6) the rounding, up to 0.25, loses points and folds
    /// triangles.
    ///
    /// The two triangles of the frame stay, first in the pool and without links to the new ones. So
    /// later points and queries outside the hull find no triangle. enforceEdge needs a hint, such
    /// as the result of locate(), because without one it starts in the frame. `inten` does not
    /// change.
    ///
    /// Returns true without new triangles if the rounded points are all equal or collinear. Returns
    /// false and changes nothing if:
    /// - the engine holds anything other than its two frame triangles;
    /// - `points` is null, or `count` is below 3;
    /// - a coordinate is not finite as a float;
    /// - the build is without the generator.
    ///
    /// The generator prints messages to standard output, and ends the process if it runs out of
    /// memory. Threads: calls from several threads wait for each other.
    virtual bool triangulate(double** points, int count) = 0;
    /// Triangulates the points of an array in the same way. They must stay in place.
    virtual bool triangulate(Pnt3dArray* points) = 0;
    /// Removes a vertex, as in IZynDelaunay, without the limit on the number of neighbours.
    virtual bool removePoint(tind* hint, double x, double y, double radius) = 0;
    /// Returns 0.
    virtual std::int32_t reservedB() = 0;
    /// Returns null: only the float engine intersects lines.
    [[nodiscard]] virtual Pnt3dArray* rayIntersections(const XPnt3d& p1, const XPnt3d& p2) = 0;
    /// Returns false: only the float engine intersects lines.
    virtual bool rayNearest(const XPnt3d& p1, const XPnt3d& p2, double* t) = 0;
    /// Returns 0.
    virtual std::int32_t reservedC() = 0;
    /// Writes the surface as text lines `v x y z` and `f a b c` (formats.md), and reports progress
    /// on standard output. `points` is the whole sequence that addPoint was given, in that order.
    ///
    /// Leaves out each face whose longest edge in space is above `maxEdge`, if `maxEdge` is below
    /// 99999. A negative `maxEdge` works as its magnitude, without that upper bound. Works for up
    /// to 32768 points, whose numbers fit `inten`; writeObj of network.h has no such limit. Returns
    /// false and leaves an existing file unchanged if:
    /// - the file cannot be opened, or cannot be written whole;
    /// - the vertices are bare coordinates, after a read or compactVertices.
    virtual bool exportObj(std::span<const XPnt3d> points, const char* path, double maxEdge) = 0;
};

/// Returns a new engine with two triangles between the corners of the frame, which have the height
/// `z`. A frame that is not finite or goes beyond 1e100 accepts no point. REQUIRES: minX < maxX and
/// minY < maxY.
/// @{
[[nodiscard]] ZYN_EXPORT IZynDelaunay* newZynDelaunay(float z, float minX, float minY, float maxX,
                                                      float maxY);
[[nodiscard]] ZYN_EXPORT IZynDelaunayD* newZynDelaunayDouble(double z, double minX, double minY,
                                                             double maxX, double maxY);
/// @}
constexpr auto factoryOf(std::type_identity<IZynDelaunay>) { return &newZynDelaunay; }
constexpr auto factoryOf(std::type_identity<IZynDelaunayD>) { return &newZynDelaunayDouble; }

// Operations on an engine of either precision, outside its interface. They return false or 0 for
// null, and for an engine that this library did not make.

/// Returns the number of distinct vertices, without the corners of the frame.
template <class Real>
[[nodiscard]] ZYN_EXPORT int vertexCount(DelaunayInterface<Real>* engine);
/// Returns the number of distinct vertices, corners of the frame included if a triangle has them.
template <class Real>
[[nodiscard]] ZYN_EXPORT int allVertexCount(DelaunayInterface<Real>* engine);
/// Returns the number of triangles of the surface: those that are not frame triangles.
template <class Real>
[[nodiscard]] ZYN_EXPORT int surfaceTriangleCount(DelaunayInterface<Real>* engine);
/// Returns the area of the surface in space. It is infinite only if it exceeds the largest number.
template <class Real>
[[nodiscard]] ZYN_EXPORT Real surfaceArea(DelaunayInterface<Real>* engine);
/// Returns the area of the projection of the surface to the plane.
template <class Real>
[[nodiscard]] ZYN_EXPORT Real surfaceAreaHorizen(DelaunayInterface<Real>* engine);
/// Sets the bounds of the surface. Returns false and writes nothing if it has no triangle.
template <class Real>
ZYN_EXPORT bool bounds(DelaunayInterface<Real>* engine, Real& minX, Real& minY, Real& minZ,
                       Real& maxX, Real& maxY, Real& maxZ);

/// Copies the vertices of the surface into one buffer of the engine, and makes the network refer to
/// it instead of the caller's points. Returns the number of vertices copied.
/// - Vertices that only frame triangles have are still the caller's.
/// - Lists of vertices, such as constrained edges, still hold the old addresses.
/// - The copies are bare coordinates: do not use findCone with a radius or exportObj afterwards,
///   since both need `inten`.
///
/// Ownership: the engine keeps the buffer until its end.
template <class Real>
ZYN_EXPORT int compactVertices(DelaunayInterface<Real>* engine);

/// Writes the network to a binary file, which appears whole or not at all (formats.md). Returns
/// false if it cannot be written.
template <class Real>
ZYN_EXPORT bool writeBinary(DelaunayInterface<Real>* engine, const char* path);
/// Writes the network as text, with six significant digits per coordinate. Returns true even if the
/// file cannot be written.
template <class Real>
ZYN_EXPORT bool writeText(DelaunayInterface<Real>* engine, const char* path);

/// Replaces the network by that of a binary file, which must be writable too. Sets `count` to the
/// number of its vertices, the corners of the frame included. Sets `vertices` to a new array of
/// (count - 4) triples, which the network points into. The vertices are bare coordinates: do not
/// use findCone with a radius or exportObj, since both need `inten`.
///
/// Every read first sets `vertices` to null and `count` to 0: keep the array of an earlier read in
/// a pointer of your own. A file of the other precision counts as damaged. If the file cannot be
/// read or is damaged, returns false and leaves the network empty: it then accepts only another
/// read. If allocation fails, throws std::bad_alloc and leaves the network empty or unchanged.
///
/// Ownership: `vertices` is the caller's, who frees it by `delete[]` after the engine's end.
template <class Real>
ZYN_EXPORT bool readBinary(DelaunayInterface<Real>* engine, const char* path, Real*& vertices,
                           int& count);
/// Reads a text file in the same way.
template <class Real>
ZYN_EXPORT bool readText(DelaunayInterface<Real>* engine, const char* path, Real*& vertices,
                         int& count);

/// Replaces the network by that of a binary or text file, which may be read-only. Otherwise works
/// like the function of the same name with `vertices`. Ownership: the engine keeps the vertices
/// until its end, including those of earlier reads and of compactVertices().
/// @{
template <class Real>
ZYN_EXPORT bool readBinary(DelaunayInterface<Real>& engine, const char* path);
template <class Real>
ZYN_EXPORT bool readText(DelaunayInterface<Real>& engine, const char* path);
/// @}

// Reading by reference, as in `vertexCount(*engine)`.

/// @cond
namespace detail {
/// Returns the engine as the functions that take a pointer want it. Casting `const` away is safe
/// for functions that only read: no engine is const itself, and these functions change nothing in
/// it.
template <class Real>
[[nodiscard]] DelaunayInterface<Real>* readable(const DelaunayInterface<Real>& engine) {
    return const_cast<DelaunayInterface<Real>*>(&engine);
}
}  // namespace detail
/// @endcond

/// Returns what the function of the same name returns or sets for a pointer. bounds() returns
/// nullopt if the surface has no triangle. Threads: several threads may read one engine in this
/// way, while none changes it.
/// @{
template <class Real>
[[nodiscard]] int vertexCount(const DelaunayInterface<Real>& engine) {
    return vertexCount(detail::readable(engine));
}
template <class Real>
[[nodiscard]] int allVertexCount(const DelaunayInterface<Real>& engine) {
    return allVertexCount(detail::readable(engine));
}
template <class Real>
[[nodiscard]] int surfaceTriangleCount(const DelaunayInterface<Real>& engine) {
    return surfaceTriangleCount(detail::readable(engine));
}
template <class Real>
[[nodiscard]] Real surfaceArea(const DelaunayInterface<Real>& engine) {
    return surfaceArea(detail::readable(engine));
}
template <class Real>
[[nodiscard]] Real surfaceAreaHorizen(const DelaunayInterface<Real>& engine) {
    return surfaceAreaHorizen(detail::readable(engine));
}
template <class Real>
[[nodiscard]] std::optional<Enve3d> bounds(const DelaunayInterface<Real>& engine) {
    Real low[3] = {}, high[3] = {};
    if (!bounds(detail::readable(engine), low[0], low[1], low[2], high[0], high[1], high[2])) {
        return std::nullopt;
    }
    return Enve3d(low[0], low[1], low[2], high[0], high[1], high[2]);
}
template <class Real>
bool writeBinary(const DelaunayInterface<Real>& engine, const char* path) {
    return writeBinary(detail::readable(engine), path);
}
template <class Real>
bool writeText(const DelaunayInterface<Real>& engine, const char* path) {
    return writeText(detail::readable(engine), path);
}
/// @}

// Arrays of engines, each holding a count of its engines.

ZYN_ARRAY(DelaunayArray, IZynDelaunay*);
ZYN_ARRAY(DelaunayDArray, IZynDelaunayD*);

}  // namespace zyn
