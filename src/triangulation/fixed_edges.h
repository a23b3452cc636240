// Edges of a network that flips must leave in place.
#pragma once

#include <zyn/tin.h>

#include "triangulation/predicates.h"

#include <cstddef>
#include <functional>
#include <unordered_map>
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

/// The pairs of vertices of a host's list, found by their ends, and the list kept up to date.
template <class Real>
class FixedEdges {
public:
    using VertexArray = typename TinRecord<Real>::RealPtrArray;

    /// Takes edges that come twice, and a vertex left over, out of the list. A null list is an empty
    /// one of which nobody hears.
    explicit FixedEdges(VertexArray* vertices) : list(vertices) {
        if (list == nullptr) { return; }
        const int pairs = list->size() / 2;
        places.reserve(static_cast<std::size_t>(pairs));
        int kept = 0;
        for (int i = 0; i < pairs; ++i) {
            Real* const a = list->get(2 * i);
            Real* const b = list->get(2 * i + 1);
            if (places.emplace(edge(a, b), kept).second) { put(kept++, a, b); }
        }
        list->resize(2 * kept);
    }

    [[nodiscard]] bool contains(Real* a, Real* b) const {
        return !places.empty() && places.contains(edge(a, b));
    }
    /// Adds the edge unless it is there.
    void add(Real* a, Real* b) {
        if (list == nullptr || contains(a, b)) { return; }
        places.emplace(edge(a, b), list->size() / 2);
        list->append(a);
        list->append(b);
    }
    /// Takes the edge out; the last one moves into its place.
    void remove(Real* a, Real* b) {
        const auto found = places.find(edge(a, b));
        if (found == places.end()) { return; }
        const int place = found->second;
        const int last = list->size() / 2 - 1;
        places.erase(found);
        if (place != last) {
            put(place, list->get(2 * last), list->get(2 * last + 1));
            places[edge(list->get(2 * last), list->get(2 * last + 1))] = place;
        }
        list->resize(2 * last);
    }
    /// Whether edge a-b may be flipped for `p`: always when it is not fixed, and when it is, then only
    /// because p lies on it: its halves take its place.
    bool giveWay(Real* a, Real* b, Real* p) {
        if (!contains(a, b)) { return true; }
        if (orientation(xyOf(p), xyOf(a), xyOf(b)) != 0) { return false; }
        split(a, b, p);
        return true;
    }
    /// Replaces the edge by a-p and p-b.
    void split(Real* a, Real* b, Real* p) {
        remove(a, b);
        add(a, p);
        add(p, b);
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
        list->getRef(2 * place) = a;
        list->getRef(2 * place + 1) = b;
    }

    VertexArray* list;
    std::unordered_map<Edge, int, Hash> places;
};

}  // namespace zyn
