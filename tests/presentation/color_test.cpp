// Colour conversions and interpolation, against a plain reference.
#include <zyn/color.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "plain_blend.h"

namespace {

using namespace zyn;
using support::blends;

TEST(Color, DefaultsAndNames) {
    EXPECT_EQ(ZynColor4b(), ZynColor4b(255, 255, 255, 0));
    EXPECT_EQ(ZynColor3f(), ZynColor3f(0, 0, 0));
    EXPECT_EQ(ZynColor4f(), ZynColor4f(1, 1, 1, 0));
    EXPECT_EQ(ZynColor4c(), ZynColor4c(-1, -1, -1, 0));
    EXPECT_EQ(ZynColor4b::Grey(), ZynColor4b(73, 73, 73, 255));
    EXPECT_EQ(ZynColor4b(51, 0, 255, 9).toColor3f(), ZynColor3f(0.2F, 0, 1));
    static_assert(sizeof(ZynColor4b) == 4 && sizeof(ZynColor3b) == 3);
}

TEST(Color, HsvComesBack) {
    for (int r = 0; r <= 20; ++r) {
        for (int g = 0; g <= 20; ++g) {
            for (int b = 0; b <= 20; ++b) {
                double h = 7, s = 7, v = 7, r2 = 7, g2 = 7, b2 = 7;
                ASSERT_EQ(RGB2HSV(r / 20.0, g / 20.0, b / 20.0, &h, &s, &v), 0);
                ASSERT_EQ(HSV2RGB(h, s, v, &r2, &g2, &b2), 0);
                ASSERT_NEAR(r2, r / 20.0, 1e-12);
                ASSERT_NEAR(g2, g / 20.0, 1e-12);
                ASSERT_NEAR(b2, b / 20.0, 1e-12);
            }
        }
    }
    double h = 7, s = 7, v = 7;
    RGB2HSV(1.0, 0.0, 1.0, &h, &s, &v);
    EXPECT_TRUE(h == 300 && s == 1 && v == 1);
    RGB2HSV(0x00FFFFFF, h, s, v);
    EXPECT_TRUE(h == 0 && s == 0 && v == 0.99609375);
    EXPECT_EQ(HSV2RGB(240.0, 1.0, 1.0), 0x00FF0000U);
    EXPECT_EQ(HSV2RGB(360.0, 1.0, 1.0), 0x000000FFU);
    EXPECT_EQ(HSV2RGB(0.0, 0.0, 0.5), 0x007F7F7FU);  // 127.5 goes down
    EXPECT_EQ(HSV2RGB(std::nextafter(360.0, 0.0), 1.0, 1.0), 0x000000FFU);
    const double nan = std::nan("");
    const double bad[][3] = {{-1, 1, 1},  {361, 1, 1}, {0, 1.5, 1}, {0, 1, -0.1},
                             {nan, 1, 1}, {0, nan, 1}, {0, 1, nan}};
    for (const auto& [a, b, c] : bad) {
        EXPECT_EQ(HSV2RGB(a, b, c), 0U);
        EXPECT_EQ(HSV2RGB(a, b, c, &h, &s, &v), -1);
    }
    EXPECT_EQ(RGB2HSV(1.1, 0, 0, &h, &s, &v) + RGB2HSV(0, -0.1, 0, &h, &s, &v) +
                  RGB2HSV(0, 0, nan, &h, &s, &v) + RGB2HSV(nan, 0, 0, &h, &s, &v),
              -4);
    EXPECT_TRUE(h == 0 && s == 0 && v == 0.99609375);
}

TEST(ColorRamp, IsGreyAndCopies) {
    const ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
    EXPECT_TRUE(ramp->size() == 256 && ramp->clr(255) == ZynColor4b::White());
    EXPECT_TRUE(ramp->clr(-1) == ZynColor4b() && ramp->clr(256) == ZynColor4b());
    const ref_ptr<IZynColorRamp> copy = ramp->clone();
    ramp->pcolor()[7] = ZynColor4b::Red();
    EXPECT_TRUE(copy->clr(7) == ZynColor4b(7, 7, 7, 255) && ramp->referenceCount() == 1);
    const int next = ZynColorPeg::uniqueID;
    ZynColorPeg peg;
    const ZynColorPeg placed(0xFF, 0.5F);
    EXPECT_TRUE(peg.getID() == next && placed.getID() == -1 && ZynColorPeg::uniqueID == next + 1);
}

TEST(Blend, IsThatOfTheReferenceEverywhere) {
    std::vector<std::uint32_t> colors;
    for (const std::uint32_t r : {0U, 1U, 100U, 128U, 254U, 255U}) {
        for (const std::uint32_t g : {0U, 100U, 255U}) {
            for (const std::uint32_t b : {0U, 37U, 255U}) {
                colors.push_back(r | g << 8 | b << 16);
            }
        }
    }
    colors.push_back(0xAB123456U);  // with a top byte
    const float inf = std::numeric_limits<float>::infinity();
    for (std::uint32_t mode = 0; mode < 10; ++mode) {
        for (const std::uint32_t c0 : colors) {
            for (const std::uint32_t c1 : colors) {
                for (const float pos : {0.25F, 0.3F, 0.5F, 0.6F, 0.74999F, 0.75F, -0.5F, 1.5F, 9e9F,
                                        inf, std::nanf("")}) {
                    ASSERT_EQ(blends[mode](c0, c1, pos, 0.25F, 0.75F),
                              support::plainBlend(mode, c0, c1, pos, 0.25F, 0.75F))
                        << mode << ' ' << std::hex << c0 << ' ' << c1 << ' ' << pos;
                }
                ASSERT_EQ(blends[mode](c0, c1, 1, 1, 1),
                          support::plainBlend(mode, c0, c1, 1, 1, 1));
                if (mode >= 5 && mode <= 8) {  // within one step, since channels are truncated
                    const std::uint32_t end = blends[mode](c0, c1, 1, 0, 1);
                    for (const int shift : {0, 8, 16}) {
                        ASSERT_NEAR(int(end >> shift & 0xFF), int(c1 >> shift & 0xFF), 1);
                    }
                }
            }
        }
    }
}

TEST(Blend, KnownColors) {
    constexpr std::uint32_t red = 0xFF, green = 0xFF00, blue = 0xFF0000, white = 0xFFFFFF;
    const std::uint32_t expected[][3] = {{5, 0x0000FF00, 0x0000FFFF},
                                         {8, 0x0000FF00, 0x00FF0000},
                                         {6, 0x00FF00FF, 0x00FF0000},
                                         {7, 0x00FF00FF, 0x0000FFFF}};
    for (const auto& [mode, toBlue, toGreen] : expected) {
        EXPECT_EQ(blends[mode](red, blue, 0.5F, 0, 1), toBlue) << mode;
        EXPECT_EQ(blends[mode](red, green, 0.5F, 0, 1), toGreen) << mode;
    }
    EXPECT_EQ(blends[0](0, white, 0.5F, 0, 1), 0x007F7F7FU);
    EXPECT_EQ(blends[2](0, white, 9, 9, 9), 0x007F7F7FU);
    EXPECT_EQ(blends[9](red, blue, 0, 0, 1), blue);
    EXPECT_EQ(blends[4](red, blue, 1, 1, 1), 0U);
}

}  // namespace
