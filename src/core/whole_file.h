// A file that replaces the old one only when it is complete.
#pragma once

#include "core/descriptor.h"

#include <QFile>
#include <QTextStream>

#include <sys/stat.h>

#include <cstdio>
#include <string>

namespace zyn::detail {

/// Writes a temporary file beside the target, flushes it to the disk and renames it.
///
/// - A process that is killed leaves at most a file whose name begins with ".zyn-unfinished-".
/// - If several processes write one file, the last to finish wins.
/// - A new file gets the default permissions of the process. A replaced one keeps its owner and
///   permissions.
/// - A symbolic link stays a link; its target is replaced.
///
/// The following cannot be replaced and are written in place: devices, pipes, files opened through
/// /dev or /proc, files with several names, files whose owner cannot be kept, and files in a folder
/// that accepts no new file.
class WholeFile {
public:
    /// Opens nothing if `path` is null or empty, or if the file may not be written.
    explicit WholeFile(const char* path);
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;
    /// Discards the file unless it was committed.
    ~WholeFile();

    [[nodiscard]] bool isOpen() const { return stream != nullptr; }
    /// Returns null if nothing is open.
    [[nodiscard]] std::FILE* get() const { return stream.get(); }
    /// Calls `put` with a text stream into the file, or with a stream without a device if nothing
    /// is open. Returns whether everything could be written.
    template <class Put>
    [[nodiscard]] bool write(Put put);
    /// Closes the file and moves it to its final name. If any part could not be written, returns
    /// false and leaves the old file as it was.
    [[nodiscard]] bool commit();

private:
    /// Describes where a path leads to after all links are followed.
    struct Place {
        Descriptor folder;
        std::string name;  ///< in the folder; empty if the path leads nowhere
    };

    static Place find(std::string path);
    static bool isAt(const Place& place, const struct stat& file);
    void replace(const char* path, const struct stat& old);
    bool createBeside(mode_t mode);
    void openInPlace(const char* path);
    void drop();

    Place place;
    std::string temporary;  ///< the name in the folder until renamed; empty if in place
    File stream;
};

// The text stream uses the file until its own end, so it must end before the file is closed.
template <class Put>
bool WholeFile::write(Put put) {
    QTextStream text;
    QFile file;
    if (isOpen() && file.open(get(), QIODevice::WriteOnly)) { text.setDevice(&file); }
    put(text);
    text.flush();
    return isOpen() && text.status() == QTextStream::Ok;
}

}  // namespace zyn::detail
