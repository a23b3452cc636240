#include "core/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace zyn {

namespace {

/// What a disk tells only when asked for the last time; what cannot be synchronized has nothing to tell.
bool hasArrived(std::FILE* file) {
    return fsync(fileno(file)) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool mayBeWritten(const char* path) {
    const int handle = open(path, O_WRONLY | O_CLOEXEC);
    return handle >= 0 && close(handle) == 0;
}

/// Whether another file can take the place of this one, of which `real` is the path without links.
bool isReplaceable(const char* path, const char* real, const struct stat& old) {
    const std::string_view name(path);
    const bool isOfTheSystem =
        name.starts_with("/proc/") || (name.starts_with("/dev/") && !name.starts_with("/dev/shm/"));
    struct stat there = {};
    // A file that is open and has no name any more can have another one's.
    return real != nullptr && stat(real, &there) == 0 && there.st_ino == old.st_ino &&
           there.st_dev == old.st_dev && old.st_nlink == 1 && !isOfTheSystem;
}

/// Whether it is the folder that does not want another file, or the system that does not want its name.
bool isFolderClosed(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == ENOENT;
}

}  // namespace

WholeFile::WholeFile(const char* path) {
    struct stat old = {};
    if (path == nullptr || *path == '\0') { return; }
    if (stat(path, &old) != 0) {
        // Only what is really new goes when it is not committed. Memory may run out before it is there.
        temporary = path;
        const int handle = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (handle >= 0) {
            stream.reset(fdopen(handle, "w"));
            if (!isOpen()) { close(handle); }
            return;
        }
        temporary.clear();
    } else if (S_ISREG(old.st_mode) && (!mayBeWritten(path) || openBeside(path, old))) {
        return;
    }
    stream.reset(std::fopen(path, "we"));
}

/// In the folder of the file itself, if the path is that of a link to it. False when the file is to be
/// written itself; true, with nothing open, when writing would only lose it.
bool WholeFile::openBeside(const char* path, const struct stat& old) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path, nullptr), &std::free);
    if (!isReplaceable(path, real.get(), old)) { return false; }
    place = real.get();
    temporary = place.substr(0, place.rfind('/') + 1) + ".zyn-XXXXXX";
    const int handle = mkostemp(temporary.data(), O_CLOEXEC);
    const int error = errno;
    if (handle < 0) {
        place.clear();
        temporary.clear();
        return !isFolderClosed(error);
    }
    const bool isGiven = fchown(handle, old.st_uid, old.st_gid) == 0;
    if (isGiven && fchmod(handle, old.st_mode & 0777U) == 0) { stream.reset(fdopen(handle, "w")); }
    if (isOpen()) { return true; }
    close(handle);
    unlink(temporary.c_str());
    place.clear();
    temporary.clear();
    return isGiven;
}

bool WholeFile::commit() {
    if (!isOpen()) { return false; }
    const bool isWritten = std::fflush(stream.get()) == 0 && std::ferror(stream.get()) == 0 &&
                           (place.empty() || hasArrived(stream.get()));
    const bool isClosed = std::fclose(stream.release()) == 0;
    const bool isWhole = isWritten && isClosed &&
                         (place.empty() || std::rename(temporary.c_str(), place.c_str()) == 0);
    if (isWhole) { temporary.clear(); }
    return isWhole;
}

WholeFile::~WholeFile() {
    stream.reset();
    if (!temporary.empty()) { unlink(temporary.c_str()); }
}

}  // namespace zyn
