// The validation of networks: it accepts valid ones and names the fault of others.
#include <zyn/network.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "network.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

template <class Real>
class Validate : public testing::Test, protected support::Network<Real> {
protected:
    Validate() : support::Network<Real>(0, 0, 100, 100) {}

    std::string fault(bool delaunay = false) {
        const QString text = validate(this->engine.get(), delaunay);
        return text.isNull() ? "" : text.toStdString();
    }
    std::string sentence(const TinRecord<Real>* t, const std::string& text) {
        const auto all = this->triangles();
        const auto number = std::find(all.begin(), all.end(), t) - all.begin();
        return "triangle " + std::to_string(number) + " " + text;
    }
};
TYPED_TEST_SUITE(Validate, support::Precisions);

TYPED_TEST(Validate, FindsNoFaultInValidNetworks) {
    EXPECT_EQ(this->fault(true), "");
    EXPECT_FALSE(validate<TypeParam>(nullptr).isNull());
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
    for (int n = 0; n < 4000; ++n) {
        this->add(pick(26) * 4, pick(26) * 4, pick(9), pick(4) == 0 ? -1 : 0);
        const auto& p = this->points[std::size_t(pick(n + 1))];
        if (pick(3) == 0) { this->engine->removePoint(nullptr, p.x, p.y, 1); }
        if (n % 100 == 0) { ASSERT_EQ(this->fault(), "") << n; }
    }
}

// Each vertex is added again; then vertices are removed until each place has one.
TYPED_TEST(Validate, FindsNoFaultAtPointsInOnePlace) {
    std::mt19937 random(support::newSeed());
    for (int round = 0; round < 300; ++round) {
        std::vector<XPnt3d> places;
        for (int n = 0; n < 40; ++n) { places.emplace_back(random() % 5 * 25, random() % 5 * 25); }
        const auto array = support::arrayOf<TypeParam>(places);
        support::Network<TypeParam> net(-10, -10, 110, 110);
        ASSERT_EQ(addPoints(net.engine.get(), array.get(), NAN), 0);
        ASSERT_EQ(addPoints(net.engine.get(), array.get(), -1), 40);
        const auto before = net.records();
        EXPECT_EQ(addPoints(net.engine.get(), array.get(), round % 2 == 0 ? 0 : -1), 0);
        EXPECT_EQ(net.records(), before);
        addBreakline(net.engine.get(), array.get(), 0);
        ASSERT_EQ(validate(net.engine.get()), QString());
        ASSERT_EQ(vertexCount(net.engine.get()), 40);

        std::map<std::pair<double, double>, int> held;
        for (const XPnt3d& p : places) { ++held[{p.x, p.y}]; }
        for (int n = 0; n < 200; ++n) {
            const auto& p = array->get(n % 40);
            int& count = held[{p.x, p.y}];
            if (count == 1 || !net.engine->removePoint(nullptr, p.x, p.y, 1)) { continue; }
            --count;
            ASSERT_EQ(validate(net.engine.get()), QString());
        }
    }
}

TYPED_TEST(Validate, NamesTheFaultAndItsTriangle) {
    using Record = TinRecord<TypeParam>;
    for (int n = 0; n < 25; ++n) { this->add(10 + 20 * (n % 5) + n / 5, 10 + 20 * (n / 5), n); }
    ASSERT_EQ(this->fault(true), "");
    const std::vector<Record*> all = this->triangles();
    Record* const inner = this->engine->locate(50, 50);
    for (Record* const t : {all.front(), inner, all.back()}) {
        const Record whole = *t;
        TypeParam *const *const v = whole.vertex, *const none = nullptr;
        XPnt3<TypeParam> middle((v[0][0] + v[2][0]) / 2, (v[0][1] + v[2][1]) / 2);
        const auto expect = [&](TypeParam* b, TypeParam* c, const char* text) {
            t->vertex[1] = b;
            t->vertex[2] = c;
            EXPECT_EQ(this->fault(), this->sentence(t, text));
            *t = whole;
        };
        expect(none, v[2], "has a null vertex");
        expect(v[2], v[2], "has the same vertex twice");
        expect(v[2], v[1], "is clockwise");
        if (t == inner) { expect(middle, v[2], "has zero area"); }
        for (auto*& link : t->neighbor) {  // the neighbour's link has no counterpart
            auto* const n = std::exchange(link, nullptr);
            if (n == nullptr) { continue; }
            EXPECT_EQ(this->fault(), this->sentence(n, "has a neighbour that does not link back"));
            link = n;
        }
    }
    // Of two triangles that contradict each other, the text names the first.
    Record foreign = *inner;
    auto*& link = all[0]->neighbor[0];
    for (const auto& [wrong, text] :
         {std::pair(&foreign, "has a neighbour that is not in the network"),
          {inner, "has a neighbour that does not link back"},
          {all[0], "has a neighbour that links back across another edge"}}) {
        auto* const before = std::exchange(link, wrong);
        EXPECT_EQ(this->fault(), this->sentence(all[0], text));
        link = before;
    }
    this->engine->enforceEdge(this->vertex(6), this->vertex(13), inner);
    EXPECT_EQ(this->fault(), "");
    EXPECT_THAT(this->fault(true), testing::EndsWith("edge that is not Delaunay"));
    ASSERT_TRUE(this->engine->deleteTriangle(this->engine->locate(30, 70)));
    EXPECT_THAT(this->fault(), testing::EndsWith("has a reflex corner on the rim"));
}

// Eight triangles around a hub wind twice around a square.
TYPED_TEST(Validate, FindsRimsThatWindTwiceOrTouchThemselves) {
    for (int n = 0; n < 3; ++n) { ASSERT_TRUE(this->add(20 + 30 * n, 50 + n)); }
    const auto all = this->triangles();
    ASSERT_EQ(all.size(), 8U);
    XPnt3<TypeParam> hub(50, 50), rim[9];
    for (std::size_t n = 0; n < 9; ++n) {
        constexpr TypeParam x[] = {60, 50, 40, 50}, y[] = {50, 60, 50, 40};
        rim[n].set(x[n % 4], y[n % 4], 0);
    }
    for (std::size_t n = 0; n < 8; ++n) {
        *all[n] = {.vertex = {hub, rim[n], rim[(n + 1) % 8]},
                   .neighbor = {nullptr, all[(n + 1) % 8], all[(n + 7) % 8]}};
    }
    EXPECT_EQ(this->fault(),
              "triangle 0 belongs to a component whose rim does not wind exactly once");
    // Cuts the triangles open from the hub to the start of the first round.
    all[0]->neighbor[2] = all[7]->neighbor[1] = nullptr;
    EXPECT_EQ(this->fault(), "triangle 7 has a vertex that is on the rim twice");
    all[7]->vertex[2] = rim[8];
    EXPECT_EQ(this->fault(), "triangle 7 has a reflex corner on the rim");
}

}  // namespace
