// The Delaunay engine in both precisions: an incremental triangulation that walks, splits and
// flips.
//
// The walks and flips of the triangle records (tin.h) use plain floating-point arithmetic. Alone
// they would neither terminate nor keep their invariants on every input. The engine guards them:
// where rounding leaves a decision open, an exact predicate makes it; elsewhere the guards change
// nothing.
//
// The members are in one .inl file per idea; engine_insert.inl has the way of a point into the
// network. engine.cpp instantiates them.
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

    // IZynDelaunay and IZynDelaunayD

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

    // Operations outside the interface

    /// Returns corner 0 to 3 of the frame, counter-clockwise from the one with the least x and y.
    [[nodiscard]] const Real* frameCorner(int i) const { return frame[i]; }
    /// Inserts a point as addPoint does, but does not number it.
    bool insert(Pnt* p, Real tolerance) {
        return insert(p, tolerance, Pool::newest(), noFixedEdges);
    }
    /// Inserts a point that a walk from `start` locates. Flips a fixed edge only if the point
    /// splits it.
    template <class FixedEdges>
    bool insert(Pnt* p, Real tolerance, Tri* start, FixedEdges& fixed);
    /// Returns the vertex that prevents an insertion of `p`, or null. That is the nearest corner
    /// within the closed square of half-width `tolerance` around `p`. If there is none, it is `p`
    /// itself if it is a vertex already. REQUIRES: t contains `p`.
    Real* cornerAt(Tri* t, const Pnt& p, Real tolerance) const;
    /// Returns the vertex that prevents an insertion of `p`, or null. Walks from `start`.
    Real* inPlaceOf(const Pnt& p, Real tolerance, Tri* start) const {
        Tri* const t = locateFrom(start, {double(p.x), double(p.y)});
        return t == nullptr ? nullptr : cornerAt(t, p, tolerance);
    }
    /// Removes the vertex at a corner of t and fills the hole with Delaunay triangles. Returns
    /// false and changes nothing for a corner of the frame and for a hole that cannot be filled.
    /// REQUIRES: no two vertices have the same position.
    bool removeVertex(Tri* t, int corner);
    /// Numbers the points as `count` calls of addPoint would.
    void number(Pnt* points, int count);
    /// Walks from `start` and returns the triangle that contains q, or null if q is outside the
    /// network.
    Tri* locateFrom(Tri* start, Xy q) const {
        bool isInside = false;
        return locateFrom(start, q, isInside);
    }
    /// Returns the nearest to q of about sqrt(count()) triangles, by their first corners; null in
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
    // These keep the vertices in the engine.
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
    /// Returns whether the vertices are whole points with an `inten`, such as addPoint takes.
    [[nodiscard]] bool verticesArePoints() const { return wholePoints; }

private:
    struct Corner {
        Tri* triangle = nullptr;
        int slot = 0;
    };
    struct Star;

    // engine_frame.inl
    void frameChanged();

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

    // engine_star.inl
    bool collectStar(Tri* t, int corner, Star& star, bool mayBeOpen = false) const;

    // engine_ears.inl
    bool planFan(const Star& star, std::vector<int>& ears) const;
    bool planEars(const Star& star, std::vector<int>& ears) const;
    bool planEarsByPower(const Star& star, std::vector<int>& ears) const;

    // engine_folds.inl
    void collectFolds(Star& star) const;
    static void openFolds(const Star& star);

    // engine_remove.inl
    void fillHole(const Star& star, const std::vector<int>& ears);
    void dropSurplus(Star& star);
    void legaliseFan(const Star& star);
    void legaliseHole(Star& star, Passes& passes);

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

    Pnt frame[4];  // whole points: a flood through the records may mark their `inten`
    bool frameIsUsable;
    bool wholePoints = true;
    std::uint32_t pointCounter = 0;
    std::size_t cursor = 0;                            // number of the next triangle, or `ended`
    std::vector<std::unique_ptr<Real[]>> ownVertices;  // compacted or read; kept to the end
    /// Holds vertices that were once corners of a degenerate triangle. A vertex that is no corner
    /// of the triangle which a walk to its position ends in must be one of these.
    std::unordered_set<Real*> flatVertices;

    static constexpr std::size_t ended = static_cast<std::size_t>(-1);
};

/// Returns the engine behind the interface, or null if there is none or another class implements
/// it.
template <class Real>
DelaunayEngine<Real>* engineOf(DelaunayInterface<Real>* interface) {
    return dynamic_cast<DelaunayEngine<Real>*>(interface);
}

/// Implements IZynDelaunay.
class delaunayF final : public DelaunayEngine<float> {
public:
    using DelaunayEngine<float>::DelaunayEngine;

    Pnt3fArray* rayIntersections(const XPnt3f& p1, const XPnt3f& p2) override;
    bool rayNearest(const XPnt3f& p1, const XPnt3f& p2, float* t) override;
};

/// Implements IZynDelaunayD.
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
