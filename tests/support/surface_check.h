// Checks that the parts of a Surface are consistent.
#pragma once

#include <zyn/surface.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

namespace support {

using NumberPair = std::array<int, 2>;

/// Returns the pairs, each in ascending order.
inline std::set<NumberPair> sorted(std::vector<NumberPair> pairs) {
    for (NumberPair& pair : pairs) { std::ranges::sort(pair); }
    return {pairs.begin(), pairs.end()};
}

/// Returns the first fault of the whole surface, whatever its maxEdge, or "".
inline std::string faultOf(const zyn::Surface& surface) {
    if (const auto fault = surface.validate()) { return fault->text; }
    const zyn::SurfaceView all = surface.withMaxEdge(zyn::anyEdge);
    const int triangles = all.triangleCount();
    const std::set<NumberPair> edges = sorted(all.edges());
    if (edges.size() != all.edges().size()) { return "an edge twice"; }
    if (triangles > 0) {
        const auto isEdge = [&edges](const NumberPair& pair) { return edges.contains(pair); };
        if (!std::ranges::all_of(sorted(all.breaklineEdges()), isEdge)) { return "no edge"; }
        if (surface.vertexCount() - int(edges.size()) + triangles != 1) { return "no disc"; }
    }
    const std::vector<int> vertices = surface.vertices();
    if (int(vertices.size()) != surface.vertexCount()) { return "another number of vertices"; }
    for (const int v : vertices) {
        const zyn::XPnt3d p = surface.point(v);
        if (surface.vertexOf(v) != v) { return "another number"; }
        if (triangles > 0 && all.heightAt(p.x, p.y) != p.z) { return "another height"; }
    }
    return {};
}

}  // namespace support
