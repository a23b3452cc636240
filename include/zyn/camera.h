/// @file
/// Frame cameras: interior and exterior orientation, the direct linear transformation, projection.
///
/// Angles are in radians. Lengths are in the unit of the world coordinates; image coordinates and
/// the focal length share one unit. A value that is not set is -99999, which differs from the
/// invalid mark of points. The library stores and copies the fields marked "carried", but does not
/// read them.
///
///     zynCamOutParam cam;
///     cam.X = 500.0; cam.Y = 500.0; cam.Z = 1000.0;
///     cam.phi = cam.omega = cam.kappa = 0.0;
///     XPnt2d image = project(cam, 0.1, XPnt3d(510.0, 500.0, 0.0));      // (0.001, 0)
///     std::vector<XPnt2d> images = projectAll(cam, 0.1, *points);       // of a Pnt3dArray
///     XPnt3d viewing = rotationMatrix(cam) * XPnt3d(0.0, 0.0, -1.0);    // in the world
///
/// The rotation of an image is R = R(phi) R(omega) R(kappa), about Y, X and Z in this order.
///
/// Threads: any number may call the functions at once; use a record on one thread at a time.
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/transform.h>

#include <cstdint>
#include <span>
#include <vector>

namespace zyn {

/// The mark of a camera value that is not set.
inline constexpr double unsetCamera = -99999.0;

/// The linear elements of an exterior orientation: the projection centre.
struct zynCamLineParam {
    double X, Y, Z;  ///< in the unit of the world
};

/// The angular elements of an exterior orientation.
struct zynCamAngelParam {
    double phi, omega, kappa;  ///< in radians

    /// Unsets all three.
    void setInvalid() noexcept { phi = omega = kappa = unsetCamera; }
};

/// Seven carried numbers.
struct zynCamModel {
    double v[7];  ///< carried
};

/// The interior orientation. It has no constructor of its own.
struct zynCamInParam {
    double x0, y0;   ///< principal point
    double f;        ///< focal length; above 0 when the camera is known
    double ext[41];  ///< carried
};

/// The exterior orientation of one image.
struct ZYN_EXPORT zynCamOutParam {
    double X, Y, Z;              ///< projection centre in the world
    double phi, omega, kappa;    ///< rotation
    std::int32_t tagA;           ///< carried
    std::int32_t carriedWord;    ///< carried; undefined in a new record
    std::int32_t imageIndex;     ///< index in the table; -1 after the table has removed the image
    std::int32_t tagB;           ///< carried
    std::int64_t carriedNumber;  ///< carried; undefined in a new record

    /// Makes an unset record, in which carriedWord and carriedNumber are undefined.
    zynCamOutParam() noexcept { setInvalid(); }
    /// Unsets everything, except carriedWord and carriedNumber.
    void setInvalid() noexcept;
    /// Returns a new array of nine: X, Y, Z, phi, omega, kappa, tagA, imageIndex, tagB.
    [[nodiscard]] DoubleArray* toArray() const;
};

/// Everything about one camera. The coefficients are those of the direct linear transformation:
///
///     x + (L1 X + L2 Y + L3 Z + L4) / (L9 X + L10 Y + L11 Z + 1) = 0
///     y + (L5 X + L6 Y + L7 Z + L8) / (L9 X + L10 Y + L11 Z + 1) = 0
struct ZYN_EXPORT zynCamParam {
    zynCamInParam in;                                     ///< interior orientation
    zynCamOutParam out;                                   ///< exterior orientation
    double L1, L2, L3, L4, L5, L6, L7, L8, L9, L10, L11;  ///< coefficients

    /// Makes an unset record. These fields are undefined: `in.ext`, `out.carriedWord`,
    /// `out.carriedNumber`, and L2 to L11.
    zynCamParam() noexcept;
    /// Returns whether the focal length is above 0. Tests nothing else.
    [[nodiscard]] bool isValid() const noexcept { return in.f > 0.0; }
    /// Unsets x0, y0, f, L1, and in `out` the six numbers and imageIndex.
    void setInvalid() noexcept;
    /// Derives the principal point (x0, y0) and the projection centre (X, Y, Z) from the
    /// coefficients, in closed form. Does not change f and the angles. Returns false and changes
    /// nothing if:
    /// - L1 is exactly -1;
    /// - the matrix of the coefficients is singular; matrix<T>::invert then prints its message;
    /// - the centre is not finite.
    bool calcCameraOE();
};

ZYN_ARRAY(CamParaArray, zynCamOutParam);

/// Returns the rotation R of an exterior orientation, without a translation. Its first three
/// columns are the axes of the image in the world: R v is the vector v of the image, expressed in
/// the world.
[[nodiscard]] ZYN_EXPORT ZynMatrix4d rotationMatrix(const zynCamOutParam& cam) noexcept;

/// Returns the image coordinates of a world point, without principal point and distortion:
/// (-f u1 / u3, -f u2 / u3) for u = R^-1 (pnt - centre). They are NaN if the rotation is not
/// finite.
[[nodiscard]] ZYN_EXPORT XPnt2d project(const zynCamOutParam& cam, double f, const XPnt3d& pnt);
/// Returns the image coordinates of many points in their order, much faster than calls of
/// project(). With the reference BLAS they equal those of project() to the last bit, with any other
/// to rounding.
[[nodiscard]] ZYN_EXPORT std::vector<XPnt2d> projectAll(const zynCamOutParam& cam, double f,
                                                        std::span<const XPnt3d> pnts);

// Position and attitude, as measured by a navigation system.

/// A position and three angles. It has no constructor of its own; arrays fill it with zeros.
struct ZynPOS3d {
    double X, Y, Z;            ///< position
    double phi, omega, kappa;  ///< angles, in radians

    /// Returns the position.
    [[nodiscard]] XPnt3d getXYZ() const noexcept { return {X, Y, Z}; }
    /// Sets the position.
    void setXYZ(const PT3<double>& xyz) noexcept {
        X = xyz.x;
        Y = xyz.y;
        Z = xyz.z;
    }
    /// Returns phi, omega, kappa as x, y, z.
    [[nodiscard]] XPnt3d getAngle() const noexcept { return {phi, omega, kappa}; }
    /// Sets phi, omega, kappa.
    void setAngle(const PT3<double>& angle) noexcept {
        phi = angle.x;
        omega = angle.y;
        kappa = angle.z;
    }
};

/// Seven carried numbers of an image.
struct ZynImagePOS {
    double v[7];  ///< carried
};

ZYN_ARRAY(ZynPOS3dSArray, ZynPOS3d);
ZYN_ARRAY(ImagePOSArray, ZynImagePOS);

}  // namespace zyn
