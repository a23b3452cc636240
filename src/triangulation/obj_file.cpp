// Surfaces as text in `v` and `f` lines: the numbered export of the double engine, and Wavefront OBJ
// of any engine.
#include <zyn/geometry.h>
#include <zyn/surface.h>

#include "core/text_number.h"
#include "triangulation/engine.h"
#include "triangulation/tin_streams.h"
#include "triangulation/vertex_numbers.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <cstdio>
#include <string>

namespace zyn {
namespace {

/// Square of the longest edge in space.
template <class Real>
double longestEdge2(const TinRecord<Real>* t) {
    const XPnt3d a(XPnt3<Real>(t->vertex[0])), b(XPnt3<Real>(t->vertex[1])),
        c(XPnt3<Real>(t->vertex[2]));
    return std::max({dist2(a, b), dist2(b, c), dist2(c, a)});
}

/// The number that addPoint gave to the point behind a vertex.
int numberOf(const double* vertex) { return reinterpret_cast<const XPnt3d*>(vertex)->inten; }

class ObjLines : public tin_file::Writer {
public:
    explicit ObjLines(const char* path) : Writer(path, "w+") {}

    void vertex(const XPnt3d& p) {
        buffer += 'v';
        for (const double c : {p.x, p.y, p.z}) {
            buffer += ' ';
            appendNumber(buffer, c, std::chars_format::fixed, 6);
        }
        buffer += '\n';
        flushIfFull();
    }
    void face(const int (&numbers)[3]) {
        buffer += 'f';
        for (const int n : numbers) {
            buffer += ' ';
            appendNumber(buffer, n);
        }
        buffer += '\n';
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
        file.face(
            {numberOf(t->vertex[0]) + 1, numberOf(t->vertex[1]) + 1, numberOf(t->vertex[2]) + 1});
    }
    std::printf("Done!");
    return file.close();
}

template <class Real>
bool writeObj(DelaunayInterface<Real>* engine, const char* path, double maxEdge) {
    if (engine == nullptr || path == nullptr) { return false; }
    const QString name = QFile::decodeName(path);
    // A device or a pipe would be replaced by the file.
    if (const QFileInfo target(name); target.exists() && !target.isFile()) { return false; }
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly)) { return false; }

    const auto forFaces = [engine, maxEdge](auto use) {
        engine->rewindTriangles();
        while (TinRecord<Real>* const t = engine->nextTriangle()) {
            const bool isLong = longestEdge2(t) > maxEdge * maxEdge;
            if (!engine->isFrameTriangle(t) && !isLong) { use(t); }
        }
    };
    std::string text;
    bool isWritten = true;
    const auto flush = [&file, &text, &isWritten] {
        const auto size = static_cast<qint64>(text.size());
        isWritten = isWritten && file.write(text.data(), size) == size && file.flush();
        text.clear();
    };
    VertexNumbers<Real> numbers;
    forFaces([&](const TinRecord<Real>* t) {
        for (Real* const v : t->vertex) {
            const auto known = static_cast<std::int32_t>(numbers.vertices().size());
            if (numbers(v) < known) { continue; }
            text += 'v';
            for (int axis = 0; axis < 3; ++axis) {
                text += ' ';
                appendNumber(text, v[axis]);
            }
            text += '\n';
        }
        if (text.size() >= tin_file::bufferSize) { flush(); }
    });
    forFaces([&](const TinRecord<Real>* t) {
        text += 'f';
        for (Real* const v : t->vertex) {
            text += ' ';
            appendNumber(text, numbers(v) + 1);
        }
        text += '\n';
        if (text.size() >= tin_file::bufferSize) { flush(); }
    });
    flush();
    return isWritten && file.commit();
}

template bool writeObj(DelaunayInterface<float>*, const char*, double);
template bool writeObj(DelaunayInterface<double>*, const char*, double);

}  // namespace zyn
