/// @file
/// Rigid transforms: a 4 x 4 matrix and a quaternion, which convert into each other.
///
/// Both are values. The operators `m * n`, `m + n` and `q * r` work in place: they change their
/// left side and return it. Only `m * 2.0` and `m * point` make a new value. Return codes follow no
/// single rule, so each operation states its own.
///
///     ZynQuad q(1, 0, 0, 0);
///     q.rotate(0, 0, 1, 0.5);                       // half a radian about z
///     ZynMatrix4d m = q.toMatrix();
///     m[0][3] = 100.0;                              // the translation is in the last column
///     XPnt3d moved = m * XPnt3d(1, 2, 3);
///     XPnt3d back = m.getInverted() * moved;        // (1, 2, 3) up to rounding
///
/// A new matrix or quaternion is invalid: every component is -2147483647.
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
    /// A row, so that `m[r][c]` is an element.
    class Helper {
    public:
        /// Makes the row that starts at `row_`.
        explicit Helper(double* row_) noexcept : row(row_) {}
        /// Returns the element in column `c`. REQUIRES: 0 <= c <= 3.
        [[nodiscard]] double& operator[](int c) const noexcept { return row[c]; }

    private:
        double* row;
    };

    double m[16];  ///< Row by row: element (r, c) is m[4 * r + c].

    /// Makes an invalid matrix.
    ZynMatrix4d() noexcept { setInvalid(); }

    /// Replaces all elements. setIdentity() and setZero() return 1.
    /// @{
    void setInvalid() noexcept;
    int setIdentity() noexcept;
    int setZero() noexcept;
    /// @}
    /// Returns whether this can serve as a rotation: no element is -2147483647, and the first three
    /// rows and columns have length 1. Each length is that of three elements, and its square may
    /// differ from 1 by 0.001. Orthogonality, the fourth row and the fourth column are not tested;
    /// NaN is not detected.
    [[nodiscard]] bool isValid() const noexcept;
    /// Returns the sixteen elements, row by row.
    /// @{
    [[nodiscard]] double* getPointer() noexcept { return m; }
    [[nodiscard]] const double* getPointer() const noexcept { return m; }
    /// @}
    /// Returns row `r`. REQUIRES: 0 <= r <= 3.
    /// @{
    [[nodiscard]] Helper operator[](int r) noexcept { return Helper(m + rowStart(r)); }
    [[nodiscard]] const double* operator[](int r) const noexcept { return m + rowStart(r); }
    /// @}

    /// Compares all elements exactly.
    friend bool operator==(const ZynMatrix4d&, const ZynMatrix4d&) noexcept = default;

    /// Multiplies, adds or subtracts in place, and returns *this.
    /// @{
    ZynMatrix4d& operator*(const ZynMatrix4d& b) noexcept;
    ZynMatrix4d& operator*=(const ZynMatrix4d& b) noexcept { return *this * b; }
    ZynMatrix4d& operator+(const ZynMatrix4d& b) noexcept;
    ZynMatrix4d& operator+=(const ZynMatrix4d& b) noexcept { return *this + b; }
    ZynMatrix4d& operator-(const ZynMatrix4d& b) noexcept;
    ZynMatrix4d& operator-=(const ZynMatrix4d& b) noexcept { return *this - b; }
    /// @}
    /// Multiplies every element by `s`, or adds `s` to it, and returns *this.
    /// @{
    ZynMatrix4d& operator*=(double s) noexcept;
    ZynMatrix4d& operator+=(double s) noexcept;
    /// @}

    /// Replaces this matrix by its product with its transpose, and returns a copy of the result.
    ZynMatrix4d covariant() noexcept;
    /// Transposes in place. Returns 1.
    int transpose() noexcept;
    /// Returns a transposed copy.
    [[nodiscard]] ZynMatrix4d getTransposed() const noexcept;
    /// Inverts in place, by Gauss-Jordan elimination with full pivoting. Returns 1. If the matrix
    /// is singular, returns 0, prints "invert is not availble!\n" to standard output and leaves the
    /// elements half processed.
    int invert() noexcept;
    /// Returns an inverted copy. The copy of a singular matrix is half processed, and no return
    /// code says so.
    [[nodiscard]] ZynMatrix4d getInverted() const noexcept;
    /// Maps the elements linearly, the smallest to `lo` and the largest to `hi`. Returns 1. If all
    /// elements are equal, they become NaN.
    int normalise(double lo, double hi) noexcept;
    /// Returns a copy treated by normalise().
    [[nodiscard]] ZynMatrix4d getNormalised(double lo, double hi) const noexcept;

    /// Becomes the rotation of `q` and returns 1. Returns -1 and changes nothing if `q` is not
    /// normal.
    int fromQuad(ZynQuad q) noexcept;
    /// Sets `q` to the conjugate of the quaternion whose rotation this is, and returns 1. Returns
    /// -1 and changes nothing if this matrix is not valid.
    int toQuad(ZynQuad& q) const noexcept;

private:
    static constexpr std::ptrdiff_t rowStart(int r) noexcept { return std::ptrdiff_t(4) * r; }
};

/// Returns a new matrix: `m` with every element multiplied by `s`.
[[nodiscard]] ZYN_EXPORT ZynMatrix4d operator*(const ZynMatrix4d& m, double s) noexcept;
/// Returns the transformed point, with `inten` 0. Does not divide by a fourth coordinate.
[[nodiscard]] ZYN_EXPORT XPnt3d operator*(const ZynMatrix4d& m, const XPnt3d& p) noexcept;

/// The components of a quaternion, the scalar part first.
struct tagZynQuad {
    double w, x, y, z;  ///< without a value in a new one
};

/// A quaternion. Component 0 is w.
class ZYN_EXPORT ZynQuad : public tagZynQuad {
public:
    /// Makes an invalid quaternion.
    ZynQuad() noexcept;
    ZynQuad(const ZynQuad&) noexcept = default;
    /// Makes a quaternion of these components.
    ZynQuad(double w, double x, double y, double z) noexcept;
    /// Makes a quaternion of four doubles: w, x, y, z.
    explicit ZynQuad(const double* q) noexcept;
    ZynQuad(std::nullptr_t) = delete;
    virtual ~ZynQuad();

    /// Returns the Euclidean norm of the four components.
    [[nodiscard]] virtual double getNorm() const noexcept;
    /// Returns the square of getNorm().
    [[nodiscard]] virtual double getNorm2() const noexcept;
    /// Scales to norm 1. Returns 0 if the quaternion was normal already, otherwise 1. The zero
    /// quaternion becomes NaN.
    virtual std::int32_t normalize() noexcept;
    /// Returns whether the norm is 1 within 1e-6.
    [[nodiscard]] virtual bool isNormal() const noexcept;
    /// Returns whether no component is -2147483647.
    [[nodiscard]] virtual bool isValid() const noexcept;
    /// Makes every component invalid.
    virtual void setInvalid() noexcept;
    /// Sets the components. Returns 1.
    virtual std::int32_t setValue(double w, double x, double y, double z) noexcept;
    /// Sets the components from four doubles: w, x, y, z. Returns 1.
    virtual std::int32_t setValue(const double* q) noexcept;
    /// Returns a new array of w, x, y, z.
    [[nodiscard]] virtual DoubleArray* getValue() const;
    /// Writes the components into the arguments. Returns 0.
    virtual std::int32_t getValue(double& w, double& x, double& y, double& z) const noexcept;
    /// Returns component `i`: w, x, y, z. REQUIRES: 0 <= i <= 3.
    [[nodiscard]] virtual double& operator[](int i) noexcept;
    /// Sets the components from four doubles: w, x, y, z.
    virtual ZynQuad& operator=(const double* q) noexcept;
    /// Copies the components of `q`, as its operator[] returns them.
    virtual ZynQuad& operator=(const ZynQuad& q) noexcept;

    // Arithmetic in place. Each operator returns *this.

    /// Adds, subtracts, multiplies or divides by components, except where a comment says otherwise.
    /// @{
    virtual ZynQuad& operator+(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator-(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator*(double s) noexcept;
    /// Forms the Hamilton product *this q.
    virtual ZynQuad& operator*(const ZynQuad& q) noexcept;
    /// Multiplies by 1/s.
    virtual ZynQuad& operator/(double s) noexcept;
    virtual ZynQuad& operator+=(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator-=(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator*=(double s) noexcept;
    virtual ZynQuad& operator*=(const ZynQuad& q) noexcept;
    virtual ZynQuad& operator/=(double s) noexcept;
    /// @}

    /// Becomes the conjugate of the quaternion whose rotation `m` is, and returns 0. So
    /// fromMatrix() after toMatrix() yields (w, -x, -y, -z). If a row or column of `m` does not
    /// have length 1 (see ZynMatrix4d::isValid), returns -1, makes `m` invalid and leaves the
    /// quaternion unchanged.
    virtual std::int32_t fromMatrix(ZynMatrix4d& m) noexcept;
    /// Returns the rotation. First normalises this quaternion, unless it is normal.
    [[nodiscard]] virtual ZynMatrix4d toMatrix() noexcept;
    /// Sets `m` to the rotation in the same way. Returns 0.
    virtual std::int32_t toMatrix(ZynMatrix4d& m) noexcept;
    /// Multiplies from the left by the rotation of `angle`, in radians, about the axis (x, y, z).
    /// Returns 0. The axis is not normalised: unless its length is 1, the result is not normal.
    virtual std::int32_t rotate(float x, float y, float z, double angle) noexcept;

    // `q = {}`, `q = 0` and `setValue(nullptr)` do not compile.
    ZynQuad& operator=(std::nullptr_t) = delete;
    std::int32_t setValue(std::nullptr_t) = delete;
};

}  // namespace zyn
