// Operations on an engine of either precision. After every few of them the network must be valid.
// If an earlier operation has left a hole or rounded points, nothing may crash or hang.
#include <zyn/network.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <vector>

#include "bytes.h"
#include "memory_file.h"

namespace {

using namespace zyn;

/// Counts the operations of the process, and prints their number at its end.
struct Count {
    ~Count() { std::fprintf(stderr, "engine operations: %llu\n", operations); }
    unsigned long long operations = 0;
} executed;

template <class Real>
class EngineRun {
public:
    explicit EngineRun(Bytes& bytes_) : bytes(bytes_), scale(scales[bytes.below(5)]) {
        if constexpr (isDouble) {
            pool = newPnt3dPool();
        } else {
            pool = newPnt3fPool();
        }
        fixed = newVertices();
        begin();
    }

    void run() {
        for (int n = 0; n < 400 && !bytes.isEmpty(); ++n) {
            operate();
            ++executed.operations;
            if (n % 8 == 0) { check(); }
        }
        check();
    }

private:
    static constexpr bool isDouble = std::same_as<Real, double>;
    static constexpr double scales[] = {1, 0.1, 1e-9, 1e12, 432100.123};
    using Engine = std::conditional_t<isDouble, IZynDelaunayD, IZynDelaunay>;

    void begin() {
        const Real low = Real(-scale), high = Real(17 * scale);
        if constexpr (isDouble) {
            engine = newZynDelaunayDouble(0, low, low, high, high);
        } else {
            engine = newZynDelaunay(0, low, low, high, high);
        }
        fixed->removeAll();
        isSound = isDelaunay = true;
        unsoundChecks = 0;
    }

    /// Returns mostly numbers of a small lattice, where points coincide and lines cross in
    /// vertices, and sometimes any number.
    Real coordinate() {
        const int kind = bytes.take();
        if (kind < 200) { return Real(kind % 17 * scale); }
        if (kind < 230) { return Real((kind - 200) * scale / 2); }
        if (kind < 240) {
            return std::nextafter(Real(kind % 5 * scale), Real(kind % 2 == 0 ? 1e30 : -1e30));
        }
        if (kind < 250) { return Real(bytes.take<std::int16_t>() / 2048.0 * scale); }
        static constexpr Real odd[] = {std::numeric_limits<Real>::quiet_NaN(),
                                       std::numeric_limits<Real>::infinity(),
                                       Real(-1e30),
                                       std::numeric_limits<Real>::denorm_min(),
                                       Real(-0.0),
                                       std::numeric_limits<Real>::max()};
        return odd[kind - 250];
    }
    XPnt3<Real> point() {
        const Real x = coordinate(), y = coordinate();
        const int height = bytes.take();
        return {x, y, height == 255 ? std::numeric_limits<Real>::infinity() : Real(height % 10)};
    }
    Real tolerance() {
        static constexpr double kinds[] = {0, 0, 0, 0, 0.5, 2};
        return Real(kinds[bytes.below(6)] * scale);
    }
    Real* vertex() {
        auto* t = firstTriangle();
        for (int n = bytes.take(); n > 0 && t != nullptr; --n) {
            auto* const next = engine->nextTriangle();
            t = next == nullptr ? t : next;
        }
        return t == nullptr ? nullptr : t->vertex[bytes.below(3)];
    }
    auto* firstTriangle() {
        engine->rewindTriangles();
        return engine->nextTriangle();
    }
    static ref_ptr<VertexArray<Real>> newVertices() {
        if constexpr (isDouble) {
            return newPDoubleArray();
        } else {
            return newPFloatArray();
        }
    }
    static auto newLines() {
        if constexpr (isDouble) {
            return ref_ptr(newPnt3dArrayArray());
        } else {
            return ref_ptr(newPnt3fArrayArray());
        }
    }
    static auto newPoints() {
        if constexpr (isDouble) {
            return ref_ptr(newPnt3dArray());
        } else {
            return ref_ptr(newPnt3fArray());
        }
    }
    auto* somePoints(int count) {
        arrays.push_back(newPoints());
        for (int n = 0; n < count; ++n) { arrays.back()->append(point()); }
        return arrays.back().get();
    }

    void operate() {
        auto* const e = engine.get();
        const int kind = bytes.take();
        if (kind >= 238) { return operateRarely(kind % 6); }
        isDelaunay = isDelaunay && (kind % 14 < 4 || kind % 14 > 7);  // removals and edges end it
        switch (kind % 14) {
        case 0:
        case 1:
        case 2: {
            points.push_back(std::make_unique<XPnt3<Real>>(point()));
            engine->addPoint(points.back().get(), tolerance());
            break;
        }
        case 3: addPoints(e, somePoints(bytes.below(40)), tolerance()); break;
        case 4: {
            const Real x = coordinate(), y = coordinate();
            auto* const hint = bytes.below(2) == 0 ? nullptr : firstTriangle();
            if (engine->removePoint(hint, x, y, Real(scale))) { fixed->removeAll(); }
            break;
        }
        case 5: {
            Real* const a = vertex();
            Real* const b = vertex();
            auto* const hint = bytes.below(2) == 0 ? nullptr : firstTriangle();
            engine->enforceEdge(a, b, hint);
            break;
        }
        case 6:
        case 7: {
            const bool isAsked = bytes.below(2) == 0;
            addBreakline(e, somePoints(2 + bytes.below(4)), tolerance(), fixed.get(),
                         isAsked ? pool.get() : nullptr);
            break;
        }
        case 8:
            isDelaunay = restoreDelaunay(e) != -1 && isSound;
            fixed->removeAll();
            break;
        case 9: {
            const Real x = coordinate();
            (void)engine->locate(x, coordinate());
            double z = 0;
            heightAt(e, double(x), double(coordinate()), z);
            break;
        }
        case 10: {
            const double x = double(coordinate()), y = double(coordinate());
            (void)profile(e, {x, y}, {double(coordinate()), double(coordinate())});
            break;
        }
        case 11: {
            const ref_ptr<DoubleArray> levels = newDoubleArray();
            levels->append(bytes.below(11));
            (void)contours(e, levels.get());
            (void)volume(e, levels->get(0));
            break;
        }
        case 12:
            compactVertices(e);
            fixed->removeAll();
            break;
        default: {
            const ref_ptr<MatrixDbl> cells = newMatrixDbl();
            const double x = double(coordinate());
            rasterize(e, Enve2d(x, x, x + 9 * scale, x + 9 * scale), 1 + bytes.below(20),
                      1 + bytes.below(20), cells.get());
        }
        }
    }
    void operateRarely(int kind) {
        switch (kind) {
        case 0: {
            auto* t = firstTriangle();
            for (int n = bytes.take(); n > 0 && t != nullptr; --n) { t = engine->nextTriangle(); }
            isSound = !engine->deleteTriangle(t) && isSound;
            break;
        }
        case 1: {
            const XPnt3<Real> a = point(), b = point();
            if constexpr (isDouble) {
                isSound = isSound && engine->triangleCount() > 2;
                (void)engine->triangulate(somePoints(bytes.below(60)));
            } else {
                (void)ref_ptr(engine->rayIntersections(a, b));
            }
            break;
        }
        case 2: writeAndRead(true); break;
        case 3: {
            Real* const v = vertex();
            auto* const t = v == nullptr ? nullptr : engine->locate(v[0], v[1]);
            if (t != nullptr) { (void)t->findCone(v, newVertices().get()); }
            break;
        }
        case 4: writeAndRead(false); break;
        default: bytes.below(2) == 0 ? addPolylines() : callBadly();
        }
        if (kind < 3 || kind == 4) { fixed->removeAll(); }
    }
    /// Adds many polylines in one call, some too short or null, and exports the result.
    void addPolylines() {
        auto* const e = engine.get();
        const auto lines = newLines();
        for (int n = bytes.below(6); n > 0; --n) {
            lines->append(n == 3 ? nullptr : somePoints(bytes.below(6)));
        }
        isDelaunay = false;
        addBreaklines(e, lines.get(), tolerance(), fixed.get(), pool.get());
        addOnALine();
        const MemoryFile file;
        const double maxEdge = double(coordinate());
        FUZZ_REQUIRE(writeObj(e, file.path.c_str(), maxEdge));
        FUZZ_REQUIRE(writePly(e, file.path.c_str(), maxEdge, PlyNormals::vertex));
        FUZZ_REQUIRE(writeLandXml(e, file.path.c_str(), QStringLiteral("<&"), maxEdge));
    }
    /// Adds a breakline back and forth along one line, up to rounding. It must make few crossings.
    void addOnALine() {
        auto* const e = engine.get();
        arrays.push_back(newPoints());
        const XPnt3<Real> a = point(), b = point();
        const Real divisor = Real(1 + bytes.below(17));
        for (int n = 2 + bytes.below(6); n > 0; --n) {
            const Real share = Real(bytes.below(18)) / divisor;
            arrays.back()->append({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y), 0});
        }
        const std::size_t before = pool->size();
        addBreakline(e, arrays.back().get(), Real(0), fixed.get(), pool.get());
        const std::size_t crossable = std::size_t(fixed->size() / 2 + 1);
        FUZZ_REQUIRE(pool->size() - before <= 6 * (2 * crossable + 1));
    }
    /// Makes calls that must be refused and change nothing.
    void callBadly() {
        using Interface = DelaunayInterface<Real>;
        auto* const e = engine.get();
        Interface* const none = nullptr;
        constexpr Real no = std::numeric_limits<Real>::quiet_NaN();
        const int before = engine->triangleCount();
        const ref_ptr<MatrixDbl> cells = newMatrixDbl();
        double z = 0;
        Real* const v = vertex();
        FUZZ_REQUIRE(!engine->addPoint(nullptr, 0) && !engine->deleteTriangle(nullptr));
        FUZZ_REQUIRE(!engine->removePoint(nullptr, no, 0, 1) &&
                     !engine->removePoint(nullptr, 0, 0, no));
        FUZZ_REQUIRE(engine->locate(no, 0) == nullptr && !engine->isFrameVertex(nullptr));
        (void)engine->enforceEdge(v, nullptr, nullptr);
        (void)engine->enforceEdge(nullptr, v, nullptr);
        FUZZ_REQUIRE(addPoints<Real>(e, nullptr, 0) == 0 && addPoints(none, somePoints(1), 0) == 0);
        FUZZ_REQUIRE(addBreakline<Real>(e, nullptr, 0) == -1);
        FUZZ_REQUIRE(addBreakline(e, somePoints(3), no) == -1);
        FUZZ_REQUIRE(addBreaklines<Real>(e, nullptr, 0) == -1);
        FUZZ_REQUIRE(restoreDelaunay(none) == -1 && closeHull(none) == -1 &&
                     compactVertices(none) == 0);
        FUZZ_REQUIRE(!heightAt(e, HUGE_VAL, 0.0, z) && !heightAt(none, 0.0, 0.0, z));
        FUZZ_REQUIRE(!rasterize(e, Enve2d(0, 0, 1, 1), 0, 1, cells.get()));
        FUZZ_REQUIRE(!rasterize(e, Enve2d(0, 0, 1, 1), 1, 1, nullptr));
        FUZZ_REQUIRE(!writeBinary<Real>(e, nullptr) && !writeObj<Real>(e, "/nowhere/file"));
        FUZZ_REQUIRE(engine->triangleCount() == before);
    }
    /// Writes and reads the network, as text of six digits or as binary of all digits.
    void writeAndRead(bool isText) {
        const MemoryFile file;
        const char* const path = file.path.c_str();
        const int before = engine->triangleCount();
        FUZZ_REQUIRE(isText ? writeText(*engine, path) : writeBinary(*engine, path));
        const bool isRead = isText ? readText(*engine, path) : readBinary(*engine, path);
        FUZZ_REQUIRE(isRead || !isSound || isText);
        FUZZ_REQUIRE(engine->triangleCount() == (isRead ? before : 0));
        isSound = isSound && !isText;
        isDelaunay = isDelaunay && isSound;
    }
    void check() {
        const QString fault = validate(engine.get(), isDelaunay);
        if (isSound && !fault.isNull()) {
            std::fprintf(stderr, "%s\n", qPrintable(fault));
            std::abort();
        }
        for (int i = 0; i < fixed->size(); ++i) { FUZZ_REQUIRE(fixed->get(i) != nullptr); }
        if (!isSound && ++unsoundChecks == 4) { begin(); }
    }

    Bytes& bytes;
    const double scale;
    ref_ptr<Engine> engine;
    std::vector<std::unique_ptr<XPnt3<Real>>> points;
    std::vector<ref_ptr<Pnt3Array<Real>>> arrays;
    ref_ptr<Pnt3Pool<Real>> pool;
    ref_ptr<VertexArray<Real>> fixed;
    bool isSound = true;
    bool isDelaunay = true;
    int unsoundChecks = 0;  ///< of a network that can show few faults any more
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    if (bytes.below(2) == 0) {
        EngineRun<double>(bytes).run();
    } else {
        EngineRun<float>(bytes).run();
    }
    return 0;
}
