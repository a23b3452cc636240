// Points and breaklines out of files, and where they lie.
#pragma once

#include "point_lines.h"

#include <zyn/array.h>
#include <zyn/envelope.h>

#include <string>

struct PointFile {
    zyn::ref_ptr<zyn::Pnt3dArray> points = zyn::newPnt3dArray();
    int skipped = 0;        ///< cells without data, or lines that are not points
    bool numbered = false;  ///< whether its lines begin with a point number
};

/// Reads an ESRI ASCII grid or a file of lines with points; the contents tell which. Throws a
/// Failure.
PointFile readPoints(const std::string& path, Columns columns);

struct BreaklineFile {
    zyn::ref_ptr<zyn::Pnt3dArrayArray> polylines = zyn::newPnt3dArrayArray();
    bool numbered = false;
};

/// Reads polylines. Throws a Failure.
BreaklineFile readBreaklines(const std::string& path, Columns columns);

/// The box around the points in plan.
zyn::Enve2d boxAround(zyn::Pnt3dArray& points);
