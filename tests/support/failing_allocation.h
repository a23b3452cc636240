// Memory that runs out when a test wants it to: operator new of the whole program.
#pragma once

#include <atomic>

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

}  // namespace support
