// Memory that is counted, and that runs out on demand. A test program that has
// failing_allocation.cpp among its sources uses its operator new.
#pragma once

#include <cstddef>

namespace support {

/// During its lifetime the first `successes` allocations succeed, and all later ones fail.
class FailingAllocation {
public:
    explicit FailingAllocation(int successes);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Returns whether an allocation has failed.
    [[nodiscard]] bool hasFailed() const;
};

/// Returns the number of blocks that operator new has returned and nobody has released.
long liveBlocks();

/// Measures the peak of allocated bytes since construction, above those allocated then. Only one
/// object at a time measures correctly.
class PeakMemory {
public:
    PeakMemory();
    [[nodiscard]] std::size_t bytes() const;

private:
    std::size_t before;
};

}  // namespace support
