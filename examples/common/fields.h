// The fields of a line and the numbers in them, the same in every locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Takes the first field off `text`, with the blanks, tabs and at most one comma or semicolon
/// behind it. `separator`, if given, receives that mark, or a blank where there is none.
std::string_view takeField(std::string_view& text, char* separator = nullptr);

bool isDigit(char c);

/// The number that `field` is as a whole; nothing when it is none, or one that no double holds.
std::optional<double> toNumber(std::string_view field);

/// Whether `value` is a number of at most 1e9, as metres on a body like the Earth are. NaN is none.
bool isCoordinate(double value);
inline constexpr const char* notACoordinate = " is not a coordinate (at most 1e9)";

/// Whether the first field of `line` is a number or at least begins like one.
bool startsWithNumber(std::string_view line);

/// The beginning of `field`, fit to be shown in a message.
std::string quoted(std::string_view field);
