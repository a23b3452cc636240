// The surface as a picture: heights by colour and contours, slopes by shade.
#pragma once

#include <zyn/surface.h>

#include <string>

/// Writes a PNG file with contours at this interval; 0 takes a round one that makes about twelve.
/// Throws std::system_error.
void writePicture(const zyn::SurfaceView& surface, double interval, const std::string& path);
