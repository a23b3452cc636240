// Edges that flips must leave in place.
#pragma once

#include <zyn/tin.h>

#include "triangulation/between.h"
#include "triangulation/predicates.h"
#include "triangulation/vertex_array.h"

#include <cstddef>
#include <functional>
#include <new>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace zyn::detail {

/// Stands in where a network has no fixed edges; costs nothing.
struct NoFixedEdges {
    template <class Real>
    static bool giveWay(Real*, Real*, Real*) {
        return true;
    }
};
inline NoFixedEdges noFixedEdges;

/// Finds fixed edges by their ends, and keeps the host's list of vertex pairs up to date. Counts
/// the edges that are added. If allocation fails, index and list stay consistent.
template <class Real>
class FixedEdges {
public:
    using VertexArray = typename TinRecord<Real>::RealPtrArray;

    /// Removes duplicate edges and an unpaired last vertex from the list.
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
    /// Returns the number of edges that were added while counting and are still there. Edges that
    /// existed before they were added count too.
    [[nodiscard]] std::size_t added() const { return own.size(); }
    /// Restarts the count from 0.
    void restartCounting() {
        own.clear();
        isCounting = true;
    }
    void add(Real* a, Real* b) {
        if (isCounting) { own.insert(edge(a, b)); }
        include(a, b);
    }
    /// Sets whether edges that are added from now on count. Returns the previous setting.
    bool setCounting(bool newCounting) { return std::exchange(isCounting, newCounting); }
    [[nodiscard]] bool counts(const Real* a, const Real* b) const {
        return own.contains(edge(a, b));
    }
    /// Removes the edge, if it is there. The last edge moves into its place.
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
    /// Returns whether edge a-b may be flipped for `p`. An edge that is not fixed may be. A fixed
    /// one may be only if p is on it; its two halves then replace it. Does not throw, since an
    /// insertion is half done at this point: requireMemory() throws afterwards.
    bool giveWay(Real* a, Real* b, Real* p) noexcept {
        if (places.empty() || !contains(a, b)) { return true; }
        if (orientation(xyOf(p), xyOf(a), xyOf(b)) != 0 || !isBetween(xyOf(a), xyOf(p), xyOf(b))) {
            return false;
        }
        try {
            split(a, b, p);
        } catch (...) { lacksMemory = true; }
        return true;
    }
    /// Throws std::bad_alloc if the halves of an edge that gave way could not be stored.
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

}  // namespace zyn::detail
