#include <zyn/color.h>

#include "presentation/blend.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace zyn {

using namespace detail;

namespace {

class CZynGradeColor final : public IZynGradeColor {
public:
    CZynGradeColor() {
        endPeg.color = 0x00FFFFFF;
        endPeg.pos = 1.0F;
    }

    int getPegCount() override { return static_cast<int>(pegs.size()); }
    ZynColorPeg getPeg(int index) override;
    int setPeg(int index, ZynColorPeg& peg) override;
    int setPeg(int index, std::uint32_t color, float pos) override;
    int addPeg(const ZynColorPeg& peg) override { return addPeg(peg.color, peg.pos); }
    int addPeg(std::uint32_t color, float pos) override;
    void removePeg(int index) override;
    int findSegment(float pos) override;

    void setStartColor(std::uint32_t color) override { startPeg.color = color; }
    std::uint32_t getStartColor() override { return startPeg.color; }
    void setEndColor(std::uint32_t color) override { endPeg.color = color; }
    std::uint32_t getEndColor() override { return endPeg.color; }
    void setZeroColor(std::uint32_t color) override { zeroPeg.color = color; }
    std::uint32_t getZeroColor() override { return zeroPeg.color; }
    void setUseZero(int use) override { useZero = use; }
    int getUseZero() override { return useZero; }
    int getMode() override { return mode; }
    void setMode(int newMode) override { mode = newMode; }
    int getSteps() override { return steps; }
    void setSteps(int newSteps) override { steps = newSteps; }

    std::uint32_t getColor(float t) override;
    bool fillTable(ZynColor4b* out, int count) override;

private:
    static bool isBelow(const ZynColorPeg& a, const ZynColorPeg& b) { return a.pos < b.pos; }
    static float within(float pos) { return pos > 0.0F ? std::min(pos, 1.0F) : 0.0F; }

    bool holds(int index) const {
        return index >= 0 && static_cast<std::size_t>(index) < pegs.size();
    }
    bool hasMode() const { return mode >= 0 && mode < blendModeCount; }
    float banded(float t) const;
    Stretch stretchAt(float t);

    std::vector<ZynColorPeg> pegs;  // inner ones, by ascending pos
    ZynColorPeg startPeg, endPeg, zeroPeg;
    std::int32_t useZero = 0;
    std::int32_t steps = -1;
    std::int32_t mode = static_cast<std::int32_t>(IZynColorRamp::Cosine);
};

ZynColorPeg CZynGradeColor::getPeg(int index) {
    if (index == startIndex) { return startPeg; }
    if (index == endIndex) { return endPeg; }
    if (index < 0) { return zeroPeg; }
    return holds(index) ? pegs[static_cast<std::size_t>(index)] : ZynColorPeg(0, 0);
}

int CZynGradeColor::setPeg(int index, ZynColorPeg& peg) {
    peg.pos = within(peg.pos);
    return setPeg(index, peg.color, peg.pos);
}

int CZynGradeColor::setPeg(int index, std::uint32_t color, float pos) {
    switch (index) {
    case startIndex: startPeg.color = color; return -1;
    case endIndex: endPeg.color = color; return -1;
    case zeroIndex: zeroPeg.color = color; return -1;
    default: break;
    }
    if (!holds(index)) { return -1; }
    const auto peg = pegs.begin() + index;
    peg->color = color;
    peg->pos = within(pos);
    // The peg moves to its place: to the right, it stops before pegs at the same position; to the
    // left, behind them.
    if (peg != pegs.begin() && isBelow(*peg, *(peg - 1))) {
        const auto place = std::upper_bound(pegs.begin(), peg, *peg, isBelow);
        std::rotate(place, peg, peg + 1);
        return static_cast<int>(place - pegs.begin());
    }
    const auto behind = std::lower_bound(peg + 1, pegs.end(), *peg, isBelow);
    std::rotate(peg, peg + 1, behind);
    return static_cast<int>(behind - pegs.begin()) - 1;
}

int CZynGradeColor::addPeg(std::uint32_t color, float pos) {
    ZynColorPeg peg(color, within(pos));
    const auto place = std::upper_bound(pegs.begin(), pegs.end(), peg, isBelow);
    const auto index = place - pegs.begin();
    pegs.insert(place, peg)->id = ZynColorPeg::newID();
    return static_cast<int>(index);
}

void CZynGradeColor::removePeg(int index) {
    if (holds(index)) { pegs.erase(pegs.begin() + index); }
}

int CZynGradeColor::findSegment(float pos) {
    if (pegs.empty()) { return -1; }
    if (pegs.front().pos > pos) { return startIndex; }
    const auto upper = std::lower_bound(pegs.begin(), pegs.end(), ZynColorPeg(0, pos), isBelow);
    if (upper == pegs.end()) { return -1; }
    if (upper != pegs.begin()) { return static_cast<int>(upper - pegs.begin()) - 1; }
    return pegs.size() > 1 && upper->pos == pos ? 0 : -1;
}

/// Returns the middle of the band that contains `t`, or `t` if there are no bands.
float CZynGradeColor::banded(float t) const {
    if (steps < 1) { return t; }
    const auto count = static_cast<float>(steps);
    return std::trunc(count * t) / count + 0.5F / count;
}

Stretch CZynGradeColor::stretchAt(float t) {
    if (pegs.empty()) { return {startPeg.color, endPeg.color, 0.0F, 1.0F}; }
    const ZynColorPeg &first = pegs.front(), &last = pegs.back();
    if (t <= first.pos) { return {startPeg.color, first.color, 0.0F, first.pos}; }
    if (t > last.pos) { return {last.color, endPeg.color, last.pos, 1.0F}; }
    const auto i = static_cast<std::size_t>(findSegment(t));
    return {pegs[i].color, pegs[i + 1].color, pegs[i].pos, pegs[i + 1].pos};
}

std::uint32_t CZynGradeColor::getColor(float t) {
    if (!(t >= 0.0F && t <= 1.0F)) { return 0; }
    if (!hasMode()) { return 0; }
    if (t == 0.0F && useZero != 0) { return zeroPeg.color; }
    const float place = banded(t);
    return Blend(BlendMode(mode), stretchAt(place)).at(place);
}

bool CZynGradeColor::fillTable(ZynColor4b* out, int count) {
    if (!hasMode() || (out == nullptr && (count > 0 || useZero != 0))) { return false; }
    const auto store = [out](int i, std::uint32_t c) {
        out[i].setVal(static_cast<unsigned char>(c & 0xFF),
                      static_cast<unsigned char>(c >> 8 & 0xFF),
                      static_cast<unsigned char>(c >> 16 & 0xFF), 255);
    };
    std::optional<std::pair<Stretch, Blend>> present;
    for (int i = 0; i < count; ++i) {
        const float t = banded(static_cast<float>(i) / static_cast<float>(count));
        const Stretch stretch = stretchAt(t);
        if (!present || present->first != stretch) {
            present.emplace(stretch, Blend(BlendMode(mode), stretch));
        }
        store(i, present->second.at(t));
    }
    if (useZero != 0) { store(0, zeroPeg.color); }
    return true;
}

}  // namespace

IZynGradeColor* newZynGradeColor() { return new CZynGradeColor; }

}  // namespace zyn
