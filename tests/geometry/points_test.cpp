// Points, their transforms and their text, and the records of point clouds.
#include <zyn/geometry.h>
#include <zyn/las.h>

#include <QLocale>
#include <QString>
#include <algorithm>
#include <cmath>
#include <type_traits>

#include "random_points.h"
#include "testing.h"

namespace zyn {
namespace {

template <class To, class... From>
constexpr bool refused = !(std::is_constructible_v<To, From> || ...);

// No accidental conversion makes a point or an address.
static_assert(refused<XPnt3f, std::nullptr_t, double*> && refused<XPnt3d, float*> &&
              refused<XPnt2f, float*, int, XPnt3f> && refused<XPnt2d, bool> &&
              !std::is_convertible_v<XPnt3d, bool> && !std::is_assignable_v<XPnt3f&, int> &&
              !std::is_convertible_v<const XPnt3d, double*>);

TEST(Points, EachTypeHasItsOwnMarkOfInvalidity) {
    // The smaller mark means nothing in double, and a NaN is valid in an XPnt2d only.
    EXPECT_TRUE(XPnt2d(PT2<double>()).isValid());
    EXPECT_TRUE(XPnt2d(std::nan(""), 0).isValid());
    EXPECT_FALSE(XPnt2d(std::nan(""), 0).to2f().isValid());
    EXPECT_FALSE(XPnt3d(0, 0, std::nan("")).isValid());
    // A new point is invalid, but one in space without a label is the origin.
    EXPECT_FALSE(XPnt2d().isValid());
    EXPECT_FALSE(XPnt2f().isValid());
    EXPECT_FALSE(TagPnt2d().isValid());
    EXPECT_FALSE(TagPnt3d().isValid());
    EXPECT_FALSE(XPnt3d::invalid().isValid());
    EXPECT_EQ(XPnt3d(), XPnt3d(0, 0, 0));
    EXPECT_TRUE(XPnt2f(false).isValid());
    EXPECT_EQ(TagPnt3d().tag, -1);
}

TEST(Points, AssignmentKeepsWhatTheSourceDoesNotHave) {
    const XPnt3f b(1, 1, 1, 9);
    XPnt3d p(9, 9, 9, 5);
    p = PNT2D(1, 2);
    EXPECT_EQ(p, XPnt3d(1, 2, 0));
    EXPECT_EQ(p.inten, 5);
    p = b;
    EXPECT_EQ(p.inten, 9);
    TagPnt3d tagged;
    tagged.tag = 4;
    tagged = b;
    EXPECT_EQ(tagged.tag, 4);
    LasPnt record;
    record.word1 = 4;
    record = tagged;
    record = p.Copy();
    EXPECT_EQ(record.inten, 9);
    EXPECT_EQ(record.word1, 4);
    EXPECT_EQ(XPnt3d(record), XPnt3d(p.Copy()));
}

TEST(Points, AnIndexOutOfRangeReadsTheFirstCoordinateAndSetsNone) {
    XPnt3d p(1, 2, 3);
    EXPECT_EQ(p[(std::size_t(1) << 32) + 1], 1);
    EXPECT_EQ(p.set(5, 9.0), XPnt3d(1, 2, 3));
}

TEST(Points, ArithmeticWorksByCoordinateAndKeepsTheFirstIntensity) {
    EXPECT_EQ((XPnt3f(1, 2, 3, 7) + XPnt3f(1, 1, 1, 9)).inten, 7);
    XPnt3d p(1, 2, 3);
    EXPECT_EQ(p.set_max({2, 1, 3}), XPnt3d(2, 2, 3));
    EXPECT_EQ(p.set_min({1, 3, 4}), XPnt3d(1, 2, 3));
    EXPECT_EQ(XPnt3d().set_vec(p, XPnt3d(4, 6, 8)), XPnt3d(3, 4, 5));
    EXPECT_EQ((XPnt3d(49, 0, 0) / 49).x, std::nextafter(1.0, 0.0));  // by the reciprocal
    EXPECT_EQ(XPnt3f().set_norm(3), XPnt3f());
}

template <class T>
class PointTransforms : public testing::Test {};
TYPED_TEST_SUITE(PointTransforms, Precisions);

TYPED_TEST(PointTransforms, ReadTheTranslationFromTheLastRow) {
    using T = TypeParam;
    using P = XPnt3<T>;
    const T u = T(1) / 3, v = T(2) / 3;
    const T r[3][3] = {{v, -u, v}, {v, v, -u}, {-u, v, v}};
    const T m[16] = {v, v, -u, 9, -u, v, v, 9, v, -u, v, 9, 10, 20, 30, 9};  // nothing reads 9
    const auto expectNear = [](const P& p, const P& q) {
        EXPECT_LT(double(dist(p, q)), tolerated<T>) << testing::PrintToString(p);
    };
    const P from(1, 2, 3), to(12, 21, 33);
    expectNear(P(from).xform(m), to);
    expectNear(P(from).xform(r, m + 12), to);
    expectNear(P(to).invxform(m), from);
    expectNear(P(to).invxform(r, m + 12), from);
    P target(1, 2, 3);  // the target may be an argument
    expectNear(target.setXformed(target, r, target), {3, 3, 6});
    expectNear(target.lerp(T(0.5), P(1, 1, 0), target), {2, 2, 3});
}

// The radius is a·b·c / (4·area) in an acute triangle, half the longest side in any other.
TYPED_TEST(PointTransforms, SmallestCircleHoldsItsPointsWithTheLeastRadius) {
    using T = TypeParam;
    RandomPoints random(62);
    for (int round = 0; round < 1000; ++round) {
        XPnt3<T> q[3];
        for (auto& corner : q) { corner = random.point<T>(1); }
        const XPnt3d a(q[0]), b(q[1]), c(q[2]);
        double side[] = {dist(a, b), dist(b, c), dist(c, a)};
        std::sort(side, side + 3);
        const double area = cross(a, b, c).norm() / 2;
        const bool acute = side[2] * side[2] < side[0] * side[0] + side[1] * side[1];
        const double expected = acute ? side[0] * side[1] * side[2] / (4 * area) : side[2] / 2;
        auto& centre = q[round % 3];  // the target may be an argument
        EXPECT_NEAR(double(centre.smallest_circle(q[0], q[1], q[2])), expected, tolerated<T>);
        const XPnt3d o(centre);
        EXPECT_LT(std::max({dist(a, o), dist(b, o), dist(c, o)}), expected + tolerated<T>);
    }
}

TEST(PointText, IsTheSameUnderAnyLocale) {
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(XPnt2d(12345.5, -0.25).toString(10), QLatin1String("12345.5,-0.25"));
    XPnt2d p(7, 8);
    EXPECT_TRUE(p.frString(QLatin1String("1.5,-2e3")));
    for (const char* text : {"", "1", "1,", ",2", "1,2,3", "1,5;2,5", "1x,2", "1,2x"}) {
        EXPECT_FALSE(p.frString(QLatin1String(text))) << text;
        EXPECT_EQ(p, XPnt2d(1.5, -2000)) << text;
    }
    QLocale::setDefault(QLocale::c());
}

TEST(LasRecords, HaveASignedIntensityAndAHeadThatIsAPoint) {
    const ref_ptr<LasPntArray> records = newLasPntArray();
    const ref_ptr<PLasPntArray> pointers = newPLasPntArray();
    records->resize(3);
    for (const int i : {2, 1, 0}) { pointers->append(&records->getRef(i)); }
    records->getRef(1).inten = std::int16_t(0xFFFB);
    const ref_ptr<PPnt3fArray> view = PntsToPnt3f(records.get());
    ASSERT_EQ(view->size(), 3);
    EXPECT_EQ(PntsToPnt3f(pointers.get())->get(0), view->get(2));
    EXPECT_EQ(view->get(1)->inten, -5);
    view->get(2)->z = 9.0f;
    view->get(2)->inten = 7;
    EXPECT_EQ(records->getRef(2).z, 9.0f);
    EXPECT_EQ(records->getRef(2).inten, 7);
    EXPECT_EQ(maxminInten(records->data(), 3), XPnt2d(-5, 7));
    EXPECT_EQ(maxminInten(nullptr, -1), XPnt2d(2147483647.0, -2147483647.0));
}

}  // namespace
}  // namespace zyn
