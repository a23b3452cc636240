/// @file
/// Dense matrices: a value template, and counted matrices that cross the library's boundary.
///
/// `matrix<T>` is a plain value with storage of its own. MatrixByte, MatrixChar, MatrixInt,
/// MatrixLong, MatrixFlt and MatrixDbl are counted interfaces over it. They have the same
/// operations in the same order (TypedMatrix), and factories that make them with count 0. Elements
/// are stored row by row; indices count from 0; the smallest matrix is 1 x 1. Integer elements wrap
/// around.
///
///     auto m = make<MatrixDbl>();                  // a ref_ptr
///     m->setSize(2, 2);
///     m->set(0, 0, 2.0);
///     m->set(1, 1, 4.0);
///     ref_ptr<MatrixDbl> back = m->inverse();      // 0.5 and 0.25 on the diagonal
///
///     matrix<double> a(3, 3), b(3, 1);
///     a.setIdentity();
///     matrix<double> x = a * b;
///     m->assign(x);                                // and m->toMatrix() for the way back
///
/// Errors: an operation throws a plain string (`char*`) if its matrix must be square and is not, or
/// if sizes do not match. Only invert() returns false instead. If allocation fails, an operation
/// throws std::bad_alloc and leaves every matrix unchanged.
///
/// Ownership: an operation that returns a new counted matrix does not change its own; the new one
/// is the caller's, with count 0.
///
/// Threads: use a matrix on one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

namespace zyn {

// A matrix is a value: nothing is ever deleted through a pointer to matrix<T>.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The element types of the library's matrices.
template <class T>
concept MatrixElement =
    std::same_as<T, unsigned char> || std::same_as<T, char> || std::same_as<T, std::int32_t> ||
    std::same_as<T, float> || std::same_as<T, double>;

/// A matrix of T: unsigned char, char, int, std::int32_t, float or double.
template <MatrixElement T>
class matrix {
public:
    /// Makes a 1 x 1 matrix with the element 0.
    matrix();
    /// Makes a matrix of zeros. A size below 1 counts as 1.
    matrix(int rows, int cols);
    /// Copies shape and elements.
    /// @{
    matrix(const matrix& other);
    matrix& operator=(const matrix& other);
    /// @}

    /// Returns whether there is storage: always true.
    [[nodiscard]] virtual bool isValid() const noexcept;

    /// Returns the number of rows or columns, at least 1.
    /// @{
    [[nodiscard]] int rows() const noexcept { return rowCount; }
    [[nodiscard]] int cols() const noexcept { return colCount; }
    /// @}
    /// Returns the elements, row by row. Valid until the shape is set or assigned.
    /// @{
    [[nodiscard]] T* data() noexcept { return elements.get(); }
    [[nodiscard]] const T* data() const noexcept { return elements.get(); }
    /// @}
    /// Returns whether element (row, col) exists.
    [[nodiscard]] bool isInside(int row, int col) const noexcept {
        return row >= 0 && row < rowCount && col >= 0 && col < colCount;
    }

    // Elements

    /// Returns element (row, col). REQUIRES: isInside(row, col).
    /// @{
    [[nodiscard]] T get(int row, int col) const noexcept { return elements[at(row, col)]; }
    [[nodiscard]] T& getRef(int row, int col) noexcept { return elements[at(row, col)]; }
    /// @}
    /// Sets element (row, col). Returns false and changes nothing if it does not exist.
    bool set(int row, int col, T value) noexcept;
    /// Makes all elements 0 and sets the shape, which may be the same. Returns false and changes
    /// nothing for a size below 1.
    bool setSize(int rows, int cols);
    /// Fills all elements with `value` and sets the shape. Returns false and changes nothing for a
    /// size below 1.
    bool setSize(int rows, int cols, const T& value);
    /// Copies shape and elements, and returns true. Assigning a matrix to itself changes nothing.
    bool assign(const matrix& other);
    /// Makes the identity matrix, and returns true. Throws "matrix<T> must be square." if the
    /// matrix is not square.
    bool setIdentity();
    /// Sets all elements to 0, and returns true.
    bool setZero() noexcept;

    // Parts and orders

    /// Returns a copy of the rectangle, both ends of both ranges included. Returns a 1 x 1 matrix
    /// with the element 0 if a range is empty or goes outside.
    [[nodiscard]] matrix subMatrix(int firstRow, int lastRow, int firstCol, int lastCol) const;
    /// Reverses the order of the rows, or of the columns: returns a copy, or works in place and
    /// returns true.
    /// @{
    [[nodiscard]] matrix flippedUpDown() const;
    bool flipUpDown() noexcept;
    [[nodiscard]] matrix flippedLeftRight() const;
    bool flipLeftRight() noexcept;
    /// @}
    /// Returns false and does nothing. The function only keeps its place in the interface.
    bool minorOf(int row, int col) const noexcept;
    /// Exchanges rows and columns: returns a copy, or works in place.
    /// @{
    [[nodiscard]] matrix transposed() const;
    void transpose();
    /// @}

    // Sums and extremes. REQUIRES: the row or column exists.

    /// Returns the sum of a row or column, added in T from the first element on.
    /// @{
    [[nodiscard]] T rowSum(int row) const noexcept;
    [[nodiscard]] T colSum(int col) const noexcept;
    /// @}
    /// Returns the sum of all elements: the sums of the rows, added in double.
    [[nodiscard]] double sum() const noexcept;
    /// Returns the square of the sum of a row or column, not a sum of squares.
    /// @{
    [[nodiscard]] T rowSumSquared(int row) const noexcept;
    [[nodiscard]] T colSumSquared(int col) const noexcept;
    /// @}
    /// Returns the smallest or the largest element.
    /// @{
    [[nodiscard]] T colMin(int col) const noexcept;
    [[nodiscard]] T colMax(int col) const noexcept;
    [[nodiscard]] T rowMin(int row) const noexcept;
    [[nodiscard]] T rowMax(int row) const noexcept;
    void getMinMax(T& min, T& max) const noexcept;
    /// @}

    // Algebra

    /// Returns a copy treated by invert(), which may have failed. Throws "matrix<T> must be
    /// square." if the matrix is not square.
    [[nodiscard]] matrix inverse() const;
    /// Inverts in place, by Gauss-Jordan elimination with full pivoting and without a tolerance.
    /// Returns false if the matrix is not square, and changes nothing. Returns false if the matrix
    /// is singular, prints "invert is not availble!\n" to standard output, and leaves the elements
    /// half processed. The inverse of an integer matrix has a meaning only if all pivots are 1 or
    /// -1.
    bool invert();
    /// Returns the product with the transpose, of size rows() x rows().
    [[nodiscard]] matrix timesTranspose() const;
    /// Returns the product. Throws "Matrices do not have common size" unless a.cols() is b.rows().
    [[nodiscard]] friend matrix operator*(const matrix& a, const matrix& b) {
        return product(a, b);
    }
    /// Maps the elements linearly, the smallest to `low` and the largest to `high`: (x - min) /
    /// (max - min) * (high - low) + low. On integers the quotient truncates, so all elements except
    /// the largest become `low`. If all elements are equal, floats become NaN and integers become
    /// `low`.
    void normalize(T low, T high) noexcept;
    /// Returns a copy treated by normalize().
    [[nodiscard]] matrix normalized(T low, T high) const;

private:
    [[nodiscard]] std::size_t at(int row, int col) const noexcept {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(colCount) +
               static_cast<std::size_t>(col);
    }
    [[nodiscard]] std::size_t size() const noexcept { return at(rowCount, 0); }
    void requireSquare() const;
    static matrix product(const matrix& a, const matrix& b);

    std::int32_t rowCount;
    std::int32_t colCount;
    std::unique_ptr<T[]> elements;
};

extern template class ZYN_EXPORT matrix<unsigned char>;
extern template class ZYN_EXPORT matrix<char>;
extern template class ZYN_EXPORT matrix<int>;
extern template class ZYN_EXPORT matrix<float>;
extern template class ZYN_EXPORT matrix<double>;

#pragma GCC diagnostic pop

/// The interface of the counted matrix of T whose class is Derived. matrix<T> documents the
/// operations.
template <class Derived, MatrixElement T>
class ZYN_EXPORT TypedMatrix : public ZynReferenced {
public:
    /// The element type, named as in standard containers.
    using value_type = T;

    TypedMatrix() = default;
    TypedMatrix(const TypedMatrix&) = default;
    TypedMatrix& operator=(const TypedMatrix&) = default;
    ~TypedMatrix() override = default;

    /// Does what the function of that name in matrix<T> does.
    /// @{
    [[nodiscard]] virtual int rows() const = 0;
    [[nodiscard]] virtual int cols() const = 0;
    [[nodiscard]] virtual bool isInside(int row, int col) const = 0;
    virtual bool setSize(int rows, int cols, const T& value) = 0;
    virtual bool setSize(int rows, int cols) = 0;
    /// @}
    /// Returns false. The functions only keep their places in the interface.
    /// @{
    virtual bool reserved1() = 0;
    virtual bool reserved2() = 0;
    virtual bool reserved3() = 0;
    /// @}
    /// Does what the function of that name in matrix<T> does.
    /// @{
    virtual bool set(int row, int col, T value) = 0;
    [[nodiscard]] virtual T get(int row, int col) const = 0;
    [[nodiscard]] virtual T& getRef(int row, int col) = 0;
    [[nodiscard]] virtual T* data() = 0;
    /// @}
    /// Copies shape and elements, and returns true. Returns false and changes nothing for null, and
    /// for an object that is not the library's.
    virtual bool assign(Derived* other) = 0;
    /// Does what the function of that name in matrix<T> does. A result is new, with count 0.
    /// @{
    virtual bool assign(const matrix<T>& other) = 0;
    [[nodiscard]] virtual Derived* subMatrix(int firstRow, int lastRow, int firstCol,
                                             int lastCol) const = 0;
    [[nodiscard]] virtual Derived* flippedUpDown() const = 0;
    virtual bool flipUpDown() = 0;
    [[nodiscard]] virtual Derived* flippedLeftRight() const = 0;
    virtual bool flipLeftRight() = 0;
    virtual bool minorOf(int row, int col) = 0;
    [[nodiscard]] virtual T rowSum(int row) const = 0;
    [[nodiscard]] virtual T colSum(int col) const = 0;
    [[nodiscard]] virtual double sum() const = 0;
    [[nodiscard]] virtual T rowSumSquared(int row) const = 0;
    [[nodiscard]] virtual T colSumSquared(int col) const = 0;
    [[nodiscard]] virtual T colMin(int col) const = 0;
    [[nodiscard]] virtual T colMax(int col) const = 0;
    [[nodiscard]] virtual T rowMin(int row) const = 0;
    [[nodiscard]] virtual T rowMax(int row) const = 0;
    [[nodiscard]] virtual Derived* transposed() const = 0;
    virtual void transpose() = 0;
    [[nodiscard]] virtual Derived* inverse() const = 0;
    virtual bool invert() = 0;
    virtual bool setIdentity() = 0;
    virtual bool setZero() = 0;
    [[nodiscard]] virtual Derived* timesTranspose() const = 0;
    [[nodiscard]] virtual Derived* normalized(T low, T high) const = 0;
    virtual void normalize(T low, T high) = 0;
    virtual void getMinMax(T& min, T& max) const = 0;
    /// @}

    // Not virtual

    /// Returns whether there is storage.
    [[nodiscard]] bool isValid() const { return data() != nullptr; }
    /// Returns the elements, row by row, for reading. Valid until the shape is set or assigned.
    [[nodiscard]] const T* data() const { return const_cast<TypedMatrix*>(this)->data(); }
    /// Returns a value with this shape and these elements; assign() converts back.
    [[nodiscard]] matrix<T> toMatrix() const {
        matrix<T> value(rows(), cols());
        std::copy_n(data(), static_cast<std::size_t>(rows()) * static_cast<std::size_t>(cols()),
                    value.data());
        return value;
    }
};

/// Declares the matrix class `Name` of `Element` and its factory.
#define ZYN_MATRIX(Name, ...)                                                 \
    class Name;                                                               \
    [[nodiscard]] ZYN_EXPORT Name* new##Name();                               \
    constexpr auto factoryOf(std::type_identity<Name>) { return &new##Name; } \
    class ZYN_EXPORT Name : public TypedMatrix<Name, __VA_ARGS__> {}

ZYN_MATRIX(MatrixByte, unsigned char);
ZYN_MATRIX(MatrixChar, char);
ZYN_MATRIX(MatrixInt, int);
ZYN_MATRIX(MatrixLong, std::int32_t);
ZYN_MATRIX(MatrixFlt, float);
ZYN_MATRIX(MatrixDbl, double);

}  // namespace zyn
