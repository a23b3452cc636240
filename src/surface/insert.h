// Insertion of many points into an engine, in an order that makes it fast.
#pragma once

#include <zyn/progress.h>

#include "core/prefetch.h"
#include "triangulation/engine.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyn::detail {

/// Returns the indices of the points in an order of insertion: rounds along a Hilbert curve.
template <class Real>
[[nodiscard]] std::vector<std::int32_t> insertionOrder(const XPnt3<Real>* points, int count);

/// Calls `insert(index, start)` for the points in the order of insertion. Passes `start` with the
/// first point, and the newest triangle with each later one. Returns the number of calls, which is
/// below `count` only if `progress` is cancelled.
template <class Real, class Insert>
int insertAll(const DelaunayEngine<Real>& engine, const XPnt3<Real>* first, int count,
              TinRecord<Real>* start, IZynProgress* progress, Insert insert) {
    const std::vector<std::int32_t> order = insertionOrder(first, count);
    constexpr int part = 1024;  // points between two reports of progress
    constexpr int ahead = 8;    // points whose memory is prefetched
    if (progress != nullptr) { progress->setTotal(count); }
    int done = 0;
    while (done < count && !(progress != nullptr && progress->isCanceled())) {
        const int end = std::min(count, done + part);
        for (int n = done; n < end; ++n) {
            prefetch(first + order[static_cast<std::size_t>(std::min(n + ahead, count - 1))]);
            const std::int32_t index = order[static_cast<std::size_t>(n)];
            insert(index, start);
            start = engine.newest();
        }
        if (progress != nullptr) { progress->step(end - done); }
        done = end;
    }
    return done;
}

}  // namespace zyn::detail
