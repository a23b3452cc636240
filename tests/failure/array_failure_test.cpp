// Arrays that run out of memory stay as they were.
#include <vector>

#include "array_elements.h"
#include "expect_harmless.h"
#include "traced_row.h"

namespace {

using namespace zyn;

/// An array, everything that could be seen of it at first, and more elements.
template <class Array>
struct Filled {
    using E = typename Array::value_type;

    Filled() {
        for (int i = 0; i < 6; ++i) { items.push_back(element<E>(i)); }
        other->assign(items.data(), 6);
        for (int i = 0; i < 4; ++i) { array->append(element<E>(10 + i)); }
        storage = array->begin();
        before.assign(array->begin(), array->end());
        countsBefore = counts();
    }
    static std::vector<int> counts() {
        std::vector<int> result;
        if constexpr (CountedPointer<E>) {
            for (int i = 0; i < elementCount; ++i) {
                result.push_back(element<E>(i)->referenceCount());
            }
        }
        return result;
    }
    bool isAsItWas() {
        return array->begin() == storage && array->capacity() == 4 && counts() == countsBefore &&
               std::vector<E>(array->begin(), array->end()) == before;
    }

    ref_ptr<Array> array = newArrayOf<Array>(), other = newArrayOf<Array>();
    std::vector<E> items, before;
    E* storage;
    std::vector<int> countsBefore;
};

template <class Array>
class ArrayFailure : public testing::Test {};
using ArrayClasses = testing::Types<ByteArray, StringArray, Pnt3dArray, TracedRowArray>;
TYPED_TEST_SUITE(ArrayFailure, ArrayClasses);

TYPED_TEST(ArrayFailure, LeavesTheArrayAsItWas) {
    using F = Filled<TypeParam>;
    expectHarmless<F>("append", [](F& f) { f.array->append(f.items[0]); });
    expectHarmless<F>("append buffer", [](F& f) { f.array->append(f.items.data(), 6); });
    expectHarmless<F>("append array", [](F& f) { f.array->append(f.other.get()); });
    expectHarmless<F>("append itself", [](F& f) { f.array->append(f.array.get()); });
    expectHarmless<F>("insert", [](F& f) { f.array->insert(1, f.items[0]); });
    expectHarmless<F>("reserve", [](F& f) { f.array->reserve(20); });
    expectHarmless<F>("resize", [](F& f) { f.array->resize(20); });
    expectHarmless<F>("assign buffer", [](F& f) { f.array->assign(f.items.data(), 6); });
    expectHarmless<F>("assign array", [](F& f) { f.array->assign(f.other.get()); });
    expectHarmless<F>("clone", [](F& f) { ref_ptr(f.array->clone()); });
}

}  // namespace
