/// @file
/// Records of a laser scan, in single and double precision.
///
/// The library reads the coordinates and the intensity of a record. It copies the rest as it is:
/// the meaning of `attr`, the words and `tail` is the application's. Records are plain values. A
/// point of point.h is made from a LasPnt with its intensity. Threads: use an array or a pool on
/// one thread at a time.
///
///     ref_ptr<LasPntArray> scan = newLasPntArray();
///     LasPnt record;                                   // x, y, z are -99999
///     record.x = record.y = record.z = 1.0f;
///     record.inten = 7;
///     scan->append(record);
///     XPnt2d range = maxminInten(scan->data(), scan->size());    // (7, 7)
///     XPnt3d p = record;                               // p.inten is 7
///     ref_ptr<PPnt3fArray> view = PntsToPnt3f(scan.get());
///     float height = view->get(0)->z;
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/pool.h>

#include <cstdint>

namespace zyn {

class IZynProgress;

/// A laser point in single precision: 28 bytes without gaps. Like an XPnt3f it begins with x, y, z
/// and `inten`. A new one has -99999 in its coordinates and 0 elsewhere.
struct LasPnt : PT3<float> {
    std::int16_t inten = 0;  ///< intensity
    /// Fields of the application.
    /// @{
    std::uint8_t attr[6] = {};
    std::uint16_t word0 = 0;
    std::uint16_t word1 = 0;
    std::uint8_t tail[4] = {};
    /// @}

    /// Takes what an XPnt3f takes from a point; the application's fields stay.
    template <AssignableHead<LasPnt, XPnt3f> P>
    constexpr LasPnt& operator=(const P& p) noexcept {
        XPnt3f head(*this);
        head = p;
        PT3<float>::operator=(head);
        inten = head.inten;
        return *this;
    }
};

/// A laser point in double precision. A new one is 0 throughout, unlike a new LasPnt.
struct ZynLasPntD : XPnt3d {
    std::uint16_t intenD =
        0;  ///< In the place of `inten` in a LasPnt; the library reads `inten` instead.
    /// Fields of the application.
    /// @{
    std::uint8_t attr[6] = {};
    std::uint16_t word0 = 0;
    std::uint16_t word1 = 0;
    std::uint8_t tail[4] = {};
    /// @}

    /// Takes what an XPnt3d takes from a point; the application's fields stay.
    template <AssignableHead<ZynLasPntD, XPnt3d> P>
    constexpr ZynLasPntD& operator=(const P& p) noexcept {
        XPnt3d::operator=(p);
        return *this;
    }
};

/// Returns the smallest intensity of the `n` records as x, and the largest as y. Returns
/// (2147483647, -2147483647) for an `n` below 1.
[[nodiscard]] ZYN_EXPORT XPnt2d maxminInten(const LasPnt* pnts, std::int32_t n) noexcept;

// Arrays of records by value and by pointer

ZYN_ARRAY(LasPntArray, LasPnt);
ZYN_ARRAY(LasPntdArray, ZynLasPntD);
ZYN_ARRAY(PLasPntArray, LasPnt*);
ZYN_ARRAY(PLasPntdArray, ZynLasPntD*);
ZYN_ARRAY(PLasPntArrayArray, PLasPntArray*);
ZYN_ARRAY(PLasPntdArrayArray, PLasPntdArray*);

/// Returns a view of `source`: the address of each record, as the address of a point. Through the
/// view access only x, y, z and `inten`, and never assign a whole point: what follows belongs to
/// the record. The view holds no count of `source`, and is valid as long as the records stay in
/// place. REQUIRES: `source` is not null.
/// @{
[[nodiscard]] ZYN_EXPORT ref_ptr<PPnt3fArray> PntsToPnt3f(LasPntArray* source);
[[nodiscard]] ZYN_EXPORT ref_ptr<PPnt3fArray> PntsToPnt3f(const PLasPntArray* source);
/// @}

// Pools of records

ZYN_POOL(LasPntPool, LasPnt);
ZYN_POOL(LasPntPoold, ZynLasPntD);
ZYN_POOL(PLasPntPool, LasPnt*);
ZYN_POOL(PLasPntPoold, ZynLasPntD*);
ZYN_POOL_CLASS(PLasPntPoolPool, PLasPntPool*);

/// Returns the address of each record, in order: a view, valid until `source` is emptied. Moves the
/// cursor of `source`. Does not call the progress, which may be null. REQUIRES: `source` is not
/// null.
/// @{
[[nodiscard]] ZYN_EXPORT ref_ptr<PLasPntPool> PntsToPool(LasPntPool* source,
                                                         IZynProgress* progress);
[[nodiscard]] ZYN_EXPORT ref_ptr<PLasPntPoold> PntsToPool(LasPntPoold* source,
                                                          IZynProgress* progress);
/// @}
/// Returns the pointers as an array. Moves the cursor of `source`. REQUIRES: `source` is not null.
[[nodiscard]] ZYN_EXPORT ref_ptr<PLasPntdArray> PntsToPntArr(PLasPntPoold* source);

}  // namespace zyn
