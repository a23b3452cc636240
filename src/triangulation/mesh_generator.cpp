// One-shot triangulation by the mesh generator.
#include "triangulation/engine.h"
#include "triangulation/vertex_array.h"

#include <triangle.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace zyn::detail {
namespace {

/// Returns x and y of each point, rounded to float for the generator. The caller widens them in a
/// second pass: if both happen in one expression, GCC 12 omits the rounding.
std::vector<float> rounded(std::span<double* const> points) {
    std::vector<float> result;
    result.reserve(2 * points.size());
    for (const double* const p : points) {
        result.push_back(static_cast<float>(p[0]));
        result.push_back(static_cast<float>(p[1]));
    }
    return result;
}

bool areFinite(const std::vector<float>& coordinates) {
    return std::all_of(coordinates.begin(), coordinates.end(),
                       [](float c) { return std::isfinite(c); });
}

bool areInOnePlace(const std::vector<float>& coordinates) {
    for (std::size_t i = 2; i < coordinates.size(); ++i) {
        if (coordinates[i] != coordinates[i - 2]) { return false; }
    }
    return true;
}

/// Restores the state of the floating-point unit: the generator leaves the x87 unit, which computes
/// long double, at the precision of double.
class FloatingPointState {
public:
    FloatingPointState() { std::fegetenv(&state); }
    FloatingPointState(const FloatingPointState&) = delete;
    FloatingPointState& operator=(const FloatingPointState&) = delete;
    ~FloatingPointState() { std::fesetenv(&state); }

private:
    std::fenv_t state{};
};

/// Holds the generator's triangulation of points without segments, bounded by their convex hull.
/// Its indices count from 1. Corners run counter-clockwise, and neighbour k is opposite corner k.
class Mesh {
public:
    explicit Mesh(std::vector<double> coordinates) {
        static std::mutex oneAtATime;  // the generator keeps its state in globals
        const std::lock_guard lock(oneAtATime);
        const FloatingPointState state;
        triangulateio in = {};
        in.pointlist = coordinates.data();
        in.numberofpoints = static_cast<int>(coordinates.size() / 2);
        char switches[] = "pcen";
        ::triangulate(switches, &in, &out, nullptr);
    }
    Mesh(const Mesh&) = delete;
    Mesh& operator=(const Mesh&) = delete;
    ~Mesh() {
        for (void* const list :
             {static_cast<void*>(out.pointlist), static_cast<void*>(out.pointattributelist),
              static_cast<void*>(out.pointmarkerlist), static_cast<void*>(out.trianglelist),
              static_cast<void*>(out.triangleattributelist), static_cast<void*>(out.neighborlist),
              static_cast<void*>(out.segmentlist), static_cast<void*>(out.segmentmarkerlist),
              static_cast<void*>(out.edgelist), static_cast<void*>(out.edgemarkerlist)}) {
            if (list != nullptr) { trifree(list); }
        }
    }

    [[nodiscard]] int size() const { return out.numberoftriangles; }
    [[nodiscard]] const int* corners(int i) const {
        return out.trianglelist + std::ptrdiff_t{3} * i;
    }
    [[nodiscard]] const int* neighbors(int i) const {
        return out.neighborlist + std::ptrdiff_t{3} * i;
    }

private:
    triangulateio out = {};
};

}  // namespace

bool delaunayD::triangulate(double** points, int count) {
    if (Pool::count() != 2 || count < 3 || points == nullptr) { return false; }
    const std::span all(points, static_cast<std::size_t>(count));
    if (std::find(all.begin(), all.end(), nullptr) != all.end()) { return false; }
    std::vector<float> coordinates = rounded(all);
    if (!areFinite(coordinates)) { return false; }
    if (areInOnePlace(coordinates)) { return true; }  // the generator would crash

    const Mesh mesh({coordinates.begin(), coordinates.end()});
    coordinates = {};
    std::vector<tind*> triangles;
    triangles.reserve(static_cast<std::size_t>(mesh.size()));
    try {
        for (int i = 0; i < mesh.size(); ++i) {
            const int* const corner = mesh.corners(i);
            triangles.push_back(newTriangle(
                {.vertex = {points[corner[0] - 1], points[corner[1] - 1], points[corner[2] - 1]}}));
        }
    } catch (...) {
        while (Pool::count() > 2) { Pool::drop(newest()); }
        throw;
    }
    for (int i = 0; i < mesh.size(); ++i) {
        for (int k = 0; k < 3; ++k) {
            const int number = mesh.neighbors(i)[k];
            triangles[static_cast<std::size_t>(i)]->neighbor[k] =
                number < 1 ? nullptr : triangles[static_cast<std::size_t>(number - 1)];
        }
    }
    return true;
}

bool delaunayD::triangulate(Pnt3dArray* points) {
    if (points == nullptr) { return false; }
    const ref_ptr<PDoubleArray> pointers = newVertexArray<double>();
    pointers->reserve(points->size());
    for (XPnt3d& p : *points) { pointers->append(static_cast<double*>(p)); }
    IZynDelaunayD* const self = this;
    return self->triangulate(pointers->data(), pointers->size());
}

}  // namespace zyn::detail
