/// @file
/// The photogrammetric block: images, what was measured on them, and the world points behind it.
///
/// A table holds one interior orientation, one exterior orientation an image, the measurements of
/// each image, and world points with their links to measurements. An image, a measurement (within
/// its image) and a world point are addressed by int indices from 0 that never shift: what is removed
/// leaves its place; only exportData gives compact numbers. -1 means none. The table adjusts and
/// intersects nothing: it gives out the observations for that and takes the results.
///
///     ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
///     setImgNum(table.get(), 3);
///     table->setCamOutParam(0, cam);                          // of image 0, with imageIndex 0
///     ref_ptr<Pnt2dArray> seen = newPnt2dArray();             // one entry an image,
///     seen->resize(3);                                        // invalid where it is not seen
///     seen->getRef(0).set(0.001, 0.002);
///     seen->getRef(2).set(0.003, 0.002);
///     table->addWrdPnt(seen);                                 // world point 0
///     table->getWrdPntObservations(0, pnts.get(), cams.get());
///     table->setWrdPnt(0, intersection);
///
/// A measurement and its world point name each other. A world point lasts while it has two
/// measurements, an image while it has one valid measurement, as far as measurements are removed one
/// by one. With an index out of range, a null argument or a wrong length an operation leaves the table
/// as it was and gives -1, null or an invalid value. Without memory std::bad_alloc is thrown, and the
/// table stays as it was, too. A table is for one thread at a time.
#pragma once

#include <zyn/array.h>
#include <zyn/camera.h>
#include <zyn/envelope.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/referenced.h>

namespace zyn {

/// The table. Operations that answer an int give 0 for success and -1 for failure unless they say
/// something else.
class ZYN_EXPORT IZynPMSDataTable : public ZynReferenced {
public:
    /// Back to a table without images; the interior orientation stays.
    virtual int clear() = 0;

    // Whole blocks

    /// A new array of the valid world points, in order.
    [[nodiscard]] virtual ref_ptr<Pnt3dArray> getValidWrdPnts() = 0;
    /// The block in compact form, into six arrays that the caller gives: of each live image its
    /// measurements that belong to a valid world point, sorted by world point, with the compact
    /// numbers of those points, and its camera, with the imageIndex of this table; the valid world
    /// points; and from each image and world point of this table its compact number, or -1.
    virtual int exportData(const ref_ptr<Pnt2dArrayArray>& imgPnts,
                           const ref_ptr<IntArrayArray>& imgPntIds,
                           const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                           const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) = 0;
    /// Takes cameras and world points back, by the maps of exportData. -1, with nothing changed, for
    /// a map that is too short or has an entry out of range.
    virtual int importData(const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                           const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) = 0;

    /// Number of images, removed ones included.
    [[nodiscard]] virtual int getImgNum() = 0;
    /// Places for world points, those of removed ones included.
    [[nodiscard]] virtual int getWrdPntNum() = 0;

    // Cameras and coordinates

    /// The interior orientation, which all images share.
    /// @{
    [[nodiscard]] virtual zynCamInParam getCamInParam() = 0;
    virtual int setCamInParam(const zynCamInParam& in) = 0;
    /// @}
    /// An unset record out of range.
    [[nodiscard]] virtual zynCamOutParam getCamOutParam(int img) = 0;
    /// Replaces the record whole, imageIndex included: -1 there makes the image a removed one.
    virtual int setCamOutParam(int img, const zynCamOutParam& out) = 0;
    /// An invalid point out of range.
    [[nodiscard]] virtual XPnt3d getWrdPnt(int pnt) = 0;
    /// Replaces the coordinates; an invalid point makes the world point an invalid one.
    virtual int setWrdPnt(int pnt, XPnt3d xyz) = 0;

    // Observations. An image out of range is one without measurements.

    /// Number of measurements of imgA whose world point is measured on imgB too.
    [[nodiscard]] virtual int getCommonPntNum(int imgA, int imgB) = 0;
    /// Replaces the contents of `a` and `b` by the measurements of the common points, in the order
    /// of imgA, and, when both are given, `idxA` and `idxB` by their indices.
    virtual int getCommonPnts(int imgA, int imgB, Pnt2dArray* a, Pnt2dArray* b, IntArray* idxA,
                              IntArray* idxB) = 0;
    /// The same for three images, in the order of imgB.
    virtual int getCommonPnts3(int imgA, int imgB, int imgC, Pnt2dArray* a, Pnt2dArray* b,
                               Pnt2dArray* c) = 0;
    /// A new array of the world points measured on all of these images, in the order of the last
    /// one; null for fewer than two images.
    [[nodiscard]] virtual ref_ptr<IntArray> getCommonWrdPnts(const ref_ptr<IntArray>& imgs) = 0;
    /// Replaces the contents of `pnts` by the measurements of a world point, in the order of the
    /// images, and of `cams` by the cameras of these. -1 when there are fewer than two, which are
    /// then left there.
    virtual int getWrdPntObservations(int pnt, Pnt2dArray* pnts, CamParaArray* cams) = 0;
    /// A new array with one entry an image: the measurement of the point, or an invalid one.
    [[nodiscard]] virtual ref_ptr<Pnt2dArray> getWrdPntImgPnts(int pnt) = 0;
    /// A new array of the image's valid measurements that have a world point, tagged with it.
    [[nodiscard]] virtual ref_ptr<TagPnt2dArray> getImgTagPnts(int img) = 0;
    /// The measurement of the point on the image; an invalid one when there is none.
    [[nodiscard]] virtual XPnt2d getImgPnt(int img, int pnt) = 0;

    // Adding

    /// Adds a measurement of an existing world point, valid or not. An earlier one of it on that image stays on
    /// the image, but the point no longer leads to it.
    virtual int addImgPnt(int img, const XPnt2d& xy, int pnt) = 0;
    /// Adds a world point with its measurements: one entry an image, invalid where there is none, at
    /// least two valid ones.
    virtual int addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts, XPnt3d xyz) = 0;
    /// The same without coordinates. 0 also when there are fewer than two valid entries and nothing
    /// is added.
    virtual int addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts) = 0;

    // Removing. Each cascades as the head of this file says.

    /// Removes all measurements of the image and sets its imageIndex to -1.
    virtual int removeImg(int img) = 0;
    /// Removes the world point of a measurement; -1 when it has none.
    virtual int removeWrdPntOfImgPnt(int img, int idx) = 0;
    /// Removes a world point and its measurements; images stay, even without measurements.
    virtual int removeWrdPnt(int pnt) = 0;
    /// Removes a measurement, by its index.
    virtual int removeImgPntAt(int img, int idx) = 0;
    /// Removes the measurement of a world point on an image; -1 when there is none.
    virtual int removeImgPnt(int img, int pnt) = 0;
    /// Makes two world points one, with these coordinates: the smaller index survives, the other
    /// becomes invalid. -1, with nothing changed, when both are measured on one image.
    virtual int mergeWrdPnts(int a, int b, XPnt3d xyz) = 0;
    /// Exchanges the places of two different world points: measurements and coordinates.
    virtual int swapWrdPnts(int a, int b) = 0;

    /// Of the valid world points; invalid when there are fewer than two.
    [[nodiscard]] virtual Enve3d getEnvelope() = 0;
    /// Multiplies the positions of the live cameras and the valid world points.
    virtual int scale(double factor) = 0;

protected:
    ~IZynPMSDataTable() override = default;
};

/// A new table without images; its focal length is -1, not yet given.
[[nodiscard]] ZYN_EXPORT IZynPMSDataTable* newZynPMSDataTable();

/// Gives the table `n` images, all live, each with its index; cameras that it had keep the rest of
/// their records. Meant for a new table: of images that it had beyond `n`, the measurements stay out
/// of sight and come back with the images. 0, also for an `n` below 1, which changes nothing; -1 for null
/// and for a table that is not the library's.
ZYN_EXPORT int setImgNum(IZynPMSDataTable* table, int n);

}  // namespace zyn
