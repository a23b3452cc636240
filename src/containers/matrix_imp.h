// The counted matrices, built on matrix<T>.
#pragma once

#include <zyn/matrix.h>

namespace zyn::detail {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as in matrix<T>

template <class Derived, MatrixElement T>
class MatrixImp final : public Derived, public matrix<T> {
public:
    using Value = matrix<T>;

    MatrixImp() = default;
    explicit MatrixImp(const Value& value) : Value(value) {}
    MatrixImp(const MatrixImp&) = delete;
    MatrixImp& operator=(const MatrixImp&) = delete;

    int rows() const override { return Value::rows(); }
    int cols() const override { return Value::cols(); }
    bool isInside(int row, int col) const override { return Value::isInside(row, col); }
    bool setSize(int rows, int cols, const T& value) override {
        return Value::setSize(rows, cols, value);
    }
    bool setSize(int rows, int cols) override { return Value::setSize(rows, cols); }
    bool reserved1() override { return false; }
    bool reserved2() override { return false; }
    bool reserved3() override { return false; }
    bool set(int row, int col, T value) override { return Value::set(row, col, value); }
    T get(int row, int col) const override { return Value::get(row, col); }
    T& getRef(int row, int col) override { return Value::getRef(row, col); }
    T* data() override { return Value::data(); }
    bool assign(Derived* other) override {
        const auto* const same = dynamic_cast<MatrixImp*>(other);
        return same != nullptr && Value::assign(*same);
    }
    bool assign(const Value& other) override { return Value::assign(other); }
    Derived* subMatrix(int firstRow, int lastRow, int firstCol, int lastCol) const override {
        return newMatrix(Value::subMatrix(firstRow, lastRow, firstCol, lastCol));
    }
    Derived* flippedUpDown() const override { return newMatrix(Value::flippedUpDown()); }
    bool flipUpDown() override { return Value::flipUpDown(); }
    Derived* flippedLeftRight() const override { return newMatrix(Value::flippedLeftRight()); }
    bool flipLeftRight() override { return Value::flipLeftRight(); }
    bool minorOf(int row, int col) override { return Value::minorOf(row, col); }
    T rowSum(int row) const override { return Value::rowSum(row); }
    T colSum(int col) const override { return Value::colSum(col); }
    double sum() const override { return Value::sum(); }
    T rowSumSquared(int row) const override { return Value::rowSumSquared(row); }
    T colSumSquared(int col) const override { return Value::colSumSquared(col); }
    T colMin(int col) const override { return Value::colMin(col); }
    T colMax(int col) const override { return Value::colMax(col); }
    T rowMin(int row) const override { return Value::rowMin(row); }
    T rowMax(int row) const override { return Value::rowMax(row); }
    Derived* transposed() const override { return newMatrix(Value::transposed()); }
    void transpose() override { Value::transpose(); }
    Derived* inverse() const override { return newMatrix(Value::inverse()); }
    bool invert() override { return Value::invert(); }
    bool setIdentity() override { return Value::setIdentity(); }
    bool setZero() override { return Value::setZero(); }
    Derived* timesTranspose() const override { return newMatrix(Value::timesTranspose()); }
    Derived* normalized(T low, T high) const override {
        return newMatrix(Value::normalized(low, high));
    }
    void normalize(T low, T high) override { Value::normalize(low, high); }
    void getMinMax(T& min, T& max) const override { Value::getMinMax(min, max); }

private:
    static Derived* newMatrix(const Value& value) { return new MatrixImp(value); }
};

#pragma GCC diagnostic pop

}  // namespace zyn::detail
