// A writer of whole files through a buffer.
#pragma once

#include "core/whole_file.h"

#include <cstddef>
#include <cstdio>
#include <string>

namespace zyn::detail {

/// Writes a whole file through a buffer and remembers whether every part could be written.
class FileWriter {
public:
    explicit FileWriter(const char* path) : file(path) { text.reserve(bufferSize + 1024); }

    [[nodiscard]] bool isOpen() const { return file.isOpen(); }
    void flushIfFull() {
        if (text.size() >= bufferSize) { flush(); }
    }
    /// Moves the file to its final name. If any part could not be written, returns false and leaves
    /// that name as it was.
    [[nodiscard]] bool commit() {
        flush();
        return isWritten && file.commit();
    }

    std::string text;  ///< the next bytes of the file

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
