// What the writers of a surface share: its vertices and faces by number, and a file that appears
// whole or not at all.
#pragma once

#include <zyn/surface.h>

#include "core/whole_file.h"
#include "triangulation/surface_triangles.h"
#include "triangulation/tin_streams.h"
#include "triangulation/vertex_numbers.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zyn {

template <class Real>
class SurfaceFile {
public:
    /// The numbers of the corners, from 0.
    using Face = std::int32_t[3];

    SurfaceFile(DelaunayInterface<Real>* engine, const char* path, double maxEdge)
        : surface(engineOf(engine), maxEdge) {
        if (!surface.hasEngine() || path == nullptr) { return; }
        const QString name = QFile::decodeName(path);
        // A device or a pipe would be replaced by the file, and a protected file, too.
        const QFileInfo target(name);
        if (target.exists() && (!target.isFile() || !mayBeWritten(name))) { return; }
        file.setFileName(name);
        if (!file.open(QIODevice::WriteOnly)) { return; }
        surface.forEach([this](const TinRecord<Real>* t, std::size_t) {
            for (Real* const v : t->vertex) { numbers(v); }
            ++faces;
        });
    }
    [[nodiscard]] bool isOpen() const { return file.isOpen(); }
    /// The coordinates, by number.
    [[nodiscard]] const std::vector<Real*>& vertices() const { return numbers.vertices(); }
    [[nodiscard]] int faceCount() const { return faces; }

    /// Calls `use` with the coordinates of every vertex in turn.
    template <class Use>
    void forVertices(Use use) {
        for (const Real* const v : numbers.vertices()) {
            use(v);
            flushIfFull();
        }
    }
    /// Calls `use` with every Face.
    template <class Use>
    void forFaces(Use use) {
        surface.forEach([&](const TinRecord<Real>* t, std::size_t) {
            use(Face{numbers(t->vertex[0]), numbers(t->vertex[1]), numbers(t->vertex[2])});
            flushIfFull();
        });
    }

    /// Puts the file into its place; false, with nothing changed there, when a part could not be
    /// written.
    [[nodiscard]] bool commit() {
        flush();
        return isWritten && commitWhole(file);
    }

    std::string text;  ///< What comes next in the file.

private:
    void flushIfFull() {
        if (text.size() >= tin_file::bufferSize) { flush(); }
    }
    void flush() {
        const auto size = static_cast<qint64>(text.size());
        isWritten = isWritten && file.write(text.data(), size) == size && file.flush();
        text.clear();
    }

    Surface<Real> surface;
    QSaveFile file;
    VertexNumbers<Real> numbers;
    int faces = 0;
    bool isWritten = true;
};

}  // namespace zyn
