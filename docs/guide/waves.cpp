#include <zyn/network.h>

#include <cmath>
#include <cstdio>

using namespace zyn;

int main() {
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    for (int i = 0; i < 10000; ++i) {
        const double x = i % 100, y = i / 100;
        points->append({x, y, std::sin(x / 9) * std::cos(y / 7)});
    }
    ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0, -1, -1, 100, 100);
    addPoints(engine.get(), points.get(), 0);  // from now on the points must not move
    std::printf("%d triangles, %.1f square metres\n", surfaceTriangleCount(engine.get()),
                surfaceArea(engine.get()));
    return writeObj(engine.get(), "waves.obj") ? 0 : 1;
}
