// Surfaces as binary PLY files.
#include <zyn/network.h>

#include "core/little_endian.h"
#include "core/text_number.h"
#include "surface/surface_file.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

struct Vector {
    double x = 0, y = 0, z = 0;
};

/// Returns the normal of a triangle. Its length is twice the area.
template <class Real>
Vector crossOf(const Real* a, const Real* b, const Real* c) {
    const auto edge = [a](const Real* end) {
        return Vector{double(end[0]) - double(a[0]), double(end[1]) - double(a[1]),
                      double(end[2]) - double(a[2])};
    };
    const Vector u = edge(b), v = edge(c);
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

/// Returns the unit vector in the direction of v, or the upward one if v has no direction.
Vector directionOf(const Vector& v) {
    const double length = std::hypot(v.x, v.y, v.z);
    if (!(length > 0) || !std::isfinite(length)) { return {0, 0, 1}; }
    return {v.x / length, v.y / length, v.z / length};
}

template <class Real>
std::vector<Vector> vertexNormals(SurfaceFile<Real>& file) {
    std::vector<Vector> normals(file.vertices().size());
    file.forEachFace([&](const auto& face) {
        const auto corner = [&](int i) { return file.vertices()[std::size_t(face[i])]; };
        const Vector cross = crossOf(corner(0), corner(1), corner(2));
        for (const std::int32_t n : face) {
            Vector& sum = normals[std::size_t(n)];
            sum = {sum.x + cross.x, sum.y + cross.y, sum.z + cross.z};
        }
    });
    for (Vector& normal : normals) { normal = directionOf(normal); }
    return normals;
}

}  // namespace

template <class Real>
bool writePly(DelaunayInterface<Real>* engine, const char* path, double maxEdge,
              PlyNormals normals) {
    const bool hasNormals = normals == PlyNormals::vertex;
    SurfaceFile<Real> file(engine, path, maxEdge);
    if (!file.isOpen()) { return false; }
    const std::string real = std::is_same_v<Real, double> ? "double" : "float";
    std::string& text = file.text;
    text = "ply\nformat binary_little_endian 1.0\ncomment ZynBase\nelement vertex ";
    appendNumber(text, file.vertices().size());
    for (const char axis : {'x', 'y', 'z'}) { text += "\nproperty " + real + ' ' + axis; }
    if (hasNormals) { text += "\nproperty float nx\nproperty float ny\nproperty float nz"; }
    text += "\nelement face ";
    appendNumber(text, file.faceCount());
    text += "\nproperty list uchar int vertex_indices\nend_header\n";

    const std::vector<Vector> directions = hasNormals ? vertexNormals(file) : std::vector<Vector>();
    file.forEachVertex([&, n = std::size_t{0}](const Real* v) mutable {
        for (int axis = 0; axis < 3; ++axis) { appendLittleEndian(text, v[axis]); }
        if (!hasNormals) { return; }
        const Vector& d = directions[n++];
        for (const double c : {d.x, d.y, d.z}) { appendLittleEndian(text, static_cast<float>(c)); }
    });
    file.forEachFace([&text](const auto& face) {
        text += '\3';
        for (const std::int32_t n : face) { appendLittleEndian(text, n); }
    });
    return file.commit();
}

template bool writePly(DelaunayInterface<float>*, const char*, double, PlyNormals);
template bool writePly(DelaunayInterface<double>*, const char*, double, PlyNormals);

}  // namespace zyn
