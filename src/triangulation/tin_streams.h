// The two encodings of a TIN file, each as a sink and a source of the same parts: head, counts,
// points, and records of six numbers (three vertices, three neighbours).
#pragma once

#include "core/text_number.h"
#include "core/whole_file.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace zyn::detail::tin_file {

inline constexpr std::string_view magic = "ZynTINFile10";
inline constexpr std::size_t binaryHeadSize = 64;
inline constexpr std::size_t bufferSize = std::size_t{1} << 16U;

using Record = std::int32_t[6];

/// The four or eight bytes of a number, little-endian.
template <class Number>
auto bytesOf(Number value) {
    auto bytes = std::bit_cast<std::array<char, sizeof(Number)>>(value);
    if constexpr (std::endian::native == std::endian::big) {
        std::reverse(bytes.begin(), bytes.end());
    }
    return bytes;
}

/// Writes through a buffer and remembers whether everything arrived.
class Writer {
public:
    explicit Writer(const char* path) : file(path) { text.reserve(bufferSize + 1024); }

    [[nodiscard]] bool isOpen() const { return file.isOpen(); }
    void flushIfFull() {
        if (text.size() >= bufferSize) { flush(); }
    }
    /// Puts the file into its place; false, with nothing changed there, when a part could not be
    /// written.
    [[nodiscard]] bool commit() {
        flush();
        return isWritten && file.commit();
    }

    std::string text;  ///< What comes next in the file.

private:
    void flush() {
        isWritten = isWritten && isOpen() &&
                    std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
        text.clear();
    }

    WholeFile file;
    bool isWritten = true;
};

class BinarySink : public Writer {
public:
    using Writer::Writer;

    void head() {
        text.append(magic);
        text.append(binaryHeadSize - magic.size(), '\0');
    }
    void count(std::int32_t n) { put(n); }
    template <class Real>
    void point(const Real* p) {
        put(p[0]);
        put(p[1]);
        put(p[2]);
        flushIfFull();
    }
    void record(const Record& numbers) {
        for (const std::int32_t n : numbers) { put(n); }
        flushIfFull();
    }

private:
    template <class Number>
    void put(Number value) {
        const auto bytes = bytesOf(value);
        text.append(bytes.data(), bytes.size());
    }
};

class TextSink : public Writer {
public:
    using Writer::Writer;

    void head() { text.append(magic).append("\n"); }
    void count(std::int32_t n) {
        appendNumber(text, n);
        text += '\n';
    }
    template <class Real>
    void point(const Real* p) {
        for (int axis = 0; axis < 3; ++axis) {
            appendNumber(text, p[axis], std::chars_format::general, significantDigits);
            text += axis < 2 ? '\t' : '\n';
        }
        flushIfFull();
    }
    void record(const Record& numbers) {
        for (const std::int32_t n : numbers) {
            appendNumber(text, n);
            text += '\t';
        }
        text += '\n';
        flushIfFull();
    }

private:
    static constexpr int significantDigits = 6;
};

/// Reads through a buffer. Only regular files: nothing else has a size, and a pipe could block.
class Reader {
public:
    Reader(const char* path, const char* mode) {
        std::error_code error;
        if (path == nullptr || !std::filesystem::is_regular_file(path, error)) { return; }
        size = std::filesystem::file_size(path, error);
        if (!error) { file.reset(std::fopen(path, mode)); }
    }
    [[nodiscard]] bool isOpen() const { return file != nullptr; }

protected:
    /// Makes the next `n` bytes stand in one piece, if there are so many; gives what there is.
    std::string_view peek(std::size_t n) {
        if (filled - position < n && !hasEnded) {
            std::memmove(buffer.get(), buffer.get() + position, filled - position);
            filled -= position;
            position = 0;
            filled += std::fread(buffer.get() + filled, 1, bufferSize - filled, file.get());
            hasEnded = filled < bufferSize;
        }
        return {buffer.get() + position, std::min(n, filled - position)};
    }
    void skip(std::size_t n) { position += n; }

    std::uint64_t size = 0;

private:
    File file;
    std::unique_ptr<char[]> buffer = std::make_unique_for_overwrite<char[]>(bufferSize);
    std::size_t position = 0;
    std::size_t filled = 0;
    bool hasEnded = false;
};

class BinarySource : public Reader {
public:
    /// Files of its own must be open to writing too; `mode` is that of fopen.
    BinarySource(const char* path, const char* mode) : Reader(path, mode) {}

    /// The head has no meaning in a binary file.
    bool head() {
        const bool complete = peek(binaryHeadSize).size() == binaryHeadSize;
        skip(binaryHeadSize);
        return complete;
    }
    /// Whether a file of this size can hold so many parts.
    template <class Real>
    [[nodiscard]] bool canHold(std::uint64_t points, std::uint64_t records) const {
        return size >= binaryHeadSize + 8 + 3 * sizeof(Real) * points + sizeof(Record) * records;
    }
    bool count(std::int32_t& n) { return get(n); }
    template <class Real>
    bool point(Real* p) {
        return get(p[0]) && get(p[1]) && get(p[2]);
    }
    bool record(Record& numbers) {
        for (std::int32_t& n : numbers) {
            if (!get(n)) { return false; }
        }
        return true;
    }

private:
    template <class Number>
    bool get(Number& value) {
        const std::string_view bytes = peek(sizeof value);
        if (bytes.size() < sizeof value) { return false; }
        std::memcpy(&value, bytes.data(), sizeof value);
        const auto native = bytesOf(value);
        std::memcpy(&value, native.data(), sizeof value);
        skip(sizeof value);
        return true;
    }
};

class TextSource : public Reader {
public:
    explicit TextSource(const char* path) : Reader(path, "r") {}

    bool head() { return word() == magic; }
    /// Every number takes a digit and a separator at least, but for the last separator.
    template <class Real>
    [[nodiscard]] bool canHold(std::uint64_t points, std::uint64_t records) const {
        return size + 1 >= magic.size() + 5 + 6 * points + 12 * records;
    }
    bool count(std::int32_t& n) { return get(n); }
    template <class Real>
    bool point(Real* p) {
        return get(p[0]) && get(p[1]) && get(p[2]);
    }
    bool record(Record& numbers) {
        for (std::int32_t& n : numbers) {
            if (!get(n)) { return false; }
        }
        return true;
    }

private:
    static constexpr std::size_t longestWord = 400;  // a number in fixed notation

    static bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    /// The next word, up to white space; empty at the end of the file and for an endless word.
    std::string_view word() {
        std::string_view text = peek(longestWord + 1);
        while (!text.empty() && isSpace(text.front())) {
            std::size_t blanks = 0;
            while (blanks < text.size() && isSpace(text[blanks])) { ++blanks; }
            skip(blanks);
            text = peek(longestWord + 1);
        }
        std::size_t length = 0;
        while (length < text.size() && !isSpace(text[length])) { ++length; }
        if (length > longestWord) { return {}; }
        skip(length);
        return text.substr(0, length);
    }
    template <class Number>
    bool get(Number& value) {
        std::string_view text = word();
        if (text.starts_with('+') && !text.starts_with("+-")) { text.remove_prefix(1); }
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        return error == std::errc() && end == text.data() + text.size();
    }
};

}  // namespace zyn::detail::tin_file
