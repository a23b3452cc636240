// SurfaceView: the files of a surface.
#include <zyn/network.h>
#include <zyn/surface.h>

#include "surface/surface_error.h"
#include "surface/surface_state.h"

#include <cerrno>
#include <string>

namespace zyn {

using namespace detail;

namespace {

/// Writes the network, or an empty one if the surface was moved from.
template <class Write>
void writeNetworkOf(const SurfaceState* state, const std::string& path, Write write) {
    SurfaceState empty{SurfaceOptions()};
    if (state == nullptr) {
        empty.addPoints({}, nullptr);
        state = &empty;
    }
    errno = 0;
    requireWritten(write(state->network.engine.get(), path.c_str()), path);
}

}  // namespace

void SurfaceView::writeObj(const std::string& path) const {
    writeNetworkOf(state, path, [this](auto* engine, const char* file) {
        return zyn::writeObj(engine, file, maxEdge);
    });
}

void SurfaceView::writePly(const std::string& path, PlyNormals normals) const {
    writeNetworkOf(state, path, [this, normals](auto* engine, const char* file) {
        return zyn::writePly(engine, file, maxEdge, normals);
    });
}

void SurfaceView::writeLandXml(const std::string& path, const QString& name,
                               LengthUnit unit) const {
    writeNetworkOf(state, path, [&](auto* engine, const char* file) {
        return zyn::writeLandXml(engine, file, name, unit, maxEdge);
    });
}

void SurfaceView::writeNetwork(const std::string& path) const {
    writeNetworkOf(state, path,
                   [](auto* engine, const char* file) { return writeBinary(engine, file); });
}

}  // namespace zyn
