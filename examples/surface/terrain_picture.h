// The surface as a picture: heights by colour and contours, slopes by shade.
#pragma once

#include "network.h"
#include "options.h"

#include <string>

/// Writes a PNG file of the triangles without an edge longer than options.maxEdge; false when it
/// cannot be written whole.
[[nodiscard]] bool writePicture(zyn::IZynDelaunayD& engine, const Options& options,
                                const Measures& surface, const std::string& path);
