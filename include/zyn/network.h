/// @file
/// Surfaces: what a host does with a network beyond the engine's own interface.
///
///     ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0.0, minX, minY, maxX, maxY);
///     addPoints(engine.get(), points.get(), 0.001);
///     double z = 0.0;
///     if (heightAt(engine.get(), x, y, z)) { use(z); }
///     const ref_ptr<Pnt3dArrayArray> lines = contours(engine.get(), levels.get());
///     if (!writePly(engine.get(), "terrain.ply")) { report("terrain.ply could not be written"); }
///
/// Everything here works on engines of either precision and computes in double. The surface is the
/// triangles that are no frame triangles; `maxEdge`, where it is asked for, takes those out of it too
/// whose longest edge in space, in the unit of the coordinates, is longer: all of them below 0, none
/// for a NaN. The surface includes its rim. An engine that is null,
/// or not this library's, has no surface. Where more memory is needed than there is, std::bad_alloc is
/// thrown, and the network is valid. Threads: one at a time, as with the engine itself; several may
/// read one engine while none changes it.
///
/// What only reads takes a reference too, and returns what it finds:
///
///     const std::optional<double> z = heightAt(*engine, x, y);
///     const ref_ptr<Pnt3dArrayArray> lines = contours(*engine, std::array{10.0, 20.0});
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

// Members of a class, since compilers do not agree on the name that a function gets from a condition in
// its signature.
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

// Points in spatial order: neighbours on the ground come close to each other. An engine that gets
// them so finds each within a few steps, in memory that was just used.

/// Sorts the points along a Hilbert curve through their box; points in one cell of the curve keep
/// their order, and a crowded cell is sorted again by its own box. Points that are not finite come
/// last. Takes linear time, once more for every level of crowding within crowding, and memory for a
/// copy of the points. Null is passed over.
/// Source of the curve: Hilbert 1891; of the sort: radix sort from the lowest digit.
/// @{
ZYN_EXPORT void spatialSort(Pnt3dArray* points);
ZYN_EXPORT void spatialSort(Pnt3fArray* points);
/// @}
/// The same order without moving a point: indices from 0. A new array, empty for null.
/// @{
[[nodiscard]] ZYN_EXPORT ref_ptr<IntArray> spatialOrder(const Pnt3dArray* points);
[[nodiscard]] ZYN_EXPORT ref_ptr<IntArray> spatialOrder(const Pnt3fArray* points);
/// @}

/// Inserts all points, in spatial order but where they are: they become vertices, as with addPoint,
/// and must stay. The order that they stand in does not matter for the speed; which one of points
/// within `tolerance` of each other goes in is not said. Gives the number of points that went in; the
/// indices of refused ones are appended to `rejected`, ascending.
///
/// Each point of either precision gets a number in `inten`, whether it goes in or not: the low 16 bits of its index, on
/// from the number of points that the engine was given before, so that exportObj finds it. The progress gets
/// setTotal(number of points) and steps that sum up to it, and is asked isCanceled() before every
/// 1024 points; after a yes the network is valid and holds what went in so far.
///
/// Queries run fastest where the points are in spatial order in memory too: spatialSort() them first.
template <class Real>
ZYN_EXPORT int addPoints(DelaunayInterface<Real>* engine, Pnt3Array<Real>* points,
                         std::type_identity_t<Real> tolerance, IZynProgress* progress = nullptr,
                         IntArray* rejected = nullptr);

// Breaklines. A fixed edge is a pair of vertices, one behind the other in a list of vertices, which
// the host keeps: the network itself remembers none. Insert the points first and the breaklines
// then: addPoint and removePoint know nothing of fixed edges.

/// Makes the polyline part of the network: a vertex for each of its points, which must stay in
/// place as with addPoint, or the vertex that is there already within `tolerance`; and between them
/// edges, or chains of edges where other vertices lie on a segment, by exact arithmetic. Gives the
/// number of edges in the network that it became, each counted once. -1, with nothing changed, for a
/// point that is not finite or outside the network, fewer than two points, a tolerance that is not at
/// least 0, and null. Beside a hole left by deleteTriangle, points in one place, or damage from a file,
/// a segment may stay out. New vertices are numbered as by addPoint, in both this and the next way.
///
/// `fixed` may be null. Its edges stay, except those that a segment crosses: these give way and are taken
/// out, or, with `crossings`, are split by a vertex there, with the height of the edge that was
/// first, whose point is appended to `crossings` and must stay too. Lines bend by the rounding of such
/// a vertex. Edges that a new vertex splits are replaced by their halves, and the edges of the polyline
/// are appended; what comes twice in the list is taken out. When memory runs out, an edge that was
/// about to be replaced may be missing in the list. Takes time for all of `fixed`, so hand many
/// breaklines over in one call.
///
/// With `crossings`, a segment that passes an end of a fixed edge within the tolerance or the rounding
/// of a crossing goes through it, and lines that cross so close to an end of one of them meet there.
/// So lines that overlap share their vertices, and the same lines a second time add none. A segment
/// makes at most one vertex more than twice the number of fixed edges that cross it. Where that is
/// used up and no vertex is near, the edge that it crosses gives way.
/// Sources: the removal of crossing edges by flips, Sloan 1993, in an order that is known to end;
/// iterated snap rounding, Halperin and Packer 2002.
template <class Real>
ZYN_EXPORT int addBreakline(DelaunayInterface<Real>* engine, Pnt3Array<Real>* points,
                            std::type_identity_t<Real> tolerance,
                            VertexArray<Real>* fixed = nullptr,
                            Pnt3Pool<Real>* crossings = nullptr);
/// The same for many polylines in turn; bad ones are left out, and -1 comes back only when all are.
template <class Real>
ZYN_EXPORT int addBreaklines(DelaunayInterface<Real>* engine, Pnt3ArrayArray<Real>* polylines,
                             std::type_identity_t<Real> tolerance,
                             VertexArray<Real>* fixed = nullptr,
                             Pnt3Pool<Real>* crossings = nullptr);
/// Flips every edge that is not locally Delaunay by the exact in-circle test, except those of
/// `fixed`, until none is left: the constrained Delaunay triangulation. Gives the number of flips,
/// held at the largest number; -1, with nothing changed, for null and for a network with a clockwise
/// triangle or a link that is not mutual or leads out of it. Source: Lawson 1977.
template <class Real>
ZYN_EXPORT int restoreDelaunay(DelaunayInterface<Real>* engine,
                               const VertexArray<Real>* fixed = nullptr);

/// Makes the surface the Delaunay triangulation of the vertices alone, with their convex hull as its
/// rim, whatever the frame: the corners of the frame count as infinitely far. Without it, they count as
/// points, which take triangles at the rim. Returns the number of flips, held at the largest number.
///
/// - REQUIRES: inner edges of the surface are Delaunay already, as addPoints and restoreDelaunay
///   leave them. Only the new triangles, and what they make illegal, are looked at.
/// - Edges of `fixed` between triangles of the surface stay. Edges to corners of the frame do not.
/// - Vertices on the hull's edges stay part of the rim. Holes that deleteTriangle made in the surface
///   stay. Points in one place keep triangles of no area, and may leave the rim open there.
/// - Without three vertices off one line there is no surface, and nothing to do.
/// - addPoint, removePoint and restoreDelaunay go on as before and may open the rim: call it again.
///
/// Returns -1 and changes nothing if:
/// - `engine` is null or of another maker;
/// - a frame triangle is missing;
/// - the links of a frame triangle are damaged.
///
/// If allocation fails, throws std::bad_alloc. The network is then valid, but may need
/// restoreDelaunay before the next call. Takes time for the rim and the flips, and for a walk to the
/// frame. Sources: the scan of the rim, Graham 1972; the flips, Lawson 1977.
template <class Real>
ZYN_EXPORT int closeHull(DelaunayInterface<Real>* engine, const VertexArray<Real>* fixed = nullptr);

/// The first broken invariant as a sentence, with the triangle's number in pool order but for an
/// engine that is empty or null; a null string when the network is sound. Sound is, in the order of the
/// tests: every triangle counter-clockwise by exact arithmetic, or of no area, but that only on the
/// rim or in a network with points in one place; links mutual, across the same edge, and with `delaunay`
/// no edge that fails the exact in-circle test; every connected part a disc with a convex rim that goes
/// round once. Edges of frame triangles may also be legal as closeHull leaves them: all of them are if
/// the rim of the surface turns inwards nowhere.
template <class Real>
[[nodiscard]] ZYN_EXPORT QString validate(DelaunayInterface<Real>* engine, bool delaunay = false);

// Heights

/// The height of the surface at (x, y), by the plane of the triangle there. False, with `z` as it
/// was, outside the surface. Walks from the newest triangle; behind a hole that deleteTriangle left,
/// the walk may not come through. Beside points in one place, of different heights, either counts.
template <class Real>
ZYN_EXPORT bool heightAt(DelaunayInterface<Real>* engine, double x, double y, double& z);
/// Sets the z of every point to the height of the surface there, NaN outside, and returns the number
/// of heights. Walks from point to point: have them in spatial order. REQUIRES: at most 2147483647
/// points.
/// @{
template <class Real>
ZYN_EXPORT int heightAt(DelaunayInterface<Real>* engine, Pnt3dArray* points);
template <class Real>
ZYN_EXPORT int heightAt(DelaunayInterface<Real>* engine, std::span<XPnt3d> points);
/// @}
/// The surface along the straight line from a to b: a new array with a point at both ends and one at
/// every edge crossed, in order. Where the line leaves the surface and comes back, a point
/// whose z is NaN, at the place where it comes back, stands between the parts; a part may be a single
/// point. Along the edge of a hole that deleteTriangle left, with the hole on the right, the line is off
/// the surface. Empty where there is no surface. A line that leaves the network takes time for all its
/// triangles.
template <class Real>
[[nodiscard]] ZYN_EXPORT ref_ptr<Pnt3dArray> profile(DelaunayInterface<Real>* engine,
                                                     const XPnt2d& a, const XPnt2d& b);
/// Heights at the centres of cellsX by cellsY cells that fill the envelope: `out` gets cellsY rows
/// of cellsX columns, the first row at minY, the first column at minX, and NaN outside the surface.
/// False, with `out` as it was, for null, a count below 1, or an envelope whose width or height is not
/// above 0 and finite.
template <class Real>
ZYN_EXPORT bool rasterize(DelaunayInterface<Real>* engine, const Enve2d& envelope, int cellsX,
                          int cellsY, MatrixDbl* out, double maxEdge = anyEdge);

// Lines and volumes

/// The isolines of the surface: for each level, in the order given, lines whose points have its
/// height, higher ground on their left. Each is joined across triangles as far as it goes; closed
/// ones end with their first point. A line separates the ground at or above its level from the
/// ground below: a flat area at the level is bounded once, a peak or ridge that only reaches it
/// gives none, an edge of the rim at the level with ground below beside it gives one. A NaN gives none.
template <class Real>
[[nodiscard]] ZYN_EXPORT ref_ptr<Pnt3dArrayArray> contours(DelaunayInterface<Real>* engine,
                                                           const DoubleArray* levels,
                                                           double maxEdge = anyEdge);

/// Between a surface and a horizontal plane.
struct SurfaceVolume {
    double cut = 0;       ///< volume of the ground above the plane
    double fill = 0;      ///< volume between the plane and the ground below it
    double cutArea = 0;   ///< area in plan of the ground above
    double fillArea = 0;  ///< and of the ground at the plane's height or below
};

/// Cut and fill against the plane z = level, a triangle that crosses it split. In cubic and square
/// units of the coordinates; without meaning for a level that is not finite.
template <class Real>
[[nodiscard]] ZYN_EXPORT SurfaceVolume volume(DelaunayInterface<Real>* engine, double level,
                                              double maxEdge = anyEdge);

// Files. Each appears whole or not at all; formats.md lists the exceptions. Each writer returns
// false if anything could not be written, and for null. Vertices come in the order of first
// appearance.

/// Wavefront OBJ: a line `v x y z` a vertex, each coordinate with the digits that bring back the
/// same number; then a line `f a b c` a triangle, counting vertices from 1.
template <class Real>
ZYN_EXPORT bool writeObj(DelaunayInterface<Real>* engine, const char* path,
                         double maxEdge = anyEdge);
/// Normals in a PLY file.
enum class PlyNormals {
    none,    ///< nothing
    vertex,  ///< one at each vertex
};

/// PLY 1.0, binary, little-endian: vertices x, y, z in the engine's precision, and, when asked for,
/// their unit normals nx, ny, nz as float, the mean of the triangles' weighted by area; then faces of
/// three indices from 0.
template <class Real>
ZYN_EXPORT bool writePly(DelaunayInterface<Real>* engine, const char* path,
                         double maxEdge = anyEdge, PlyNormals normals = PlyNormals::none);
/// The unit of coordinates, all three.
enum class LengthUnit {
    metre,         ///< the metre
    foot,          ///< 0.3048 m, the international foot
    usSurveyFoot,  ///< 1200/3937 m
};

/// Writes LandXML 1.2: a `Surface` of that name, with points as northing (y), easting (x) and height,
/// and faces. The file says that the coordinates are in `unit`, metres by default, and holds them as
/// they are.
/// @{
template <class Real>
ZYN_EXPORT bool writeLandXml(DelaunayInterface<Real>* engine, const char* path, QString name,
                             double maxEdge = anyEdge);
template <class Real>
ZYN_EXPORT bool writeLandXml(DelaunayInterface<Real>* engine, const char* path, QString name,
                             LengthUnit unit, double maxEdge = anyEdge);
/// @}

// Reading by reference

/// Returns what the function of that name writes or returns for a pointer. heightAt() of a place
/// returns nothing, and rasterize() null, where that function returns false.
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
