// Writing a file through a buffer.
#pragma once

#include "core/whole_file.h"

#include <cstddef>
#include <cstdio>
#include <string>

namespace zyn::detail {

/// Writes a whole file through a buffer, and remembers whether every part could be written.
class FileWriter {
public:
    explicit FileWriter(const char* path) : file(path) { text.reserve(bufferSize + 1024); }

    [[nodiscard]] bool isOpen() const { return file.isOpen(); }
    void flushIfFull() {
        if (text.size() >= bufferSize) { flush(); }
    }
    /// Puts the file into its place. Returns false, with nothing changed there, if a part could not be
    /// written.
    [[nodiscard]] bool commit() {
        flush();
        return isWritten && file.commit();
    }

    std::string text;  ///< The next bytes of the file.

private:
    static constexpr std::size_t bufferSize = std::size_t{1} << 16U;

    void flush() {
        isWritten = isWritten && isOpen() &&
                    std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
        text.clear();
    }

    WholeFile file;
    bool isWritten = true;
};

}  // namespace zyn::detail
