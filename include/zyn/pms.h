/// @file
/// The photogrammetric block: images, their measurements, and the world points that these measure.
///
/// A table holds one interior orientation, one exterior orientation per image, and the measurements
/// of each image. It also holds world points, with their links to measurements. The table performs
/// no adjustment and no intersection: it supplies the observations for them, and stores the
/// results.
///
/// Images, measurements (within their image) and world points have int indices from 0. Indices
/// never shift: a removed object keeps its index. Only exportData assigns compact numbers. The
/// index -1 means none.
///
///     ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
///     setImgNum(table.get(), 3);
///     cam.imageIndex = 0;                                     // before the record is set
///     table->setCamOutParam(0, cam);
///     ref_ptr<Pnt2dArray> seen = newPnt2dArray();
///     seen->resize(3);                                        // one entry per image,
///     seen->getRef(0).set(0.001, 0.002);                      // invalid if it is not measured
///     seen->getRef(2).set(0.003, 0.002);
///     table->addWrdPnt(seen);                                 // world point 0
///     table->getWrdPntObservations(0, pnts.get(), cams.get());
///     table->setWrdPnt(0, intersection);                      // computed by the program
///
/// A measurement and its world point refer to each other. Removing measurements one by one
/// cascades. A world point exists as long as it has two measurements, an image as long as it has
/// one valid measurement.
///
/// An operation leaves the table unchanged, and returns -1, null or an invalid value, if:
/// - an index is out of range;
/// - an argument is null;
/// - an array has the wrong length.
///
/// If allocation fails, an operation throws std::bad_alloc and leaves the table unchanged.
///
/// Const: the virtual operations are not const, because programs override them in this form. Each
/// operation that only reads has a const form, which calls the virtual one.
///
/// Threads: use a table on one thread at a time, for reading too.
#pragma once

#include <zyn/array.h>
#include <zyn/camera.h>
#include <zyn/envelope.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/referenced.h>

#include <type_traits>

namespace zyn {

/// The table. Operations that return an int return 0 for success and -1 for failure, unless their
/// comment says otherwise.
class ZYN_EXPORT IZynPMSDataTable : public ZynReferenced {
public:
    /// Removes all images, measurements and world points; the interior orientation stays.
    virtual int clear() = 0;

    // Whole blocks

    /// Returns a new array of the valid world points, in order.
    [[nodiscard]] virtual ref_ptr<Pnt3dArray> getValidWrdPnts() = 0;
    /// Exports the block in compact form into six arrays of the caller:
    /// - `imgPnts`: for each live image, the measurements of valid world points, sorted by world
    ///   point;
    /// - `imgPntIds`: the compact numbers of those points;
    /// - `cams`: the camera of each live image, with the imageIndex that it has in this table;
    /// - `wrdPnts`: the valid world points;
    /// - `camMap`, `wrdMap`: for each image and world point of this table, the compact number, or
    ///   -1.
    virtual int exportData(const ref_ptr<Pnt2dArrayArray>& imgPnts,
                           const ref_ptr<IntArrayArray>& imgPntIds,
                           const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                           const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) = 0;
    /// Imports cameras and world points back, by the maps of exportData. Returns -1 and changes
    /// nothing if a map is too short or has an entry out of range.
    virtual int importData(const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                           const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) = 0;

    /// Returns the number of images, removed ones included.
    [[nodiscard]] virtual int getImgNum() = 0;
    /// Returns the number of world points, removed ones included.
    [[nodiscard]] virtual int getWrdPntNum() = 0;

    // Cameras and coordinates

    /// Returns or replaces the interior orientation, which all images share.
    /// @{
    [[nodiscard]] virtual zynCamInParam getCamInParam() = 0;
    virtual int setCamInParam(const zynCamInParam& in) = 0;
    /// @}
    /// Returns the record of an image; an unset record for an index out of range.
    [[nodiscard]] virtual zynCamOutParam getCamOutParam(int img) = 0;
    /// Replaces the whole record, imageIndex included. Set imageIndex to `img` first: a new record
    /// has -99999 there, and -1 marks the image as removed.
    virtual int setCamOutParam(int img, const zynCamOutParam& out) = 0;
    /// Returns the coordinates of a world point; an invalid point for an index out of range.
    [[nodiscard]] virtual XPnt3d getWrdPnt(int pnt) = 0;
    /// Replaces the coordinates. An invalid point makes the world point invalid.
    virtual int setWrdPnt(int pnt, XPnt3d xyz) = 0;

    // Observations. An image out of range has no measurements.

    /// Returns the number of measurements of imgA whose world point is also measured on imgB.
    [[nodiscard]] virtual int getCommonPntNum(int imgA, int imgB) = 0;
    /// Replaces the contents of `a` and `b` by the measurements of the common points, in the order
    /// of imgA. If both `idxA` and `idxB` are given, replaces their contents by the indices of the
    /// measurements.
    virtual int getCommonPnts(int imgA, int imgB, Pnt2dArray* a, Pnt2dArray* b, IntArray* idxA,
                              IntArray* idxB) = 0;
    /// Replaces the contents of the arrays by the measurements of the points common to three
    /// images, in the order of imgB.
    virtual int getCommonPnts3(int imgA, int imgB, int imgC, Pnt2dArray* a, Pnt2dArray* b,
                               Pnt2dArray* c) = 0;
    /// Returns a new array of the world points measured on all of these images, in the order of the
    /// last image. Returns null for fewer than two images.
    [[nodiscard]] virtual ref_ptr<IntArray> getCommonWrdPnts(const ref_ptr<IntArray>& imgs) = 0;
    /// Replaces the contents of `pnts` by the measurements of a world point, in the order of the
    /// images, and of `cams` by their cameras. Returns -1 if there are fewer than two measurements;
    /// the arrays then hold those that exist.
    virtual int getWrdPntObservations(int pnt, Pnt2dArray* pnts, CamParaArray* cams) = 0;
    /// Returns a new array with one entry per image: the measurement of the point, or an invalid
    /// one.
    [[nodiscard]] virtual ref_ptr<Pnt2dArray> getWrdPntImgPnts(int pnt) = 0;
    /// Returns a new array of the valid measurements of the image that refer to a world point,
    /// tagged with its index.
    [[nodiscard]] virtual ref_ptr<TagPnt2dArray> getImgTagPnts(int img) = 0;
    /// Returns the measurement of the point on the image; an invalid one if there is none.
    [[nodiscard]] virtual XPnt2d getImgPnt(int img, int pnt) = 0;

    // Adding

    /// Adds a measurement of an existing world point, valid or not, and links the point to it.
    /// - An invalid position is added too. It counts as one of the point's two measurements and as
    ///   an observation, but not as a valid measurement of the image.
    /// - An earlier measurement of the point on that image stays and refers to the point, but the
    ///   point no longer refers to it. Then getImgTagPnts and the operations on common points find
    ///   both measurements.
    virtual int addImgPnt(int img, const XPnt2d& xy, int pnt) = 0;
    /// Adds a world point with its measurements: one entry per image, invalid where there is none.
    /// The index of the point is what getWrdPntNum() returned before the call. Returns -1 and adds
    /// nothing if fewer than two entries are valid.
    virtual int addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts, XPnt3d xyz) = 0;
    /// Adds a world point without coordinates in the same way. If there are fewer than two valid
    /// entries, adds nothing and still returns 0: only a comparison of getWrdPntNum() shows it.
    virtual int addWrdPnt(const ref_ptr<Pnt2dArray>& imgPnts) = 0;

    // Removing. Each operation cascades as described at the top of this file, except removeWrdPnt.

    /// Removes all measurements of the image, unsets its record, and sets its imageIndex to -1.
    virtual int removeImg(int img) = 0;
    /// Removes the world point of a measurement, like removeWrdPnt. Returns -1 if the measurement
    /// has none.
    virtual int removeWrdPntOfImgPnt(int img, int idx) = 0;
    /// Removes a world point and its measurements; images stay, even without measurements.
    virtual int removeWrdPnt(int pnt) = 0;
    /// Removes a measurement by its index. If it refers to a world point, the point then has no
    /// measurement on this image, even if it was linked to a later one. The later one stays on the
    /// image.
    virtual int removeImgPntAt(int img, int idx) = 0;
    /// Removes the measurement of a world point on an image. Returns -1 if there is none.
    virtual int removeImgPnt(int img, int pnt) = 0;
    /// Merges two world points into one with these coordinates. The smaller index survives; the
    /// other becomes invalid. Returns -1 and changes nothing if both are measured on one image.
    virtual int mergeWrdPnts(int a, int b, XPnt3d xyz) = 0;
    /// Exchanges the measurements and coordinates of two different world points.
    virtual int swapWrdPnts(int a, int b) = 0;

    /// Returns the box of the valid world points; an invalid box if there are fewer than two.
    [[nodiscard]] virtual Enve3d getEnvelope() = 0;
    /// Multiplies the positions of the live cameras and the valid world points by `factor`.
    virtual int scale(double factor) = 0;

    /// Reads a const table, as the operation of the same name does.
    /// @{
    [[nodiscard]] ref_ptr<Pnt3dArray> getValidWrdPnts() const { return self().getValidWrdPnts(); }
    int exportData(const ref_ptr<Pnt2dArrayArray>& imgPnts, const ref_ptr<IntArrayArray>& imgPntIds,
                   const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                   const ref_ptr<Pnt3dArray>& wrdPnts, const ref_ptr<IntArray>& wrdMap) const {
        return self().exportData(imgPnts, imgPntIds, cams, camMap, wrdPnts, wrdMap);
    }
    [[nodiscard]] int getImgNum() const { return self().getImgNum(); }
    [[nodiscard]] int getWrdPntNum() const { return self().getWrdPntNum(); }
    [[nodiscard]] zynCamInParam getCamInParam() const { return self().getCamInParam(); }
    [[nodiscard]] zynCamOutParam getCamOutParam(int img) const {
        return self().getCamOutParam(img);
    }
    [[nodiscard]] XPnt3d getWrdPnt(int pnt) const { return self().getWrdPnt(pnt); }
    [[nodiscard]] int getCommonPntNum(int imgA, int imgB) const {
        return self().getCommonPntNum(imgA, imgB);
    }
    int getCommonPnts(int imgA, int imgB, Pnt2dArray* a, Pnt2dArray* b, IntArray* idxA,
                      IntArray* idxB) const {
        return self().getCommonPnts(imgA, imgB, a, b, idxA, idxB);
    }
    int getCommonPnts3(int imgA, int imgB, int imgC, Pnt2dArray* a, Pnt2dArray* b,
                       Pnt2dArray* c) const {
        return self().getCommonPnts3(imgA, imgB, imgC, a, b, c);
    }
    [[nodiscard]] ref_ptr<IntArray> getCommonWrdPnts(const ref_ptr<IntArray>& imgs) const {
        return self().getCommonWrdPnts(imgs);
    }
    int getWrdPntObservations(int pnt, Pnt2dArray* pnts, CamParaArray* cams) const {
        return self().getWrdPntObservations(pnt, pnts, cams);
    }
    [[nodiscard]] ref_ptr<Pnt2dArray> getWrdPntImgPnts(int pnt) const {
        return self().getWrdPntImgPnts(pnt);
    }
    [[nodiscard]] ref_ptr<TagPnt2dArray> getImgTagPnts(int img) const {
        return self().getImgTagPnts(img);
    }
    [[nodiscard]] XPnt2d getImgPnt(int img, int pnt) const { return self().getImgPnt(img, pnt); }
    [[nodiscard]] Enve3d getEnvelope() const { return self().getEnvelope(); }
    /// @}

protected:
    ~IZynPMSDataTable() override = default;

private:
    // A counted object is made by `new` and is never const itself.
    [[nodiscard]] IZynPMSDataTable& self() const { return const_cast<IZynPMSDataTable&>(*this); }
};

/// Returns a new table without images. Its focal length is -1, which means not yet known.
[[nodiscard]] ZYN_EXPORT IZynPMSDataTable* newZynPMSDataTable();
constexpr auto factoryOf(std::type_identity<IZynPMSDataTable>) { return &newZynPMSDataTable; }

/// Sets the number of images to `n`. All are live, each with its index in its record. Returns 0.
/// For an `n` below 1, changes nothing and returns 0. Returns -1 for null, and for a table that is
/// not the library's. The function is meant for a new table. In one that has images:
/// - cameras keep the rest of their records;
/// - removed images are live again, with an unset record; their measurements stay removed;
/// - the measurements of images from `n` on are hidden, and come back with the images.
ZYN_EXPORT int setImgNum(IZynPMSDataTable* table, int n);

/// Returns the number of measurements of an image, removed ones included. Returns -1 for an image
/// out of range, for null, and for a table that is not the library's.
[[nodiscard]] ZYN_EXPORT int getImgPntNum(const IZynPMSDataTable* table, int img);
/// Returns a measurement by its index, tagged with the index of its world point, or with -1. The
/// result is invalid if the measurement was removed, or does not exist. If the point was measured
/// on the image again, `getImgPnt(img, result.tag)` is the later measurement.
[[nodiscard]] ZYN_EXPORT TagPnt2d getImgPntAt(const IZynPMSDataTable* table, int img, int idx);

}  // namespace zyn
