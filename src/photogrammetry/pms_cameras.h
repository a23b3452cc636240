// The cameras of a block.
#pragma once

#include <zyn/camera.h>

namespace zyn::detail {

/// One record an image. Its imageIndex is the image's liveness: -1 is a removed one.
class CZynPMSCamParaTable final {
public:
    CZynPMSCamParaTable();

    /// Gives the table `n` records with their positions as imageIndex; -1 for an `n` below 1.
    virtual int setImgNum(int n);
    virtual void clear();
    virtual ref_ptr<CamParaArray> getArray() { return cameras; }
    virtual int size() const { return cameras->size(); }
    /// An unset record out of range.
    virtual zynCamOutParam get(int img) const;
    /// -1 out of range.
    virtual int set(int img, const zynCamOutParam& camera);
    virtual void clearArray() { clear(); }

    bool holds(int img) const { return img >= 0 && img < size(); }
    bool isLive(int img) const { return cameras->data()[img].imageIndex != -1; }

private:
    ref_ptr<CamParaArray> cameras;
};

}  // namespace zyn::detail
