// What all pools do alike.
#include "containers/pool_imp.h"

#include <gtest/gtest.h>
#include <zyn/las.h>

#include <algorithm>
#include <random>
#include <vector>

#include "array_elements.h"
#include "seed.h"

namespace {

using namespace zyn;

template <class Pool>
class PoolTest : public testing::Test {};
using PoolClasses = testing::Types<BytePool, DoublePool, Pnt3dPool, PPnt3dPool>;
TYPED_TEST_SUITE(PoolTest, PoolClasses);

TYPED_TEST(PoolTest, FollowsAVectorThroughRandomOperations) {
    using E = typename TypeParam::value_type;
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](int n) { return std::uniform_int_distribution(0, n - 1)(random); };
    constexpr std::size_t blockSize = 8;
    const ref_ptr<TypeParam> pool = new ZynPoolImp<TypeParam>(blockSize);
    std::vector<E> model;
    std::vector<E*> addresses;
    for (int step = 0; step < 2000; ++step) {
        std::vector<E> some;
        for (int n = pick(30); n > 0; --n) { some.push_back(element<E>(pick(elementCount))); }
        const int count = int(some.size());
        switch (pick(6)) {
        case 0: EXPECT_EQ(pool->append(some.data(), count), count == 0 ? -1 : count); break;
        case 1: EXPECT_EQ(pool->append(some), some.size()); break;
        case 2: {
            std::vector<E*> pointers;
            for (E& e : some) { pointers.push_back(&e); }
            EXPECT_EQ(pool->append(pointers), some.size());
            break;
        }
        case 3: {
            const ref_ptr<TypeParam> other = new ZynPoolImp<TypeParam>(5);
            other->append(some);
            static_cast<void>(other->next());
            EXPECT_EQ(pool->append(other.get()), some.size());
            break;
        }
        case 4:
            some.resize(1, E());
            EXPECT_EQ(*pool->append(static_cast<const E&>(some[0])), some[0]);
            break;
        default:
            some.clear();
            if (pick(10) > 0) { break; }
            pick(2) == 0 ? pool->clear() : pool->removeAll();
            model.clear();
            addresses.clear();
        }
        model.insert(model.end(), some.begin(), some.end());
        while (addresses.size() < model.size()) { addresses.push_back(pool->at(addresses.size())); }

        ASSERT_EQ(pool->size(), model.size());
        ASSERT_EQ(pool->blockCount(), std::max<std::size_t>(1, (model.size() + 7) / 8));
        ASSERT_EQ(pool->at(model.size()), nullptr);
        pool->rewind();
        for (std::size_t i = 0; i < model.size(); ++i) {
            E* const e = pool->next();
            ASSERT_TRUE(e == addresses[i] && *e == model[i] && pool->contains(e));
        }
        ASSERT_EQ(pool->next(), nullptr);
        std::size_t walked = 0;
        pool->rewindBlocks();
        while (const std::size_t n = pool->currentBlockSize()) {
            ASSERT_EQ(pool->nextBlock(), addresses[walked]);
            walked += n;
        }
        ASSERT_TRUE(walked == model.size() && pool->nextBlock() == nullptr);
    }
}

TEST(Pool, BlocksOf65536AndAddressesThatStay) {
    const ref_ptr<DoublePool> pool = newDoublePool();
    EXPECT_TRUE(pool->getBlockSize() == 65536 && pool->getType() == ZynPool::Type::Unspecified);
    const std::vector<double> many(70000, 1.5);
    EXPECT_EQ(pool->append(many.data(), 65536), 65536);
    EXPECT_EQ(pool->blockCount(), 1U);
    EXPECT_TRUE(pool->append(0) == pool->at(65536) && pool->blockCount() == 2);
    double* const first = pool->at(0);
    double* const last = pool->at(65536);
    for (int i = 0; i < 1000000; ++i) { pool->append(2.5); }
    EXPECT_TRUE(pool->at(0) == first && pool->at(65536) == last && *first == 1.5 && *last == 0);
    EXPECT_FALSE(pool->contains(&many[0]) || pool->contains(pool->at(pool->size() - 1) + 1));
    const double* const none = nullptr;
    EXPECT_TRUE(pool->append(none, 5) == -1 && pool->append(many.data(), -1) == -1);
    // Appended during a walk, and to itself.
    const ref_ptr<IntPool> numbers = newIntPool();
    EXPECT_EQ(numbers->next(), nullptr);
    numbers->append(1);
    numbers->rewind();
    EXPECT_EQ(*numbers->next(), 1);
    numbers->append(2);
    EXPECT_EQ(*numbers->next(), 2);
    EXPECT_TRUE(numbers->append(numbers.get()) == 2 && numbers->size() == 4);
    const ref_ptr<PPnt3dPool> pointers = newPPnt3dPool();
    EXPECT_EQ(*pointers->append(nullptr), nullptr);
    EXPECT_EQ(*ref_ptr(new ZynPoolImp<Pnt3dPool>(4))->allocate(), XPnt3d());
}

TEST(Pool, ViewsOfRecords) {
    const ref_ptr<LasPntPoold> records = newLasPntPoold();
    for (int i = 0; i < 3; ++i) { records->append(ZynLasPntD()); }
    const ref_ptr<PLasPntPoold> view = PntsToPool(records.get(), nullptr);
    const ref_ptr<PLasPntdArray> array = PntsToPntArr(view.get());
    ASSERT_TRUE(view->size() == 3 && array->size() == 3 && records->referenceCount() == 1);
    EXPECT_TRUE(*view->at(2) == records->at(2) && array->get(1) == records->at(1));
    const ref_ptr<LasPntPool> empty = newLasPntPool();
    EXPECT_EQ(PntsToPool(empty.get(), nullptr)->size(), 0U);
}

}  // namespace
