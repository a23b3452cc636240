// The program `host`.
#include <filesystem>
#include <string>

#include "program_test.h"

namespace {

class HostExample : public ProgramTest {
protected:
    HostExample() : ProgramTest(HOST_PROGRAM) {}
};

TEST_F(HostExample, LogsAndRemembers) {
    expectHelp();
    std::string points = "x y\n";
    for (int i = 0; i < 70000; ++i) { points += std::to_string(i) + " 0.5\n"; }
    write("points", points);
    const Result first = run("points out");
    EXPECT_EQ(first.exitCode, 0) << first.err;
    EXPECT_TRUE(contains(first.out, " host run 1, last file: \n"));
    EXPECT_TRUE(contains(first.out, " host 70000 points in 2 blocks\n"));
    const Result shipped = run("'" POINTS_FILE "' out2");
    EXPECT_TRUE(contains(shipped.out, " host 120 points in 1 blocks\n"));
    const Result missing = run("missing new");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "host: missing: No such file or directory\n");
    EXPECT_EQ(missing.out, "");
    EXPECT_FALSE(std::filesystem::exists(folder / "new"));
    write("empty", "");
    const Result second = run("empty out");
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(second.err, "host: empty: cannot be read, or has no lines\n");
    EXPECT_TRUE(contains(second.out, " host run 2, last file: points\n"));
    EXPECT_EQ(contentsOf(folder / "out/host.log"), first.out + second.out);
    EXPECT_EQ(contentsOf(folder / "out/host.settings"), "[last file]=[points]\n[runs]=[2]\n");
}

}  // namespace
