/// @file
/// Settings: strings by key, kept in a text file of lines `[key]=[value]`.
///
///     ref_ptr<IZynSetting> settings = newZynSetting(QString());
///     settings->open(path);
///     QString last = settings->getValue(QStringLiteral("last file"));
///     settings->setValue(QStringLiteral("last file"), file, QString());
///     settings->save();                                     // and once more when the object ends
///
/// Keys keep their case and are sorted by code units. A line is cut at brackets, equals signs and line
/// feeds, and its second piece is trimmed: so a value that holds one of these is cut there when it is
/// read back, and an empty one does not come back. For one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

class QString;

namespace zyn {

/// The settings of one file.
class ZYN_EXPORT IZynSetting : public ZynReferenced {
public:
    /// Remembers the path and reads the file, beside what there is already; makes an empty one if
    /// there is none. 0, or -1 when it cannot be made; the path is the remembered one then, too. A file
    /// that cannot be read to its end gives no values, and stays as it is at the object's end. Without
    /// memory std::bad_alloc is thrown, and nothing is remembered.
    virtual int open(QString path) = 0;
    /// 0. The third string is not used.
    virtual int setValue(QString key, QString value, QString extra) = 0;
    /// The value, or a null string.
    /// @{
    [[nodiscard]] virtual QString getValue(QString key) = 0;
    [[nodiscard]] virtual QString getValueText(QString key) = 0;
    /// @}
    /// Writes the file anew: 0, or -1 when it cannot be written or no path was opened. The old file
    /// stays until the new one is whole, unless its folder takes no file beside it.
    /// @{
    virtual int save() = 0;
    virtual int flush() = 0;
    /// @}

protected:
    ~IZynSetting() override = default;
};

/// New settings without a file: the path is not used.
[[nodiscard]] ZYN_EXPORT IZynSetting* newZynSetting(QString path);

}  // namespace zyn
