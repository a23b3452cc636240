// Blocks, addresses and views of pools. fuzz_containers compares pools with a vector.
#include <zyn/las.h>

#include <vector>

#include "testing.h"

namespace {

using namespace zyn;

TEST(Pool, GrowsInBlocksAndKeepsAddresses) {
    const ref_ptr<DoublePool> pool = newDoublePool();
    const std::vector<double> many(65536, 1.5);
    EXPECT_EQ(pool->append(many), 65536U);
    EXPECT_EQ(pool->blockCount(), 1U);
    const double* const last = pool->append(0);
    EXPECT_EQ(*last, 0);
    EXPECT_EQ(last, pool->at(65536));
    EXPECT_EQ(pool->blockCount(), 2U);
    EXPECT_FALSE(pool->contains(&many[0]));
    EXPECT_FALSE(pool->contains(last + 1));
    while (pool->nextBlock() != nullptr) {}
    pool->append(many);  // adds a block, which a cursor at the end misses
    EXPECT_EQ(pool->nextBlock(), nullptr);
    const double* const none = nullptr;
    EXPECT_EQ(pool->append(none, 5), -1);
    EXPECT_EQ(pool->append(many.data(), -1), -1);

    EXPECT_EQ(*ref_ptr(newPPnt3dPool())->append(nullptr), nullptr);
}

TEST(Pool, CursorContinuesWithElementsAppendedAtItsEnd) {
    const ref_ptr<IntPool> pool = newIntPool();
    EXPECT_EQ(pool->next(), nullptr);
    for (const int element : {1, 2}) {
        const int* const appended = pool->append(element);
        EXPECT_EQ(pool->next(), appended);
    }
}

/// An application's own pool, whose cursor returns 1, 2, ... whatever its size.
struct HostPool : IntPool {
    std::size_t size() const override { return 3; }
    std::size_t blockCount() const override { return 1; }
    std::size_t append(IntPool*) override { return 0; }
    int append(const int*, int) override { return 0; }
    int* append(const int&) override { return nullptr; }
    std::size_t append(const std::vector<int>&) override { return 0; }
    std::size_t append(const std::vector<int*>&) override { return 0; }
    int* at(std::size_t) override { return nullptr; }
    void clear() override {}
    int* next() override { return returned == elements ? nullptr : &++returned; }
    void rewind() override { returned = 0; }
    int* nextBlock() override { return nullptr; }
    void rewindBlocks() override {}
    std::size_t currentBlockSize() const override { return 0; }
    bool contains(const int*) const override { return false; }
    std::size_t getBlockSize() const override { return 1; }
    int elements = 0, returned = 7;
};

TEST(Pool, AppendsWhatTheCursorOfAnotherPoolReturns) {
    for (const int elements : {1, 5}) {
        const ref_ptr<HostPool> host = new HostPool;
        host->elements = elements;
        const ref_ptr<IntPool> pool = newIntPool();
        EXPECT_EQ(pool->append(host.get()), 3U);
        EXPECT_EQ(pool->size(), std::size_t(elements));
        for (int i = 1; int* const p = pool->next(); ++i) { EXPECT_EQ(*p, i); }
    }
}

TEST(Pool, ViewsPointAtTheRecordsOfTheirPool) {
    const ref_ptr<LasPntPoold> records = newLasPntPoold();
    for (int i = 0; i < 3; ++i) { records->append(ZynLasPntD()); }
    const ref_ptr<PLasPntPoold> view = PntsToPool(records.get(), nullptr);
    const ref_ptr<PLasPntdArray> array = PntsToPntArr(view.get());
    ASSERT_EQ(view->size(), 3U);
    ASSERT_EQ(array->size(), 3);
    ASSERT_EQ(records->referenceCount(), 1);
    EXPECT_EQ(*view->at(2), records->at(2));
    EXPECT_EQ(array->get(1), records->at(1));
    EXPECT_EQ(PntsToPool(ref_ptr(newLasPntPool()).get(), nullptr)->size(), 0U);
}

}  // namespace
