// A file in memory, for readers that want a path.
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
    explicit MemoryFile(std::span<const std::uint8_t> content) : number(memfd_create("file", 0)) {
        FUZZ_REQUIRE(number >= 0);
        FUZZ_REQUIRE(write(number, content.data(), content.size()) ==
                     static_cast<ssize_t>(content.size()));
        path = "/proc/self/fd/" + std::to_string(number);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(number); }

    std::string path;

private:
    int number;
};
