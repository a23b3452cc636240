// Each operation on an array is made to run out of memory at each of its allocations in turn.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <vector>

#include "array_elements.h"
#include "failing_allocation.h"
#include "traced_row.h"

namespace {

using namespace zyn;

template <class Array>
class ArrayFailure : public testing::Test {};

using ArrayClasses = testing::Types<ByteArray, StringArray, Pnt3dArray, TracedRowArray>;
TYPED_TEST_SUITE(ArrayFailure, ArrayClasses);

/// Everything that can be seen of an array.
template <class Array>
struct Snapshot {
    using E = typename Array::value_type;

    explicit Snapshot(Array& array)
        : storage(array.begin()), capacity(array.capacity()), items(array.begin(), array.end()) {
        if constexpr (CountedPointer<E>) {
            for (int i = 0; i < elementCount; ++i) {
                counts.push_back(element<E>(i)->referenceCount());
            }
        }
    }
    bool operator==(const Snapshot&) const = default;

    E* storage;
    int capacity;
    std::vector<E> items;
    std::vector<int> counts;
};

TYPED_TEST(ArrayFailure, LeavesTheArrayAsItWas) {
    using Array = TypeParam;
    using E = typename Array::value_type;
    std::vector<E> items;
    for (int i = 0; i < 6; ++i) { items.push_back(element<E>(i)); }
    const ref_ptr<Array> other = newArrayOf<Array>();
    other->assign(items.data(), 6);

    struct Operation {
        const char* name;
        std::function<void(Array&)> run;
    };
    const std::vector<Operation> operations = {
        {"append", [&](Array& a) { a.append(items[0]); }},
        {"append buffer", [&](Array& a) { a.append(items.data(), 6); }},
        {"append array", [&](Array& a) { a.append(other.get()); }},
        {"append itself", [](Array& a) { a.append(&a); }},
        {"insert", [&](Array& a) { a.insert(1, items[0]); }},
        {"reserve", [](Array& a) { a.reserve(20); }},
        {"resize", [](Array& a) { a.resize(20); }},
        {"assign buffer", [&](Array& a) { a.assign(items.data(), 6); }},
        {"assign array", [&](Array& a) { a.assign(other.get()); }},
        {"clone", [](Array& a) { ref_ptr<Array> copy = a.clone(); }},
    };
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.name);
        const ref_ptr<Array> array = newArrayOf<Array>();
        for (int i = 0; i < 4; ++i) { array->append(element<E>(10 + i)); }
        const Snapshot<Array> before(*array);

        bool failed = true;
        for (int successes = 0; failed; ++successes) {
            try {
                const support::FailingAllocation memory(successes);
                operation.run(*array);
                failed = false;
            } catch (const std::bad_alloc&) {}
            if (failed) { ASSERT_TRUE(Snapshot<Array>(*array) == before); }
            ASSERT_TRUE(failed || successes > 0) << "nothing was allocated";
        }
    }
}

}  // namespace
