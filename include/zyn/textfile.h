/// @file
/// Text helpers: paths, files of lines, files of points, numbers as strings.
///
///     ref_ptr<Pnt2dArray> points;
///     if (readPnt2dArray(path, points, nullptr)) { use(*points); }
///     if (const ref_ptr<StringArray> lines = readLines(path, nullptr)) {
///         for (const QString& line : *lines) {
///             const ref_ptr<StringArray> fields = strSeperator(line, QStringLiteral(" ,\t"));
///             if (fields->size() > 2) { sum += toDouble(fields->get(2)); }
///         }
///     }
///
/// The functions print nothing, and throw only std::bad_alloc. Text is in the codec of the locale,
/// or in Unicode if the file begins with a byte order mark. A progress may be null (progress.h);
/// only writeLines() calls it. Threads: use an array or a progress on one thread at a time.
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/referenced.h>

#include <QString>
#include <cstdint>

namespace zyn {

class IZynProgress;

// Paths

/// Returns the absolute path of the directory of `path`.
[[nodiscard]] ZYN_EXPORT QString getFileDir(QString path);
/// Returns the part of the name after its last dot, or an empty string.
[[nodiscard]] ZYN_EXPORT QString getFileExt(QString path);
/// Returns the name with its extension.
[[nodiscard]] ZYN_EXPORT QString getFileName(QString path);
/// Returns whether `path` is an existing file; false for a directory.
[[nodiscard]] ZYN_EXPORT bool isFileExist(QString path);

// Files of lines

/// Returns the number of line feeds, limited to the largest std::int32_t. Returns 0 if there is no
/// file that can be read to its end.
[[nodiscard]] ZYN_EXPORT std::int32_t getTxtFileLineNum(QString path, IZynProgress* progress);
/// Returns the lines that are not empty, without carriage returns. Their indices differ from the
/// file's line numbers if there are empty lines. Returns null if there is no such file, and an
/// empty array if it cannot be read to its end.
[[nodiscard]] ZYN_EXPORT ref_ptr<StringArray> readLines(QString path, IZynProgress* progress);
/// Replaces the file by the strings as they are; line feeds are part of the strings. The file
/// appears whole or not at all (formats.md). Returns false for null, and true even if the file
/// cannot be written. Calls setTotal(1.0) of the progress, and step(0.02) after every twentieth of
/// the lines, or after each if there are fewer than 20.
ZYN_EXPORT bool writeLines(QString path, ref_ptr<StringArray> lines, IZynProgress* progress);

// Text point files: one point per line, in the first two fields. Blanks, commas or tabs
// separate fields.

/// Puts the points into a new array, and skips lines without a point. Returns false and leaves
/// `pnts` unchanged if there is no line, or if the file cannot be read to its end.
ZYN_EXPORT bool readPnt2dArray(QString path, ref_ptr<Pnt2dArray>& pnts, IZynProgress* progress);
/// Writes such a file with the six significant digits of XPnt2d::toString(): 432100.125 becomes
/// 432100. Returns false for an empty path and for null only.
ZYN_EXPORT bool savePnt2dArray(QString path, ref_ptr<Pnt2dArray> pnts, IZynProgress* progress);

// Strings

/// Returns the pieces of `str` between characters of `seps`, without empty pieces.
[[nodiscard]] ZYN_EXPORT ref_ptr<StringArray> strSeperator(QString str, QString seps);
/// Returns the string without white space at both ends.
[[nodiscard]] ZYN_EXPORT QString strTrimBlankLeftRight(const QString& str);
/// Returns whether `c` is among the first `count` of `chars`.
[[nodiscard]] ZYN_EXPORT bool isCharInArray(QChar c, const QChar* chars, int count) noexcept;

// Numbers as text, independent of the locale

/// Returns the number; 0 for text that is not a number or is out of range.
/// @{
[[nodiscard]] ZYN_EXPORT double toDouble(QString str);
[[nodiscard]] ZYN_EXPORT std::int32_t toLong(QString str);
/// @}
/// Returns the number in base 10.
[[nodiscard]] ZYN_EXPORT QString tostring(int value);
/// Returns the number in base 2 to 36, with digits above 9 in lower case, and a minus sign if it is
/// negative. Returns a null string for any other base.
[[nodiscard]] ZYN_EXPORT QString tostring(int value, int base);
/// Returns 15 significant digits, without trailing zeros, with the decimal point: "3.", "0.5",
/// "1.e+15"; or "nan", "inf", "-inf". Zero, and magnitudes from 0.1 to below 1e15, are in fixed
/// notation.
[[nodiscard]] ZYN_EXPORT QString tostring(double value);

/// Returns a signed number as a key: "Z0", "P17", "N17".
[[nodiscard]] ZYN_EXPORT QString numToKeyStr(int num);
/// Returns the number of a key; 0 for text that is not a key, and for a number beyond int.
[[nodiscard]] ZYN_EXPORT int keyStrToNum(QString key);

/// Returns the local time, in the form 2026-03-07 09:05:01.
[[nodiscard]] ZYN_EXPORT QString getTimeSystem();

}  // namespace zyn
