// The lines of a text file, read in blocks: works for pipes, and for files larger than memory.
#pragma once

#include "progress_bar.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class LineReader {
public:
    /// Throws a Failure if `path` cannot be opened or is a directory.
    explicit LineReader(const std::string& path);

    /// Moves to the next line. Returns false after the last. Throws a Failure if the file cannot be
    /// read or is not text.
    bool next();
    /// Returns the current line without the blanks at its ends. Valid until next().
    [[nodiscard]] std::string_view line() const { return current; }
    /// Returns the size of the file in bytes, or 0 if it is unknown.
    [[nodiscard]] std::int64_t fileSize() const { return size; }

    /// Throws a Failure that names the file and the current line.
    [[noreturn]] void fail(const std::string& reason) const;
    /// Throws a Failure that names the file.
    [[noreturn]] void failWhole(const std::string& reason) const;

private:
    bool readBlock();
    [[nodiscard]] std::string_view unread() const { return {buffer.data() + begin, end - begin}; }

    struct Close {
        void operator()(std::FILE* f) const { std::fclose(f); }
    };
    std::string path;
    std::unique_ptr<std::FILE, Close> file;
    std::int64_t size = 0;
    std::int64_t bytesRead = 0;
    ProgressBar bar{"reading"};

    std::vector<char> buffer;
    std::size_t begin = 0;  ///< start of the unread part of the block
    std::size_t end = 0;
    std::string_view current;
    std::int64_t number = 0;
};
