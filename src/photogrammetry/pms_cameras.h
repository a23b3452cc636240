// The cameras of a block.
#pragma once

#include <zyn/camera.h>

namespace zyn::detail {

/// Holds one record per image. A record whose imageIndex is -1 belongs to a removed image.
class CZynPMSCamParaTable final {
public:
    CZynPMSCamParaTable();

    /// Resizes the table to `n` records and sets each imageIndex to the record's position. Returns
    /// -1 if `n` is below 1.
    virtual int setImgNum(int n);
    virtual void clear();
    virtual ref_ptr<CamParaArray> getArray() { return cameras; }
    virtual int size() const { return cameras->size(); }
    /// Returns an unset record if `img` is out of range.
    virtual zynCamOutParam get(int img) const;
    /// Returns -1 if `img` is out of range.
    virtual int set(int img, const zynCamOutParam& camera);
    virtual void clearArray() { clear(); }

    bool holds(int img) const { return img >= 0 && img < size(); }
    bool isLive(int img) const { return cameras->data()[img].imageIndex != -1; }

private:
    ref_ptr<CamParaArray> cameras;
};

}  // namespace zyn::detail
