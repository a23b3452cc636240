#include "tolerance.h"

#include <zyn/envelope.h>

#include <algorithm>
#include <cstdio>

double defaultTolerance(std::span<const zyn::XPnt3d> points) {
    zyn::Enve2d box;
    for (const zyn::XPnt3d& p : points) { box.SetBox(p); }
    constexpr double share = 1e-7, most = 0.001;
    return std::min(most, share * std::max(box.width(), box.hight()));
}

std::string aboutRefused(const zyn::Surface& surface, double tolerance) {
    const zyn::PointReport report = surface.pointReport();
    char text[160];
    std::snprintf(text, sizeof text,
                  "refused %d of %d points that are within %g of another in x and y",
                  report.refused, report.refused + report.vertices, tolerance);
    return text;
}
