// A cyclic list of small numbers.
#pragma once

#include <cstddef>
#include <vector>

namespace zyn {

/// The numbers from 0 to count - 1 in a circle. Each can be taken out and put back anywhere.
class Cycle {
public:
    explicit Cycle(int count) : links(static_cast<std::size_t>(count)) {
        for (int i = 0; i < count; ++i) { at(i) = {(i + 1) % count, (i + count - 1) % count}; }
    }
    [[nodiscard]] int next(int i) const { return links[static_cast<std::size_t>(i)].next; }
    [[nodiscard]] int previous(int i) const { return links[static_cast<std::size_t>(i)].previous; }
    /// The links of `i` itself stay. REQUIRES: `i` is in the circle.
    void remove(int i) { link(previous(i), next(i)); }
    /// REQUIRES: `place` is in the circle, `i` is not.
    void insertAfter(int place, int i) {
        const int behind = next(place);
        link(place, i);
        link(i, behind);
    }

private:
    struct Links {
        int next, previous;
    };
    Links& at(int i) { return links[static_cast<std::size_t>(i)]; }
    void link(int i, int j) {
        at(i).next = j;
        at(j).previous = i;
    }

    std::vector<Links> links;
};

}  // namespace zyn
