// Queries about measurements of the same world point.
#include "photogrammetry/pms_table.h"

#include <initializer_list>
#include <utility>
#include <vector>

namespace zyn::detail {

namespace {

void clearAll(std::initializer_list<ZynArray*> arrays) {
    for (ZynArray* const array : arrays) { array->removeAll(); }
}

TagPnt2d tagged(const XPnt2d& xy, int pnt) {
    TagPnt2d point(xy.x, xy.y);
    point.tag = pnt;
    return point;
}

}  // namespace

const _ZynImgPntsData* CZynPMSDataTable::record(int img) const {
    return cameras->holds(img) ? std::as_const(*measurements).find(img) : nullptr;
}

/// Calls use(idx, pnt) for each measurement of the image that has a world point, in order.
template <class Use>
void CZynPMSDataTable::forEachLinked(int img, Use use) const {
    const _ZynImgPntsData* const found = record(img);
    if (found == nullptr) { return; }
    const ref_ptr<IntArray> ids = found->ids;
    for (int idx = 0; idx < ids->size(); ++idx) {
        const int pnt = ids->data()[idx];
        if (pnt != -1) { use(idx, pnt); }
    }
}

int CZynPMSDataTable::linkOn(int img, int pnt) const {
    return cameras->holds(img) ? points->link(pnt, img) : -1;
}

int CZynPMSDataTable::getCommonPntNum(int imgA, int imgB) {
    int count = 0;
    forEachLinked(imgA, [&](int, int pnt) { count += linkOn(imgB, pnt) != -1; });
    return count;
}

int CZynPMSDataTable::getCommonPnts(int imgA, int imgB, Pnt2dArray* a, Pnt2dArray* b,
                                    IntArray* idxA, IntArray* idxB) {
    if (a == nullptr || b == nullptr) { return -1; }
    const bool withIndices = idxA != nullptr && idxB != nullptr;
    clearAll({a, b});
    if (withIndices) { clearAll({idxA, idxB}); }
    forEachLinked(imgA, [&](int idx, int pnt) {
        const int onB = linkOn(imgB, pnt);
        if (onB == -1) { return; }
        a->append(measurements->getPnt(imgA, idx));
        b->append(measurements->getPnt(imgB, onB));
        if (withIndices) {
            idxA->append(idx);
            idxB->append(onB);
        }
    });
    return 0;
}

int CZynPMSDataTable::getCommonPnts3(int imgA, int imgB, int imgC, Pnt2dArray* a, Pnt2dArray* b,
                                     Pnt2dArray* c) {
    if (a == nullptr || b == nullptr || c == nullptr) { return -1; }
    clearAll({a, b, c});
    forEachLinked(imgB, [&](int idx, int pnt) {
        const int onA = linkOn(imgA, pnt), onC = linkOn(imgC, pnt);
        if (onA == -1 || onC == -1) { return; }
        a->append(measurements->getPnt(imgA, onA));
        b->append(measurements->getPnt(imgB, idx));
        c->append(measurements->getPnt(imgC, onC));
    });
    return 0;
}

// Stamps a world point with the number of images, counted from the first of the list, that all have
// it.
ref_ptr<IntArray> CZynPMSDataTable::getCommonWrdPnts(const ref_ptr<IntArray>& imgs) {
    if (!imgs || imgs->size() < 2) { return nullptr; }
    ref_ptr<IntArray> common = newIntArray();
    std::vector<int> seenOn(static_cast<std::size_t>(getWrdPntNum()), 0);
    for (int n = 0; n < imgs->size(); ++n) {
        common->removeAll();
        forEachLinked(imgs->get(n), [&](int, int pnt) {
            int& stamp = seenOn[static_cast<std::size_t>(pnt)];
            // A point that is measured twice on one image appears twice.
            if (stamp == n) { stamp = n + 1; }
            if (stamp == n + 1) { common->append(pnt); }
        });
    }
    return common;
}

int CZynPMSDataTable::getWrdPntObservations(int pnt, Pnt2dArray* pnts, CamParaArray* cams) {
    if (pnts == nullptr || cams == nullptr) { return -1; }
    clearAll({pnts, cams});
    for (int img = 0; img < getImgNum(); ++img) {
        const int idx = points->link(pnt, img);
        if (idx == -1) { continue; }
        pnts->append(measurements->getPnt(img, idx));
        cams->append(cameras->get(img));
    }
    return pnts->size() < 2 ? -1 : 0;
}

ref_ptr<Pnt2dArray> CZynPMSDataTable::getWrdPntImgPnts(int pnt) {
    if (!points->holds(pnt)) { return nullptr; }
    ref_ptr<Pnt2dArray> seen = newPnt2dArray();
    seen->reserve(getImgNum());
    for (int img = 0; img < getImgNum(); ++img) { seen->append(getImgPnt(img, pnt)); }
    return seen;
}

ref_ptr<TagPnt2dArray> CZynPMSDataTable::getImgTagPnts(int img) {
    if (!cameras->holds(img)) { return nullptr; }
    ref_ptr<TagPnt2dArray> result = newTagPnt2dArray();
    forEachLinked(img, [&](int idx, int pnt) {
        const XPnt2d xy = measurements->getPnt(img, idx);
        if (xy.isValid()) { result->append(tagged(xy, pnt)); }
    });
    return result;
}

TagPnt2d CZynPMSDataTable::getImgPntAt(int img, int idx) const {
    if (!holdsMeasurement(img, idx)) { return {}; }
    return tagged(measurements->getPnt(img, idx), measurements->getPntId(img, idx));
}

XPnt2d CZynPMSDataTable::getImgPnt(int img, int pnt) {
    return measurements->getPnt(img, linkOn(img, pnt));
}

}  // namespace zyn::detail
