#include "failing_allocation.h"

#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constexpr int unlimited = -1;
std::atomic<int> allowance = unlimited;
std::atomic<bool> failed = false;
std::atomic<long> live = 0;
std::atomic<std::size_t> allocated = 0, peak = 0;

/// Returns whether Qt asks for memory. It always gets memory, because it does not survive a
/// failure.
bool isQt(const void* code) {
    Dl_info place = {};
    return dladdr(code, &place) != 0 && std::strstr(place.dli_fname, "libQt") != nullptr;
}

void* allocate(std::size_t size, const void* caller) noexcept {
    if (allowance == 0 && !isQt(caller)) {
        failed = true;
        return nullptr;
    }
    if (allowance > 0) { --allowance; }
    void* const memory = std::malloc(std::max<std::size_t>(size, 1));
    if (memory != nullptr) { ++live; }
    allocated += malloc_usable_size(memory);
    peak = std::max(peak.load(), allocated.load());
    return memory;
}
void* allocateOrThrow(std::size_t size, const void* caller) {
    if (void* const memory = allocate(size, caller)) { return memory; }
    throw std::bad_alloc();
}
void release(void* memory) noexcept {
    if (memory != nullptr) { --live; }
    allocated -= malloc_usable_size(memory);
    std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size, __builtin_return_address(0)); }
void* operator new[](std::size_t size) {
    return allocateOrThrow(size, __builtin_return_address(0));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, __builtin_return_address(0));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }

namespace support {

FailingAllocation::FailingAllocation(int successes) {
    failed = false;
    allowance = successes;
}
FailingAllocation::~FailingAllocation() { allowance = unlimited; }
bool FailingAllocation::hasFailed() const { return failed; }

long liveBlocks() { return live; }

PeakMemory::PeakMemory() : before(allocated) { peak = allocated.load(); }
std::size_t PeakMemory::bytes() const { return peak - before; }

}  // namespace support
