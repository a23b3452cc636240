#include "core/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <string_view>
#include <utility>

namespace zyn::detail {

namespace {

/// Returns whether the data reached the disk. Some disks report a failure only here. Files that
/// cannot be flushed, such as pipes, count as written.
bool hasArrived(std::FILE* file) {
    return fsync(fileno(file)) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool mayBeWritten(const char* path) {
    return Descriptor(open(path, O_WRONLY | O_CLOEXEC)).isOpen();
}

bool isOfTheSystem(std::string_view path) {
    return path.starts_with("/proc/") ||
           (path.starts_with("/dev/") && !path.starts_with("/dev/shm/"));
}

/// Returns whether `error` means that the folder accepts no new file, or none of that name.
bool isFolderClosed(int error) {
    return error == EACCES || error == EPERM || error == EROFS || error == ENOENT;
}

/// Returns where the link leads to, or an empty string if `name` is no link.
std::string targetOf(const Descriptor& folder, const std::string& name) {
    std::string target(PATH_MAX, '\0');
    const ssize_t size = readlinkat(folder.get(), name.c_str(), target.data(), target.size());
    target.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return target;
}

/// Returns a different name at each call, as long as the clock advances.
std::string unfinishedName() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return ".zyn-unfinished-" + std::to_string(std::chrono::nanoseconds(now).count());
}

}  // namespace

WholeFile::WholeFile(const char* path) {
    if (path == nullptr) { return; }
    struct stat old = {};
    if (stat(path, &old) != 0) {
        if (errno != ENOENT) { return; }
        place = find(path);
        if (!place.name.empty()) { createBeside(0666); }
    } else if (!S_ISREG(old.st_mode)) {
        openInPlace(path);
    } else if (mayBeWritten(path)) {
        replace(path, old);
    }
}

/// Keeps the folder open. The temporary file beside the target then needs no path, which could be
/// too long or change its meaning.
WholeFile::Place WholeFile::find(std::string path) {
    constexpr int mostLinks = 40;  // as many as the system follows
    Descriptor from(AT_FDCWD);
    for (int link = 0; link < mostLinks && !isOfTheSystem(path); ++link) {
        const std::size_t end = path.rfind('/') + 1;
        const std::string folder = end == 0 ? "." : path.substr(0, end);
        Place place{
            Descriptor(openat(from.get(), folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)),
            path.substr(end)};
        if (!place.folder.isOpen()) { break; }
        path = targetOf(place.folder, place.name);
        if (path.empty()) { return place; }
        from = std::move(place.folder);
    }
    return Place();
}

/// Compares the files themselves: an open file whose name was removed may find another file under
/// that name.
bool WholeFile::isAt(const Place& place, const struct stat& file) {
    struct stat there = {};
    return fstatat(place.folder.get(), place.name.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
           there.st_ino == file.st_ino && there.st_dev == file.st_dev;
}

void WholeFile::replace(const char* path, const struct stat& old) {
    place = find(path);
    if (old.st_nlink == 1 && !place.name.empty() && isAt(place, old)) {
        if (createBeside(S_IRUSR | S_IWUSR)) {
            const int handle = fileno(get());
            if (fchown(handle, old.st_uid, old.st_gid) == 0) {
                if (fchmod(handle, old.st_mode & 0777U) != 0) { drop(); }
                return;
            }
            drop();
        } else if (!isFolderClosed(errno)) {
            return;
        }
    }
    openInPlace(path);
}

/// Returns false on failure, with the reason in errno.
bool WholeFile::createBeside(mode_t mode) {
    constexpr int attempts = 100;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        std::string name = unfinishedName();
        Descriptor file(openat(place.folder.get(), name.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file.isOpen()) {
            temporary = std::move(name);
            stream.reset(fdopen(file.get(), "w"));
            if (!isOpen()) { break; }
            (void)file.release();
            return true;
        }
        if (errno != EEXIST) { return false; }
    }
    const int error = errno;
    drop();
    errno = error;
    return false;
}

void WholeFile::openInPlace(const char* path) {
    Descriptor file(open(path, O_WRONLY | O_TRUNC | O_CLOEXEC));
    if (!file.isOpen()) { return; }
    stream.reset(fdopen(file.get(), "w"));
    if (isOpen()) { (void)file.release(); }
}

bool WholeFile::commit() {
    if (!isOpen()) { return false; }
    const bool isBeside = !temporary.empty();
    const bool isWritten = std::fflush(stream.get()) == 0 && std::ferror(stream.get()) == 0 &&
                           (!isBeside || hasArrived(stream.get()));
    const bool isClosed = std::fclose(stream.release()) == 0;
    if (!isWritten || !isClosed || !isBeside) { return isWritten && isClosed; }
    const int folder = place.folder.get();
    if (renameat(folder, temporary.c_str(), folder, place.name.c_str()) != 0) { return false; }
    temporary.clear();
    return true;
}

void WholeFile::drop() {
    stream.reset();
    if (!temporary.empty()) { unlinkat(place.folder.get(), temporary.c_str(), 0); }
    temporary.clear();
}

WholeFile::~WholeFile() { drop(); }

}  // namespace zyn::detail
