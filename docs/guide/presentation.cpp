#include <zyn/color.h>

#include <cstdio>

using namespace zyn;

int main() {
    ref_ptr<IZynGradeColor> grade = newZynGradeColor();
    grade->setStartColor(0x00006400);  // dark green; a packed colour is 0x00BBGGRR
    grade->addPeg(0x0000FFFF, 0.5F);   // yellow in the middle
    grade->setEndColor(0x00FFFFFF);    // white
    grade->setMode(IZynColorRamp::Linear);

    ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
    grade->fillTable(ramp->pcolor(), ramp->size());

    const double low = 200, high = 1000;
    ref_ptr<Color4bArray> colors = newColor4bArray();  // as for the points of a cloud
    for (const double height : {200.0, 400.0, 600.0, 950.0}) {
        const int place = int(255 * (height - low) / (high - low));
        const ZynColor4b c = ramp->clr(place);
        std::printf("%4.0f m: red %3d, green %3d, blue %3d\n", height, c.r, c.g, c.b);
        colors->append(c);
    }

    double h = 0, s = 0, v = 0;
    RGB2HSV(1.0, 0.5, 0.0, &h, &s, &v);
    std::printf("orange: hue %g, saturation %g, value %g\n", h, s, v);
    std::printf("%d colours in an array\n", colors->size());
}
