// The 4 x 4 matrix and the quaternion, against each other and against known turns.
#include <zyn/transform.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <type_traits>

#include "seed.h"

namespace {

using namespace zyn;

static_assert(!std::is_assignable_v<ZynQuad&, int> && !std::is_constructible_v<ZynQuad, int>);
template <class Q>
concept TakesNothing = requires(Q q) { q = {}; };
static_assert(!TakesNothing<ZynQuad>);

bool areNear(const ZynMatrix4d& a, const ZynMatrix4d& b, double tolerance) {
    for (int i = 0; i < 16; ++i) {
        if (!(std::abs(a.m[i] - b.m[i]) <= tolerance)) { return false; }
    }
    return true;
}
void expectQuad(const ZynQuad& q, double w, double x, double y, double z) {
    EXPECT_NEAR(q.w, w, 1e-12);
    EXPECT_NEAR(q.x, x, 1e-12);
    EXPECT_NEAR(q.y, y, 1e-12);
    EXPECT_NEAR(q.z, z, 1e-12);
}

class TransformTest : public testing::Test {
protected:
    std::mt19937 random{support::newSeed()};
    double uniform() { return std::uniform_real_distribution(-1.0, 1.0)(random); }
    ZynQuad rotation() {
        ZynQuad q(0.05 + std::abs(uniform()), uniform(), uniform(), uniform());
        q.normalize();
        return q;
    }
};

TEST_F(TransformTest, RotationsAreOrthogonalAndComeBackConjugate) {
    for (int i = 0; i < 1000; ++i) {
        ZynQuad q = rotation(), r = rotation();
        ZynMatrix4d m = q.toMatrix(), n = m, unit;
        unit.setIdentity();
        EXPECT_TRUE(areNear(n.covariant(), unit, 1e-14));
        EXPECT_TRUE(areNear(m.getInverted(), m.getTransposed(), 1e-13));
        ZynQuad back, same;
        EXPECT_TRUE(back.fromMatrix(m) == 0 && m.toQuad(same) == 1);
        expectQuad(same, back.w, back.x, back.y, back.z);
        back*(back.w < 0 ? -1.0 : 1.0);  // both signs are the same rotation
        expectQuad(back, q.w, -q.x, -q.y, -q.z);
        // The product turns by the right factor first.
        const ZynMatrix4d both = q.toMatrix() *= r.toMatrix();
        EXPECT_TRUE(areNear((q * r).toMatrix(), both, 1e-14));
    }
}

TEST_F(TransformTest, InverseUndoesAnyMatrix) {
    for (int i = 0; i < 100; ++i) {
        ZynMatrix4d m, unit;
        unit.setIdentity();
        for (double& e : m.m) { e = uniform(); }
        for (int k = 0; k < 4; ++k) { m[k][(k + i) % 4] += 3; }
        ZynMatrix4d inverse = m;
        EXPECT_EQ(inverse.invert(), 1);
        EXPECT_TRUE(areNear(inverse * m, unit, 1e-12));
    }
    ZynMatrix4d m;
    m.setZero();
    m[1][1] = 2;
    testing::internal::CaptureStdout();
    EXPECT_EQ(m.invert(), 0);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "invert is not availble!\n");
}

TEST_F(TransformTest, KnownTurns) {
    const double h = std::numbers::sqrt2 / 2;
    ZynQuad q(h, 0, 0, h);  // a quarter turn about z
    const ZynMatrix4d m = q.toMatrix();
    ZynMatrix4d other;
    EXPECT_TRUE(q.normalize() == 0 && other.fromQuad(q) == 1 && other == m);
    EXPECT_NEAR(m[1][0], 1, 1e-15);
    EXPECT_NEAR(m[0][1], -1, 1e-15);
    XPnt3d p(1, 2, 3);
    p.inten = 9;
    const XPnt3d moved = m * p;
    EXPECT_TRUE(std::abs(moved.x + 2) < 1e-15 && std::abs(moved.y - 1) < 1e-15);
    EXPECT_NEAR(moved.z, 3, 1e-14);
    EXPECT_EQ(moved.inten, 0);
    ZynMatrix4d half;
    half.setIdentity();
    half[1][1] = half[2][2] = -1;
    half[0][3] = 500;  // a translation is no matter
    EXPECT_EQ(half.toQuad(q), 1);
    expectQuad(q, 0, 1, 0, 0);
    q.setValue(1, 0, 0, 0);
    EXPECT_EQ(q.rotate(0, 1, 0, std::numbers::pi / 2), 0);
    q.rotate(0, 0, 1, std::numbers::pi / 2);
    expectQuad(q, 0.5, -0.5, 0.5, 0.5);
}

TEST_F(TransformTest, OperatorsWorkInPlace) {
    ZynQuad a(1, 2, 3, 4), b(5, 6, 7, 8);
    EXPECT_EQ(&(a * b), &a);
    expectQuad(a, -60, 12, 30, 24);
    ZynQuad c(1, 2, 3, 4);
    c* c;
    expectQuad(c, -28, 4, 6, 8);
    c / 2.0 - b += b;
    expectQuad(c, -14, 2, 3, 4);
    ZynMatrix4d m, n;
    m.setIdentity();
    m[0][1] = 2;
    EXPECT_EQ(&(m * m), &m);
    EXPECT_EQ(m[0][1], 4);
    n = m * 2.0;
    EXPECT_TRUE(n[0][1] == 8 && m[0][1] == 4);
    m + n;
    EXPECT_EQ(m[0][1], 12);
    m += n;
    m - n -= n;
    m += -1.5;
    m *= 2;
    EXPECT_TRUE(m[0][1] == 5 && m[0][0] == -1 && m[1][0] == -3);
    const ZynMatrix4d scaled = m.getNormalised(0, 4);  // from -3 to 5 before
    EXPECT_TRUE(scaled[0][1] == 4 && scaled[0][0] == 1 && scaled[1][0] == 0 && m[0][1] == 5);
    (c -= b) /= 2;
    expectQuad(c, -9.5, -2, -2, -2);
}

TEST_F(TransformTest, QuaternionsAreReadByComponent) {
    const double components[] = {1, 2, 3, 4};
    ZynQuad q(components), p;
    p = components;
    const ref_ptr<DoubleArray> values = q.getValue();
    ASSERT_EQ(values->size(), 4);
    double read[4];
    EXPECT_EQ(q.getValue(read[0], read[1], read[2], read[3]), 0);
    for (int i = 0; i < 4; ++i) {
        const double expected = components[i];
        EXPECT_TRUE(q[i] == expected && p[i] == expected && read[i] == expected) << i;
        EXPECT_EQ(values->begin()[i], expected);
        p[i] = -2147483647.0;  // one of them spoils it
        EXPECT_FALSE(p.isValid());
        p = q;
        EXPECT_TRUE(p.isValid());
    }
    p.setInvalid();
    EXPECT_FALSE(p.isValid());
}

TEST_F(TransformTest, InvalidAndUnfitIsRefused) {
    ZynMatrix4d m;
    EXPECT_FALSE(m.isValid());
    m.setZero();
    EXPECT_FALSE(m.isValid());
    ZynQuad q;
    EXPECT_FALSE(q.isValid() || q.isNormal());
    EXPECT_EQ(m.toQuad(q), -1);
    EXPECT_FALSE(q.isValid());
    q.setValue(2, 0, 0, 0);
    EXPECT_EQ(q.fromMatrix(m), -1);
    EXPECT_TRUE(q.w == 2 && m == ZynMatrix4d());
    EXPECT_EQ(m.fromQuad(q), -1);
    EXPECT_EQ(m, ZynMatrix4d());
    ZynMatrix4d unit;
    unit.setIdentity();
    EXPECT_TRUE(q.toMatrix() == unit && q.w == 1);
    q.setValue(0, 0, 0, 0);
    EXPECT_EQ(q.normalize(), 1);
    EXPECT_TRUE(std::isnan(q.x));
    // Rows and columns may be off by 0.001 in their squares, and every element has to be set.
    EXPECT_TRUE(unit.isValid());
    unit[2][2] = std::sqrt(1.0009);
    EXPECT_TRUE(unit.isValid());
    unit[2][2] = std::sqrt(1.0011);
    EXPECT_FALSE(unit.isValid());
    unit.setIdentity();
    unit[3][1] = -2147483647.0;
    EXPECT_TRUE(!unit.isValid() && q.fromMatrix(unit) == 0);
    unit.setIdentity();
    std::swap(unit[1][0], unit[1][1]);  // unit rows, but not columns
    EXPECT_FALSE(unit.isValid());
    unit.setIdentity();
    unit.normalise(1, 3);
    EXPECT_TRUE(unit[0][0] == 3 && unit[0][1] == 1);
}

}  // namespace
