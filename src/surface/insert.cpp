// Whole arrays of points into an engine.
#include <zyn/network.h>
#include <zyn/progress.h>

#include "core/prefetch.h"
#include "surface/spatial_order.h"
#include "triangulation/engine.h"

#include <algorithm>
#include <vector>

namespace zyn {
namespace {

/// An order of insertion made from one along a curve: rounds, each of every eighth point of the next
/// one. The network is there in outline before it becomes dense: without the rounds, points would go
/// in beside long triangles across all that is still empty, and cause half as many flips again. Every
/// other round runs backwards, so that it starts near where the last one ended.
/// Source: biased randomized insertion orders, Amenta, Choi and Rote 2003; here the sample is every
/// eighth point instead of random.
std::vector<std::int32_t> inRounds(const std::vector<std::int32_t>& curve) {
    constexpr std::size_t part = 8;
    std::vector<std::int32_t> order;
    order.reserve(curve.size());
    std::size_t step = 1;
    while (step * part < curve.size()) { step *= part; }
    bool forwards = true;
    for (bool first = true; step > 0; step /= part, first = false, forwards = !forwards) {
        const auto start = static_cast<std::ptrdiff_t>(order.size());
        for (std::size_t i = 0; i < curve.size(); i += step) {
            if (first || i % (step * part) != 0) { order.push_back(curve[i]); }
        }
        if (!forwards) { std::reverse(order.begin() + start, order.end()); }
    }
    return order;
}

}  // namespace

template <class Real>
int addPoints(DelaunayInterface<Real>* interface, Pnt3Array<Real>* points,
              std::type_identity_t<Real> tolerance, IZynProgress* progress, IntArray* rejected) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr || points == nullptr) { return 0; }
    const int count = points->size();
    XPnt3<Real>* const first = points->data();
    const std::vector<std::int32_t> order = inRounds(hilbertOrder<Real>(first, count));
    engine->number(first, count);

    constexpr int part = 1024;  // points between two looks at the progress
    constexpr int ahead = 8;    // points whose memory is on its way
    std::vector<std::int32_t> refused;
    if (progress != nullptr) { progress->setTotal(count); }
    int done = 0;
    while (done < count && !(progress != nullptr && progress->isCanceled())) {
        const int end = std::min(count, done + part);
        for (int n = done; n < end; ++n) {
            prefetch(first + order[static_cast<std::size_t>(std::min(n + ahead, count - 1))]);
            const std::int32_t index = order[static_cast<std::size_t>(n)];
            if (!engine->insert(first + index, tolerance)) { refused.push_back(index); }
        }
        if (progress != nullptr) { progress->step(end - done); }
        done = end;
    }
    if (rejected != nullptr) {
        std::sort(refused.begin(), refused.end());
        rejected->append(refused.data(), static_cast<int>(refused.size()));
    }
    return done - static_cast<int>(refused.size());
}

template int addPoints(DelaunayInterface<float>*, Pnt3fArray*, float, IZynProgress*, IntArray*);
template int addPoints(DelaunayInterface<double>*, Pnt3dArray*, double, IZynProgress*, IntArray*);

}  // namespace zyn
