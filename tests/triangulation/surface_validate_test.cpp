// The check of a network, and what becomes of a surface that does not pass it.
#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "network.h"
#include "point_sets.h"
#include "seed.h"

namespace {

using namespace zyn;

template <class Real>
class SurfaceValidateTest : public testing::Test, protected support::Network<Real> {
protected:
    SurfaceValidateTest() : support::Network<Real>(0, 0, 100, 100) {}

    std::string fault(bool delaunay = false) {
        const QString text = validate(this->engine.get(), delaunay);
        return text.isNull() ? "" : text.toStdString();
    }
    auto* triangle(int number) {
        this->engine->rewindTriangles();
        for (int n = 0; n < number; ++n) { this->engine->nextTriangle(); }
        return this->engine->nextTriangle();
    }
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(SurfaceValidateTest, Precisions);

TYPED_TEST(SurfaceValidateTest, FindsNothingInSoundNetworks) {
    const unsigned seed = support::newSeed();
    EXPECT_EQ(this->fault(true), "");
    for (const std::string_view name : support::pointSetNames()) {
        const support::PointSet set = support::makePointSet(name, seed);
        support::Network<TypeParam> network(set);
        for (const XPnt3d& p : set.points) { network.add(p.x, p.y, p.z, set.duplicates ? -1 : 0); }
        const QString text = validate(network.engine.get(), !set.duplicates);
        EXPECT_TRUE(text.isNull()) << name << ": " << text.toStdString();
    }
    std::mt19937 random(seed);
    const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
    for (int n = 0; n < 4000; ++n) {
        this->add(pick(26) * 4, pick(26) * 4, pick(9), pick(4) == 0 ? -1 : 0);
        const auto i = std::size_t(pick(n + 1));
        if (pick(3) == 0) {
            this->engine->removePoint(nullptr, this->points[i].x, this->points[i].y, 1);
        }
        if (n % 100 != 0) { continue; }
        ASSERT_EQ(this->fault(), "") << n;
    }
}

TYPED_TEST(SurfaceValidateTest, NamesTheTriangleWhereTheNetworkIsBroken) {
    for (int n = 0; n < 25; ++n) { this->add(10 + 20 * (n % 5) + n / 5, 10 + 20 * (n / 5), n); }
    ASSERT_EQ(this->fault(true), "");
    const int count = this->engine->triangleCount();
    const auto names = [this](int number, bool delaunay = false) {
        const std::string text = this->fault(delaunay);
        return text.find("triangle " + std::to_string(number) + " ") == 0;
    };
    for (const int number : {0, 7, count - 1}) {
        auto* const t = this->triangle(number);
        const auto whole = *t;
        std::swap(t->vertex[0], t->vertex[1]);
        EXPECT_TRUE(names(number)) << this->fault();
        *t = whole;
        std::swap(t->neighbor[0], t->neighbor[1]);
        EXPECT_NE(this->fault(), "");
        *t = whole;
        for (auto*& link : t->neighbor) {
            auto* const n = std::exchange(link, nullptr);
            if (n == nullptr) { continue; }
            int there = 0;
            while (this->triangle(there) != n) { ++there; }
            EXPECT_TRUE(names(there)) << this->fault();  // it is the one with a link too many
            link = n;
        }
        ASSERT_EQ(this->fault(true), "");
    }
    // An edge of the network, but not of Delaunay's.
    auto* const t = this->engine->locate(50, 50);
    this->engine->enforceEdge(this->vertex(6), this->vertex(13), t);
    EXPECT_EQ(this->fault(), "");
    const std::string text = this->fault(true);
    auto* const named = this->triangle(std::stoi("0" + text.substr(text.find(' ') + 1)));
    EXPECT_TRUE(named->index(this->vertex(6)) != 3 || named->index(this->vertex(13)) != 3) << text;

    auto* const gone = this->engine->locate(30, 70);
    const auto corners = *gone;
    ASSERT_TRUE(this->engine->deleteTriangle(gone));
    const std::string hole = this->fault();
    auto* const beside = this->triangle(std::stoi("0" + hole.substr(hole.find(' ') + 1)));
    EXPECT_TRUE(beside->index(corners.vertex[0]) != 3 || beside->index(corners.vertex[1]) != 3 ||
                beside->index(corners.vertex[2]) != 3)
        << hole;
    EXPECT_FALSE(validate<TypeParam>(nullptr).isNull());
}

TYPED_TEST(SurfaceValidateTest, SaysWhatIsWrong) {
    for (int n = 0; n < 25; ++n) { this->add(10 + 20 * (n % 5) + n / 5, 10 + 20 * (n / 5), n); }
    auto* const t = this->engine->locate(50, 50);
    int number = 0;
    while (this->triangle(number) != t) { ++number; }
    const auto whole = *t;
    auto foreign = whole;
    const auto saysOf = [&](const auto& changed) {
        *t = changed;
        const std::string text = this->fault();
        *t = whole;
        const std::string start = "triangle " + std::to_string(number) + " ";
        return text.starts_with(start) ? text.substr(start.size()) : "of another: " + text;
    };
    auto broken = whole;
    broken.vertex[1] = nullptr;
    EXPECT_EQ(saysOf(broken), "lacks a corner");
    broken.vertex[1] = whole.vertex[2];
    EXPECT_EQ(saysOf(broken), "has a corner twice");
    broken.vertex[2] = whole.vertex[1];
    EXPECT_EQ(saysOf(broken), "runs clockwise");
    XPnt3<TypeParam> middle((whole.vertex[0][0] + whole.vertex[2][0]) / 2,
                            (whole.vertex[0][1] + whole.vertex[2][1]) / 2);
    broken = whole;
    broken.vertex[1] = middle;
    EXPECT_EQ(saysOf(broken), "has no area");
    // Of two that do not fit each other the first is told.
    auto*& link = this->triangle(0)->neighbor[0];
    for (auto* const wrong : {&foreign, t, this->triangle(0)}) {
        auto* const before = std::exchange(link, wrong);
        EXPECT_EQ(this->fault(),
                  wrong == &foreign ? "triangle 0 has a neighbour that is not in the network"
                  : wrong == t      ? "triangle 0 has a neighbour without a link back"
                                    : "triangle 0 has a neighbour with another edge between them");
        link = before;
    }
}

// Eight triangles round a hub, over a square whose corners come twice.
TYPED_TEST(SurfaceValidateTest, KnowsARimThatIsNone) {
    for (int n = 0; n < 3; ++n) { ASSERT_TRUE(this->add(20 + 30 * n, 50 + n)); }
    ASSERT_EQ(this->engine->triangleCount(), 8);
    std::vector<XPnt3<TypeParam>> rim;
    for (int n = 0; n < 9; ++n) {
        constexpr TypeParam x[] = {60, 50, 40, 50}, y[] = {50, 60, 50, 40};
        rim.emplace_back(x[n % 4], y[n % 4]);
    }
    XPnt3<TypeParam> hub(50, 50);
    for (int n = 0; n < 8; ++n) {
        *this->triangle(n) = {
            .vertex = {hub, rim[std::size_t(n)], rim[std::size_t(n + 1) % 8]},
            .neighbor = {nullptr, this->triangle((n + 1) % 8), this->triangle((n + 7) % 8)}};
    }
    EXPECT_EQ(this->fault(), "triangle 0 is part of what winds round more than once");
    // Cut open from the hub to where the rounds begin.
    auto *const first = this->triangle(0), *const last = this->triangle(7);
    first->neighbor[2] = last->neighbor[1] = nullptr;
    EXPECT_EQ(this->fault(), "triangle 7 touches the rim at a corner twice");
    last->vertex[2] = rim[8];
    EXPECT_EQ(this->fault(), "triangle 7 stands at a bay in the rim");
}

TEST(SurfaceValidate, TakesAHullBesideItsFrame) {
    const ref_ptr<Pnt3dArray> points = newPnt3dArray();
    for (int n = 0; n < 25; ++n) { points->append(XPnt3d(n / 5, n % 5, 0)); }
    support::Network<double> hull(-10, -10, 10, 10);
    if (!hull.engine->triangulate(points.get())) { GTEST_SKIP() << "there is no generator"; }
    EXPECT_TRUE(validate(hull.engine.get(), true).isNull());
}

/// Everything that reads a surface, for its end.
template <class Real>
void useAll(DelaunayInterface<Real>* engine, DoubleArray* levels, Pnt3dArray* places) {
    (void)validate(engine, true);
    heightAt(engine, places);
    for (int i = 1; i < places->size(); ++i) {
        const XPnt3d p = places->get(i - 1), q = places->get(i);
        (void)profile(engine, {p.x, p.y}, {q.x, q.y});
    }
    (void)contours(engine, levels, 30);
    (void)contours(engine, levels);
    (void)volume(engine, 4);
    const ref_ptr<MatrixDbl> out = newMatrixDbl();
    EXPECT_TRUE(rasterize(engine, Enve2d(-5, -5, 105, 105), 22, 22, out.get()));
}

/// The points of some of the places become vertices and stay in `lines`.
template <class Real>
void addAsBreakline(DelaunayInterface<Real>* engine, Pnt3dArray& places, int first, int end,
                    std::vector<ref_ptr<Pnt3Array<Real>>>& lines) {
    if constexpr (std::same_as<Real, double>) {
        lines.emplace_back(newPnt3dArray());
    } else {
        lines.emplace_back(newPnt3fArray());
    }
    for (int i = first; i < end; ++i) {
        const XPnt3d p = places.get(i);
        lines.back()->append(XPnt3<Real>(Real(p.x), Real(p.y), Real(1)));
    }
    addBreakline(engine, lines.back().get(), 0);
    restoreDelaunay(engine);
}

TYPED_TEST(SurfaceValidateTest, DamageEndsNoCallBadly) {
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](int count) { return int(random() % unsigned(count)); };
    const ref_ptr<DoubleArray> levels = newDoubleArray();
    for (const double level : {0.0, 2.5, 4.0, 8.0}) { levels->append(level); }
    for (int n = 0; n < 60; ++n) {
        std::vector<ref_ptr<Pnt3Array<TypeParam>>> lines;
        support::Network<TypeParam> network(0, 0, 100, 100);
        for (int i = 0; i < 100; ++i) {
            network.add(pick(21) * 5, pick(21) * 5, pick(9), pick(9) - 1);
        }
        auto* const broken = network.engine.get();
        std::vector<TinRecord<TypeParam>*> all;
        broken->rewindTriangles();
        while (auto* const t = broken->nextTriangle()) { all.push_back(t); }
        const ref_ptr<Pnt3dArray> places = newPnt3dArray();
        for (int i = 0; i < 20; ++i) {
            places->append(XPnt3d(pick(60) * 2.5 - 20, pick(60) * 2.5 - 20, 0));
        }
        for (int hits = 0; hits < 1 + n; ++hits) {
            auto* const t = all[std::size_t(pick(int(all.size())))];
            auto* const other = all[std::size_t(pick(int(all.size())))];
            switch (pick(4)) {
            case 0: t->neighbor[pick(3)] = other; break;
            case 1: t->neighbor[pick(3)] = t->neighbor[pick(3)]; break;
            case 2: t->vertex[pick(3)] = other->vertex[pick(3)]; break;
            default: t->neighbor[pick(3)] = nullptr; break;
            }
        }
        useAll<TypeParam>(broken, levels.get(), places.get());
        const int half = int(places->size()) / 2;
        addAsBreakline<TypeParam>(broken, *places, 0, half, lines);
        for (int i = 0; i < 20; ++i) {
            broken->deleteTriangle(all[std::size_t(pick(int(all.size())))]);
        }
        useAll<TypeParam>(broken, levels.get(), places.get());
        addAsBreakline<TypeParam>(broken, *places, half, places->size(), lines);
    }
}

}  // namespace
