/// @file
/// Dense matrices: a value template, and counted matrices that cross the library's boundary.
///
/// `matrix<T>` is a plain value with storage of its own. MatrixByte, MatrixChar, MatrixInt,
/// MatrixLong, MatrixFlt and MatrixDbl are counted interfaces over it, all with the same operations
/// in the same order (TypedMatrix), made by factories with count 0. Elements stand row by row;
/// indices count from 0; the smallest matrix is 1 x 1. Integer elements wrap around. An operation
/// that gives a new counted matrix leaves the one it was called on alone, and the new one is the
/// caller's. A matrix is for one thread at a time.
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
/// Operations on matrices that are not square where they have to be, and products of sizes that do
/// not match, throw a plain string: a `char*`. Without memory std::bad_alloc is thrown, and every matrix
/// stays as it was.
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

/// The element types that the library has matrices of.
template <class T>
concept MatrixElement =
    std::same_as<T, unsigned char> || std::same_as<T, char> || std::same_as<T, std::int32_t> ||
    std::same_as<T, float> || std::same_as<T, double>;

/// A matrix of T: unsigned char, char, int, std::int32_t, float or double.
template <MatrixElement T>
class matrix {
public:
    /// 1 x 1, the element 0.
    matrix();
    /// Zeros. A size below 1 counts as 1.
    matrix(int rows, int cols);
    /// Copies shape and elements.
    /// @{
    matrix(const matrix& other);
    matrix& operator=(const matrix& other);
    /// @}

    /// Whether there is storage: always true.
    [[nodiscard]] virtual bool isValid() const noexcept;

    /// The shape, 1 at least.
    /// @{
    [[nodiscard]] int rows() const noexcept { return rowCount; }
    [[nodiscard]] int cols() const noexcept { return colCount; }
    /// @}
    /// The elements, row by row, valid until the shape is set or assigned.
    /// @{
    [[nodiscard]] T* data() noexcept { return elements.get(); }
    [[nodiscard]] const T* data() const noexcept { return elements.get(); }
    /// @}
    /// Whether there is such an element.
    [[nodiscard]] bool isInside(int row, int col) const noexcept {
        return row >= 0 && row < rowCount && col >= 0 && col < colCount;
    }

    // Elements

    /// Unchecked.
    /// @{
    [[nodiscard]] T get(int row, int col) const noexcept { return elements[at(row, col)]; }
    [[nodiscard]] T& getRef(int row, int col) noexcept { return elements[at(row, col)]; }
    /// @}
    /// False, with nothing changed, outside.
    bool set(int row, int col, T value) noexcept;
    /// Zeros of a new shape, also when the shape stays. False, with nothing changed, for a size
    /// below 1.
    bool setSize(int rows, int cols);
    /// The same, filled with `value`.
    bool setSize(int rows, int cols, const T& value);
    /// Takes over shape and elements; true. Assigning a matrix to itself changes nothing.
    bool assign(const matrix& other);
    /// True. Throws "matrix<T> must be square." if it is not.
    bool setIdentity();
    /// True.
    bool setZero() noexcept;

    // Parts and orders

    /// A copy of the rectangle, both ends of both ranges included; 1 x 1 with the element 0 when a
    /// range is empty or reaches outside.
    [[nodiscard]] matrix subMatrix(int firstRow, int lastRow, int firstCol, int lastCol) const;
    /// The rows, or the columns, in reverse order: a copy, or in place with true.
    /// @{
    [[nodiscard]] matrix flippedUpDown() const;
    bool flipUpDown() noexcept;
    [[nodiscard]] matrix flippedLeftRight() const;
    bool flipLeftRight() noexcept;
    /// @}
    /// Holds its place; false, and nothing is done.
    bool minorOf(int row, int col) const noexcept;
    /// Rows and columns exchanged: a copy, or in place.
    /// @{
    [[nodiscard]] matrix transposed() const;
    void transpose();
    /// @}

    // Sums and extremes. Indices are unchecked.

    /// Added in T, from the first element on.
    /// @{
    [[nodiscard]] T rowSum(int row) const noexcept;
    [[nodiscard]] T colSum(int col) const noexcept;
    /// @}
    /// The sums of the rows, added in double.
    [[nodiscard]] double sum() const noexcept;
    /// The square of the sum, not a sum of squares.
    /// @{
    [[nodiscard]] T rowSumSquared(int row) const noexcept;
    [[nodiscard]] T colSumSquared(int col) const noexcept;
    /// @}
    /// Smallest and largest element.
    /// @{
    [[nodiscard]] T colMin(int col) const noexcept;
    [[nodiscard]] T colMax(int col) const noexcept;
    [[nodiscard]] T rowMin(int row) const noexcept;
    [[nodiscard]] T rowMax(int row) const noexcept;
    void getMinMax(T& min, T& max) const noexcept;
    /// @}

    // Algebra

    /// A copy treated by invert(), whatever that answers. Throws "matrix<T> must be square." if it
    /// is not.
    [[nodiscard]] matrix inverse() const;
    /// Inverts in place by Gauss-Jordan elimination with full pivoting and without a tolerance.
    /// False when the matrix is not square, and, with "invert is not availble!\n" on standard
    /// output and the matrix as the elimination left it, when it is singular. Of integer matrices
    /// only those with pivots 1 and -1 have a meaningful inverse.
    bool invert();
    /// The product with the transpose: rows() x rows().
    [[nodiscard]] matrix timesTranspose() const;
    /// Throws "Matrices do not have common size" unless a.cols() is b.rows().
    [[nodiscard]] friend matrix operator*(const matrix& a, const matrix& b) {
        return product(a, b);
    }
    /// Maps the elements linearly, the smallest to `low` and the largest to `high`: (x - min) /
    /// (max - min) * (high - low) + low. On integers the quotient truncates, so that all but the
    /// largest become `low`. On equal elements floats become NaN, integers `low`.
    void normalize(T low, T high) noexcept;
    /// A copy treated by normalize().
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

/// The interface of the counted matrix of T whose class is Derived; matrix<T> documents what the
/// operations do.
template <class Derived, MatrixElement T>
class ZYN_EXPORT TypedMatrix : public ZynReferenced {
public:
    /// The element, as standard containers call it.
    using value_type = T;

    TypedMatrix() = default;
    TypedMatrix(const TypedMatrix&) = default;
    TypedMatrix& operator=(const TypedMatrix&) = default;
    ~TypedMatrix() override = default;

    /// As in matrix.
    /// @{
    [[nodiscard]] virtual int rows() const = 0;
    [[nodiscard]] virtual int cols() const = 0;
    [[nodiscard]] virtual bool isInside(int row, int col) const = 0;
    virtual bool setSize(int rows, int cols, const T& value) = 0;
    virtual bool setSize(int rows, int cols) = 0;
    /// @}
    /// Hold their places; false.
    /// @{
    virtual bool reserved1() = 0;
    virtual bool reserved2() = 0;
    virtual bool reserved3() = 0;
    /// @}
    /// As in matrix.
    /// @{
    virtual bool set(int row, int col, T value) = 0;
    [[nodiscard]] virtual T get(int row, int col) const = 0;
    [[nodiscard]] virtual T& getRef(int row, int col) = 0;
    [[nodiscard]] virtual T* data() = 0;
    /// @}
    /// False, with nothing changed, for null and for an object that is not the library's.
    virtual bool assign(Derived* other) = 0;
    /// As in matrix. A result is new, with count 0.
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
    /// Returns the elements, row by row, to be read. Valid until the shape is set or assigned.
    [[nodiscard]] const T* data() const { return const_cast<TypedMatrix*>(this)->data(); }
    /// Returns a value with this shape and these elements; assign() is the way back.
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
