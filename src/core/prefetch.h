// Telling the processor what will be read soon.
#pragma once

namespace zyn::detail {

/// Starts to bring the cache line of `address` into the cache. Changes nothing; where the compiler has
/// no way to say so, does nothing.
inline void prefetch([[maybe_unused]] const void* address) {
#ifdef __has_builtin
#if __has_builtin(__builtin_prefetch)
    __builtin_prefetch(address);
#endif
#endif
}

}  // namespace zyn::detail
