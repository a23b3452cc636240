#include <zyn/surface.h>

#include <cmath>
#include <cstdio>

int main() {
    zyn::ref_ptr<zyn::Pnt3dArray> points = zyn::newPnt3dArray();
    for (int i = 0; i < 10000; ++i) {
        const double x = i % 100, y = i / 100;
        points->append({x, y, std::sin(x / 9) * std::cos(y / 7)});
    }
    zyn::ref_ptr<zyn::IZynDelaunayD> engine = zyn::newZynDelaunayDouble(0, -1, -1, 100, 100);
    zyn::addPoints(engine.get(), points.get(), 0);  // from now on the points must not move
    std::printf("%d triangles, ", zyn::surfaceTriangleCount(engine.get()));
    std::printf("%.1f square metres\n", zyn::surfaceArea(engine.get()));
    return zyn::writeObj(engine.get(), "waves.obj") ? 0 : 1;
}
