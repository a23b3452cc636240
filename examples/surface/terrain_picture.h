// The surface as a picture: heights by colour, slopes by shade.
#pragma once

#include "network.h"

#include <string>

/// Writes a PNG file of the triangles without an edge longer than `maxEdge`; false when it cannot be
/// written whole.
[[nodiscard]] bool writePicture(zyn::IZynDelaunayD& engine, double maxEdge, const Measures& surface,
                                const std::string& path);
