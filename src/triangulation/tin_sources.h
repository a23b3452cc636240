// Readers of the two encodings of a TIN file, part by part: head, counts, points, records.
#pragma once

#include "core/descriptor.h"
#include "core/little_endian.h"
#include "triangulation/tin_format.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string_view>
#include <system_error>

namespace zyn::detail::tin_file {

/// Reads a regular file through a buffer. Refuses everything else, since it has no size and a pipe
/// could block.
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
    /// Returns the next `n` bytes in one piece, or as many as are left.
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
    static constexpr std::size_t bufferSize = std::size_t{1} << 16U;

    File file;
    std::unique_ptr<char[]> buffer = std::make_unique_for_overwrite<char[]>(bufferSize);
    std::size_t position = 0;
    std::size_t filled = 0;
    bool hasEnded = false;
};

/// Reads the parts that consist of numbers, each number by the `get` of the encoding.
template <class Encoding>
class NumberReader : public Reader {
public:
    bool count(std::int32_t& n) { return get(n); }
    template <class Real>
    bool point(Real* p) {
        return get(p[0]) && get(p[1]) && get(p[2]);
    }
    bool record(Record& numbers) {
        return std::all_of(std::begin(numbers), std::end(numbers),
                           [this](std::int32_t& n) { return get(n); });
    }

protected:
    using Reader::Reader;

private:
    template <class Number>
    bool get(Number& value) {
        return static_cast<Encoding*>(this)->get(value);
    }
};

class BinarySource : public NumberReader<BinarySource> {
public:
    /// Opens the file. `mode` is that of fopen.
    BinarySource(const char* path, const char* mode) : NumberReader(path, mode) {}

    /// Skips the head, which has no meaning in a binary file.
    bool head() {
        const bool complete = peek(binaryHeadSize).size() == binaryHeadSize;
        skip(binaryHeadSize);
        return complete;
    }
    /// Returns whether a file of this size can hold that many parts.
    template <class Real>
    [[nodiscard]] bool canHold(std::uint64_t points, std::uint64_t records) const {
        return size >= binaryHeadSize + 8 + 3 * sizeof(Real) * points + sizeof(Record) * records;
    }

private:
    friend NumberReader<BinarySource>;

    template <class Number>
    bool get(Number& value) {
        const std::string_view bytes = peek(sizeof value);
        if (bytes.size() < sizeof value) { return false; }
        value = fromLittleEndian<Number>(bytes.data());
        skip(sizeof value);
        return true;
    }
};

class TextSource : public NumberReader<TextSource> {
public:
    explicit TextSource(const char* path) : NumberReader(path, "r") {}

    bool head() { return word() == magic; }
    /// Returns whether a file of this size can hold that many parts. Every number takes at least a
    /// digit and a separator; only the last separator may be missing.
    template <class Real>
    [[nodiscard]] bool canHold(std::uint64_t points, std::uint64_t records) const {
        return size + 1 >= magic.size() + 5 + 6 * points + 12 * records;
    }

private:
    friend NumberReader<TextSource>;

    static constexpr std::size_t longestWord = 400;  // a number in fixed notation

    static bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

    /// Returns the next word, up to white space. Returns an empty one at the end of the file and
    /// for a word that is too long.
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
