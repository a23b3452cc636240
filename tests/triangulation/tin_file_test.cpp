// Networks in files: their bytes, the way back, and damage.
#include <zyn/delaunay.h>
#include <zyn/surface.h>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <clocale>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <locale>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "seed.h"

namespace {

using namespace zyn;
using support::faultOf;
using support::pointOf;
namespace fs = std::filesystem;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
void fill(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

/// The bytes of numbers, as they stand in a file of a little-endian machine's.
template <class... Numbers>
std::string bytes(Numbers... numbers) {
    std::string result;
    (result.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    return result;
}

template <class Real>
class TinFileTest : public testing::Test, protected support::Network<Real> {
protected:
    using Net = support::Network<Real>;

    TinFileTest() : Net(0, 0, 10, 10), folder(testing::TempDir() + "zyn_tin_file_test") {
        fs::remove_all(folder);
        fs::create_directory(folder);
        file = folder + "/network.tin";
    }
    ~TinFileTest() override { fs::remove_all(folder); }

    void addRandom(int count) {
        std::mt19937 random(support::newSeed());
        std::uniform_real_distribution place(0.0, 10.0);
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(this->add(place(random), place(random), std::ldexp(place(random), i % 90)));
        }
    }
    /// What came of reading `file` into a network of other points.
    struct Back {
        explicit Back(const std::string& path, bool text = false) : net(-5, -5, 5, 5) {
            net.add(1, 1);
            Real* array = &marker;
            result = text ? readText(net.engine.get(), path.c_str(), array, count)
                          : readBinary(net.engine.get(), path.c_str(), array, count);
            vertices.reset(array);
        }
        /// Whether the engine has lost its network and nothing else came.
        bool isNothing() {
            Real z = 0;
            net.engine->rewindTriangles();
            return !result && vertices == nullptr && count == 0 &&
                   net.engine->triangleCount() == 0 && net.engine->nextTriangle() == nullptr &&
                   net.engine->locate(0, 0) == nullptr && !net.add(0, 0) &&
                   !net.engine->removePoint(nullptr, 0, 0, 9) &&
                   net.engine->enforceEdge(&z, &z, nullptr) == nullptr &&
                   vertexCount(net.engine.get()) == 0;
        }
        Real marker = 0;
        Net net;
        std::unique_ptr<Real[]> vertices;
        int count = -7;
        bool result = false;
    };

    std::string folder, file;
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(TinFileTest, Precisions);

TYPED_TEST(TinFileTest, BytesAreThoseOfTheFormat) {
    using Real = TypeParam;
    const auto i32 = [](auto... n) { return bytes(std::int32_t(n)...); };
    const auto reals = [](auto... c) { return bytes(Real(c)...); };
    const std::string head = "ZynTINFile10" + std::string(52, '\0');
    const std::string frame = reals(0, 0, 1, 10, 0, 1, 10, 10, 1, 0, 10, 1);
    ASSERT_TRUE(writeBinary(this->engine.get(), this->file.c_str()));
    EXPECT_EQ(contentOf(this->file).size(), sizeof(Real) == 8 ? 216U : 168U);
    EXPECT_EQ(contentOf(this->file),
              head + i32(4, 2) + frame + i32(0, 1, 2, -1, 1, -1) + i32(2, 3, 0, -1, 0, -1));
    ASSERT_TRUE(this->add(5, 2, -0.1));
    ASSERT_TRUE(writeBinary(this->engine.get(), this->file.c_str()));
    EXPECT_EQ(contentOf(this->file), head + i32(5, 4) + frame + reals(5, 2, -0.1) +
                                         i32(4, 1, 2, -1, 2, 3) + i32(4, 3, 0, -1, 3, 2) +
                                         i32(4, 2, 3, -1, 1, 0) + i32(4, 0, 1, -1, 0, 1));
    this->points[0].set(Real(1.5e-7), Real(1234567), Real(0.1));
    EXPECT_TRUE(writeText(this->engine.get(), this->file.c_str()));
    EXPECT_EQ(
        contentOf(this->file),
        "ZynTINFile10\n5\n4\n0\t0\t1\n10\t0\t1\n10\t10\t1\n0\t10\t1\n1.5e-07\t1.23457e+06\t0.1\n"
        "4\t1\t2\t-1\t2\t3\t\n4\t3\t0\t-1\t3\t2\t\n4\t2\t3\t-1\t1\t0\t\n4\t0\t1\t-1\t0\t1\t\n");
}

TYPED_TEST(TinFileTest, WhatIsReadIsWhatWasWritten) {
    using Real = TypeParam;
    this->addRandom(2000);
    this->points[9].z = std::numeric_limits<Real>::denorm_min();
    this->points[10].z = Real(std::nan(""));
    this->points[11].z = -Real(HUGE_VAL);
    ASSERT_TRUE(writeBinary(this->engine.get(), this->file.c_str()));
    const std::string first = contentOf(this->file);
    fill(this->file, "any head" + first.substr(8) + "trailing bytes");
    typename TestFixture::Back back(this->file);
    ASSERT_TRUE(back.result);
    EXPECT_EQ(back.count, 2004);
    EXPECT_EQ(faultOf(*back.net.engine, {.vertices = 2004}), "");
    EXPECT_EQ(allVertexCount(back.net.engine.get()), 2004);
    ASSERT_TRUE(writeBinary(back.net.engine.get(), this->file.c_str()));
    EXPECT_TRUE(contentOf(this->file) == first);
    ASSERT_TRUE(back.net.add(5.5, 5.5));
    EXPECT_EQ(faultOf(*back.net.engine, {.vertices = 2005}), "");

    // Text rounds to six digits, and is then kept.
    EXPECT_TRUE(writeText(this->engine.get(), this->file.c_str()));
    typename TestFixture::Back rounded(this->file, true);
    ASSERT_TRUE(rounded.result);
    EXPECT_EQ(rounded.count, 2004);
    const std::string text = contentOf(this->file);
    EXPECT_TRUE(writeText(rounded.net.engine.get(), this->file.c_str()));
    EXPECT_TRUE(contentOf(this->file) == text);
    fill(this->file, "\n ZynTINFile10 " + text.substr(12) + "more");
    EXPECT_TRUE(typename TestFixture::Back(this->file, true).result);
}

/// Numbers as 1.234,5.
struct CommaNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TYPED_TEST(TinFileTest, TheHostsLocaleChangesNothing) {
    this->addRandom(1000);
    EXPECT_TRUE(writeText(this->engine.get(), this->file.c_str()));
    const std::string text = contentOf(this->file);
    // The locale of the streams everywhere, that of C as well where the machine has one.
    const std::locale before = std::locale::global({std::locale(), new CommaNumbers});
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    EXPECT_TRUE(writeText(this->engine.get(), this->file.c_str()));
    EXPECT_TRUE(contentOf(this->file) == text);
    EXPECT_TRUE(typename TestFixture::Back(this->file, true).result);
    std::locale::global(before);
    std::setlocale(LC_ALL, "C");
}

TYPED_TEST(TinFileTest, ADamagedFileGivesNothing) {
    using Real = TypeParam;
    ASSERT_TRUE(this->add(5, 2) && this->add(6, 7));
    ASSERT_TRUE(writeBinary(this->engine.get(), this->file.c_str()));
    const std::string binary = contentOf(this->file);
    EXPECT_TRUE(writeText(this->engine.get(), this->file.c_str()));
    const std::string text = contentOf(this->file);
    const auto expectNothing = [this](const std::string& content, bool isText) {
        fill(this->file, content);
        EXPECT_TRUE(typename TestFixture::Back(this->file, isText).isNothing())
            << testing::PrintToString(content);
    };
    for (std::size_t n = 0; n < binary.size(); ++n) { expectNothing(binary.substr(0, n), false); }
    // The text is whole when its last number is.
    for (std::size_t n = 0; n < text.size() - 2; ++n) { expectNothing(text.substr(0, n), true); }

    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const auto withNumber = [&](std::size_t at, std::int32_t n) {
        return std::string(binary).replace(at, 4, bytes(n));
    };
    const std::size_t records = 72 + 18 * sizeof(Real);
    for (const std::int32_t n : {-1, -most - 1, 0, 3, 7, 1 << 28, most}) {
        expectNothing(withNumber(64, n), false);
        expectNothing(withNumber(68, n > 2 ? n : std::min(n, 0)), false);
    }
    for (const std::int32_t n : {-2, 6, most, -most - 1}) {
        expectNothing(withNumber(records + 8, n == -2 ? -1 : n), false);  // a vertex
        expectNothing(withNumber(records + 24 + 12, n), false);           // a neighbour
    }
    const auto withWord = [&text](std::size_t number, const std::string& word) {
        std::istringstream words(text);
        std::string result;
        for (std::string w; words >> w;) { result += (number-- == 0 ? word : w) + "\n"; }
        return result;
    };
    // Words 0: head; 1, 2: counts; 3 to 20: coordinates; then the records.
    for (const char* const word : {"ZynTINFile1", "ZynTINFile100", "zynTINFile10", "6"}) {
        expectNothing(withWord(0, word), true);
    }
    for (const char* const word :
         {"-6", "3", "5", "7", "2147483647", "2147483648", "6.0", "x", "0x6"}) {
        expectNothing(withWord(1, word), true);
        expectNothing(withWord(2, word), true);
    }
    for (const char* const word : {"x", "1,5", "1.5x", "--1", "1e", "e5"}) {
        expectNothing(withWord(3, word), true);
        expectNothing(withWord(20, word), true);
    }
    for (const char* const word : {"-2", "6", "99999999999", "1.5", "x"}) {
        expectNothing(withWord(21, std::string(word) == "-2" ? "-1" : word), true);
        expectNothing(withWord(24, word), true);
    }
    expectNothing(std::string(3000000, 'Z'), true);
    expectNothing("ZynTINFile10\n" + std::string(3000000, '6'), true);
}

TYPED_TEST(TinFileTest, WhatIsNoFileIsRefused) {
    auto* const e = this->engine.get();
    const std::string fifo = this->folder + "/fifo", missing = this->folder + "/no/file";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& path : {fifo, missing, this->folder}) {
        for (const bool text : {false, true}) {
            EXPECT_TRUE(typename TestFixture::Back(path, text).isNothing()) << path;
        }
    }
    EXPECT_FALSE(writeBinary(e, missing.c_str()));
    EXPECT_FALSE(writeBinary(e, this->folder.c_str()));
    EXPECT_FALSE(writeBinary(e, "/dev/full"));
    EXPECT_FALSE(writeBinary(e, nullptr));
    EXPECT_TRUE(writeText(e, missing.c_str()));
    EXPECT_TRUE(writeText(e, "/dev/full"));
    EXPECT_EQ(faultOf(*e), "");  // a write leaves the engine as it was
}

/// The lines of an OBJ file as vertices and faces.
template <class Real>
struct Obj {
    explicit Obj(const std::string& text) {
        std::istringstream lines(text);
        for (std::string kind; lines >> kind;) {
            if (kind == "v") {
                XPnt3<Real> p;
                lines >> p.x >> p.y >> p.z;
                vertices.push_back(p);
            } else {
                EXPECT_EQ(kind, "f");
                auto& f = faces.emplace_back();
                lines >> f[0] >> f[1] >> f[2];
            }
        }
    }
    std::vector<XPnt3<Real>> vertices;
    std::vector<std::array<std::size_t, 3>> faces;
};

/// Lets no file grow beyond that many bytes, like a full disk, as long as it lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) : signalBefore(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{size, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, signalBefore);
    }

private:
    rlimit before = {};
    void (*signalBefore)(int);
};

TYPED_TEST(TinFileTest, WriteObjWritesTheSurfaceExactly) {
    using Real = TypeParam;
    auto* const e = this->engine.get();
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution place(0.0, 10.0);
    for (int i = 0; i < 200; ++i) {
        EXPECT_TRUE(this->add(place(random), place(random), place(random)));
    }
    const std::string path = this->folder + "/surface.obj";
    for (const double longest : {double(HUGE_VAL), 2.0}) {
        ASSERT_TRUE(writeObj(e, path.c_str(), longest));
        const Obj<Real> obj(contentOf(path));
        std::size_t face = 0, known = 0;
        for (const auto& t : this->records()) {
            bool isLong = false;
            for (int i = 0; i < 3; ++i) {
                const XPnt3d edge = pointOf(t.vertex[i]) - pointOf(t.vertex[(i + 1) % 3]);
                isLong = isLong || std::hypot(edge.x, edge.y, edge.z) > longest;
            }
            if (e->isFrameTriangle(&t) || isLong) { continue; }
            ASSERT_LT(face, obj.faces.size());
            for (std::size_t i = 0; i < 3; ++i) {
                const std::size_t n = obj.faces[face][i];
                known = std::max(known, n);
                ASSERT_LE(n, obj.vertices.size());
                EXPECT_EQ(obj.vertices[n - 1], XPnt3<Real>(t.vertex[i]));
            }
            ++face;
        }
        EXPECT_EQ(face, obj.faces.size());
        EXPECT_EQ(known, obj.vertices.size());
    }
    const std::string before = contentOf(path), fifo = this->folder + "/fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(writeObj(e, fifo.c_str()));  // a file would take its place
    EXPECT_TRUE(fs::is_fifo(fifo));
    EXPECT_FALSE(writeObj(e, (this->folder + "/no/surface.obj").c_str()));
    EXPECT_FALSE(fs::exists(this->folder + "/no"));
    EXPECT_FALSE(writeObj<Real>(nullptr, path.c_str()));
    {
        const FileSizeLimit limit(4096);
        EXPECT_FALSE(writeObj(e, path.c_str()));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(this->folder), {}), 2);
    EXPECT_EQ(contentOf(path), before);
}

TEST(ExportObj, WritesNumberedPointsAndTheFacesBelowTheLimit) {
    std::vector<XPnt3d> points{{2, 2, 0}, {5, 2, 1.5}, {2, 2, 5}, {2, 5, 0}, {9, 9, 0}};
    const ref_ptr<IZynDelaunayD> e = newZynDelaunayDouble(0, 0, 0, 10, 10);
    for (XPnt3d& p : points) { EXPECT_EQ(e->addPoint(&p, 0), p.z != 5); }
    const std::string path = testing::TempDir() + "zyn_export.obj";
    const auto exported = [&](double maxEdge, bool result = true) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(e->exportObj(points, path.c_str(), maxEdge), result);
        std::fflush(stdout);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "Writing File \"" + path +
                      "\"...\nWriting vertices...Done!\nWriting triangles...Done!");
        return contentOf(path);
    };
    const std::string vertices =
        "v 2.000000 2.000000 0.000000\nv 5.000000 2.000000 1.500000\nv 2.000000 2.000000 5.000000\n"
        "v 2.000000 5.000000 0.000000\nv 9.000000 9.000000 0.000000\n";
    const Obj<double> all(exported(99999.0));
    EXPECT_EQ(all.vertices.size(), 5U);  // the refused point keeps its line
    ASSERT_EQ(all.faces.size(), 2U);
    for (const auto& f : all.faces) {
        EXPECT_EQ(std::count(f.begin(), f.end(), 3U), 0);
        const XPnt3d a = all.vertices[f[0] - 1], b = all.vertices[f[1] - 1],
                     c = all.vertices[f[2] - 1];
        EXPECT_GT((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x), 0);
    }
    // The longest edges in space are 4.5 and above 8.
    EXPECT_EQ(Obj<double>(exported(4.5)).faces.size(), 1U);
    EXPECT_EQ(exported(4.4), vertices);
    EXPECT_EQ(Obj<double>(exported(std::nextafter(99999.0, 0))).faces.size(), 2U);

    std::vector<XPnt3d> many(32770);
    for (std::size_t i = 0; i < many.size(); ++i) { many[i].inten = static_cast<std::int16_t>(i); }
    points.swap(many);
    EXPECT_EQ(Obj<double>(exported(1)).vertices.size(), 32768U);

    fs::remove(path);
    testing::internal::CaptureStdout();
    const std::string missing = path + "/no/file";
    EXPECT_FALSE(e->exportObj(points, missing.c_str(), 1));
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Writing File \"" + missing + "\"...\n");
    // Vertices without an `inten`.
    compactVertices(e.get());
    EXPECT_FALSE(e->exportObj(points, path.c_str(), 1));
    EXPECT_FALSE(fs::exists(path));
}

}  // namespace
