#include "photogrammetry/pms_world_points.h"

#include <algorithm>
#include <utility>

namespace zyn::detail {

CZynPMSWrdPntsTable::CZynPMSWrdPntsTable() : pnts(newPnt3dArray()), links(newIntArrayArray()) {}

int CZynPMSWrdPntsTable::setImgNum(int) { return 0; }

void CZynPMSWrdPntsTable::clear() {
    for (IntArray* const ids : *links) { ids->removeAll(); }
    links->removeAll();
    pnts->removeAll();
}

XPnt3d CZynPMSWrdPntsTable::getPnt(int pnt) const {
    return holds(pnt) ? pnts->get(pnt) : XPnt3d::invalid();
}

int CZynPMSWrdPntsTable::setPnt(int pnt, XPnt3d xyz) {
    if (!holds(pnt)) { return -1; }
    pnts->getRef(pnt) = xyz;
    return 0;
}

int CZynPMSWrdPntsTable::addPnt(XPnt3d xyz) {
    pnts->append(xyz);
    return 0;
}

int CZynPMSWrdPntsTable::invalidatePnt(int pnt) {
    if (!holds(pnt)) { return -1; }
    pnts->getRef(pnt).setInvalid();
    return 0;
}

ref_ptr<IntArray> CZynPMSWrdPntsTable::getIds(int pnt) const {
    return holds(pnt) ? links->get(pnt) : nullptr;
}

int CZynPMSWrdPntsTable::getValidCount(int pnt) const {
    if (!holds(pnt)) { return -1; }
    IntArray& ids = *links->get(pnt);
    return ids.size() - static_cast<int>(std::count(ids.begin(), ids.end(), -1));
}

int CZynPMSWrdPntsTable::setIds(int pnt, IntArray* ids) {
    if (!holds(pnt)) { return -1; }
    ids->ref();
    std::exchange(links->getRef(pnt), ids)->unref();
    return 0;
}

int CZynPMSWrdPntsTable::addIds(IntArray* ids) {
    links->append(ids);
    return 0;
}

int CZynPMSWrdPntsTable::resetIds(int pnt) {
    if (!holds(pnt)) { return -1; }
    IntArray& ids = *links->get(pnt);
    std::fill(ids.begin(), ids.end(), -1);
    return 0;
}

int CZynPMSWrdPntsTable::link(int pnt, int img) const {
    if (!holds(pnt)) { return -1; }
    const IntArray& ids = *links->get(pnt);
    return img < ids.size() ? ids.data()[img] : -1;
}

void CZynPMSWrdPntsTable::makeRoom(int pnt, int img) {
    IntArray& ids = *links->get(pnt);
    while (ids.size() <= img) { ids.append(-1); }
}

void CZynPMSWrdPntsTable::setLink(int pnt, int img, int idx) { links->get(pnt)->getRef(img) = idx; }

void CZynPMSWrdPntsTable::unlink(int pnt, int img) {
    if (img < links->get(pnt)->size()) { setLink(pnt, img, -1); }
}

bool CZynPMSWrdPntsTable::hasTwoLinks(int pnt) const {
    int count = 0;
    for (const int idx : *links->get(pnt)) {
        if (idx != -1 && ++count == 2) { return true; }
    }
    return false;
}

void CZynPMSWrdPntsTable::cutTo(int count) {
    pnts->removeRange(std::min(count, pnts->size()), pnts->size());
    while (links->size() > count) { links->removeLast(); }  // needs no memory
}

}  // namespace zyn::detail
