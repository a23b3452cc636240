// A program as a user runs it: by its exit code, its output and its files.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace fs = std::filesystem;

inline std::string contentsOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator(file), {}};
}

inline void expectParts(const std::string& text, std::initializer_list<std::string> parts) {
    for (const std::string& part : parts) {
        EXPECT_NE(text.find(part), std::string::npos) << "'" << part << "' is not in:\n" << text;
    }
}

/// Runs a program in a folder of the test's own.
class ProgramTest : public testing::Test {
protected:
    struct Result {
        int exitCode;
        std::string out, err;
    };

    explicit ProgramTest(std::string program_) : program(std::move(program_)) {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }

    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(folder / name, std::ios::binary) << contents;
    }
    /// What a command prints in the folder.
    std::string shell(const std::string& command) const {
        const std::string line = "cd '" + folder.string() + "'; (" + command + ") >answer";
        (void)std::system(line.c_str());
        return contentsOf(folder / "answer");
    }
    /// `before` is put in front of the program in the shell's line.
    Result run(const std::string& arguments, const std::string& before = "") const {
        const std::string out =
            shell(before + " '" + program + "' " + arguments + " 2>errors; echo $? >code");
        return {std::stoi(contentsOf(folder / "code")), out, contentsOf(folder / "errors")};
    }
    /// Runs the program, which does its work, and gives its report.
    std::string report(const std::string& arguments) const {
        const Result result = run(arguments);
        EXPECT_EQ(result.exitCode, 0) << arguments;
        EXPECT_EQ(result.err, "") << "no progress bar away from a terminal";
        return result.out;
    }
    std::string outFiles() const { return shell("test ! -d out || ls out"); }
    /// Checks for the exit code, one line on standard error that has `message`, and no file.
    void expectFailure(const Result& result, const std::string& message, int exitCode = 1) const {
        EXPECT_EQ(result.exitCode, exitCode) << message;
        EXPECT_EQ(result.out, "") << message;
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
        expectParts(result.err, {fs::path(program).filename().string() + ": ", message});
        EXPECT_EQ(outFiles(), "") << message;
    }
    /// Checks --help, which explains the exit codes, --version, and what is wrong usage of every
    /// program.
    void expectHelp() const {
        const std::string name = fs::path(program).filename();
        expectParts(report("--help"), {"usage: " + name + " INPUT", "\nexample: " + name + " data/",
                                       "\nexit code: 0 success, 1 a failure"});
        EXPECT_EQ(report("-h"), report("--help"));
        EXPECT_EQ(report("input --version"), name + " " PROJECT_VERSION "\n");
        expectFailure(run(""), "INPUT is missing; see " + name + " --help", 2);
        expectFailure(run("input --ouT"), "unknown option '--ouT'", 2);
    }

    const std::string program;
    const fs::path folder = fs::path(testing::TempDir()) /
                            testing::UnitTest::GetInstance()->current_test_info()->name();
};
