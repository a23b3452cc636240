// Files that a disk, a scanner or another user has spoilt.
#include <zyn/log.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>

#include "seed.h"

namespace {

using namespace zyn;
namespace fs = std::filesystem;

QString q(const std::string& text) { return QString::fromUtf8(text.c_str(), int(text.size())); }

class BadInputTest : public testing::Test {
protected:
    BadInputTest() : path(testing::TempDir() + "zyn_bad_input_test") { fs::remove_all(path); }
    ~BadInputTest() override { fs::remove_all(path); }

    QString write(const std::string& content) const {
        std::ofstream(path, std::ios::binary) << content;
        return q(path);
    }
    static QString valueIn(const QString& file, const char* key) {
        const ref_ptr<IZynSetting> settings = newZynSetting(QString());
        EXPECT_EQ(settings->open(file), 0);
        return settings->getValue(q(key));
    }

    const std::string path;
};

TEST_F(BadInputTest, UnreadableFilesGiveNothing) {
    const QString file = write("[a]=[1]\n2 3\n");
    fs::permissions(testing::TempDir(), fs::perms::all, fs::perm_options::add);
    fs::permissions(path, fs::perms::none);
    const uid_t user = geteuid();
    if (user == 0) { ASSERT_EQ(seteuid(65534), 0); }  // root may read everything
    ref_ptr<Pnt2dArray> points;
    EXPECT_EQ(getTxtFileLineNum(file, nullptr), 0);
    EXPECT_EQ(readLines(file, nullptr)->size(), 0);
    EXPECT_FALSE(readPnt2dArray(file, points, nullptr) || points);
    {
        const ref_ptr<IZynSetting> settings = newZynSetting(QString());
        EXPECT_TRUE(settings->open(file) == 0 && settings->getValue(q("a")).isNull());
        EXPECT_EQ(settings->save(), -1);
        const ref_ptr<IZynLog> log = newZynLog(file, true, false);
        EXPECT_FALSE(log->isOpen());
    }
    EXPECT_TRUE(writeLines(file, newStringArray(), nullptr));
    if (user == 0) { ASSERT_EQ(seteuid(user), 0); }
    fs::permissions(path, fs::perms(0222));  // to be written, but not to be read
    if (user == 0) { ASSERT_EQ(seteuid(65534), 0); }
    EXPECT_EQ(ref_ptr(newZynSetting(QString()))->open(file), 0);
    if (user == 0) { ASSERT_EQ(seteuid(user), 0); }
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_EQ(readLines(file, nullptr)->size(), 2);  // as it was
}

TEST_F(BadInputTest, FullDisksAreTold) {
    const QString full = q("/dev/full");
    ref_ptr<Pnt2dArray> points = newPnt2dArray();
    points->append(XPnt2d(432100.125, 0));
    EXPECT_TRUE(savePnt2dArray(full, points, nullptr));
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    EXPECT_EQ(settings->open(full), -1);  // no file
    settings->setValue(q("a"), q("1"), QString());
    EXPECT_EQ(settings->save(), -1);
    EXPECT_EQ(settings->flush(), -1);
    EXPECT_EQ(settings->getValue(q("a")), q("1"));
    EXPECT_TRUE(savePnt2dArray(q(path), points, nullptr) &&
                readPnt2dArray(q(path), points, nullptr));
    EXPECT_EQ(points->get(0).x, 432100);  // six digits
}

TEST_F(BadInputTest, FilesThatShrinkEndEarlier) {
    const std::string text(1 << 22, '\n');
    write(text);
    std::atomic<bool> done = false;
    std::thread other([&] {
        while (!done) {
            fs::resize_file(path, 1000);
            fs::resize_file(path, text.size());
        }
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_LE(getTxtFileLineNum(q(path), nullptr), std::int32_t(text.size()));
        ref_ptr<Pnt2dArray> points;
        (void)readPnt2dArray(q(path), points, nullptr);
        (void)readLines(q(path), nullptr);
    }
    done = true;
    other.join();
}

TEST_F(BadInputTest, WhatIsReadableIsRead) {
    const std::string large(100 << 20, 'x');
    ref_ptr<Pnt2dArray> points;
    EXPECT_TRUE(readPnt2dArray(write("1 2\n" + large + "\n3 4"), points, nullptr));
    EXPECT_TRUE(points->size() == 2 && points->get(1) == XPnt2d(3, 4));
    EXPECT_EQ(valueIn(write("[" + large + "]=[x]\n[last]=[v]"), "last"), q("v"));
    for (const char* const spoilt :
         {"\xEF\xBB\xBF[k]=[v]", "[k]=[v]\r\n", "[\xE9]=[\xFF]\n[k]=[v]\n", "[k]=[v"}) {
        EXPECT_EQ(valueIn(write(spoilt), "k"), q("v")) << spoilt;
    }
    EXPECT_EQ(valueIn(write(std::string("[\0]=[\0]\n[k]=[v]\n", 17)), "k"), q("v"));

    std::mt19937 random(support::newSeed());
    std::string noise;
    for (int i = 0; i < 100000; ++i) {
        if (i % 1000 == 0) { noise += "\n[k" + std::to_string(i) + "]=[v]\n"; }
        noise += char(1 + random() % 127);
    }
    write(noise);
    for (int i = 0; i < 100000; i += 9000) {
        EXPECT_EQ(valueIn(q(path), ("k" + std::to_string(i)).c_str()), q("v")) << i;
    }

    // Numbers across every place at which a block may end.
    constexpr int blockSize = 1 << 18;
    for (int shift = 0; shift < 12; ++shift) {
        const std::string text =
            std::string(std::size_t(blockSize - shift), '\n') + "12.5\t-3.25\r\n6 7\n";
        EXPECT_TRUE(readPnt2dArray(write(text), points, nullptr));
        ASSERT_EQ(points->size(), 2) << shift;
        EXPECT_TRUE(points->get(0) == XPnt2d(12.5, -3.25) && points->get(1) == XPnt2d(6, 7));
    }
}

TEST_F(BadInputTest, LogsMoveToAnotherFile) {
    const ref_ptr<IZynLog> log = newZynLog(q(path), false, false);
    log->info(q("first"));
    EXPECT_TRUE(log->open(q(path + "2"), false));
    log->info(q("second"));
    EXPECT_TRUE(log->open(q(path), true));
    EXPECT_EQ(getTxtFileLineNum(q(path + "2"), nullptr), 1);
    EXPECT_TRUE(readLines(q(path + "2"), nullptr)->get(0).endsWith(q("second")));
    EXPECT_FALSE(log->open(q("/no/such/file"), false));
    fs::remove(path + "2");
}

}  // namespace
