#include <zyn/color.h>

#include "presentation/blend.h"

namespace zyn {

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

#define ZYN_BLEND(Name, blendMode)                                                                \
    std::uint32_t IZynColorRamp::Interpolate##Name(std::uint32_t c0, std::uint32_t c1, float pos, \
                                                   float start, float end) noexcept {             \
        return Blend(BlendMode::blendMode, {c0, c1, start, end}).at(pos);                         \
    }

ZYN_BLEND(Linear, linear)
ZYN_BLEND(FlatStart, flatStart)
ZYN_BLEND(FlatMid, flatMid)
ZYN_BLEND(FlatEnd, flatEnd)
ZYN_BLEND(Cosine, cosine)
ZYN_BLEND(HSLClockwise, hslClockwise)
ZYN_BLEND(HSLAntiClockwise, hslAntiClockwise)
ZYN_BLEND(HSLShortest, hslShortest)
ZYN_BLEND(HSLLongest, hslLongest)
ZYN_BLEND(Reverse, reverse)

#undef ZYN_BLEND

}  // namespace zyn
