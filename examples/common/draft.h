// Files that appear whole, together with others or not at all.
#pragma once

#include "failure.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

/// A file that is written beside its place. Without publish() nothing is left of it.
class Draft {
public:
    /// Throws a Failure if a directory is in its place.
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

    /// Calls `put` with the path to write to. Throws a Failure where it throws a std::system_error.
    template <class Put>
    void write(Put put) const {
        try {
            put(part);
        } catch (const std::system_error& error) {
            throw Failure(path, "cannot be written: " + error.code().message());
        }
    }
    /// Puts the file into its place. Throws a Failure.
    void publish() const {
        write([this](const std::string& from) { std::filesystem::rename(from, path); });
    }

    const std::string path;

private:
    const std::string part;
};
