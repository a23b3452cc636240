// Cut and fill between a surface and a level.
#include <zyn/network.h>

#include "surface/queries.h"
#include "triangulation/vertex_position.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace zyn {

using namespace detail;

namespace {

/// Computes the volumes of a triangle above and below the level. If one corner is alone on its
/// side, the level divides the triangle into a tip and two more triangles. The volume of each piece
/// is the product of its area and its mean height, so no digits cancel.
class CutFill {
public:
    /// Takes the area in plan, and the heights of the corners above the level.
    CutFill(double area, std::array<double, 3> heights) {
        const bool areNumbers = std::none_of(heights.begin(), heights.end(),
                                             [](double height) { return std::isnan(height); });
        if (areNumbers) { std::sort(heights.begin(), heights.end()); }
        const auto [low, middle, high] = heights;
        if (!areNumbers || low >= 0 || high <= 0) {
            add(area, (low + middle + high) / 3);
        } else if (middle <= 0) {
            split(area, high, low, middle);
        } else {
            split(area, low, middle, high);
        }
    }
    SurfaceVolume volume;

private:
    void split(double area, double tip, double a, double b) {
        const double toA = tip / (tip - a);  // the share of each edge on the side of the tip
        const double toB = tip / (tip - b);
        add(area * toA * toB, tip / 3);
        add(area * (1 - toB), (a + b) / 3);
        add(area * toB * (1 - toA), a / 3);
    }
    void add(double area, double meanHeight) {
        (meanHeight > 0 ? volume.cut : volume.fill) += area * std::abs(meanHeight);
        (meanHeight > 0 ? volume.cutArea : volume.fillArea) += area;
    }
};

}  // namespace

namespace detail {

template <class Real>
SurfaceVolume volumeOf(const SurfaceTriangles<Real>& surface, double level) {
    SurfaceVolume sum;
    surface.forEach([&](const TinRecord<Real>* t, std::size_t) {
        const XPnt3d a = positionOf(t->vertex[0]), b = positionOf(t->vertex[1]),
                     c = positionOf(t->vertex[2]);
        const double area = ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x)) / 2;
        // Divides by eight if a difference, or the sum of three, could overflow.
        constexpr double large = std::numeric_limits<double>::max() / 8;
        const double most = std::max({a.z, b.z, c.z, level}),
                     least = std::min({a.z, b.z, c.z, level});
        const double unit = most < large && least > -large ? 1 : 8;
        const auto height = [=](const XPnt3d& p) { return p.z / unit - level / unit; };
        const CutFill pieces(area, {height(a), height(b), height(c)});
        sum.cut += pieces.volume.cut * unit;
        sum.fill += pieces.volume.fill * unit;
        sum.cutArea += pieces.volume.cutArea;
        sum.fillArea += pieces.volume.fillArea;
    });
    return sum;
}

template SurfaceVolume volumeOf(const SurfaceTriangles<double>&, double);

}  // namespace detail

template <class Real>
SurfaceVolume volume(DelaunayInterface<Real>* interface, double level, double maxEdge) {
    return detail::volumeOf(SurfaceTriangles<Real>(engineOf(interface), maxEdge), level);
}

template SurfaceVolume volume(DelaunayInterface<float>*, double, double);
template SurfaceVolume volume(DelaunayInterface<double>*, double, double);

}  // namespace zyn
