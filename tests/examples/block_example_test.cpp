// The program `block`.
#include <cmath>
#include <cstdio>
#include <string>

#include "program_test.h"

namespace {

class BlockExample : public ProgramTest {
protected:
    BlockExample() : ProgramTest(BLOCK_PROGRAM) {}
};

TEST_F(BlockExample, FindsTheErrorsOfTheShippedBlock) {
    const Result result = run("'" BLOCK_FILE "' out");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    for (const char* const line :
         {"measured     8 images, 0 world points of 90, 251 measurements",
          "removed      world point 7 on image 3, off by 2.5e-03, of 2 measurements",
          "removed      world point 19 on image 1, off by 2.6e-03, of 3 measurements",
          "intersected  8 images, 89 world points of 90, 247 measurements",
          "lost         1 world points with fewer than two good measurements"}) {
        EXPECT_TRUE(contains(result.out, line));
    }
    // Moved to the middle of the cameras; the last point lay at (1000, 900).
    const std::string results = contentsOf(folder / "out/results.txt");
    EXPECT_TRUE(
        contains(results, "image 1 -124.1500 -200.9125 1307.1000 0.006000 0.016000 -0.0232"));
    EXPECT_FALSE(contains(results, "image 0") || contains(results, "point 7 "));
    double x = 0, y = 0, z = 0;
    const std::string last = linesOf(results).back();
    ASSERT_EQ(std::sscanf(last.c_str(), "point 89 %lf %lf %lf", &x, &y, &z), 3) << last;
    EXPECT_TRUE(std::abs(x - (1000 - 559.45)) < 0.05 && std::abs(y - (900 - 450.6125)) < 0.05);
    EXPECT_NEAR(z, 278.02, 0.1);
}

TEST_F(BlockExample, NamesTheFileAndTheLineOfBadInput) {
    const struct {
        std::string contents, message;
    } cases[] = {{"", "has no camera"},
                 {"camera 1 1 1\nimage 0 0 9 0 0 0\n", "fewer than two images"},
                 {"camera 1 0 1\n", ", line 1: a camera's numbers"},
                 {"camera 1 1 1\n# b\ncamera 1 1 1\n", ", line 3: a block has one camera"},
                 {"camera 1 1 1\nimage 0 0 9 0 0\n", ", line 2: 6 numbers are needed, not 5"},
                 {"point 1 2 nan\n", ", line 1: 'nan' is not a number"},
                 {"point 1 2 3x\n", ", line 1: '3x' is not a number"},
                 {"imago 1 2 3\n", ", line 1: 'imago' is none of"},
                 {"point 1 2 3\nbad 0 0 1 1\n", ", line 2: there is no such image"}};
    for (const auto& [contents, message] : cases) {
        write("input", contents);
        expectFailure(run("input out"), message);
    }
    expectFailure(run("missing out"), "missing: No such file");
    expectHelp();
    expectWrongUsage("input out more", "not 'more' too");
}

}  // namespace
