// Numbers as text, always in the C locale.
#pragma once

#include <charconv>
#include <string>

namespace zyn::detail {

/// Appends `value` as std::to_chars writes it with `arguments`. Without arguments that is the
/// shortest text that reads back as the same number; otherwise pass a std::chars_format and a
/// precision.
template <class Number, class... Arguments>
void appendNumber(std::string& text, Number value, Arguments... arguments) {
    char digits[512];  // the largest double in fixed notation has 309 digits before the point
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value, arguments...);
    text.append(digits, end);
}

}  // namespace zyn::detail
