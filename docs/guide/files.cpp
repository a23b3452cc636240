#include <zyn/network.h>
#include <zyn/textfile.h>

#include <cstdio>
#include <memory>

using namespace zyn;

int main() {
    ref_ptr<Pnt3dArray> points = newPnt3dArray();
    for (int i = 0; i < 25; ++i) { points->append(XPnt3d(i % 5, i / 5, i)); }
    ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0, -1, -1, 5, 5);
    addPoints(engine.get(), points.get(), 0);

    // The network, to go on with later: bit for bit, frame and links included.
    if (!writeBinary(engine.get(), "hill.tin")) { return 1; }
    // The surface, for other programs.
    if (!writeObj(engine.get(), "hill.obj") || !writePly(engine.get(), "hill.ply") ||
        !writeLandXml(engine.get(), "hill.xml", QStringLiteral("hill"))) {
        return 1;
    }

    std::unique_ptr<double[]> owner;  // stands first, to end after the engine
    ref_ptr<IZynDelaunayD> read = newZynDelaunayDouble(0, 0, 0, 1, 1);  // the file brings its frame
    double* vertices = nullptr;
    int count = 0;
    if (!readBinary(read.get(), "hill.tin", vertices, count)) { return 1; }
    owner.reset(vertices);
    std::printf("%d vertices, %d triangles, %.1f square metres as before: %s\n", count,
                surfaceTriangleCount(read.get()), surfaceAreaHorizen(read.get()),
                surfaceArea(read.get()) == surfaceArea(engine.get()) ? "yes" : "no");

    ref_ptr<StringArray> lines = newStringArray();
    lines->append(QStringLiteral("x y\n"));  // no numbers: passed over
    lines->append(QStringLiteral("1.5, 2\n"));
    lines->append(QStringLiteral("3\t4.25 a remark\n"));
    writeLines(QStringLiteral("points.txt"), lines, nullptr);
    ref_ptr<Pnt2dArray> plan;
    if (!readPnt2dArray(QStringLiteral("points.txt"), plan, nullptr)) { return 1; }
    for (const XPnt2d& p : *plan) { std::printf("%g %g\n", p.x, p.y); }
}
