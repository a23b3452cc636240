// Measures how long it takes to fill a ramp in each mode, and to compute a colour instead of
// looking it up in the ramp.
//
// usage: bench_color
#include "measure.h"

#include <zyn/color.h>

#include <cstdint>
#include <cstdio>
#include <vector>

int main() {
    using namespace zyn;
    const ref_ptr<IZynGradeColor> grade = newZynGradeColor();
    for (int i = 1; i < 6; ++i) {
        grade->addPeg(0x00123456U * static_cast<std::uint32_t>(i) & 0x00FFFFFF,
                      static_cast<float>(i) / 6.0F);
    }
    const ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
    grade->fillTable(ramp->pcolor(), ramp->size());
    constexpr int calls = 10000000, fills = 2000, entries = 256;
    std::uint32_t sum = 0;
    const double lookup = bench::seconds([&] {
                              for (int i = 0; i < calls; ++i) {
                                  const float t = static_cast<float>(i) / calls;
                                  sum += ramp->clr(static_cast<int>(t * 255.0F)).r;
                              }
                          }) *
                          1e9 / calls;
    std::printf(
        "| mode | fillTable, ns an entry | getColor, ns | lookup, ns | getColor / lookup | "
        "fillTable / getColor |\n|---|---|---|---|---|---|\n");
    for (int mode = 0; mode < 10; ++mode) {
        grade->setMode(mode);
        const double fill = bench::seconds([&] {
                                for (int i = 0; i < fills; ++i) {
                                    grade->fillTable(ramp->pcolor(), entries);
                                }
                            }) *
                            1e9 / fills / entries;
        const double color = bench::seconds([&] {
                                 for (int i = 0; i < calls; ++i) {
                                     sum += grade->getColor(static_cast<float>(i) / calls);
                                 }
                             }) *
                             1e9 / calls;
        std::printf("| %d | %.1f | %.1f | %.1f | %.1f | %.2f |\n", mode, fill, color, lookup,
                    color / lookup, fill / color);
    }
    return sum == 1 ? 1 : 0;  // so that no work is optimised away
}
