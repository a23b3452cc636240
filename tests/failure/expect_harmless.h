// Runs an operation out of memory at each of its allocations in turn.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <iterator>
#include <new>
#include <string>

#include "failing_allocation.h"
#include "testing.h"

inline std::ptrdiff_t openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// Runs the operation with memory for no allocation, for one, for two and so on until it succeeds.
/// Each round has a new Object:
/// - The operation throws std::bad_alloc, and then `check` finds the object as it should be.
/// - With enough memory the operation returns true.
/// - No memory and no open file is lost.
template <class Object>
void expectHarmless(const char* name, const std::function<bool(Object&)>& run,
                    void (Object::*check)() = &Object::expectUnchanged) {
    SCOPED_TRACE(name);
    {
        Object object;
        ASSERT_TRUE(run(object));  // makes what is made once and kept, such as codecs
    }
    for (int successes = 0;; ++successes) {
        SCOPED_TRACE("after " + std::to_string(successes) + " allocations");
        const long before = support::liveBlocks();
        const std::ptrdiff_t openBefore = openFiles();
        bool hasThrown = false;
        {
            Object object;
            bool isDone = false, hasFailed = false;
            try {
                const support::FailingAllocation memory(successes);
                isDone = run(object);
                hasFailed = memory.hasFailed();
            } catch (const std::bad_alloc&) { hasThrown = true; }
            ASSERT_FALSE(hasFailed) << "an allocation failed, and nothing was thrown";
            ASSERT_NE(isDone, hasThrown);
            if (hasThrown) {
                (object.*check)();
                if (testing::Test::HasFailure()) { return; }
                ASSERT_TRUE(run(object));
            }
        }
        ASSERT_EQ(support::liveBlocks(), before);
        ASSERT_EQ(openFiles(), openBefore);
        if (hasThrown) { continue; }
        ASSERT_GT(successes, 0) << "nothing was allocated";
        return;
    }
}
