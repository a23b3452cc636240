#include "core/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

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

}  // namespace

WholeFile::WholeFile(const char* path) {
    struct stat old = {};
    if (path == nullptr || *path == '\0') { return; }
    if (stat(path, &old) != 0) {
        temporary = path;
    } else if (S_ISREG(old.st_mode)) {
        if (!mayBeWritten(path)) { return; }
        openBeside(path, old);
    }
    if (!isOpen()) { stream.reset(std::fopen(path, "w")); }
    if (!isOpen()) { temporary.clear(); }
}

/// In the folder of the file itself, if the path is that of a link to it.
void WholeFile::openBeside(const char* path, const struct stat& old) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path, nullptr), &std::free);
    struct stat there = {};
    // A file that is open and has no name any more can have another one's.
    if (real == nullptr || stat(real.get(), &there) != 0 || there.st_ino != old.st_ino ||
        there.st_dev != old.st_dev) {
        return;
    }
    place = real.get();
    temporary = place + ".XXXXXX";
    const int handle = mkostemp(temporary.data(), O_CLOEXEC);
    if (handle >= 0 && fchmod(handle, old.st_mode & 07777U) == 0) {
        stream.reset(fdopen(handle, "w"));
    }
    if (isOpen()) { return; }
    if (handle >= 0) {
        close(handle);
        unlink(temporary.c_str());
    }
    place.clear();
    temporary.clear();
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
