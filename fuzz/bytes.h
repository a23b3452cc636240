// Values from the bytes of the fuzzer, and zeros once these are used up.
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
    /// Returns a number from 0 to `count` - 1. REQUIRES: `count` is at most 256.
    int below(int count) { return take() % count; }

private:
    std::span<const std::uint8_t> rest;
};

/// Aborts the process, which the fuzzer reports, if the condition does not hold.
#define FUZZ_REQUIRE(condition)                                                          \
    do {                                                                                 \
        if (!(condition)) {                                                              \
            std::fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                \
        }                                                                                \
    } while (false)
