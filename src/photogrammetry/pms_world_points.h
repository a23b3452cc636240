// The world points of a block.
#pragma once

#include <zyn/array.h>

#include <cstddef>
#include <span>

namespace zyn::detail {

/// Coordinates and links. A link array has the index of the point's measurement on each image, or
/// -1; what lies beyond its end reads as -1.
class CZynPMSWrdPntsTable final {
public:
    CZynPMSWrdPntsTable();

    /// Does nothing; 0.
    virtual int setImgNum(int n);
    virtual void clear();
    virtual ref_ptr<Pnt3dArray> getPnts() { return pnts; }
    virtual ref_ptr<IntArrayArray> getIdArrays() { return links; }
    virtual int size() const { return pnts->size(); }
    /// Invalid out of range.
    virtual XPnt3d getPnt(int pnt) const;
    /// -1 out of range, as the other operations that change a point.
    virtual int setPnt(int pnt, XPnt3d xyz);
    virtual int addPnt(XPnt3d xyz);
    virtual int invalidatePnt(int pnt);
    virtual void clearPnts() { pnts->removeAll(); }
    /// Null out of range.
    virtual ref_ptr<IntArray> getIds(int pnt) const;
    /// Number of links; -1 out of range.
    virtual int getValidCount(int pnt) const;
    /// Takes a count of `ids` in place of the array before.
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

    // Of an image from 0 on. Only link() may be asked about a point that is not there.

    /// The measurement of a point on an image; -1 when there is none, or no such point.
    int link(int pnt, int img) const;
    /// Makes the links of a point reach to an image.
    void makeRoom(int pnt, int img);
    /// Where there is room.
    void setLink(int pnt, int img, int idx);
    void unlink(int pnt, int img);
    bool hasTwoLinks(int pnt) const;
    /// Makes `count` the number of points again.
    void cutTo(int count);

private:
    ref_ptr<Pnt3dArray> pnts;
    ref_ptr<IntArrayArray> links;
};

}  // namespace zyn::detail
