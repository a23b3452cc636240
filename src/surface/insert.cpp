// Insertion of whole arrays of points into an engine.
#include "surface/insert.h"

#include <zyn/network.h>

#include "surface/spatial_order.h"

#include <algorithm>
#include <vector>

namespace zyn {
namespace detail {
namespace {

/// Returns an order of insertion in rounds. Each round is spread along the whole curve, and has
/// seven times as many points as all rounds before it together. So the network is an outline before
/// it becomes dense. Without rounds, long triangles across the empty part would cause half as many
/// flips again. Every other round goes backwards, so that it starts near the end of the round
/// before.
/// Source: biased randomized insertion orders, Amenta, Choi and Rote 2003, but with every eighth
/// point instead of a random sample.
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
std::vector<std::int32_t> insertionOrder(const XPnt3<Real>* points, int count) {
    return inRounds(hilbertOrder<Real>(points, count));
}

template std::vector<std::int32_t> insertionOrder(const XPnt3f*, int);
template std::vector<std::int32_t> insertionOrder(const XPnt3d*, int);

}  // namespace detail

using namespace detail;

template <class Real>
int addPoints(DelaunayInterface<Real>* interface, Pnt3Array<Real>* points,
              std::type_identity_t<Real> tolerance, IZynProgress* progress, IntArray* rejected) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr || points == nullptr) { return 0; }
    const int count = points->size();
    engine->number(points->data(), count);
    std::vector<std::int32_t> refused;
    XPnt3<Real>* const first = points->data();
    const auto insert = [&](std::int32_t index, TinRecord<Real>* start) {
        if (!engine->insert(first + index, tolerance, start, noFixedEdges)) {
            refused.push_back(index);
        }
    };
    const int offered = insertAll(*engine, first, count, engine->newest(), progress, insert);
    if (rejected != nullptr) {
        std::sort(refused.begin(), refused.end());
        rejected->append(refused.data(), static_cast<int>(refused.size()));
    }
    return offered - static_cast<int>(refused.size());
}

template int addPoints(DelaunayInterface<float>*, Pnt3fArray*, float, IZynProgress*, IntArray*);
template int addPoints(DelaunayInterface<double>*, Pnt3dArray*, double, IZynProgress*, IntArray*);

}  // namespace zyn
