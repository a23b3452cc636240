#include <zyn/surface.h>

#include <cmath>
#include <cstdio>

using namespace zyn;

int main() {
    // A round hill of 40 metres on a grid, with one point measured twice.
    std::vector<XPnt3d> points;
    for (int i = 0; i < 101 * 101; ++i) {
        const double x = i % 101, y = i / 101;
        const double r2 = std::pow(x - 50, 2) + std::pow(y - 50, 2);
        points.emplace_back(x, y, 40 * std::exp(-r2 / 500));
    }
    points.emplace_back(50, 50, 39.5);

    Surface hill(points, {.tolerance = 0.001, .heights = Heights::lowest});
    const PointReport taken = hill.pointReport();
    std::printf("%d vertices, %d refused, %d triangles\n", taken.vertices, taken.refused,
                hill.triangleCount());

    // Two roads that cross at its foot.
    const std::vector<Polyline> roads{{{10.5, 5.25, 1}, {90.5, 9.25, 1}},
                                      {{20.5, 1.5, 2}, {22.5, 30.5, 2}}};
    const BreaklineReport lines = hill.addBreaklines(roads);
    std::printf("the roads became %d edges with %d crossing, %d lost\n", lines.edges,
                lines.crossings, lines.lost);

    if (const std::optional<double> z = hill.heightAt(50, 50)) {
        std::printf("the top: %.1f m\n", *z);
    }
    double steep = 0;
    for (const SurfaceTriangle& t : hill.triangles()) {
        if (t.normal().z < 0.7) { steep += t.area(); }
    }
    std::printf("%.0f m2 are steep\n", steep);

    const std::vector<Polyline> isolines = hill.contours({10, 20, 30});
    std::printf("%zu contours, the first of %zu points\n", isolines.size(), isolines[0].size());
    const SurfaceVolume above = hill.volume(20);
    std::printf("%.0f m3 above 20 m, on %.0f m2\n", above.cut, above.cutArea);
    const Raster raster = hill.rasterize(Enve2d(0, 0, 100, 100), 50, 50);
    std::printf("row 25, column 25 of the raster: %.1f m\n", raster.values[25 * 50 + 25]);

    hill.writePly("hill.ply", PlyNormals::vertex);
}
