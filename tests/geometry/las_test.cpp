#include <gtest/gtest.h>
#include <zyn/las.h>

namespace zyn {
namespace {

LasPnt recordOf(int inten) {
    LasPnt record;
    record.inten = std::int16_t(inten);
    return record;
}

TEST(LasRecords, IntensityIsSigned) {
    const LasPnt records[] = {recordOf(0xFFFB), recordOf(7), recordOf(-1)};
    EXPECT_EQ(maxminInten(records, 3), XPnt2d(-5, 7));
    EXPECT_EQ(maxminInten(nullptr, -1), XPnt2d(2147483647.0, -2147483647.0));
}

TEST(LasRecords, ViewsReadAndWriteTheHeads) {
    const ref_ptr<LasPntArray> records = newLasPntArray();
    const ref_ptr<PLasPntArray> pointers = newPLasPntArray();
    for (int i = 0; i < 3; ++i) { records->append(recordOf(i)); }
    for (int i = 3; i-- > 0;) { pointers->append(&records->getRef(i)); }
    const ref_ptr<PPnt3fArray> view = PntsToPnt3f(records.get());
    ASSERT_EQ(view->size(), 3);
    EXPECT_EQ(view->get(2)->inten, 2);
    EXPECT_EQ(PntsToPnt3f(pointers.get())->get(0), view->get(2));

    view->get(1)->z = 9.0f;
    view->get(1)->inten = -7;
    EXPECT_EQ(records->getRef(1).z, 9.0f);
    EXPECT_EQ(records->getRef(1).inten, -7);
}

}  // namespace
}  // namespace zyn
