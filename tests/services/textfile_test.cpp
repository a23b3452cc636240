// Files of lines and points, damaged ones too, and numbers as text. fuzz_text holds what a file of
// points may contain.
#include <zyn/progress.h>
#include <zyn/setting.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include "file_test.h"

namespace {

using namespace zyn;
using testing::ElementsAre;

struct TextFile : FileTest {};
struct BadInput : FileTest {};
namespace fs = std::filesystem;

std::vector<std::string> list(const ref_ptr<StringArray>& array) {
    std::vector<std::string> result;
    for (const QString& s : *array) { result.push_back(s.toStdString()); }
    return result;
}

struct CountingProgress : IZynProgress {
    void setTotal(double t) override { total = t; }
    void setPosition(double) override {}
    double getPosition() override { return 0; }
    void step(double amount) override { steps += amount == 0.02 ? 1 : 1000; }
    void setMessage(QString) override {}
    bool isCanceled() override { return false; }
    void finish() override {}
    double total = 0;
    int steps = 0;
};

TEST_F(TextFile, ReadsAndCountsLinesThatAreNotEmpty) {
    EXPECT_EQ(list(readLines(write("\xEF\xBB\xBF b \n\na\r\n\xC3\xA9\nlast"), nullptr)),
              (std::vector<std::string>{" b ", "a", "\xC3\xA9", "last"}));
    EXPECT_EQ(getTxtFileLineNum(q(path), nullptr), 4);
    EXPECT_EQ(readLines(write("\n\n\n"), nullptr)->size(), 0);
    EXPECT_EQ(readLines(write(std::string("a\0b\n\0\n", 6)), nullptr)->size(), 2);
    EXPECT_EQ(readLines(write(std::string(100 << 20, 'x')), nullptr)->get(0).size(), 100 << 20);
    ASSERT_EQ(mkfifo((path + "fifo").c_str(), 0600), 0);
    for (const QString& none :
         {q(path + "no"), q(testing::TempDir()), q(path + "fifo"), QString()}) {
        EXPECT_EQ(readLines(none, nullptr), nullptr);
        EXPECT_EQ(getTxtFileLineNum(none, nullptr), 0);
        EXPECT_FALSE(isFileExist(none));
    }
}

TEST(FileName, IsSplitAtTheLastSlashAndTheLastDot) {
    EXPECT_EQ(getFileExt(q("/x/a.tar.gz")), q("gz"));
    EXPECT_EQ(getFileDir(q("/x/y/a")), q("/x/y"));
    EXPECT_EQ(getFileName(q("/x/a.tar.gz")), q("a.tar.gz"));
}

TEST_F(TextFile, WritingReportsItsProgress) {
    for (const auto& [lines, steps] : {std::pair(0, 0), {19, 19}, {20, 20}, {39, 39}, {45, 22}}) {
        const ref_ptr<StringArray> array = newStringArray();
        for (int i = 0; i < lines; ++i) { array->append(q("l\n")); }
        for (const std::string& to : {path, path + "/no"}) {
            const ref_ptr<CountingProgress> progress = new CountingProgress;
            EXPECT_TRUE(writeLines(q(to), array, progress.get()));
            EXPECT_EQ(progress->total, 1.0) << lines;
            EXPECT_EQ(progress->steps, steps) << lines;
        }
        EXPECT_EQ(getTxtFileLineNum(q(path), nullptr), lines);
    }
    EXPECT_FALSE(writeLines(q(path + "2"), nullptr, nullptr));
    EXPECT_FALSE(isFileExist(q(path + "2")));
}

TEST_F(TextFile, ReadsPointsAmongOtherLines) {
    ref_ptr<Pnt2dArray> points;
    const auto read = [&](const QString& file) { return readPnt2dArray(file, points, nullptr); };
    EXPECT_FALSE(read(q(path)));
    EXPECT_FALSE(read(write("\n\n")));
    EXPECT_EQ(points, nullptr);
    ASSERT_TRUE(read(write("head\n")));
    EXPECT_EQ(points->size(), 0);
    EXPECT_TRUE(read(write("\xEF\xBB\xBF 1 2\nx y\n3,4\r\n5\t6 7")));
    EXPECT_THAT(std::vector(points->begin(), points->end()),
                ElementsAre(XPnt2d(1, 2), XPnt2d(3, 4), XPnt2d(5, 6)));
    EXPECT_FALSE(savePnt2dArray(QString(), points, nullptr));
    EXPECT_FALSE(savePnt2dArray(q(path), nullptr, nullptr));
    // The end of a block falls between any two characters of the numbers.
    for (std::size_t shift = 0; shift < 12; ++shift) {
        const std::string feeds((1 << 18) - shift, '\n');
        ASSERT_TRUE(read(write(feeds + "12.5\t-3.25\r\n6 7\n"))) << shift;
        ASSERT_EQ(points->size(), 2) << shift;
        EXPECT_EQ(points->get(0), XPnt2d(12.5, -3.25));
        EXPECT_EQ(points->get(1), XPnt2d(6, 7));
    }
}

TEST_F(BadInput, AnUnreadableFileReturnsNothingAndStaysUnchanged) {
    const QString file = write("[a]=[1]\n2 3\n");
    fs::permissions(testing::TempDir(), fs::perms::all, fs::perm_options::add);
    const uid_t user = geteuid();
    // No mode lets the file be read. Root may read everything, so another user tries it.
    for (const auto perms : {fs::perms::none, fs::perms(0222)}) {
        fs::permissions(path, perms);
        if (user == 0) { ASSERT_EQ(seteuid(65534), 0); }
        ref_ptr<Pnt2dArray> points;
        EXPECT_EQ(getTxtFileLineNum(file, nullptr), 0);
        EXPECT_EQ(readLines(file, nullptr)->size(), 0);
        EXPECT_FALSE(readPnt2dArray(file, points, nullptr));
        EXPECT_EQ(points, nullptr);
        {
            const ref_ptr<IZynSetting> settings = newZynSetting(QString());
            EXPECT_EQ(settings->open(file), -1);
            EXPECT_TRUE(settings->getValue(q("a")).isNull());
        }
        if (user == 0) { ASSERT_EQ(seteuid(user), 0); }
    }
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_EQ(content(), "[a]=[1]\n2 3\n");
}

TEST_F(BadInput, AFileThatShrinksEndsEarlier) {
    const std::string text(1 << 22, '\n');
    EXPECT_EQ(getTxtFileLineNum(write(text), nullptr), 1 << 22);
    const std::jthread other([&](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            fs::resize_file(path, 1000);
            fs::resize_file(path, text.size());
        }
    });
    for (int i = 0; i < 20; ++i) {
        EXPECT_LE(getTxtFileLineNum(q(path), nullptr), 1 << 22);
        ref_ptr<Pnt2dArray> points;
        (void)readPnt2dArray(q(path), points, nullptr);
        (void)readLines(q(path), nullptr);
    }
}

TEST_F(BadInput, ReadsOnAfterAnEndlessLine) {
    const std::string large(100 << 20, 'x');
    ref_ptr<Pnt2dArray> points;
    ASSERT_TRUE(readPnt2dArray(write("1 2\n" + large + "\n3 4"), points, nullptr));
    EXPECT_THAT(std::vector(points->begin(), points->end()),
                ElementsAre(XPnt2d(1, 2), XPnt2d(3, 4)));
    const ref_ptr<IZynSetting> settings = newZynSetting(QString());
    EXPECT_EQ(settings->open(write("[" + large + "]=[x]\n[last]=[v]")), 0);
    EXPECT_EQ(settings->getValue(q("last")), q("v"));
}

TEST(Text, IsSplitAtSeparators) {
    EXPECT_EQ(list(strSeperator(q("[A]=[B]"), q("[]=\n"))), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(list(strSeperator(q("a b"), QString())), std::vector<std::string>{"a b"});
    const QChar chars[] = {QLatin1Char('a'), QLatin1Char('b')};
    EXPECT_TRUE(isCharInArray(chars[1], chars, 2));
    EXPECT_FALSE(isCharInArray(chars[1], chars, 1));
    EXPECT_FALSE(isCharInArray(chars[0], chars, -1));
    EXPECT_FALSE(isCharInArray(chars[0], nullptr, 1));
}

TEST(Text, KeysEncodeNumbersWithTheirSign) {
    for (const auto& [number, key] : {std::pair(0, "Z0"), {-3, "N3"}, {12, "P12"}, {1, "P1"}}) {
        EXPECT_EQ(numToKeyStr(number), q(key));
        EXPECT_EQ(keyStrToNum(q(key)), number);
    }
    EXPECT_EQ(numToKeyStr(std::numeric_limits<int>::min()), q("N2147483648"));
    for (const char* const key :
         {"", "Q5", "P", "Px", "P99999999999", "N2147483648", "N-2147483648", "Z7"}) {
        EXPECT_EQ(keyStrToNum(q(key)), 0) << key;
    }
}

TEST(Text, ThatIsNoNumberInRangeReadsAsZero) {
    EXPECT_EQ(toLong(q("3000000000")), 0);
    EXPECT_EQ(toLong(q("-17")), -17);
    EXPECT_EQ(toDouble(q("1e400")), 0);
    EXPECT_EQ(toDouble(q("3.75")), 3.75);
    EXPECT_EQ(toDouble(q("a")), 0);
}

TEST(Text, WritesNumbersInAnyBaseAndWithFifteenDigits) {
    EXPECT_EQ(tostring(-255, 16), q("-ff"));
    EXPECT_EQ(tostring(std::numeric_limits<int>::min(), 2), q("-1" + std::string(31, '0')));
    EXPECT_TRUE(tostring(5, 1).isNull());
    EXPECT_TRUE(tostring(5, 37).isNull());
    EXPECT_EQ(tostring(35, 36), q("z"));
    const struct {
        double number;
        const char* text;
    } known[] = {{3, "3."},
                 {1e15, "1.e+15"},
                 {0.099, "9.9e-02"},
                 {0.1, "0.1"},
                 {0, "0."},
                 {999999999999999.9, "1.e+15"},
                 {99999999999999.96, "100000000000000."},
                 {-1.23456789012345e-7, "-1.23456789012345e-07"},
                 {123456.789, "123456.789"},
                 {-HUGE_VAL, "-inf"},
                 {std::nan(""), "nan"}};
    for (const auto& [number, text] : known) { EXPECT_EQ(tostring(number), q(text)); }
}

}  // namespace
