// The 4 x 4 matrix and the quaternion, against each other and against known rotations.
#include <zyn/transform.h>

#include <cmath>
#include <numbers>
#include <random>

#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;

using testing::DoubleNear;
using testing::ElementsAreArray;
using testing::Pointwise;

void expectNear(const ZynMatrix4d& actual, const ZynMatrix4d& expected, double tolerance) {
    EXPECT_THAT(actual.m, Pointwise(DoubleNear(tolerance), expected.m));
}
void expectEqual(const ZynMatrix4d& actual, const ZynMatrix4d& expected) {
    EXPECT_THAT(actual.m, ElementsAreArray(expected.m));
}
void expectQuad(const ZynQuad& q, double w, double x, double y, double z) {
    const double actual[] = {q.w, q.x, q.y, q.z}, expected[] = {w, x, y, z};
    EXPECT_THAT(actual, Pointwise(DoubleNear(2.5e-13), expected));
}

class Transform : public testing::Test {
protected:
    Transform() { unit.setIdentity(); }
    double uniform() { return std::uniform_real_distribution(-1.0, 1.0)(random); }
    ZynQuad rotation() {
        ZynQuad q(0.05 + std::abs(uniform()), uniform(), uniform(), uniform());
        q * (1 / std::sqrt(q.w * q.w + q.x * q.x + q.y * q.y +
                           q.z * q.z));  // normalize() leaves an error
        return q;
    }

    std::mt19937 random{support::newSeed()};
    ZynMatrix4d unit;
};

TEST_F(Transform, RotationsAreOrthogonalAndReadBackAsConjugates) {
    for (int i = 0; i < 1000; ++i) {
        ZynQuad q = rotation(), r = rotation();
        ZynMatrix4d m = q.toMatrix(), n = m;
        expectNear(n.covariant(), unit, 1e-14);
        expectNear(m.getInverted(), m.getTransposed(), 1e-13);
        ZynQuad back, same;
        EXPECT_EQ(back.fromMatrix(m), 0);
        EXPECT_EQ(m.toQuad(same), 1);
        expectQuad(same, back.w, back.x, back.y, back.z);
        back*(back.w < 0 ? -1.0 : 1.0);  // both signs are the same rotation
        expectQuad(back, q.w, -q.x, -q.y, -q.z);
        // The product turns by the right factor first.
        const ZynMatrix4d both = q.toMatrix() *= r.toMatrix();
        expectNear((q * r).toMatrix(), both, 1e-14);
    }
}

TEST_F(Transform, TheInverseUndoesAnyMatrix) {
    for (int i = 0; i < 100; ++i) {
        ZynMatrix4d m;
        for (double& e : m.m) { e = uniform(); }
        for (int k = 0; k < 4; ++k) { m[k][(k + i) % 4] += 3; }
        ZynMatrix4d inverse = m;
        EXPECT_EQ(inverse.invert(), 1);
        expectNear(inverse * m, unit, 1e-12);
    }
    unit[2][2] = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(unit.invert(), 0);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "invert is not availble!\n");
}

TEST_F(Transform, QuarterTurnsMoveKnownPointsAndCompose) {
    const double h = std::numbers::sqrt2 / 2;
    ZynQuad q(h, 0, 0, h);  // a quarter turn about z
    ZynMatrix4d m = q.toMatrix(), other;
    EXPECT_EQ(q.normalize(), 0);
    EXPECT_EQ(other.fromQuad(q), 1);
    expectEqual(other, m);
    m[0][3] = 100, m[1][3] = 200, m[2][3] = 300;
    XPnt3d p(1, 2, 3);
    p.inten = 9;
    const XPnt3d moved = m * p, error = moved - XPnt3d(98, 201, 303);
    EXPECT_LT(error.norm(), 1e-13);
    EXPECT_EQ(moved.inten, 0);
    unit[1][1] = unit[2][2] = -1;
    unit[0][3] = 500;  // the translation does not matter
    EXPECT_EQ(unit.toQuad(q), 1);
    expectQuad(q, 0, 1, 0, 0);
    q.setValue(1, 0, 0, 0);
    q.rotate(0, 1, 0, std::numbers::pi / 2);
    q.rotate(0, 0, 1, std::numbers::pi / 2);
    expectQuad(q, 0.5, -0.5, 0.5, 0.5);
}

struct ReversedQuad : ZynQuad {
    using ZynQuad::ZynQuad;
    using ZynQuad::operator=;
    double& operator[](int i) noexcept override { return ZynQuad::operator[](3 - i); }
};

TEST_F(Transform, OperatorsChangeTheirLeftOperand) {
    ZynQuad a(1, 2, 3, 4), b(5, 6, 7, 8), c = a;
    EXPECT_EQ(&(a * b), &a);
    expectQuad(a, -60, 12, 30, 24);
    c* c;  // -28, 4, 6, 8
    c / 2.0 - b += b;
    (c -= b) /= 2;
    expectQuad(c, -9.5, -2, -2, -2);
    expectQuad(c = ReversedQuad(1, 2, 3, 4), 4, 3, 2, 1);
    ZynMatrix4d m = unit;
    m[0][1] = 2;
    EXPECT_EQ(&(m * m), &m);
    const ZynMatrix4d n = m * 2.0;
    EXPECT_EQ(n[0][1], 8);
    EXPECT_EQ(m[0][1], 4);
    m + n += n;
    m - n -= n;
    (m += -1.5) *= 2;
    EXPECT_EQ(m[0][1], 5);
    EXPECT_EQ(m[0][0], -1);
    EXPECT_EQ(m[1][0], -3);
    const ZynMatrix4d scaled = m.getNormalised(1, 5);  // from -3 to 5 before
    EXPECT_EQ(scaled[0][1], 5);
    EXPECT_EQ(scaled[0][0], 2);
    EXPECT_EQ(scaled[1][0], 1);
    EXPECT_EQ(m[0][1], 5);
}

TEST_F(Transform, QuaternionsHaveFourComponentsThatMustAllBeSet) {
    const double components[] = {1, 2, 3, 4};
    ZynQuad q(components), p;
    EXPECT_FALSE(p.isValid());
    EXPECT_FALSE(p.isNormal());
    const ref_ptr<DoubleArray> values = q.getValue();
    double read[4];
    EXPECT_EQ(values->size(), 4);
    EXPECT_EQ(q.getValue(read[0], read[1], read[2], read[3]), 0);
    for (int i = 0; i < 4; ++i) {
        p = components;
        EXPECT_EQ(q[i], i + 1);
        EXPECT_EQ(p[i], i + 1);
        EXPECT_EQ(read[i], i + 1);
        EXPECT_EQ(values->get(i), i + 1);
        EXPECT_TRUE(p.isValid());
        p[i] = invalidCoordinate<double>;  // one of them makes it invalid
        EXPECT_FALSE(p.isValid());
    }
}

TEST_F(Transform, RefusesMatricesThatAreNoRotation) {
    ZynMatrix4d m;
    ZynQuad q;
    EXPECT_EQ(m.toQuad(q), -1);
    EXPECT_FALSE(m.isValid());
    EXPECT_FALSE(q.isValid());
    q.setValue(2, 0, 0, 0);
    m.setZero();
    EXPECT_EQ(q.fromMatrix(m), -1);
    EXPECT_EQ(q.w, 2);
    expectEqual(m, ZynMatrix4d());
    EXPECT_EQ(m.fromQuad(q), -1);
    expectEqual(m, ZynMatrix4d());
    expectEqual(q.toMatrix(), unit);
    EXPECT_EQ(q.w, 1);
    q.setValue(0, 0, 0, 0);
    EXPECT_EQ(q.normalize(), 1);
    EXPECT_TRUE(std::isnan(q.x));
    // Rows and columns may be off by 0.001 in their squares, and every element has to be set.
    EXPECT_TRUE(unit.isValid());
    const auto isValidWith = [this](int row, int col, double value) {
        ZynMatrix4d changed = unit;
        changed[row][col] = value;
        return changed.isValid();
    };
    EXPECT_TRUE(isValidWith(2, 2, std::sqrt(1.0009)));
    EXPECT_FALSE(isValidWith(2, 2, std::sqrt(1.0011)));
    EXPECT_FALSE(isValidWith(3, 1, invalidCoordinate<double>));
    std::swap(unit[1][0], unit[1][1]);  // unit rows, but not columns
    EXPECT_FALSE(unit.isValid());
}

}  // namespace
