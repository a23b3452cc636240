// Points and breaklines out of files, and where they lie.
#pragma once

#include <zyn/array.h>
#include <zyn/envelope.h>

#include <string>

/// Appends the points of an ESRI ASCII grid or of a file of `x y z` lines; the contents tell which.
/// The number of cells without data, or of lines that are not points. Throws a Failure.
int readPoints(const std::string& path, zyn::Pnt3dArray& points);

/// Reads polylines, a row each. Throws a Failure.
zyn::ref_ptr<zyn::Pnt3dArrayArray> readBreaklines(const std::string& path);

/// The box around the points in plan.
zyn::Enve2d boxAround(zyn::Pnt3dArray& points);
