// The lines of a text file, read in blocks: files larger than memory and pipes will do.
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
    /// Throws a Failure when `path` cannot be opened or is a directory.
    explicit LineReader(const std::string& path);

    /// Moves to the next line; false after the last. Throws a Failure when the file cannot be read
    /// or is no text.
    bool next();
    /// The present line without the blanks at its ends. Valid until next().
    [[nodiscard]] std::string_view line() const { return current; }
    /// Bytes in the file, 0 if they cannot be told.
    [[nodiscard]] std::int64_t fileSize() const { return size; }

    /// Throws a Failure that names the file and the present line.
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
    std::size_t begin = 0;  ///< of what was read and not yet given out
    std::size_t end = 0;
    std::string_view current;
    std::int64_t number = 0;
};
