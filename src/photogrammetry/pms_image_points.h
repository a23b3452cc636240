// What was measured on the images of a block.
#pragma once

#include <zyn/array.h>

#include <map>

namespace zyn::detail {

/// The measurements of one image, in order of arrival. A removed one is an invalid point.
class _ZynImgPntsData final : public ZynReferenced {  // NOLINT(bugprone-reserved-identifier)
public:
    _ZynImgPntsData() : pnts(newPnt2dArray()), ids(newIntArray()) {}

    ref_ptr<Pnt2dArray> pnts;
    ref_ptr<IntArray> ids;  ///< the world point of each, or -1
    int validCount = 0;
};

/// The measurements of all images, and the way from each to its world point. An image has a record
/// from its first measurement on.
class CZynPMSImgPntsTable final {
public:
    virtual void clear() { records.clear(); }
    /// Invalid without such a measurement.
    virtual XPnt2d getPnt(int img, int idx) const;
    /// The world point of a measurement; -1 without such a measurement.
    virtual int getPntId(int img, int idx) const;
    /// Appends a measurement; the image's new number of them.
    virtual int add(int img, const XPnt2d& xy, int pntId);
    /// Removes a measurement and its link; 0, also when there is no such measurement.
    virtual int invalidate(int img, int idx);
    /// Null without a record.
    virtual ref_ptr<Pnt2dArray> getPnts(int img) const;
    /// Number of measurements, removed ones included; -1 without a record.
    virtual int getCount(int img) const;
    /// Number of valid measurements; -1 without a record.
    virtual int getValidCount(int img) const;
    virtual void clearPnts();
    /// Null without a record.
    virtual ref_ptr<IntArray> getIds(int img) const;
    virtual void clearIds();

    void setPntId(int img, int idx, int pntId);
    /// Undoes the latest add() to the image.
    void takeBack(int img);
    /// The record of an image, or null.
    const _ZynImgPntsData* find(int img) const;

private:
    _ZynImgPntsData* find(int img);

    std::map<int, ref_ptr<_ZynImgPntsData>> records;
};

}  // namespace zyn::detail
