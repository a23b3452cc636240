// A hint to the processor about memory that is read soon.
#pragma once

namespace zyn::detail {

/// Starts to load the cache line of `address`. Does nothing where the compiler has no such
/// instruction.
inline void prefetch([[maybe_unused]] const void* address) {
#ifdef __has_builtin
#if __has_builtin(__builtin_prefetch)
    __builtin_prefetch(address);
#endif
#endif
}

}  // namespace zyn::detail
