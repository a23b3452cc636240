#include "containers/gauss_jordan.h"
#include "containers/matrix_imp.h"
#include "core/wrapping.h"

#include <algorithm>
#include <concepts>
#include <vector>

namespace zyn {

using namespace detail;

using wrapping::plus;
using wrapping::times;

namespace {

/// Throws `text` as a `char*`, the type that callers catch.
[[noreturn]] void throwText(char* text) { throw text; }

char mustBeSquare[] = "matrix<T> must be square.";
char noCommonSize[] = "Matrices do not have common size";

template <MatrixElement T>
std::unique_ptr<T[]> zeros(int rows, int cols) {
    return std::make_unique<T[]>(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols));
}

}  // namespace

template <MatrixElement T>
matrix<T>::matrix() : matrix(1, 1) {}

template <MatrixElement T>
matrix<T>::matrix(int rows, int cols)
    : rowCount(std::max(rows, 1)),
      colCount(std::max(cols, 1)),
      elements(zeros<T>(rowCount, colCount)) {}

template <MatrixElement T>
matrix<T>::matrix(const matrix& other) : matrix(other.rowCount, other.colCount) {
    std::copy_n(other.data(), size(), data());
}

template <MatrixElement T>
matrix<T>& matrix<T>::operator=(const matrix& other) {
    assign(other);
    return *this;
}

template <MatrixElement T>
bool matrix<T>::isValid() const noexcept {
    return elements != nullptr;
}

template <MatrixElement T>
bool matrix<T>::set(int row, int col, T value) noexcept {
    if (!isInside(row, col)) { return false; }
    getRef(row, col) = value;
    return true;
}

template <MatrixElement T>
bool matrix<T>::setSize(int rows, int cols) {
    if (rows < 1 || cols < 1) { return false; }
    elements = zeros<T>(rows, cols);
    rowCount = rows;
    colCount = cols;
    return true;
}

template <MatrixElement T>
bool matrix<T>::setSize(int rows, int cols, const T& value) {
    const T filler = value;  // which may be an element of this matrix
    if (!setSize(rows, cols)) { return false; }
    std::fill_n(data(), size(), filler);
    return true;
}

template <MatrixElement T>
bool matrix<T>::assign(const matrix& other) {
    if (this == &other) { return true; }
    setSize(other.rowCount, other.colCount);
    std::copy_n(other.data(), size(), data());
    return true;
}

template <MatrixElement T>
bool matrix<T>::setIdentity() {
    requireSquare();
    setZero();
    for (int i = 0; i < rowCount; ++i) { getRef(i, i) = T(1); }
    return true;
}

template <MatrixElement T>
bool matrix<T>::setZero() noexcept {
    std::fill_n(data(), size(), T(0));
    return true;
}

template <MatrixElement T>
void matrix<T>::requireSquare() const {
    if (rowCount != colCount) { throwText(mustBeSquare); }
}

template <MatrixElement T>
matrix<T> matrix<T>::subMatrix(int firstRow, int lastRow, int firstCol, int lastCol) const {
    if (firstRow > lastRow || firstCol > lastCol || !isInside(firstRow, firstCol) ||
        !isInside(lastRow, lastCol)) {
        return {};
    }
    matrix result(lastRow - firstRow + 1, lastCol - firstCol + 1);
    for (int r = 0; r < result.rowCount; ++r) {
        std::copy_n(&elements[at(firstRow + r, firstCol)], result.colCount,
                    &result.elements[result.at(r, 0)]);
    }
    return result;
}

template <MatrixElement T>
matrix<T> matrix<T>::flippedUpDown() const {
    matrix result(*this);
    result.flipUpDown();
    return result;
}

template <MatrixElement T>
bool matrix<T>::flipUpDown() noexcept {
    for (int r = 0; r < rowCount / 2; ++r) {
        std::swap_ranges(data() + at(r, 0), data() + at(r + 1, 0),
                         data() + at(rowCount - 1 - r, 0));
    }
    return true;
}

template <MatrixElement T>
matrix<T> matrix<T>::flippedLeftRight() const {
    matrix result(*this);
    result.flipLeftRight();
    return result;
}

template <MatrixElement T>
bool matrix<T>::flipLeftRight() noexcept {
    for (int r = 0; r < rowCount; ++r) { std::reverse(&elements[at(r, 0)], data() + at(r + 1, 0)); }
    return true;
}

template <MatrixElement T>
bool matrix<T>::minorOf(int, int) const noexcept {
    return false;
}

template <MatrixElement T>
matrix<T> matrix<T>::transposed() const {
    matrix result(colCount, rowCount);
    for (int r = 0; r < rowCount; ++r) {
        for (int c = 0; c < colCount; ++c) { result.getRef(c, r) = get(r, c); }
    }
    return result;
}

template <MatrixElement T>
void matrix<T>::transpose() {
    assign(transposed());
}

template <MatrixElement T>
T matrix<T>::rowSum(int row) const noexcept {
    T result = 0;
    for (int c = 0; c < colCount; ++c) { result = plus(result, get(row, c)); }
    return result;
}

template <MatrixElement T>
T matrix<T>::colSum(int col) const noexcept {
    T result = 0;
    for (int r = 0; r < rowCount; ++r) { result = plus(result, get(r, col)); }
    return result;
}

template <MatrixElement T>
double matrix<T>::sum() const noexcept {
    double result = 0;
    for (int r = 0; r < rowCount; ++r) { result += static_cast<double>(rowSum(r)); }
    return result;
}

template <MatrixElement T>
T matrix<T>::rowSumSquared(int row) const noexcept {
    return times(rowSum(row), rowSum(row));
}

template <MatrixElement T>
T matrix<T>::colSumSquared(int col) const noexcept {
    return times(colSum(col), colSum(col));
}

template <MatrixElement T>
T matrix<T>::colMin(int col) const noexcept {
    T result = get(0, col);
    for (int r = 1; r < rowCount; ++r) { result = std::min(result, get(r, col)); }
    return result;
}

template <MatrixElement T>
T matrix<T>::colMax(int col) const noexcept {
    T result = get(0, col);
    for (int r = 1; r < rowCount; ++r) { result = std::max(result, get(r, col)); }
    return result;
}

template <MatrixElement T>
T matrix<T>::rowMin(int row) const noexcept {
    return *std::min_element(data() + at(row, 0), data() + at(row + 1, 0));
}

template <MatrixElement T>
T matrix<T>::rowMax(int row) const noexcept {
    return *std::max_element(data() + at(row, 0), data() + at(row + 1, 0));
}

template <MatrixElement T>
void matrix<T>::getMinMax(T& min, T& max) const noexcept {
    T smallest = elements[0], largest = elements[0];
    for (std::size_t i = 1; i < size(); ++i) {
        if (elements[i] < smallest) {
            smallest = elements[i];
        } else if (elements[i] > largest) {
            largest = elements[i];
        }
    }
    min = smallest;
    max = largest;
}

template <MatrixElement T>
matrix<T> matrix<T>::inverse() const {
    requireSquare();
    matrix result(*this);
    result.invert();
    return result;
}

template <MatrixElement T>
bool matrix<T>::invert() {
    if (rowCount != colCount) { return false; }
    std::vector<typename GaussJordan<T>::Pivot> pivots(static_cast<std::size_t>(rowCount));
    return GaussJordan<T>(data(), rowCount, pivots.data()).invert();
}

template <MatrixElement T>
matrix<T> matrix<T>::timesTranspose() const {
    return product(*this, transposed());
}

template <MatrixElement T>
matrix<T> matrix<T>::product(const matrix& a, const matrix& b) {
    if (a.colCount != b.rowCount) { throwText(noCommonSize); }
    matrix result(a.rowCount, b.colCount);
    for (int i = 0; i < a.rowCount; ++i) {
        // Row by row of b, which is fast; each element still sums k upwards.
        for (int k = 0; k < a.colCount; ++k) {
            const T factor = a.get(i, k);
            for (int j = 0; j < b.colCount; ++j) {
                result.getRef(i, j) = plus(result.get(i, j), times(factor, b.get(k, j)));
            }
        }
    }
    return result;
}

template <MatrixElement T>
void matrix<T>::normalize(T low, T high) noexcept {
    T min = 0, max = 0;
    getMinMax(min, max);
    for (std::size_t i = 0; i < size(); ++i) {
        T& x = elements[i];
        if constexpr (std::integral<T>) {
            x = x == max && min != max ? high : low;  // the quotient is 1 there, elsewhere 0
        } else {
            x = (x - min) / (max - min) * (high - low) + low;
        }
    }
}

template <MatrixElement T>
matrix<T> matrix<T>::normalized(T low, T high) const {
    matrix result(*this);
    result.normalize(low, high);
    return result;
}

template class matrix<unsigned char>;
template class matrix<char>;
template class matrix<int>;
template class matrix<float>;
template class matrix<double>;

MatrixByte* newMatrixByte() { return new MatrixImp<MatrixByte, unsigned char>; }
MatrixChar* newMatrixChar() { return new MatrixImp<MatrixChar, char>; }
MatrixInt* newMatrixInt() { return new MatrixImp<MatrixInt, int>; }
MatrixLong* newMatrixLong() { return new MatrixImp<MatrixLong, std::int32_t>; }
MatrixFlt* newMatrixFlt() { return new MatrixImp<MatrixFlt, float>; }
MatrixDbl* newMatrixDbl() { return new MatrixImp<MatrixDbl, double>; }

}  // namespace zyn
