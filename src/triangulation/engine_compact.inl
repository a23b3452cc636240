// DelaunayEngine: copying the vertices of the surface into its own memory.
#pragma once

#include "triangulation/engine.h"
#include "triangulation/vertex_numbers.h"

#include <algorithm>

namespace zyn::detail {

template <class Real>
int DelaunayEngine<Real>::compactVertices() {
    VertexNumbers<Real> numbers(Pool::count());
    forEachSurfaceTriangle([&numbers](const Tri* t) {
        for (Real* const v : t->vertex) { numbers(v); }
    });
    const std::vector<Real*>& vertices = numbers.vertices();
    auto buffer = std::make_unique<Real[]>(3 * vertices.size());
    ownVertices.reserve(ownVertices.size() + 1);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        std::copy_n(vertices[i], 3, &buffer[3 * i]);
    }
    for (std::size_t n = 0; n < Pool::count(); ++n) {
        for (Real*& v : Pool::at(n)->vertex) {
            if (const std::int32_t number = numbers.find(v); number >= 0) {
                v = &buffer[3 * static_cast<std::size_t>(number)];
            }
        }
    }
    std::erase_if(flatVertices, [&numbers](Real* v) { return numbers.find(v) >= 0; });
    // Earlier copies stay, since a host may still hold pointers to those vertices.
    ownVertices.push_back(std::move(buffer));
    wholePoints = wholePoints && vertices.empty();
    return static_cast<int>(vertices.size());
}

}  // namespace zyn::detail
