/// @file
/// Rigid transforms: a 4 x 4 matrix and a quaternion, which convert into each other.
///
/// Both are values. Operators named like those of numbers work in place: `m * n`, `m + n` and
/// `q * r` change their left side and give it back. Only `m * 2.0` and `m * point` make something
/// new. Return codes follow no single rule: conversions answer 1 from a matrix and 0 from a
/// quaternion, -1 where they fail; the other operations tell theirs.
///
///     ZynQuad q(1, 0, 0, 0);
///     q.rotate(0, 0, 1, 0.5);                       // half a radian about z
///     ZynMatrix4d m = q.toMatrix();
///     m[0][3] = 100.0;                              // the translation stands in the last column
///     XPnt3d moved = m * XPnt3d(1, 2, 3);
///
/// What was never set is invalid: every component is -2147483647.
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/point.h>

#include <cstddef>
#include <cstdint>

namespace zyn {

class ZynQuad;

/// A 4 x 4 matrix of doubles. Points are columns: x' = m[0] x + m[1] y + m[2] z + m[3].
class ZYN_EXPORT ZynMatrix4d {
public:
    /// A row, so that `m[r][c]` is an element. Unchecked: 0..3.
    class Helper {
    public:
        /// Of the row that starts there.
        explicit Helper(double* row_) noexcept : row(row_) {}
        /// The element in column `c`.
        [[nodiscard]] double& operator[](int c) const noexcept { return row[c]; }

    private:
        double* row;
    };

    double m[16];  ///< Row by row: element (r, c) is m[4 * r + c].

    /// The invalid form.
    ZynMatrix4d() noexcept { setInvalid(); }

    /// Replaces all elements. The last two give 1.
    /// @{
    void setInvalid() noexcept;
    int setIdentity() noexcept;
    int setZero() noexcept;
    /// @}
    /// Whether this is a usable rotation: no element is that of the invalid form, and the squares of
    /// each of the first three rows and columns, over three elements, sum to 1 within 0.001. Nothing
    /// tests that they are orthogonal, nor the fourth row and column.
    [[nodiscard]] bool isValid() const noexcept;
    /// The sixteen elements, row by row.
    /// @{
    [[nodiscard]] double* getPointer() noexcept { return m; }
    [[nodiscard]] const double* getPointer() const noexcept { return m; }
    /// @}
    /// A row. Unchecked: 0..3.
    /// @{
    [[nodiscard]] Helper operator[](int r) noexcept { return Helper(m + rowStart(r)); }
    [[nodiscard]] const double* operator[](int r) const noexcept { return m + rowStart(r); }
    /// @}

    /// Exact comparison of all elements.
    friend bool operator==(const ZynMatrix4d&, const ZynMatrix4d&) noexcept = default;

    /// In place; each gives *this.
    /// @{
    ZynMatrix4d& operator*(const ZynMatrix4d& b) noexcept;
    ZynMatrix4d& operator*=(const ZynMatrix4d& b) noexcept { return *this * b; }
    ZynMatrix4d& operator+(const ZynMatrix4d& b) noexcept;
    ZynMatrix4d& operator+=(const ZynMatrix4d& b) noexcept { return *this + b; }
    ZynMatrix4d& operator-(const ZynMatrix4d& b) noexcept;
    ZynMatrix4d& operator-=(const ZynMatrix4d& b) noexcept { return *this - b; }
    /// @}
    /// Every element times `s`, or plus `s`.
    /// @{
    ZynMatrix4d& operator*=(double s) noexcept;
    ZynMatrix4d& operator+=(double s) noexcept;
    /// @}

    /// Replaces this by its product with its transpose, and gives a copy of that.
    ZynMatrix4d covariant() noexcept;
    /// In place; 1.
    int transpose() noexcept;
    /// A transposed copy.
    [[nodiscard]] ZynMatrix4d getTransposed() const noexcept;
    /// In place, by Gauss-Jordan elimination with full pivoting: 1. A singular matrix gives 0, with
    /// "invert is not availble!\n" on standard output and the matrix half processed.
    int invert() noexcept;
    /// An inverted copy; half processed when the matrix is singular, which nothing tells.
    [[nodiscard]] ZynMatrix4d getInverted() const noexcept;
    /// Maps the elements linearly, the smallest to `lo` and the largest to `hi`; 1. Equal elements
    /// become NaN.
    int normalise(double lo, double hi) noexcept;
    /// A copy treated by normalise().
    [[nodiscard]] ZynMatrix4d getNormalised(double lo, double hi) const noexcept;

    /// Becomes the rotation of `q`: 1. A quaternion that is not normal gives -1, with nothing
    /// changed.
    int fromQuad(ZynQuad q) noexcept;
    /// The conjugate of the quaternion whose rotation this is: 1. A matrix that is not valid gives
    /// -1, with nothing changed.
    int toQuad(ZynQuad& q) const noexcept;

private:
    static constexpr std::ptrdiff_t rowStart(int r) noexcept { return std::ptrdiff_t(4) * r; }
};

/// A new matrix: `m` with every element scaled.
[[nodiscard]] ZYN_EXPORT ZynMatrix4d operator*(const ZynMatrix4d& m, double s) noexcept;
/// The transformed point, with `inten` 0. There is no division by a fourth coordinate.
[[nodiscard]] ZYN_EXPORT XPnt3d operator*(const ZynMatrix4d& m, const XPnt3d& p) noexcept;

/// The components of a quaternion, the scalar part first.
struct tagZynQuad {
    double w, x, y, z;  ///< not set in a new one
};

/// A quaternion. Component 0 is w.
class ZYN_EXPORT ZynQuad : public tagZynQuad {
public:
    /// The invalid form.
    ZynQuad() noexcept;
    ZynQuad(const ZynQuad&) noexcept = default;
    /// Of these components.
    ZynQuad(double w, double x, double y, double z) noexcept;
    /// From four doubles.
    explicit ZynQuad(const double* q) noexcept;
    ZynQuad(std::nullptr_t) = delete;
    virtual ~ZynQuad();

    /// The Euclidean norm of the four components.
    [[nodiscard]] virtual double getNorm() const noexcept;
    /// The square of getNorm().
    [[nodiscard]] virtual double getNorm2() const noexcept;
    /// Scales to norm 1: 0 when it was normal already, otherwise 1. Zero becomes NaN.
    virtual std::int32_t normalize() noexcept;
    /// Whether the norm is 1 within 1e-6.
    [[nodiscard]] virtual bool isNormal() const noexcept;
    /// Whether no component is that of the invalid form.
    [[nodiscard]] virtual bool isValid() const noexcept;
    /// Becomes the invalid form.
    virtual void setInvalid() noexcept;
    /// 1.
    virtual std::int32_t setValue(double w, double x, double y, double z) noexcept;
    /// From four doubles; 1.
    virtual std::int32_t setValue(const double* q) noexcept;
    /// A new array of w, x, y, z.
    [[nodiscard]] virtual DoubleArray* getValue() const;
    /// 0.
    virtual std::int32_t getValue(double& w, double& x, double& y, double& z) const noexcept;
    /// Unchecked: 0..3.
    [[nodiscard]] virtual double& operator[](int i) noexcept;
    /// Takes four doubles.
    virtual ZynQuad& operator=(const double* q) noexcept;
    /// Takes the components of `q`, as its operator[] returns them.
    virtual ZynQuad& operator=(const ZynQuad& q) noexcept;

    // In place; each gives *this.

    /// @{
    virtual ZynQuad& operator+(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator-(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator*(double s) noexcept;
    /// The Hamilton product *this q.
    virtual ZynQuad& operator*(const ZynQuad& q) noexcept;
    /// Multiplies by 1/s.
    virtual ZynQuad& operator/(double s) noexcept;
    virtual ZynQuad& operator+=(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator-=(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator*=(double s) noexcept;
    virtual ZynQuad& operator*=(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator/=(double s) noexcept;
    /// @}

    /// Becomes the conjugate of the quaternion whose rotation `m` is: 0. When a row or column of the
    /// rotation is not of length 1 (see ZynMatrix4d::isValid), -1, with `m` set invalid and the
    /// quaternion as it was. So toMatrix() and fromMatrix() give (w, -x, -y, -z) back.
    virtual std::int32_t fromMatrix(ZynMatrix4d& m) noexcept;
    /// The rotation; normalises the quaternion first unless it is normal.
    [[nodiscard]] virtual ZynMatrix4d toMatrix() noexcept;
    /// The same into `m`; 0.
    virtual std::int32_t toMatrix(ZynMatrix4d& m) noexcept;
    /// Turns by `angle`, in radians, about the axis (x, y, z), on the left of what it was; 0. The
    /// axis is taken as it is: one that is not of length 1 gives a quaternion that is not normal.
    virtual std::int32_t rotate(float x, float y, float z, double angle) noexcept;

    // `q = {}`, `q = 0` and `setValue(nullptr)` do not compile.
    ZynQuad& operator=(std::nullptr_t) = delete;
    std::int32_t setValue(std::nullptr_t) = delete;
};

}  // namespace zyn
