// Whether a network is sound.
#include <zyn/network.h>
#include <zyn/surface.h>

#include "surface/frame_rim.h"
#include "surface/surface_state.h"
#include "triangulation/engine.h"
#include "triangulation/flip.h"
#include "triangulation/triangle_numbers.h"

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

template <class Real>
class Validation {
public:
    using Tri = TinRecord<Real>;

    using Kind = NetworkFault::Kind;
    using Fault = std::optional<NetworkFault>;

    /// Edges of `fixed_`, which may be null, need not be Delaunay.
    Validation(DelaunayEngine<Real>& engine_, bool delaunay, const FixedEdges<Real>* fixed_)
        : engine(engine_), numberOf(engine_), isDelaunayAsked(delaunay), fixed(fixed_) {}

    Fault fault() {
        if (engine.count() == 0) { return NetworkFault{Kind::shape, -1, "the network is empty"}; }
        // A triangle that is wrong itself is told before its neighbours that do not fit it any more.
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
        return faultOfParts();
    }

private:
    static constexpr const char* notDelaunay = "has an edge that is not Delaunay";

    NetworkFault faultAt(const Tri* t, Kind kind, const char* text) {
        const int number = numberOf(t);
        return {kind, number, "triangle " + std::to_string(number) + ' ' + text};
    }

    const char* faultOfShape(const Tri* t) {
        const auto& v = t->vertex;
        if (std::find(v, v + 3, nullptr) != v + 3) { return "lacks a corner"; }
        if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0]) { return "has a corner twice"; }
        const int turn = orientation(xyOf(v[0]), xyOf(v[1]), xyOf(v[2]));
        if (turn < 0) { return "runs clockwise"; }
        return turn == 0 && !mayBeFlat(t) ? "has no area" : nullptr;
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
        if (numberOf(n) < 0) { return "has a neighbour that is not in the network"; }
        if (n->index(t) == 3) { return "has a neighbour without a link back"; }
        int back = 0;  // beside points in one place, two triangles may share more than one edge
        while (back < 3 &&
               (n->neighbor[back] != t || n->vertex[after[back]] != t->vertex[before[i]] ||
                n->vertex[before[back]] != t->vertex[after[i]])) {
            ++back;
        }
        if (back == 3) { return "has a neighbour with another edge between them"; }
        const bool isFree =
            fixed == nullptr || !fixed->contains(t->vertex[after[i]], t->vertex[before[i]]);
        const bool isIllegal =
            isDelaunayAsked && isFree &&
            inCircle(t->vertex[i], t->vertex[after[i]], t->vertex[before[i]], n->vertex[back]) > 0;
        if (!isIllegal) { return nullptr; }
        if (!engine.isFrameTriangle(t) && !engine.isFrameTriangle(n)) { return notDelaunay; }
        if (illegalAtFrame == nullptr) { illegalAtFrame = t; }
        return nullptr;
    }
    /// Whether the edges of frame triangles are Delaunay when the corners of the frame count as
    /// infinitely far.
    bool isHullClosed() {
        FrameRim<Real> rim(engine);
        return rim.walk(engine.newest()) && rim.isConvex();
    }

    /// On a side of the rim, where one comes to an open edge through triangles of no area; and in a
    /// network with points in one place, where such triangles outlast the removal of a neighbour.
    bool mayBeFlat(const Tri* flat) {
        std::vector<const Tri*> around{flat};
        std::unordered_set<const Tri*> seen{flat};
        bool isOnRim = hasDuplicates();
        for (std::size_t n = 0; n < around.size() && !isOnRim; ++n) {
            isOnRim = onRim.contains(around[n]);
            for (const Tri* const next : around[n]->neighbor) {
                isOnRim = isOnRim || next == nullptr;
                if (next != nullptr && numberOf(next) >= 0 && hasNoArea(next) &&
                    seen.insert(next).second) {
                    around.push_back(next);
                }
            }
        }
        if (isOnRim) { onRim.insert(around.begin(), around.end()); }
        return isOnRim;
    }
    static bool hasNoArea(const Tri* t) {
        const auto& v = t->vertex;
        return std::find(v, v + 3, nullptr) == v + 3 &&
               orientation(xyOf(v[0]), xyOf(v[1]), xyOf(v[2])) == 0;
    }
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

    /// Each connected part for itself.
    Fault faultOfParts() {
        std::vector<bool> isSeen(engine.count());
        for (std::size_t first = 0; first < engine.count(); ++first) {
            if (isSeen[first]) { continue; }
            std::vector<const Tri*> part{engine.at(first)};
            isSeen[first] = true;
            for (std::size_t n = 0; n < part.size(); ++n) {
                for (const Tri* const next : part[n]->neighbor) {
                    if (next == nullptr || isSeen[std::size_t(numberOf(next))]) { continue; }
                    isSeen[std::size_t(numberOf(next))] = true;
                    part.push_back(next);
                }
            }
            if (Fault found = faultOfPart(part)) { return found; }
        }
        return {};
    }
    Fault faultOfPart(const std::vector<const Tri*>& part) {
        std::unordered_set<const Real*> corners;
        std::unordered_map<const Real*, std::pair<const Real*, const Tri*>>
            rim;  // by edges' starts
        for (const Tri* const t : part) {
            corners.insert(t->vertex, t->vertex + 3);
            for (int i = 0; i < 3; ++i) {
                if (t->neighbor[i] != nullptr) { continue; }
                const bool isNew =
                    rim.try_emplace(t->vertex[after[i]], t->vertex[before[i]], t).second;
                if (!isNew) { return faultAt(t, Kind::rim, "touches the rim at a corner twice"); }
            }
        }
        const Tri* bay = nullptr;
        int rounds = 0;
        for (const auto& [from, edge] : rim) {
            const auto& [to, t] = edge;
            // With mutual links as many open edges start at a corner as end there.
            const Turn turn = turnAt(from, to, rim.at(to).first);
            rounds += turn == Turn::passesEast ? 1 : 0;
            if (turn == Turn::right && (bay == nullptr || numberOf(t) < numberOf(bay))) { bay = t; }
        }
        if (bay != nullptr) { return faultAt(bay, Kind::rim, "stands at a bay in the rim"); }
        if (rounds != 1) {
            return faultAt(part[0], Kind::rim, "is part of what winds round more than once");
        }
        // V - E + F = 1 of a disc, with 2 E = 3 F + edges of the rim.
        const auto v = static_cast<std::int64_t>(corners.size());
        if (2 * v - std::int64_t(part.size()) - std::int64_t(rim.size()) != 2) {
            return faultAt(part[0], Kind::rim, "is part of what is no disc, by the Euler count");
        }
        return {};
    }
    enum class Turn { right, left, passesEast };
    /// How the rim turns from a-b to b-c: to the right, which straight back is too, or to the left or
    /// not, and then whether through the direction of the x axis.
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
    TriangleNumbers<Real> numberOf;
    bool isDelaunayAsked;
    const FixedEdges<Real>* fixed;
    const Tri* illegalAtFrame = nullptr;   // has an edge that is legal only if the hull is closed
    std::unordered_set<const Tri*> onRim;  // triangles of no area that may be there
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
