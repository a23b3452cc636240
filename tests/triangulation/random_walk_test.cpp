// Long random walks of operations, which keep the network valid.
#include <zyn/network.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "containers/pool_imp.h"
#include "network.h"
#include "network_check.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;
using namespace zyn::detail;

/// Returns the number of operations of a walk, which ZYN_WALK_OPERATIONS overrides.
int operationCount() {
    const char* const wanted = std::getenv("ZYN_WALK_OPERATIONS");
    return wanted != nullptr ? std::atoi(wanted) : 50000;
}

template <class Real>
class Walk : support::Network<Real> {
public:
    /// Positions are `step` apart, so that many are collinear, on one circle, or in one place.
    Walk(unsigned seed, double step_)
        : support::Network<Real>(0, 0, 100, 100), random(seed), step(step_) {}

    std::string run(int operations) {
        const int checkEvery = std::max(500, operations / 1000);
        std::string fault;
        for (int n = 0; n < operations && fault.empty(); ++n) {
            const int choice = pick(1000);
            if (choice == 0) {
                fault = restore();
            } else if (choice < 5) {
                compact();
            } else if (choice < 10) {
                addMany();
            } else if (choice < 18) {
                addLine();
            } else if (choice < 20) {
                addOverlappingLines();
            } else if (choice < 30) {
                writeAndRead();
            } else if (choice < 150) {
                enforceSome();
            } else if (choice < 300) {
                locateSome();
            } else if (choice < 550 || held.size() > 2000) {
                removeSome();
            } else if (this->add(position(), position(), pick(9))) {
                held.push_back(this->points.back());
            }
            if (fault.empty() && (n % checkEvery == 0 || n + 1 == operations)) {
                fault = faultOf(false);
            }
        }
        return fault;
    }

private:
    std::string faultOf(bool delaunay) {
        return support::faultOf(*this->engine,
                                {.delaunay = delaunay, .vertices = 4 + int(held.size())});
    }
    int pick(int count) { return std::uniform_int_distribution(0, count - 1)(random); }
    double position() { return step * pick(int(100 / step) + 1); }
    Real* someVertex() {
        return held.empty() ? nullptr : held[std::size_t(pick(int(held.size())))];
    }

    Pnt3Array<Real>* somePoints(int count) {
        std::vector<XPnt3d> result;
        while (count-- > 0) { result.emplace_back(position(), position(), pick(9)); }
        arrays.push_back(support::arrayOf<Real>(result));
        return arrays.back().get();
    }
    /// Collects the vertices from the triangles.
    void collect() {
        held.clear();
        std::unordered_set<Real*> seen;
        for (auto* const t : this->triangles()) {
            for (Real* const v : t->vertex) {
                if (!this->engine->isFrameVertex(v) && seen.insert(v).second) { held.push_back(v); }
            }
        }
        EXPECT_EQ(this->engine->triangleCount(), 2 + 2 * int(held.size()));
    }

    std::string restore() {
        EXPECT_GE(restoreDelaunay(this->engine.get()), 0);
        return faultOf(true);
    }
    void compact() {
        const std::size_t before = held.size();
        compactVertices(this->engine.get());
        collect();
        EXPECT_EQ(held.size(), before);
    }
    void addMany() {
        const std::size_t before = held.size();
        const int taken = addPoints<Real>(this->engine.get(), somePoints(pick(40)), 0);
        collect();
        EXPECT_EQ(held.size(), before + std::size_t(taken));
    }
    void addLine() {
        EXPECT_GE(addBreakline<Real>(this->engine.get(), somePoints(2 + pick(3)), 0), 0);
        collect();
    }
    /// Adds lines that almost coincide, twice. The second round must make no new crossing.
    void addOverlappingLines() {
        std::vector<XPnt3d> places;
        const XPnt3d a(position(), position()), b(position(), position());
        for (int n = 0; n < 4; ++n) {
            const double share = pick(18) / 17.0;
            places.emplace_back(a.x + share * (b.x - a.x), a.y + share * (b.y - a.y));
        }
        arrays.push_back(support::arrayOf<Real>(places));
        const auto add = [this] {
            return addBreakline<Real>(this->engine.get(), arrays.back().get(), 0, fixed.get(),
                                      pool.get());
        };
        EXPECT_GE(add(), 0);
        const std::size_t made = pool->size();
        EXPECT_GE(add(), 0);
        EXPECT_EQ(pool->size(), made);
        fixed->removeAll();
        collect();
    }
    void removeSome() {
        Real* const v = someVertex();
        if (v == nullptr) { return; }
        const int before = this->engine->triangleCount();
        const bool isGone = this->engine->removePoint(nullptr, v[0], v[1], Real(5e-4));
        if (isGone) { std::erase(held, v); }
        EXPECT_EQ(this->engine->triangleCount(), before - (isGone ? 2 : 0));
    }

    void enforceSome() {
        Real *const a = someVertex(), *const b = someVertex();
        if (a == b) { return; }
        auto* const t = this->engine->enforceEdge(a, b, nullptr);
        ASSERT_NE(t, nullptr);
        EXPECT_NE(t->index(a), 3);
    }

    void locateSome() {
        const Real x = Real(position()), y = Real(position());
        const auto* const t = this->engine->locate(x, y);
        ASSERT_NE(t, nullptr);
        for (int i = 0; i < 3; ++i) {
            const XPnt3d p = support::pointOf(t->vertex[i]);
            const XPnt3d q = support::pointOf(t->vertex[(i + 1) % 3]);
            EXPECT_GE((q.x - p.x) * (double(y) - p.y) - (q.y - p.y) * (double(x) - p.x), -1e-9);
        }
    }

    void writeAndRead() {
        const std::string path = testing::TempDir() + "zyn_random_walk.tin";
        ASSERT_TRUE(writeBinary(this->engine.get(), path.c_str()));
        Real* array = nullptr;
        int count = 0;
        ASSERT_TRUE(readBinary(this->engine.get(), path.c_str(), array, count));
        vertices.reset(array);  // nothing uses the old vertices any more
        this->points.clear();
        arrays.clear();
        ASSERT_EQ(count, 4 + int(held.size()));
        for (std::size_t i = 0; i < held.size(); ++i) { held[i] = array + 3 * i; }
    }

    std::mt19937 random;
    double step;
    std::vector<Real*> held;  // the vertices that should be there
    std::vector<ref_ptr<Pnt3Array<Real>>> arrays;
    ref_ptr<VertexArray<Real>> fixed = support::newVertices<Real>();
    ref_ptr<Pnt3Pool<Real>> pool = new ZynPoolImp<Pnt3Pool<Real>>(64);
    std::unique_ptr<Real[]> vertices;
};

template <class Real>
class RandomWalk : public testing::Test {};
TYPED_TEST_SUITE(RandomWalk, support::Precisions);

TYPED_TEST(RandomWalk, KeepsTheNetworkValid) {
    const unsigned seed = support::newSeed();
    for (const double step : {1e-3, 0.1, 5.0}) {
        SCOPED_TRACE(step);
        EXPECT_EQ(Walk<TypeParam>(seed, step).run(operationCount() / 3), "");
    }
}

}  // namespace
