/// @file
/// Terrain surfaces: points in, a surface out.
///
/// A Surface is the exact Delaunay triangulation of its points in the plane, out to their convex
/// hull, with breaklines as constrained edges. Between the vertices the height is linear.
///
///     Surface ground(points, {.tolerance = 0.001, .heights = Heights::lowest});
///     const BreaklineReport lines = ground.addBreaklines(roads);
///     if (const std::optional<double> z = ground.heightAt(x, y)) { use(*z); }
///     for (const SurfaceTriangle& t : ground.triangles()) { area += t.area(); }
///     const std::vector<Polyline> isolines = ground.contours({10, 20, 30});
///     ground.writePly("ground.ply");
///
/// Numbers: every point has a number, which counts up from 0 in the order of input. The points of
/// breaklines and the vertices at crossings continue the count. A vertex has the number of its
/// point. No number is used twice, not even after removePoint().
///
/// Refused points: a point that is too close to a vertex has a number, but no vertex of its own.
/// vertexOf() returns the number of that vertex.
///
/// Ownership: a surface owns its points, and its results are values. A view is valid as long as the
/// surface, and its triangles and ranges until the surface changes.
///
/// Threads: any number of threads may call const operations at once. An operation that changes the
/// surface must run alone.
///
/// Errors: bad arguments throw std::invalid_argument, and files that cannot be written throw
/// std::system_error. Points that are not finite are left out and counted. If allocation fails or a
/// progress throws, the exception leaves a sound surface with a part of the change. Points and
/// pieces of breaklines may then be missing, and vertices may have the height of their first point.
///
/// network.h has the same operations for programs that hold an engine.
#pragma once

#include <zyn/array.h>
#include <zyn/envelope.h>
#include <zyn/export.h>
#include <zyn/network.h>
#include <zyn/point.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <vector>

namespace zyn {

class SurfaceView;
/// @cond
namespace detail {
struct SurfaceState;
}
/// @endcond

/// A line in space, from point to point. A closed one ends with its first point.
using Polyline = std::vector<XPnt3d>;

/// The height of a vertex at which other points were refused.
enum class Heights {
    first,      ///< the height of the first point, in the order of input
    last,       ///< the height of the last point
    lowest,     ///< the lowest height
    highest,    ///< the highest height
    mean,       ///< the mean of all heights
    breakline,  ///< the height of the last breakline there; without one, that of the first point
};

/// How points become a surface.
struct SurfaceOptions {
    /// A point is refused if its x and its y both differ by at most this from those of a corner of
    /// the triangle that contains it. With 0, only a point in exactly the same place is refused.
    double tolerance = 0;
    Heights heights = Heights::first;  ///< the height of a vertex at which points were refused
    double maxEdge = anyEdge;          ///< see Surface::setMaxEdge
    IZynProgress* progress = nullptr;  ///< called by the constructor, on its thread; may be null
};

/// How breaklines become edges.
struct BreaklineOptions {
    double tolerance = 0;  ///< as for points; a crossing this close to a vertex uses it
    Heights heights = Heights::breakline;  ///< the height of a vertex that refuses a line's point
    /// Sets the height of each point of the lines to that of the surface before the call, and keeps
    /// the heights of vertices. A point off the surface keeps its own height. Between its points a
    /// line is straight.
    bool soft = false;
    /// Drops an edge of an earlier line if a later line crosses it, instead of making a vertex.
    bool giveWay = false;
};

/// What became of points.
struct PointReport {
    int first = 0;      ///< the number of the first of the points
    int vertices = 0;   ///< how many became vertices
    int refused = 0;    ///< how many are too close to a vertex
    int notFinite = 0;  ///< how many have a coordinate that is not finite, or x or y beyond 1e90
    int skipped = 0;    ///< how many were not tried because the progress was canceled
};

/// What became of breaklines.
struct BreaklineReport {
    int edges = 0;             ///< edges of the network that are pieces of these lines
    int vertices = 0;          ///< points of the lines that became vertices
    int crossings = 0;         ///< vertices that were made where lines cross
    int refused = 0;           ///< points of the lines that are too close to a vertex
    int lost = 0;              ///< edges of these and earlier lines that were dropped or not made
    std::vector<int> leftOut;  ///< indices of lines with a point that is not finite, or no length
};

/// A broken invariant of a network, see Surface::validate.
struct NetworkFault {
    /// The test that failed.
    enum class Kind {
        shape,     ///< a triangle by itself: its corners, its winding, its area
        link,      ///< the links between a triangle and a neighbour
        delaunay,  ///< the in-circle test of an edge that is not constrained
        rim,       ///< the outer boundary of the network, or the hull of the surface
    };
    Kind kind;         ///< the test that failed
    int triangle;      ///< its index, frame triangles included; -1 if no triangle is at fault
    std::string text;  ///< the fault as a sentence
};

/// Heights in rows of cells. The first row is the one at minY; each row begins at minX. The height
/// of a cell is values[row * columns + column].
struct Raster {
    Enve2d envelope;             ///< the area that the cells fill
    int columns = 0;             ///< the number of cells along x
    int rows = 0;                ///< the number of cells along y
    std::vector<double> values;  ///< the heights at the centres of the cells; NaN off the surface
};

/// A triangle of a surface. Its corners 0, 1 and 2 are counter-clockwise, seen from above. Edge `i`
/// is the one opposite corner `i`. Any other `i` throws std::invalid_argument.
class ZYN_EXPORT SurfaceTriangle {
public:
    /// Returns corner `i`.
    [[nodiscard]] XPnt3d corner(int i) const;
    /// Returns the number of the vertex at corner `i`.
    [[nodiscard]] int vertex(int i) const;
    /// Returns the triangle across edge `i`, or nothing if the view has none there.
    [[nodiscard]] std::optional<SurfaceTriangle> neighbor(int i) const;
    /// Returns whether edge `i` is a piece of a breakline.
    [[nodiscard]] bool isBreakline(int i) const;
    /// Returns the area in space.
    [[nodiscard]] double area() const;
    /// Returns the area of the projection to the plane.
    [[nodiscard]] double planArea() const;
    /// Returns the upward normal of length 1; (0, 0, 1) if rounding leaves no direction.
    [[nodiscard]] XPnt3d normal() const;

    /// Returns whether both are the same triangle.
    friend bool operator==(const SurfaceTriangle& a, const SurfaceTriangle& b) noexcept {
        return a.record == b.record;
    }

private:
    friend class SurfaceView;
    friend class SurfaceTriangleIterator;
    SurfaceTriangle() = default;
    SurfaceTriangle(const detail::SurfaceState* state_, double maxEdge_,
                    const tind* record_) noexcept
        : state(state_), maxEdge(maxEdge_), record(record_) {}

    const detail::SurfaceState* state = nullptr;
    double maxEdge = anyEdge;
    const tind* record = nullptr;
};

/// A forward iterator over the triangles of a view.
class ZYN_EXPORT SurfaceTriangleIterator {
public:
    /// These are the members of a standard forward iterator.
    /// @{
    using value_type = SurfaceTriangle;
    using difference_type = std::ptrdiff_t;
    using reference = SurfaceTriangle;
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::forward_iterator_tag;
    SurfaceTriangleIterator() = default;
    SurfaceTriangle operator*() const noexcept { return current; }
    SurfaceTriangleIterator& operator++();
    SurfaceTriangleIterator operator++(int) {
        SurfaceTriangleIterator old = *this;
        ++*this;
        return old;
    }
    friend bool operator==(const SurfaceTriangleIterator& a,
                           const SurfaceTriangleIterator& b) noexcept {
        return a.current == b.current;
    }
    /// @}

private:
    friend class SurfaceView;
    const detail::SurfaceState* state = nullptr;
    double maxEdge = anyEdge;
    SurfaceTriangle current;  // without a record behind the last one
    std::size_t next = 0;     // number of the record to look at
};

/// The triangles of a view, for loops and the algorithms of std::ranges.
class SurfaceTriangleRange {
public:
    /// Returns an iterator to the first triangle.
    [[nodiscard]] SurfaceTriangleIterator begin() const noexcept { return first; }
    /// Returns the end.
    [[nodiscard]] SurfaceTriangleIterator end() const noexcept { return {}; }
    /// Returns whether there is no triangle.
    [[nodiscard]] bool empty() const noexcept { return begin() == end(); }
    /// Returns the first triangle. REQUIRES: there is one.
    [[nodiscard]] SurfaceTriangle front() const noexcept { return *first; }

private:
    friend class SurfaceView;
    explicit SurfaceTriangleRange(const SurfaceTriangleIterator& first_) noexcept : first(first_) {}

    SurfaceTriangleIterator first;
};

/// The queries on a surface, limited to triangles without a long edge. A view is cheap to copy. It
/// stays valid when the surface is moved.
class ZYN_EXPORT SurfaceView {
public:
    /// Makes a view without triangles.
    SurfaceView() = default;
    /// Returns a view of the triangles whose edges have at most this length in space; `anyEdge`
    /// keeps all triangles. Throws std::invalid_argument for NaN.
    [[nodiscard]] SurfaceView withMaxEdge(double length) const;

    // Triangles, edges and vertices

    /// Returns the range of the triangles.
    [[nodiscard]] SurfaceTriangleRange triangles() const {
        return SurfaceTriangleRange(firstTriangle());
    }
    /// Returns the number of triangles.
    [[nodiscard]] int triangleCount() const;
    /// Returns the numbers of all vertices, ascending, whatever the limit of edges.
    [[nodiscard]] std::vector<int> vertices() const;
    /// Returns the edges of the triangles as pairs of vertex numbers, each edge once.
    [[nodiscard]] std::vector<std::array<int, 2>> edges() const;
    /// Returns the pieces of breaklines as pairs of vertex numbers. With a limit of edges, returns
    /// only those that are edges of the triangles.
    [[nodiscard]] std::vector<std::array<int, 2>> breaklineEdges() const;
    /// Returns the rim: the closed outlines of the surface as lists of vertex numbers. Outer ones
    /// are counter-clockwise, those of gaps clockwise. Without a limit of edges there is one
    /// outline: the convex hull, with all vertices on it.
    [[nodiscard]] std::vector<std::vector<int>> rim() const;
    /// Returns the triangle that contains (x, y), or nothing off the surface. On an edge or a
    /// vertex it is one of the triangles there.
    [[nodiscard]] std::optional<SurfaceTriangle> triangleAt(double x, double y) const;

    // Measures

    /// Returns the area in space.
    [[nodiscard]] double area() const;
    /// Returns the area of the projection to the plane.
    [[nodiscard]] double planArea() const;
    /// Returns the bounding box of the triangles, an invalid one without triangles.
    [[nodiscard]] Enve3d bounds() const;
    /// Returns cut and fill against the plane z = level; see volume() of network.h.
    [[nodiscard]] SurfaceVolume volume(double level) const;

    // Heights

    /// Returns the height at (x, y), or nothing off the surface. At a vertex it is exactly the
    /// height of the vertex. Takes 1 to 2 us for a random place among a million points.
    [[nodiscard]] std::optional<double> heightAt(double x, double y) const;
    /// Sets the z of each point to the height there, or to NaN off the surface. Returns the number
    /// of heights. Takes a fraction of the time of heightAt() per point, least if consecutive
    /// points are close to each other. REQUIRES: at most 2147483647 points.
    int heightsAt(std::span<XPnt3d> points) const;
    /// Returns the surface along the straight line from a to b; see profile() of network.h.
    [[nodiscard]] Polyline profile(const XPnt2d& a, const XPnt2d& b) const;
    /// Returns the heights at the centres of columns x rows cells that fill the envelope. Throws
    /// std::invalid_argument if:
    /// - `columns` or `rows` is below 1, or their product is beyond what a vector can hold;
    /// - the envelope has no area.
    [[nodiscard]] Raster rasterize(const Enve2d& envelope, int columns, int rows) const;
    /// Returns the isolines, level by level, with higher ground on their left; see contours() of
    /// network.h.
    /// @{
    [[nodiscard]] std::vector<Polyline> contours(std::span<const double> levels) const;
    [[nodiscard]] std::vector<Polyline> contours(std::initializer_list<double> levels) const {
        return contours(std::span(levels.begin(), levels.size()));
    }
    /// @}

    // Files

    /// Writes the triangles to a file; see the writers of network.h for the formats. If that fails,
    /// throws std::system_error with the path, and leaves no part of the file.
    /// @{
    void writeObj(const std::string& path) const;
    void writePly(const std::string& path, PlyNormals normals = PlyNormals::none) const;
    void writeLandXml(const std::string& path, const QString& name,
                      LengthUnit unit = LengthUnit::metre) const;
    /// @}
    /// Writes the whole network with its frame, whatever the limit of edges, as writeBinary() of
    /// delaunay.h does. Fails like the other writers.
    void writeNetwork(const std::string& path) const;

private:
    friend class Surface;
    [[nodiscard]] SurfaceTriangleIterator firstTriangle() const;

    const detail::SurfaceState* state = nullptr;
    double maxEdge = anyEdge;
};

/// A surface that owns its points. A moved-from surface is empty, and can be used again with
/// default options.
class ZYN_EXPORT Surface : public SurfaceView {
public:
    /// Makes a surface without points.
    Surface();
    /// Makes a surface without points, with these options for the points that addPoints() adds.
    /// Throws like the constructors below.
    explicit Surface(const SurfaceOptions& options);
    /// Makes a surface of points, which are copied or moved in. Throws std::invalid_argument if the
    /// tolerance is negative or NaN, or `maxEdge` is NaN.
    /// @{
    explicit Surface(std::span<const XPnt3d> points, const SurfaceOptions& options = {});
    explicit Surface(std::vector<XPnt3d>&& points, const SurfaceOptions& options = {});
    explicit Surface(const Pnt3dArray& points, const SurfaceOptions& options = {});
    explicit Surface(std::initializer_list<XPnt3d> points, const SurfaceOptions& options = {});
    /// @}
    /// Takes everything from `other`. Views of `other` become views of this surface.
    /// @{
    Surface(Surface&& other) noexcept;
    Surface& operator=(Surface&& other) noexcept;
    /// @}
    ~Surface();

    // Changes

    // Inside the hull, the time of a change depends on what it changes. At the hull, it also takes
    // time for all vertices on the hull.

    /// Adds points, with the tolerance and the heights of the constructor's options. Breaklines
    /// stay.
    /// @{
    PointReport addPoints(std::span<const XPnt3d> points, IZynProgress* progress = nullptr);
    PointReport addPoints(std::initializer_list<XPnt3d> points) {
        return addPoints(std::span(points.begin(), points.size()));
    }
    /// @}
    /// Removes a vertex, which may be on the hull. Returns false and changes nothing if no vertex
    /// has this number, or if an edge of a breakline ends there.
    bool removePoint(int number);
    /// Makes polylines edges of the surface, one after the other. Where lines cross, they share a
    /// new vertex, with the height of the earlier line; see addBreakline() of network.h. Throws
    /// std::invalid_argument if the tolerance is negative or NaN.
    BreaklineReport addBreaklines(std::span<const Polyline> lines,
                                  const BreaklineOptions& options = {});
    /// Limits every query to triangles whose edges have at most this length in space; `anyEdge`
    /// lifts the limit. Throws std::invalid_argument for NaN.
    void setMaxEdge(double length);

    // Points

    /// Returns what became of the points of the constructor.
    [[nodiscard]] PointReport pointReport() const;
    /// Returns the number of points so far, which is one above the highest number of a point.
    [[nodiscard]] int pointCount() const;
    /// Returns the number of vertices.
    [[nodiscard]] int vertexCount() const;
    /// Returns the point of this number. The z of a vertex is the height that the option `heights`
    /// chose. Throws std::invalid_argument if no point has this number.
    [[nodiscard]] XPnt3d point(int number) const;
    /// Returns the number of the vertex of a point: its own number, or for a refused point that of
    /// the vertex it was too close to. Returns nothing if the point was not finite or skipped, or
    /// if the vertex was removed. Throws std::invalid_argument if no point has this number.
    [[nodiscard]] std::optional<int> vertexOf(int number) const;

    /// Returns nothing for a sound surface, otherwise the first broken invariant, which is a fault
    /// of the library. It checks that:
    /// - every triangle is counter-clockwise;
    /// - the links between neighbours are mutual;
    /// - every edge that is not constrained is Delaunay;
    /// - the rim is the convex hull.
    [[nodiscard]] std::optional<NetworkFault> validate() const;

    /// Works as for a view. Does not compile for a temporary surface, which would end before the
    /// result is used.
    /// @{
    [[nodiscard]] SurfaceTriangleRange triangles() const& { return SurfaceView::triangles(); }
    SurfaceTriangleRange triangles() && = delete;
    [[nodiscard]] SurfaceView withMaxEdge(double length) const& {
        return SurfaceView::withMaxEdge(length);
    }
    SurfaceView withMaxEdge(double length) && = delete;
    /// @}

private:
    detail::SurfaceState& changeable();

    std::unique_ptr<detail::SurfaceState> own;
};

}  // namespace zyn

/// @cond
template <>
inline constexpr bool std::ranges::enable_view<zyn::SurfaceTriangleRange> = true;
template <>
inline constexpr bool std::ranges::enable_borrowed_range<zyn::SurfaceTriangleRange> = true;
/// @endcond
