// The check of a network.
#include <zyn/network.h>
#include <zyn/surface.h>

#include "surface/frame_rim.h"
#include "surface/lawson.h"
#include "surface/surface_state.h"
#include "triangulation/engine.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_numbers.h"
#include "triangulation/triangle_tests.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

/// Finds the first broken invariant of a network; see validate() of network.h.
template <class Real>
class Validation {
public:
    using Tri = TinRecord<Real>;

    using Kind = NetworkFault::Kind;
    using Fault = std::optional<NetworkFault>;

    /// Exempts the edges of `fixed_`, which may be null, from the in-circle test.
    Validation(DelaunayEngine<Real>& engine_, bool delaunay, const FixedEdges<Real>* fixed_)
        : engine(engine_), triangleIndex(engine_), isDelaunayAsked(delaunay), fixed(fixed_) {}

    Fault fault() {
        if (engine.count() == 0) { return NetworkFault{Kind::shape, -1, "the network is empty"}; }
        // A faulty triangle is reported before its neighbours, which do not fit it any more.
        for (const auto faultOf : {&Validation::faultOfShape, &Validation::faultOfLinks}) {
            for (std::size_t n = 0; n < engine.count(); ++n) {
                const Tri* const t = engine.at(n);
                if (const char* const text = (this->*faultOf)(t)) {
                    const bool isShape = faultOf == &Validation::faultOfShape;
                    return faultAt(t,
                                   isShape               ? Kind::shape
                                   : text == notDelaunay ? Kind::delaunay
                                                         : Kind::link,
                                   text);
                }
            }
        }
        if (illegalAtFrame != nullptr && !isHullClosed()) {
            return faultAt(illegalAtFrame, Kind::delaunay, notDelaunay);
        }
        return faultOfComponents();
    }

private:
    using Component = std::vector<const Tri*>;
    /// Maps the start of each open edge to its end and its triangle.
    using Rim = std::unordered_map<const Real*, std::pair<const Real*, const Tri*>>;

    static constexpr const char* notDelaunay = "has an edge that is not Delaunay";

    NetworkFault faultAt(const Tri* t, Kind kind, const char* text) {
        const int number = triangleIndex(t);
        return {kind, number, "triangle " + std::to_string(number) + ' ' + text};
    }

    const char* faultOfShape(const Tri* t) {
        const auto& v = t->vertex;
        if (!hasVertices(t)) { return "has a null vertex"; }
        if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0]) { return "has the same vertex twice"; }
        const int turn = orientationOf(t);
        if (turn < 0) { return "is clockwise"; }
        return turn == 0 && !mayBeDegenerate(t) ? "has zero area" : nullptr;
    }
    static bool hasVertices(const Tri* t) {
        return std::find(t->vertex, t->vertex + 3, nullptr) == t->vertex + 3;
    }
    const char* faultOfLinks(const Tri* t) {
        for (int i = 0; i < 3; ++i) {
            if (const char* const text = faultOfEdge(t, i)) { return text; }
        }
        return nullptr;
    }
    const char* faultOfEdge(const Tri* t, int i) {
        const Tri* const n = t->neighbor[i];
        if (n == nullptr) { return nullptr; }
        if (triangleIndex(n) < 0) { return "has a neighbour that is not in the network"; }
        if (n->index(t) == 3) { return "has a neighbour that does not link back"; }
        const int back = slotBack(t, i, n);
        if (back == 3) { return "has a neighbour that links back across another edge"; }
        if (!isIllegal(t, i, n->vertex[back])) { return nullptr; }
        if (!engine.isFrameTriangle(t) && !engine.isFrameTriangle(n)) { return notDelaunay; }
        if (illegalAtFrame == nullptr) { illegalAtFrame = t; }
        return nullptr;
    }
    /// Returns whether the edge opposite corner `i` of t fails a test that it has to pass. `apex`
    /// is the corner beyond it.
    bool isIllegal(const Tri* t, int i, const Real* apex) const {
        const Real *const from = t->vertex[after[i]], *const to = t->vertex[before[i]];
        return isDelaunayAsked && (fixed == nullptr || !fixed->contains(from, to)) &&
               inCircle(t->vertex[i], from, to, apex) > 0;
    }
    /// Returns whether the edges of frame triangles are Delaunay when the corners of the frame
    /// count as infinitely far.
    bool isHullClosed() {
        FrameRim<Real> rim(engine);
        return rim.walk(engine.newest()) && rim.isConvex();
    }

    /// Returns whether a zero-area triangle is legal. It is if:
    /// - zero-area triangles connect it to the rim;
    /// - the network has points in one place, where such a triangle outlasts its removed
    ///   neighbours.
    bool mayBeDegenerate(const Tri* degenerate) {
        std::vector<const Tri*> around{degenerate};
        std::unordered_set<const Tri*> seen{degenerate};
        bool isOnRim = hasDuplicates();
        for (std::size_t n = 0; n < around.size() && !isOnRim; ++n) {
            isOnRim = onRim.contains(around[n]);
            for (const Tri* const next : around[n]->neighbor) {
                isOnRim = isOnRim || next == nullptr;
                if (next != nullptr && triangleIndex(next) >= 0 && isDegenerate(next) &&
                    seen.insert(next).second) {
                    around.push_back(next);
                }
            }
        }
        if (isOnRim) { onRim.insert(around.begin(), around.end()); }
        return isOnRim;
    }
    static bool isDegenerate(const Tri* t) { return hasVertices(t) && orientationOf(t) == 0; }
    /// Returns whether two vertices are in one place. Sorts the vertices at the first call only.
    bool hasDuplicates() {
        if (!duplicatesKnown) {
            std::vector<std::pair<Real, Real>> places;
            for (const Real* const v : vertices()) {
                if (!std::isnan(v[0]) && !std::isnan(v[1])) { places.emplace_back(v[0], v[1]); }
            }
            std::sort(places.begin(), places.end());
            duplicates = std::adjacent_find(places.begin(), places.end()) != places.end();
            duplicatesKnown = true;
        }
        return duplicates;
    }
    std::unordered_set<const Real*> vertices() const {
        std::unordered_set<const Real*> result;
        for (std::size_t n = 0; n < engine.count(); ++n) {
            for (const Real* const v : engine.at(n)->vertex) {
                if (v != nullptr) { result.insert(v); }
            }
        }
        return result;
    }

    Fault faultOfComponents() {
        std::vector<bool> isSeen(engine.count());
        for (std::size_t first = 0; first < engine.count(); ++first) {
            if (isSeen[first]) { continue; }
            const Component component = componentOf(engine.at(first), isSeen);
            if (Fault found = faultOfComponent(component)) { return found; }
        }
        return {};
    }
    /// Returns the triangles that links connect to `first`, and marks them as seen.
    Component componentOf(const Tri* first, std::vector<bool>& isSeen) {
        Component component{first};
        isSeen[std::size_t(triangleIndex(first))] = true;
        for (std::size_t n = 0; n < component.size(); ++n) {
            for (const Tri* const next : component[n]->neighbor) {
                if (next == nullptr || isSeen[std::size_t(triangleIndex(next))]) { continue; }
                isSeen[std::size_t(triangleIndex(next))] = true;
                component.push_back(next);
            }
        }
        return component;
    }
    Fault faultOfComponent(const Component& component) {
        std::unordered_set<const Real*> corners;
        Rim rim;
        for (const Tri* const t : component) {
            corners.insert(t->vertex, t->vertex + 3);
            for (int i = 0; i < 3; ++i) {
                if (t->neighbor[i] != nullptr) { continue; }
                const bool isNew =
                    rim.try_emplace(t->vertex[after[i]], t->vertex[before[i]], t).second;
                if (!isNew) {
                    return faultAt(t, Kind::rim, "has a vertex that is on the rim twice");
                }
            }
        }
        if (Fault found = faultOfRim(rim, component[0])) { return found; }
        // V - E + F = 1 of a disc, with 2 E = 3 F + edges of the rim.
        const auto v = static_cast<std::int64_t>(corners.size());
        if (2 * v - std::int64_t(component.size()) - std::int64_t(rim.size()) != 2) {
            return faultAt(component[0], Kind::rim,
                           "belongs to a component that is not a disc (Euler characteristic)");
        }
        return {};
    }
    /// Checks that the rim of the component of `first` is convex, and winds once.
    Fault faultOfRim(const Rim& rim, const Tri* first) {
        const Tri* reflex = nullptr;
        int rounds = 0;
        for (const auto& [from, edge] : rim) {
            const auto& [to, t] = edge;
            // With mutual links, as many open edges end at a corner as start there.
            const Turn turn = turnAt(from, to, rim.at(to).first);
            rounds += turn == Turn::passesEast ? 1 : 0;
            if (turn == Turn::right &&
                (reflex == nullptr || triangleIndex(t) < triangleIndex(reflex))) {
                reflex = t;
            }
        }
        if (reflex != nullptr) {
            return faultAt(reflex, Kind::rim, "has a reflex corner on the rim");
        }
        if (rounds != 1) {
            return faultAt(first, Kind::rim,
                           "belongs to a component whose rim does not wind exactly once");
        }
        return {};
    }
    enum class Turn { right, left, passesEast };
    /// Returns how the rim turns from edge a-b to edge b-c:
    /// - `right` also if it goes straight back;
    /// - `passesEast` if it turns to the left and passes the direction of the x axis;
    /// - `left` otherwise, also if it goes straight on.
    static Turn turnAt(const Real* a, const Real* b, const Real* c) {
        const auto isUpward = [](const Real* from, const Real* to) {
            return to[1] > from[1] || (to[1] == from[1] && to[0] > from[0]);
        };
        const bool first = isUpward(a, b), second = isUpward(b, c);
        const int side = orientation(xyOf(a), xyOf(b), xyOf(c));
        if (side < 0 || (side == 0 && first != second)) { return Turn::right; }
        return !first && second ? Turn::passesEast : Turn::left;
    }

    DelaunayEngine<Real>& engine;
    TriangleNumbers<Real> triangleIndex;
    bool isDelaunayAsked;
    const FixedEdges<Real>* fixed;
    const Tri* illegalAtFrame = nullptr;   // its illegal edge becomes legal if the hull is closed
    std::unordered_set<const Tri*> onRim;  // legal zero-area triangles
    bool duplicatesKnown = false, duplicates = false;
};

}  // namespace

template <class Real>
QString validate(DelaunayInterface<Real>* interface, bool delaunay) {
    auto* const engine = engineOf(interface);
    if (engine == nullptr) { return QStringLiteral("there is no engine"); }
    const auto fault = Validation<Real>(*engine, delaunay, nullptr).fault();
    return fault ? QString::fromStdString(fault->text) : QString();
}

std::optional<NetworkFault> Surface::validate() const {
    if (!own) { return std::nullopt; }
    SurfaceNetwork& network = own->network;
    auto fault = Validation<double>(*network.engine, true, network.fixed.get()).fault();
    FrameRim<double> rim(*network.engine);
    if (!fault && !(rim.walk(network.engine->newest()) && rim.isConvex())) {
        fault = NetworkFault{NetworkFault::Kind::rim, -1, "the rim is not convex"};
    }
    return fault;
}

template QString validate(DelaunayInterface<float>*, bool);
template QString validate(DelaunayInterface<double>*, bool);

}  // namespace zyn
