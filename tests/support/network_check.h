// Checks that a network is what an engine promises, with arithmetic that shares nothing with the
// library.
#pragma once

#include <zyn/delaunay.h>

#include <optional>
#include <string>

namespace support {

struct Expected {
    bool delaunay = true;              ///< no inner edge may fail the exact in-circle test
    bool duplicates = false;           ///< triangles at points in one place may be degenerate
    std::optional<int> vertices = {};  ///< the corners of the frame included
};

/// Returns the first broken promise with the number of its triangle in pool order, or "". Moves the
/// cursor. The promises:
/// - Every triangle runs counter-clockwise; degenerate ones occur only along a side of the frame.
/// - Links are symmetric.
/// - The network is one disc that ends at the frame.
template <class Real>
std::string faultOf(zyn::DelaunayInterface<Real>& engine, const Expected& expected = {});

}  // namespace support
