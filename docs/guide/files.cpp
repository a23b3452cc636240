#include <zyn/network.h>
#include <zyn/textfile.h>

#include <cstdio>

using namespace zyn;

int main() {
    auto points = make<Pnt3dArray>();
    for (int i = 0; i < 25; ++i) { points->append(XPnt3d(i % 5, i / 5, i)); }
    auto engine = make<IZynDelaunayD>(0, -1, -1, 5, 5);
    addPoints(engine.get(), points.get(), 0);

    // Saves the network exactly, frame and links included.
    if (!writeBinary(*engine, "hill.tin")) { return 1; }
    // Exports the surface for other programs.
    if (!writeObj(*engine, "hill.obj") || !writePly(*engine, "hill.ply") ||
        !writeLandXml(*engine, "hill.xml", QStringLiteral("hill"), LengthUnit::metre)) {
        return 1;
    }

    auto read = make<IZynDelaunayD>(0, 0, 0, 1, 1);  // the file replaces the frame
    if (!readBinary(*read, "hill.tin")) { return 1; }
    std::printf("%d vertices, %d triangles, %.1f square metres as before: %s\n", vertexCount(*read),
                surfaceTriangleCount(*read), surfaceAreaHorizen(*read),
                surfaceArea(*read) == surfaceArea(*engine) ? "yes" : "no");

    auto lines = make<StringArray>();
    lines->append(QStringLiteral("x y\n"));  // no numbers: skipped
    lines->append(QStringLiteral("1.5, 2\n"));
    lines->append(QStringLiteral("3\t4.25 a remark\n"));
    writeLines(QStringLiteral("points.txt"), lines, nullptr);
    ref_ptr<Pnt2dArray> plan;
    if (!readPnt2dArray(QStringLiteral("points.txt"), plan, nullptr)) { return 1; }
    for (const XPnt2d& p : *plan) { std::printf("%g %g\n", p.x, p.y); }
}
