#include "line_reader.h"

#include "failure.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>

namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20U;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) { return {}; }
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

}  // namespace

LineReader::LineReader(const std::string& path_) : path(path_), buffer(blockSize) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) { failWhole("is a directory"); }
    file.reset(std::fopen(path.c_str(), "rb"));
    if (!file) { failWhole(std::strerror(errno)); }
    const std::uintmax_t bytes = std::filesystem::file_size(path, error);
    if (!error) { size = static_cast<std::int64_t>(bytes); }
}

bool LineReader::next() {
    constexpr std::size_t none = std::string_view::npos;
    std::size_t length = unread().find('\n');
    while (length == none) {
        const std::size_t searched = unread().size();
        if (!readBlock()) { break; }
        length = unread().find('\n', searched);
    }
    if (length == none && unread().empty()) { return false; }

    current = trimmed(unread().substr(0, length));
    begin = length == none ? end : begin + length + 1;
    ++number;
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (number == 1 && current.starts_with(byteOrderMark)) {
        current = trimmed(current.substr(byteOrderMark.size()));
    }
    return true;
}

/// Moves the unread part to the front and reads more after it. Returns false at the end of the
/// file.
bool LineReader::readBlock() {
    std::copy(buffer.begin() + std::ptrdiff_t(begin), buffer.begin() + std::ptrdiff_t(end),
              buffer.begin());
    end -= begin;
    begin = 0;
    buffer.resize(std::max(buffer.size(), end + blockSize));

    char* const block = buffer.data() + end;
    const std::size_t count = std::fread(block, 1, buffer.size() - end, file.get());
    if (std::ferror(file.get()) != 0) { failWhole(std::strerror(errno)); }
    if (std::memchr(block, '\0', count) != nullptr) { failWhole("is not a text file"); }
    end += count;
    bytesRead += static_cast<std::int64_t>(count);
    if (size > 0) { bar.show(double(bytesRead) / double(size)); }
    return count > 0;
}

void LineReader::fail(const std::string& reason) const { throw Failure(path, number, reason); }

void LineReader::failWhole(const std::string& reason) const { throw Failure(path, reason); }
