#include <gtest/gtest.h>
#include <zyn/referenced.h>

#include <utility>
#include <vector>

#include "traced_row.h"

namespace {

using zyn::DeleteHandler;
using zyn::ref_ptr;
using zyn::ZynReferenced;

struct Link : TracedRow {
    ref_ptr<TracedRow> next;
};

/// Keeps what it receives, and destroys it on demand.
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

TEST_F(Referenced, EndsWhenACountIsGivenUpAndNoneIsLeft) {
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
    object->unref();
    EXPECT_EQ(ends, 2);
}

TEST_F(Referenced, CopiesNoCount) {
    const ref_ptr<TracedRow> source = new TracedRow;
    const ref_ptr<TracedRow> copy = new TracedRow(*source);
    const ref_ptr<TracedRow> second = source;
    EXPECT_EQ(copy->referenceCount(), 1);
    *copy = *source;
    EXPECT_EQ(copy->referenceCount(), 1);
    EXPECT_EQ(source->referenceCount(), 2);
}

TEST_F(Referenced, IsCountedOnceByEachHolder) {
    ref_ptr<TracedRow> first = newObject();
    TracedRow* const object = first.get();
    ref_ptr<const ZynReferenced> converted = first;
    EXPECT_TRUE(converted == first);
    EXPECT_EQ(object->referenceCount(), 2);

    ref_ptr<TracedRow> second = std::move(first);
    first = second;
    second = object;
    ref_ptr<TracedRow>& same = second;
    second = same;
    second = std::move(same);
    EXPECT_TRUE(second == object);
    EXPECT_EQ(object->referenceCount(), 3);

    converted = nullptr;
    first = nullptr;
    EXPECT_FALSE(first);
    EXPECT_EQ(object->referenceCount(), 1);
    second = newObject();
    EXPECT_EQ(ends, 1);
}

TEST_F(Referenced, IsCountedBeforeTheOldHolderEnds) {
    auto* const head = new Link;
    ref_ptr<TracedRow> chain = head;
    head->next = newObject();
    chain = head->next;
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(chain->referenceCount(), 1);
}

TEST_F(Referenced, GoesToTheInstalledHandlerOnce) {
    auto* const handler = new QueueingHandler;
    ZynReferenced::setDeleteHandler(handler);
    ZynReferenced::setDeleteHandler(ZynReferenced::getDeleteHandler());
    newObject()->unref();
    EXPECT_EQ(handler->queue.size(), 1u);
    EXPECT_EQ(ends, 0);
    handler->destroyAll();
    EXPECT_EQ(ends, 1);
}

TEST_F(Referenced, IsDeletedAtOnceWhenItsHandlerEnds) {
    auto* const first = new QueueingHandler;
    ZynReferenced::setDeleteHandler(first);
    first->held = newObject();
    auto* const second = new QueueingHandler;
    ZynReferenced::setDeleteHandler(second);
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(second->queue.empty());

    ZynReferenced::setDeleteHandler(nullptr);
    EXPECT_EQ(ZynReferenced::getDeleteHandler(), nullptr);
    newObject()->unref();
    EXPECT_EQ(ends, 2);
}

}  // namespace
