// Where lines that nearly meet are taken through one vertex.
#pragma once

#include <zyn/point.h>

#include "surface/interpolate.h"
#include "triangulation/predicates.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zyn::detail {

/// A straight piece between two vertices.
template <class Real>
struct VertexSegment {
    Real* from = nullptr;
    Real* to = nullptr;
};

template <class Real>
double planeDistance(const Real* a, const Real* b) {
    const Xy d = xyOf(b) - xyOf(a);
    return std::hypot(d.x, d.y);
}

/// Whether both ways from v to the ends are shorter than the segment, so that splitting there ends.
template <class Real>
bool isBetween(const VertexSegment<Real>& line, const Real* v) {
    const double length = planeDistance(line.from, line.to);
    return v != line.from && v != line.to && planeDistance<Real>(line.from, v) < length &&
           planeDistance<Real>(v, line.to) < length;
}
template <class Real>
bool isEndOrBetween(const VertexSegment<Real>& line, const Real* v) {
    return v == line.from || v == line.to || isBetween(line, v);
}

/// Returns the place where the line crosses the edge, with the edge's height there. Where it is a
/// number of the precision that short products lead to, there is no rounding.
template <class Real>
XPnt3<Real> crossingOf(const VertexSegment<Real>& edge, const VertexSegment<Real>& line) {
    // Products of tiny coordinates would vanish; a power of two keeps every digit.
    const double size = std::max({std::abs(double(line.from[0])), std::abs(double(line.from[1])),
                                  std::abs(double(line.to[0])), std::abs(double(line.to[1]))});
    const double unit = size < 0x1p-200 ? 0x1p300 : 1;
    const auto toSide = [&line, unit](const Real* v) {
        const double a[] = {unit * double(line.from[0]), unit * double(line.from[1])};
        const double b[] = {unit * double(line.to[0]), unit * double(line.to[1])};
        const double c[] = {unit * double(v[0]), unit * double(v[1])};
        return std::abs(orient2dexact(a, b, c));
    };
    const double fromStart = toSide(edge.from);
    const double sum = fromStart + toSide(edge.to);
    const auto place = [&](int axis) {
        const double start = double(edge.from[axis]);
        const double extent = double(edge.to[axis]) - start;
        return Real(start + (sum > 0 ? extent * fromStart / sum : extent / 2));
    };
    const double share = sum > 0 ? fromStart / sum : 0.5;
    return {place(0), place(1), Real(interpolate(double(edge.from[2]), double(edge.to[2]), share))};
}

/// The square about a vertex that lines are taken through: what the tolerance and the rounding of a
/// crossing fill.
template <class Real>
class Snap {
public:
    /// The half side, in tolerances and in roundings.
    struct Reach {
        double tolerance, rounding;
    };
    static constexpr Reach straight{1, 1};  ///< about a line as it was given
    static constexpr Reach bent{4, 16};     ///< about one that has been bent several times

    explicit Snap(Real tolerance_) : tolerance(double(tolerance_)) {}

    [[nodiscard]] double reach(const VertexSegment<Real>& line, Reach times = straight) const {
        // Of the coordinates of a crossing, and before that of the way there.
        constexpr double rounding = double(std::numeric_limits<Real>::epsilon()) +
                                    4 * std::numeric_limits<double>::epsilon();
        const Xy a = xyOf(line.from), b = xyOf(line.to);
        const double size = std::max({std::abs(a.x), std::abs(a.y), std::abs(b.x), std::abs(b.y)});
        return times.tolerance * tolerance + times.rounding * rounding * size;
    }
    /// Whether the segment touches the square about v.
    [[nodiscard]] bool isClose(const VertexSegment<Real>& line, const Real* v,
                               Reach times = straight) const {
        const Xy along = xyOf(line.to) - xyOf(line.from), toV = xyOf(v) - xyOf(line.from);
        const double most = reach(line, times);
        const double length = std::abs(along.x) + std::abs(along.y);
        const double side = along.x / length * toV.y - along.y / length * toV.x;
        const auto spans = [most](double extent, double offset) {
            return std::min(extent, 0.0) - most <= offset && offset <= std::max(extent, 0.0) + most;
        };
        return std::abs(side) <= most && spans(along.x, toV.x) && spans(along.y, toV.y);
    }

private:
    double tolerance;
};

}  // namespace zyn::detail
