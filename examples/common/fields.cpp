#include "fields.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace {

constexpr std::string_view blanks = " \t";

bool isPrintable(char c) { return c >= ' ' && c <= '~'; }

void dropBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
}

}  // namespace

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view takeField(std::string_view& text, char* separator) {
    dropBlanks(text);
    const std::string_view field = text.substr(0, text.find_first_of(" \t,;"));
    text.remove_prefix(field.size());
    dropBlanks(text);
    const bool isMark = text.starts_with(',') || text.starts_with(';');
    if (separator != nullptr) { *separator = isMark ? text.front() : ' '; }
    if (isMark) {
        text.remove_prefix(1);
        dropBlanks(text);
    }
    return field;
}

std::optional<double> toNumber(std::string_view field) {
    if (field.starts_with('+')) { field.remove_prefix(1); }
    const char* const end = field.data() + field.size();
    double value = 0;
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error != std::errc() || stop != end) { return {}; }
    return value;
}

bool isCoordinate(double value) {
    constexpr double farthest = 1e9;
    return std::abs(value) <= farthest;
}

bool startsWithNumber(std::string_view line) {
    const std::string_view field = takeField(line);
    const std::size_t first = field.find_first_not_of("+-.");
    return (first != std::string_view::npos && isDigit(field[first])) || toNumber(field);
}

std::string quoted(std::string_view field) {
    constexpr std::size_t longest = 24;
    std::string text(field.substr(0, longest));
    std::ranges::replace_if(
        text, [](char c) { return !isPrintable(c); }, '?');
    return "'" + text + (field.size() > longest ? "...'" : "'");
}
