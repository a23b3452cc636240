// Colour conversions and interpolation, against a plain reference.
#include <zyn/color.h>

#include <array>
#include <cmath>
#include <iterator>
#include <random>

#include "plain_blend.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;
using support::blends;
using testing::ElementsAre;

// fuzz_containers converts colours to HSV and back.
TEST(Color, HsvCoversTheFullHueCircleAndRefusesTheRest) {
    double h = 7, s = 7, v = 7;
    RGB2HSV(1.0, 0.0, 1.0, &h, &s, &v);
    EXPECT_THAT((std::array{h, s, v}), ElementsAre(300, 1, 1));
    RGB2HSV(0x00FFFFFF, h, s, v);
    EXPECT_THAT((std::array{h, s, v}), ElementsAre(0, 0, 0.99609375));
    EXPECT_EQ(HSV2RGB(240, 1, 1), 0x00FF0000U);
    for (const double red : {0.0, std::nextafter(360.0, 0.0), 360.0}) {
        EXPECT_EQ(HSV2RGB(red, 1, 1), 0x000000FFU);
    }
    EXPECT_EQ(HSV2RGB(0, 0, 0.5), 0x007F7F7FU);  // 127.5 is rounded down
    const double nan = std::nan("");
    const double bad[][3] = {{-1, 1, 1},  {361, 1, 1}, {0, 1.5, 1}, {0, 1, -0.1},
                             {nan, 1, 1}, {0, nan, 1}, {0, 1, nan}};
    for (const auto& [a, b, c] : bad) {
        EXPECT_EQ(HSV2RGB(a, b, c), 0U);
        EXPECT_EQ(HSV2RGB(a, b, c, &h, &s, &v), -1);
        EXPECT_EQ(RGB2HSV(a / 100, b, c, &h, &s, &v), -1);
    }
    EXPECT_THAT((std::array{h, s, v}), ElementsAre(0, 0, 0.99609375));
}

TEST(ColorRamp, IsGreyAtFirstAndCopiesItsTable) {
    EXPECT_EQ(ZynColor4b(), ZynColor4b(255, 255, 255, 0));
    EXPECT_EQ(ZynColor3f(), ZynColor3f(0, 0, 0));
    EXPECT_EQ(ZynColor4b(51, 0, 255, 9).toColor3f(), ZynColor3f(0.2F, 0, 1));
    const ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
    EXPECT_EQ(ramp->size(), 256);
    EXPECT_EQ(ramp->clr(255), ZynColor4b::White());
    EXPECT_EQ(ramp->clr(-1), ZynColor4b());
    EXPECT_EQ(ramp->clr(256), ZynColor4b());
    const ref_ptr<IZynColorRamp> copy = ramp->clone();
    ramp->pcolor()[7] = ZynColor4b::Red();
    EXPECT_EQ(copy->clr(7), ZynColor4b(7, 7, 7, 255));
    EXPECT_EQ(ramp->referenceCount(), 1);
}

TEST(Blend, EachModeAgreesWithAPlainReference) {
    std::mt19937 random(support::newSeed());
    const auto oneOf = [&](const auto& list) { return list[random() % std::size(list)]; };
    const float places[] = {0.25F, 0.3F, 0.5F, 0.6F,      0.74999F,     0.75F,
                            -0.5F, 1.5F, 9e9F, HUGE_VALF, std::nanf("")};
    constexpr std::uint32_t channels[] = {0, 1, 37, 100, 128, 254, 255};
    const auto color = [&] {  // the top byte must not matter
        return oneOf(channels) | oneOf(channels) << 8 | oneOf(channels) << 16 | 0xAB000000U;
    };
    for (int i = 0; i < 300000; ++i) {
        const std::uint32_t mode = std::uint32_t(random() % 10), c0 = color(), c1 = color();
        const bool hasLength = i % 9 > 0;
        const float pos = hasLength ? oneOf(places) : 0.25F, end = hasLength ? 0.75F : 0.25F;
        ASSERT_EQ(blends[mode](c0, c1, pos, 0.25F, end),
                  support::plainBlend(mode, c0, c1, pos, 0.25F, end))
            << "mode " << mode << std::hex << ", " << c0 << " to " << c1 << " at " << pos;
    }
}

}  // namespace
