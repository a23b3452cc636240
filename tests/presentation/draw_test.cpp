// Classes of points and draw parameters.
#include <zyn/draw.h>

#include <cstddef>

#include "testing.h"

namespace {

using namespace zyn;

TEST(DrawParam, AssignsAttributesToTheFirstClassOfTheirNumber) {
    const ref_ptr<IZynLasDrawParam> param = newZynLasDrawParam();
    for (const PntClass& c : param->classes) {
        ASSERT_FALSE(c.isValid());
        ASSERT_TRUE(c.visible);
        ASSERT_EQ(c.name, QString::fromLatin1("Default"));
    }
    const ref_ptr<PntClassArray> read = newPntClassArray();
    const QString ground = QString::fromLatin1("ground");
    read->append(PntClass(2, false, ZynColor4b::Brown(), ground));
    EXPECT_EQ(param->assignPntClass(read), 1);  // no class has that number yet
    param->classes[3].value = param->classes[5].value = 2;
    EXPECT_EQ(param->assignPntClass(read), 1);
    PntClass& c = param->classes[3];
    EXPECT_FALSE(c.visible);
    EXPECT_EQ(c.color, ZynColor4b::Brown());
    EXPECT_TRUE(param->classes[5].visible);
    c.setInvalid();
    EXPECT_FALSE(c.isValid());
    EXPECT_EQ(c.name, ground);
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
    EXPECT_EQ(b->ramp->clr(1), ZynColor4b::Red());
    EXPECT_EQ(clone->ramp->clr(1).r, 1);
    EXPECT_EQ(b->range1Max, 7);
    EXPECT_EQ(clone->range1Max, 7);
    EXPECT_EQ(b->referenceCount(), 1);
    EXPECT_EQ(a->ramp->referenceCount(), 2);
    EXPECT_EQ(clone->ramp->referenceCount(), 1);
    EXPECT_EQ(reinterpret_cast<std::byte*>(&a->flag3) - reinterpret_cast<std::byte*>(&a->flag0),
              19);
}

}  // namespace
