#include <gtest/gtest.h>
#include <zyn/las.h>

#include <cstring>

namespace zyn {
namespace {

LasPnt recordAt(float x, std::int16_t inten) {
    LasPnt record;
    record.x = x;
    record.y = record.z = -x;
    record.inten = inten;
    record.attr[0] = 11;
    record.tail[3] = 12;
    return record;
}

TEST(LasRecords, NewElementsOfTheTwoPrecisionsDiffer) {
    const ref_ptr<LasPntArray> single = newLasPntArray();
    single->resize(2);
    EXPECT_EQ(single->get(1).x, -99999.0f);
    EXPECT_EQ(single->get(1).inten, 0);
    const ref_ptr<LasPntdArray> precise = newLasPntdArray();
    precise->resize(2);
    EXPECT_EQ(precise->get(1), XPnt3d(0, 0, 0));
    EXPECT_EQ(precise->get(1).intenD, 0);
}

TEST(LasRecords, APointTakesCoordinatesAndIntensity) {
    const LasPnt record = recordAt(0.1f, -3);
    EXPECT_EQ(XPnt3f(record), XPnt3f(0.1f, -0.1f, -0.1f));
    XPnt3d p(0, 0, 0, 9);
    p = record;
    EXPECT_EQ(p.x, double(0.1f));
    EXPECT_EQ(p.inten, -3);
}

TEST(LasRecords, RangeOfIntensity) {
    LasPnt unsignedLargest = recordAt(0, 0);
    const std::uint16_t bits = 0xFFFF;
    std::memcpy(&unsignedLargest.inten, &bits, sizeof bits);
    const LasPnt records[] = {recordAt(0, -5), recordAt(0, 7), unsignedLargest};
    EXPECT_EQ(maxminInten(records, 3), XPnt2d(-5, 7));
    EXPECT_EQ(maxminInten(records + 2, 1), XPnt2d(-1, -1));
    EXPECT_EQ(maxminInten(records, 0), XPnt2d(2147483647.0, -2147483647.0));
    EXPECT_EQ(maxminInten(nullptr, -1), XPnt2d(2147483647.0, -2147483647.0));
}

TEST(LasRecords, ViewsReadAndWriteTheHeadsOnly) {
    const ref_ptr<LasPntArray> records = newLasPntArray();
    const ref_ptr<PLasPntArray> pointers = newPLasPntArray();
    for (int i = 0; i < 3; ++i) { records->append(recordAt(float(i), std::int16_t(i))); }
    for (int i = 3; i-- > 0;) { pointers->append(&records->getRef(i)); }

    const ref_ptr<PPnt3fArray> view = PntsToPnt3f(records.get());
    const ref_ptr<PPnt3fArray> backwards = PntsToPnt3f(pointers.get());
    EXPECT_EQ(view->referenceCount(), 1);
    EXPECT_EQ(records->referenceCount(), 1);
    ASSERT_EQ(view->size(), 3);
    EXPECT_EQ(view->get(2)->y, -2.0f);
    EXPECT_EQ(view->get(2)->inten, 2);
    EXPECT_EQ(backwards->get(0), view->get(2));

    view->get(1)->z = 40.0f;
    view->get(1)->inten = -7;
    const LasPnt& written = records->getRef(1);
    EXPECT_EQ(written.z, 40.0f);
    EXPECT_EQ(written.inten, -7);
    EXPECT_EQ(written.attr[0], 11);
    EXPECT_EQ(written.tail[3], 12);
}

}  // namespace
}  // namespace zyn
