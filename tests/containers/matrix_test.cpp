// Matrices against an independent library, and what has no counterpart there.
#include <zyn/matrix.h>

#include <algorithm>
#include <armadillo>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "seed.h"
#include "testing.h"

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
arma::mat armaOf(const ref_ptr<MatrixDbl>& z) {
    return arma::mat(z->data(), unsigned(z->cols()), unsigned(z->rows())).t();
}
void expectNear(const arma::mat& actual, const arma::mat& expected, double tolerance = 0) {
    EXPECT_EQ(actual.n_rows, expected.n_rows);
    using Elements = std::vector<double>;
    EXPECT_THAT(Elements(actual.begin(), actual.end()),
                testing::Pointwise(testing::DoubleNear(tolerance),
                                   Elements(expected.begin(), expected.end())));
}
void expectNear(const ref_ptr<MatrixDbl>& z, const arma::mat& expected, double tolerance = 0) {
    expectNear(armaOf(z), expected, tolerance);
}

TEST(Matrix, AgreesWithAnIndependentLibrary) {
    std::mt19937 random(support::newSeed());
    std::uniform_real_distribution element(-1.0, 1.0);
    const auto below = [&](int n) { return std::uniform_int_distribution(0, n - 1)(random); };
    for (const int n : {1, 2, 3, 7, 20}) {
        const int cols = n + 2, r = below(n), c = below(cols);
        const int r2 = r + below(n - r), c2 = c + below(cols - c);
        const ref_ptr<MatrixDbl> z = newMatrixDbl();
        z->setSize(n, cols);
        std::generate_n(z->data(), n * cols, [&] { return element(random); });
        const arma::mat a = armaOf(z);
        expectNear(z->transposed(), a.t());
        expectNear(z->flippedUpDown(), arma::flipud(a));
        expectNear(z->flippedLeftRight(), arma::fliplr(a));
        expectNear(z->subMatrix(r, r2, c, c2),
                   a.submat(unsigned(r), unsigned(c), unsigned(r2), unsigned(c2)));
        for (int i = 0; i < n; ++i) {
            const arma::mat row = a.row(unsigned(i));
            EXPECT_EQ(z->rowMin(i), row.min());
            EXPECT_EQ(z->rowMax(i), row.max());
            EXPECT_NEAR(z->rowSum(i), arma::accu(row), 1e-13);
            EXPECT_NEAR(z->rowSumSquared(i), std::pow(arma::accu(row), 2), 1e-12);
        }
        for (int i = 0; i < cols; ++i) {
            const arma::mat col = a.col(unsigned(i));
            EXPECT_EQ(z->colMin(i), col.min());
            EXPECT_EQ(z->colMax(i), col.max());
            EXPECT_NEAR(z->colSum(i), arma::accu(col), 1e-13);
            EXPECT_NEAR(z->colSumSquared(i), std::pow(arma::accu(col), 2), 1e-12);
        }
        EXPECT_NEAR(z->sum(), arma::accu(a), 1e-12);
        double least = 9, most = 9;
        z->getMinMax(least, most);
        EXPECT_EQ(least, a.min());
        EXPECT_EQ(most, a.max());
        expectNear(z->normalized(2, 5), (a - least) / (most - least) * 3 + 2, 1e-14);
        expectNear(z->timesTranspose(), a * a.t(), 1e-14);

        const arma::mat square = a.head_cols(unsigned(n));
        if (arma::cond(square) < 1e4) {
            const ref_ptr<MatrixDbl> inverse = z->subMatrix(0, n - 1, 0, n - 1);
            EXPECT_TRUE(inverse->invert());
            expectNear(armaOf(inverse) * square, arma::eye(arma::size(square)), 1e-10);
        }
    }
}

TEST(Matrix, RefusesShapesAndIndicesOutOfRange) {
    const ref_ptr<MatrixDbl> m = newMatrixDbl();
    EXPECT_EQ(m->rows(), 1);
    EXPECT_EQ(m->cols(), 1);
    EXPECT_EQ(m->get(0, 0), 0);
    EXPECT_TRUE(m->isValid());
    EXPECT_TRUE(m->setSize(2, 3, 7.0));
    EXPECT_EQ(m->getRef(1, 2), 7);
    EXPECT_TRUE(m->isInside(1, 2));
    EXPECT_TRUE(m->setSize(3, 2, m->getRef(1, 2)));
    EXPECT_EQ(m->get(2, 1), 7) << "the value was an element of the matrix itself";
    EXPECT_FALSE(m->setSize(0, 5));
    EXPECT_FALSE(m->setSize(5, -1));
    EXPECT_FALSE(m->set(3, 0, 1));
    EXPECT_FALSE(m->set(0, -1, 1));
    EXPECT_THROW(m->setSize(1 << 30, 1 << 30), std::bad_alloc);
    EXPECT_TRUE(m->assign(m.get()));
    EXPECT_EQ(m->sum(), 42);
    const MatrixDbl& read = *m;
    EXPECT_EQ(elements(read.toMatrix()), std::vector(read.data(), read.data() + 6));
    EXPECT_TRUE(m->assign(matrix<double>(m->rows(), 1)));
    EXPECT_EQ(m->sum(), 0);
    EXPECT_EQ(m->cols(), 1);
    EXPECT_FALSE(m->assign(static_cast<MatrixDbl*>(nullptr)));
    EXPECT_FALSE(m->minorOf(0, 0));
    EXPECT_TRUE(m->setSize(2, 2, 5));
    EXPECT_TRUE(m->setIdentity());
    expectNear(m, arma::eye(2, 2));
    const matrix<int> part = make<int>(2, 3, {1, 2, 3, 4, 5, 6});
    constexpr int bad[][4] = {{1, 0, 0, 0}, {0, 0, 2, 1}, {-1, 0, 0, 0}, {0, 0, -1, 0},
                              {0, 2, 0, 0}, {0, 0, 0, 3}, {2, 2, 0, 0}};
    for (const auto& [r0, r1, c0, c1] : bad) {
        EXPECT_EQ(elements(part.subMatrix(r0, r1, c0, c1)), std::vector<int>{0});
    }
}

TEST(Matrix, IntegersWrapAroundAndNormalizeToTwoValues) {
    const matrix<unsigned char> bytes = make<unsigned char>(1, 2, {200, 100});
    EXPECT_EQ(bytes.rowSum(0), 44);
    EXPECT_EQ(bytes.sum(), 44.0);
    constexpr int most = std::numeric_limits<int>::max(), least = std::numeric_limits<int>::min();
    const matrix<int> large = make<int>(1, 2, {most, 2});
    EXPECT_EQ(large.rowSum(0), least + 1);
    EXPECT_EQ(elements(large * large.transposed()), std::vector<int>{5});
    matrix<int> pivots =
        make<int>(2, 2, {1, 1, -1, 1});  // of equal elements the first is the pivot
    EXPECT_TRUE(pivots.invert());
    EXPECT_EQ(elements(pivots), (std::vector{1, 0, 0, 0}));
    EXPECT_EQ(elements(make<int>(1, 3, {least, 0, most}).normalized(least, most)),
              (std::vector{least, least, most}));
    EXPECT_EQ(elements(make<int>(1, 2, {3, 3}).normalized(8, 9)), (std::vector{8, 8}));
    EXPECT_TRUE(std::isnan(make<double>(1, 2, {3, 3}).normalized(0, 1).get(0, 1)));
    // A pivot that is not 1 or -1 has the reciprocal 0.
    EXPECT_EQ(elements(make<int>(2, 2, {0, 1, -1, 0}).inverse()), (std::vector{0, -1, 1, 0}));
    EXPECT_EQ(elements(make<int>(1, 1, {2}).inverse()), std::vector<int>{0});
}

TEST(Matrix, ThrowsOrReportsWhatItsShapeForbids) {
    const auto thrownBy = [](auto operation) -> std::string {
        try {
            operation();
        } catch (char* text) { return text; }
        return "nothing";
    };
    const std::string square = "matrix<T> must be square.";
    matrix<float> wide(2, 3);
    EXPECT_EQ(thrownBy([&] { (void)wide.inverse(); }), square);
    EXPECT_EQ(thrownBy([&] { wide.setIdentity(); }), square);
    EXPECT_EQ(thrownBy([&] { (void)(wide * wide); }), "Matrices do not have common size");
    EXPECT_FALSE(wide.invert());

    matrix<double> singular = make<double>(2, 2, {1, 2, 2, 4});
    testing::internal::CaptureStdout();
    EXPECT_FALSE(singular.invert());
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "invert is not availble!\n");
    EXPECT_EQ(elements(singular), (std::vector<double>{0.25, 0.5, -0.5, 0})) << "stopped half-way";
}

}  // namespace
