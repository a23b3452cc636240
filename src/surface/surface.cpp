// Surface: construction, changes and points.
#include <zyn/surface.h>

#include "surface/surface_error.h"
#include "surface/surface_state.h"

#include <cmath>
#include <utility>

namespace zyn {

using namespace detail;

namespace {

void requireTolerance(double tolerance) {
    if (!(tolerance >= 0)) { throwBad("the tolerance is not 0 or more", tolerance); }
}

double checkedMaxEdge(double length) {
    if (std::isnan(length)) { throwBad("maxEdge is not a number", length); }
    return length;
}

}  // namespace

Surface::Surface() : Surface(SurfaceOptions()) {}

Surface::Surface(const SurfaceOptions& options) : Surface(std::vector<XPnt3d>(), options) {}

Surface::Surface(std::vector<XPnt3d>&& points, const SurfaceOptions& options)
    : own(std::make_unique<SurfaceState>(options)) {
    requireTolerance(options.tolerance);
    maxEdge = checkedMaxEdge(options.maxEdge);
    state = own.get();
    own->firstReport = own->addPoints(own->points.take(std::move(points)), options.progress);
}

Surface::Surface(std::span<const XPnt3d> points, const SurfaceOptions& options)
    : Surface(std::vector<XPnt3d>(points.begin(), points.end()), options) {}

Surface::Surface(const Pnt3dArray& points, const SurfaceOptions& options)
    : Surface(std::vector<XPnt3d>(points.begin(), points.end()), options) {}

Surface::Surface(std::initializer_list<XPnt3d> points, const SurfaceOptions& options)
    : Surface(std::vector<XPnt3d>(points), options) {}

Surface::Surface(Surface&& other) noexcept
    : SurfaceView(std::exchange<SurfaceView>(other, {})), own(std::move(other.own)) {}

Surface& Surface::operator=(Surface&& other) noexcept {
    SurfaceView::operator=(std::exchange<SurfaceView>(other, {}));
    own = std::move(other.own);
    return *this;
}

Surface::~Surface() = default;

/// Returns the state. Makes an empty one first if the surface was moved from.
SurfaceState& Surface::changeable() {
    if (!own) {
        const double limit = maxEdge;  // may have been set after the move
        *this = Surface();
        maxEdge = limit;
    }
    return *own;
}

PointReport Surface::addPoints(std::span<const XPnt3d> points, IZynProgress* progress) {
    SurfaceState& changed = changeable();
    return changed.addPoints(changed.points.append(points), progress);
}

bool Surface::removePoint(int number) { return changeable().remove(number); }

BreaklineReport Surface::addBreaklines(std::span<const Polyline> lines,
                                       const BreaklineOptions& options) {
    requireTolerance(options.tolerance);
    return changeable().addLines(lines, options);
}

void Surface::setMaxEdge(double length) { maxEdge = checkedMaxEdge(length); }

SurfaceView SurfaceView::withMaxEdge(double length) const {
    SurfaceView view(*this);
    view.maxEdge = checkedMaxEdge(length);
    return view;
}

PointReport Surface::pointReport() const { return own ? own->firstReport : PointReport(); }

int Surface::pointCount() const { return own ? own->points.size() : 0; }

int Surface::vertexCount() const { return own ? own->vertexCount : 0; }

XPnt3d Surface::point(int number) const {
    requireNumber(number, pointCount());
    return own->points.at(number);
}

std::optional<int> Surface::vertexOf(int number) const {
    requireNumber(number, pointCount());
    const auto found = own->standIns.find(number);
    const int vertex = found == own->standIns.end() ? number : found->second;
    return own->isVertex(vertex) ? std::optional(vertex) : std::nullopt;
}

}  // namespace zyn
