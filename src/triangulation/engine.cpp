// The two engines, their factories, and the functions beside their interfaces.
#include "triangulation/engine.h"

#include "triangulation/engine_enforce.inl"
#include "triangulation/engine_insert.inl"
#include "triangulation/engine_query.inl"
#include "triangulation/engine_remove.inl"
#include "triangulation/tin_file.inl"

#include <zyn/geometry.h>

#include <algorithm>

namespace zyn::detail {

template <class Real>
DelaunayEngine<Real>::DelaunayEngine(Real z, Real minX, Real minY, Real maxX, Real maxY)
    : frame{{minX, minY, z}, {maxX, minY, z}, {maxX, maxY, z}, {minX, maxY, z}} {
    frameChanged();
    Tri* const first = Pool::newTriangle({.vertex = {frame[0], frame[1], frame[2]}});
    first->neighbor[1] = Pool::newTriangle(
        {.vertex = {frame[2], frame[3], frame[0]}, .neighbor = {nullptr, first, nullptr}});
}

template <class Real>
void DelaunayEngine<Real>::frameChanged() {
    frameIsUsable = std::all_of(std::begin(frame), std::end(frame),
                                [](const Pnt& corner) { return isUsable(xyOf<Real>(corner)); });
}

Pnt3fArray* delaunayF::rayIntersections(const XPnt3f& p1, const XPnt3f& p2) {
    ref_ptr<Pnt3fArray> points = newPnt3fArray();
    const float* const from = p1;
    const float* const to = p2;
    rewindTriangles();
    while (const tin* const t = nextTriangle()) {
        float parameter = 0;
        if (!isFrameTriangle(t) && t->ray_intersect3d(from, to, &parameter)) {
            points->append(getPoint(p1, p2, parameter));
        }
    }
    Pnt3fArray* const result = points.get();
    result->ref();
    points = nullptr;
    result->unref_nodelete();
    return result;
}

bool delaunayF::rayNearest(const XPnt3f& p1, const XPnt3f& p2, float* t) {
    constexpr float none = 2147483648.0F;
    const float* const from = p1;
    const float* const to = p2;
    float nearest = none;
    rewindTriangles();
    while (tin* const triangle = nextTriangle()) {
        if (!isFrameTriangle(triangle) && triangle->ray_intersect3d(from, to, t)) {
            nearest = std::min(nearest, *t);
        }
    }
    if (nearest == none) { return false; }
    *t = nearest;
    return true;
}

}  // namespace zyn::detail

namespace zyn {

using namespace detail;

IZynDelaunay* newZynDelaunay(float z, float minX, float minY, float maxX, float maxY) {
    return new delaunayF(z, minX, minY, maxX, maxY);
}

IZynDelaunayD* newZynDelaunayDouble(double z, double minX, double minY, double maxX, double maxY) {
    return new delaunayD(z, minX, minY, maxX, maxY);
}

namespace {

/// What `operation` gives on the engine behind the interface; false or 0 when there is none.
template <class Real, class Operation>
auto onEngine(DelaunayInterface<Real>* interface, Operation operation) {
    auto* const engine = engineOf(interface);
    using Result = decltype(operation(*engine));
    return engine == nullptr ? Result() : operation(*engine);
}

}  // namespace

template <class Real>
int vertexCount(DelaunayInterface<Real>* engine) {
    return onEngine(engine, [](auto& e) { return e.vertexCount(); });
}

template <class Real>
int allVertexCount(DelaunayInterface<Real>* engine) {
    return onEngine(engine, [](auto& e) { return e.allVertexCount(); });
}

template <class Real>
int surfaceTriangleCount(DelaunayInterface<Real>* engine) {
    return onEngine(engine, [](auto& e) { return e.surfaceTriangleCount(); });
}

template <class Real>
Real surfaceArea(DelaunayInterface<Real>* engine) {
    return onEngine(engine, [](auto& e) { return e.surfaceArea(); });
}

template <class Real>
Real surfaceAreaHorizen(DelaunayInterface<Real>* engine) {
    return onEngine(engine, [](auto& e) { return e.surfaceAreaHorizen(); });
}

template <class Real>
bool bounds(DelaunayInterface<Real>* engine, Real& minX, Real& minY, Real& minZ, Real& maxX,
            Real& maxY, Real& maxZ) {
    return onEngine(engine, [&](auto& e) { return e.bounds(minX, minY, minZ, maxX, maxY, maxZ); });
}

template <class Real>
int compactVertices(DelaunayInterface<Real>* engine) {
    return onEngine(engine, [](auto& e) { return e.compactVertices(); });
}

template <class Real>
bool writeBinary(DelaunayInterface<Real>* engine, const char* path) {
    return onEngine(engine, [path](auto& e) { return e.writeBinary(path); });
}

template <class Real>
bool writeText(DelaunayInterface<Real>* engine, const char* path) {
    return onEngine(engine, [path](auto& e) { return e.writeText(path); });
}

template <class Real>
bool readBinary(DelaunayInterface<Real>* engine, const char* path, Real*& vertices, int& count) {
    vertices = nullptr;
    count = 0;
    return onEngine(engine, [&](auto& e) { return e.readBinary(path, vertices, count); });
}

template <class Real>
bool readText(DelaunayInterface<Real>* engine, const char* path, Real*& vertices, int& count) {
    vertices = nullptr;
    count = 0;
    return onEngine(engine, [&](auto& e) { return e.readText(path, vertices, count); });
}

template <class Real>
bool readBinary(DelaunayInterface<Real>& engine, const char* path) {
    return onEngine(&engine, [path](auto& e) { return e.readBinary(path); });
}

template <class Real>
bool readText(DelaunayInterface<Real>& engine, const char* path) {
    return onEngine(&engine, [path](auto& e) { return e.readText(path); });
}

template class detail::DelaunayEngine<float>;
template bool detail::DelaunayEngine<float>::insert(Pnt*, float, Tri*, NoFixedEdges&);
template bool detail::DelaunayEngine<float>::insert(Pnt*, float, Tri*, FixedEdges<float>&);
template int vertexCount(DelaunayInterface<float>*);
template int allVertexCount(DelaunayInterface<float>*);
template int surfaceTriangleCount(DelaunayInterface<float>*);
template float surfaceArea(DelaunayInterface<float>*);
template float surfaceAreaHorizen(DelaunayInterface<float>*);
template bool bounds(DelaunayInterface<float>*, float&, float&, float&, float&, float&, float&);
template int compactVertices(DelaunayInterface<float>*);
template bool writeBinary(DelaunayInterface<float>*, const char*);
template bool writeText(DelaunayInterface<float>*, const char*);
template bool readBinary(DelaunayInterface<float>*, const char*, float*&, int&);
template bool readText(DelaunayInterface<float>*, const char*, float*&, int&);
template bool readBinary(DelaunayInterface<float>&, const char*);
template bool readText(DelaunayInterface<float>&, const char*);

template class detail::DelaunayEngine<double>;
template bool detail::DelaunayEngine<double>::insert(Pnt*, double, Tri*, NoFixedEdges&);
template bool detail::DelaunayEngine<double>::insert(Pnt*, double, Tri*, FixedEdges<double>&);
template int vertexCount(DelaunayInterface<double>*);
template int allVertexCount(DelaunayInterface<double>*);
template int surfaceTriangleCount(DelaunayInterface<double>*);
template double surfaceArea(DelaunayInterface<double>*);
template double surfaceAreaHorizen(DelaunayInterface<double>*);
template bool bounds(DelaunayInterface<double>*, double&, double&, double&, double&, double&,
                     double&);
template int compactVertices(DelaunayInterface<double>*);
template bool writeBinary(DelaunayInterface<double>*, const char*);
template bool writeText(DelaunayInterface<double>*, const char*);
template bool readBinary(DelaunayInterface<double>*, const char*, double*&, int&);
template bool readText(DelaunayInterface<double>*, const char*, double*&, int&);
template bool readBinary(DelaunayInterface<double>&, const char*);
template bool readText(DelaunayInterface<double>&, const char*);
}  // namespace zyn
