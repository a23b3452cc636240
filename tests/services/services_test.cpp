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
using ServicesTest = FileTest;

TEST_F(ServicesTest, LogLinesGoToTheFileOrTheConsole) {
    testing::internal::CaptureStdout();
    const QString second = q(path + "2");
    {
        const ref_ptr<IZynLog> log = newZynLog(q(path), false, false);
        log->info(q("%s%n"));
        log->setName(q("calc"));
        log->fatal(q("f"));
        log->setEcho(true);
        log->warn(q("w"));
        EXPECT_TRUE(log->isOpen() && log->getEcho() && log->open(second, false));
        log->error(q("e"));
    }
    std::fflush(stdout);
    const std::string lines = content();
    const QString other = readLines(second, nullptr)->get(0);
    const QRegularExpression time(q(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d)"));
    EXPECT_EQ(q(lines).replace(time, q("T")),
              q("[INFO]T  %s%n\n[FATAL]T calc f\n[WARN]T calc w\n"));
    EXPECT_TRUE(other.startsWith(q("[ERROR]")) && other.endsWith(q(" calc e")));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              lines.substr(lines.find("[WARN]")) + other.toStdString() + '\n');
    newZynLog(q(path), true, false)->unref();
    EXPECT_EQ(content(), lines);
    newZynLog(q(path), false, false)->unref();
    EXPECT_EQ(content(), "");

    testing::internal::CaptureStdout();
    for (const char* const none : {"", "/no/such/file"}) {
        const ref_ptr<IZynLog> log = newZynLog(q(none), false, false);
        EXPECT_TRUE(log->getEcho() && !log->isOpen() && !log->open(q(none), false));
        log->setEcho(false);
        log->debug(q("to the console"));
    }
    std::fflush(stdout);
    const std::string console = testing::internal::GetCapturedStdout();
    EXPECT_EQ(std::count(console.begin(), console.end(), '\n'), 2);
}

TEST_F(ServicesTest, SettingsComeBack) {
    {
        const ref_ptr<IZynSetting> settings = newZynSetting(q(path));
        EXPECT_TRUE(settings->save() == -1 && !isFileExist(q(path)));
        EXPECT_TRUE(settings->open(q(path)) == 0 && isFileExist(q(path)));
        settings->setValue(q("a"), q("1"), q("x"));
        settings->setValue(q("A"), q("2"), q("x"));
        EXPECT_TRUE(settings->flush() == 0 && content() == "[A]=[2]\n[a]=[1]\n");
        settings->setValue(q("late"), q("3"), QString());
    }
    EXPECT_EQ(content(), "[A]=[2]\n[a]=[1]\n[late]=[3]\n");  // saved at the end
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    settings->setValue(q("kept"), q("k"), QString());
    EXPECT_EQ(
        settings->open(write("[K]=[ v ]\r\n[E]=[]\nnone\nP=w\n[K2]=[a=b]\n[A]=[old]\n[A]=[new]\n"
                             "[cut]=[off")),
        0);
    EXPECT_TRUE(settings->getValue(q("E")).isNull() && settings->getValueText(q("P")) == q("w"));
    EXPECT_EQ(settings->save(), 0);
    EXPECT_EQ(content(), "[A]=[new]\n[K]=[v]\n[K2]=[a]\n[P]=[w]\n[cut]=[off]\n[kept]=[k]\n");
    for (const std::string& none : {std::string(), testing::TempDir(), path + "/no"}) {
        EXPECT_TRUE(settings->open(q(none)) == -1 && settings->save() == -1);
    }
    // Neither opening a pipe that nobody reads nor the end waits for a reader.
    ASSERT_EQ(mkfifo((path + "fifo").c_str(), 0600), 0);
    EXPECT_EQ(ref_ptr(newZynSetting(QString()))->open(q(path + "fifo")), -1);
    std::filesystem::remove(path + "fifo");
}

TEST(Services, SlotsAreIndependent) {
    const ref_ptr<IZynVariant> v = newZynVarint();
    EXPECT_TRUE(!v->isValid() && v->getLong() == -99999 && v->getString().isNull());
    v->setInt(5);
    v->setType(3);
    v->setLong(1LL << 40);
    v->setFloat(0.5F);
    EXPECT_TRUE(v->isValid() && v->getInt() == 5 && v->getDouble() == -99999);
    EXPECT_TRUE(v->getLong() == 1LL << 40 && v->getFloat() == 0.5F);

    const ref_ptr<IZynGUID> id = new IZynGUID;
    EXPECT_TRUE(!id->isValid() && id->toString() == q("0-0-0-"));
    id->setData1(0xFFFFFFFF);
    id->setData2(3);
    id->setData3(0xFF);
    EXPECT_TRUE(id->isValid() && ref_ptr(new IZynGUID(*id))->toString() == q("-1-3-ff-"));
}

}  // namespace
