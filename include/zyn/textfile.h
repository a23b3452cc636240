/// @file
/// Small jobs around text: paths, files of lines, files of points, numbers as strings.
///
///     ref_ptr<Pnt2dArray> points;
///     if (readPnt2dArray(path, points, nullptr)) { use(*points); }
///     ref_ptr<StringArray> fields = strSeperator(line, QStringLiteral(" ,\t"));
///
/// No function reports in words, and none throws but for want of memory. Text is in the codec of the
/// locale; a byte order mark decides for Unicode. A progress may be null; see progress.h.
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/referenced.h>

#include <QString>
#include <cstdint>

namespace zyn {

class IZynProgress;

// Paths

/// Absolute path of the directory of `path`.
[[nodiscard]] ZYN_EXPORT QString getFileDir(QString path);
/// What is behind the last point of the name, or nothing.
[[nodiscard]] ZYN_EXPORT QString getFileExt(QString path);
/// The name with its extension.
[[nodiscard]] ZYN_EXPORT QString getFileName(QString path);
/// Whether `path` is a file; a directory is none.
[[nodiscard]] ZYN_EXPORT bool isFileExist(QString path);

// Files of lines

/// Number of line feeds; 0 for what is no file that can be read to its end. Held at the largest number.
[[nodiscard]] ZYN_EXPORT std::int32_t getTxtFileLineNum(QString path, IZynProgress* progress);
/// The lines that are not empty, without carriage returns: null when there is no such file, empty
/// when it cannot be read to its end. Indices do not follow the file's line numbers.
[[nodiscard]] ZYN_EXPORT ref_ptr<StringArray> readLines(QString path, IZynProgress* progress);
/// Replaces the file by the strings as they are: line feeds are the caller's. False for null; true
/// also when the file cannot be opened or written: the old one stays then, unless its folder takes no
/// file beside it. The progress gets setTotal(1.0), and step(0.02) at every
/// twentieth part of the lines, or at each of fewer than 20.
ZYN_EXPORT bool writeLines(QString path, ref_ptr<StringArray> lines, IZynProgress* progress);

// Text point files: a point a line, its first two fields, parted by blanks, commas or tabs

/// Puts the points into a new array; lines that hold none are passed over. False, with `pnts` as it
/// was, when there is no line and when the file cannot be read to its end.
ZYN_EXPORT bool readPnt2dArray(QString path, ref_ptr<Pnt2dArray>& pnts, IZynProgress* progress);
/// Writes such a file with the six significant digits of XPnt2d::toString(): 432100.125 becomes 432100.
/// False for an empty path and for null only. The progress is not called.
ZYN_EXPORT bool savePnt2dArray(QString path, ref_ptr<Pnt2dArray> pnts, IZynProgress* progress);

// Strings

/// The pieces of `str` between characters of `seps`, empty ones left out.
[[nodiscard]] ZYN_EXPORT ref_ptr<StringArray> strSeperator(QString str, QString seps);
/// Without white space at both ends.
[[nodiscard]] ZYN_EXPORT QString strTrimBlankLeftRight(const QString& str);
/// Whether `c` is among the first `count` of `chars`.
[[nodiscard]] ZYN_EXPORT bool isCharInArray(QChar c, const QChar* chars, int count) noexcept;

// Numbers as text, the same in every locale

/// 0 for text that is no number, or one out of range.
/// @{
[[nodiscard]] ZYN_EXPORT double toDouble(QString str);
[[nodiscard]] ZYN_EXPORT std::int32_t toLong(QString str);
/// @}
/// In base 10.
[[nodiscard]] ZYN_EXPORT QString tostring(int value);
/// In base 2 to 36, digits above 9 in lower case, a negative number with a minus sign; a null string
/// for any other base.
[[nodiscard]] ZYN_EXPORT QString tostring(int value, int base);
/// 15 significant digits, without zeros at the end, with the decimal point: "3.", "0.5", "1.e+15".
/// Fixed notation from 0.1 to below 1e15. "nan", "inf", "-inf".
[[nodiscard]] ZYN_EXPORT QString tostring(double value);

/// A signed number as a key: "Z0", "P17", "N17".
[[nodiscard]] ZYN_EXPORT QString numToKeyStr(int num);
/// And back; 0 for what is no key, and for a number that no int holds.
[[nodiscard]] ZYN_EXPORT int keyStrToNum(QString key);

/// The local time, as 2026-03-07 09:05:01.
[[nodiscard]] ZYN_EXPORT QString getTimeSystem();

}  // namespace zyn
