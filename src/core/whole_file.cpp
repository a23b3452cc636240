#include "core/whole_file.h"

#include <QFileInfo>

#include <unistd.h>

#include <cerrno>

namespace zyn {

namespace {

/// What cannot be synchronized has nothing to tell.
bool hasArrived(int handle) { return ::fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP; }

}  // namespace

bool mayBeWritten(const QString& path) {
    return QFile(path).open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly);
}

bool commitWhole(QSaveFile& file) {
    return file.flush() && hasArrived(file.handle()) && file.commit();
}

WholeFile::WholeFile(const QString& path) : beside(path), direct(path), device(&beside) {
    const QFileInfo there(path);
    if (there.exists() && !there.isFile()) { device = &direct; }
    beside.setDirectWriteFallback(true);
    const bool isProtected = there.isFile() && !mayBeWritten(path);
    if (!path.isEmpty() && !isProtected) { device->open(QIODevice::WriteOnly | QIODevice::Text); }
}

bool WholeFile::commit() {
    if (device == &beside) { return commitWhole(beside); }
    direct.close();
    return direct.error() == QFileDevice::NoError;
}

}  // namespace zyn
