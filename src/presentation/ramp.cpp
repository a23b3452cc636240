#include <zyn/color.h>

#include "presentation/blend.h"

namespace zyn {

using namespace detail;

IZynColorRamp::IZynColorRamp() noexcept {
    for (int i = 0; i < 256; ++i) {
        const auto grey = static_cast<unsigned char>(i);
        table[i] = {grey, grey, grey, 255};
    }
}

IZynColorRamp::~IZynColorRamp() = default;

ZynColor4b* IZynColorRamp::pcolor() noexcept { return table; }
int IZynColorRamp::size() const noexcept { return 256; }

ZynColor4b IZynColorRamp::clr(int i) const noexcept {
    return i >= 0 && i < 256 ? table[i] : ZynColor4b();
}

IZynColorRamp* IZynColorRamp::clone() const { return new IZynColorRamp(*this); }

IZynColorRamp* newZynColorRamp() { return new IZynColorRamp; }

int ZynColorPeg::uniqueID = 0;

#define ZYN_BLEND(Name)                                                                           \
    std::uint32_t IZynColorRamp::Interpolate##Name(std::uint32_t c0, std::uint32_t c1, float pos, \
                                                   float start, float end) noexcept {             \
        return Blend(Name, {c0, c1, start, end}).at(pos);                                         \
    }

ZYN_BLEND(Linear)
ZYN_BLEND(FlatStart)
ZYN_BLEND(FlatMid)
ZYN_BLEND(FlatEnd)
ZYN_BLEND(Cosine)
ZYN_BLEND(HSLClockwise)
ZYN_BLEND(HSLAntiClockwise)
ZYN_BLEND(HSLShortest)
ZYN_BLEND(HSLLongest)
ZYN_BLEND(Reverse)

#undef ZYN_BLEND

}  // namespace zyn
