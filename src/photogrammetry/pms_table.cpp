// The operations that fill a block and remove from it.
#include "photogrammetry/pms_table.h"

#include <algorithm>
#include <utility>

namespace zyn::detail {

CZynPMSDataTable::CZynPMSDataTable()
    : cameras(std::make_unique<CZynPMSCamParaTable>()),
      measurements(std::make_unique<CZynPMSImgPntsTable>()),
      points(std::make_unique<CZynPMSWrdPntsTable>()) {
    interior.f = -1.0;
}

// Replaces the parts before it deletes them: a delete handler may call the table meanwhile and must
// find the new parts.
int CZynPMSDataTable::clear() {
    auto oldCameras = std::make_unique<CZynPMSCamParaTable>();
    auto oldMeasurements = std::make_unique<CZynPMSImgPntsTable>();
    auto oldPoints = std::make_unique<CZynPMSWrdPntsTable>();
    cameras.swap(oldCameras);
    measurements.swap(oldMeasurements);
    points.swap(oldPoints);
    oldCameras->clear();
    oldMeasurements->clear();
    oldPoints->clear();
    return 0;
}

int CZynPMSDataTable::setImgNum(int n) {
    cameras->setImgNum(n);
    points->setImgNum(n);
    return 0;
}

int CZynPMSDataTable::setCamInParam(const zynCamInParam& in) {
    interior = in;
    return 0;
}

int CZynPMSDataTable::setCamOutParam(int img, const zynCamOutParam& out) {
    return cameras->set(img, out);
}

int CZynPMSDataTable::measurementCount(int img) const {
    return std::max(measurements->getCount(img), 0);
}

int CZynPMSDataTable::getImgPntNum(int img) const {
    return cameras->holds(img) ? measurementCount(img) : -1;
}

bool CZynPMSDataTable::holdsMeasurement(int img, int idx) const {
    return idx >= 0 && idx < getImgPntNum(img);
}

// Adding

int CZynPMSDataTable::addImgPnt(int img, const XPnt2d& xy, int pnt) {
    if (!cameras->holds(img) || !points->holds(pnt)) { return -1; }
    points->makeRoom(pnt, img);  // before anything is added
    points->setLink(pnt, img, measurements->add(img, xy, pnt) - 1);
    return 0;
}

int CZynPMSDataTable::addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts, XPnt3d xyz) {
    if (!imgPnts || imgPnts->size() != getImgNum()) { return -1; }
    const auto isValid = [](const XPnt2d& p) { return p.isValid(); };
    if (std::count_if(imgPnts->begin(), imgPnts->end(), isValid) < 2) { return -1; }

    const int pnt = getWrdPntNum();
    const ref_ptr<IntArray> links = newIntArray();
    links->resize(getImgNum());
    std::fill(links->begin(), links->end(), -1);
    points->addIds(links.get());
    try {
        points->addPnt(xyz);
        for (int img = 0; img < imgPnts->size(); ++img) {
            const XPnt2d measured = imgPnts->get(img);
            if (measured.isValid()) {
                links->getRef(img) = measurements->add(img, measured, pnt) - 1;
            }
        }
    } catch (...) {  // out of memory
        for (int img = 0; img < links->size(); ++img) {
            if (links->get(img) != -1) { measurements->takeBack(img); }
        }
        points->cutTo(pnt);
        throw;
    }
    return 0;
}

int CZynPMSDataTable::addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts) {
    if (!imgPnts || imgPnts->size() != getImgNum() || getImgNum() < 1) { return -1; }
    addWrdPnt(imgPnts, XPnt3d::invalid());
    return 0;
}

// Removing

int CZynPMSDataTable::removeWrdPnt(int pnt) {
    if (!points->holds(pnt)) { return -1; }
    const ref_ptr<IntArray> links = points->getIds(pnt);
    for (int img = 0; img < links->size(); ++img) {
        measurements->invalidate(img, links->get(img));
    }
    points->invalidatePnt(pnt);
    points->resetIds(pnt);
    return 0;
}

int CZynPMSDataTable::removeImg(int img) {
    if (!cameras->holds(img)) { return -1; }
    zynCamOutParam removed;
    removed.imageIndex = -1;
    cameras->set(img, removed);
    for (int idx = 0; idx < measurementCount(img); ++idx) {
        const int pnt = measurements->getPntId(img, idx);
        measurements->invalidate(img, idx);
        if (pnt == -1) { continue; }
        points->unlink(pnt, img);
        if (!points->hasTwoLinks(pnt)) { removeWrdPnt(pnt); }
    }
    return 0;
}

int CZynPMSDataTable::removeWrdPntOfImgPnt(int img, int idx) {
    return holdsMeasurement(img, idx) ? removeWrdPnt(measurements->getPntId(img, idx)) : -1;
}

int CZynPMSDataTable::removeImgPntAt(int img, int idx) {
    if (!holdsMeasurement(img, idx)) { return -1; }
    const int pnt = measurements->getPntId(img, idx);
    measurements->invalidate(img, idx);
    if (pnt != -1) { points->unlink(pnt, img); }
    if (measurements->getValidCount(img) < 1) { removeImg(img); }
    if (pnt != -1 && !points->hasTwoLinks(pnt)) { removeWrdPnt(pnt); }
    return 0;
}

int CZynPMSDataTable::removeImgPnt(int img, int pnt) {
    return cameras->holds(img) ? removeImgPntAt(img, points->link(pnt, img)) : -1;
}

// Merging and swapping

bool CZynPMSDataTable::areTwoPoints(int a, int b) const {
    return points->holds(a) && points->holds(b) && a != b;
}

int CZynPMSDataTable::linkedImages(int a, int b) const {
    return std::max(points->getIds(a)->size(), points->getIds(b)->size());
}

int CZynPMSDataTable::mergeWrdPnts(int a, int b, XPnt3d xyz) {
    if (!areTwoPoints(a, b)) { return -1; }
    const auto [kept, other] = std::minmax({a, b});
    const int images = linkedImages(a, b);
    // Keeps the old links until the last change is done, since a delete handler may call the table.
    const ref_ptr<IntArray> oldOfKept = points->getIds(kept), oldOfOther = points->getIds(other);
    const ref_ptr<IntArray> merged = newIntArray(), none = newIntArray();
    merged->reserve(images);
    none->reserve(images);
    for (int img = 0; img < images; ++img) {
        const int ofKept = points->link(kept, img), ofOther = points->link(other, img);
        if (ofKept != -1 && ofOther != -1) { return -1; }
        merged->append(ofKept != -1 ? ofKept : ofOther);
        none->append(-1);
    }
    for (int img = 0; img < images; ++img) { measurements->setPntId(img, merged->get(img), kept); }
    points->setPnt(kept, xyz);
    points->setIds(kept, merged.get());
    points->invalidatePnt(other);
    points->setIds(other, none.get());
    return 0;
}

int CZynPMSDataTable::swapWrdPnts(int a, int b) {
    if (!areTwoPoints(a, b)) { return -1; }
    for (int img = 0, images = linkedImages(a, b); img < images; ++img) {
        const int ofA = points->link(a, img), ofB = points->link(b, img);
        measurements->setPntId(img, ofA, b);
        measurements->setPntId(img, ofB, a);
    }
    const ref_ptr<IntArray> linksOfA = points->getIds(a);
    points->setIds(a, points->getIds(b).get());
    points->setIds(b, linksOfA.get());
    const XPnt3d ofA = points->getPnt(a);
    points->setPnt(a, points->getPnt(b));
    points->setPnt(b, ofA);
    return 0;
}

// The whole block

Enve3d CZynPMSDataTable::getEnvelope() {
    Enve3d box;
    int valid = 0;
    for (const XPnt3d& p : *points->getPnts()) {
        if (!p.isValid()) { continue; }
        if (valid++ == 0) { box.SetBox(p, p); }
        box.SetBox(p);
    }
    return valid < 2 ? Enve3d::invalid() : box;
}

int CZynPMSDataTable::scale(double factor) {
    for (zynCamOutParam& cam : *cameras->getArray()) {
        if (cam.imageIndex == -1) { continue; }
        cam.X *= factor;
        cam.Y *= factor;
        cam.Z *= factor;
    }
    for (XPnt3d& p : *points->getPnts()) {
        if (p.isValid()) { p *= factor; }
    }
    return 0;
}

}  // namespace zyn::detail

namespace zyn {

using namespace detail;

IZynPMSDataTable* newZynPMSDataTable() { return new CZynPMSDataTable; }

int setImgNum(IZynPMSDataTable* table, int n) {
    auto* const own = dynamic_cast<CZynPMSDataTable*>(table);
    return own != nullptr ? own->setImgNum(n) : -1;
}

int getImgPntNum(const IZynPMSDataTable* table, int img) {
    const auto* const own = dynamic_cast<const CZynPMSDataTable*>(table);
    return own != nullptr ? own->getImgPntNum(img) : -1;
}

TagPnt2d getImgPntAt(const IZynPMSDataTable* table, int img, int idx) {
    const auto* const own = dynamic_cast<const CZynPMSDataTable*>(table);
    return own != nullptr ? own->getImgPntAt(img, idx) : TagPnt2d();
}

}  // namespace zyn
