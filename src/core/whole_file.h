// A file that takes the place of an old one only when it is whole.
#pragma once

#include <QFile>
#include <QSaveFile>

namespace zyn {

/// Whether the file that is there may be written. A protected one must not be replaced either; Qt asks
/// that of the user who started the process, not of the one that it runs as.
[[nodiscard]] bool mayBeWritten(const QString& path);

/// Puts the file into its place; false, with what was there before as it was, when a part of it did not
/// arrive on the disk. A disk may tell that only when asked for the last time.
[[nodiscard]] bool commitWhole(QSaveFile& file);

/// The file is written beside its place. Devices and pipes are written themselves, and so is a file
/// in a folder that takes no new one.
class WholeFile {
public:
    explicit WholeFile(const QString& path);

    [[nodiscard]] bool isOpen() const { return device->isOpen(); }
    /// Where to write.
    [[nodiscard]] QIODevice* target() { return device; }
    /// As commitWhole(); without it the file is dropped.
    [[nodiscard]] bool commit();

private:
    QSaveFile beside;
    QFile direct;
    QFileDevice* device;
};

}  // namespace zyn
