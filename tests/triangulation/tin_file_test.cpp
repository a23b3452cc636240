// Networks in files: their bytes and the way back.
#include <zyn/delaunay.h>
#include <zyn/surface.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "seed.h"

namespace {

using namespace zyn;
using support::faultOf;
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

    std::string write(Net& net, bool text = false) {
        EXPECT_TRUE((text ? writeText<Real> : writeBinary<Real>)(net.engine.get(), file.c_str()));
        return contentOf(file);
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
            auto& e = *net.engine;
            return !result && vertices == nullptr && count == 0 && e.triangleCount() == 0 &&
                   e.nextTriangle() == nullptr && e.locate(0, 0) == nullptr && !net.add(0, 0) &&
                   !e.removePoint(nullptr, 0, 0, 9) &&
                   e.enforceEdge(&marker, &marker, nullptr) == nullptr;
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
    const std::string first = this->write(*this);
    EXPECT_EQ(first.size(), sizeof(Real) == 8 ? 216U : 168U);
    EXPECT_EQ(first, head + i32(4, 2) + frame + i32(0, 1, 2, -1, 1, -1) + i32(2, 3, 0, -1, 0, -1));
    ASSERT_TRUE(this->add(5, 2, -0.1));
    EXPECT_EQ(this->write(*this), head + i32(5, 4) + frame + reals(5, 2, -0.1) +
                                      i32(4, 1, 2, -1, 2, 3) + i32(4, 3, 0, -1, 3, 2) +
                                      i32(4, 2, 3, -1, 1, 0) + i32(4, 0, 1, -1, 0, 1));
    this->points[0].set(Real(1.5e-7), Real(1234567), Real(0.1));
    EXPECT_EQ(
        this->write(*this, true),
        "ZynTINFile10\n5\n4\n0\t0\t1\n10\t0\t1\n10\t10\t1\n0\t10\t1\n1.5e-07\t1.23457e+06\t0.1\n"
        "4\t1\t2\t-1\t2\t3\t\n4\t3\t0\t-1\t3\t2\t\n4\t2\t3\t-1\t1\t0\t\n4\t0\t1\t-1\t0\t1\t\n");
}

TYPED_TEST(TinFileTest, WhatIsReadIsWhatWasWritten) {
    using Real = TypeParam;
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution place(0.0, 10.0);
    while (this->points.size() < 2000) { this->add(place(random), place(random), place(random)); }
    for (const bool text : {true, false}) {  // text rounds to six digits, and is then kept
        if (!text) {
            this->points[9].z = std::numeric_limits<Real>::denorm_min();
            this->points[10].z = Real(std::nan(""));
        }
        const std::string first = this->write(*this, text);
        fill(this->file, (text ? "\n " : "any head") + first.substr(text ? 0 : 8) + "more");
        typename TestFixture::Back back(this->file, text);
        ASSERT_TRUE(back.result && back.count == 2004);
        EXPECT_TRUE(this->write(back.net, text) == first);
        if (!text) { EXPECT_EQ(faultOf(*back.net.engine, {.vertices = 2004}), ""); }
    }
}

TYPED_TEST(TinFileTest, TextTakesOnePlusBeforeANumber) {
    const std::string first = this->write(*this, true);
    const auto reads = [&](const std::string& old, const std::string& now) {
        std::string changed = first;
        fill(this->file, changed.replace(first.find(old), old.size(), now));
        typename TestFixture::Back back(this->file, true);
        EXPECT_TRUE(back.result || back.isNothing()) << now;
        return back.result && this->write(back.net, true) == first;
    };
    EXPECT_TRUE(reads("\n4\n", "\n+4\n") && reads("10\t0", "+10\t0"));
    for (const char* const bad : {"++10\t0", "+-10\t0", "+\t0", "10x\t0", "10\tx"}) {
        EXPECT_FALSE(reads("10\t0", bad)) << bad;
    }
    EXPECT_FALSE(reads("\n4\n", "\n+-4\n"));
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
    EXPECT_TRUE(!writeBinary(e, nullptr) && writeText(e, nullptr));
}

TYPED_TEST(TinFileTest, ObjFilesHoldTheFacesBelowTheLimit) {
    auto* const e = this->engine.get();
    ASSERT_TRUE(this->add(2, 2) && this->add(5, 2, 1.5) && this->add(2, 5) && this->add(9, 9, 0.1));
    const std::string path = this->folder + "/surface.obj";
    std::string content;
    // The longest edges in space are 4.5 and above 8.
    for (const auto& [longest, faces] : {std::pair(4.4, 0), {4.5, 1}, {HUGE_VAL, 2}}) {
        ASSERT_TRUE(writeObj(e, path.c_str(), longest));
        content = contentOf(path);
        EXPECT_EQ(std::count(content.begin(), content.end(), 'f'), faces);
    }
}

TEST(ExportObj, WritesNumberedPointsAndTheFacesBelowTheLimit) {
    std::vector<XPnt3d> points{{2, 2, 0}, {5, 2, 1.5}, {2, 2, 5}, {2, 5, 0}};
    const ref_ptr<IZynDelaunayD> e = newZynDelaunayDouble(0, 0, 0, 10, 10);
    for (XPnt3d& p : points) { EXPECT_EQ(e->addPoint(&p, 0), p.z != 5); }
    const std::string path = testing::TempDir() + "zyn_export.obj";
    testing::internal::CaptureStdout();
    EXPECT_TRUE(e->exportObj(points, path.c_str(), 4.4));
    std::fflush(stdout);
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "Writing File \"" + path + "\"...\nWriting vertices...Done!\nWriting triangles...Done!");
    const std::string vertices = contentOf(path);  // the refused point keeps its line
    EXPECT_EQ(vertices,
              "v 2.000000 2.000000 0.000000\nv 5.000000 2.000000 1.500000\n"
              "v 2.000000 2.000000 5.000000\nv 2.000000 5.000000 0.000000\n");
    EXPECT_TRUE(e->exportObj(points, path.c_str(), 4.5));
    EXPECT_TRUE(contentOf(path).starts_with(vertices + "f "));
    EXPECT_FALSE(e->exportObj(points, (path + "/no/file").c_str(), 1));
    EXPECT_FALSE(e->exportObj(points, nullptr, 1));
    std::vector<XPnt3d> many(32770);  // the last two have a number that does not fit
    for (std::size_t i = 0; i < many.size(); ++i) { many[i].inten = static_cast<std::int16_t>(i); }
    EXPECT_TRUE(e->exportObj(many, path.c_str(), 0));
    const std::string lines = contentOf(path);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), 'v'), 32768);
    compactVertices(e.get());  // vertices without a number
    EXPECT_FALSE(e->exportObj(points, path.c_str(), 1));
    fs::remove(path);
}

TYPED_TEST(TinFileTest, AnEngineOfNobodyIsRefused) {
    using Real = TypeParam;
    zyn::DelaunayInterface<Real>* const none = nullptr;
    Real marker = 0, low[3] = {7, 7, 7}, high[3] = {7, 7, 7};
    Real* vertices = &marker;
    int count = 7;
    EXPECT_FALSE(writeBinary(none, this->file.c_str()) || writeText(none, this->file.c_str()));
    EXPECT_FALSE(writeObj(none, this->file.c_str()) || fs::exists(this->file));
    EXPECT_FALSE(readBinary(none, this->file.c_str(), vertices, count));
    EXPECT_TRUE(vertices == nullptr && count == 0);
    EXPECT_FALSE(bounds(none, low[0], low[1], low[2], high[0], high[1], high[2]));
    EXPECT_EQ(low[0], 7);
    EXPECT_EQ(vertexCount(none) + allVertexCount(none) + compactVertices(none), 0);
    EXPECT_EQ(surfaceArea(none) + surfaceAreaHorizen(none), 0);
}

}  // namespace
