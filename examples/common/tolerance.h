// The default tolerance of points.
#pragma once

#include <zyn/surface.h>

#include <span>
#include <string>

/// Returns a ten-millionth of the larger extent of the points in the plane, at most 0.001. In
/// metres, feet and degrees that is less than the distance of different points.
double defaultTolerance(std::span<const zyn::XPnt3d> points);

/// Returns a sentence about the points that the tolerance refused when the surface was made.
std::string aboutRefused(const zyn::Surface& surface, double tolerance);
