// Classes of points and draw parameters.
#include <zyn/draw.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace {

using namespace zyn;

TEST(DrawParam, ClassesTakeAttributesByTheirNumber) {
    const ref_ptr<IZynLasDrawParam> param = newZynLasDrawParam();
    for (const PntClass& c : param->classes) {
        ASSERT_TRUE(!c.isValid() && c.visible && c.name == QString::fromLatin1("Default"));
    }
    const ref_ptr<PntClassArray> read = newPntClassArray();
    const QString ground = QString::fromLatin1("ground");
    read->append(PntClass(2, false, ZynColor4b::Brown(), ground));
    EXPECT_EQ(param->assignPntClass(read), 1);  // to nothing
    param->classes[3].value = param->classes[5].value = 2;
    EXPECT_EQ(param->assignPntClass(read), 1);
    PntClass& c = param->classes[3];
    EXPECT_TRUE(!c.visible && c.color == ZynColor4b::Brown() && param->classes[5].visible);
    c.setInvalid();
    EXPECT_TRUE(!c.isValid() && c.name == ground);
    EXPECT_EQ(param->assignPntClass(nullptr), 0);
}

TEST(DrawParam, CopiesShareTheRampAndClonesDoNot) {
    const ref_ptr<IZynLasDrawParam> a = newZynLasDrawParam(), b = newZynLasDrawParam();
    EXPECT_EQ(ref_ptr<IZynLasDrawParam>(a->clone())->ramp, nullptr);
    a->ramp = newZynColorRamp();
    a->range1Max = 7;
    *b = *a;
    const ref_ptr<IZynLasDrawParam> clone = a->clone();
    a->ramp->pcolor()[1] = ZynColor4b::Red();
    EXPECT_TRUE(b->ramp->clr(1) == ZynColor4b::Red() && clone->ramp->clr(1).r == 1);
    EXPECT_TRUE(b->range1Max == 7 && clone->range1Max == 7 && b->referenceCount() == 1);
    EXPECT_TRUE(a->ramp->referenceCount() == 2 && clone->ramp->referenceCount() == 1);
    EXPECT_EQ(reinterpret_cast<std::byte*>(&a->flag3) - reinterpret_cast<std::byte*>(&a->flag0),
              19);
}

}  // namespace
