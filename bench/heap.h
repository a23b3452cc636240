// An operator new that counts the bytes on the heap. Include it in one source of a program.
#pragma once

#include "measure.h"

#include <malloc.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::size_t live = 0;
std::size_t peak = 0;

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size);
    if (memory == nullptr) { throw std::bad_alloc(); }
    live += malloc_usable_size(memory);
    peak = std::max(peak, live);
    return memory;
}
void operator delete(void* memory) noexcept {
    live -= malloc_usable_size(memory);
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace bench {

std::size_t liveBytes() { return live; }
std::size_t peakBytes() { return peak; }
void resetPeak() { peak = live; }

}  // namespace bench
