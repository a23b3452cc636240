// The loop round every operation that is made to run out of memory.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>
#include <string>

#include "failing_allocation.h"

inline std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Runs the operation with memory for no allocation, for one, for two and so on until it is enough. Each
/// time it works on a new Object, of which `isSound` must hold after the failure; then it must answer
/// true, and nothing may be lost.
template <class Object>
void expectHarmless(const char* name, const std::function<bool(Object&)>& run,
                    bool (Object::*isSound)() = &Object::isAsItWas) {
    SCOPED_TRACE(name);
    {
        Object object;
        ASSERT_TRUE(run(object));  // afterwards there is what is made once and kept, such as codecs
    }
    for (int successes = 0;; ++successes) {
        SCOPED_TRACE("after " + std::to_string(successes) + " allocations");
        const long before = support::liveBlocks();
        const std::ptrdiff_t openBefore = openFiles();
        bool hasFailed = false;
        {
            Object object;
            try {
                const support::FailingAllocation memory(successes);
                ASSERT_TRUE(run(object));
                ASSERT_FALSE(memory.hasFailed()) << "nobody was told";
            } catch (const std::bad_alloc&) { hasFailed = true; }
            if (hasFailed) {
                ASSERT_TRUE((object.*isSound)());
                ASSERT_TRUE(run(object));
            }
        }
        ASSERT_EQ(support::liveBlocks(), before);
        ASSERT_EQ(openFiles(), openBefore);
        ASSERT_TRUE(hasFailed || successes > 0) << "nothing was allocated";
        if (!hasFailed) { return; }
    }
}
