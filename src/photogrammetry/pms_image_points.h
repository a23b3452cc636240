// The measurements on the images of a block.
#pragma once

#include <zyn/array.h>

#include <map>

namespace zyn::detail {

/// Holds the measurements of one image in the order in which they were added. A removed measurement
/// is an invalid point.
class _ZynImgPntsData final : public ZynReferenced {  // NOLINT(bugprone-reserved-identifier)
public:
    _ZynImgPntsData() : pnts(newPnt2dArray()), ids(newIntArray()) {}

    ref_ptr<Pnt2dArray> pnts;
    ref_ptr<IntArray> ids;  ///< the world point of each, or -1
    int validCount = 0;
};

/// Holds the measurements of all images and links each one to its world point. An image has a
/// record from its first measurement on.
class CZynPMSImgPntsTable final {
public:
    virtual void clear() { records.clear(); }
    /// Returns an invalid point if there is no such measurement.
    virtual XPnt2d getPnt(int img, int idx) const;
    /// Returns the world point of a measurement, or -1 if there is no such measurement.
    virtual int getPntId(int img, int idx) const;
    /// Appends a measurement. Returns the number of measurements that the image has then.
    virtual int add(int img, const XPnt2d& xy, int pntId);
    /// Removes a measurement and its link, if there is such a measurement. Returns 0.
    virtual int invalidate(int img, int idx);
    /// Returns null if the image has no record.
    virtual ref_ptr<Pnt2dArray> getPnts(int img) const;
    /// Returns the number of measurements, removed ones included, or -1 if the image has no record.
    virtual int getCount(int img) const;
    /// Returns the number of valid measurements, or -1 if the image has no record.
    virtual int getValidCount(int img) const;
    virtual void clearPnts();
    /// Returns null if the image has no record.
    virtual ref_ptr<IntArray> getIds(int img) const;
    virtual void clearIds();

    void setPntId(int img, int idx, int pntId);
    /// Undoes the latest add() to the image. REQUIRES: there was one.
    void takeBack(int img);
    /// Returns the record of an image, or null.
    const _ZynImgPntsData* find(int img) const;

private:
    _ZynImgPntsData* find(int img);

    std::map<int, ref_ptr<_ZynImgPntsData>> records;
};

}  // namespace zyn::detail
