// Points and breaklines from files.
#pragma once

#include "point_lines.h"

#include <zyn/surface.h>

#include <string>
#include <vector>

struct PointFile {
    std::vector<zyn::XPnt3d> points{};
    int skipped = 0;        ///< cells without data, or lines that are not points
    bool numbered = false;  ///< whether its lines begin with a point number
};

/// Reads an ESRI ASCII grid or a file of lines with points, recognized by its contents. Throws a
/// Failure.
PointFile readPoints(const std::string& path, Columns columns);

struct BreaklineFile {
    std::vector<zyn::Polyline> polylines{};
    bool numbered = false;
};

/// Reads polylines. Throws a Failure.
BreaklineFile readBreaklines(const std::string& path, Columns columns);
