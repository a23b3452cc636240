#include <gtest/gtest.h>
#include <zyn/referenced.h>

#include <array>
#include <cstring>
#include <limits>

namespace {

using zyn::MemSet;
using zyn::Rand;

TEST(Rand, GivesTheSameNumberForTheSameBounds) {
    EXPECT_EQ(Rand(0, 100), 1);
    EXPECT_EQ(Rand(0, 1000), 100);
    EXPECT_EQ(Rand(0, 6991), 4879);
    EXPECT_EQ(Rand(0, 100), 1);
    EXPECT_EQ(Rand(5, 5), 5);
    EXPECT_EQ(Rand(10, 0), 10);
}

TEST(Rand, StaysWithinItsBounds) {
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    for (std::int32_t i = 0; i < 70000; ++i) {
        // The upper bound alone is the seed: the largest draws are among these.
        ASSERT_LE(Rand(lowest, highest - i), highest - i);
        ASSERT_GE(Rand(highest, lowest + i), lowest + i);
    }
}

TEST(MemSet, WritesWholeValuesOnly) {
    std::array<unsigned char, 24> bytes;
    unsigned char* const unaligned = bytes.data() + 1;
    const auto expect = [&](auto value, int count) {
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(std::memcmp(unaligned + sizeof value * static_cast<std::size_t>(i), &value,
                                  sizeof value),
                      0);
        }
        EXPECT_EQ(bytes[0], 0xEE);
        EXPECT_EQ(unaligned[sizeof value * static_cast<std::size_t>(count)], 0xEE);
        bytes.fill(0xEE);
    };
    bytes.fill(0xEE);
    MemSet(unaligned, 1.5f, 10);
    expect(1.5f, 2);
    MemSet(unaligned, 2.0, 15);
    expect(2.0, 1);
    MemSet(unaligned, 2.0, 7);
    expect(2.0, 0);
    MemSet(unaligned, true, 3);
    expect(true, 3);
    MemSet(unaligned, true, -8);
    expect(true, 0);
}

}  // namespace
