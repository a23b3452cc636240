#include <zyn/network.h>

#include <cmath>
#include <cstdio>

using namespace zyn;

int main() {
    // A round hill of 40 metres on a grid.
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    for (int i = 0; i < 101 * 101; ++i) {
        const double x = i % 101, y = i / 101;
        points->append(
            XPnt3d(x, y, 40 * std::exp(-(std::pow(x - 50, 2) + std::pow(y - 50, 2)) / 500)));
    }

    ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0, -1, -1, 101, 101);
    const int count = addPoints(engine.get(), points.get(), 0.001);
    std::printf("%d points, %d triangles\n", count, surfaceTriangleCount(engine.get()));

    // A road at its foot, which becomes edges of the network.
    ref_ptr<Pnt3dArray> road = newPnt3dArray();
    for (int i = 0; i < 5; ++i) { road->append(XPnt3d(10.5 + 20 * i, 5.25 + i, 1)); }
    ref_ptr<PDoubleArray> fixed = newPDoubleArray();
    const int edges = addBreakline(engine.get(), road.get(), 0.001, fixed.get());
    restoreDelaunay(engine.get(), fixed.get());
    std::printf("the road became %d edges; %s\n", edges,
                validate(engine.get()).isNull() ? "the network is sound" : "damaged");

    double top = 0;
    if (heightAt(engine.get(), 50, 50, top)) { std::printf("the top: %.1f m\n", top); }

    ref_ptr<DoubleArray> levels = newDoubleArray();
    for (double level = 10; level < 40; level += 10) { levels->append(level); }
    ref_ptr<Pnt3dArrayArray> lines = contours(engine.get(), levels.get());
    std::printf("%d contours, the first of %d points\n", lines->size(), lines->get(0)->size());

    const SurfaceVolume above = volume(engine.get(), 20);
    std::printf("%.0f m3 above 20 m, on %.0f m2\n", above.cut, above.cutArea);

    ref_ptr<MatrixDbl> raster = newMatrixDbl();
    rasterize(engine.get(), Enve2d(0, 0, 100, 100), 50, 50, raster.get());
    std::printf("row 25, column 25 of the raster: %.1f m\n", raster->get(25, 25));
}
