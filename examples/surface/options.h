// What the command line asks for.
#pragma once

#include <limits>
#include <span>
#include <string>

struct Options {
    bool help = false;
    std::string input;
    std::string breaklines;  ///< no file when empty
    double maxEdge = std::numeric_limits<double>::infinity();
    double tolerance = 0.001;
    double contours = 0;  ///< between two lines; 0: a round number that gives about twelve of them
    std::string out = ".";
};

extern const char* const helpText;

/// Throws a Failure for anything that it does not understand.
Options parseOptions(std::span<const char* const> arguments);
