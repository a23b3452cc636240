// A program as a user runs it: by its exit code, its output and its files.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

inline std::string contentsOf(const fs::path& path) {
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

inline std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) { lines.push_back(line); }
    return lines;
}

inline testing::AssertionResult contains(const std::string& text, const std::string& part) {
    if (text.find(part) != std::string::npos) { return testing::AssertionSuccess(); }
    return testing::AssertionFailure() << "'" << part << "' is not in:\n" << text;
}

/// Runs the program in a folder of the test's own.
class ProgramTest : public testing::Test {
protected:
    struct Result {
        int exitCode;
        std::string out, err;
    };

    explicit ProgramTest(std::string program_)
        : program(std::move(program_)),
          folder(fs::path(testing::TempDir()) /
                 (fs::path(program).filename().string() + "_example_" +
                  testing::UnitTest::GetInstance()->current_test_info()->name())) {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~ProgramTest() override { fs::remove_all(folder); }

    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(folder / name, std::ios::binary) << contents;
    }
    /// `before` is put in front of the program in the shell's line.
    Result run(const std::string& arguments, const std::string& before = "") const {
        const std::string command = "cd '" + folder.string() + "' && " + before + " '" + program +
                                    "' " + arguments + " >stdout 2>stderr";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentsOf(folder / "stdout"),
                contentsOf(folder / "stderr")};
    }
    std::set<std::string> outFiles() const {
        std::set<std::string> names;
        if (!fs::is_directory(folder / "out")) { return names; }
        for (const auto& entry : fs::directory_iterator(folder / "out")) {
            names.insert(entry.path().filename());
        }
        return names;
    }
    /// Checks for the exit code, one line on standard error that has `message`, and no file.
    void expectFailure(const Result& result, const std::string& message, int exitCode = 1) const {
        EXPECT_EQ(result.exitCode, exitCode) << message;
        EXPECT_EQ(result.out, "") << message;
        EXPECT_EQ(linesOf(result.err).size(), 1U) << result.err;
        EXPECT_TRUE(contains(result.err, message));
        EXPECT_EQ(outFiles(), std::set<std::string>()) << message;
    }

    void expectWrongUsage(const std::string& arguments, const std::string& message) const {
        expectFailure(run(arguments), message, 2);
    }
    /// Checks --help, which explains the exit codes, and what is wrong usage of every program.
    void expectHelp() const {
        const std::string name = fs::path(program).filename();
        const Result help = run("--help");
        EXPECT_EQ(help.exitCode, 0);
        EXPECT_EQ(help.err, "");
        for (const std::string& part :
             {"usage: " + name + " INPUT", "\nexample: " + name + " data/",
              std::string("\nexit code: 0 done, 1 a failure")}) {
            EXPECT_TRUE(contains(help.out, part));
        }
        expectWrongUsage("", name + ": INPUT is missing; see " + name + " --help");
        expectWrongUsage("input --ouT", "unknown option '--ouT'");
    }

    const std::string program;
    const fs::path folder;
};
