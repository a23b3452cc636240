// Log, settings, variant and identifier.
#include <zyn/guid.h>
#include <zyn/log.h>
#include <zyn/setting.h>
#include <zyn/variant.h>

#include <sys/stat.h>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>

#include "file_test.h"

namespace {

using namespace zyn;
using testing::EndsWith;
using testing::StartsWith;

struct Log : FileTest {};
struct Settings : FileTest {};

TEST_F(Log, WritesEachLineToItsFileOrToTheConsole) {
    testing::internal::CaptureStdout();
    const QString second = q(path + "2");
    {
        const ref_ptr<IZynLog> log = newZynLog(q(path), false, false);
        log->info(q("%s%n"));
        log->setName(q("calc"));
        log->fatal(q("f"));
        log->setEcho(true);
        log->warn(q("w"));
        EXPECT_TRUE(log->isOpen());
        EXPECT_TRUE(log->getEcho());
        EXPECT_TRUE(log->open(second, false));
        log->error(q("e"));
    }
    std::fflush(stdout);
    const std::string lines = content();
    const QString other = readLines(second, nullptr)->get(0);
    const QRegularExpression time(q(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)"));
    EXPECT_EQ(q(lines).replace(time, q("T")),
              q("[INFO]T  %s%n\n[FATAL]T calc f\n[WARN]T calc w\n"));
    EXPECT_THAT(other.toStdString(), AllOf(StartsWith("[ERROR]"), EndsWith(" calc e")));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              lines.substr(lines.find("[WARN]")) + other.toStdString() + '\n');
    newZynLog(q(path), true, false)->unref();
    EXPECT_EQ(content(), lines);
    newZynLog(q(path), false, false)->unref();
    EXPECT_EQ(content(), "");

    testing::internal::CaptureStdout();
    for (const char* const none : {"", "/no/such/file"}) {
        const ref_ptr<IZynLog> log = newZynLog(q(none), false, false);
        EXPECT_TRUE(log->getEcho());
        EXPECT_FALSE(log->isOpen());
        EXPECT_FALSE(log->open(q(none), false));
        log->setEcho(false);
        log->debug(q("to the console"));
    }
    std::fflush(stdout);
    const std::string console = testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::count(console.begin(), console.end(), '\n'), 2);
}

TEST_F(Settings, AreReadBackAsTheyWereSaved) {
    {
        const ref_ptr<IZynSetting> settings = newZynSetting(q(path));
        EXPECT_EQ(settings->save(), -1);
        EXPECT_FALSE(isFileExist(q(path)));
        EXPECT_EQ(settings->open(q(path)), 0);
        EXPECT_TRUE(isFileExist(q(path)));
        settings->setValue(q("a"), q("1"), q("x"));
        settings->setValue(q("A"), q("2"), q("x"));
        EXPECT_EQ(settings->flush(), 0);
        EXPECT_EQ(content(), "[A]=[2]\n[a]=[1]\n");
        settings->setValue(q("late"), q("3"), QString());
    }
    EXPECT_EQ(content(), "[A]=[2]\n[a]=[1]\n[late]=[3]\n");  // the destructor saves
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    settings->setValue(q("kept"), q("k"), QString());
    EXPECT_EQ(
        settings->open(write("[K]=[ v ]\r\n[E]=[]\nnone\nP=w\n[K2]=[a=b]\n[A]=[old]\n[A]=[new]\n"
                             "[cut]=[off")),
        0);
    EXPECT_TRUE(settings->getValue(q("E")).isNull());
    EXPECT_EQ(settings->getValueText(q("P")), q("w"));
    EXPECT_EQ(settings->save(), 0);
    EXPECT_EQ(content(), "[A]=[new]\n[K]=[v]\n[K2]=[a]\n[P]=[w]\n[cut]=[off]\n[kept]=[k]\n");
    for (const std::string& none : {std::string(), testing::TempDir(), path + "/no"}) {
        EXPECT_EQ(settings->open(q(none)), -1);
        EXPECT_EQ(settings->save(), -1);
    }
    // Neither open() nor the destructor waits for a reader of a pipe.
    ASSERT_EQ(mkfifo((path + "fifo").c_str(), 0600), 0);
    EXPECT_EQ(ref_ptr(newZynSetting(QString()))->open(q(path + "fifo")), -1);
    std::filesystem::remove(path + "fifo");
}

TEST(Variant, SlotsAreIndependent) {
    const ref_ptr<IZynVariant> v = newZynVarint();
    EXPECT_FALSE(v->isValid());
    EXPECT_EQ(v->getLong(), -99999);
    EXPECT_TRUE(v->getString().isNull());
    v->setInt(5);
    v->setType(3);
    v->setLong(1LL << 40);
    v->setFloat(0.5F);
    EXPECT_TRUE(v->isValid());
    EXPECT_EQ(v->getInt(), 5);
    EXPECT_EQ(v->getDouble(), -99999);
    EXPECT_EQ(v->getLong(), 1LL << 40);
    EXPECT_EQ(v->getFloat(), 0.5F);
}

TEST(Identifier, ReadsAsHexadecimalNumbers) {
    const ref_ptr<IZynGUID> id = new IZynGUID;
    EXPECT_FALSE(id->isValid());
    EXPECT_EQ(id->toString(), q("0-0-0-"));
    id->setData1(0xFFFFFFFF);
    id->setData2(3);
    id->setData3(0xFF);
    EXPECT_TRUE(id->isValid());
    EXPECT_EQ(ref_ptr(new IZynGUID(*id))->toString(), q("-1-3-ff-"));
}

}  // namespace
