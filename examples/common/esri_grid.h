// ESRI ASCII grids: a header of keys and values, then the heights row by row from north to south.
#pragma once

#include "line_reader.h"

#include <zyn/point.h>

#include <string_view>
#include <vector>

/// Returns whether `line` begins the header of a grid.
bool startsEsriGrid(std::string_view line);

/// Reads a grid from the reader's current line on, and appends a point for the centre of each cell.
/// Returns the number of cells without data. Throws a Failure.
int readEsriGrid(LineReader& file, std::vector<zyn::XPnt3d>& points);
