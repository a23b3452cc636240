// Whether a network is sound.
#include <zyn/surface.h>

#include "triangulation/engine.h"
#include "triangulation/flip.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace zyn {
namespace {

template <class Real>
class Validation {
public:
    using Tri = TinRecord<Real>;

    Validation(const DelaunayEngine<Real>& engine_, bool delaunay)
        : engine(engine_), numberOf(engine_), isDelaunayAsked(delaunay) {}

    QString fault() {
        if (engine.count() == 0) { return QStringLiteral("the network is empty"); }
        // A triangle that is wrong itself is told before its neighbours that do not fit it any more.
        for (const auto faultOf : {&Validation::faultOfShape, &Validation::faultOfLinks}) {
            for (std::size_t n = 0; n < engine.count(); ++n) {
                if (const char* const text = (this->*faultOf)(engine.at(n))) {
                    return sentence(n, text);
                }
            }
        }
        return faultOfParts();
    }

private:
    static QString sentence(std::size_t number, const char* text) {
        return QStringLiteral("triangle %1 %2").arg(number).arg(QLatin1String(text));
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
        const bool isIllegal =
            isDelaunayAsked &&
            inCircle(t->vertex[i], t->vertex[after[i]], t->vertex[before[i]], n->vertex[back]) > 0;
        return isIllegal ? "has an edge that is not Delaunay" : nullptr;
    }

    /// On the rim, where all three corners lie on one side of the hull; and beside points in one
    /// place.
    bool mayBeFlat(const Tri* t) {
        const bool isOnRim = std::find(t->neighbor, t->neighbor + 3, nullptr) != t->neighbor + 3;
        return isOnRim || isOnOneSideOfFrame(t) || hasDuplicates();
    }
    bool isOnOneSideOfFrame(const Tri* t) {
        if (hull.empty()) { findHull(); }
        const auto all = [t](int axis, double value) {
            return std::all_of(t->vertex, t->vertex + 3,
                               [=](const Real* v) { return double(v[axis]) == value; });
        };
        return all(0, hull[0]) || all(0, hull[1]) || all(1, hull[2]) || all(1, hull[3]);
    }
    void findHull() {
        hull = {HUGE_VAL, -HUGE_VAL, HUGE_VAL, -HUGE_VAL};
        for (const Real* const v : vertices()) {
            hull[0] = std::min(hull[0], double(v[0]));
            hull[1] = std::max(hull[1], double(v[0]));
            hull[2] = std::min(hull[2], double(v[1]));
            hull[3] = std::max(hull[3], double(v[1]));
        }
    }
    bool hasDuplicates() {
        if (!duplicatesKnown) {
            std::vector<std::pair<Real, Real>> places;
            for (const Real* const v : vertices()) { places.emplace_back(v[0], v[1]); }
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
    QString faultOfParts() {
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
            if (QString text = faultOfPart(part); !text.isNull()) { return text; }
        }
        return {};
    }
    QString faultOfPart(const std::vector<const Tri*>& part) {
        std::unordered_set<const Real*> corners;
        std::unordered_map<const Real*, std::pair<const Real*, const Tri*>>
            rim;  // by edges' starts
        for (const Tri* const t : part) {
            corners.insert(t->vertex, t->vertex + 3);
            for (int i = 0; i < 3; ++i) {
                if (t->neighbor[i] != nullptr) { continue; }
                const bool isNew =
                    rim.try_emplace(t->vertex[after[i]], t->vertex[before[i]], t).second;
                if (!isNew) { return sentenceOf(t, "touches the rim at a corner twice"); }
            }
        }
        const char* text = nullptr;
        const Tri* place = nullptr;
        for (const auto& [from, edge] : rim) {
            const auto& [to, t] = edge;
            if (place != nullptr && numberOf(place) <= numberOf(t)) { continue; }
            const auto next = rim.find(to);
            if (next == rim.end() ||
                orientation(xyOf(from), xyOf(to), xyOf(next->second.first)) < 0) {
                text = next == rim.end() ? "has an open edge where the rim ends"
                                         : "stands at a bay in the rim";
                place = t;
            }
        }
        if (place != nullptr) { return sentenceOf(place, text); }
        // V - E + F = 1 of a disc, with 2 E = 3 F + edges of the rim.
        const auto v = static_cast<std::int64_t>(corners.size());
        if (2 * v - std::int64_t(part.size()) - std::int64_t(rim.size()) != 2) {
            return sentenceOf(part[0], "is part of what is no disc, by the Euler count");
        }
        return {};
    }
    QString sentenceOf(const Tri* t, const char* text) {
        return sentence(std::size_t(numberOf(t)), text);
    }

    const DelaunayEngine<Real>& engine;
    TriangleNumbers<Real> numberOf;
    bool isDelaunayAsked;
    std::vector<double> hull;  // minX, maxX, minY, maxY
    bool duplicatesKnown = false, duplicates = false;
};

}  // namespace

template <class Real>
QString validate(DelaunayInterface<Real>* interface, bool delaunay) {
    const auto* const engine = engineOf(interface);
    if (engine == nullptr) { return QStringLiteral("there is no engine"); }
    return Validation<Real>(*engine, delaunay).fault();
}

template QString validate(DelaunayInterface<float>*, bool);
template QString validate(DelaunayInterface<double>*, bool);

}  // namespace zyn
