// The frame of every program: help, failures as one line on standard error, and exit codes for scripts.
#pragma once

#include "failure.h"

#include <functional>
#include <span>
#include <string>

using Arguments = std::span<const char* const>;

/// A command line that the program does not understand.
class WrongUsage : public Failure {
public:
    using Failure::Failure;
};

/// Runs `work` on the arguments behind the program's name and returns what main returns: 0, 1 for a
/// failure, 2 for wrong usage. With -h or --help among the arguments it prints `help` instead, with
/// --version the version of the library that it was compiled with.
int runProgram(const char* name, const char* help, int argc, char** argv,
               const std::function<void(Arguments)>& work);

/// Prints a line on standard error that the program `name` goes on after.
void warn(const char* name, const std::string& message);

/// The usage `INPUT [OUT]` of the smaller programs; OUT is the current folder if it is left out.
struct InputAndOut {
    explicit InputAndOut(Arguments arguments);
    std::string input, out = ".";
};
