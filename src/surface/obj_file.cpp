// Surfaces as Wavefront OBJ.
#include <zyn/network.h>

#include "core/text_number.h"
#include "surface/surface_file.h"

#include <cstdint>
#include <string>

namespace zyn {

using namespace detail;

template <class Real>
bool writeObj(DelaunayInterface<Real>* engine, const char* path, double maxEdge) {
    SurfaceFile<Real> file(engine, path, maxEdge);
    if (!file.isOpen()) { return false; }
    std::string& text = file.text;
    file.forEachVertex([&text](const Real* v) {
        text += 'v';
        for (int axis = 0; axis < 3; ++axis) {
            text += ' ';
            appendNumber(text, v[axis]);
        }
        text += '\n';
    });
    file.forEachFace([&text](const auto& face) {
        text += 'f';
        for (const std::int32_t n : face) {
            text += ' ';
            appendNumber(text, n + 1);
        }
        text += '\n';
    });
    return file.commit();
}

template bool writeObj(DelaunayInterface<float>*, const char*, double);
template bool writeObj(DelaunayInterface<double>*, const char*, double);

}  // namespace zyn
