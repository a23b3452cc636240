// Files of lines and points, and numbers as text.
#include <zyn/progress.h>
#include <zyn/textfile.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "seed.h"

namespace {

using namespace zyn;
namespace fs = std::filesystem;

QString q(const std::string& text) { return QString::fromUtf8(text.c_str(), int(text.size())); }

std::vector<std::string> list(const ref_ptr<StringArray>& array) {
    std::vector<std::string> result;
    for (const QString& s : *array) { result.push_back(s.toStdString()); }
    return result;
}

class TextFileTest : public testing::Test {
protected:
    TextFileTest() : folder(fs::path(testing::TempDir()) / "zyn_text_file_test") {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~TextFileTest() override { fs::remove_all(folder); }

    QString file(const std::string& content) const {
        std::ofstream(folder / "file", std::ios::binary) << content;
        return path("file");
    }
    QString path(const std::string& name) const { return q((folder / name).string()); }
    /// Points as both ways read them: a line at a time, and as the text's rule says.
    std::vector<XPnt2d> pointsOf(const std::string& content) const {
        ref_ptr<Pnt2dArray> points;
        const bool any = readPnt2dArray(file(content), points, nullptr);
        std::vector<XPnt2d> expected;
        const ref_ptr<StringArray> lines = readLines(path("file"), nullptr);
        for (const QString& line : *lines) {
            const ref_ptr<StringArray> fields = strSeperator(line, q(" ,\t\n"));
            bool x = false, y = false;
            if (fields->size() < 2) { continue; }
            const XPnt2d p(fields->get(0).toDouble(&x), fields->get(1).toDouble(&y));
            if (x && y) { expected.push_back(p); }
        }
        EXPECT_EQ(any, lines->size() > 0);
        const std::vector<XPnt2d> read =
            any ? std::vector<XPnt2d>(points->begin(), points->end()) : std::vector<XPnt2d>();
        EXPECT_EQ(read.size(), expected.size()) << content.substr(0, 200);
        for (std::size_t i = 0; i < std::min(read.size(), expected.size()); ++i) {
            EXPECT_TRUE(read[i] == expected[i] || std::isnan(read[i].x) || std::isnan(read[i].y));
        }
        return read;
    }

    const fs::path folder;
};

struct CountingProgress : IZynProgress {
    void setTotal(double t) override { total = t; }
    void setPosition(double) override {}
    double getPosition() override { return 0; }
    void step(double amount) override {
        EXPECT_EQ(amount, 0.02);
        ++steps;
    }
    void setMessage(QString) override {}
    bool isCanceled() override { return false; }
    void finish() override {}
    double total = 0;
    int steps = 0;
};

TEST_F(TextFileTest, LinesAreReadAndCounted) {
    EXPECT_EQ(list(readLines(file("a\r\n\n b \n\xC3\xA9\nlast"), nullptr)),
              (std::vector<std::string>{"a", " b ", "\xC3\xA9", "last"}));
    EXPECT_EQ(getTxtFileLineNum(path("file"), nullptr), 4);
    EXPECT_EQ(readLines(file("\n\n\n"), nullptr)->size(), 0);
    EXPECT_EQ(list(readLines(file("\xEF\xBB\xBFx\n"), nullptr)), std::vector<std::string>{"x"});
    EXPECT_EQ(readLines(file(std::string("a\0b\n\0\n", 6)), nullptr)->size(), 2);
    const std::string large(100 << 20, 'x');
    EXPECT_EQ(readLines(file(large + "\ny"), nullptr)->get(0).size(), 100 << 20);
    ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
    for (const QString& none : {path("missing"), path(""), path("fifo"), QString()}) {
        EXPECT_TRUE(readLines(none, nullptr) == nullptr && getTxtFileLineNum(none, nullptr) == 0);
        EXPECT_FALSE(isFileExist(none));
    }
    EXPECT_EQ(getFileExt(q("/x/a.tar.gz")), q("gz"));
    EXPECT_EQ(getFileName(q("/x/a.tar.gz")), q("a.tar.gz"));
    EXPECT_EQ(getFileDir(q("/x/y/a")), q("/x/y"));
}

TEST_F(TextFileTest, WritingTellsItsProgress) {
    for (const auto& [lines, steps] : {std::pair(0, 0), {19, 19}, {20, 20}, {39, 39}, {45, 22}}) {
        const ref_ptr<StringArray> array = newStringArray();
        for (int i = 0; i < lines; ++i) { array->append(q("l\n")); }
        const ref_ptr<CountingProgress> progress = new CountingProgress;
        EXPECT_TRUE(writeLines(path("file"), array, progress.get()));
        EXPECT_TRUE(progress->total == 1.0 && progress->steps == steps) << lines;
        EXPECT_EQ(getTxtFileLineNum(path("file"), nullptr), lines);
        progress->steps = 0;
        EXPECT_TRUE(writeLines(path("no/file"), array, progress.get()));
        EXPECT_EQ(progress->steps, steps);
    }
    EXPECT_FALSE(writeLines(path("new"), nullptr, nullptr) || fs::exists(folder / "new"));
}

TEST_F(TextFileTest, PointsAreReadWhateverElseIsThere) {
    EXPECT_EQ(pointsOf("1 2\nx y\n3,4\n5\t6 7\n"),
              (std::vector{XPnt2d(1, 2), XPnt2d(3, 4), XPnt2d(5, 6)}));
    EXPECT_EQ(pointsOf("\xEF\xBB\xBF 1,,2\r\n-1e3\t+2.5e-2 m").size(), 2U);
    for (const char* const text :
         {"1. .5\n", "1e400 1\n", "1e-400 1\n", "inf nan\n", "0x10 1\n", "1,5 2\n", "- 1\n1 -\n",
          "1e 2\n", "00012 -0\n", "1 2\xE9\n", "\xE9 1\n3 4\n", "1\v2 3\n", "+-1 2\n", "1\n\n2 3",
          "1e5 -1E+5\n",
          "1 2\n\xEF\xBB\xBF"
          "3 4\n",
          "\xFF\xFE"
          "1",
          "123456789012345678901234567890 0.1000000000000000055\n"}) {
        pointsOf(text);
    }
    EXPECT_EQ(pointsOf(std::string("1\0 2\n3 4\n", 9)).size(), 1U);
    ref_ptr<Pnt2dArray> points = newPnt2dArray();
    Pnt2dArray* const before = points.get();
    EXPECT_FALSE(readPnt2dArray(path("missing"), points, nullptr) || points != before);
    EXPECT_FALSE(readPnt2dArray(file("\n\n"), points, nullptr) || points != before);
    EXPECT_TRUE(readPnt2dArray(file("head\n"), points, nullptr) && points->size() == 0);

    points->append(XPnt2d(0.1, -3e5));
    EXPECT_TRUE(savePnt2dArray(path("file"), points, nullptr));
    ref_ptr<Pnt2dArray> back;
    EXPECT_TRUE(readPnt2dArray(path("file"), back, nullptr) && back->get(0) == points->get(0));
    EXPECT_FALSE(savePnt2dArray(QString(), points, nullptr) ||
                 savePnt2dArray(path("f"), nullptr, nullptr));
}

TEST(Strings, PiecesAndKeys) {
    EXPECT_EQ(list(strSeperator(q("[A]=[B]"), q("[]=\n"))), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(list(strSeperator(q(",1,,2,"), q(","))), (std::vector<std::string>{"1", "2"}));
    EXPECT_EQ(strSeperator(q(",,"), q(","))->size() + strSeperator(QString(), QString())->size(),
              0);
    EXPECT_EQ(list(strSeperator(q("a b"), QString())), std::vector<std::string>{"a b"});
    constexpr int least = std::numeric_limits<int>::min();
    for (const auto& [number, key] : {std::pair(0, "Z0"), {-3, "N3"}, {12, "P12"}}) {
        EXPECT_TRUE(numToKeyStr(number) == q(key) && keyStrToNum(q(key)) == number);
    }
    EXPECT_EQ(numToKeyStr(least), q("N2147483648"));
    for (const char* const key :
         {"", "Q5", "P", "Px", "P99999999999", "N2147483648", "N-2147483648", "Z7"}) {
        EXPECT_EQ(keyStrToNum(q(key)), 0) << key;
    }
    EXPECT_TRUE(toLong(q("3000000000")) == 0 && toLong(q("-17")) == -17);
    EXPECT_TRUE(toDouble(q("1e400")) == 0 && toDouble(q("3.75")) == 3.75 && toDouble(q("a")) == 0);
    const QChar chars[] = {QLatin1Char('a'), QLatin1Char('b')};
    EXPECT_TRUE(isCharInArray(chars[1], chars, 2) && !isCharInArray(chars[1], chars, 1));
    EXPECT_FALSE(isCharInArray(chars[0], chars, -1) || isCharInArray(chars[0], nullptr, 1));
    EXPECT_EQ(getTimeSystem().size(), 19);
}

TEST(Strings, NumbersAsText) {
    EXPECT_EQ(tostring(-255, 16), q("-ff"));
    EXPECT_EQ(tostring(std::numeric_limits<int>::min(), 2), q("-1" + std::string(31, '0')));
    EXPECT_TRUE(tostring(5, 1).isNull() && tostring(5, 37).isNull() && tostring(35, 36) == q("z"));
    const double inf = HUGE_VAL;
    for (const auto& [number, text] : {std::pair(3.0, "3."),
                                       {0.5, "0.5"},
                                       {1e15, "1.e+15"},
                                       {0.099, "9.9e-02"},
                                       {0.1, "0.1"},
                                       {999999999999999.9, "1.e+15"},
                                       {123456.789, "123456.789"},
                                       {-2.5e-7, "-2.5e-07"},
                                       {1e100, "1.e+100"},
                                       {0.0, "0."},
                                       {100.0, "100."},
                                       {inf, "inf"},
                                       {-inf, "-inf"},
                                       {std::nan(""), "nan"},
                                       {99999999999999.96, "100000000000000."}}) {
        EXPECT_EQ(tostring(number), q(text));
    }
    std::mt19937_64 random(support::newSeed());
    for (int i = 0; i < 10000; ++i) {
        const double v = std::ldexp(double(random()), int(random() % 200) - 150);
        // Half a unit of the fifteenth digit, and the roundings of the way back and the quotient.
        EXPECT_NEAR(tostring(v).toDouble() / v, 1.0, 5e-15 + 3e-16);
    }
}

}  // namespace
