/// @file
/// Operations on the network of an engine: points and breaklines in, heights, lines and files out.
///
///     ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0.0, minX, minY, maxX, maxY);
///     addPoints(engine.get(), points.get(), 0.001);
///     double z = 0.0;
///     if (heightAt(engine.get(), x, y, z)) { use(z); }
///     const ref_ptr<Pnt3dArrayArray> lines = contours(engine.get(), levels.get());
///     if (!writePly(engine.get(), "terrain.ply")) { report("terrain.ply could not be written"); }
///
/// Operations that only read also take a reference, and return what they find:
///
///     const std::optional<double> z = heightAt(*engine, x, y);
///     const ref_ptr<Pnt3dArrayArray> lines = contours(*engine, std::array{10.0, 20.0});
///
/// New programs are easier to write with the class of surface.h, which owns its points.
///
/// Surface: all triangles without a corner of the frame. Its boundary, the rim, belongs to it. All
/// operations take engines of either precision and compute in double. An engine that is null, or
/// that this library did not make, has no surface.
///
/// Limit: `maxEdge` leaves out triangles whose longest edge in space exceeds it, in the unit of the
/// coordinates. A negative value leaves out all triangles, NaN none.
///
/// Ownership: the host owns points, lists and the engine; results are new arrays.
///
/// Threads: use an engine on one thread at a time. Several threads may call operations that only
/// read, while none changes the engine.
///
/// Errors: if allocation fails, an operation throws std::bad_alloc and leaves a valid network.
#pragma once

#include <zyn/array.h>
#include <zyn/delaunay.h>
#include <zyn/envelope.h>
#include <zyn/export.h>
#include <zyn/matrix.h>
#include <zyn/point.h>
#include <zyn/pool.h>
#include <zyn/referenced.h>
#include <zyn/triangles.h>

#include <QString>
#include <concepts>
#include <optional>
#include <span>
#include <type_traits>

namespace zyn {

class IZynProgress;

// Members of a class, since compilers do not agree on the name that a function gets from a
// condition in its signature.
/// @cond
template <class Real>
struct Pnt3Containers;
template <>
struct Pnt3Containers<float> {
    using Array = Pnt3fArray;
    using ArrayArray = Pnt3fArrayArray;
    using Pool = Pnt3fPool;
};
template <>
struct Pnt3Containers<double> {
    using Array = Pnt3dArray;
    using ArrayArray = Pnt3dArrayArray;
    using Pool = Pnt3dPool;
};
/// @endcond

/// A container of an engine's points or vertices.
/// @{
template <class Real>
using Pnt3Array = typename Pnt3Containers<Real>::Array;
template <class Real>
using Pnt3ArrayArray = typename Pnt3Containers<Real>::ArrayArray;
template <class Real>
using Pnt3Pool = typename Pnt3Containers<Real>::Pool;
template <class Real>
using VertexArray = typename TinRecord<Real>::RealPtrArray;
/// @}

// Points in spatial order

/// Sorts points along a Hilbert curve through their box, so that points close in the plane are
/// close in memory. Queries on a network of such points are fastest. Points in one cell of the
/// curve keep their order, and a crowded cell is sorted again by its own box. Points that are not
/// finite come last. Does nothing for null.
///
/// Takes O(n) time, once more for each level of crowding within crowding, and a copy of the points.
/// Sources: the curve, Hilbert 1891; least-significant-digit radix sort.
/// @{
ZYN_EXPORT void spatialSort(Pnt3dArray* points);
ZYN_EXPORT void spatialSort(Pnt3fArray* points);
/// @}
/// Returns the indices of the points in that order, from 0, as a new array. It is empty for null.
/// @{
[[nodiscard]] ZYN_EXPORT ref_ptr<IntArray> spatialOrder(const Pnt3dArray* points);
[[nodiscard]] ZYN_EXPORT ref_ptr<IntArray> spatialOrder(const Pnt3fArray* points);
/// @}

/// Inserts points as addPoint does, in an order that makes it fast, whatever their order in the
/// array. Returns the number of points that became vertices; 0 if `engine` or `points` is null, or
/// if this library did not make the engine. Appends the indices of refused points to `rejected`,
/// ascending. Which of several points within `tolerance` becomes the vertex is not defined.
///
/// REQUIRES: the points stay in place as long as the engine uses them.
///
/// Sets `inten` of each point to the low 16 bits of its number: its index plus the number of points
/// that the engine was offered before. exportObj uses these numbers.
///
/// Calls progress->setTotal() with the number of points, then step() with parts that add up to it,
/// and isCanceled() before each 1024 points. If that returns true, stops with a valid network of
/// the points so far. The remaining points are not in `rejected`.
template <class Real>
ZYN_EXPORT int addPoints(DelaunayInterface<Real>* engine, Pnt3Array<Real>* points,
                         std::type_identity_t<Real> tolerance, IZynProgress* progress = nullptr,
                         IntArray* rejected = nullptr);

// Breaklines

// A constrained (fixed) edge is a pair of vertices, next to each other in a list that the host
// keeps. The network itself does not store constrained edges, and addPoint and removePoint ignore
// them. So insert all points before the breaklines.

/// Makes a polyline part of the network. Each of its points becomes a vertex, unless one is there
/// within `tolerance`. Each segment becomes an edge, or a chain of edges through vertices that are
/// exactly on it. Returns the number of edges of the network that are pieces of the polyline, each
/// counted once.
///
/// Returns -1 and changes nothing if:
/// - `engine` is null, or this library did not make it;
/// - `points` is null, or has fewer than two points;
/// - a point is not finite or outside the network;
/// - the tolerance is negative or NaN.
///
/// REQUIRES: the points stay in place as long as the engine uses them.
///
/// `fixed` is the list of constrained edges, or null. The call appends the edges of the polyline,
/// replaces an edge that a new vertex splits by its halves, and removes duplicates. An edge that a
/// segment crosses gives way: it is removed from the list. Each call takes time for the whole list,
/// so pass many polylines at once.
///
/// With `crossings`, such edges stay: both lines get a vertex where they cross, with the height of
/// the earlier edge. The call appends the point of that vertex to `crossings`; it must stay in
/// place too. Rounding of that vertex bends both lines a little. So:
/// - a segment goes through an end of a constrained edge that it passes within the tolerance, or
///   within that rounding;
/// - lines that cross that close to an end of one of them meet at that end;
/// - overlapping lines share their vertices. Adding the same lines again makes none without a
///   tolerance, and few with one, since points may then fall on vertices that were made since;
/// - a segment that n constrained edges cross adds at most 2 n + 1 vertices. Beyond that, an edge
///   without a vertex near the crossing gives way.
///
/// A segment may be missing next to a hole left by deleteTriangle, next to points in one place, and
/// in a network from a damaged file. If allocation fails, an edge that was about to be replaced may
/// be missing in `fixed`. The call numbers new vertices as addPoint does.
///
/// Sources: removal of crossing edges by flips, Sloan 1993, in an order that is proven to end;
/// iterated snap rounding, Halperin and Packer 2002.
template <class Real>
ZYN_EXPORT int addBreakline(DelaunayInterface<Real>* engine, Pnt3Array<Real>* points,
                            std::type_identity_t<Real> tolerance,
                            VertexArray<Real>* fixed = nullptr,
                            Pnt3Pool<Real>* crossings = nullptr);
/// Makes polylines part of the network, one after the other. Leaves out those for which
/// addBreakline() returns -1. Returns -1 only if all are left out, or if `polylines` is null.
template <class Real>
ZYN_EXPORT int addBreaklines(DelaunayInterface<Real>* engine, Pnt3ArrayArray<Real>* polylines,
                             std::type_identity_t<Real> tolerance,
                             VertexArray<Real>* fixed = nullptr,
                             Pnt3Pool<Real>* crossings = nullptr);
/// Makes the network the constrained Delaunay triangulation of its vertices and the edges of
/// `fixed`. It flips other edges that fail the exact in-circle test until none is left. Returns the
/// number of flips, or the largest int if there are more.
///
/// Returns -1 and changes nothing if:
/// - `engine` is null;
/// - a triangle is clockwise;
/// - a link is not mutual or leads out of the network.
///
/// Source: Lawson 1977.
template <class Real>
ZYN_EXPORT int restoreDelaunay(DelaunayInterface<Real>* engine,
                               const VertexArray<Real>* fixed = nullptr);

/// Makes the surface the Delaunay triangulation of the vertices alone, with their convex hull as
/// its rim. The corners of the frame then count as infinitely far. Without this call they count as
/// points, so triangles at the rim are missing. Returns the number of flips, or the largest int if
/// there are more.
///
/// REQUIRES: the inner edges of the surface are Delaunay, as addPoints leaves them in a network
/// whose hull was never closed. Call restoreDelaunay before it in any other case. Only new
/// triangles, and edges that these make illegal, are tested.
///
/// - Edges of `fixed` between triangles of the surface stay. Edges to corners of the frame do not.
/// - Vertices on an edge of the hull stay on the rim.
/// - Holes that deleteTriangle made stay.
/// - Points in one place keep zero-area triangles, and the rim may not be convex there.
/// - If all vertices are on one line, there is no surface, and the call flips nothing.
/// - After addPoint, addPoints, removePoint or restoreDelaunay the rim may no longer be convex.
///
/// Returns -1 and changes nothing if:
/// - `engine` is null, or this library did not make it;
/// - a frame triangle is missing;
/// - the links of a frame triangle are damaged.
///
/// If allocation fails, throws std::bad_alloc and leaves a valid network, which may need
/// restoreDelaunay before the next call. The time depends on the length of the rim and the number
/// of flips, after one walk to the frame. Sources: scan of the rim, Graham 1972; flips, Lawson
/// 1977.
template <class Real>
ZYN_EXPORT int closeHull(DelaunayInterface<Real>* engine, const VertexArray<Real>* fixed = nullptr);

/// Returns a null string for a sound network, otherwise the first broken invariant as a sentence,
/// with the index of its triangle in the pool. It checks that:
/// - each triangle is counter-clockwise by exact arithmetic. Zero-area triangles may occur at the
///   outer boundary of the network, and anywhere in a network with points in one place;
/// - links are mutual and across the same edge;
/// - with `delaunay`, no edge fails the exact in-circle test. Edges of frame triangles may fail it
///   if the rim of the surface is convex, as closeHull makes it;
/// - each component is a disc, whose outer boundary is convex and winds once.
template <class Real>
[[nodiscard]] ZYN_EXPORT QString validate(DelaunayInterface<Real>* engine, bool delaunay = false);

// Heights

/// Sets `z` to the height of the surface at (x, y), by the plane of the triangle there. Returns
/// false and leaves `z` unchanged off the surface. Walks there from the newest triangle. The walk
/// may end at a hole that deleteTriangle left. Next to points in one place, the height of any of
/// them may count.
template <class Real>
ZYN_EXPORT bool heightAt(DelaunayInterface<Real>* engine, double x, double y, double& z);
/// Sets the z of each point to the height of the surface there, or to NaN off the surface. Returns
/// the number of heights. Walks from point to point, so points in spatial order are fastest.
/// REQUIRES: at most 2147483647 points.
/// @{
template <class Real>
ZYN_EXPORT int heightAt(DelaunayInterface<Real>* engine, Pnt3dArray* points);
template <class Real>
ZYN_EXPORT int heightAt(DelaunayInterface<Real>* engine, std::span<XPnt3d> points);
/// @}
/// Returns the surface along the straight line from a to b, as a new array of points in order.
/// There is one at each edge that the line crosses, and one at each end that is on the surface. It
/// is empty if no part of the line is on the surface.
///
/// If the line leaves the surface and returns, a point with a NaN z separates the parts. Its place
/// is where the line returns. A part may be a single point. Along the edge of a hole left by
/// deleteTriangle, with the hole on the right, the line is off the surface. For a line that leaves
/// the network, the time is proportional to the number of all triangles.
template <class Real>
[[nodiscard]] ZYN_EXPORT ref_ptr<Pnt3dArray> profile(DelaunayInterface<Real>* engine,
                                                     const XPnt2d& a, const XPnt2d& b);
/// Sets `out` to the heights at the centres of the cells that fill the envelope: cellsY rows of
/// cellsX columns. The first row is at minY, the first column at minX. A height off the surface is
/// NaN.
///
/// Returns false and leaves `out` unchanged if:
/// - `engine` or `out` is null;
/// - a count is below 1;
/// - the width or height of the envelope is not positive and finite.
template <class Real>
ZYN_EXPORT bool rasterize(DelaunayInterface<Real>* engine, const Enve2d& envelope, int cellsX,
                          int cellsY, MatrixDbl* out, double maxEdge = anyEdge);

// Lines and volumes

/// Returns the isolines of the surface as a new array: for each level, in the order given, lines
/// with higher ground on their left. Each line goes on across triangles as far as possible, and a
/// closed one ends with its first point. A NaN level has no line.
///
/// A line separates ground at or above its level from ground below. So:
/// - a flat area at the level is bounded once;
/// - a peak or ridge that only reaches the level has no line;
/// - an edge of the rim at the level, with lower ground beside it, is a line.
template <class Real>
[[nodiscard]] ZYN_EXPORT ref_ptr<Pnt3dArrayArray> contours(DelaunayInterface<Real>* engine,
                                                           const DoubleArray* levels,
                                                           double maxEdge = anyEdge);

/// Volumes and areas between a surface and a horizontal plane.
struct SurfaceVolume {
    double cut = 0;       ///< volume of the ground above the plane
    double fill = 0;      ///< volume between the plane and the ground below it
    double cutArea = 0;   ///< plan area of the ground above the plane
    double fillArea = 0;  ///< plan area of the ground at or below the plane
};

/// Returns cut and fill against the plane z = level, in cubic and square units of the coordinates.
/// It splits triangles that cross the plane. The result is undefined for a level that is not
/// finite.
template <class Real>
[[nodiscard]] ZYN_EXPORT SurfaceVolume volume(DelaunayInterface<Real>* engine, double level,
                                              double maxEdge = anyEdge);

// Files

// A file is written whole or not at all; formats.md lists the exceptions. Each writer returns false
// if the file could not be written, or `engine` is null. Vertices are in the order in which
// triangles first use them.

/// Writes Wavefront OBJ: a line `v x y z` for each vertex, then a line `f a b c` for each triangle,
/// with indices from 1. Coordinates have the digits that restore the same number.
template <class Real>
ZYN_EXPORT bool writeObj(DelaunayInterface<Real>* engine, const char* path,
                         double maxEdge = anyEdge);
/// Normals in a PLY file.
enum class PlyNormals {
    none,    ///< no normals
    vertex,  ///< a normal at each vertex
};

/// Writes PLY 1.0, binary, little-endian: x, y, z of each vertex in the engine's precision, then
/// three indices from 0 for each face. With `normals`, the unit normal nx, ny, nz of each vertex
/// follows its coordinates as float. It is the mean of the normals of its triangles, weighted by
/// area.
template <class Real>
ZYN_EXPORT bool writePly(DelaunayInterface<Real>* engine, const char* path,
                         double maxEdge = anyEdge, PlyNormals normals = PlyNormals::none);
/// The unit of all three coordinates.
enum class LengthUnit {
    metre,         ///< the metre
    foot,          ///< 0.3048 m, the international foot
    usSurveyFoot,  ///< 1200/3937 m
};

/// Writes LandXML 1.2: a `Surface` of that name, with points as northing (y), easting (x) and
/// height, and faces. The file names `unit` as the unit of the coordinates, and holds them
/// unconverted.
/// @{
template <class Real>
ZYN_EXPORT bool writeLandXml(DelaunayInterface<Real>* engine, const char* path, QString name,
                             double maxEdge = anyEdge);
template <class Real>
ZYN_EXPORT bool writeLandXml(DelaunayInterface<Real>* engine, const char* path, QString name,
                             LengthUnit unit, double maxEdge = anyEdge);
/// @}

// Reading by reference

/// Calls the function of the same name for a pointer. If that returns false, heightAt() of a place
/// returns nothing and rasterize() null.
/// @{
template <class Real>
[[nodiscard]] QString validate(const DelaunayInterface<Real>& engine, bool delaunay = false) {
    return validate(detail::readable(engine), delaunay);
}
template <class Real>
[[nodiscard]] std::optional<double> heightAt(const DelaunayInterface<Real>& engine, double x,
                                             double y) {
    double z = 0;
    return heightAt(detail::readable(engine), x, y, z) ? std::optional(z) : std::nullopt;
}
template <class Real>
int heightAt(const DelaunayInterface<Real>& engine, std::span<XPnt3d> points) {
    return heightAt(detail::readable(engine), points);
}
template <class Real>
[[nodiscard]] ref_ptr<Pnt3dArray> profile(const DelaunayInterface<Real>& engine, const XPnt2d& a,
                                          const XPnt2d& b) {
    return profile(detail::readable(engine), a, b);
}
template <class Real>
[[nodiscard]] ref_ptr<MatrixDbl> rasterize(const DelaunayInterface<Real>& engine,
                                           const Enve2d& envelope, int cellsX, int cellsY,
                                           double maxEdge = anyEdge) {
    auto out = make<MatrixDbl>();
    return rasterize(detail::readable(engine), envelope, cellsX, cellsY, out.get(), maxEdge)
               ? out
               : nullptr;
}
template <class Real>
[[nodiscard]] ref_ptr<Pnt3dArrayArray> contours(const DelaunayInterface<Real>& engine,
                                                std::span<const double> levels,
                                                double maxEdge = anyEdge) {
    const auto list = make<DoubleArray>();
    for (const double level : levels) { list->append(level); }
    return contours(detail::readable(engine), list.get(), maxEdge);
}
template <class Real>
[[nodiscard]] SurfaceVolume volume(const DelaunayInterface<Real>& engine, double level,
                                   double maxEdge = anyEdge) {
    return volume(detail::readable(engine), level, maxEdge);
}
template <class Real>
bool writeObj(const DelaunayInterface<Real>& engine, const char* path, double maxEdge = anyEdge) {
    return writeObj(detail::readable(engine), path, maxEdge);
}
template <class Real>
bool writePly(const DelaunayInterface<Real>& engine, const char* path, double maxEdge = anyEdge,
              PlyNormals normals = PlyNormals::none) {
    return writePly(detail::readable(engine), path, maxEdge, normals);
}
template <class Real>
bool writeLandXml(const DelaunayInterface<Real>& engine, const char* path, QString name,
                  LengthUnit unit = LengthUnit::metre, double maxEdge = anyEdge) {
    return writeLandXml(detail::readable(engine), path, name, unit, maxEdge);
}
/// @}

}  // namespace zyn
