// The main function of the test programs. Cases run in parallel, each in its own process, so each
// process has its own scratch folder: testing::TempDir().
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::string folder = (std::filesystem::temp_directory_path() / "zyn_test_XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) {
        std::perror(folder.c_str());
        return EXIT_FAILURE;
    }
    setenv("TEST_TMPDIR", folder.c_str(), 1);
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(folder);
    return result;
}
