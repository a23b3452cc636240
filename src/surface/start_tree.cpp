// A tree of places to start walks from.
#include "surface/start_tree.h"

#include "core/prefetch.h"
#include "surface/queries.h"
#include "triangulation/locate_step.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zyn::detail {
namespace {

constexpr std::size_t sampleOfLeaf = 8;
constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

/// Walks from t towards q. Returns the triangle of the last step, and whether the walk has ended
/// there. Prefetches the neighbours before it reads the corners.
std::pair<tind*, bool> approach(tind* t, Xy q) {
    constexpr int mostSteps = 64;
    bool isInside = false;
    for (int steps = 0; steps < mostSteps; ++steps) {
        for (const tind* const n : t->neighbor) {
            if (n == nullptr) { continue; }
            prefetch(n);
            prefetch(&n->neighbor[2]);
        }
        tind* const next = stepTowards(t, q, isInside);
        if (next == nullptr || next == t) { return {t, true}; }
        t = next;
    }
    return {t, false};
}

}  // namespace

StartTree::StartTree(std::vector<Xy> sample, int vertices) : sampled(vertices) {
    if (sample.empty()) { return; }
    leaves.resize(std::max<std::size_t>(1, sample.size() / sampleOfLeaf));
    splits.resize(leaves.size());
    cells.assign(leaves.size() * side * side, none);
    split(sample, 1);
}

void StartTree::split(std::span<Xy> sample, std::size_t node) {
    const auto [west, east] = std::ranges::minmax(sample, {}, &Xy::x);
    const auto [south, north] = std::ranges::minmax(sample, {}, &Xy::y);
    const double width = east.x - west.x, height = north.y - south.y;
    if (node >= leaves.size()) {
        // The vertices of the leaf extend a little beyond its sample.
        const auto margin = 1.0 / double(sample.size());
        const auto perUnit = [margin](double extent) { return side / (extent * (1 + 2 * margin)); };
        leaves[node - leaves.size()] = {west.x - width * margin, south.y - height * margin,
                                        perUnit(width), perUnit(height)};
        return;
    }
    const auto share = double(leavesUnder(2 * node)) / double(leavesUnder(node));
    const auto middle = static_cast<std::size_t>(double(sample.size()) * share);
    const bool isAlongY = height > width;
    const auto coordinate = isAlongY ? &Xy::y : &Xy::x;
    std::ranges::nth_element(sample, sample.begin() + static_cast<std::ptrdiff_t>(middle), {},
                             coordinate);
    splits[node] = {sample[middle].*coordinate, isAlongY};
    split(sample.first(middle), 2 * node);
    split(sample.subspan(middle), 2 * node + 1);
}

std::size_t StartTree::leavesUnder(std::size_t node) const {
    std::size_t first = node, end = node + 1;  // the nodes of a level
    while (first < leaves.size()) {
        first *= 2;
        end *= 2;
    }
    // The last level may be incomplete. The level above has leaves for the rest.
    const std::size_t deepest = std::min(end, 2 * leaves.size());
    const std::size_t above = std::max(first / 2, leaves.size());
    return (deepest > first ? deepest - first : 0) + (end / 2 > above ? end / 2 - above : 0);
}

void StartTree::noteAll(const Engine& engine) {
    constexpr std::size_t stride = 3;  // odd, so that it does not coincide with a regular order
    std::ranges::fill(cells, none);
    // Lower numbers overwrite higher ones, which become stale first when triangles are removed.
    for (std::size_t n = engine.count() / stride * stride; n > 0; n -= stride) {
        note(xyOf(engine.at(n - 1)->vertex[0]), n - 1);
    }
}

std::size_t StartTree::cellOf(Xy q) const {
    std::size_t node = 1;
    while (node < leaves.size()) {
        const Split& split = splits[node];
        node = 2 * node + std::size_t((split.isAlongY ? q.y : q.x) >= split.at);
    }
    const std::size_t number = node - leaves.size();
    const Leaf& leaf = leaves[number];
    const auto slot = [](double offset) {  // 0 for NaN
        return static_cast<std::size_t>(std::min(double(side - 1), std::max(0.0, offset)));
    };
    const std::size_t row = slot((q.y - leaf.minY) * leaf.perY);
    return (number * side + row) * side + slot((q.x - leaf.minX) * leaf.perX);
}

TinRecord<double>* StartTree::startAt(const Engine& engine, std::size_t cell) const {
    return cells[cell] < engine.count() ? engine.record(cells[cell]) : nullptr;
}

TinRecord<double>* StartTree::near(const Engine& engine, Xy q) const {
    Tri* latest = engine.newest();
    if (cells.empty() || latest == nullptr) { return latest; }
    const std::size_t home = cellOf(q);
    constexpr std::size_t mostWalks = 4;
    // Cells whose numbers differ in the last bits only are near each other.
    for (std::size_t n = 0, walks = 0; n < side * side && walks < mostWalks; ++n) {
        Tri* const start = startAt(engine, home ^ n);
        if (start == nullptr) { continue; }
        const auto [t, hasArrived] = approach(start, q);
        if (hasArrived) { return t; }
        latest = t;
        ++walks;
    }
    return latest;
}

TinRecord<double>* StartTree::from(const Engine& engine, Tri* last, Xy q) const {
    constexpr double closeEdges = 8;
    if (last != nullptr && isWithinEdges(last, q, closeEdges)) { return last; }
    const std::size_t home = cells.empty() ? 0 : cellOf(q);
    for (std::size_t n = 0; n < std::min(cells.size(), side * side); ++n) {
        if (Tri* const start = startAt(engine, home ^ n)) { return start; }
    }
    return last != nullptr ? last : engine.newest();
}

}  // namespace zyn::detail
