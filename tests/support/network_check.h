// Whether a network is what an engine promises, by arithmetic that shares nothing with the library.
#pragma once

#include <zyn/delaunay.h>

#include <optional>
#include <string>

namespace support {

struct Expected {
    bool delaunay = true;              ///< no inner edge may fail the exact in-circle test
    bool duplicates = false;           ///< triangles beside points in one place may have no area
    std::optional<int> vertices = {};  ///< the corners of the frame included
};

/// The first broken promise, with the number of its triangle in pool order; empty when there is
/// none. Every triangle is strictly counter-clockwise, but for those of no area on a side of the
/// frame; links are symmetric; the network is one disc that ends at the frame. Moves the cursor.
template <class Real>
std::string faultOf(zyn::DelaunayInterface<Real>& engine, const Expected& expected = {});

}  // namespace support
