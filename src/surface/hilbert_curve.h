// The places of cells on a Hilbert curve.
#pragma once

#include <array>
#include <cstdint>
#include <utility>

namespace zyn::detail {

/// Describes how a copy of the curve differs from the whole one.
struct CurveTurn {
    bool swapped = false;  ///< x with y
    bool reversed = false;
};

/// Returns the place, 0 to 3, of a quarter in a curve with this turn, and sets `turn` to that of
/// the quarter. `x` and `y` are the bits of the quarter, 0 or 1.
constexpr unsigned placeOfQuarter(unsigned x, unsigned y, CurveTurn& turn) {
    if (turn.swapped) { std::swap(x, y); }
    const unsigned right = x ^ unsigned(turn.reversed);
    const unsigned upper = y ^ unsigned(turn.reversed);
    if (upper == 0) {
        turn.reversed ^= right == 1;
        turn.swapped ^= true;
    }
    return (3 * right) ^ upper;
}

/// Tabulates four levels of the curve at once, by turn, four bits of x and four bits of y.
struct CurveSteps {
    std::array<std::uint16_t, 1024> table{};  // the place in 8 bits, below it the next turn in 2

    constexpr CurveSteps() {
        for (unsigned entry = 0; entry < table.size(); ++entry) {
            CurveTurn turn{(entry & 512U) != 0, (entry & 256U) != 0};
            unsigned place = 0;
            for (unsigned bit = 4; bit-- > 0;) {
                place =
                    place << 2U | placeOfQuarter(entry >> (bit + 4) & 1U, entry >> bit & 1U, turn);
            }
            table[entry] = static_cast<std::uint16_t>(place << 2U | 2U * unsigned(turn.swapped) |
                                                      unsigned(turn.reversed));
        }
    }
};
inline constexpr CurveSteps curveSteps;

/// Returns the place of cell (x, y) on the curve. `nibbles` is a quarter of the number of bits in x
/// and in y, at most 4. Goes from the upper bits to the lower ones: each pair of bits, one of x and
/// one of y, selects a quarter, which contains a copy of the curve.
[[nodiscard]] inline std::uint32_t placeOnCurve(std::uint32_t x, std::uint32_t y, int nibbles) {
    std::uint32_t place = 0, turn = 0;
    for (int shift = 4 * nibbles - 4; shift >= 0; shift -= 4) {
        const std::uint32_t step =
            curveSteps.table[turn << 8U | (x >> shift & 15U) << 4U | (y >> shift & 15U)];
        place = place << 8U | step >> 2U;
        turn = step & 3U;
    }
    return place;
}

}  // namespace zyn::detail
