// What pools are beside the vector that fuzz_containers compares them with.
#include <gtest/gtest.h>
#include <zyn/las.h>

#include <vector>

namespace {

using namespace zyn;

TEST(Pool, BlocksOf65536AndAddressesThatStay) {
    const ref_ptr<DoublePool> pool = newDoublePool();
    const std::vector<double> many(65536, 1.5);
    EXPECT_TRUE(pool->append(many) == 65536 && pool->blockCount() == 1);
    const double* const last = pool->append(0);
    EXPECT_TRUE(*last == 0 && last == pool->at(65536) && pool->blockCount() == 2);
    EXPECT_FALSE(pool->contains(&many[0]) || pool->contains(last + 1));
    while (pool->nextBlock() != nullptr) {}
    pool->append(many);  // adds a block, which the cursor at the end does not see
    EXPECT_EQ(pool->nextBlock(), nullptr);
    const double* const none = nullptr;
    EXPECT_TRUE(pool->append(none, 5) == -1 && pool->append(many.data(), -1) == -1);

    const ref_ptr<IntPool> walked = newIntPool();  // and filled on the way
    EXPECT_EQ(walked->next(), nullptr);
    EXPECT_TRUE(walked->append(1) == walked->next() && walked->append(2) == walked->next());
    EXPECT_EQ(*ref_ptr(newPPnt3dPool())->append(nullptr), nullptr);
}

/// A pool of the application's own, whose cursor returns 1, 2, ... whatever its size.
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

TEST(Pool, AppendsWhatTheCursorOfAnotherReturns) {
    for (const int elements : {1, 5}) {
        const ref_ptr<HostPool> host = new HostPool;
        host->elements = elements;
        const ref_ptr<IntPool> pool = newIntPool();
        EXPECT_EQ(pool->append(host.get()), 3U);
        EXPECT_EQ(pool->size(), std::size_t(elements));
        for (int i = 1; int* const p = pool->next(); ++i) { EXPECT_EQ(*p, i); }
    }
}

TEST(Pool, ViewsOfRecords) {
    const ref_ptr<LasPntPoold> records = newLasPntPoold();
    for (int i = 0; i < 3; ++i) { records->append(ZynLasPntD()); }
    const ref_ptr<PLasPntPoold> view = PntsToPool(records.get(), nullptr);
    const ref_ptr<PLasPntdArray> array = PntsToPntArr(view.get());
    ASSERT_TRUE(view->size() == 3 && array->size() == 3 && records->referenceCount() == 1);
    EXPECT_TRUE(*view->at(2) == records->at(2) && array->get(1) == records->at(1));
    EXPECT_EQ(PntsToPool(ref_ptr(newLasPntPool()).get(), nullptr)->size(), 0U);
}

}  // namespace
