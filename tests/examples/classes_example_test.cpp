// The program `classes`.
#include <string>

#include "program_test.h"

namespace {

class ClassesExample : public ProgramTest {
protected:
    ClassesExample() : ProgramTest(CLASSES_PROGRAM) {}
};

TEST_F(ClassesExample, DrawsTheShippedTerrain) {
    const Result result = run("'" TERRAIN_FILE "' out");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "2 LEVEL    33335 triangles\n"));
    EXPECT_TRUE(contains(result.out, "5 RIDGE    16518 triangles\n"));
    EXPECT_FALSE(contains(result.out, "WATER"));  // a class that the program does not know
    EXPECT_EQ(outFiles(), std::set<std::string>{"classes.png"});

    write("line", "1 1 1\n2 2 2\n3 3 3\n");
    fs::remove_all(folder / "out");
    expectFailure(run("line out"), "line: gives no surface");
    expectHelp();
}

}  // namespace
