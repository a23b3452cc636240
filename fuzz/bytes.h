// What a target reads from the bytes that the fuzzer made; zeros when they are used up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : rest(data, size) {}

    [[nodiscard]] bool isEmpty() const { return rest.empty(); }
    [[nodiscard]] std::span<const std::uint8_t> all() const { return rest; }
    template <class T = std::uint8_t>
    T take() {
        T value{};
        const std::size_t size = rest.size() < sizeof value ? rest.size() : sizeof value;
        std::memcpy(&value, rest.data(), size);
        rest = rest.subspan(size);
        return value;
    }
    /// From 0 to below `count`, 256 at the most.
    int below(int count) { return take() % count; }

private:
    std::span<const std::uint8_t> rest;
};

/// Ends the process, for the fuzzer to see, when what must be is not.
#define FUZZ_REQUIRE(condition)                                                          \
    do {                                                                                 \
        if (!(condition)) {                                                              \
            std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                \
        }                                                                                \
    } while (false)
