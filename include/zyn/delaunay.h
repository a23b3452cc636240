/// @file
/// Delaunay engines: points in, a surface out.
///
/// An engine is a triangulated irregular network inside a rectangular frame. It is fed points one at
/// a time and triangulates them by Delaunay's rule in the plane: no vertex lies inside the circle of
/// any triangle. Enforced edges, and holes that removePoint closes, may break that rule. A vertex is a
/// pointer to the caller's point, which must stay alive and in place for the life of the engine: reserve
/// the array before filling it. The four corners of the frame are vertices too; triangles that touch one
/// are frame triangles, and what reports on the surface leaves them out. Leave a margin between the
/// points and the frame. Coordinates go up to 1e100: a point beyond is refused, and a frame with a
/// corner beyond accepts no point and locates none.
///
///     ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0.0, minX, minY, maxX, maxY);
///     for (XPnt3d& p : *points) { engine->addPoint(&p, 0.001); }
///     engine->rewindTriangles();
///     while (tind* t = engine->nextTriangle()) {
///         if (!engine->isFrameTriangle(t)) { area += t->Area(); }
///     }
///     writeBinary(engine.get(), "terrain.tin");
///
/// Take the double engine for coordinates on the ground; the float one halves the memory of the
/// points, not of the triangles. Points in spatial order are located in a few steps each.
/// Every network is valid after every call: triangles counter-clockwise by exact arithmetic, links
/// symmetric. Triangles of no area occur only on an edge of the frame or of an open hull, and while
/// there are points in one place. A network that was read is what the file says: its numbers are
/// checked, its geometry is not, and on a damaged one every call still ends and touches no foreign
/// memory.
/// Without memory std::bad_alloc is thrown: the network stays as it was, but for enforceEdge, which may
/// have flipped some edges, and for a read.
/// One thread at a time; different engines share nothing. Records keep their address until
/// deleteTriangle or removePoint moves one, or a read replaces them all.
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

/// What both engines offer, in the order of the interface.
template <class Real>
class ZYN_EXPORT DelaunayInterface : public IZynGeometry {
public:
    using Tri = TinRecord<Real>;  ///< The triangle of this precision.
    using Pnt = XPnt3<Real>;      ///< The point of this precision.

    // Iteration, in pool order, by the engine's one cursor. rayIntersections, rayNearest and exportObj
    // move it too; the ranges of triangles.h do not.

    /// The triangle at the cursor, which moves on; null after the last, until the next rewind.
    virtual Tri* nextTriangle() = 0;
    /// Sets the cursor to the first triangle.
    virtual void rewindTriangles() = 0;
    /// Number of triangles, frame triangles included: 2 in a new engine, 2 more a point.
    [[nodiscard]] virtual int triangleCount() const = 0;

    /// Takes `t` out and moves the newest triangle into its place; the links of its neighbours to
    /// it become null. It does not repair the network. False when `t` is null, no triangle of this
    /// engine, or the newest.
    virtual bool deleteTriangle(Tri* t) = 0;
    /// Returns 0.
    virtual std::int32_t reservedA() = 0;

    /// The triangle that holds (x, y), by a walk from the newest triangle; null outside.
    [[nodiscard]] virtual Tri* locate(Real x, Real y) = 0;
    /// Whether a corner of `t` is a corner of the frame.
    [[nodiscard]] virtual bool isFrameTriangle(const Tri* t) const = 0;
    /// Whether `p` points into the engine's frame.
    [[nodiscard]] virtual bool isFrameVertex(const Real* p) const = 0;

    /// Works towards edge a-b, both vertices of the network, by flipping the edges that cross it.
    /// Starts at `hint`, or at the first triangle when it is null. The
    /// triangle that holds `a`, or null when `a` lies outside. Nothing is recorded: a later
    /// addPoint may flip the edge away, and an edge that many others cross often does not come in;
    /// calling again does not help then.
    virtual Tri* enforceEdge(Real* a, Real* b, Tri* hint) = 0;

    /// Inserts the point, which becomes a vertex by its address. Returns false and changes no
    /// triangle if:
    /// - the point is outside the frame, is not finite, or x or y is beyond 1e100;
    /// - both x and y are within `tolerance` of a corner of the triangle that holds it;
    /// - the same object is a vertex already, whatever the tolerance;
    /// - `tolerance` is not a number, or `p` is null.
    ///
    /// Tolerance 0 refuses equal x, y only. A negative one lets other points into the same place:
    /// the network is valid there, but triangles of no area between the points can hide an edge
    /// from its neighbour. The double engine numbers the point first, also one that it refuses: `inten`
    /// becomes the low 16 bits of the number of calls before.
    virtual bool addPoint(Pnt* p, Real tolerance) = 0;
};

/// The engine in single precision.
class ZYN_EXPORT IZynDelaunay : public DelaunayInterface<float> {
public:
    /// Removes the vertex nearest to (x, y) among the corners of the triangle there, and closes the
    /// hole with triangles that are Delaunay's as far as one pass over them makes them so.
    ///
    /// The triangle is where findRefine() ends, from `hint`, or from the newest triangle if that is
    /// null. Its tolerance wants metres: in degrees, pass locate(x, y) as `hint`. The point's own
    /// record is not touched. Returns false and changes nothing:
    /// - if no corner is nearer than `radius` and than 3162.27 in the plane; a negative radius
    ///   works as its magnitude;
    /// - for a corner of the frame, and a vertex with an edge of the frame in its ring;
    /// - for a vertex among points in one place, if no triangles with an area fill the hole;
    /// - for a vertex of more than 53 neighbours.
    virtual bool removePoint(tin* hint, float x, float y, float radius) = 0;
    /// Returns 0.
    virtual std::int32_t reservedB() = 0;
    /// A new array, the caller's, of the points in which the whole line p1-p2 meets the surface, in
    /// pool order.
    [[nodiscard]] virtual Pnt3fArray* rayIntersections(const XPnt3f& p1, const XPnt3f& p2) = 0;
    /// The smallest line parameter among those points, 0 at p1 and 1 at p2, negative ones included.
    /// False, with `*t` without meaning, when the line misses the surface.
    virtual bool rayNearest(const XPnt3f& p1, const XPnt3f& p2, float* t) = 0;
    /// Returns 0.
    virtual std::int32_t reservedC() = 0;
};

/// The engine in double precision.
class ZYN_EXPORT IZynDelaunayD : public DelaunayInterface<double> {
public:
    // One-shot triangulation of a whole point set by the mesh generator (Triangle, Shewchuk 1996), in
    // place of addPoint.

    /// Triangulates the convex hull of `count` points, pointers to x, y, z, which must stay and
    /// become vertices by their addresses: of whole XPnt3d for findCone with a radius and
    /// exportObj. The generator sees x and y rounded to float, and ignores all but one of the
    /// points that then fall together: prefer addPoints() of network.h, unless the coordinates are
    /// small numbers. At those of a national grid (1e6) the rounding, up to 0.25, loses points and
    /// folds triangles.
    ///
    /// The frame's two triangles stay, first and without a link to the new ones, whose outer edges
    /// have no neighbour: later points and queries outside the hull find no triangle, and enforceEdge
    /// needs a hint, such as locate() gives, since without one it starts in the frame. `inten` is left
    /// as it is. True without a new triangle when the rounded points all lie in one place or on one
    /// line. False, with nothing changed, when the engine holds anything but its two frame triangles,
    /// for fewer than three points, null, a coordinate that is not finite as a float, and in a
    /// build without the generator, which prints messages to standard output and ends the process
    /// when it runs out of memory. Calls from several threads wait for each other.
    virtual bool triangulate(double** points, int count) = 0;
    /// The same for the points of an array, which must stay in place.
    virtual bool triangulate(Pnt3dArray* points) = 0;
    /// As in IZynDelaunay, without the limit on the number of neighbours.
    virtual bool removePoint(tind* hint, double x, double y, double radius) = 0;
    /// Returns 0.
    virtual std::int32_t reservedB() = 0;
    /// Only the float engine intersects lines: null.
    [[nodiscard]] virtual Pnt3dArray* rayIntersections(const XPnt3d& p1, const XPnt3d& p2) = 0;
    /// Only the float engine intersects lines: false.
    virtual bool rayNearest(const XPnt3d& p1, const XPnt3d& p2, double* t) = 0;
    /// Returns 0.
    virtual std::int32_t reservedC() = 0;
    /// Writes the surface as text lines `v x y z` and `f a b c` (formats.md), and its progress to
    /// standard output. `points` is the whole sequence that addPoint was given, in that order. A
    /// face whose longest edge in space is above `maxEdge` is left out, if that is below 99999. A
    /// negative `maxEdge` works as its magnitude, which then has no upper bound.
    /// Serves up to 32768 points, whose number fits `inten`; writeObj of network.h has no such limit.
    /// False when the file cannot be opened or written whole, with an old one as it was, and on a network
    /// whose vertices are bare coordinates (after a read or compactVertices).
    virtual bool exportObj(std::span<const XPnt3d> points, const char* path, double maxEdge) = 0;
};

/// A new engine with two triangles between the corners of the frame, whose height is `z`. REQUIRES:
/// minX < maxX and minY < maxY. A frame that is not finite, or beyond 1e100, accepts no point.
/// @{
[[nodiscard]] ZYN_EXPORT IZynDelaunay* newZynDelaunay(float z, float minX, float minY, float maxX,
                                                      float maxY);
[[nodiscard]] ZYN_EXPORT IZynDelaunayD* newZynDelaunayDouble(double z, double minX, double minY,
                                                             double maxX, double maxY);
/// @}
constexpr auto factoryOf(std::type_identity<IZynDelaunay>) { return &newZynDelaunay; }
constexpr auto factoryOf(std::type_identity<IZynDelaunayD>) { return &newZynDelaunayDouble; }

// Operations on an engine of either precision beside its interface. A null engine, or one that is
// not this library's, gets false or 0.

/// Distinct vertices of the network, without the corners of the frame.
template <class Real>
[[nodiscard]] ZYN_EXPORT int vertexCount(DelaunayInterface<Real>* engine);
/// Distinct vertices, those corners of the frame included that a triangle has.
template <class Real>
[[nodiscard]] ZYN_EXPORT int allVertexCount(DelaunayInterface<Real>* engine);
/// Triangles that are not frame triangles.
template <class Real>
[[nodiscard]] ZYN_EXPORT int surfaceTriangleCount(DelaunayInterface<Real>* engine);
/// Sum of their areas in space; infinite only if beyond the largest number.
template <class Real>
[[nodiscard]] ZYN_EXPORT Real surfaceArea(DelaunayInterface<Real>* engine);
/// Sum of their areas in the plane.
template <class Real>
[[nodiscard]] ZYN_EXPORT Real surfaceAreaHorizen(DelaunayInterface<Real>* engine);
/// Their bounds. False, with nothing written, when there is no such triangle.
template <class Real>
ZYN_EXPORT bool bounds(DelaunayInterface<Real>* engine, Real& minX, Real& minY, Real& minZ,
                       Real& maxX, Real& maxY, Real& maxZ);

/// Copies the vertices of the surface into one buffer that the engine owns until its end, and makes the
/// network refer to it instead of the caller's points; lists of vertices, such as fixed edges, do not
/// follow. Vertices that only frame triangles have stay the caller's. The copies are bare coordinates:
/// findCone with a radius and exportObj, which use `inten`, are not for them. The number of vertices
/// copied.
template <class Real>
ZYN_EXPORT int compactVertices(DelaunayInterface<Real>* engine);

/// Writes the network to a binary file, which appears whole or not at all (formats.md). Returns
/// false if it could not be written.
template <class Real>
ZYN_EXPORT bool writeBinary(DelaunayInterface<Real>* engine, const char* path);
/// The same as text, with six significant digits a coordinate. True even when the file could not be
/// written.
template <class Real>
ZYN_EXPORT bool writeText(DelaunayInterface<Real>* engine, const char* path);

/// Replaces the network by that of a binary file, which must be writable too. `count` becomes the
/// number of its vertices, the corners of the frame included, and `vertices` a new array of
/// (count - 4) triples that the network points into: the caller's, to be freed by `delete[]` after
/// the engine's end. The vertices are bare coordinates: findCone with a radius and exportObj, which
/// use `inten`, are not for them.
///
/// At the start of every read `vertices` becomes null and `count` 0: free the array of an earlier
/// read through a pointer of your own. If the file cannot be read or is damaged, returns false and
/// leaves the network empty, good for nothing but another read. If memory runs out, throws
/// std::bad_alloc and leaves it so, or as it was. A file of the other precision is not
/// distinguished from a damaged one.
template <class Real>
ZYN_EXPORT bool readBinary(DelaunayInterface<Real>* engine, const char* path, Real*& vertices,
                           int& count);
/// The same for a text file.
template <class Real>
ZYN_EXPORT bool readText(DelaunayInterface<Real>* engine, const char* path, Real*& vertices,
                         int& count);

/// Replaces the network by that of a binary or text file, which may be closed to writing. The engine
/// owns the vertices until its end, and those of earlier reads and of compactVertices() too. In all
/// else each works as the function of that name with `vertices`.
/// @{
template <class Real>
ZYN_EXPORT bool readBinary(DelaunayInterface<Real>& engine, const char* path);
template <class Real>
ZYN_EXPORT bool readText(DelaunayInterface<Real>& engine, const char* path);
/// @}

// Reading by reference, as in `vertexCount(*engine)`

/// @cond
namespace detail {
/// Returns the engine as the functions that take a pointer want it. To cast `const` away is safe for
/// those that only read, and for no others: no engine is const itself, and these change nothing in it.
template <class Real>
[[nodiscard]] DelaunayInterface<Real>* readable(const DelaunayInterface<Real>& engine) {
    return const_cast<DelaunayInterface<Real>*>(&engine);
}
}  // namespace detail
/// @endcond

/// Returns what the function of that name writes or returns for a pointer. bounds() returns nothing if
/// there is no such triangle. Threads: several may read one engine so while none changes it.
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
