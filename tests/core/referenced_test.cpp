// Counted objects, their delete handlers, and the small functions of the same header.
#include <zyn/referenced.h>

#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "testing.h"
#include "traced_row.h"

namespace {

using namespace zyn;

struct Link : TracedRow {
    ref_ptr<TracedRow> next;
};

/// Keeps the objects that it receives and destroys them on demand.
struct QueueingHandler : DeleteHandler {
    void deleteObject(const ZynReferenced* object) override { queue.push_back(object); }
    void destroyAll() {
        for (const ZynReferenced* object : std::exchange(queue, {})) { destroy(object); }
    }

    std::vector<const ZynReferenced*> queue;
    ref_ptr<TracedRow> held;
};

class Referenced : public testing::Test {
protected:
    ~Referenced() override { ZynReferenced::setDeleteHandler(nullptr); }

    TracedRow* newObject() {
        auto* const object = new TracedRow;
        object->onEnd = [this] { ++ends; };
        return object;
    }

    int ends = 0;
};

TEST_F(Referenced, EndsWhenItsLastReferenceIsReleased) {
    newObject()->unref();
    EXPECT_EQ(ends, 1);
    TracedRow* const object = newObject();
    object->unref_nodelete();
    EXPECT_EQ(object->referenceCount(), -1);
    object->ref();
    object->AddRef();
    object->AddRef();
    object->Release();
    EXPECT_EQ(object->referenceCount(), 1);
    EXPECT_EQ(ends, 1);
    object->unref_nodelete();
    object->unref();  // to -1
    EXPECT_EQ(ends, 2);
}

TEST_F(Referenced, CountsEachHolderOnce) {
    ref_ptr<TracedRow> first = newObject();
    TracedRow* const object = first.get();
    ref_ptr<const ZynReferenced> converted = first;
    const ref_ptr<TracedRow> copy = new TracedRow(*first);
    *copy = *first;
    EXPECT_EQ(converted, first);
    EXPECT_EQ(object->referenceCount(), 2);
    EXPECT_EQ(copy->referenceCount(), 1);

    ref_ptr<TracedRow> second = std::move(first);
    first = second;
    second = object;
    ref_ptr<TracedRow>& same = second;
    second = same;
    second = std::move(same);
    EXPECT_EQ(second, object);
    EXPECT_EQ(object->referenceCount(), 3);
    EXPECT_EQ(copy < second, std::less<>()(copy.get(), object));

    converted = nullptr;
    first = nullptr;
    EXPECT_EQ(first, nullptr);
    EXPECT_EQ(object->referenceCount(), 1);
    second = newObject();
    EXPECT_EQ(ends, 1);

    auto* const head = new Link;
    ref_ptr<TracedRow> chain = head;
    head->next = second;
    second = nullptr;
    chain = head->next;  // only the old object held it
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(chain->referenceCount(), 1);
    TracedRow* const last = chain.release();
    EXPECT_EQ(last->referenceCount(), 1);
    last->unref();
    EXPECT_EQ(ends, 2);
}

TEST_F(Referenced, IsDeletedWhenTheHandlerThatHoldsItEnds) {
    auto* const first = new QueueingHandler;
    ZynReferenced::setDeleteHandler(first);
    ZynReferenced::setDeleteHandler(ZynReferenced::getDeleteHandler());
    newObject()->unref();
    EXPECT_EQ(first->queue.size(), 1U);
    EXPECT_EQ(ends, 0);
    first->destroyAll();
    first->held = newObject();
    auto* const second = new QueueingHandler;
    ZynReferenced::setDeleteHandler(second);
    EXPECT_EQ(ends, 2);
    EXPECT_TRUE(second->queue.empty());

    ZynReferenced::setDeleteHandler(nullptr);
    EXPECT_EQ(ZynReferenced::getDeleteHandler(), nullptr);
    newObject()->unref();
    EXPECT_EQ(ends, 3);
}

TEST(Rand, StaysWithinItsBounds) {
    constexpr int known[][3] = {{0, 100, 1}, {0, 1000, 100}, {0, 6991, 4879},
                                {0, 100, 1}, {5, 5, 5},      {10, 0, 10}};
    for (const auto& [a, b, drawn] : known) { EXPECT_EQ(Rand(a, b), drawn); }
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    for (std::int32_t i = 0; i < 70000; ++i) {
        // The upper bound alone is the seed, so the largest draws are among these.
        ASSERT_LE(Rand(lowest, highest - i), highest - i);
        ASSERT_GE(Rand(highest, lowest + i), lowest + i);
    }
}

TEST(MemSet, WritesWholeValuesOnly) {
    const auto expectWritten = [](auto value, int byteCount, std::size_t count) {
        std::vector<unsigned char> bytes(24, 0xEE), expected = bytes;
        for (std::size_t i = 0; i < count; ++i) {
            std::memcpy(&expected[1 + i * sizeof value], &value, sizeof value);
        }
        MemSet(&bytes[1], value, byteCount);
        EXPECT_EQ(bytes, expected);
    };
    expectWritten(1.5f, 10, 2);
    expectWritten(2.0, 15, 1);
    expectWritten(2.0, 7, 0);
    expectWritten(true, 3, 3);
    expectWritten(true, -8, 0);
    expectWritten(-2, 11, 2);
}

}  // namespace
