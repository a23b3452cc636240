// The colour scale: its pegs and its colours.
#include <zyn/color.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <thread>
#include <vector>

#include "plain_blend.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

struct ColorScale : testing::Test {
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();
};

TEST_F(ColorScale, RunsFromBlackToWhiteAndRefusesUnknownModes) {
    EXPECT_EQ(grade->getMode(), 4);
    EXPECT_EQ(grade->getSteps(), -1);
    EXPECT_EQ(grade->getPegCount(), 0);
    EXPECT_EQ(grade->getColor(0), 0U);
    EXPECT_EQ(grade->getColor(1), 0x00FFFFFFU);
    for (const float outside : {-0.1F, 1.1F, std::nanf("")}) {
        EXPECT_EQ(grade->getColor(outside), 0U) << outside;
    }
    for (const int bad : {-1, 10, 1 << 30}) {
        grade->setMode(bad);
        ZynColor4b untouched(1, 2, 3, 4);
        EXPECT_EQ(grade->getColor(0.5F), 0U);
        EXPECT_FALSE(grade->fillTable(&untouched, 1));
        EXPECT_EQ(untouched.r, 1);
    }
    grade->setMode(0);
    EXPECT_FALSE(grade->fillTable(nullptr, 5));
    for (const int none : {0, -1, -7}) {
        grade->setSteps(none);
        EXPECT_EQ(grade->getColor(0.5F), 0x007F7F7FU);
    }
    grade->setSteps(4);
    EXPECT_EQ(grade->getColor(0), 0x001F1F1FU);
    EXPECT_EQ(grade->getColor(0.5F), 0x009F9F9FU);
    EXPECT_EQ(grade->getColor(1), 0x001E1E1EU);  // beyond the end: 286 wraps
}

TEST_F(ColorScale, PegsKeepTheirIdentityAndAreSortedByPosition) {
    const int next = ZynColorPeg::uniqueID;
    EXPECT_EQ(grade->addPeg(0x11, 0.75F), 0);
    EXPECT_EQ(grade->addPeg(0x22, 0.25F), 0);
    EXPECT_EQ(grade->getPeg(1).getID(), next);
    EXPECT_EQ(grade->getPeg(0).color, 0x22U);
    EXPECT_EQ(grade->setPeg(0, 0x33, 0.9F), 1);
    EXPECT_EQ(grade->getPeg(1).getID(), next + 1);
    EXPECT_EQ(grade->addPeg(ZynColorPeg(0x44, 0.75F)), 1);  // behind the peg at the same position
    EXPECT_EQ(grade->setPeg(0, 0x11, 0.75F), 0);            // does not move it
    ZynColorPeg outside(0x55, 1.5F);
    EXPECT_EQ(grade->setPeg(0, outside), 2);
    EXPECT_EQ(outside.pos, 1);
    for (const int index : {-3, -2, -4}) {
        EXPECT_EQ(grade->setPeg(index, std::uint32_t(1 - index), 0.5F), -1);
    }
    for (const int none : {3, -1}) { EXPECT_EQ(grade->setPeg(none, 0, 0), -1); }
    EXPECT_EQ(grade->getPeg(-3).pos, 0);
    EXPECT_EQ(grade->getPeg(-2).pos, 1);
    EXPECT_EQ(grade->getStartColor(), 4U);
    EXPECT_EQ(grade->getEndColor(), 3U);
    EXPECT_EQ(grade->getZeroColor(), 5U);
    EXPECT_EQ(grade->getPeg(-9).color, 5U);
    grade->removePeg(3);
    grade->removePeg(-3);
    EXPECT_EQ(grade->getPegCount(), 3);
    EXPECT_EQ(grade->getPeg(3).id, -1);
    EXPECT_EQ(ZynColorPeg::uniqueID, next + 3);
    EXPECT_EQ(grade->addPeg(1, std::nanf("")), 0);
    EXPECT_EQ(grade->getPeg(0).pos, 0);
}

TEST(ColorPeg, ThreadsShareOneCounterOfIdentities) {
    const int next = ZynColorPeg::uniqueID;
    const auto makeScales = [] {
        for (int i = 0; i < 500000; ++i) { ref_ptr(newZynGradeColor())->addPeg(0, 0); }
    };
    std::thread other(makeScales);
    makeScales();
    other.join();
    EXPECT_EQ(ZynColorPeg::uniqueID, next + 4000000);  // each scale makes three pegs of its own
}

TEST_F(ColorScale, FindsTheSegmentBetweenTwoPegs) {
    EXPECT_EQ(grade->findSegment(0.5F), -1);
    grade->addPeg(0xFF, 0.2F);
    EXPECT_EQ(grade->findSegment(0.1F), -3);
    EXPECT_EQ(grade->findSegment(0.5F), -1);
    grade->addPeg(0xFF00, 0.8F);
    grade->addPeg(0xFF0000, 0.5F);
    EXPECT_EQ(grade->findSegment(0.2F), 0);
    EXPECT_EQ(grade->findSegment(0.5F), 0);
    EXPECT_EQ(grade->findSegment(0.6F), 1);
    EXPECT_EQ(grade->findSegment(0.9F), -1);
}

TEST_F(ColorScale, TableAndColorsAgreeWithAPlainReference) {
    std::mt19937 random(support::newSeed());
    const auto color = [&random] { return std::uint32_t(random()) & 0xFFFFFF; };
    for (int round = 0; round < 200; ++round) {
        const ref_ptr<IZynGradeColor> scale = newZynGradeColor();
        std::vector<ZynColorPeg> pegs;
        for (int n = round % 20; n > 0; --n) {
            const float any = std::uniform_real_distribution(0.0F, 1.0F)(random);
            pegs.emplace_back(color(), round % 3 == 0 ? 0.25F : any);
            scale->addPeg(pegs.back());
        }
        std::ranges::stable_sort(pegs, {}, &ZynColorPeg::pos);
        pegs.emplace(pegs.begin(), color(), 0.0F);
        pegs.emplace_back(0x00FFFFFF, 1.0F);
        scale->setStartColor(pegs[0].color);
        scale->setZeroColor(0x00010203);
        const bool hasSteps = round % 4 == 0, usesZero = round % 5 == 0;
        scale->setSteps(hasSteps ? 5 : -1);
        scale->setUseZero(usesZero);
        for (std::uint32_t mode = 0; mode < 10; ++mode) {
            scale->setMode(int(mode));
            std::vector<ZynColor4b> table(100);
            EXPECT_TRUE(scale->fillTable(table.data(), 100));
            for (std::size_t i = 0; i < 100; ++i) {
                const float t = float(i) / 100.0F;
                const float place = hasSteps ? std::trunc(5.0F * t) / 5.0F + 0.5F / 5.0F : t;
                std::size_t upper = 1;
                while (upper + 1 < pegs.size() && place > pegs[upper].pos) { ++upper; }
                const ZynColorPeg &a = pegs[upper - 1], &b = pegs[upper];
                const auto expected =
                    usesZero && i == 0
                        ? 0x00010203
                        : support::plainBlend(mode, a.color, b.color, place, a.pos, b.pos);
                ASSERT_EQ(scale->getColor(t) & 0xFFFFFF, expected);
                const ZynColor4b c = table[i];
                ASSERT_EQ(c.a, 255);
                ASSERT_EQ(std::uint32_t(c.r | c.g << 8 | c.b << 16), expected);
            }
        }
    }
}

}  // namespace
