// The reason why a program stops: one line that names the file and, if known, the line in it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    Failure(const std::string& file, const std::string& reason)
        : runtime_error(file + ": " + reason) {}
    Failure(const std::string& file, std::int64_t line, const std::string& reason)
        : Failure(file + ", line " + std::to_string(line), reason) {}
};
