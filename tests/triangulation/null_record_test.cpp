// The three walks that answer on a null record.
#include <zyn/tin.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace zyn;

TEST(NullRecord, WalksAnswerNull) {
    const std::vector<tin> loneFloat(1);
    const std::vector<tind> loneDouble(1);
    tin* const f = loneFloat[0].neighbor[0];
    tind* const d = loneDouble[0].neighbor[0];
    EXPECT_EQ(f->find(1, 2), nullptr);
    EXPECT_EQ(d->find(1, 2), nullptr);
    EXPECT_EQ(f->findRefine(1, 2), nullptr);
    EXPECT_EQ(d->findRefine(1, 2), nullptr);

    tind other;
    tind* t = &other;
    std::int32_t where = 7;
    EXPECT_EQ(d->find(1, 2, t, &where), -2);
    EXPECT_EQ(t, nullptr);
    EXPECT_EQ(where, 7);
}

}  // namespace
