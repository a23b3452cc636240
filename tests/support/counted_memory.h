// How much memory a task takes, for a test program that has counted_memory.cpp among its sources.
#pragma once

#include <cstddef>

namespace support {

/// The most bytes that operator new has handed out at a time since construction, above those that
/// were out then. One at a time counts right.
class PeakMemory {
public:
    PeakMemory();
    [[nodiscard]] std::size_t bytes() const;

private:
    std::size_t before;
};

}  // namespace support
