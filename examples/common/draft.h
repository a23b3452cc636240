// Files that appear whole or not at all, several at once.
#pragma once

#include "failure.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

/// A file that is written under another name. Without publish() it is removed.
class Draft {
public:
    /// Throws a Failure if the path is a directory.
    explicit Draft(std::string path_) : path(std::move(path_)), part(path + ".part") {
        std::error_code error;
        if (std::filesystem::is_directory(path, error)) { throw Failure(path, "is a directory"); }
    }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;
    ~Draft() {
        std::error_code ignored;
        std::filesystem::remove(part, ignored);
    }

    /// Calls `put` with the path to write to. Throws a Failure if `put` throws a std::system_error.
    template <class Put>
    void write(Put put) const {
        try {
            put(part);
        } catch (const std::system_error& error) {
            throw Failure(path, "cannot be written: " + error.code().message());
        }
    }
    /// Renames the file to its path. Throws a Failure.
    void publish() const {
        write([this](const std::string& from) { std::filesystem::rename(from, path); });
    }

    const std::string path;

private:
    const std::string part;
};
