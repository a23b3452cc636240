// The fields of a line and the numbers in them, the same in every locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Removes the first field from `text` and returns it. Also removes the blanks, tabs and at most
/// one comma or semicolon after it. Sets `separator`, if given, to that mark, or to a blank.
std::string_view takeField(std::string_view& text, char* separator = nullptr);

bool isDigit(char c);

/// Returns the number that the whole `field` is; nothing if it is not a number or beyond a double.
std::optional<double> toNumber(std::string_view field);

/// Returns whether the magnitude of `value` is at most 1e9, as for metres on Earth; false for NaN.
bool isCoordinate(double value);
inline constexpr const char* notACoordinate = " is not a coordinate (at most 1e9)";

/// Returns whether the first field of `line` is a number or at least begins like one.
bool startsWithNumber(std::string_view line);

/// Returns the beginning of `field` in quotes, for a message.
std::string quoted(std::string_view field);
