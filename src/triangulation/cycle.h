// A cyclic list of small integers.
#pragma once

#include <cstddef>
#include <vector>

namespace zyn::detail {

/// Holds the integers from 0 to count - 1 in a cycle, from which each can be removed.
class Cycle {
public:
    explicit Cycle(int count) : links(static_cast<std::size_t>(count)) {
        for (int i = 0; i < count; ++i) { at(i) = {(i + 1) % count, (i + count - 1) % count}; }
    }
    [[nodiscard]] int next(int i) const { return links[static_cast<std::size_t>(i)].next; }
    [[nodiscard]] int previous(int i) const { return links[static_cast<std::size_t>(i)].previous; }
    /// Removes `i` but keeps its own links. REQUIRES: `i` is in the cycle.
    void remove(int i) {
        at(previous(i)).next = next(i);
        at(next(i)).previous = previous(i);
    }

private:
    struct Links {
        int next, previous;
    };
    Links& at(int i) { return links[static_cast<std::size_t>(i)]; }

    std::vector<Links> links;
};

}  // namespace zyn::detail
