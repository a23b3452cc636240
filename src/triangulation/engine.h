// The Delaunay engine of both precisions: an incremental triangulation by walk, split and flips.
//
// The walks and flips of the records (tin.h) are plain arithmetic, which alone would neither end nor
// keep its invariants on every input. The engine guards them: where rounding leaves a decision open,
// exact predicates decide it; where it does not, the guards change nothing.
//
// A point's way in: engine_insert.inl. The other operations: engine_enforce.inl, engine_remove.inl,
// engine_query.inl; files: tin_file.inl. engine.cpp makes the engines of them.
#pragma once

#include <zyn/delaunay.h>

#include "triangulation/fixed_edges.h"
#include "triangulation/passes.h"
#include "triangulation/predicates.h"
#include "triangulation/triangle_pool.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <unordered_set>
#include <vector>

namespace zyn::detail {

template <class Real>
class DelaunayEngine
    : public TrianglePool<Real>,
      public std::conditional_t<std::same_as<Real, double>, IZynDelaunayD, IZynDelaunay> {
public:
    using Pool = TrianglePool<Real>;
    using Tri = TinRecord<Real>;
    using Pnt = XPnt3<Real>;

    static constexpr bool isDouble = std::same_as<Real, double>;

    DelaunayEngine(Real z, Real minX, Real minY, Real maxX, Real maxY);

    // IZynGeometry

    int getGeoType() const override { return 18; }
    Enve3d getEnvelope() const override;
    std::int32_t relation(const Enve3d&) const override { return 0; }
    std::int32_t move(double, double, double) override { return 0; }
    std::int32_t rotate(const double*, const double*, double) override { return 0; }

    // The interface

    Tri* nextTriangle() override;
    void rewindTriangles() override { cursor = 0; }
    int triangleCount() const override { return static_cast<int>(Pool::count()); }
    bool deleteTriangle(Tri* t) override;
    std::int32_t reservedA() override { return 0; }
    Tri* locate(Real x, Real y) override;
    bool isFrameTriangle(const Tri* t) const override;
    bool isFrameVertex(const Real* p) const override;
    Tri* enforceEdge(Real* a, Real* b, Tri* hint) override;
    bool addPoint(Pnt* p, Real tolerance) override;
    bool removePoint(Tri* hint, Real x, Real y, Real radius) override;
    std::int32_t reservedB() override { return 0; }
    std::int32_t reservedC() override { return 0; }

    // Beside the interface

    /// Corner 0 to 3 of the frame, counter-clockwise from the least x and y.
    [[nodiscard]] const Real* frameCorner(int i) const { return frame[i]; }
    /// addPoint without its numbering.
    bool insert(Pnt* p, Real tolerance) {
        return insert(p, tolerance, Pool::newest(), noFixedEdges);
    }
    /// The same, located by a walk from `start`. Flips no fixed edge but one that the point splits.
    template <class FixedEdges>
    bool insert(Pnt* p, Real tolerance, Tri* start, FixedEdges& fixed);
    /// Returns the vertex that keeps the point out of t, which holds it, or null. That is the
    /// nearest corner in a closed square of `tolerance` about the point, or else the point itself
    /// if it is a vertex already.
    Real* cornerAt(Tri* t, const Pnt& p, Real tolerance) const;
    /// Returns the vertex that keeps out a point that was refused, or null if none does. Walks from
    /// `start`.
    Real* inPlaceOf(const Pnt& p, Real tolerance, Tri* start) const {
        Tri* const t = locateFrom(start, {double(p.x), double(p.y)});
        return t == nullptr ? nullptr : cornerAt(t, p, tolerance);
    }
    /// Removes the vertex at a corner of t and fills the hole with Delaunay triangles. Returns false,
    /// with nothing changed, for a corner of the frame and a hole that cannot be filled. REQUIRES: no
    /// points in one place.
    bool removeVertex(Tri* t, int corner);
    /// Numbers the points as so many calls of addPoint would.
    void number(Pnt* points, int count);
    /// The triangle that holds q, or null outside the network, by a walk from `start`.
    Tri* locateFrom(Tri* start, Xy q) const {
        bool isInside = false;
        return locateFrom(start, q, isInside);
    }
    /// A triangle whose first corner is nearer to q than those of about sqrt(count()) others; null in
    /// an empty network.
    Tri* sample(Xy q) const;
    int vertexCount() const;
    int allVertexCount() const;
    int surfaceTriangleCount() const;
    Real surfaceArea() const;
    Real surfaceAreaHorizen() const;
    bool bounds(Real& minX, Real& minY, Real& minZ, Real& maxX, Real& maxY, Real& maxZ) const;
    int compactVertices();
    bool writeBinary(const char* path);
    bool writeText(const char* path);
    bool readBinary(const char* path, Real*& vertices, int& count);
    bool readText(const char* path, Real*& vertices, int& count);
    // Keep the vertices.
    bool readBinary(const char* path);
    bool readText(const char* path);

protected:
    /// Calls `use(t)` for every triangle of the surface, in pool order.
    template <class Use>
    void forEachSurfaceTriangle(Use use) const {
        for (std::size_t n = 0; n < Pool::count(); ++n) {
            if (const Tri* const t = Pool::at(n); !isFrameTriangle(t)) { use(t); }
        }
    }
    /// Whether the vertices are whole points with an `inten`, as addPoint takes them.
    [[nodiscard]] bool verticesArePoints() const { return wholePoints; }

private:
    struct Corner {
        Tri* triangle = nullptr;
        int slot = 0;
    };
    struct Star;

    // engine_insert.inl
    Tri* locateFrom(Tri* start, Xy q, bool& isInside) const;
    Tri* finishExactly(Tri* t, Xy q) const;
    Tri* leaveDegenerate(Tri* flat, Xy q) const;
    Tri* searchPool(Xy q) const;
    static Real* cornerWithin(const Tri* t, const Pnt& p, Real tolerance);
    void noteFlatTriangles(const Tri* t, Real* p);
    Tri* split(Tri* t, Real* p);
    template <class FixedEdges>
    void legalise(Corner corner, Real* p, FixedEdges& fixed);
    static Corner flipIfIllegal(Corner corner) { return flipIfIllegal(corner, noFixedEdges); }
    template <class FixedEdges>
    [[gnu::always_inline]] static inline Corner flipIfIllegal(Corner corner, FixedEdges& fixed);

    // engine_remove.inl
    bool collectStar(Tri* t, int corner, Star& star, bool mayBeOpen = false) const;
    bool planFan(const Star& star, std::vector<int>& ears) const;
    bool planEars(const Star& star, std::vector<int>& ears) const;
    bool planEarsByPower(const Star& star, std::vector<int>& ears) const;
    void fillHole(const Star& star, const std::vector<int>& ears);
    void collectFolds(Star& star) const;
    void dropSurplus(Star& star);
    void legaliseFan(const Star& star);
    void legaliseHole(Star& star, Passes& passes);
    static void openFolds(const Star& star);

    // tin_file.inl
    template <class Sink>
    bool write(const char* path);
    template <class Source>
    bool readAndRelease(Source source, Real*& vertices, int& count);
    template <class Source>
    bool readAndKeep(Source source);
    template <class Source>
    bool read(Source& source, std::unique_ptr<Real[]>& vertices, std::int32_t& count);
    template <class Source>
    bool readNetwork(Source& source, std::unique_ptr<Real[]>& vertices, std::int32_t& vertexCount);

    void frameChanged();

    Pnt frame[4];  // whole points: a flood through the records may mark their `inten`
    bool frameIsUsable;
    bool wholePoints = true;
    std::uint32_t pointCounter = 0;
    std::size_t cursor = 0;                            // number of the next triangle, or `ended`
    std::vector<std::unique_ptr<Real[]>> ownVertices;  // compacted or read, all that ever were
    /// Vertices that have been corners of a triangle of no area. Only one of these can be in the
    /// network without being a corner of the triangle that a walk to its place ends in.
    std::unordered_set<Real*> flatVertices;

    static constexpr std::size_t ended = static_cast<std::size_t>(-1);
};

/// The engine behind the interface; null when there is none, or one of another maker.
template <class Real>
DelaunayEngine<Real>* engineOf(DelaunayInterface<Real>* interface) {
    return dynamic_cast<DelaunayEngine<Real>*>(interface);
}

/// The engine behind IZynDelaunay.
class delaunayF final : public DelaunayEngine<float> {
public:
    using DelaunayEngine<float>::DelaunayEngine;

    Pnt3fArray* rayIntersections(const XPnt3f& p1, const XPnt3f& p2) override;
    bool rayNearest(const XPnt3f& p1, const XPnt3f& p2, float* t) override;
};

/// The engine behind IZynDelaunayD.
class delaunayD final : public DelaunayEngine<double> {
public:
    using DelaunayEngine<double>::DelaunayEngine;

    bool triangulate(double** points, int count) override;
    bool triangulate(Pnt3dArray* points) override;
    Pnt3dArray* rayIntersections(const XPnt3d&, const XPnt3d&) override { return nullptr; }
    bool rayNearest(const XPnt3d&, const XPnt3d&, double*) override { return false; }
    bool exportObj(std::span<const XPnt3d> points, const char* path, double maxEdge) override;
};

}  // namespace zyn::detail
