// The folder that results go to.
#pragma once

#include "failure.h"

#include <filesystem>
#include <string>
#include <system_error>

/// Makes `folder` with all that leads to it, unless it is there. Throws a Failure.
inline void makeFolder(const std::string& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) { throw Failure(folder, error.message()); }
}
