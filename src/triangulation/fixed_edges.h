// Edges of a network that flips must leave in place.
#pragma once

#include <zyn/tin.h>

#include "triangulation/predicates.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace zyn {

/// For networks without such edges; costs nothing.
struct NoFixedEdges {
    template <class Real>
    static bool giveWay(Real*, Real*, Real*) {
        return true;
    }
};
inline NoFixedEdges noFixedEdges;

/// Returns a new array of pointers to vertices.
template <class Real>
ref_ptr<typename TinRecord<Real>::RealPtrArray> newVertexArray() {
    if constexpr (std::same_as<Real, double>) {
        return newPDoubleArray();
    } else {
        return newPFloatArray();
    }
}

/// Returns a new array of the same vertices, an empty one for null.
template <class Real>
ref_ptr<typename TinRecord<Real>::RealPtrArray> copyOf(
    const typename TinRecord<Real>::RealPtrArray* vertices) {
    if (vertices == nullptr) { return newVertexArray<Real>(); }
    return vertices->clone();
}

/// The pairs of vertices of a host's list, found by their ends, and the list kept up to date; among
/// them those that were added since. If allocation fails, both go on together.
template <class Real>
class FixedEdges {
public:
    using VertexArray = typename TinRecord<Real>::RealPtrArray;

    /// Takes edges that come twice, and a vertex left over, out of the list.
    explicit FixedEdges(VertexArray& vertices) : list(vertices) {
        const int pairs = list.size() / 2;
        places.reserve(static_cast<std::size_t>(pairs));
        int kept = 0;
        for (int i = 0; i < pairs; ++i) {
            Real* const a = list.get(2 * i);
            Real* const b = list.get(2 * i + 1);
            if (places.emplace(edge(a, b), kept).second) { put(kept++, a, b); }
        }
        list.resize(2 * kept);
    }

    [[nodiscard]] bool isEmpty() const { return places.empty(); }
    [[nodiscard]] bool contains(const Real* a, const Real* b) const {
        return places.contains(edge(a, b));
    }
    /// The number of edges that were added while counting, there already or not, and are still there.
    [[nodiscard]] std::size_t added() const { return own.size(); }
    /// Counts from 0 again.
    void restartCounting() {
        own.clear();
        isCounting = true;
    }
    void add(Real* a, Real* b) {
        if (isCounting) { own.insert(edge(a, b)); }
        include(a, b);
    }
    /// Whether edges that are added from now on count; what was the case before.
    bool setCounting(bool newCounting) { return std::exchange(isCounting, newCounting); }
    [[nodiscard]] bool counts(const Real* a, const Real* b) const {
        return own.contains(edge(a, b));
    }
    /// Takes the edge out; the last one moves into its place.
    void remove(Real* a, Real* b) {
        const auto found = places.find(edge(a, b));
        if (found == places.end()) { return; }
        const int place = found->second;
        const int last = list.size() / 2 - 1;
        own.erase(found->first);
        places.erase(found);
        if (place != last) {
            put(place, list.get(2 * last), list.get(2 * last + 1));
            places[edge(list.get(2 * last), list.get(2 * last + 1))] = place;
        }
        list.resize(2 * last);
    }
    /// Replaces the edge by a-p and p-b.
    void split(Real* a, Real* b, Real* p) {
        const bool wasCounting = setCounting(counts(a, b));
        remove(a, b);
        add(a, p);
        add(p, b);
        setCounting(wasCounting);
    }
    /// Whether edge a-b may be flipped for `p`: always when it is not fixed, and when it is, then only
    /// because p lies on it: its halves take its place. Half way through an insertion this must not
    /// throw: requireMemory() does it afterwards.
    bool giveWay(Real* a, Real* b, Real* p) noexcept {
        if (places.empty() || !contains(a, b)) { return true; }
        if (orientation(xyOf(p), xyOf(a), xyOf(b)) != 0 || !isBetween(a, p, b)) { return false; }
        try {
            split(a, b, p);
        } catch (...) { lacksMemory = true; }
        return true;
    }
    /// Throws std::bad_alloc when the halves of an edge that gave way could not be kept.
    void requireMemory() {
        if (std::exchange(lacksMemory, false)) { throw std::bad_alloc(); }
    }

private:
    using Edge = std::pair<const Real*, const Real*>;
    struct Hash {
        std::size_t operator()(const Edge& e) const noexcept {
            const std::hash<const Real*> hash;
            return hash(e.first) * 31 + hash(e.second);
        }
    };
    static Edge edge(const Real* a, const Real* b) {
        return std::less<>()(a, b) ? Edge(a, b) : Edge(b, a);
    }
    /// Of three points on one line.
    static bool isBetween(const Real* a, const Real* p, const Real* b) {
        const auto spans = [=](int axis) {
            return std::min(a[axis], b[axis]) <= p[axis] && p[axis] <= std::max(a[axis], b[axis]);
        };
        return spans(0) && spans(1);
    }
    void put(int place, Real* a, Real* b) {
        list.getRef(2 * place) = a;
        list.getRef(2 * place + 1) = b;
    }
    void include(Real* a, Real* b) {
        const auto [place, isNew] = places.emplace(edge(a, b), list.size() / 2);
        if (!isNew) { return; }
        try {
            Real* const ends[] = {a, b};
            list.append(ends, 2);
        } catch (...) {
            places.erase(place);
            throw;
        }
    }

    VertexArray& list;
    std::unordered_map<Edge, int, Hash> places;
    std::unordered_set<Edge, Hash> own;
    bool isCounting = true;
    bool lacksMemory = false;
};

}  // namespace zyn
