// GoogleTest with its matchers, and printers for the library's values: without them a failed
// assertion would print bytes and addresses.
#pragma once

#include <zyn/color.h>
#include <zyn/envelope.h>
#include <zyn/point.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QString>
#include <charconv>
#include <iterator>
#include <ostream>
#include <string_view>

namespace support {

/// Writes (1, 2.5, 3), each number with as many digits as tell it from its neighbours.
template <class... Numbers>
void printTuple(std::ostream* out, Numbers... numbers) {
    char text[32];
    std::string_view separator = "(";
    const auto print = [&](auto number) {
        const char* const end = std::to_chars(text, std::end(text), number).ptr;
        *out << separator << std::string_view(text, std::size_t(end - text));
        separator = ", ";
    };
    (print(+numbers), ...);
    *out << ')';
}

template <class Value>
concept HasXy = requires(const Value& v) { +v.x, +v.y; } && !requires(const Value& v) { v.w; };
template <class Value>
concept HasXyz = HasXy<Value> && requires(const Value& v) { +v.z; };
template <class Value>
concept HasPlanarBounds = requires(const Value& v) { v.minX, v.minY, v.maxX, v.maxY; };
template <class Value>
concept HasBounds = HasPlanarBounds<Value> && requires(const Value& v) { v.minZ, v.maxZ; };
template <class Value>
concept HasRgb = requires(const Value& v) { +v.r, +v.g, +v.b; };
template <class Value>
concept HasRgba = HasRgb<Value> && requires(const Value& v) { +v.a; };

}  // namespace support

namespace zyn {

/// GoogleTest finds the printer of a value by argument-dependent lookup.
/// @{
void PrintTo(const support::HasXy auto& p, std::ostream* out) {
    support::printTuple(out, p.x, p.y);
}
void PrintTo(const support::HasXyz auto& p, std::ostream* out) {
    support::printTuple(out, p.x, p.y, p.z);
}
void PrintTo(const support::HasPlanarBounds auto& b, std::ostream* out) {
    support::printTuple(out, b.minX, b.minY, b.maxX, b.maxY);
}
void PrintTo(const support::HasBounds auto& b, std::ostream* out) {
    support::printTuple(out, b.minX, b.minY, b.minZ, b.maxX, b.maxY, b.maxZ);
}
void PrintTo(const support::HasRgb auto& c, std::ostream* out) {
    support::printTuple(out, c.r, c.g, c.b);
}
void PrintTo(const support::HasRgba auto& c, std::ostream* out) {
    support::printTuple(out, c.r, c.g, c.b, c.a);
}
/// @}

}  // namespace zyn

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << testing::PrintToString(text.toStdString());
}
