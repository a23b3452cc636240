#include "terrain_picture.h"

#include "picture.h"
#include "rounding.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

using namespace zyn;

namespace {

/// Returns the colours from green valleys over dry slopes to bare heights.
ref_ptr<IZynColorRamp> terrainRamp() {
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();
    grade->setMode(IZynColorRamp::Linear);
    grade->setStartColor(0x00405C26);  // 0x00BBGGRR
    grade->addPeg(0x00488C56, 0.2F);
    grade->addPeg(0x006EBEC4, 0.45F);
    grade->addPeg(0x00466996, 0.7F);
    grade->addPeg(0x00AAB4BE, 0.88F);
    grade->setEndColor(0x00FAFAFA);
    ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
    grade->fillTable(ramp->pcolor(), ramp->size());
    return ramp;
}

/// Returns the multiples of the interval between the lowest and the highest height, at most a
/// thousand.
std::vector<double> contourLevels(const Enve3d& box, double interval) {
    std::vector<double> levels;
    const double range = box.HightZ();
    if (!(range > 0)) { return levels; }
    const double step = std::max(interval > 0 ? interval : roundUp(range / 12), range / 1000);
    for (double n = std::ceil(box.minZ / step); n * step <= box.maxZ; ++n) {
        levels.push_back(n * step);
    }
    return levels;
}

/// Returns five heights from the lowest to the highest, with the decimals that distinguish them.
std::vector<std::string> barLabels(const Enve3d& box) {
    constexpr int steps = 4;
    const double step = box.HightZ() / steps;
    const int decimals = decimalsFor(step, 3, 0);
    std::vector<std::string> labels;
    for (int i = 0; i <= steps; ++i) {
        labels.push_back(withDecimals(box.minZ + i * step, decimals));
    }
    return labels;
}

}  // namespace

void writePicture(const SurfaceView& surface, double interval, const std::string& path) {
    const Enve3d box = surface.bounds();
    const std::vector<std::string> labels = barLabels(box);
    const std::size_t letters = std::ranges::max(labels, {}, &std::string::size).size();
    Picture picture(surface, int(letters));
    const ref_ptr<IZynColorRamp> ramp = terrainRamp();
    const double range = box.HightZ();
    const auto colorAt = [&](double height) {
        return ramp->clr(range > 0 ? int(255 * (height - box.minZ) / range) : 0);
    };
    for (const SurfaceTriangle& t : surface.triangles()) { picture.fill(t, colorAt); }
    for (const Polyline& line : surface.contours(contourLevels(box, interval))) {
        picture.drawLine(line, ZynColor4b(52, 38, 28, 255), 0.55);
    }
    picture.drawBar(*ramp, labels);
    picture.save(path);
}
