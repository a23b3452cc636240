// The blocks of triangles behind the ranges of triangles.h.
#include <zyn/triangles.h>

#include "surface/surface_triangles.h"
#include "triangulation/engine.h"

#include <algorithm>

namespace zyn::detail {
namespace {

constexpr std::size_t most = 64;  // triangles in a block, one bit each

/// Returns one bit for each of `count` triangles: 1 if it belongs to the surface.
template <class Real>
std::uint64_t membersOf(const SurfaceTriangles<Real>& surface, const TinRecord<Real>* first,
                        std::size_t count) {
    std::uint64_t members = 0;
    for (std::size_t i = 0; i < count; ++i) {
        members |= std::uint64_t{surface.has(first + i)} << i;
    }
    return members;
}

}  // namespace

template <class Real>
TriangleBlock<Real> nextBlock(const DelaunayInterface<Real>& interface, std::size_t& number,
                              std::optional<double> maxEdge) {
    static_assert(TrianglePool<Real>::blockSize % most == 0);
    const DelaunayEngine<Real>* const engine = engineOf(readable(interface));
    const SurfaceTriangles<Real> surface(engine, maxEdge.value_or(anyEdge));
    while (number < surface.triangleCount()) {
        const TinRecord<Real>* const first = engine->at(number);
        const std::size_t count = std::min(most, surface.triangleCount() - number);
        const std::uint64_t members =
            maxEdge ? membersOf(surface, first, count) : ~std::uint64_t{0} >> (most - count);
        number += count;
        if (members != 0) { return {first, members}; }
    }
    return {};
}

template TriangleBlock<float> nextBlock(const DelaunayInterface<float>&, std::size_t&,
                                        std::optional<double>);
template TriangleBlock<double> nextBlock(const DelaunayInterface<double>&, std::size_t&,
                                         std::optional<double>);

}  // namespace zyn::detail
