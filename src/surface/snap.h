// The rule by which lines that nearly meet go through one vertex.
#pragma once

#include <zyn/point.h>

#include "surface/interpolate.h"
#include "triangulation/predicates.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zyn::detail {

/// Represents a straight piece between two vertices.
template <class Real>
struct VertexSegment {
    Real* from = nullptr;
    Real* to = nullptr;
};

/// Returns the distance of two vertices in plan.
template <class Real>
double planeDistance(const Real* a, const Real* b) {
    const Xy d = xyOf(b) - xyOf(a);
    return std::hypot(d.x, d.y);
}

/// Returns whether both parts are shorter than the segment if it is split at v, so that repeated
/// splitting ends.
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

/// Returns the place where the line crosses the edge, with the height of the edge. The result is
/// exact if it and the products that lead to it are representable.
template <class Real>
XPnt3<Real> crossingOf(const VertexSegment<Real>& edge, const VertexSegment<Real>& line) {
    // Products of tiny coordinates would vanish. A unit that is a power of two keeps every digit.
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

/// Decides which vertices a line is to go through: those whose square it touches. The size of the
/// square is the tolerance plus the rounding of a crossing.
template <class Real>
class Snap {
public:
    /// Sets the half side of a square, in tolerances and in roundings.
    struct Reach {
        double tolerance, rounding;
    };
    static constexpr Reach straight{1, 1};  ///< for a line as it was passed in
    static constexpr Reach bent{4, 16};     ///< for a line that has been bent several times

    explicit Snap(Real tolerance_) : tolerance(double(tolerance_)) {}

    /// Returns half the side of the squares for a line.
    [[nodiscard]] double reach(const VertexSegment<Real>& line, Reach times = straight) const {
        // The first term is for the coordinates of a crossing, the second for their computation.
        constexpr double rounding = double(std::numeric_limits<Real>::epsilon()) +
                                    4 * std::numeric_limits<double>::epsilon();
        const Xy a = xyOf(line.from), b = xyOf(line.to);
        const double size = std::max({std::abs(a.x), std::abs(a.y), std::abs(b.x), std::abs(b.y)});
        return times.tolerance * tolerance + times.rounding * rounding * size;
    }
    /// Returns whether the segment touches the square about v.
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
