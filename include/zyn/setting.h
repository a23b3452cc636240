/// @file
/// Settings: strings by key, kept in a text file of lines `[key]=[value]`.
///
///     ref_ptr<IZynSetting> settings = newZynSetting(QString());
///     settings->open(path);
///     QString last = settings->getValue(QStringLiteral("last file"));
///     if (last.isNull()) { last = QStringLiteral("none"); }  // there is no such key
///     settings->setValue(QStringLiteral("last file"), file, QString());
///     settings->save();                                     // the destructor saves too
///
/// Keys keep their case and are sorted by code units. Reading splits a line at brackets, equals
/// signs and line feeds, and trims its second piece. So a value that contains one of these
/// characters comes back cut there, and an empty value does not come back. Threads: use settings on
/// one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <type_traits>

class QString;

namespace zyn {

/// The settings of one file.
class ZYN_EXPORT IZynSetting : public ZynReferenced {
public:
    /// Remembers the path, and adds the entries of the file to the existing ones. Creates an empty
    /// file if there is none. Returns 0, or -1 at once if:
    /// - the file can be neither found nor created;
    /// - the file cannot be read to its end; no entry is added;
    /// - the path is that of a folder, a pipe or a device.
    ///
    /// After -1 the destructor writes nothing: only save() writes the values that were set. If
    /// allocation fails, throws std::bad_alloc and remembers nothing.
    virtual int open(QString path) = 0;
    /// Sets the value of a key, and returns 0. Ignores the third string.
    virtual int setValue(QString key, QString value, QString extra) = 0;
    /// Returns the value of a key; a null string if there is none.
    /// @{
    [[nodiscard]] virtual QString getValue(QString key) = 0;
    [[nodiscard]] virtual QString getValueText(QString key) = 0;
    /// @}
    /// Replaces the file by the current entries. Returns 0, or -1 if the file cannot be written or
    /// no path was opened. The file appears whole or not at all (formats.md).
    /// @{
    virtual int save() = 0;
    virtual int flush() = 0;
    /// @}

protected:
    ~IZynSetting() override = default;
};

/// Returns new settings without a file. Ignores the path.
[[nodiscard]] ZYN_EXPORT IZynSetting* newZynSetting(QString path);
constexpr auto factoryOf(std::type_identity<IZynSetting>) { return &newZynSetting; }

}  // namespace zyn
