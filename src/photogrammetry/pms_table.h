// The table behind IZynPMSDataTable: three sub-tables and the operations that keep them consistent.
#pragma once

#include <zyn/pms.h>

#include "photogrammetry/pms_cameras.h"
#include "photogrammetry/pms_image_points.h"
#include "photogrammetry/pms_world_points.h"

#include <memory>

namespace zyn::detail {

// Invariant: if a link of world point p names measurement m on image i, then m names p. The reverse
// also holds, except for measurements that addImgPnt has replaced.
class CZynPMSDataTable final : public IZynPMSDataTable {
public:
    CZynPMSDataTable();

    int clear() override;

    // pms_exchange.cpp
    ref_ptr<Pnt3dArray> getValidWrdPnts() override;
    int exportData(const ref_ptr<Pnt2dArrayArray>& imgPnts, const ref_ptr<IntArrayArray>& imgPntIds,
                   const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                   const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) override;
    int importData(const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                   const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) override;

    int getImgNum() override { return cameras->size(); }
    int getWrdPntNum() override { return points->size(); }
    zynCamInParam getCamInParam() override { return interior; }
    int setCamInParam(const zynCamInParam& in) override;
    zynCamOutParam getCamOutParam(int img) override { return cameras->get(img); }
    int setCamOutParam(int img, const zynCamOutParam& out) override;
    XPnt3d getWrdPnt(int pnt) override { return points->getPnt(pnt); }
    int setWrdPnt(int pnt, XPnt3d xyz) override { return points->setPnt(pnt, xyz); }

    // pms_observations.cpp
    int getCommonPntNum(int imgA, int imgB) override;
    int getCommonPnts(int imgA, int imgB, Pnt2dArray* a, Pnt2dArray* b, IntArray* idxA,
                      IntArray* idxB) override;
    int getCommonPnts3(int imgA, int imgB, int imgC, Pnt2dArray* a, Pnt2dArray* b,
                       Pnt2dArray* c) override;
    ref_ptr<IntArray> getCommonWrdPnts(const ref_ptr<IntArray>& imgs) override;
    int getWrdPntObservations(int pnt, Pnt2dArray* pnts, CamParaArray* cams) override;
    ref_ptr<Pnt2dArray> getWrdPntImgPnts(int pnt) override;
    ref_ptr<TagPnt2dArray> getImgTagPnts(int img) override;
    XPnt2d getImgPnt(int img, int pnt) override;

    int addImgPnt(int img, const XPnt2d& xy, int pnt) override;
    int addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts, XPnt3d xyz) override;
    int addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts) override;

    int removeImg(int img) override;
    int removeWrdPntOfImgPnt(int img, int idx) override;
    int removeWrdPnt(int pnt) override;
    int removeImgPntAt(int img, int idx) override;
    int removeImgPnt(int img, int pnt) override;
    int mergeWrdPnts(int a, int b, XPnt3d xyz) override;
    int swapWrdPnts(int a, int b) override;

    Enve3d getEnvelope() override;
    int scale(double factor) override;

    // Operations outside the interface

    virtual int setImgNum(int n);
    int getImgPntNum(int img) const;
    TagPnt2d getImgPntAt(int img, int idx) const;  // pms_observations.cpp
    XPnt2d project(const zynCamOutParam& cam, double f, XPnt3d pnt) const {
        return zyn::project(cam, f, pnt);
    }

private:
    struct Export;  // pms_exchange.cpp

    bool holdsMeasurement(int img, int idx) const;
    int measurementCount(int img) const;
    /// Returns the record of an image of the table, or null.
    const _ZynImgPntsData* record(int img) const;
    template <class Use>
    void forEachLinked(int img, Use use) const;
    /// Returns the measurement of a point on an image of the table, or -1.
    int linkOn(int img, int pnt) const;
    bool areTwoPoints(int a, int b) const;
    /// Returns the number of images that the longer of the two link arrays covers.
    int linkedImages(int a, int b) const;

    zynCamInParam interior;
    std::unique_ptr<CZynPMSCamParaTable> cameras;
    std::unique_ptr<CZynPMSImgPntsTable> measurements;
    std::unique_ptr<CZynPMSWrdPntsTable> points;
};

}  // namespace zyn::detail
