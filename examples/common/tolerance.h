// The tolerance of points that come without one.
#pragma once

#include <zyn/surface.h>

#include <span>
#include <string>

/// Returns a ten-millionth of the points' larger extent in plan, 0.001 at most. That is less than
/// points are apart, in metres, feet and degrees.
double defaultTolerance(std::span<const zyn::XPnt3d> points);

/// Returns a sentence about the points that the tolerance kept out when the surface
/// was made.
std::string aboutRefused(const zyn::Surface& surface, double tolerance);
