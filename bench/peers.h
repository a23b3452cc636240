// Functions that the sources of bench_peers share.
#pragma once

#include "families.h"

#include <zyn/delaunay.h>

#include <algorithm>
#include <cmath>

namespace bench {

/// Returns the bounds of points, for an engine's frame.
struct Box {
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;

    explicit Box(const Points& points) {
        for (const XPnt3d& p : points) {
            minX = std::min(minX, p.x);
            minY = std::min(minY, p.y);
            maxX = std::max(maxX, p.x);
            maxY = std::max(maxY, p.y);
        }
    }
    [[nodiscard]] zyn::ref_ptr<zyn::IZynDelaunayD> engine() const {
        return zyn::newZynDelaunayDouble(0, minX - 1, minY - 1, maxX + 1, maxY + 1);
    }
    [[nodiscard]] zyn::ref_ptr<zyn::IZynDelaunay> floatEngine() const {
        return zyn::newZynDelaunay(0, float(minX - 1), float(minY - 1), float(maxX + 1),
                                   float(maxY + 1));
    }
};

inline zyn::ref_ptr<zyn::Pnt3dArray> arrayOf(const Points& points) {
    zyn::ref_ptr<zyn::Pnt3dArray> array = zyn::newPnt3dArray();
    array->append(points.data(), static_cast<int>(points.size()));
    return array;
}

/// Prints the header of the table whose lines printSurface() prints.
void printSurfaceHead();
/// Prints the time and memory of making a Surface, compared with an engine.
void printSurface(const char* family, const Points& points, int runs);
/// Prints the time of single heights, in random and in spatial order, and of single changes.
void printSingles(std::size_t n, int runs, std::mt19937_64& random);

}  // namespace bench
