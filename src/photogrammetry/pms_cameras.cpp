#include "photogrammetry/pms_cameras.h"

namespace zyn::detail {

CZynPMSCamParaTable::CZynPMSCamParaTable() : cameras(newCamParaArray()) {}

int CZynPMSCamParaTable::setImgNum(int n) {
    if (n < 1) { return -1; }
    cameras->resize(n);
    for (int i = 0; i < n; ++i) { cameras->getRef(i).imageIndex = i; }
    return 0;
}

void CZynPMSCamParaTable::clear() { cameras->removeAll(); }

zynCamOutParam CZynPMSCamParaTable::get(int img) const {
    return holds(img) ? cameras->get(img) : zynCamOutParam();
}

int CZynPMSCamParaTable::set(int img, const zynCamOutParam& camera) {
    if (!holds(img)) { return -1; }
    cameras->getRef(img) = camera;
    return 0;
}

}  // namespace zyn::detail
