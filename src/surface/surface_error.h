// The exceptions of a Surface.
#pragma once

#include "core/text_number.h"

#include <cerrno>
#include <stdexcept>
#include <string>
#include <system_error>

namespace zyn::detail {

/// Throws std::invalid_argument with the text and the bad value.
template <class Value>
[[noreturn]] void throwBad(const std::string& text, Value value) {
    std::string whole = "zyn::Surface: " + text + ": ";
    appendNumber(whole, value);
    throw std::invalid_argument(whole);
}
/// Throws std::invalid_argument unless `number` is below `count` and not negative.
inline void requireNumber(int number, int count) {
    if (number < 0 || number >= count) { throwBad("there is no such point", number); }
}
/// Throws std::system_error unless the file was written. REQUIRES: errno was set to 0 before.
inline void requireWritten(bool isWritten, const std::string& path) {
    if (isWritten) { return; }
    const int code = errno != 0 ? errno : EIO;
    throw std::system_error(code, std::generic_category(), "zyn::Surface: cannot write " + path);
}

}  // namespace zyn::detail
