#include "picture.h"

#include <QFile>
#include <QImage>
#include <QString>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

using namespace zyn;

namespace {

constexpr int longerSide = 900, margin = 20, legendWidth = 120;
constexpr int dot = 3;  ///< pixels a dot of the letters

/// Three by five dots: five rows, an octal digit each.
constexpr std::pair<char, int> glyphs[] = {
    {'0', 075557}, {'1', 026227}, {'2', 071747}, {'3', 071717}, {'4', 055711}, {'5', 074717},
    {'6', 074757}, {'7', 071111}, {'8', 075757}, {'9', 075717}, {'A', 025755}, {'B', 065656},
    {'C', 034443}, {'D', 065556}, {'E', 074647}, {'F', 074644}, {'G', 034553}, {'H', 055755},
    {'I', 072227}, {'J', 011152}, {'K', 055655}, {'L', 044447}, {'M', 057755}, {'N', 065555},
    {'O', 025552}, {'P', 065644}, {'Q', 025563}, {'R', 065655}, {'S', 034216}, {'T', 072222},
    {'U', 055557}, {'V', 055552}, {'W', 055775}, {'X', 055255}, {'Y', 055222}, {'Z', 071247},
    {'.', 000002}, {'-', 000700}, {' ', 000000}};

int glyphOf(char c) {
    const auto* const found = std::ranges::find(glyphs, c, &std::pair<char, int>::first);
    return found == std::end(glyphs) ? 0 : found->second;
}

QRgb rgb(const ZynColor4b& c, double shade = 1.0) {
    const auto channel = [shade](unsigned char v) { return std::clamp(int(v * shade), 0, 255); };
    return qRgb(channel(c.r), channel(c.g), channel(c.b));
}

/// How bright the triangle is under a light from the north-west. Slopes count three times.
double shadeOf(const tind& t) {
    double a = 0, b = 0, c = 0;
    if (!t.Normal(a, b, c)) { return 1.0; }
    constexpr double exaggeration = 3.0, ambient = 0.35;
    const double x = exaggeration * a, y = exaggeration * b;
    const double toLight = (-x + y + 1.4 * c) / std::sqrt(1 + 1 + 1.4 * 1.4);
    const double level = 1.4 / std::sqrt(1 + 1 + 1.4 * 1.4);  // keeps its colour
    const double facing = std::max(0.0, toLight / std::sqrt(x * x + y * y + c * c));
    return ambient + (1.0 - ambient) * facing / level;
}

}  // namespace

Picture::Picture(const Enve2d& area_)
    : area(area_),
      pixelsPerMetre(longerSide / std::max({area.width(), area.hight(), 1e-9})),
      mapWidth(std::max(1, int(area.width() * pixelsPerMetre))),
      mapHeight(std::max(1, int(area.hight() * pixelsPerMetre))),
      image(std::make_unique<QImage>(mapWidth + legendWidth + 3 * margin,
                                     std::max(mapHeight, 300) + 2 * margin, QImage::Format_RGB32)) {
    image->fill(Qt::white);
}

Picture::~Picture() = default;

void Picture::fill(const tind& t, const ColorAt& colorAt) {
    double x[3], y[3];  // in pixels, y downwards
    for (int i = 0; i < 3; ++i) {
        x[i] = columnOf(t.vertex[i][0]);
        y[i] = rowOf(t.vertex[i][1]);
    }
    const double shade = shadeOf(t);
    const double area2 = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    if (area2 == 0) { return; }
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
            const double height = weight[0] * t.vertex[0][2] + weight[1] * t.vertex[1][2] +
                                  weight[2] * t.vertex[2][2];
            image->setPixel(margin + column, margin + row, rgb(colorAt(height), shade));
        }
    }
}

void Picture::drawLine(const Pnt3dArray& line, const ZynColor4b& color, double share) {
    for (int i = 1; i < line.size(); ++i) {
        const XPnt3d a = line.get(i - 1), b = line.get(i);
        const double x = columnOf(a.x), y = rowOf(a.y);
        const double dx = columnOf(b.x) - x, dy = rowOf(b.y) - y;
        // A point a pixel; the next step draws the last one.
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

void Picture::drawBar(const IZynColorRamp& ramp, double low, double high) {
    const int x = mapWidth + 2 * margin, top = margin + 10, height = image->height() - 2 * top;
    constexpr int width = 30, ticks = 4;
    for (int y = 0; y < height; ++y) {
        drawPatch(x, top + y, width, 1, ramp.clr(255 - 255 * y / (height - 1)));
    }
    // As many decimals as tell the ticks apart.
    const double step = std::max((high - low) / ticks, 1e-3);
    const int decimals = std::clamp(int(std::ceil(1 - std::log10(step))), 0, 3);
    for (int i = 0; i <= ticks; ++i) {
        char text[32];
        std::snprintf(text, sizeof text, "%.*f M", step >= 10 ? 0 : decimals,
                      low + (high - low) * i / ticks);
        const int y = top + (height - 1) * (ticks - i) / ticks;
        drawPatch(x + width, y, 6, 1, ZynColor4b::Black());
        drawText(x + width + 12, y - 5 * dot / 2, text);
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
        x += 4 * dot;
    }
}

void Picture::drawPatch(int x, int y, int width, int height, const ZynColor4b& color) {
    for (int row = std::max(y, 0); row < std::min(y + height, image->height()); ++row) {
        for (int column = std::max(x, 0); column < std::min(x + width, image->width()); ++column) {
            image->setPixel(column, row, rgb(color));
        }
    }
}

bool Picture::save(const std::string& path) const {
    QFile file(QString::fromLocal8Bit(path.c_str()));
    return file.open(QIODevice::WriteOnly) && image->save(&file, "PNG") && file.flush();
}
