// Numbers as text, in the C locale whatever the host's.
#pragma once

#include <charconv>
#include <string>

namespace zyn::detail {

/// Appends `value` in the form that `arguments` of std::to_chars ask for: nothing for the fewest
/// digits that bring back the same number, or a std::chars_format and a precision.
template <class Number, class... Arguments>
void appendNumber(std::string& text, Number value, Arguments... arguments) {
    char digits[512];  // the largest double in fixed notation has 309 digits before the point
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value, arguments...);
    text.append(digits, end);
}

}  // namespace zyn::detail
