// The functions of delaunay.h that call an engine behind its interface.
#pragma once

#include "triangulation/engine.h"

namespace zyn::detail {

/// Returns the result of `operation` for the engine behind the interface, or false or 0 if there is
/// no engine.
template <class Real, class Operation>
auto onEngine(DelaunayInterface<Real>* interface, Operation operation) {
    auto* const engine = engineOf(interface);
    using Result = decltype(operation(*engine));
    return engine == nullptr ? Result() : operation(*engine);
}

}  // namespace zyn::detail

namespace zyn {

template <class Real>
int vertexCount(DelaunayInterface<Real>* engine) {
    return detail::onEngine(engine, [](auto& e) { return e.vertexCount(); });
}

template <class Real>
int allVertexCount(DelaunayInterface<Real>* engine) {
    return detail::onEngine(engine, [](auto& e) { return e.allVertexCount(); });
}

template <class Real>
int surfaceTriangleCount(DelaunayInterface<Real>* engine) {
    return detail::onEngine(engine, [](auto& e) { return e.surfaceTriangleCount(); });
}

template <class Real>
Real surfaceArea(DelaunayInterface<Real>* engine) {
    return detail::onEngine(engine, [](auto& e) { return e.surfaceArea(); });
}

template <class Real>
Real surfaceAreaHorizen(DelaunayInterface<Real>* engine) {
    return detail::onEngine(engine, [](auto& e) { return e.surfaceAreaHorizen(); });
}

template <class Real>
bool bounds(DelaunayInterface<Real>* engine, Real& minX, Real& minY, Real& minZ, Real& maxX,
            Real& maxY, Real& maxZ) {
    return detail::onEngine(engine,
                            [&](auto& e) { return e.bounds(minX, minY, minZ, maxX, maxY, maxZ); });
}

template <class Real>
int compactVertices(DelaunayInterface<Real>* engine) {
    return detail::onEngine(engine, [](auto& e) { return e.compactVertices(); });
}

template <class Real>
bool writeBinary(DelaunayInterface<Real>* engine, const char* path) {
    return detail::onEngine(engine, [path](auto& e) { return e.writeBinary(path); });
}

template <class Real>
bool writeText(DelaunayInterface<Real>* engine, const char* path) {
    return detail::onEngine(engine, [path](auto& e) { return e.writeText(path); });
}

template <class Real>
bool readBinary(DelaunayInterface<Real>* engine, const char* path, Real*& vertices, int& count) {
    vertices = nullptr;
    count = 0;
    return detail::onEngine(engine, [&](auto& e) { return e.readBinary(path, vertices, count); });
}

template <class Real>
bool readText(DelaunayInterface<Real>* engine, const char* path, Real*& vertices, int& count) {
    vertices = nullptr;
    count = 0;
    return detail::onEngine(engine, [&](auto& e) { return e.readText(path, vertices, count); });
}

template <class Real>
bool readBinary(DelaunayInterface<Real>& engine, const char* path) {
    return detail::onEngine(&engine, [path](auto& e) { return e.readBinary(path); });
}

template <class Real>
bool readText(DelaunayInterface<Real>& engine, const char* path) {
    return detail::onEngine(&engine, [path](auto& e) { return e.readText(path); });
}

}  // namespace zyn
