// Many points into an engine, in an order that makes it fast.
#pragma once

#include <zyn/progress.h>

#include "core/prefetch.h"
#include "triangulation/engine.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyn {

using namespace detail;

/// Returns the indices of the points in an order of insertion: rounds along a Hilbert curve.
template <class Real>
[[nodiscard]] std::vector<std::int32_t> insertionOrder(const XPnt3<Real>* points, int count);

/// Inserts the points in that order, where they are. The first one is located from `start`, each other
/// one from the newest triangle. Calls `use(index, isVertex)` after each. Returns the number of points
/// that were offered, fewer only if the progress says so.
template <class Real, class Fixed, class Use>
int insertAll(DelaunayEngine<Real>& engine, XPnt3<Real>* first, int count, Real tolerance,
              Fixed& fixed, TinRecord<Real>* start, IZynProgress* progress, Use use) {
    const std::vector<std::int32_t> order = insertionOrder(first, count);
    constexpr int part = 1024;  // points between two looks at the progress
    constexpr int ahead = 8;    // points whose memory is on its way
    if (progress != nullptr) { progress->setTotal(count); }
    int done = 0;
    while (done < count && !(progress != nullptr && progress->isCanceled())) {
        const int end = std::min(count, done + part);
        for (int n = done; n < end; ++n) {
            prefetch(first + order[static_cast<std::size_t>(std::min(n + ahead, count - 1))]);
            const std::int32_t index = order[static_cast<std::size_t>(n)];
            use(index, engine.insert(first + index, tolerance, start, fixed));
            start = engine.newest();
        }
        if (progress != nullptr) { progress->step(end - done); }
        done = end;
    }
    return done;
}

}  // namespace zyn
