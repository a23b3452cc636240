#include <zyn/las.h>

#include <algorithm>
#include <array>
#include <bit>

namespace zyn {

namespace {

constexpr std::size_t headSize = 3 * sizeof(float) + sizeof(std::int16_t);

/// Returns the bytes that x, y, z and `inten` occupy in a P that begins with them.
template <class P>
constexpr std::array<unsigned char, headSize> headBytes() {
    P p;
    p.x = 1.5f;
    p.y = -2.25f;
    p.z = 1e6f;
    p.inten = 0x1234;
    const auto bytes = std::bit_cast<std::array<unsigned char, sizeof(P)>>(p);
    std::array<unsigned char, headSize> head{};
    for (std::size_t i = 0; i < headSize; ++i) { head[i] = bytes[i]; }
    return head;
}

static_assert(sizeof(LasPnt) == 28 && alignof(LasPnt) == alignof(XPnt3f));
static_assert(headBytes<LasPnt>() == headBytes<XPnt3f>());

/// Returns the record as a point, which its first bytes are by the assertions above. Records are
/// always LasPnt, so this is the only such cast.
XPnt3f* headOf(LasPnt* record) { return reinterpret_cast<XPnt3f*>(record); }

template <class Source, class AddressAt>
ref_ptr<PPnt3fArray> headsOf(const Source* source, AddressAt addressAt) {
    ref_ptr<PPnt3fArray> heads = newPPnt3fArray();
    const int count = source->size();
    heads->reserve(count);
    for (int i = 0; i < count; ++i) { heads->append(headOf(addressAt(i))); }
    return heads;
}

}  // namespace

XPnt2d maxminInten(const LasPnt* pnts, std::int32_t n) noexcept {
    XPnt2d range(2147483647.0, -2147483647.0);
    for (std::int32_t i = 0; i < n; ++i) {
        const double inten = pnts[i].inten;
        range.set(std::min(range.x, inten), std::max(range.y, inten));
    }
    return range;
}

ref_ptr<PPnt3fArray> PntsToPnt3f(LasPntArray* source) {
    return headsOf(source, [=](int i) { return &source->getRef(i); });
}

ref_ptr<PPnt3fArray> PntsToPnt3f(const PLasPntArray* source) {
    return headsOf(source, [=](int i) { return source->get(i); });
}

namespace {

template <class View, class Pool>
void viewInto(View& view, Pool& source) {
    source.rewind();
    while (auto* const record = source.next()) { view.append(record); }
}

}  // namespace

ref_ptr<PLasPntPool> PntsToPool(LasPntPool* source, IZynProgress*) {
    ref_ptr<PLasPntPool> view = newPLasPntPool();
    viewInto(*view, *source);
    return view;
}

ref_ptr<PLasPntPoold> PntsToPool(LasPntPoold* source, IZynProgress*) {
    ref_ptr<PLasPntPoold> view = newPLasPntPoold();
    viewInto(*view, *source);
    return view;
}

ref_ptr<PLasPntdArray> PntsToPntArr(PLasPntPoold* source) {
    ref_ptr<PLasPntdArray> pointers = newPLasPntdArray();
    source->rewind();
    while (ZynLasPntD** const p = source->next()) { pointers->append(*p); }
    return pointers;
}

}  // namespace zyn
