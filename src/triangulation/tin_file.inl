// DelaunayEngine: writing and reading whole networks in both encodings.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/tin_sinks.h"
#include "triangulation/tin_sources.h"
#include "triangulation/triangle_numbers.h"
#include "triangulation/vertex_numbers.h"

#include <algorithm>

namespace zyn::detail {

template <class Real>
bool DelaunayEngine<Real>::writeBinary(const char* path) {
    return write<tin_file::BinarySink>(path);
}

template <class Real>
bool DelaunayEngine<Real>::writeText(const char* path) {
    write<tin_file::TextSink>(path);
    return true;
}

template <class Real>
bool DelaunayEngine<Real>::readBinary(const char* path, Real*& vertices, int& count) {
    return readAndRelease(tin_file::BinarySource(path, "rb+"), vertices, count);
}

template <class Real>
bool DelaunayEngine<Real>::readText(const char* path, Real*& vertices, int& count) {
    return readAndRelease(tin_file::TextSource(path), vertices, count);
}

template <class Real>
bool DelaunayEngine<Real>::readBinary(const char* path) {
    return readAndKeep(tin_file::BinarySource(path, "rb"));
}

template <class Real>
bool DelaunayEngine<Real>::readText(const char* path) {
    return readAndKeep(tin_file::TextSource(path));
}

/// Numbers the vertices by first appearance in pool order, after the corners of the frame, and the
/// triangles by their place in the pool.
template <class Real>
template <class Sink>
bool DelaunayEngine<Real>::write(const char* path) {
    VertexNumbers<Real> vertexNumbers(Pool::count());
    for (Pnt& corner : frame) { vertexNumbers(corner); }
    for (std::size_t n = 0; n < Pool::count(); ++n) {
        for (Real* const v : Pool::at(n)->vertex) { vertexNumbers(v); }
    }
    TriangleNumbers<Real> triangleNumbers(*this);

    Sink sink(path);
    sink.head();
    sink.count(static_cast<std::int32_t>(vertexNumbers.vertices().size()));
    sink.count(triangleCount());
    for (const Real* const v : vertexNumbers.vertices()) { sink.point(v); }
    for (std::size_t n = 0; n < Pool::count(); ++n) {
        const Tri* const t = Pool::at(n);
        sink.record({vertexNumbers(t->vertex[0]), vertexNumbers(t->vertex[1]),
                     vertexNumbers(t->vertex[2]), triangleNumbers(t->neighbor[0]),
                     triangleNumbers(t->neighbor[1]), triangleNumbers(t->neighbor[2])});
    }
    return sink.commit();
}

template <class Real>
template <class Source>
bool DelaunayEngine<Real>::readAndRelease(Source source, Real*& vertices, int& count) {
    vertices = nullptr;
    count = 0;
    std::unique_ptr<Real[]> readVertices;
    std::int32_t vertexTotal = 0;
    if (!read(source, readVertices, vertexTotal)) { return false; }
    vertices = readVertices.release();
    count = vertexTotal;
    return true;
}

template <class Real>
template <class Source>
bool DelaunayEngine<Real>::readAndKeep(Source source) {
    ownVertices.reserve(ownVertices.size() + 1);
    std::unique_ptr<Real[]> vertices;
    std::int32_t vertexTotal = 0;
    if (!read(source, vertices, vertexTotal)) { return false; }
    ownVertices.push_back(std::move(vertices));
    return true;
}

template <class Real>
template <class Source>
bool DelaunayEngine<Real>::read(Source& source, std::unique_ptr<Real[]>& vertices,
                                std::int32_t& vertexTotal) {
    Pool::clear();
    flatVertices.clear();
    wholePoints = true;
    try {
        if (!readNetwork(source, vertices, vertexTotal)) {
            Pool::clear();
            return false;
        }
    } catch (...) {  // out of memory
        Pool::clear();
        throw;
    }
    wholePoints = vertexTotal == 4;
    return true;
}

template <class Real>
template <class Source>
bool DelaunayEngine<Real>::readNetwork(Source& source, std::unique_ptr<Real[]>& vertices,
                                       std::int32_t& vertexTotal) {
    std::int32_t triangleTotal = 0;
    if (!source.isOpen() || !source.head() || !source.count(vertexTotal) ||
        !source.count(triangleTotal) || vertexTotal < 4 || triangleTotal < 1) {
        return false;
    }
    const auto free = static_cast<std::size_t>(vertexTotal - 4);
    const auto total = static_cast<std::size_t>(triangleTotal);
    if (!source.template canHold<Real>(free + 4, total)) { return false; }

    for (Pnt& corner : frame) {
        corner.inten = 0;
        Real* const coordinates = corner;
        if (!source.point(coordinates)) { return false; }
    }
    frameChanged();
    vertices = std::make_unique<Real[]>(3 * free);
    for (std::size_t v = 0; v < free; ++v) {
        if (!source.point(&vertices[3 * v])) { return false; }
    }

    for (std::size_t n = 0; n < total; ++n) { Pool::newTriangle({}); }
    for (std::size_t n = 0; n < total; ++n) {
        Tri* const t = Pool::at(n);
        tin_file::Record record;
        if (!source.record(record)) { return false; }
        for (int i = 0; i < 3; ++i) {
            const std::int32_t v = record[i];
            const std::int32_t m = record[i + 3];
            if (v < 0 || v >= vertexTotal || m < -1 || m >= triangleTotal) { return false; }
            t->vertex[i] = v < 4 ? static_cast<Real*>(frame[v])
                                 : &vertices[3 * static_cast<std::size_t>(v - 4)];
            t->neighbor[i] = m < 0 ? nullptr : Pool::at(static_cast<std::size_t>(m));
        }
    }
    return true;
}

}  // namespace zyn::detail
