// Files of networks, binary and text. Both engines read them and use the result.
#include <zyn/network.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "bytes.h"
#include "memory_file.h"

namespace {

using namespace zyn;

template <class Real, class Engine>
void readAndUse(const ref_ptr<Engine>& engine, const MemoryFile& file, bool isText) {
    Real* vertices = nullptr;
    int count = 0;
    auto* const e = engine.get();
    const bool isRead = isText ? readText<Real>(e, file.path.c_str(), vertices, count)
                               : readBinary<Real>(e, file.path.c_str(), vertices, count);
    const std::unique_ptr<Real[]> owner(vertices);
    FUZZ_REQUIRE(isRead || (vertices == nullptr && count == 0 && engine->triangleCount() == 0));
    (void)validate<Real>(e, true);
    double z = 0;
    heightAt<Real>(e, 1, 1, z);
    (void)profile<Real>(e, {0, 0}, {2, 3});
    const ref_ptr<DoubleArray> levels = newDoubleArray();
    levels->append(1);
    (void)contours<Real>(e, levels.get());
    closeHull<Real>(e);
    restoreDelaunay<Real>(e);
    XPnt3<Real> p(Real(0.5), Real(0.25), Real(1));
    engine->addPoint(&p, 0);
    engine->removePoint(nullptr, Real(0.5), Real(0.5), Real(1));
    compactVertices<Real>(e);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const int kind = bytes.below(4);
    const MemoryFile file(bytes.all());
    if (kind < 2) {
        readAndUse<double>(ref_ptr<IZynDelaunayD>(newZynDelaunayDouble(0, 0, 0, 1, 1)), file,
                           kind == 1);
    } else {
        readAndUse<float>(ref_ptr<IZynDelaunay>(newZynDelaunay(0, 0, 0, 1, 1)), file, kind == 3);
    }
    return 0;
}
