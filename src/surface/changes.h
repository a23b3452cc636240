// What a change to a network leaves to restore.
#pragma once

#include "triangulation/engine.h"

#include <vector>

namespace zyn::detail {

/// Records triangles whose edges may not be Delaunay any more.
template <class Real>
struct Changes {
    std::vector<TinRecord<Real>*> triangles;
    bool touchTheFrame = false;  ///< whether one was a frame triangle

    void note(const DelaunayEngine<Real>& engine, TinRecord<Real>* t) {
        triangles.push_back(t);
        touchTheFrame = touchTheFrame || engine.isFrameTriangle(t);
    }
};

}  // namespace zyn::detail
