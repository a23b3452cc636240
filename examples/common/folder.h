// The folder of the results.
#pragma once

#include "failure.h"

#include <filesystem>
#include <string>
#include <system_error>

/// Creates `folder` and its parents if they are missing. Throws a Failure.
inline void makeFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) { throw Failure(folder, error.message()); }
}
