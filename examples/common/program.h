// The frame of every program: help, failures as one line on standard error, and exit codes for
// scripts.
#pragma once

#include "failure.h"

#include <functional>
#include <span>
#include <string>

using Arguments = std::span<const char* const>;

/// Thrown for a command line that the program does not understand.
class WrongUsage : public Failure {
public:
    using Failure::Failure;
};

/// Runs `work` on the arguments after the program's name. Returns the exit code: 0, 1 for a
/// failure, 2 for wrong usage. With -h or --help among the arguments prints `help` instead, with
/// --version the version of the library that the program was compiled with.
int runProgram(const char* name, const char* help, int argc, char** argv,
               const std::function<void(Arguments)>& work);

/// Prints a warning of the program `name` on standard error.
void warn(const char* name, const std::string& message);

/// The arguments `INPUT [OUT]` of the smaller programs; OUT is the current folder by default.
struct InputAndOut {
    explicit InputAndOut(Arguments arguments);
    std::string input, out = ".";
};
