// Long random walks of operations, after which the network is what it should be.
#include <zyn/delaunay.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "network.h"
#include "network_check.h"
#include "seed.h"

namespace {

using namespace zyn;

/// How many operations a walk has; ZYN_WALK_OPERATIONS says otherwise.
int operationCount() {
    const char* const wanted = std::getenv("ZYN_WALK_OPERATIONS");
    return wanted != nullptr ? std::atoi(wanted) : 50000;
}

template <class Real>
class Walk : support::Network<Real> {
public:
    /// Positions are `step` apart, so that many lie on lines and circles, or twice in one place.
    Walk(unsigned seed, double step_)
        : support::Network<Real>(0, 0, 100, 100), random(seed), step(step_) {}

    std::string run(int operations) {
        const int checkEvery = std::max(500, operations / 1000);
        std::string fault;
        for (int n = 0; n < operations && fault.empty(); ++n) {
            const int choice = pick(100);
            if (choice == 0) {
                writeAndRead();
            } else if (choice < 15) {
                enforceSome();
            } else if (choice < 30) {
                locateSome();
            } else if (choice < 55 || held.size() > 2000) {
                removeSome();
            } else if (this->add(position(), position(), pick(9))) {
                held.push_back(this->points.back());
            }
            if (n % checkEvery == 0 || n + 1 == operations) {
                fault = support::faultOf(*this->engine,
                                         {.delaunay = false, .vertices = 4 + int(held.size())});
            }
        }
        return fault;
    }

private:
    int pick(int count) { return std::uniform_int_distribution(0, count - 1)(random); }
    double position() { return step * pick(int(100 / step) + 1); }
    Real* someVertex() {
        return held.empty() ? nullptr : held[std::size_t(pick(int(held.size())))];
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
        EXPECT_TRUE(t != nullptr && t->index(a) != 3);
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
        vertices.reset(array);  // what the network stood on is not needed any more
        this->points.clear();
        ASSERT_EQ(count, 4 + int(held.size()));
        for (std::size_t i = 0; i < held.size(); ++i) { held[i] = array + 3 * i; }
    }

    std::mt19937 random;
    double step;
    std::vector<Real*> held;  // the vertices that should be there
    std::unique_ptr<Real[]> vertices;
};

template <class Real>
class RandomWalkTest : public testing::Test {};
TYPED_TEST_SUITE(RandomWalkTest, support::Precisions);

TYPED_TEST(RandomWalkTest, KeepsTheNetworkValid) {
    const unsigned seed = support::newSeed();
    for (const double step : {1e-3, 0.1, 5.0}) {
        SCOPED_TRACE(step);
        EXPECT_EQ(Walk<TypeParam>(seed, step).run(operationCount() / 3), "");
    }
}

}  // namespace
