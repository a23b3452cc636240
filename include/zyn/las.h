/// @file
/// Records of a laser scan, in single and double precision.
///
/// The library reads the coordinates and the intensity of a record and copies the rest whole: the
/// meaning of `attr`, the words and `tail` is the application's. Records are plain values. A point
/// of point.h is made from a LasPnt with its intensity.
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

/// Laser point in single precision: 28 bytes without gaps. It begins like an XPnt3f, with x, y, z
/// and `inten`. A new one has -99999 in its coordinates and 0 in all the rest.
struct LasPnt : PT3<float> {
    std::int16_t inten = 0;  ///< intensity
    /// The application's.
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

/// Laser point in double precision. A new one is 0 throughout, unlike a new LasPnt.
struct ZynLasPntD : XPnt3d {
    std::uint16_t intenD =
        0;  ///< Stands where `inten` does in a LasPnt; the library reads `inten`.
    /// The application's.
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

/// The smallest intensity of the `n` records as x, the largest as y; (2147483647, -2147483647) for
/// an `n` below 1.
[[nodiscard]] ZYN_EXPORT XPnt2d maxminInten(const LasPnt* pnts, std::int32_t n) noexcept;

// Arrays of records by value and by pointer

ZYN_ARRAY(LasPntArray, LasPnt);
ZYN_ARRAY(LasPntdArray, ZynLasPntD);
ZYN_ARRAY(PLasPntArray, LasPnt*);
ZYN_ARRAY(PLasPntdArray, ZynLasPntD*);
ZYN_ARRAY(PLasPntArrayArray, PLasPntArray*);
ZYN_ARRAY(PLasPntdArrayArray, PLasPntdArray*);

/// Views of a `source` that is not null: the address of each record, as that of its head. Only x, y,
/// z and `inten` may be touched through it, one at a time: what follows belongs to the record. The
/// view holds no count and is valid as long as the records stay in place.
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

/// The address of each record, in order: a view, valid until `source` is emptied. The cursor of
/// `source` moves. The progress is not called, and may be null.
/// @{
[[nodiscard]] ZYN_EXPORT ref_ptr<PLasPntPool> PntsToPool(LasPntPool* source,
                                                         IZynProgress* progress);
[[nodiscard]] ZYN_EXPORT ref_ptr<PLasPntPoold> PntsToPool(LasPntPoold* source,
                                                          IZynProgress* progress);
/// @}
/// The pointers as an array. The cursor of `source` moves.
[[nodiscard]] ZYN_EXPORT ref_ptr<PLasPntdArray> PntsToPntArr(PLasPntPoold* source);

}  // namespace zyn
