// The measurements and the world points of a block, each on their own.
#include "photogrammetry/pms_image_points.h"
#include "photogrammetry/pms_world_points.h"

#include <gtest/gtest.h>

#include <vector>

#include "int_lists.h"

namespace {

using namespace zyn;

TEST(PmsSubTableTest, MeasurementsKeepTheirPlaces) {
    CZynPMSImgPntsTable t;
    EXPECT_TRUE(t.getCount(3) == -1 && t.getValidCount(3) == -1 && !t.getPnts(3) && !t.getIds(3));
    EXPECT_EQ(t.add(3, XPnt2d(1, 2), 7) + t.add(3, XPnt2d(), 9) + t.add(3, XPnt2d(3, 4), 8), 6);
    EXPECT_EQ(t.getValidCount(3), 2);
    for (const auto& [img, idx] : {std::pair(3, -1), {3, 3}, {2, 0}, {3, 0}, {3, 0}}) {
        EXPECT_EQ(t.invalidate(img, idx), 0);
        EXPECT_TRUE(!t.getPnt(img, idx).isValid() && t.getPntId(img, idx) == -1) << img << idx;
    }
    EXPECT_TRUE(t.getCount(3) == 3 && t.getValidCount(3) == 1);
    EXPECT_EQ(list(t.getIds(3)), (std::vector{-1, 9, 8}));
    t.clearIds();
    EXPECT_TRUE(t.getIds(3)->size() == 0 && t.getCount(3) == 3);
    t.clearPnts();
    EXPECT_TRUE(t.getCount(3) == 0 && t.getValidCount(3) == 0);
}

TEST(PmsSubTableTest, WorldPointsOwnTheirLinks) {
    CZynPMSWrdPntsTable t;
    const ref_ptr<IntArray> first = listOf({0, -1, 5}), other = listOf({4});
    EXPECT_EQ(t.addPnt(XPnt3d(1, 2, 3)) + t.addIds(first.get()), 0);
    for (const int bad : {-1, 1}) {
        EXPECT_TRUE(!t.getPnt(bad).isValid() && t.getIds(bad) == nullptr);
        EXPECT_EQ(t.setPnt(bad, XPnt3d()) + t.invalidatePnt(bad) + t.getValidCount(bad) +
                      t.setIds(bad, other.get()) + t.resetIds(bad),
                  -5);
    }
    EXPECT_EQ(t.getValidCount(0), 2);
    EXPECT_EQ(t.setIds(0, other.get()), 0);
    EXPECT_TRUE(first->referenceCount() == 1 && t.getIds(0) == other);
    t.clear();  // empties the arrays of links, too
    EXPECT_TRUE(t.size() == 0 && t.getIdArrays()->size() == 0 && other->size() == 0);
    t.addIds(first.get());
    t.addPnt(XPnt3d());
    t.clearPnts();
    t.clearIds();
    EXPECT_TRUE(t.size() == 0 && t.getIdArrays()->size() == 0 && first->size() == 3);
}

}  // namespace
