// Memory that is counted, and that runs out when a test wants it to: operator new of a test program
// that has failing_allocation.cpp among its sources.
#pragma once

#include <cstddef>

namespace support {

/// From its start on so many allocations succeed, and none after them until its end.
class FailingAllocation {
public:
    explicit FailingAllocation(int successes);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether memory was asked for in vain.
    [[nodiscard]] bool hasFailed() const;
};

/// Blocks that operator new gave and that were not given back.
long liveBlocks();

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
