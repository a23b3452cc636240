// A file in memory for readers that need a path.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include "bytes.h"

class MemoryFile {
public:
    MemoryFile() : number(memfd_create("file", 0)) {
        FUZZ_REQUIRE(number >= 0);
        path = "/proc/self/fd/" + std::to_string(number);
    }
    explicit MemoryFile(std::span<const std::uint8_t> content) : MemoryFile() {
        fill(content.data(), content.size());
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(number); }

    /// Replaces the content. Zeros follow it up to `length`.
    void fill(const void* content, std::size_t size, std::size_t length = 0) {
        FUZZ_REQUIRE(pwrite(number, content, size, 0) == static_cast<ssize_t>(size));
        FUZZ_REQUIRE(ftruncate(number, static_cast<off_t>(size)) == 0);
        if (length > size) { FUZZ_REQUIRE(ftruncate(number, static_cast<off_t>(length)) == 0); }
    }
    [[nodiscard]] std::size_t size() const {
        return static_cast<std::size_t>(lseek(number, 0, SEEK_END));
    }

    std::string path;

private:
    int number;
};
