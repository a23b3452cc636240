// Log, settings, variant and identifier.
#include <zyn/guid.h>
#include <zyn/log.h>
#include <zyn/setting.h>
#include <zyn/textfile.h>
#include <zyn/variant.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "seed.h"

namespace {

using namespace zyn;
namespace fs = std::filesystem;

QString q(const std::string& text) { return QString::fromUtf8(text.c_str(), int(text.size())); }

class ServicesTest : public testing::Test {
protected:
    ServicesTest() : path(testing::TempDir() + "zyn_services_test") { fs::remove_all(path); }
    ~ServicesTest() override { fs::remove_all(path); }

    std::string content() const {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    void write(const std::string& text) const { std::ofstream(path, std::ios::binary) << text; }

    const std::string path;
};

TEST_F(ServicesTest, LogLinesGoToTheFileOrTheConsole) {
    testing::internal::CaptureStdout();
    {
        const ref_ptr<IZynLog> log = newZynLog(q(path), false, false);
        log->info(q("%s%n"));
        log->setName(q("calc"));
        log->setParams(q("a"), q("b"));
        log->fatal(q("f"));
        log->error(q("e"));
        log->setEcho(true);
        log->warn(q("w"));
        EXPECT_TRUE(log->isOpen() && log->getEcho());
    }
    std::fflush(stdout);
    const std::string lines = content();
    std::string pattern = lines;
    std::replace_if(
        pattern.begin(), pattern.end(), [](char c) { return c >= '0' && c <= '9'; }, '#');
    const std::string time = "####-##-## ##:##:##";
    EXPECT_EQ(pattern, "[INFO]" + time + "  %s%n\n[FATAL]" + time + " calc f\n[ERROR]" + time +
                           " calc e\n[WARN]" + time + " calc w\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), lines.substr(lines.find("[WARN]")));
    newZynLog(q(path), true, false)->unref();
    EXPECT_EQ(content(), lines);
    newZynLog(q(path), false, false)->unref();
    EXPECT_EQ(content(), "");

    testing::internal::CaptureStdout();
    for (const char* const none : {"", "/no/such/file"}) {
        const ref_ptr<IZynLog> log = newZynLog(q(none), false, false);
        EXPECT_TRUE(log->getEcho() && !log->isOpen());
        log->setEcho(false);
        log->debug(q("to the console"));
    }
    const ref_ptr<IZynLog> full = newZynLog(q("/dev/full"), false, false);
    for (int i = 0; i < 10000; ++i) { full->info(q("nowhere")); }
    std::fflush(stdout);
    const std::string console = testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::count(console.begin(), console.end(), '\n'), 2);
}

TEST_F(ServicesTest, SettingsComeBack) {
    {
        const ref_ptr<IZynSetting> settings = newZynSetting(q(path));
        EXPECT_TRUE(settings->save() == -1 && !fs::exists(path));
        EXPECT_TRUE(settings->open(q(path)) == 0 && fs::exists(path));
        settings->setValue(q("a"), q("1"), q("x"));
        settings->setValue(q("A"), q("2"), q("x"));
        EXPECT_EQ(settings->flush(), 0);
        EXPECT_EQ(content(), "[A]=[2]\n[a]=[1]\n");
        EXPECT_TRUE(settings->getValue(q("a")) == q("1") && settings->getValue(q("b")).isNull());
        settings->setValue(q("late"), q("3"), QString());
    }
    EXPECT_EQ(content(), "[A]=[2]\n[a]=[1]\n[late]=[3]\n");  // saved at the end
    write("[K]=[ v ]\n[E]=[]\nnone\nP=w\n[K2]=[a=b]\n[A]=[old]\n[A]=[new]\n");
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    settings->setValue(q("kept"), q("k"), QString());
    EXPECT_EQ(settings->open(q(path)), 0);
    for (const auto& [key, value] :
         {std::pair("K", "v"), {"P", "w"}, {"K2", "a"}, {"A", "new"}, {"kept", "k"}}) {
        EXPECT_EQ(settings->getValueText(q(key)), q(value));
    }
    EXPECT_TRUE(settings->getValue(q("E")).isNull());
    std::mt19937 random(support::newSeed());
    std::string noise;
    for (int i = 0; i < 100000; ++i) { noise += char(random()); }
    write(noise);
    EXPECT_EQ(settings->open(q(path)), 0);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(settings->open(QString()) == -1 && settings->save() == -1);
    EXPECT_EQ(settings->open(q(testing::TempDir())), -1);
    EXPECT_EQ(settings->open(q("/no/such/file")), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ServicesTest, SlotsAreIndependent) {
    const ref_ptr<IZynVariant> v = newZynVarint();
    EXPECT_TRUE(!v->isValid() && v->getInt() == -99999 && v->getLong() == -99999);
    EXPECT_TRUE(v->getFloat() == -99999 && v->getDouble() == -99999 && v->getString().isNull());
    v->setInt(5);
    v->setType(3);
    v->setLong(1LL << 40);
    v->setString(q("x"));
    EXPECT_TRUE(v->isValid() && v->getInt() == 5 && v->getDouble() == -99999);
    EXPECT_TRUE(v->getLong() == 1LL << 40 && v->getString() == q("x"));
    v->setFloat(0.5F);
    v->setDouble(0.1);
    EXPECT_TRUE(v->getFloat() == 0.5F && v->getDouble() == 0.1 && v->getInt() == 5);

    const ref_ptr<IZynGUID> id = new IZynGUID;
    EXPECT_TRUE(!id->isValid() && id->toString() == q("0-0-0-"));
    id->setData1(0x12AB);
    id->setData2(3);
    id->setData3(0xFF);
    id->generate();
    EXPECT_TRUE(id->isValid() && id->toString() == q("12ab-3-ff-") && id->frString(q("1")) == 0);
    id->setData1(0xFFFFFFFF);
    EXPECT_EQ(ref_ptr(new IZynGUID(*id))->toString(), q("-1-3-ff-"));
}

}  // namespace
