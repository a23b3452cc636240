#include <zyn/surface.h>

#include <cmath>
#include <cstdio>

using namespace zyn;

int main() {
    std::vector<XPnt3d> points;
    for (int i = 0; i < 10000; ++i) {
        const double x = i % 100, y = i / 100;
        points.emplace_back(x, y, std::sin(x / 9) * std::cos(y / 7));
    }
    const Surface waves(std::move(points));
    std::printf("%d triangles, %.1f square metres\n", waves.triangleCount(), waves.area());
    if (const auto z = waves.heightAt(50, 50)) { std::printf("%.3f m in the middle\n", *z); }
    waves.writeObj("waves.obj");
}
