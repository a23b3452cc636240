/// @file
/// Surfaces: points in, a terrain surface out.
///
/// A Surface is the exact Delaunay triangulation of its points in the plane, bounded by their convex
/// hull, with breaklines as constrained edges. Between the vertices the height is linear.
///
///     Surface ground(points, {.tolerance = 0.001, .heights = Heights::lowest});
///     const BreaklineReport lines = ground.addBreaklines(roads);
///     if (const std::optional<double> z = ground.heightAt(x, y)) { use(*z); }
///     for (const SurfaceTriangle& t : ground.triangles()) { area += t.area(); }
///     const std::vector<Polyline> isolines = ground.contours({10, 20, 30});
///     ground.writePly("ground.ply");
///
/// Ownership: a surface owns its points and everything else; nothing that goes in has to stay, and
/// what comes out is a value. A view and the ranges of it are valid while the surface lives.
/// Threads: any number of threads may call const operations at once. They move no cursor, so that loops
/// nest. What changes a surface needs it for itself, and ends loops over it.
/// Errors: std::invalid_argument, with the value in the text, for arguments that make no sense;
/// std::system_error for files; std::bad_alloc. Points that are not finite are refused and counted.
/// A change that std::bad_alloc or a progress that throws has ended leaves a sound surface, with a part
/// of the change: points may be missing or have their first height, and breaklines may lack pieces.
///
/// A point is a vertex number, its place in the order in which points came: those of the constructor
/// from 0, then those of each call in turn, the points of lines and the vertices at crossings included.
/// A point that was refused has a number too: vertexOf() leads to the vertex in its place.
///
/// Programs that hold an engine of their own find the same operations in network.h.
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
struct SurfaceState;

/// A line in space, from point to point. A closed one ends with its first point.
using Polyline = std::vector<XPnt3d>;

/// The height of a vertex where points fall together.
enum class Heights {
    first,      ///< that of the first one, in the order of the input
    last,       ///< that of the last one
    lowest,     ///< the lowest one
    highest,    ///< the highest one
    mean,       ///< the mean of all points there
    breakline,  ///< that of the last breakline there, and before that of the first point
};

/// How points become a surface.
struct SurfaceOptions {
    double tolerance = 0;              ///< points this close in x and y fall together; 0 or more
    Heights heights = Heights::first;  ///< where they do
    double maxEdge = anyEdge;          ///< see Surface::setMaxEdge
    IZynProgress* progress = nullptr;  ///< asked and told on the calling thread only
};

/// How breaklines become edges.
struct BreaklineOptions {
    double tolerance = 0;                  ///< as for points, to vertices that are there
    Heights heights = Heights::breakline;  ///< where a point of a line falls on a vertex
    bool soft = false;     ///< takes all heights from the surface, as it was; vertices keep theirs
    bool giveWay = false;  ///< edges of earlier lines go where a later one crosses them
};

/// What became of points.
struct PointReport {
    int first = 0;      ///< vertex number of the first of them
    int vertices = 0;   ///< how many became vertices
    int refused = 0;    ///< how many fell on a vertex
    int notFinite = 0;  ///< how many have a coordinate that is not finite, or x or y beyond 1e90
    int skipped = 0;    ///< how many were left when the progress asked for an end
};

/// What became of breaklines.
struct BreaklineReport {
    int edges = 0;             ///< edges of the network that are pieces of these lines
    int vertices = 0;          ///< points of the lines that became vertices
    int crossings = 0;         ///< further vertices, where lines cross
    int refused = 0;           ///< points of the lines that fell on a vertex
    int lost = 0;              ///< edges of this and of earlier lines that gave way
    std::vector<int> leftOut;  ///< indices of lines with a point that is not finite, or no length
};

/// A broken invariant of a network, see Surface::validate.
struct NetworkFault {
    enum class Kind { shape, link, delaunay, rim };
    Kind kind;     ///< of the test that failed
    int triangle;  ///< its number in the network, frame triangles included; -1 for no single one
    std::string text;  ///< the fault as a sentence
};

/// Heights on a grid.
struct Raster {
    Enve2d envelope;            ///< what the cells fill
    int columns = 0, rows = 0;  ///< their numbers along x and y
    std::vector<double>
        values;  ///< row by row, the first at minY, from minX on; NaN off the surface
};

/// A triangle of a surface, a value.
class ZYN_EXPORT SurfaceTriangle {
public:
    /// Returns corner `i`, one of 0, 1, 2, counter-clockwise seen from above: its place, and its vertex
    /// number. Throws std::invalid_argument for another `i`, as all of these do.
    /// @{
    [[nodiscard]] XPnt3d corner(int i) const;
    [[nodiscard]] int vertex(int i) const;
    /// @}
    /// Returns the triangle across the edge opposite corner `i`, if the view has one there.
    [[nodiscard]] std::optional<SurfaceTriangle> neighbor(int i) const;
    /// Returns whether the edge opposite corner `i` is a piece of a breakline.
    [[nodiscard]] bool isBreakline(int i) const;
    /// Returns the area in space.
    [[nodiscard]] double area() const;
    /// Returns the area of the projection to the plane.
    [[nodiscard]] double planArea() const;
    /// Returns the normal, of length 1, upwards.
    [[nodiscard]] XPnt3d normal() const;

    /// Whether both are the same triangle.
    friend bool operator==(const SurfaceTriangle& a, const SurfaceTriangle& b) noexcept {
        return a.record == b.record;
    }

private:
    friend class SurfaceView;
    friend class SurfaceTriangleIterator;
    SurfaceTriangle() = default;
    SurfaceTriangle(const SurfaceState* state_, double maxEdge_, const tind* record_) noexcept
        : state(state_), maxEdge(maxEdge_), record(record_) {}

    const SurfaceState* state = nullptr;
    double maxEdge = anyEdge;
    const tind* record = nullptr;
};

/// Goes over the triangles of a view.
class ZYN_EXPORT SurfaceTriangleIterator {
public:
    /// What standard algorithms ask for.
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
        SurfaceTriangleIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const SurfaceTriangleIterator& a,
                           const SurfaceTriangleIterator& b) noexcept {
        return a.current == b.current;
    }
    /// @}

private:
    friend class SurfaceView;
    const SurfaceState* state = nullptr;
    double maxEdge = anyEdge;
    SurfaceTriangle current;  // without a record behind the last one
    std::size_t next = 0;     // number of the record to look at
};

/// What a surface answers: all of it, or what is left without triangles that have a long edge. Copies
/// are cheap. A view is valid while the surface lives, also when that is moved.
class ZYN_EXPORT SurfaceView {
public:
    /// A view of no surface, without triangles.
    SurfaceView() = default;
    /// Returns a view of the triangles whose edges have at most this length in space; `anyEdge` for
    /// all. Throws std::invalid_argument for NaN.
    [[nodiscard]] SurfaceView withMaxEdge(double length) const;

    // Parts

    /// Returns the range of the triangles.
    [[nodiscard]] auto triangles() const {
        return std::ranges::subrange(firstTriangle(), SurfaceTriangleIterator());
    }
    /// Returns the number of triangles.
    [[nodiscard]] int triangleCount() const;
    /// Returns the vertex numbers of all vertices, ascending, those without a triangle included.
    [[nodiscard]] std::vector<int> vertices() const;
    /// Returns the edges of the triangles as pairs of vertex numbers, each once.
    [[nodiscard]] std::vector<std::array<int, 2>> edges() const;
    /// Returns the edges that breaklines are made of, as pairs of vertex numbers.
    [[nodiscard]] std::vector<std::array<int, 2>> breaklineEdges() const;
    /// Returns the outlines as lists of vertex numbers: outer ones counter-clockwise, those of gaps
    /// clockwise. Without `maxEdge` that is the convex hull, with all vertices on it.
    [[nodiscard]] std::vector<std::vector<int>> rim() const;
    /// Returns the triangle that holds (x, y), on an edge either one.
    [[nodiscard]] std::optional<SurfaceTriangle> triangleAt(double x, double y) const;

    // Measures

    /// Returns the sum of the areas in space.
    [[nodiscard]] double area() const;
    /// Returns the sum of the areas in the plane.
    [[nodiscard]] double planArea() const;
    /// Returns the bounds of the triangles; an invalid box if there is none.
    [[nodiscard]] Enve3d bounds() const;
    /// Returns cut and fill against the plane z = level.
    [[nodiscard]] SurfaceVolume volume(double level) const;

    // Heights

    /// Returns the height at (x, y); nothing off the surface. At a vertex it is the vertex's own.
    [[nodiscard]] std::optional<double> heightAt(double x, double y) const;
    /// Sets the z of every point to the height there, NaN off the surface, and returns the number of
    /// heights. Points in spatial order are found fastest.
    int heightsAt(std::span<XPnt3d> points) const;
    /// Returns the surface along the straight line from a to b; see profile() of network.h.
    [[nodiscard]] Polyline profile(const XPnt2d& a, const XPnt2d& b) const;
    /// Returns the heights at the centres of columns x rows cells that fill the envelope. Throws
    /// std::invalid_argument for counts below 1 and for an envelope without area.
    [[nodiscard]] Raster rasterize(const Enve2d& envelope, int columns, int rows) const;
    /// Returns the isolines, level by level, higher ground on their left; see contours() of network.h.
    [[nodiscard]] std::vector<Polyline> contours(std::span<const double> levels) const;
    [[nodiscard]] std::vector<Polyline> contours(std::initializer_list<double> levels) const {
        return contours(std::span(levels.begin(), levels.size()));
    }

    // Files; see network.h for their forms. Each appears whole or not at all, and throws
    // std::system_error with the path if it cannot be written.

    /// Writes a file of its form.
    /// @{
    void writeObj(const std::string& path) const;
    void writePly(const std::string& path, PlyNormals normals = PlyNormals::none) const;
    void writeLandXml(const std::string& path, const QString& name) const;
    /// @}

protected:
    const SurfaceState* state = nullptr;
    double maxEdge = anyEdge;

private:
    [[nodiscard]] SurfaceTriangleIterator firstTriangle() const;
};

/// A surface that owns its points. A surface that was moved from is empty, like a new one.
class ZYN_EXPORT Surface : public SurfaceView {
public:
    /// A surface without points.
    Surface();
    /// A surface of these points: copied, or moved in with their vector. Throws std::invalid_argument
    /// for a tolerance that is not 0 or more, and for a `maxEdge` that is NaN.
    /// @{
    explicit Surface(std::span<const XPnt3d> points, const SurfaceOptions& options = {});
    explicit Surface(std::vector<XPnt3d>&& points, const SurfaceOptions& options = {});
    explicit Surface(const Pnt3dArray& points, const SurfaceOptions& options = {});
    /// @}
    Surface(Surface&& other) noexcept;
    Surface& operator=(Surface&& other) noexcept;
    ~Surface();

    /// Adds points; breaklines stay. Where one falls on a vertex, its height counts as the options of
    /// the constructor say.
    PointReport addPoints(std::span<const XPnt3d> points, IZynProgress* progress = nullptr);
    /// Removes a vertex by its number. Returns false, with nothing changed, if there is no such vertex
    /// or a breakline goes through it.
    bool removePoint(int number);
    /// Makes polylines edges of the surface, in turn. Lines that cross meet in a new vertex with the
    /// height of the earlier line; see addBreakline() of network.h. Throws std::invalid_argument for a
    /// tolerance that is not 0 or more.
    BreaklineReport addBreaklines(std::span<const Polyline> lines,
                                  const BreaklineOptions& options = {});
    /// Lets every query leave out triangles with a longer edge in space; `anyEdge` for none. Throws
    /// std::invalid_argument for NaN.
    void setMaxEdge(double length);

    /// Returns what became of the points of the constructor.
    [[nodiscard]] PointReport pointReport() const;
    /// Returns the number of points that came so far, one above the highest vertex number.
    [[nodiscard]] int pointCount() const;
    /// Returns the number of vertices.
    [[nodiscard]] int vertexCount() const;
    /// Returns a point by its number, a vertex with its height. Throws std::invalid_argument.
    [[nodiscard]] XPnt3d point(int number) const;
    /// Returns the number of the vertex that the point became or fell on; nothing if it was refused for
    /// what it is or has been removed. Throws std::invalid_argument for a number without a point.
    [[nodiscard]] std::optional<int> vertexOf(int number) const;

    /// Returns the first broken invariant: every triangle counter-clockwise, links mutual, every edge
    /// that is no breakline Delaunay, a convex hull. There is none unless the library has a fault.
    [[nodiscard]] std::optional<NetworkFault> validate() const;

private:
    SurfaceState& changeable();

    std::unique_ptr<SurfaceState> own;
};

}  // namespace zyn
