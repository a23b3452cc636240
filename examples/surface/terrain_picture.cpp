#include "terrain_picture.h"

#include "picture.h"

using namespace zyn;

namespace {

/// From green valleys over dry slopes to bare heights.
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

}  // namespace

bool writePicture(IZynDelaunayD& engine, double maxEdge, const Measures& surface,
                  const std::string& path) {
    Picture picture(surface.area2d);
    const ref_ptr<IZynColorRamp> ramp = terrainRamp();
    const double range = surface.maxZ - surface.minZ;
    const auto colorAt = [&](double height) {
        return ramp->clr(range > 0 ? int(255 * (height - surface.minZ) / range) : 0);
    };
    forSurface(engine, maxEdge, [&](const tind& t) { picture.fill(t, colorAt); });
    picture.drawBar(*ramp, surface.minZ, surface.maxZ);
    return picture.save(path);
}
