#include "picture.h"

#include "rounding.h"

#include <QFile>
#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <system_error>
#include <utility>

using namespace zyn;

namespace {

constexpr int longerSide = 900, shorterSide = longerSide / 4, margin = 20;
constexpr int dot = 3;                                      ///< pixels per dot of the letters
constexpr int letterWidth = 4 * dot, lineHeight = 9 * dot;  ///< gaps included
constexpr int legendText = 42;                              ///< left edge of the legend's text

/// Three by five dots: five rows, one octal digit each.
constexpr std::pair<char, int> glyphs[] = {
    {'0', 075557}, {'1', 026227}, {'2', 071747}, {'3', 071717}, {'4', 055711}, {'5', 074717},
    {'6', 074757}, {'7', 071111}, {'8', 075757}, {'9', 075717}, {'A', 025755}, {'B', 065656},
    {'C', 034443}, {'D', 065556}, {'E', 074647}, {'F', 074644}, {'G', 034553}, {'H', 055755},
    {'I', 072227}, {'J', 011152}, {'K', 055655}, {'L', 044447}, {'M', 057755}, {'N', 065555},
    {'O', 025552}, {'P', 065644}, {'Q', 025563}, {'R', 065655}, {'S', 034216}, {'T', 072222},
    {'U', 055557}, {'V', 055552}, {'W', 055775}, {'X', 055255}, {'Y', 055222}, {'Z', 071247},
    {'.', 000002}, {'-', 000700}, {'<', 012421}, {'>', 042124}, {'=', 007070}, {'%', 051245},
    {' ', 000000}};

int glyphOf(char c) {
    const auto* const found = std::ranges::find(glyphs, c, &std::pair<char, int>::first);
    return found == std::end(glyphs) ? 0 : found->second;
}

QRgb rgb(const ZynColor4b& c, double shade = 1.0) {
    const auto channel = [shade](unsigned char v) { return std::clamp(int(v * shade), 0, 255); };
    return qRgb(channel(c.r), channel(c.g), channel(c.b));
}

/// Returns the pixels per unit of length along an axis of this extent. The longer side of the map
/// decides, unless this axis would then get fewer than `shorterSide` pixels.
double scaleOf(double extent, const Enve2d& area) {
    constexpr double least = 1e-9;
    const double longer = std::max({area.width(), area.hight(), least});
    return std::max(longerSide / longer, shorterSide / std::max(extent, least));
}

/// Returns the exaggeration of slopes for the shading. It is three, or less if most of the ground
/// would be black, as with degrees for x and y.
double exaggerationOf(const SurfaceView& surface) {
    constexpr double most = 3, steepest = 0.9;
    const double ratio = surface.area() / surface.planArea();
    const double meanSlope = std::sqrt(std::max(0.0, ratio * ratio - 1));
    return std::min(most, steepest / meanSlope);
}

/// Returns the lines below the map: the scale bar, and a note on a stretched map.
int linesBelow(const XPnt2d& scale) { return scale.x == scale.y ? 1 : 2; }

}  // namespace

Picture::Picture(const SurfaceView& surface, int legendLetters)
    : area(surface.bounds().getEnve2d()),
      scale(scaleOf(area.width(), area), scaleOf(area.hight(), area)),
      exaggeration(exaggerationOf(surface)),
      mapWidth(std::clamp(int(area.width() * scale.x), shorterSide, longerSide)),
      mapHeight(std::clamp(int(area.hight() * scale.y), shorterSide, longerSide)),
      image(std::make_unique<QImage>(
          mapWidth + legendText + legendLetters * letterWidth + 3 * margin,
          mapHeight + linesBelow(scale) * lineHeight + 2 * margin, QImage::Format_RGB32)) {
    image->fill(Qt::white);
    drawScale();
}

Picture::~Picture() = default;

/// Returns the brightness of the triangle under a light from the north-west.
double Picture::shadeOf(const SurfaceTriangle& t) const {
    constexpr double ambient = 0.35;
    const XPnt3d normal = t.normal();
    const double x = exaggeration * normal.x, y = exaggeration * normal.y;
    // The light comes from (-1, 1, 1.4), and level ground keeps its colour.
    const double facing = std::max(0.0, (y - x + 1.4 * normal.z) / std::hypot(x, y, normal.z));
    return ambient + (1.0 - ambient) * facing / 1.4;
}

void Picture::fill(const SurfaceTriangle& t, const ColorAt& colorAt) {
    double x[3], y[3], z[3];  // in pixels, y downwards; the height
    for (int i = 0; i < 3; ++i) {
        const XPnt3d corner = t.corner(i);
        x[i] = columnOf(corner.x);
        y[i] = rowOf(corner.y);
        z[i] = corner.z;
    }
    const double area2 = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    if (area2 == 0) { return; }
    const double shade = shadeOf(t);
    const auto first = [](const double* v) {
        return int(std::ceil(*std::min_element(v, v + 3) - 0.5));
    };
    const auto last = [](const double* v, int size) {
        return std::min(size - 1, int(std::floor(*std::max_element(v, v + 3) - 0.5)));
    };
    for (int row = std::max(0, first(y)); row <= last(y, mapHeight); ++row) {
        for (int column = std::max(0, first(x)); column <= last(x, mapWidth); ++column) {
            const double px = column + 0.5, py = row + 0.5;
            double weight[3];
            for (int i = 0; i < 3; ++i) {
                const int j = (i + 1) % 3, k = (i + 2) % 3;
                weight[i] = ((x[j] - px) * (y[k] - py) - (x[k] - px) * (y[j] - py)) / area2;
            }
            if (weight[0] < 0 || weight[1] < 0 || weight[2] < 0) { continue; }
            const double height = weight[0] * z[0] + weight[1] * z[1] + weight[2] * z[2];
            image->setPixel(margin + column, margin + row, rgb(colorAt(height), shade));
        }
    }
}

void Picture::drawLine(const Polyline& line, const ZynColor4b& color, double share) {
    for (std::size_t i = 1; i < line.size(); ++i) {
        const XPnt3d a = line[i - 1], b = line[i];
        const double x = columnOf(a.x), y = rowOf(a.y);
        const double dx = columnOf(b.x) - x, dy = rowOf(b.y) - y;
        // One point per pixel; the next step draws the last one.
        const int steps = std::max(1, int(std::ceil(std::max(std::abs(dx), std::abs(dy)))));
        int lastColumn = -1, lastRow = -1;
        for (int n = 0; n < steps; ++n) {
            const int column = int(x + dx * n / steps), row = int(y + dy * n / steps);
            if (column != lastColumn || row != lastRow) { mixPixel(column, row, color, share); }
            lastColumn = column;
            lastRow = row;
        }
    }
}

void Picture::mixPixel(int column, int row, const ZynColor4b& color, double share) {
    if (column < 0 || column >= mapWidth || row < 0 || row >= mapHeight) { return; }
    const QRgb below = image->pixel(margin + column, margin + row);
    const auto mixed = [share](int under, int over) { return int(under + share * (over - under)); };
    image->setPixel(margin + column, margin + row,
                    qRgb(mixed(qRed(below), color.r), mixed(qGreen(below), color.g),
                         mixed(qBlue(below), color.b)));
}

/// Draws a bar for a round length along x, from an eighth of the map's width up to two and a half
/// times that.
void Picture::drawScale() {
    const ZynColor4b black = ZynColor4b::Black();
    const double length = roundUp(mapWidth / scale.x / 8);
    const int x = margin, y = margin + mapHeight + lineHeight / 2;
    const int width = int(std::lround(length * scale.x));
    drawPatch(x, y + 2 * dot, width, dot, black);
    drawPatch(x, y, dot, 5 * dot, black);
    drawPatch(x + width - dot, y, dot, 5 * dot, black);
    drawText(x + width + letterWidth, y, withDecimals(length, decimalsFor(length, 1, 0)));
    if (linesBelow(scale) > 1) {
        const double stretch = std::max(scale.x / scale.y, scale.y / scale.x);
        drawText(x, y + lineHeight,
                 std::string(scale.x > scale.y ? "X" : "Y") + " STRETCHED " +
                     withDecimals(stretch, decimalsFor(stretch, 2, 0)) + " TIMES");
    }
}

void Picture::drawBar(const IZynColorRamp& ramp, const std::vector<std::string>& labels) {
    const int x = mapWidth + 2 * margin, top = margin + 10, height = mapHeight - 20;
    constexpr int width = 30;
    for (int y = 0; y < height; ++y) {
        drawPatch(x, top + y, width, 1, ramp.clr(255 - 255 * y / (height - 1)));
    }
    const int last = int(labels.size()) - 1;
    for (int i = 0; i <= last; ++i) {
        const int y = top + (height - 1) * (last - i) / last;
        drawPatch(x + width, y, 6, 1, ZynColor4b::Black());
        drawText(x + legendText, y - 5 * dot / 2, labels[std::size_t(i)]);
    }
}

void Picture::drawKey(int row, const ZynColor4b& color, const std::string& text) {
    const int x = mapWidth + 2 * margin, y = margin + 30 * row;
    drawPatch(x, y, 22, 22, color);
    drawText(x + 30, y + 4, text);
}

void Picture::drawText(int x, int y, const std::string& text) {
    for (const char c : text) {
        const int glyph = glyphOf(c);
        for (int bit = 0; bit < 15; ++bit) {
            if ((glyph >> (14 - bit) & 1) != 0) {
                drawPatch(x + bit % 3 * dot, y + bit / 3 * dot, dot, dot, ZynColor4b::Black());
            }
        }
        x += letterWidth;
    }
}

void Picture::drawPatch(int x, int y, int width, int height, const ZynColor4b& color) {
    for (int row = std::max(y, 0); row < std::min(y + height, image->height()); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + width, image->width()); ++column) {
            image->setPixel(column, row, rgb(color));
        }
    }
}

void Picture::save(const std::string& path) const {
    QFile file(QString::fromLocal8Bit(path.c_str()));
    if (!file.open(QIODevice::WriteOnly) || !image->save(&file, "PNG") || !file.flush()) {
        throw std::system_error(std::make_error_code(std::errc::io_error), path);
    }
}
