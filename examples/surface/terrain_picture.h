// The surface as a picture: heights by colour and contours, slopes by shading.
#pragma once

#include <zyn/surface.h>

#include <string>

/// Writes a PNG file with contours at this interval; 0 chooses a round one for about twelve
/// contours. Throws std::system_error.
void writePicture(const zyn::SurfaceView& surface, double interval, const std::string& path);
