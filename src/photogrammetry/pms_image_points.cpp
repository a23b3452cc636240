#include "photogrammetry/pms_image_points.h"

#include <utility>

namespace zyn::detail {

namespace {

/// Returns whether the record exists and has measurement `idx`.
bool has(const _ZynImgPntsData* record, int idx) {
    return record != nullptr && idx >= 0 && idx < record->pnts->size() && idx < record->ids->size();
}

}  // namespace

const _ZynImgPntsData* CZynPMSImgPntsTable::find(int img) const {
    const auto found = records.find(img);
    return found == records.end() ? nullptr : found->second.get();
}

_ZynImgPntsData* CZynPMSImgPntsTable::find(int img) {
    return const_cast<_ZynImgPntsData*>(std::as_const(*this).find(img));
}

XPnt2d CZynPMSImgPntsTable::getPnt(int img, int idx) const {
    const auto* const record = find(img);
    return has(record, idx) ? record->pnts->get(idx) : XPnt2d::invalidPnt();
}

int CZynPMSImgPntsTable::getPntId(int img, int idx) const {
    const auto* const record = find(img);
    return has(record, idx) ? record->ids->get(idx) : -1;
}

int CZynPMSImgPntsTable::add(int img, const XPnt2d& xy, int pntId) {
    if (find(img) == nullptr) { records[img] = ref_ptr(new _ZynImgPntsData); }
    _ZynImgPntsData& record = *find(img);
    record.pnts->append(xy);
    try {
        record.ids->append(pntId);
    } catch (...) {
        record.pnts->removeLast();
        throw;
    }
    if (xy.isValid()) { ++record.validCount; }
    return record.pnts->size();
}

void CZynPMSImgPntsTable::takeBack(int img) {
    _ZynImgPntsData& record = *find(img);
    if (record.pnts->last().isValid()) { --record.validCount; }
    record.pnts->removeLast();
    record.ids->removeLast();
}

int CZynPMSImgPntsTable::invalidate(int img, int idx) {
    auto* const record = find(img);
    if (!has(record, idx)) { return 0; }
    XPnt2d& xy = record->pnts->getRef(idx);
    if (xy.isValid()) { --record->validCount; }
    xy = XPnt2d::invalidPnt();
    record->ids->getRef(idx) = -1;
    return 0;
}

ref_ptr<Pnt2dArray> CZynPMSImgPntsTable::getPnts(int img) const {
    const auto* const record = find(img);
    return record != nullptr ? record->pnts : nullptr;
}

int CZynPMSImgPntsTable::getCount(int img) const {
    const auto* const record = find(img);
    return record != nullptr ? record->pnts->size() : -1;
}

int CZynPMSImgPntsTable::getValidCount(int img) const {
    const auto* const record = find(img);
    return record != nullptr ? record->validCount : -1;
}

void CZynPMSImgPntsTable::clearPnts() {
    for (auto& [img, record] : records) {
        record->pnts->removeAll();
        record->validCount = 0;
    }
}

ref_ptr<IntArray> CZynPMSImgPntsTable::getIds(int img) const {
    const auto* const record = find(img);
    return record != nullptr ? record->ids : nullptr;
}

void CZynPMSImgPntsTable::clearIds() {
    for (auto& [img, record] : records) { record->ids->removeAll(); }
}

void CZynPMSImgPntsTable::setPntId(int img, int idx, int pntId) {
    auto* const record = find(img);
    if (has(record, idx)) { record->ids->getRef(idx) = pntId; }
}

}  // namespace zyn::detail
