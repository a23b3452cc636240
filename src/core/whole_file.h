// A file that takes the place of an old one only when it is whole.
#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <memory>
#include <string>

namespace zyn {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Where a file stands already, the new one is written beside it, with its permissions. Devices, pipes
/// and a file in a folder that takes no new one are written themselves.
class WholeFile {
public:
    /// Opens nothing for null, an empty path and what may not be written.
    explicit WholeFile(const char* path);
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;
    /// Drops what was not committed.
    ~WholeFile();

    [[nodiscard]] bool isOpen() const { return stream != nullptr; }
    /// Null when nothing is open.
    [[nodiscard]] std::FILE* get() const { return stream.get(); }
    /// Closes the file and puts it into its place; false, with what was there before as it was, when a
    /// part of it did not arrive.
    [[nodiscard]] bool commit();

private:
    void openBeside(const char* path, const struct stat& old);

    std::string place;      ///< Of a file that was there; empty when it is written itself.
    std::string temporary;  ///< What goes unless it is committed.
    File stream;
};

}  // namespace zyn
