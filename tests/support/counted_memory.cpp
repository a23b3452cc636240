#include "counted_memory.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t out = 0, most = 0;

void* take(std::size_t size) noexcept {
    void* const p = std::malloc(std::max<std::size_t>(size, 1));
    out += malloc_usable_size(p);
    most = std::max(most, out);
    return p;
}
void* takeOrThrow(std::size_t size) {
    void* const p = take(size);
    return p != nullptr ? p : throw std::bad_alloc();
}
void giveBack(void* p) noexcept {
    out -= malloc_usable_size(p);
    std::free(p);
}

}  // namespace

void* operator new(std::size_t size) { return takeOrThrow(size); }
void* operator new[](std::size_t size) { return takeOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return take(size); }
void operator delete(void* p) noexcept { giveBack(p); }
void operator delete[](void* p) noexcept { giveBack(p); }
void operator delete(void* p, std::size_t) noexcept { giveBack(p); }
void operator delete[](void* p, std::size_t) noexcept { giveBack(p); }

namespace support {

PeakMemory::PeakMemory() : before(out) { most = out; }

std::size_t PeakMemory::bytes() const { return most - before; }

}  // namespace support
