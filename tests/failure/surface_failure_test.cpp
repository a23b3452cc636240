// A Surface that runs out of memory at each allocation of a change stays valid, still answers
// queries, and accepts the same change once there is enough again.
#include <zyn/surface.h>

#include <functional>
#include <string>
#include <vector>

#include "expect_harmless.h"
#include "point_sets.h"
#include "surface_check.h"

namespace {

using namespace zyn;

const std::vector<Polyline> first{{{1, 1, 0}, {18, 17, 0}}, {{0, 19, 1}, {19, 19, 1}}};
const std::vector<Polyline> second{{{2, 18, 5}, {17, 3, 5}, {17, 12, 5}}, {{0, 9, 6}, {19, 8, 6}}};

struct Ground {
    Ground() { surface.addBreaklines(first); }
    void expectValid() {
        EXPECT_EQ(support::faultOf(surface), "");
        for (int i = 0; i < surface.pointCount(); ++i) { (void)surface.vertexOf(i); }
    }

    Surface surface{support::makePointSet("RandomOrder", 1, 400).points, {.tolerance = 1e-3}};
};

void expectHarmlessFor(const char* name, const std::function<bool(Surface&)>& run) {
    expectHarmless<Ground>(
        name, [&run](Ground& g) { return run(g.surface); }, &Ground::expectValid);
}

TEST(SurfaceFailure, LeavesAValidSurface) {
    // Duplicates of vertices and of each other, and points on the first lines.
    std::vector<XPnt3d> inside = support::makePointSet("Duplicates", 2, 300).points;
    for (int i = 0; i < 20; ++i) { inside.emplace_back(i, 19, 2); }
    const auto add = [](const std::vector<XPnt3d>& points) {
        return [&points](Surface& s) { return s.addPoints(points).notFinite == 0; };
    };
    expectHarmlessFor("addPoints", add(inside));
    auto wide = inside;
    for (XPnt3d& p : wide) { p.set(100 * p.x - 900, 100 * p.y, p.z); }
    expectHarmlessFor("addPoints beyond the frame", add(wide));
    const auto round = support::makePointSet("Circle", 3, 120).points;  // a new hull
    expectHarmlessFor("addPoints around", add(round));
    for (const bool giveWay : {false, true}) {
        expectHarmlessFor("addBreaklines", [giveWay](Surface& s) {
            return s.addBreaklines(second, {.giveWay = giveWay}).edges > 0;
        });
    }
    // If closing the hull fails, the vertex is already removed.
    const int corner = Ground().surface.rim()[0][0];
    for (const int number : {7, corner}) {
        expectHarmlessFor("removePoint",
                          [=](Surface& s) { return s.removePoint(number) || !s.vertexOf(number); });
    }
    expectHarmlessFor("new", [&inside](Surface& s) {
        s = Surface(inside, {.heights = Heights::mean});
        return s.triangleCount() > 0;
    });
}

}  // namespace
