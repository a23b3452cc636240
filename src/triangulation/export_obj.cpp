// The numbered export of the double engine, as `v` and `f` lines of text.
#include "core/file_writer.h"
#include "core/text_number.h"
#include "triangulation/engine.h"
#include "triangulation/vertex_position.h"

#include <cstdio>

namespace zyn::detail {
namespace {

/// Returns the number that addPoint gave to the point of a vertex.
int pointNumberOf(const double* vertex) { return reinterpret_cast<const XPnt3d*>(vertex)->inten; }

class ObjLines : public FileWriter {
public:
    using FileWriter::FileWriter;

    void vertex(const XPnt3d& p) {
        text += 'v';
        for (const double c : {p.x, p.y, p.z}) {
            text += ' ';
            appendNumber(text, c, std::chars_format::fixed, 6);
        }
        text += '\n';
        flushIfFull();
    }
    void face(const int (&numbers)[3]) {
        text += 'f';
        for (const int n : numbers) {
            text += ' ';
            appendNumber(text, n);
        }
        text += '\n';
        flushIfFull();
    }
};

}  // namespace

bool delaunayD::exportObj(std::span<const XPnt3d> points, const char* path, double maxEdge) {
    if (path == nullptr || !verticesArePoints()) { return false; }
    std::printf("Writing File \"%s\"...\n", path);
    ObjLines file(path);
    if (!file.isOpen()) { return false; }

    std::printf("Writing vertices...");
    for (std::size_t i = 0; i < points.size() && i <= 0x7FFF; ++i) {
        if (points[i].inten == static_cast<int>(i)) { file.vertex(points[i]); }
    }
    std::printf("Done!\nWriting triangles...");
    constexpr double noFilter = 99999.0;
    rewindTriangles();
    while (tind* const t = nextTriangle()) {
        if (isFrameTriangle(t) || (maxEdge < noFilter && longestEdge2(t) > maxEdge * maxEdge)) {
            continue;
        }
        file.face({pointNumberOf(t->vertex[0]) + 1, pointNumberOf(t->vertex[1]) + 1,
                   pointNumberOf(t->vertex[2]) + 1});
    }
    std::printf("Done!");
    return file.commit();
}

}  // namespace zyn::detail
