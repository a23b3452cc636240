// The base of the writers of surfaces: vertices and faces by number.
#pragma once

#include <zyn/network.h>

#include "core/file_writer.h"
#include "surface/surface_triangles.h"
#include "triangulation/vertex_numbers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zyn::detail {

/// Writes a file about the vertices and faces of a surface. Numbers the vertices in the order of
/// the faces.
template <class Real>
class SurfaceFile : public FileWriter {
public:
    /// Holds the numbers of the corners, from 0.
    using Face = std::int32_t[3];

    SurfaceFile(DelaunayInterface<Real>* engine, const char* path, double maxEdge)
        : FileWriter(engineOf(engine) == nullptr ? nullptr : path),
          surface(engineOf(engine), maxEdge),
          numbers(surface.triangleCount()) {
        if (!isOpen()) { return; }
        surface.forEach([this](const TinRecord<Real>* t, std::size_t) {
            for (Real* const v : t->vertex) { numbers(v); }
            ++faces;
        });
    }
    /// Returns the coordinates of the vertices by number.
    [[nodiscard]] const std::vector<Real*>& vertices() const { return numbers.vertices(); }
    [[nodiscard]] int faceCount() const { return faces; }

    /// Calls `use` with the coordinates of every vertex in turn.
    template <class Use>
    void forEachVertex(Use use) {
        for (const Real* const v : numbers.vertices()) {
            use(v);
            flushIfFull();
        }
    }
    /// Calls `use` with every Face in turn.
    template <class Use>
    void forEachFace(Use use) {
        surface.forEach([&](const TinRecord<Real>* t, std::size_t) {
            use(Face{numbers(t->vertex[0]), numbers(t->vertex[1]), numbers(t->vertex[2])});
            flushIfFull();
        });
    }

private:
    SurfaceTriangles<Real> surface;
    VertexNumbers<Real> numbers;
    int faces = 0;
};

}  // namespace zyn::detail
