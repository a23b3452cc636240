// Seeds of random tests.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <random>

namespace support {

/// Returns a new seed and prints it. ZYN_TEST_SEED repeats the run of a given seed.
inline unsigned newSeed() {
    const char* const wanted = std::getenv("ZYN_TEST_SEED");
    const unsigned seed = wanted != nullptr
                              ? static_cast<unsigned>(std::strtoul(wanted, nullptr, 10))
                              : std::random_device()();
    std::printf("seed %u\n", seed);
    std::fflush(stdout);
    return seed;
}

}  // namespace support
