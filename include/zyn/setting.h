/// @file
/// Settings: strings by key, kept in a text file of lines `[key]=[value]`.
///
///     ref_ptr<IZynSetting> settings = newZynSetting(QString());
///     settings->open(path);
///     QString last = settings->getValue(QStringLiteral("last file"));
///     settings->setValue(QStringLiteral("last file"), file, QString());
///     settings->save();                                     // and once more when the object ends
///
/// Keys keep their case and are sorted by code units. A line is cut at brackets, equals signs and
/// line feeds, and its second piece is trimmed: so a value that holds one of these is cut there
/// when it is read back, and an empty one does not come back. For one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <type_traits>

class QString;

namespace zyn {

/// The settings of one file.
class ZYN_EXPORT IZynSetting : public ZynReferenced {
public:
    /// Remembers the path, and adds the entries of the file to those that are there. Makes an empty
    /// file if there is nothing. Returns 0, or -1 at once if:
    /// - the file can be neither found nor made;
    /// - the file cannot be read to its end, and then it adds no entry;
    /// - the path is that of a folder, a pipe or a device.
    ///
    /// After -1 the end of the object writes nothing: values that were set reach the file only by
    /// save(). If allocation fails, throws std::bad_alloc and remembers nothing.
    virtual int open(QString path) = 0;
    /// Sets the value of a key, and returns 0. The third string is not used.
    virtual int setValue(QString key, QString value, QString extra) = 0;
    /// Returns the value, or a null string.
    /// @{
    [[nodiscard]] virtual QString getValue(QString key) = 0;
    [[nodiscard]] virtual QString getValueText(QString key) = 0;
    /// @}
    /// Writes the file anew. Returns 0, or -1 if it cannot be written or no path was opened. The
    /// file appears whole or not at all, as formats.md says.
    /// @{
    virtual int save() = 0;
    virtual int flush() = 0;
    /// @}

protected:
    ~IZynSetting() override = default;
};

/// Returns new settings without a file. The path is not used.
[[nodiscard]] ZYN_EXPORT IZynSetting* newZynSetting(QString path);
constexpr auto factoryOf(std::type_identity<IZynSetting>) { return &newZynSetting; }

}  // namespace zyn
