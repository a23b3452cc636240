// Networks in files: their bytes and the way back.
#include <zyn/delaunay.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <string>

#include "file_content.h"
#include "network_check.h"
#include "seed.h"
#include "tin_host.h"

namespace {

using namespace zyn;
using support::bytes;

template <class Real>
class TinFileTest : public testing::Test, protected support::Network<Real> {
protected:
    TinFileTest() : support::Network<Real>(0, 0, 10, 10) {}

    MemoryFile file;
    TinHost<Real> host;
};
TYPED_TEST_SUITE(TinFileTest, support::Precisions);

TYPED_TEST(TinFileTest, BytesAreThoseOfTheFormat) {
    using Real = TypeParam;
    const auto i32 = [](auto... n) { return bytes(std::int32_t(n)...); };
    const auto reals = [](auto... c) { return bytes(Real(c)...); };
    const std::string head = "ZynTINFile10" + std::string(52, '\0');
    const std::string frame = reals(0, 0, 1, 10, 0, 1, 10, 10, 1, 0, 10, 1);
    EXPECT_EQ(fileOf(*this, false),
              head + i32(4, 2) + frame + i32(0, 1, 2, -1, 1, -1) + i32(2, 3, 0, -1, 0, -1));
    ASSERT_TRUE(this->add(5, 2, -0.1));
    EXPECT_EQ(fileOf(*this, false), head + i32(5, 4) + frame + reals(5, 2, -0.1) +
                                        i32(4, 1, 2, -1, 2, 3) + i32(4, 3, 0, -1, 3, 2) +
                                        i32(4, 2, 3, -1, 1, 0) + i32(4, 0, 1, -1, 0, 1));
    this->points[0].set(Real(1.5e-7), Real(1234567), Real(0.1));
    EXPECT_EQ(
        fileOf(*this, true),
        "ZynTINFile10\n5\n4\n0\t0\t1\n10\t0\t1\n10\t10\t1\n0\t10\t1\n1.5e-07\t1.23457e+06\t0.1\n"
        "4\t1\t2\t-1\t2\t3\t\n4\t3\t0\t-1\t3\t2\t\n4\t2\t3\t-1\t1\t0\t\n4\t0\t1\t-1\t0\t1\t\n");
}

TYPED_TEST(TinFileTest, WhatIsReadIsWhatWasWritten) {
    using Real = TypeParam;
    for (const XPnt3d& p : support::uniformPoints(2000, support::newSeed()).points) {
        this->add(10 * p.x, 10 * p.y, p.z);
    }
    for (const bool text : {true, false}) {  // text rounds to six digits, and is then kept
        if (!text) {
            this->points[9].z = std::numeric_limits<Real>::denorm_min();
            this->points[10].z = Real(std::nan(""));
        }
        const std::string first = fileOf(*this, text);
        const std::string same = (text ? "\n " : "any head") + first.substr(text ? 0 : 8) + "more";
        this->file.fill(same.data(), same.size());
        EXPECT_STREQ(this->host.faultOfRead(this->file.path, text), nullptr);
        ASSERT_TRUE(this->host.taken);
        EXPECT_TRUE(fileOf(this->host.net, text) == first);
        const int count = 3 + this->engine->triangleCount() / 2;
        if (!text) { EXPECT_EQ(support::faultOf(*this->host.net.engine, {.vertices = count}), ""); }
    }
}

TYPED_TEST(TinFileTest, WhatIsNoFileIsRefused) {
    const std::string folder = testing::TempDir(), fifo = folder + "zyn_fifo";
    std::filesystem::remove(fifo);
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& path : {fifo, folder + "zyn_no/file", folder}) {
        for (const bool text : {false, true}) {
            EXPECT_STREQ(this->host.faultOfRead(path, text), nullptr) << path;
            EXPECT_FALSE(this->host.taken);
        }
    }
    std::filesystem::remove(fifo);
    EXPECT_TRUE(!writeBinary(this->engine.get(), nullptr) &&
                writeText(this->engine.get(), nullptr));
}

}  // namespace
