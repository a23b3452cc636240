// A file that takes its place only when it is whole.
#pragma once

#include "core/descriptor.h"

#include <QFile>
#include <QTextStream>

#include <sys/stat.h>

#include <cstdio>
#include <string>

namespace zyn::detail {

/// Writes beside the place of the file, under a name that begins with ".zyn-unfinished-", flushes
/// to the disk and renames. So a process that is killed leaves at most that file, and of several
/// processes that write one file the last one wins. A new file has the permissions that the process
/// gives to every file; one that replaces another has its owner and permissions. A link stays: its
/// target is written.
///
/// What cannot be replaced is written in its place: devices, pipes, what is open under a name of
/// the system, a file with several names, a file whose owner cannot be kept, and a file in a folder
/// that is closed to new files.
class WholeFile {
public:
    /// Opens nothing if `path` is null, is empty, or may not be written.
    explicit WholeFile(const char* path);
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;
    /// Drops what was not committed.
    ~WholeFile();

    [[nodiscard]] bool isOpen() const { return stream != nullptr; }
    /// Null when nothing is open.
    [[nodiscard]] std::FILE* get() const { return stream.get(); }
    /// Calls `put` with a stream into the file, without a device when nothing is open. Returns
    /// whether everything could be written.
    template <class Put>
    [[nodiscard]] bool write(Put put);
    /// Closes the file and puts it into its place. Returns false, and leaves what was there before,
    /// if a part did not arrive.
    [[nodiscard]] bool commit();

private:
    /// Where a path leads to, behind its links.
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
    std::string temporary;  ///< Its name in the folder until it is renamed; empty in place.
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

}  // namespace zyn::detail
