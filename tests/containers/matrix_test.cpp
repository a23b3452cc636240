// Matrices of all element types, and against an independent library.
#include <zyn/matrix.h>

#include <gtest/gtest.h>

#include <armadillo>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "seed.h"

namespace {

using namespace zyn;

template <class T>
matrix<T> make(int rows, int cols, const std::vector<T>& elements) {
    matrix<T> m(rows, cols);
    std::copy(elements.begin(), elements.end(), m.data());
    return m;
}
template <class T>
std::vector<T> elements(matrix<T> m) {
    return {m.data(), m.data() + m.rows() * m.cols()};
}
MatrixByte* newMatrix(MatrixByte*) { return newMatrixByte(); }
MatrixChar* newMatrix(MatrixChar*) { return newMatrixChar(); }
MatrixInt* newMatrix(MatrixInt*) { return newMatrixInt(); }
MatrixLong* newMatrix(MatrixLong*) { return newMatrixLong(); }
MatrixFlt* newMatrix(MatrixFlt*) { return newMatrixFlt(); }
MatrixDbl* newMatrix(MatrixDbl*) { return newMatrixDbl(); }

template <class Operation>
std::string thrownBy(Operation operation) {
    try {
        operation();
    } catch (const char* text) { return text; }
    return "nothing";
}

TEST(Matrix, InverseAndProductAreThoseOfAnotherLibrary) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution element(-1.0, 1.0);
    for (const int n : {1, 2, 3, 7, 20}) {
        arma::mat a(unsigned(n), unsigned(n + 2)), b(unsigned(n + 2), unsigned(n));
        matrix<double> za(n, n + 2), zb(n + 2, n);
        const auto fill = [&](arma::mat& m, matrix<double>& z) {
            for (int i = 0; i < z.rows() * z.cols(); ++i) {
                z.data()[i] = m(unsigned(i / z.cols()), unsigned(i % z.cols())) = element(random);
            }
        };
        fill(a, za);
        fill(b, zb);
        const auto expectNear = [](const matrix<double>& z, const arma::mat& m, double tolerance) {
            for (int r = 0; r < z.rows(); ++r) {
                for (int c = 0; c < z.cols(); ++c) {
                    EXPECT_NEAR(z.get(r, c), m(unsigned(r), unsigned(c)), tolerance);
                }
            }
        };
        const arma::mat square = a * b;
        const matrix<double> zsquare = za * zb;
        expectNear(zsquare, square, 1e-14);
        expectNear(za.timesTranspose(), a * a.t(), 1e-14);
        if (arma::cond(square) < 1e4) {
            const matrix<double> unit = zsquare.inverse() * zsquare;
            expectNear(unit, arma::eye(arma::size(square)), 1e-10);
            expectNear(zsquare.inverse(), arma::inv(square), 1e-7);
        }
    }
}

template <class M>
class CountedMatrix : public testing::Test {};
using MatrixClasses =
    testing::Types<MatrixByte, MatrixChar, MatrixInt, MatrixLong, MatrixFlt, MatrixDbl>;
TYPED_TEST_SUITE(CountedMatrix, MatrixClasses);

TYPED_TEST(CountedMatrix, DoesWhatItsValueDoes) {
    using T = typename TypeParam::value_type;
    const ref_ptr<TypeParam> m = newMatrix(static_cast<TypeParam*>(nullptr));
    const matrix<T> value = make<T>(3, 3, {1, 1, 0, 2, 1, 5, 0, 0, 1});
    ASSERT_TRUE(m->assign(value));
    const auto expectSame = [](TypeParam* made, const matrix<T>& expected) {
        const ref_ptr<TypeParam> held = made;
        EXPECT_EQ(held->rows() * 10 + held->cols(), expected.rows() * 10 + expected.cols());
        EXPECT_EQ(std::vector<T>(held->data(), held->data() + held->rows() * held->cols()),
                  elements(expected));
    };
    expectSame(m->subMatrix(1, 2, 0, 2), value.subMatrix(1, 2, 0, 2));
    expectSame(m->flippedUpDown(), make<T>(3, 3, {0, 0, 1, 2, 1, 5, 1, 1, 0}));
    expectSame(m->flippedLeftRight(), make<T>(3, 3, {0, 1, 1, 5, 1, 2, 1, 0, 0}));
    expectSame(m->transposed(), value.transposed());
    expectSame(m->inverse(), value.inverse());
    expectSame(m->timesTranspose(), make<T>(3, 3, {2, 3, 0, 3, 30, 5, 0, 5, 1}));
    expectSame(m->normalized(1, 4), value.normalized(1, 4));
    EXPECT_TRUE(m->rowSum(1) == 8 && m->colSum(2) == 6 && m->sum() == 11);
    EXPECT_TRUE(m->rowSumSquared(0) == 4 && m->colSumSquared(0) == 9);
    EXPECT_TRUE(m->rowMin(1) == 1 && m->rowMax(1) == 5 && m->colMin(1) == 0 && m->colMax(0) == 2);
    T least = 9, most = 9;
    m->getMinMax(least, most);
    EXPECT_TRUE(least == 0 && most == 5);
    EXPECT_FALSE(m->reserved1() || m->reserved2() || m->reserved3() || m->minorOf(0, 0));
    EXPECT_TRUE(m->flipUpDown() && m->flipLeftRight() && m->get(0, 0) == 1 && m->get(1, 2) == 2);
    m->transpose();
    EXPECT_EQ(m->get(2, 1), 2);
    m->normalize(0, 1);
    EXPECT_EQ(m->getRef(0, 1), 1);
    EXPECT_TRUE(m->setIdentity() && m->invert() && m->get(2, 2) == 1 && m->get(0, 2) == 0);
    EXPECT_TRUE(m->setZero() && m->sum() == 0 && m->isInside(2, 2) && !m->isInside(2, 3));
    EXPECT_TRUE(m->set(2, 0, 7) && m->data()[6] == 7 && m->setSize(1, 2) && m->isValid());
}

TEST(Matrix, ShapesChangeAndRefuse) {
    const ref_ptr<MatrixDbl> m = newMatrixDbl();
    EXPECT_TRUE(m->rows() == 1 && m->cols() == 1 && m->get(0, 0) == 0 && m->isValid());
    EXPECT_TRUE(m->setSize(2, 3, 7.0) && m->getRef(1, 2) == 7);
    EXPECT_TRUE(m->setSize(3, 2, m->getRef(1, 2)) && m->get(2, 1) == 7);  // of its own
    EXPECT_FALSE(m->setSize(0, 5) || m->setSize(5, -1) || m->set(3, 0, 1) || m->set(0, -1, 1));
    EXPECT_THROW(m->setSize(1 << 30, 1 << 30), std::bad_alloc);
    EXPECT_EQ(m->sum(), 42);
    EXPECT_TRUE(m->assign(m.get()) && m->assign(matrix<double>(m->rows(), 1)));
    EXPECT_EQ(m->sum() * 10 + m->cols(), 1);
    EXPECT_FALSE(m->assign(static_cast<MatrixDbl*>(nullptr)) || m->minorOf(0, 0));
    EXPECT_TRUE(m->setSize(1, 1));
    matrix<double> zero(-3, 0);
    EXPECT_EQ(elements(zero), std::vector<double>{0});
}

TEST(Matrix, PartsAndOrders) {
    const matrix<int> m = make<int>(2, 3, {1, 2, 3, 4, 5, 6});
    EXPECT_EQ(elements(m.transposed()), (std::vector{1, 4, 2, 5, 3, 6}));
    EXPECT_EQ(elements(m.flippedUpDown()), (std::vector{4, 5, 6, 1, 2, 3}));
    EXPECT_EQ(elements(m.flippedLeftRight()), (std::vector{3, 2, 1, 6, 5, 4}));
    EXPECT_EQ(elements(m.subMatrix(0, 1, 1, 2)), (std::vector{2, 3, 5, 6}));
    constexpr int bad[][4] = {{1, 0, 0, 0}, {0, 0, 2, 1}, {-1, 0, 0, 0}, {0, 0, -1, 0},
                              {0, 2, 0, 0}, {0, 0, 0, 3}, {2, 2, 0, 0}};
    for (const auto& [r0, r1, c0, c1] : bad) {
        EXPECT_EQ(elements(m.subMatrix(r0, r1, c0, c1)), std::vector<int>{0});
    }
    EXPECT_TRUE(m.rowSum(1) == 15 && m.colSum(2) == 9 && m.rowSumSquared(0) == 36);
    EXPECT_TRUE(m.colMin(1) == 2 && m.colMax(1) == 5 && m.rowMin(1) == 4 && m.rowMax(0) == 3);
}

TEST(Matrix, IntegersWrapAroundAndNormaliseToTwoValues) {
    const matrix<unsigned char> bytes = make<unsigned char>(1, 2, {200, 100});
    EXPECT_TRUE(bytes.rowSum(0) == 44 && bytes.sum() == 44.0);
    constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
    const matrix<int> large = make<int>(1, 2, {most, 2});
    EXPECT_EQ(large.rowSum(0), least + 1);
    EXPECT_EQ(elements(large * large.transposed()), std::vector<int>{5});
    matrix<int> pivots = make<int>(2, 2, {1, 1, -1, 1});  // of equal ones the first is the pivot
    EXPECT_TRUE(pivots.invert() && elements(pivots) == (std::vector{1, 0, 0, 0}));
    EXPECT_EQ(elements(make<int>(1, 3, {2, 4, 6}).normalized(0, 10)), (std::vector{0, 0, 10}));
    EXPECT_EQ(elements(make<int>(1, 3, {least, 0, most}).normalized(least, most)),
              (std::vector{least, least, most}));
    EXPECT_EQ(elements(make<int>(1, 2, {3, 3}).normalized(8, 9)), (std::vector{8, 8}));
    EXPECT_EQ(elements(make<double>(1, 3, {2, 4, 6}).normalized(0, 1)),
              (std::vector<double>{0, 0.5, 1}));
    EXPECT_TRUE(std::isnan(make<double>(1, 2, {3, 3}).normalized(0, 1).get(0, 1)));
    // A pivot that is not 1 or -1 has the reciprocal 0.
    EXPECT_EQ(elements(make<int>(2, 2, {0, 1, -1, 0}).inverse()), (std::vector{0, -1, 1, 0}));
    EXPECT_EQ(elements(make<int>(1, 1, {2}).inverse()), std::vector<int>{0});
}

TEST(Matrix, WhatCannotBeDoneIsSaid) {
    const std::string square = "matrix<T> must be square.";
    matrix<float> wide(2, 3);
    EXPECT_EQ(thrownBy([&] { (void)wide.inverse(); }), square);
    EXPECT_EQ(thrownBy([&] { wide.setIdentity(); }), square);
    EXPECT_EQ(thrownBy([&] { (void)(wide * wide); }), "Matrices do not have common size");
    EXPECT_THROW(wide.setIdentity(), char*);
    EXPECT_FALSE(wide.invert());

    matrix<double> singular = make<double>(2, 2, {1, 2, 2, 4});
    testing::internal::CaptureStdout();
    EXPECT_FALSE(singular.invert());
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "invert is not availble!\n");
    EXPECT_EQ(elements(singular), (std::vector<double>{0.25, 0.5, -0.5, 0}));  // half way
}

}  // namespace
