// Each operation runs out of memory at each of its allocations in turn, and for good: it throws
// std::bad_alloc, leaves its object as the headers say, loses no memory, and succeeds when there is
// enough again.
#include <zyn/camera.h>
#include <zyn/color.h>
#include <zyn/delaunay.h>
#include <zyn/draw.h>
#include <zyn/log.h>
#include <zyn/matrix.h>
#include <zyn/pms.h>
#include <zyn/pool.h>
#include <zyn/setting.h>
#include <zyn/surface.h>
#include <zyn/textfile.h>
#include <zyn/variant.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "containers/array_imp.h"
#include "containers/pool_imp.h"
#include "expect_harmless.h"
#include "network.h"
#include "triangulation/triangle_ring.ipp"

namespace {

using namespace zyn;

struct Nothing {
    bool isAsItWas() { return true; }
};

/// One of each implementation: the other factories are the same line.
TEST(AllocationFailure, Factories) {
    const auto expectHarmlessFactory = [](auto factory) {
        expectHarmless<Nothing>("factory", [=](Nothing&) { const ref_ptr object(factory()); });
    };
    expectHarmlessFactory(newStringArray);
    expectHarmlessFactory(newIntArrayArray);
    expectHarmlessFactory(newIntPool);
    expectHarmlessFactory(newMatrixDbl);
    expectHarmlessFactory(newZynPMSDataTable);
    expectHarmlessFactory(newZynColorRamp);
    expectHarmlessFactory(newZynGradeColor);
    expectHarmlessFactory(newZynLasDrawParam);
    expectHarmlessFactory(newZynVarint);
    expectHarmlessFactory([] { return newZynDelaunay(0, 0, 0, 1, 1); });
    expectHarmlessFactory([] { return newZynDelaunayDouble(0, 0, 0, 1, 1); });
}

TEST(AllocationFailure, Pools) {
    struct Pool {  // whose last block is full
        Pool() { pool->append(items); }
        bool isAsItWas() { return pool->size() == items.size() && isPrefix(); }
        bool isPrefix() { return pool->size() >= items.size() && *pool->at(7) == 7; }
        std::vector<int> items{1, 2, 3, 4, 5, 6, 7, 7};
        ref_ptr<IntPool> pool = new ZynPoolImp<IntPool>(4);
    };
    expectHarmless<Pool>("one", [](Pool& p) { p.pool->append(1); });
    expectHarmless<Pool>("items", [](Pool& p) { p.pool->append(p.items.data(), 8); });
    expectHarmless<Pool>("vector", [](Pool& p) { p.pool->append(p.items); });
    expectHarmless<Pool>(
        "pool", [](Pool& p) { p.pool->append(p.pool.get()); }, &Pool::isPrefix);
    expectHarmless<Pool>("clear", [](Pool& p) { p.pool->clear(); });
}

TEST(AllocationFailure, Matrices) {
    struct Matrix {
        Matrix() { m->setSize(2, 2, 3.0), m->set(0, 1, 5.0); }
        bool isAsItWas() { return m->rows() == 2 && m->cols() == 2 && m->sum() == 14; }
        ref_ptr<MatrixDbl> m = newMatrixDbl();
    };
    static const matrix<double> wide(3, 7);
    expectHarmless<Matrix>("setSize", [](Matrix& x) { x.m->setSize(7, 9, 1.0); });
    expectHarmless<Matrix>("assign", [](Matrix& x) { x.m->assign(wide); });
    expectHarmless<Matrix>("transpose", [](Matrix& x) { x.m->transpose(); });
    expectHarmless<Matrix>("invert", [](Matrix& x) { x.m->invert(); });
    expectHarmless<Matrix>("product", [](Matrix& x) { ref_ptr(x.m->timesTranspose()); });
}

template <class Real>
ref_ptr<Pnt3Array<Real>> newLine(int count, double x, double y, double dx, double dy) {
    const ref_ptr<Pnt3Array<Real>> points = new ArrayImp<Pnt3Array<Real>>;
    for (int i = 0; i < count; ++i) {
        points->append(XPnt3<Real>(Real(x + i * dx), Real(y + i * dy), Real(i)));
    }
    return points;
}

/// A network, with points on the frame too, beside triangles of no area.
template <class Real>
struct Ground : support::Network<Real> {
    explicit Ground(int count = 60) : support::Network<Real>(0, 0, 1000, 1000) {
        for (int i = 8; i < count; ++i) { this->add(37 * i % 991 + 1, 53 * i % 983 + 1, i % 17); }
        for (int x = 100; x < 900; x += 100) { this->add(x, 0); }
        for (auto& p : this->points) { p.inten = 0; }
        before = this->records();
    }
    bool isValid() { return validate(this->engine.get()).isNull(); }
    bool isAsItWas() {
        return this->records() == before && isValid() &&
               std::all_of(this->points.begin(), this->points.begin() + 60,
                           [](const XPnt3<Real>& p) { return p.inten == 0; });
    }
    std::vector<TinRecord<Real>> before;
};
/// The next point needs a new block of triangles.
template <class Real>
struct FullGround : Ground<Real> {
    FullGround() : Ground<Real>(511) {}
};

/// Two lines that cross in a point without rounding.
template <class Real>
struct Lines : Ground<Real> {
    void add() {
        for (auto* const line : {across.get(), down.get()}) {
            ASSERT_GT(addBreakline(this->engine.get(), line, 0, fixed.get(), crossings.get()), 0);
        }
        for (int i = 0; i < fixed->size(); i += 2) {
            ASSERT_NE(this->triangleOn(fixed->get(i), fixed->get(i + 1)), nullptr);
        }
    }
    bool isSound() { return this->isValid() && fixed->size() % 2 == 0; }

    ref_ptr<Pnt3Array<Real>> across = newLine<Real>(5, 10.5, 500.5, 200, 0);
    ref_ptr<Pnt3Array<Real>> down = newLine<Real>(5, 400.5, 900.5, 0, -200);
    ref_ptr<VertexArray<Real>> fixed = tin_detail::newPointerArray<Real>();
    ref_ptr<Pnt3Pool<Real>> crossings = new ZynPoolImp<Pnt3Pool<Real>>(4);
};

template <class Real>
class NetworkFailure : public testing::Test {};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(NetworkFailure, Precisions);

TYPED_TEST(NetworkFailure, Changes) {
    using Net = Ground<TypeParam>;
    using FullNet = FullGround<TypeParam>;
    expectHarmless<FullNet>("addPoint", [](FullNet& n) { ASSERT_TRUE(n.add(500.5, 500.25)); });
    expectHarmless<Net>("addPoint on the rim", [](Net& n) { ASSERT_TRUE(n.add(750, 0)); });
    const auto points = newLine<TypeParam>(20, 5.5, 3.25, 12.5, 55);
    expectHarmless<FullNet>(
        "addPoints",
        [points](FullNet& n) {
            const ref_ptr<IntArray> rejected = newIntArray();
            addPoints(n.engine.get(), points.get(), 0, nullptr, rejected.get());
            ASSERT_EQ(n.engine->triangleCount(), 2 * (511 + 19 + 1));  // the last one lies outside
        },
        &FullNet::isValid);
    expectHarmless<Net>("removePoint", [](Net& n) {
        ASSERT_TRUE(n.engine->removePoint(nullptr, n.points[17].x, n.points[17].y, 1));
    });
    expectHarmless<Net>("compactVertices",
                        [](Net& n) { ASSERT_GT(compactVertices(n.engine.get()), 50); });
    using Breaklines = Lines<TypeParam>;
    expectHarmless<Breaklines>(
        "breaklines", [](auto& n) { n.add(); }, &Breaklines::isSound);
    const auto restore = [](Net& n) { ASSERT_GE(restoreDelaunay(n.engine.get()), 0); };
    expectHarmless<Net>("restoreDelaunay", restore, &Net::isValid);
    expectHarmless<Net>(
        "enforceEdge", [](Net& n) { n.engine->enforceEdge(n.vertex(0), n.vertex(25), nullptr); },
        &Net::isValid);
}

TYPED_TEST(NetworkFailure, Queries) {
    using Net = Ground<TypeParam>;
    expectHarmless<Net>("counts", [](Net& n) {
        ASSERT_EQ(vertexCount(n.engine.get()) + 4, allVertexCount(n.engine.get()));
    });
    expectHarmless<Net>("validate", [](Net& n) { ASSERT_TRUE(n.isValid()); });
    expectHarmless<Net>("findCone", [](Net& n) {
        const auto found = tin_detail::newPointerArray<TypeParam>();
        const auto& p = n.points[20];
        ASSERT_GT(n.engine->locate(p.x, p.y)->findCone(p, 400, found.get()), 10);
    });
    expectHarmless<Net>("heightAt", [](Net& n) {
        double z = 0;
        (void)heightAt(n.engine.get(), 750.0, 0.0, z);
    });
    expectHarmless<Net>("profile", [](Net& n) {
        ASSERT_GT(profile(n.engine.get(), {50, 60}, {900, 800})->size(), 9);
    });
    const ref_ptr<DoubleArray> levels = newDoubleArray();
    levels->append(7.5);
    expectHarmless<Net>("contours", [levels](Net& n) {
        ASSERT_GT(contours(n.engine.get(), levels.get())->size(), 0);
    });
    expectHarmless<Net>("rasterize", [](Net& n) {
        const ref_ptr<MatrixDbl> raster = newMatrixDbl();
        ASSERT_TRUE(rasterize(n.engine.get(), Enve2d(0, 0, 9, 9), 9, 9, raster.get()));
    });
    const auto points = newLine<TypeParam>(20, 0, 0, 1, 1);
    expectHarmless<Nothing>("spatial order", [points](Nothing&) {
        spatialSort(points.get());
        ASSERT_EQ(spatialOrder(points.get())->size(), 20);
    });
    if constexpr (std::same_as<TypeParam, float>) {
        expectHarmless<Net>("rays", [](Net& n) {
            ref_ptr(n.engine->rayIntersections({500.5F, 400.5F, 99}, {500.5F, 400.5F, -99}));
        });
    }
}

/// A network and a file, of which nothing may be lost.
template <class Real>
struct GroundAndFile : Ground<Real> {
    GroundAndFile() {
        std::filesystem::remove(path);  // which may be a new file
        std::ofstream(path) << "old";
        writeBinary(this->engine.get(), networkPath.c_str());
        writeText(this->engine.get(), textPath.c_str());
    }
    bool isAsItWas() {
        std::string content;
        std::ifstream(path) >> content;
        return content == "old" && Ground<Real>::isAsItWas();
    }
    template <auto readFile>
    void read(const std::string& from) {
        Real* array = nullptr;
        int count = 0;
        const bool isRead = readFile(this->engine.get(), from.c_str(), array, count);
        vertices.reset(array);
        ASSERT_TRUE(isRead && count == 64);
    }
    bool isReadOrEmpty() {
        return !vertices && (this->engine->triangleCount() == 0 || isAsItWas());
    }
    const std::string path = testing::TempDir() + "zyn_allocation_failure";
    const std::string networkPath = path + ".tin", textPath = path + ".txt";
    std::unique_ptr<Real[]> vertices;
};

TYPED_TEST(NetworkFailure, Files) {
    using Real = TypeParam;
    using Net = GroundAndFile<Real>;
    const auto write = [](const char* name, auto writeFile) {
        expectHarmless<Net>(
            name, [writeFile](Net& n) { ASSERT_TRUE(writeFile(n.engine.get(), n.path.c_str())); });
    };
    write("binary", writeBinary<Real>);
    write("text", writeText<Real>);
    write("obj", [](auto* e, const char* path) { return writeObj<Real>(e, path); });
    write("ply", [](auto* e, const char* path) {
        return writePly<Real>(e, path, anyEdge, PlyNormals::vertex);
    });
    write("xml", [](auto* e, const char* path) { return writeLandXml<Real>(e, path, {}); });
    expectHarmless<Net>(
        "readBinary", [](Net& n) { n.template read<readBinary<Real>>(n.networkPath); },
        &Net::isReadOrEmpty);
    expectHarmless<Net>(
        "readText", [](Net& n) { n.template read<readText<Real>>(n.textPath); },
        &Net::isReadOrEmpty);
    if constexpr (std::same_as<Real, double>) {
        testing::internal::CaptureStdout();
        write("exportObj", [](auto* e, const char* path) { return e->exportObj({}, path, 10); });
        testing::internal::GetCapturedStdout();
    }
}

TEST(AllocationFailure, Triangulation) {
    struct Empty {
        bool isAsItWas() { return e->triangleCount() == 2 && validate(e.get()).isNull(); }
        bool triangulate() { return e->triangulate(points.get()); }
        ref_ptr<IZynDelaunayD> e = newZynDelaunayDouble(0, 0, 0, 50, 50);
        ref_ptr<Pnt3dArray> points = newLine<double>(0, 1, 1, 0, 0);
        Empty() {  // more triangles than a block holds
            for (int i = 0; i < 600; ++i) { points->append(XPnt3d(i % 23 + 1, i % 29 + 1, 0)); }
        }
    };
    testing::internal::CaptureStdout();
    const bool hasGenerator = Empty().triangulate();
    if (hasGenerator) {
        expectHarmless<Empty>("triangulate", [](Empty& x) { ASSERT_TRUE(x.triangulate()); });
    }
    testing::internal::GetCapturedStdout();
    if (!hasGenerator) { GTEST_SKIP() << "built without the mesh generator"; }
}

TEST(AllocationFailure, Blocks) {
    struct Block {  // whose points were added when it had three images, of nine now
        Block() {
            setImgNum(t.get(), 3);
            for (int i = 0; i < 3; ++i) { t->addWrdPnt(seenOn(i, (i + 1) % 3), XPnt3d(i, 2, 3)); }
            setImgNum(t.get(), 9);
        }
        ref_ptr<Pnt2dArray> seenOn(int a, int b) {
            ref_ptr<Pnt2dArray> seen = newPnt2dArray();
            for (int i = 0; i < t->getImgNum(); ++i) {
                seen->append(i == a || i == b ? XPnt2d(i, 0.5) : XPnt2d::invalidPnt());
            }
            return seen;
        }
        bool isAsItWas() {
            std::ostringstream text;
            for (int p = 0; p < t->getWrdPntNum(); ++p) {
                text << t->getWrdPnt(p).x << ':';
                for (int i = 0; i < 9; ++i) { text << t->getImgPnt(i, p).isValid(); }
                text << ' ';
            }
            for (int i = 0; i < t->getImgNum(); ++i) {
                const bool hasMore = t->removeImgPntAt(i, i < 3 ? 2 : 0) == 0;
                const ref_ptr<TagPnt2dArray> tagged = t->getImgTagPnts(i);
                for (const TagPnt2d& q : *tagged) { text << q.tag; }
                text << (hasMore ? " and more" : ".");
            }
            return text.str() == "0:110000000 1:011000000 2:101000000 02.01.12.......";
        }
        ref_ptr<IZynPMSDataTable> t = newZynPMSDataTable();
    };
    expectHarmless<Block>("images", [](Block& b) { ASSERT_EQ(setImgNum(b.t.get(), 40), 0); });
    expectHarmless<Block>("addImgPnt", [](Block& b) {
        ASSERT_EQ(b.t->addImgPnt(7, {1, 2}, 1), 0);
    });
    expectHarmless<Block>("addWrdPnt", [](Block& b) {
        ASSERT_EQ(b.t->addWrdPnt(b.seenOn(0, 8), XPnt3d(4, 4, 4)), 0);
        ASSERT_TRUE(b.t->getImgPnt(8, 3) == XPnt2d(8, 0.5));
    });
    expectHarmless<Block>("mergeWrdPnts", [](Block& b) {
        ASSERT_EQ(b.t->mergeWrdPnts(0, 1, XPnt3d(1, 1, 1)), -1);  // both are seen on image 1
    });
    expectHarmless<Block>("there and back", [](Block& b) {
        const ref_ptr<Pnt2dArrayArray> pnts = newPnt2dArrayArray();
        const ref_ptr<IntArrayArray> ids = newIntArrayArray();
        const ref_ptr<CamParaArray> cams = newCamParaArray();
        const ref_ptr<IntArray> camMap = newIntArray(), wrdMap = newIntArray();
        const ref_ptr<Pnt3dArray> wrdPnts = newPnt3dArray();
        ASSERT_EQ(b.t->exportData(pnts, ids, cams, camMap, wrdPnts, wrdMap), 0);
        ASSERT_EQ(b.t->importData(cams, camMap, wrdPnts, wrdMap), 0);
    });
}

TEST(AllocationFailure, Services) {
    struct File {
        File() { std::ofstream(path.toStdString()) << "[1]=[2]\n3 4\n"; }
        ~File() { std::filesystem::remove(path.toStdString()); }
        bool isAsItWas() {
            std::ifstream in(path.toStdString());
            return std::string(std::istreambuf_iterator(in), {}) == "[1]=[2]\n3 4\n";
        }
        bool isAsItWasOrSaved() {
            std::string first;
            std::ifstream(path.toStdString()) >> first;
            return first == "[1]=[2]";
        }
        const QString path = QString::fromStdString(testing::TempDir() + "zyn_allocation_text");
    };
    expectHarmless<File>("readLines",
                         [](File& f) { ASSERT_EQ(readLines(f.path, nullptr)->size(), 2); });
    expectHarmless<File>("points", [](File& f) {
        ref_ptr<Pnt2dArray> points;
        ASSERT_TRUE(readPnt2dArray(f.path, points, nullptr));
        ASSERT_EQ(getTxtFileLineNum(f.path, nullptr), 2);
        ASSERT_TRUE(savePnt2dArray(f.path, points, nullptr));
    });
    const auto openSettings = [](File& f, bool alsoSave) {
        const ref_ptr<IZynSetting> settings = newZynSetting(QString());
        ASSERT_EQ(settings->open(f.path), 0);
        if (alsoSave) { ASSERT_EQ(settings->save(), 0); }
    };
    expectHarmless<File>(
        "settings", [=](File& f) { openSettings(f, true); }, &File::isAsItWasOrSaved);
    expectHarmless<File>(
        "settings at their end", [=](File& f) { openSettings(f, false); }, &File::isAsItWasOrSaved);
    expectHarmless<File>("log", [](File& f) {
        const ref_ptr<IZynLog> log = newZynLog(f.path, true, false);
        ASSERT_TRUE(log->isOpen() && log->open(f.path, true));
    });
}

}  // namespace
