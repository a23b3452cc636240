// The world points of a block.
#pragma once

#include <zyn/array.h>

#include <cstddef>
#include <span>

namespace zyn::detail {

/// Holds coordinates and links. The link array of a point has the index of its measurement on each
/// image, or -1. Indices beyond its end count as -1.
class CZynPMSWrdPntsTable final {
public:
    CZynPMSWrdPntsTable();

    /// Does nothing. Returns 0.
    virtual int setImgNum(int n);
    virtual void clear();
    virtual ref_ptr<Pnt3dArray> getPnts() { return pnts; }
    virtual ref_ptr<IntArrayArray> getIdArrays() { return links; }
    virtual int size() const { return pnts->size(); }
    /// Returns an invalid point if `pnt` is out of range.
    virtual XPnt3d getPnt(int pnt) const;
    /// Returns -1 if `pnt` is out of range, as do the other operations that change a point.
    virtual int setPnt(int pnt, XPnt3d xyz);
    virtual int addPnt(XPnt3d xyz);
    virtual int invalidatePnt(int pnt);
    virtual void clearPnts() { pnts->removeAll(); }
    /// Returns null if `pnt` is out of range.
    virtual ref_ptr<IntArray> getIds(int pnt) const;
    /// Returns the number of links, or -1 if `pnt` is out of range.
    virtual int getValidCount(int pnt) const;
    /// Replaces the link array by `ids` and takes a count of it.
    virtual int setIds(int pnt, IntArray* ids);
    virtual int addIds(IntArray* ids);
    virtual int resetIds(int pnt);
    virtual void clearIds() { links->removeAll(); }

    bool holds(int pnt) const { return pnt >= 0 && pnt < size(); }
    bool isValid(int pnt) const { return pnts->data()[pnt].isValid(); }
    std::span<const int> linksOf(int pnt) const {
        const IntArray& ids = *links->data()[pnt];
        return {ids.data(), static_cast<std::size_t>(ids.size())};
    }

    // Links to an image. REQUIRES: `img` is 0 or more, and the point exists, except in link().

    /// Returns the measurement of a point on an image, or -1 if there is no such point or
    /// measurement.
    int link(int pnt, int img) const;
    /// Extends the link array of a point so that it covers the image.
    void makeRoom(int pnt, int img);
    /// REQUIRES: the link array covers the image.
    void setLink(int pnt, int img, int idx);
    void unlink(int pnt, int img);
    bool hasTwoLinks(int pnt) const;
    /// Removes the last points until `count` are left.
    void cutTo(int count);

private:
    ref_ptr<Pnt3dArray> pnts;
    ref_ptr<IntArrayArray> links;
};

}  // namespace zyn::detail
