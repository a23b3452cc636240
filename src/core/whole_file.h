// A file that takes the place of an old one only when it is whole.
#pragma once

#include <QFile>
#include <QTextStream>

#include <sys/stat.h>

#include <cstdio>
#include <memory>
#include <string>

namespace zyn {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Where a file stands already, the new one is written beside it, with its owner and permissions. Written
/// itself is what cannot be replaced by another file: devices, pipes, what is open under a name of the
/// system's, a file with several names, another's that could not be given back to him, and one in a folder
/// that takes no new file.
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
    /// Calls `put` with a stream into the file, without a device when nothing is open; whether all could
    /// be written.
    template <class Put>
    [[nodiscard]] bool write(Put put);
    /// Closes the file and puts it into its place; false, with what was there before as it was, when a
    /// part of it did not arrive.
    [[nodiscard]] bool commit();

private:
    bool openBeside(const char* path, const struct stat& old);

    std::string place;      ///< Of a file that was there; empty when it is written itself.
    std::string temporary;  ///< What goes unless it is committed.
    File stream;
};

// The text stream ends before the file is closed, which it would otherwise use afterwards.
template <class Put>
bool WholeFile::write(Put put) {
    QTextStream text;
    QFile file;
    if (isOpen() && file.open(get(), QIODevice::WriteOnly)) { text.setDevice(&file); }
    put(text);
    text.flush();
    return isOpen() && text.status() == QTextStream::Ok;
}

}  // namespace zyn
