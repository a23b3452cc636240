// The scale: its pegs and its colours.
#include <zyn/color.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "plain_blend.h"
#include "seed.h"

namespace {

using namespace zyn;

class GradeTest : public testing::Test {
protected:
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();

    std::vector<ZynColor4b> table(int count) {
        std::vector<ZynColor4b> out(std::size_t(std::max(count, 1)));
        EXPECT_TRUE(grade->fillTable(out.data(), count));
        return out;
    }
    static ZynColor4b opaque(std::uint32_t c) {
        return {static_cast<unsigned char>(c), static_cast<unsigned char>(c >> 8),
                static_cast<unsigned char>(c >> 16), 255};
    }
};

TEST_F(GradeTest, GoesFromBlackToWhite) {
    EXPECT_TRUE(grade->getMode() == 4 && grade->getSteps() == -1 && grade->getPegCount() == 0);
    EXPECT_TRUE(grade->getColor(0) == 0 && grade->getColor(1) == 0x00FFFFFF);
    EXPECT_EQ(grade->getColor(0.5F), 0x007F7F7FU);
    EXPECT_EQ(grade->getColor(-0.1F) + grade->getColor(1.1F) + grade->getColor(std::nanf("")), 0U);
    grade->setMode(0);
    EXPECT_EQ(table(4),
              (std::vector{ZynColor4b(0, 0, 0, 255), ZynColor4b(63, 63, 63, 255),
                           ZynColor4b(127, 127, 127, 255), ZynColor4b(191, 191, 191, 255)}));
    grade->setSteps(4);
    EXPECT_EQ(grade->getColor(1), 0x001E1E1EU);  // beyond the end: 286 wraps
    const auto bands = table(8);
    for (std::size_t i = 0; i < 8; ++i) {
        EXPECT_EQ(bands[i].r, int(63.75 * double(i / 2) + 31.875));
    }
    grade->setUseZero(1);
    grade->setZeroColor(0xFF);
    EXPECT_TRUE(grade->getColor(0) == 0xFF && grade->getColor(0.001F) != 0xFF);
    EXPECT_TRUE(table(8)[0] == ZynColor4b::Red() && table(8)[1] == bands[1]);
    for (const int bad : {-1, 10, 1 << 30}) {
        grade->setMode(bad);
        ZynColor4b untouched(1, 2, 3, 4);
        EXPECT_EQ(grade->getColor(0.5F), 0U);
        EXPECT_FALSE(grade->fillTable(&untouched, 1) || untouched.r != 1);
    }
    grade->setMode(0);
    EXPECT_FALSE(grade->fillTable(nullptr, 5));
    for (const int none : {0, -1, -7}) {
        grade->setSteps(none);
        EXPECT_EQ(grade->getColor(0.5F), 0x007F7F7FU);
    }
}

TEST_F(GradeTest, PegsKeepTheirIdentityAndOrder) {
    const int next = ZynColorPeg::uniqueID;
    EXPECT_TRUE(grade->addPeg(0x11, 0.75F) == 0 && grade->addPeg(0x22, 0.25F) == 0);
    EXPECT_EQ(ZynColorPeg::uniqueID, next + 2);
    EXPECT_TRUE(grade->getPeg(1).getID() == next && grade->getPeg(0).color == 0x22);
    EXPECT_EQ(grade->setPeg(0, 0x33, 0.9F), 1);
    EXPECT_EQ(grade->getPeg(1).getID(), next + 1);
    EXPECT_EQ(grade->addPeg(ZynColorPeg(0x44, 0.75F)), 1);  // behind the one at its place
    EXPECT_EQ(grade->setPeg(0, 0x11, 0.75F), 0);            // which does not move
    ZynColorPeg outside(0x55, 1.5F);
    EXPECT_TRUE(grade->setPeg(0, outside) == 2 && outside.pos == 1);
    ZynColorPeg start(0x66, 0.7F);
    EXPECT_TRUE(grade->setPeg(-3, start) == -1 && grade->getStartColor() == 0x66);
    EXPECT_EQ(grade->getPeg(-3).pos, 0);
    EXPECT_TRUE(grade->setPeg(-2, 0x77, 0.5F) == -1 && grade->getPeg(-2).pos == 1);
    EXPECT_TRUE(grade->setPeg(-4, 0x88, 0.5F) == -1 && grade->getPeg(-9).color == 0x88);
    EXPECT_TRUE(grade->setPeg(3, 0, 0) == -1 && grade->setPeg(-1, 0, 0) == -1);
    grade->removePeg(3);
    grade->removePeg(-3);
    const int ids = ZynColorPeg::uniqueID;
    EXPECT_TRUE(grade->getPegCount() == 3 && grade->getPeg(3).id == -1 &&
                grade->getPeg(3).color == 0);
    EXPECT_EQ(ZynColorPeg::uniqueID, ids);
    EXPECT_EQ(grade->addPeg(1, std::nanf("")), 0);
    EXPECT_EQ(grade->getPeg(0).pos, 0);
}

TEST_F(GradeTest, StretchesAreFound) {
    EXPECT_EQ(grade->findSegment(0.5F), -1);
    grade->addPeg(0xFF, 0.2F);
    EXPECT_TRUE(grade->findSegment(0.1F) == -3 && grade->findSegment(0.5F) == -1);
    grade->addPeg(0xFF00, 0.8F);
    grade->addPeg(0xFF0000, 0.5F);
    EXPECT_TRUE(grade->findSegment(0.5F) == 0 && grade->findSegment(0.6F) == 1);
    EXPECT_TRUE(grade->findSegment(0.1F) == -3 && grade->findSegment(0.9F) == -1);
    grade->setMode(0);
    EXPECT_EQ(grade->getColor(0.2F), 0xFFU);
    EXPECT_EQ(grade->getColor(0.5F), 0xFF0000U);
}

TEST_F(GradeTest, TheTableIsMadeOfTheColors) {
    std::mt19937 random(support::newSeed());
    const auto uniform = [&random] { return std::uniform_real_distribution(0.0F, 1.0F)(random); };
    for (int round = 0; round < 200; ++round) {
        const ref_ptr<IZynGradeColor> scale = newZynGradeColor();
        std::vector<ZynColorPeg> pegs{ZynColorPeg(std::uint32_t(random()) & 0xFFFFFF, 0.0F)};
        scale->setStartColor(pegs[0].color);
        for (int n = round % 20; n > 0; --n) {
            pegs.emplace_back(std::uint32_t(random()) & 0xFFFFFF,
                              round % 3 == 0 ? 0.25F : uniform());
            scale->addPeg(pegs.back());
        }
        pegs.emplace_back(0x00FFFFFF, 1.0F);
        std::stable_sort(pegs.begin() + 1, pegs.end() - 1,
                         [](const auto& a, const auto& b) { return a.pos < b.pos; });
        const int steps = round % 4 == 0 ? 5 : -1;
        scale->setSteps(steps);
        for (std::uint32_t mode = 0; mode < 10; ++mode) {
            scale->setMode(int(mode));
            std::vector<ZynColor4b> out(100);
            scale->fillTable(out.data(), 100);
            for (int i = 0; i < 100; ++i) {
                float t = float(i) / 100.0F;
                ASSERT_EQ(out[std::size_t(i)], opaque(scale->getColor(t)));
                if (steps > 0) { t = std::trunc(5.0F * t) / 5.0F + 0.5F / 5.0F; }
                std::size_t upper = 1;
                while (upper + 1 < pegs.size() && t > pegs[upper].pos) { ++upper; }
                const ZynColorPeg &a = pegs[upper - 1], &b = pegs[upper];
                ASSERT_EQ(out[std::size_t(i)],
                          opaque(support::plainBlend(mode, a.color, b.color, t, a.pos, b.pos)));
            }
        }
    }
}

}  // namespace
