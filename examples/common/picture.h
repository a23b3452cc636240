// A map of a surface seen from above, north up, with a legend beside it.
#pragma once

#include <zyn/color.h>
#include <zyn/envelope.h>
#include <zyn/surface.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QImage;

class Picture {
public:
    /// Makes a white picture with the surface at the left, a legend of this many letters at the
    /// right, and a scale bar below. A surface narrower than a quarter of its length is stretched
    /// to a quarter, and a line below the bar says so.
    Picture(const zyn::SurfaceView& surface, int legendLetters);
    ~Picture();

    using ColorAt = std::function<zyn::ZynColor4b(double height)>;
    /// Fills the triangle, shaded by its slope towards the light.
    void fill(const zyn::SurfaceTriangle& t, const ColorAt& colorAt);
    /// Draws a polyline, one pixel wide, blended with the background by `share` of its colour.
    void drawLine(const zyn::Polyline& line, const zyn::ZynColor4b& color, double share);
    /// Draws a bar of the ramp's colours, the last one on top, with these labels from below.
    void drawBar(const zyn::IZynColorRamp& ramp, const std::vector<std::string>& labels);
    /// Draws entry `row` of a legend, from the top: a patch and a text. The text consists of
    /// capitals, digits, and the characters . - < > = and %.
    void drawKey(int row, const zyn::ZynColor4b& color, const std::string& text);

    /// Writes a PNG file. Throws std::system_error.
    void save(const std::string& path) const;

private:
    [[nodiscard]] double columnOf(double x) const { return (x - area.minX) * scale.x; }
    [[nodiscard]] double rowOf(double y) const { return (area.maxY - y) * scale.y; }
    [[nodiscard]] double shadeOf(const zyn::SurfaceTriangle& t) const;
    void drawScale();
    void mixPixel(int column, int row, const zyn::ZynColor4b& color, double share);
    void drawText(int x, int y, const std::string& text);
    void drawPatch(int x, int y, int width, int height, const zyn::ZynColor4b& color);

    zyn::Enve2d area;
    zyn::XPnt2d scale;  ///< pixels for a length of 1
    double exaggeration;
    int mapWidth, mapHeight;
    std::unique_ptr<QImage> image;
};
