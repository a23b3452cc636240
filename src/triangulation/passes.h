// Repeated passes over numbers that visit only those marked for a visit.
#pragma once

#include <cstddef>
#include <functional>
#include <queue>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Visits the numbers below `count` in ascending order. The first pass visits all of them, each
/// later pass those that were added after their turn. Ends when a pass would be empty, or after
/// `most` passes. Allocates in the constructor only.
class Passes {
public:
    Passes(std::size_t count, std::size_t most)
        : isDue(count, false), now(roomFor(count)), later(roomFor(count)), passesLeft(most) {
        for (std::size_t n = 0; n < count; ++n) { add(n); }
    }
    /// Advances to the next number. Returns false at the end.
    bool next() {
        if (now.empty()) {
            if (later.empty() || passesLeft == 0) { return false; }
            --passesLeft;
            std::swap(now, later);
        }
        hasBegun = true;
        current = now.top();
        now.pop();
        isDue[current] = false;
        return true;
    }
    [[nodiscard]] std::size_t number() const { return current; }
    /// Adds `n` to this pass if its turn is still to come, otherwise to the next pass. Ignores
    /// numbers that are not below `count`.
    void add(std::size_t n) {
        if (n >= isDue.size() || isDue[n]) { return; }
        isDue[n] = true;
        (hasBegun && n > current ? now : later).push(n);
    }

private:
    using Queue = std::priority_queue<std::size_t, std::vector<std::size_t>, std::greater<>>;

    static Queue roomFor(std::size_t count) {
        std::vector<std::size_t> room;
        room.reserve(count);
        return Queue(std::greater<>(), std::move(room));
    }

    std::vector<bool> isDue;
    Queue now, later;
    std::size_t passesLeft;
    std::size_t current = 0;
    bool hasBegun = false;
};

}  // namespace zyn::detail
