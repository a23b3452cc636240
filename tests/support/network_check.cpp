#include "network_check.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "exact_signs.h"

namespace support {
namespace {

template <class Real>
class Check {
public:
    using Tri = zyn::TinRecord<Real>;

    Check(zyn::DelaunayInterface<Real>& engine, const Expected& expected_) : expected(expected_) {
        engine.rewindTriangles();
        while (Tri* const t = engine.nextTriangle()) {
            numbers.emplace(t, static_cast<int>(triangles.size()));
            triangles.push_back(t);
            for (const Real* const v : t->vertex) {
                if (v == nullptr || !vertices.insert(v).second || !engine.isFrameVertex(v)) {
                    continue;
                }
                minX = std::min(minX, at(v).x);
                minY = std::min(minY, at(v).y);
                maxX = std::max(maxX, at(v).x);
                maxY = std::max(maxY, at(v).y);
            }
        }
        count = engine.triangleCount();
    }

    std::string fault() {
        for (std::size_t n = 0; n < triangles.size(); ++n) {
            if (const char* const text = faultOfTriangle(triangles[n])) {
                return "triangle " + std::to_string(n) + ": " + text;
            }
        }
        return faultOfWhole();
    }

private:
    static Position at(const Real* v) { return {double(v[0]), double(v[1])}; }

    const char* faultOfTriangle(Tri* t) {
        const auto& v = t->vertex;
        if (v[0] == nullptr || v[1] == nullptr || v[2] == nullptr) { return "a corner is null"; }
        if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0]) { return "two corners are one vertex"; }
        const int turn = exactOrientation(at(v[0]), at(v[1]), at(v[2]));
        if (turn < 0) { return "runs clockwise"; }
        if (turn == 0 && !mayBeFlat(t)) { return "is degenerate"; }
        for (int i = 0; i < 3; ++i) {
            if (const char* const text = faultOfEdge(t, i)) { return text; }
        }
        return nullptr;
    }

    const char* faultOfEdge(Tri* t, int i) {
        Tri* const n = t->neighbor[i];
        const Real* const from = t->vertex[(i + 1) % 3];
        const Real* const to = t->vertex[(i + 2) % 3];
        if (n == nullptr) {
            ++openEdges;
            return onOneSide({at(from), at(to)}) ? nullptr : "an open edge is not on the frame";
        }
        if (!numbers.contains(n)) { return "a neighbour is not in the network"; }
        int back = 0;
        while (back < 3 && (n->neighbor[back] != t || n->vertex[(back + 1) % 3] != to ||
                            n->vertex[(back + 2) % 3] != from)) {
            ++back;
        }
        if (back == 3) { return "a neighbour does not link back across the same edge"; }
        const bool isIllegal =
            expected.delaunay && t < n &&  // each edge once
            exactInCircle(at(t->vertex[i]), at(from), at(to), at(n->vertex[back])) > 0;
        return isIllegal ? "an edge is not Delaunay" : nullptr;
    }

    std::string faultOfWhole() const {
        const int v = static_cast<int>(vertices.size());
        const int t = static_cast<int>(triangles.size());
        if (t != count) { return "the count is not the number of triangles"; }
        if (expected.vertices && *expected.vertices != v) {
            return "there are " + std::to_string(v) + " vertices";
        }
        // V - E + T = 1 of a disc, with 2 E = 3 T + open edges.
        if (2 * v - t - openEdges != 2) { return "the network is not a disc"; }
        return isConnected() ? "" : "the network is in pieces";
    }

    bool isConnected() const {
        std::unordered_set<const Tri*> seen{triangles[0]};
        std::vector<const Tri*> pending{triangles[0]};
        while (!pending.empty()) {
            const Tri* const t = pending.back();
            pending.pop_back();
            for (const Tri* const n : t->neighbor) {
                if (n != nullptr && seen.insert(n).second) { pending.push_back(n); }
            }
        }
        return seen.size() == triangles.size();
    }

    bool onOneSide(std::initializer_list<Position> positions) const {
        const auto all = [&](auto test) {
            return std::all_of(positions.begin(), positions.end(), test);
        };
        return all([this](Position p) { return p.x == minX; }) ||
               all([this](Position p) { return p.y == minY; }) ||
               all([this](Position p) { return p.x == maxX; }) ||
               all([this](Position p) { return p.y == maxY; });
    }

    bool mayBeFlat(const Tri* t) const {
        return expected.duplicates ||
               onOneSide({at(t->vertex[0]), at(t->vertex[1]), at(t->vertex[2])});
    }

    Expected expected;
    std::vector<Tri*> triangles;
    std::unordered_map<const Tri*, int> numbers;
    std::unordered_set<const Real*> vertices;
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;
    int count = 0;
    int openEdges = 0;
};

}  // namespace

template <class Real>
std::string faultOf(zyn::DelaunayInterface<Real>& engine, const Expected& expected) {
    if (engine.triangleCount() == 0) { return "the network is empty"; }
    return Check<Real>(engine, expected).fault();
}

template std::string faultOf(zyn::DelaunayInterface<float>&, const Expected&);
template std::string faultOf(zyn::DelaunayInterface<double>&, const Expected&);

}  // namespace support
