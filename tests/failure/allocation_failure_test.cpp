// Each operation runs out of memory at each of its allocations in turn. It throws std::bad_alloc,
// leaves its object as the headers say, loses no memory, and succeeds once there is enough again.
#include <zyn/camera.h>
#include <zyn/draw.h>
#include <zyn/log.h>
#include <zyn/network.h>
#include <zyn/pms.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>
#include <zyn/transform.h>
#include <zyn/variant.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "containers/array_imp.h"
#include "containers/pool_imp.h"
#include "expect_harmless.h"
#include "network.h"
#include "triangulation/triangle_ring.inl"

namespace {

using namespace zyn;
using namespace zyn::detail;

struct Nothing {
    void expectUnchanged() {}
};

/// One factory of each implementation; the others share its line.
TEST(AllocationFailure, FactoriesThrowAndLoseNothing) {
    const auto expect = [](auto... make) {
        (expectHarmless<Nothing>("factory", [=](Nothing&) { return ref_ptr(make()) != nullptr; }),
         ...);
    };
    expect(newStringArray, newIntArrayArray, newIntPool, newMatrixDbl, newZynPMSDataTable,
           newZynColorRamp, newZynGradeColor, newZynLasDrawParam, newZynVarint);
    expect([] { return newZynDelaunay(0, 0, 0, 1, 1); },
           [] { return newZynDelaunayDouble(0, 0, 0, 1, 1); },
           [] { return zynCamOutParam().toArray(); }, [] { return ZynQuad().getValue(); });
}

/// Containers and drawing parameters. The last block of `full` is full, and `grade` has no room for
/// another peg.
struct Objects {
    Objects() {
        full->append(items);
        roomy->append(items);
        m->setSize(2, 2, 3.0), m->set(0, 1, 5.0);
        for (const float pos : {0.2F, 0.4F, 0.6F, 0.8F}) { grade->addPeg(7, pos); }
        param->ramp = newZynColorRamp();
    }
    void expectUnchanged() {
        EXPECT_EQ(full->size(), 8U);
        EXPECT_EQ(roomy->size(), 8U);
        expectOthersUnchanged();
    }
    void expectOthersUnchanged() {
        EXPECT_EQ(*full->at(7), 7);
        EXPECT_EQ(m->rows(), 2);
        EXPECT_EQ(m->cols(), 2);
        EXPECT_EQ(m->sum(), 14);
        EXPECT_EQ(grade->getPegCount(), 4);
        EXPECT_EQ(param->ramp->referenceCount(), 1);
    }
    const std::vector<int> items{1, 2, 3, 4, 5, 6, 7, 7};
    const ref_ptr<IntPool> full = new ZynPoolImp<IntPool>(4), roomy = new ZynPoolImp<IntPool>(5);
    const ref_ptr<MatrixDbl> m = newMatrixDbl();
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();
    const ref_ptr<IZynLasDrawParam> param = newZynLasDrawParam();
};

TEST(AllocationFailure, ContainersAndColorsStayUnchanged) {
    const auto expect = [](const char* name, const std::function<bool(Objects&)>& run) {
        expectHarmless(name, run);
    };
    expect("pool", [](auto& o) { return *o.full->append(1) == 1; });
    expect("items", [](auto& o) { return o.roomy->append(o.items) == 8; });
    expect("clear", [](auto& o) { return o.full->clear(), o.full->size() == 0; });
    const auto append = [](Objects& o) { return o.full->append(o.full.get()) > 7; };
    expectHarmless<Objects>("itself", append, &Objects::expectOthersUnchanged);
    static const matrix<double> wide(3, 7);
    expect("setSize", [](auto& o) { return o.m->setSize(7, 9, 1.0); });
    expect("assign", [](auto& o) { return o.m->assign(wide); });
    expect("transpose", [](auto& o) { return o.m->transpose(), true; });
    expect("invert", [](auto& o) { return o.m->invert(); });
    expect("product", [](auto& o) { return ref_ptr(o.m->timesTranspose())->rows() == 2; });
    expect("addPeg", [](auto& o) { return o.grade->addPeg(5, 0.3F) == 1; });
    expect("clone", [](auto& o) { return ref_ptr(o.param->clone())->ramp != o.param->ramp; });
    expect("ramp", [](auto& o) { return ref_ptr(o.param->ramp->clone())->clr(7).r == 7; });
    expect("classes", [](auto& o) {
        const ref_ptr<PntClassArray> given = newPntClassArray();
        return given->append(PntClass(2)) == o.param->assignPntClass(given);
    });
}

template <class Real>
ref_ptr<Pnt3Array<Real>> newLine(int count, double x, double y, double dx, double dy) {
    const ref_ptr<Pnt3Array<Real>> points = new ArrayImp<Pnt3Array<Real>>;
    for (int i = 0; i < count; ++i) {
        points->append(XPnt3<Real>(Real(x + i * dx), Real(y + i * dy), Real(i)));
    }
    return points;
}

/// A network, also with points on the frame, next to degenerate triangles.
template <class Real>
struct Ground : support::Network<Real> {
    explicit Ground(int count = 60) : support::Network<Real>(0, 0, 1000, 1000) {
        for (int i = 8; i < count; ++i) { this->add(37 * i % 991 + 1, 53 * i % 983 + 1, i % 17); }
        for (int x = 100; x < 900; x += 100) { this->add(x, 0); }
        for (auto& p : this->points) { p.inten = 0; }
        before = this->records();
    }
    void expectValid() { EXPECT_EQ(validate(get()).toStdString(), ""); }
    void expectUnchanged() {
        EXPECT_EQ(this->records(), before);
        expectValid();
        for (std::size_t i = 0; i < 60; ++i) { EXPECT_EQ(this->points[i].inten, 0) << i; }
    }
    auto* get() { return this->engine.get(); }
    std::vector<TinRecord<Real>> before;
};
/// The next point needs a new block of triangles.
template <class Real>
struct FullGround : Ground<Real> {
    FullGround() : Ground<Real>(511) {}
};

/// Two lines that cross in a point that needs no rounding.
template <class Real>
struct Lines : Ground<Real> {
    Lines() {
        lines->append(newLine<Real>(5, 10.5, 500.5, 200, 0).get());
        lines->append(newLine<Real>(5, 400.5, 900.5, 0, -200).get());
    }
    bool add() {
        bool areEdges =
            addBreaklines(this->get(), lines.get(), 0, fixed.get(), crossings.get()) > 8;
        for (int i = 0; i < fixed->size(); i += 2) {
            areEdges = areEdges && this->triangleOn(fixed->get(i), fixed->get(i + 1)) != nullptr;
        }
        return areEdges;
    }
    void expectSound() {
        this->expectValid();
        EXPECT_EQ(fixed->size() % 2, 0) << "half an edge";
    }

    ref_ptr<Pnt3ArrayArray<Real>> lines = new ArrayRefPointerImp<Pnt3ArrayArray<Real>>;
    ref_ptr<VertexArray<Real>> fixed = newVertexArray<Real>();
    ref_ptr<Pnt3Pool<Real>> crossings = new ZynPoolImp<Pnt3Pool<Real>>(4);
};

template <class Real>
class NetworkFailure : public testing::Test {};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(NetworkFailure, Precisions);

TYPED_TEST(NetworkFailure, ChangesLeaveAValidNetwork) {
    using Net = Ground<TypeParam>;
    using FullNet = FullGround<TypeParam>;
    using Breaklines = Lines<TypeParam>;
    expectHarmless<FullNet>("addPoint", [](auto& n) { return n.add(500.5, 500.25); });
    expectHarmless<Net>("addPoint on the rim", [](auto& n) { return n.add(750, 0); });
    const auto points = newLine<TypeParam>(20, 5.5, 3.25, 12.5, 55);  // the last one is outside
    const auto add = [points](auto& n) {
        const ref_ptr<IntArray> rejected = newIntArray();
        addPoints(n.get(), points.get(), 0, nullptr, rejected.get());
        return n.get()->triangleCount() == 2 * (511 + 19 + 1);
    };
    expectHarmless<FullNet>("addPoints", add, &FullNet::expectValid);
    expectHarmless<Breaklines>("addBreaklines", &Breaklines::add, &Breaklines::expectSound);
    const auto remove = [](auto& n) { return n.get()->removePoint(nullptr, 926, 343, 1); };
    expectHarmless<Net>("removePoint", remove);
    expectHarmless<Net>("compact", [](auto& n) { return compactVertices(n.get()) > 50; });
    const auto restore = [](auto& n) { return restoreDelaunay(n.get()) >= 0; };
    expectHarmless<Net>("restoreDelaunay", restore, &Net::expectValid);
    const auto close = [](auto& n) { return closeHull(n.get()) >= 0; };
    expectHarmless<Net>("closeHull", close, &Net::expectValid);
    const auto enforce = [](auto& n) {
        return n.get()->enforceEdge(n.vertex(0), n.vertex(25), nullptr) != nullptr;
    };
    expectHarmless<Net>("enforceEdge", enforce, &Net::expectValid);
}

TYPED_TEST(NetworkFailure, QueriesLeaveTheNetworkUnchanged) {
    const auto expect = [](const char* name, auto run) {
        expectHarmless<Ground<TypeParam>>(name, [run](auto& n) { return run(n.get()); });
    };
    expect("counts", [](auto* e) { return vertexCount(e) + 4 == allVertexCount(e); });
    expect("validate", [](auto* e) { return validate(e).isNull(); });
    expect("findCone", [](auto* e) {
        const auto found = newVertexArray<TypeParam>();
        const TypeParam p[] = {46, 503, 0};
        return e->locate(p[0], p[1])->findCone(p, 400, found.get()) > 10;
    });
    double z = 0;
    expect("heightAt", [&z](auto* e) { return heightAt(e, 750.0, 0.0, z) && z == 0; });
    expect("profile", [](auto* e) { return profile(e, {50, 60}, {900, 800})->size() > 9; });
    const ref_ptr<DoubleArray> levels = newDoubleArray();
    levels->append(7.5);
    expect("contours", [&levels](auto* e) { return contours(e, levels.get())->size() > 0; });
    expect("rasterize", [](auto* e) {
        const ref_ptr<MatrixDbl> raster = newMatrixDbl();
        return rasterize(e, Enve2d(0, 0, 9, 9), 9, 9, raster.get());
    });
    const auto points = newLine<TypeParam>(20, 0, 0, 1, 1);
    expect("spatialSort", [&points](auto*) { return spatialSort(points.get()), true; });
    expect("spatialOrder", [&points](auto*) { return spatialOrder(points.get())->size() == 20; });
    if constexpr (std::same_as<TypeParam, float>) {
        expect("rays", [](auto* e) {
            const XPnt3f above(500.5F, 400.5F, 99), below(500.5F, 400.5F, -99);
            return ref_ptr(e->rayIntersections(above, below)) != nullptr;
        });
    }
}

/// A network and a file, neither of which may be lost.
template <class Real>
struct GroundAndFile : FullGround<Real> {
    GroundAndFile() {
        this->add(500.5, 500.25);
        this->before = this->records();
        std::filesystem::remove(path);  // replaced by a new one below
        std::filesystem::remove(path + ".new");
        std::ofstream(path) << "old";
        writeBinary(this->get(), (path + ".tin").c_str());
        writeText(this->get(), (path + ".txt").c_str());
    }
    void expectUnchanged() {
        std::string content;
        std::ifstream(path) >> content;
        EXPECT_EQ(content, "old");
        EXPECT_FALSE(std::filesystem::exists(path + ".new"));
        Ground<Real>::expectUnchanged();
    }
    bool read(bool isText) {
        Real* array = nullptr;
        int count = 0;
        const bool isRead = isText ? readText(this->get(), (path + ".txt").c_str(), array, count)
                                   : readBinary(this->get(), (path + ".tin").c_str(), array, count);
        vertices.reset(array);
        return isRead && count == 516;
    }
    void expectUnchangedOrEmpty() {
        EXPECT_EQ(vertices, nullptr);
        if (this->get()->triangleCount() > 0) { expectUnchanged(); }
    }
    const std::string path = testing::TempDir() + "zyn_allocation_failure";
    std::unique_ptr<Real[]> vertices;
};

TYPED_TEST(NetworkFailure, WritersKeepTheOldFileAndReadersTheOldNetworkOrNone) {
    using Real = TypeParam;
    using Net = GroundAndFile<Real>;
    const auto write = [](const char* name, auto writeFile) {
        expectHarmless<Net>(name, [=](auto& n) { return writeFile(n.get(), n.path.c_str()); });
    };
    write("binary", [](auto* e, auto* path) { return writeBinary<Real>(e, path); });
    write("text", [](auto* e, auto* path) { return writeText<Real>(e, path); });
    expectHarmless<Net>("new file",
                        [](auto& n) { return writeBinary(n.get(), (n.path + ".new").c_str()); });
    write("obj", [](auto* e, auto* path) { return writeObj<Real>(e, path); });
    write("xml", [](auto* e, auto* path) { return writeLandXml<Real>(e, path, {}); });
    constexpr auto normals = PlyNormals::vertex;
    write("ply", [](auto* e, auto* path) { return writePly<Real>(e, path, anyEdge, normals); });
    const auto readB = [](auto& n) { return n.read(false); };
    expectHarmless<Net>("readBinary", readB, &Net::expectUnchangedOrEmpty);
    const auto readT = [](auto& n) { return n.read(true); };
    expectHarmless<Net>("readText", readT, &Net::expectUnchangedOrEmpty);
    const auto keep = [](auto& n) { return readBinary(*n.engine, (n.path + ".tin").c_str()); };
    expectHarmless<Net>("readBinary, kept", keep, &Net::expectUnchangedOrEmpty);
    if constexpr (std::same_as<Real, double>) {
        testing::internal::CaptureStdout();
        write("exportObj", [](auto* e, auto* path) { return e->exportObj({}, path, 10); });
        testing::internal::GetCapturedStdout();
    }
}

TEST(AllocationFailure, TheOneShotTriangulationLeavesAnEmptyEngine) {
    struct Empty {
        void expectUnchanged() {
            EXPECT_EQ(e->triangleCount(), 2);
            EXPECT_EQ(validate(e.get()).toStdString(), "");
        }
        bool triangulate() { return e->triangulate(points.get()); }
        ref_ptr<IZynDelaunayD> e = newZynDelaunayDouble(0, 0, 0, 50, 50);
        ref_ptr<Pnt3dArray> points = newLine<double>(600, 1, 1, 0, 0);
        Empty() {  // more triangles than a block holds
            for (int i = 0; i < 600; ++i) { points->getRef(i).set(i % 23 + 1, i % 29 + 1, 0); }
        }
    };
    testing::internal::CaptureStdout();
    const bool hasGenerator = Empty().triangulate();
    if (hasGenerator) { expectHarmless<Empty>("triangulate", &Empty::triangulate); }
    testing::internal::GetCapturedStdout();
    if (!hasGenerator) { GTEST_SKIP() << "built without the mesh generator"; }
}

TEST(AllocationFailure, BlocksStayUnchanged) {
    struct Block {  // has nine images, but its points were added when there were three
        Block() {
            setImgNum(t.get(), 3);
            for (int i = 0; i < 3; ++i) { t->addWrdPnt(seenOn(i, (i + 1) % 3), XPnt3d(i, 2, 3)); }
            setImgNum(t.get(), 9);
        }
        ref_ptr<Pnt2dArray> seenOn(int a, int b) {
            ref_ptr<Pnt2dArray> seen = newPnt2dArray();
            seen->resize(t->getImgNum());
            for (const int img : {a, b}) { seen->getRef(img) = XPnt2d(img, 0.5); }
            return seen;
        }
        void expectUnchanged() {
            EXPECT_EQ(t->getWrdPntNum(), 3);
            EXPECT_EQ(t->getImgNum(), 9);
            for (int p = 0; p < 3; ++p) { EXPECT_EQ(t->getWrdPnt(p).x, p); }
            for (int img = 0; img < 9; ++img) {
                SCOPED_TRACE(img);
                for (int p = 0; p < 3; ++p) {
                    const bool isSeen = img == p || img == (p + 1) % 3;
                    EXPECT_EQ(t->getImgPnt(img, p).isValid(), isSeen) << p;
                }
                const int count = img < 3 ? 2 : 0;  // of measurements
                EXPECT_EQ(t->getImgTagPnts(img)->size(), count);
                EXPECT_EQ(t->removeImgPntAt(img, count), -1);
            }
        }
        bool exchange() {
            const ref_ptr<Pnt2dArrayArray> pnts = newPnt2dArrayArray();
            const ref_ptr<IntArrayArray> ids = newIntArrayArray();
            const ref_ptr<CamParaArray> cams = newCamParaArray();
            const ref_ptr<IntArray> camMap = newIntArray(), wrdMap = newIntArray();
            const ref_ptr<Pnt3dArray> wrdPnts = newPnt3dArray();
            return t->exportData(pnts, ids, cams, camMap, wrdPnts, wrdMap) == 0 &&
                   t->importData(cams, camMap, wrdPnts, wrdMap) == 0;
        }
        ref_ptr<IZynPMSDataTable> t = newZynPMSDataTable();
    };
    const XPnt3d xyz(4, 4, 4);
    expectHarmless<Block>("images", [](Block& b) { return setImgNum(b.t.get(), 40) == 0; });
    expectHarmless<Block>("clear", [](Block& b) { return b.t->clear() == 0; });
    expectHarmless<Block>("addImgPnt", [](Block& b) { return b.t->addImgPnt(7, {1, 2}, 1) == 0; });
    expectHarmless<Block>("addWrdPnt", [xyz](Block& b) {
        return b.t->addWrdPnt(b.seenOn(0, 8), xyz) == 0 && b.t->getImgPnt(8, 3).x == 8;
    });
    const auto merge = [xyz](Block& b) { return b.t->mergeWrdPnts(0, 1, xyz) == -1; };
    expectHarmless<Block>("mergeWrdPnts", merge);  // both are seen on image 1
    expectHarmless<Block>("there and back", &Block::exchange);
    Block left;  // with a measurement of a point whose links do not reach that far
    left.t->addImgPnt(8, {1, 2}, 0), left.t->addImgPnt(8, {3, 4}, 0);
    left.t->swapWrdPnts(0, 1);
    const support::FailingAllocation none(0);
    EXPECT_EQ(left.t->removeImgPntAt(8, 0), 0);
    EXPECT_FALSE(none.hasFailed());
}

TEST(AllocationFailure, ServicesKeepTheirFiles) {
    struct File {
        File() { std::ofstream(path.toStdString()) << "[1]=[2]\n3 4\n"; }
        ~File() {
            settings = nullptr;  // the destructor may save
            std::filesystem::remove(path.toStdString());
        }
        std::string content() {
            std::ifstream in(path.toStdString());
            return {std::istreambuf_iterator(in), {}};
        }
        void expectUnchanged() { EXPECT_EQ(content(), "[1]=[2]\n3 4\n"); }
        void expectUnchangedOrSaved() {
            settings = nullptr;
            EXPECT_THAT(content(), testing::StartsWith("[1]=[2]\n"));
        }
        bool open() { return (settings = newZynSetting(QString()))->open(path) == 0; }
        bool openAndSave() { return open() && settings->save() == 0; }
        bool log() {
            const ref_ptr<IZynLog> log = newZynLog(path, true, false);
            return log->isOpen() && log->open(path, true);
        }
        bool copyPoints() {
            ref_ptr<Pnt2dArray> points;
            return readPnt2dArray(path, points, nullptr) && getTxtFileLineNum(path, nullptr) == 2 &&
                   savePnt2dArray(path, points, nullptr);
        }
        const QString path = QString::fromStdString(testing::TempDir() + "zyn_allocation_text");
        ref_ptr<IZynSetting> settings;
    };
    expectHarmless<File>("readLines",
                         [](File& f) { return readLines(f.path, nullptr)->size() == 2; });
    expectHarmless<File>("strSeperator", [](File& f) {
        return strSeperator(f.path, QStringLiteral("_"))->size() > 2;
    });
    expectHarmless<File>("points", &File::copyPoints);
    expectHarmless<File>("settings", &File::openAndSave, &File::expectUnchangedOrSaved);
    expectHarmless<File>("settings at their end", &File::open, &File::expectUnchangedOrSaved);
    expectHarmless<File>("log", &File::log);
}

TEST(AllocationFailure, VolumesColorTablesAndNumbersAsTextNeedNoMemory) {
    Ground<double> ground;
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();
    const ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
    const support::FailingAllocation none(0);
    const SurfaceVolume sum = volume(ground.get(), 7.5);
    const bool isFilled = grade->fillTable(ramp->pcolor(), ramp->size());
    const QString text = tostring(1.5) + tostring(-7) + tostring(35, 36);
    EXPECT_FALSE(none.hasFailed());
    EXPECT_GT(sum.cut, 0);
    EXPECT_TRUE(isFilled);
    EXPECT_EQ(text, QLatin1String("1.5-7z"));
}

}  // namespace
