// The programs `block`, `classes` and `host`.
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

#include <QImage>

#include "program_test.h"

namespace {

struct BlockExample : ProgramTest {
    BlockExample() : ProgramTest(BLOCK_PROGRAM) {}
};
struct ClassesExample : ProgramTest {
    ClassesExample() : ProgramTest(CLASSES_PROGRAM) {}
};
struct HostExample : ProgramTest {
    HostExample() : ProgramTest(HOST_PROGRAM) {}
};

TEST_F(BlockExample, FindsTheErrorsOfTheShippedBlock) {
    expectParts(report("'" BLOCK_FILE "' out"),
                {"measured     8 images, 0 world points of 90, 251 measurements",
                 "removed      world point 7 on image 3, off by 2.5e-03, of 2 measurements",
                 "removed      world point 19 on image 1, off by 2.6e-03, of 3 measurements",
                 "intersected  8 images, 89 world points of 90, 247 measurements",
                 "lost         1 world points with fewer than two good measurements"});
    // Moved to the middle of the cameras; the last point lay at (1000, 900).
    expectParts(contentsOf(folder / "out/results.txt"),
                {"image 1 -124.1500 -200.9125 1307.1000 0.006000 0.016000 -0.0232"});
    EXPECT_EQ(shell("grep -c -e 'image 0' -e 'point 7 ' out/results.txt"), "0\n");
    double x = 0, y = 0, z = 0;
    const std::string last = shell("tail -n 1 out/results.txt");
    ASSERT_EQ(std::sscanf(last.c_str(), "point 89 %lf %lf %lf", &x, &y, &z), 3) << last;
    EXPECT_TRUE(std::abs(x - (1000 - 559.45)) < 0.05 && std::abs(y - (900 - 450.6125)) < 0.05);
    EXPECT_NEAR(z, 278.02, 0.1);
}

TEST_F(BlockExample, NamesTheFileAndTheLineOfBadInput) {
    for (const auto& [contents, message] :
         {std::pair("", "has no camera"),
          {"camera 1 1 1\nimage 0 0 9 0 0 0\n", "fewer than two images"},
          {"camera 1 0 1\n", ", line 1: the numbers of a camera"},
          {"camera 1 1 1\n# b\ncamera 1 1 1\n", ", line 3: a block has one camera"},
          {"camera 1 1 1\nimage 0 0 9 0 0\n", ", line 2: 6 numbers are needed, not 5"},
          {"point 1 2 3x\n", ", line 1: '3x' is not a number"},
          {"imago 1 2 3\n", ", line 1: 'imago' is not one of"},
          {"point 1 2 3\nbad 0 0 1 1\n", ", line 2: there is no such image"}}) {
        write("input", contents);
        expectFailure(run("input out"), message);
    }
    expectHelp();
    expectFailure(run("input out more"), "not 'more' too", 2);
}

TEST_F(ClassesExample, DrawsTheShippedTerrain) {
    write("line", "1 1 1\n2 2 2\n3 3 3\n");
    expectFailure(run("line out"), "line: yields no surface");
    expectHelp();
    expectParts(report("--help"), {"slope below 8 %", "slope of 30 % and more", "above 70 %"});
    const std::string out = report("'" TERRAIN_FILE "' out");
    expectParts(out, {"2 LEVEL    33335 triangles\n", "5 RIDGE    16518 triangles\n"});
    EXPECT_EQ(out.find("WATER"), std::string::npos);  // a class that the program does not know
    EXPECT_EQ(outFiles(), "classes.png\n");
    const QImage picture((folder / "out/classes.png").c_str());
    constexpr int map = 850, letters = 11;  // the longest key: STEEP >=30%
    EXPECT_EQ(picture.width(), map + 42 + 12 * letters + 3 * 20);
}

TEST_F(HostExample, LogsAndRemembers) {
    expectHelp();
    expectFailure(run("missing out"), "missing: No such file or directory\n");
    EXPECT_FALSE(fs::exists(folder / "out"));
    std::string points = "x y\n";
    for (int i = 0; i < 70000; ++i) { points += std::to_string(i) + " 0.5\n"; }
    write("points", points);
    const std::string first = report("points out");
    expectParts(first, {" host run 1, last file: \n", " host 70000 points in 2 blocks\n"});
    expectParts(report("'" POINTS_FILE "' out2"), {" host 120 points in 1 blocks\n"});
    write("empty", "");
    const Result second = run("empty out");
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(second.err, "host: empty: cannot be read, or has no lines\n");
    expectParts(second.out, {" host run 2, last file: points\n"});
    EXPECT_EQ(contentsOf(folder / "out/host.log"), first + second.out);
    EXPECT_EQ(contentsOf(folder / "out/host.settings"), "[last file]=[points]\n[runs]=[2]\n");
}

}  // namespace
