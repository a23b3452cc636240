// Arrays that run out of memory stay unchanged.
#include <vector>

#include "array_elements.h"
#include "expect_harmless.h"
#include "traced_row.h"

namespace {

using namespace zyn;

/// An array, its visible state at first, and more elements.
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
        if constexpr (zyn::detail::CountedPointer<E>) {
            for (int i = 0; i < elementCount; ++i) {
                result.push_back(element<E>(i)->referenceCount());
            }
        }
        return result;
    }
    void expectUnchanged() {
        EXPECT_EQ(array->begin(), storage);
        EXPECT_EQ(array->capacity(), 4);
        EXPECT_EQ(counts(), countsBefore);
        EXPECT_EQ(std::vector<E>(array->begin(), array->end()), before);
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

TYPED_TEST(ArrayFailure, LeavesTheArrayUnchanged) {
    using F = Filled<TypeParam>;
    expectHarmless<F>("append", [](F& f) { return f.array->append(f.items[0]) == 5; });
    expectHarmless<F>("append buffer",
                      [](F& f) { return f.array->append(f.items.data(), 6) == 10; });
    expectHarmless<F>("append array", [](F& f) { return f.array->append(f.other.get()) == 10; });
    expectHarmless<F>("append itself", [](F& f) { return f.array->append(f.array.get()) == 8; });
    expectHarmless<F>("insert", [](F& f) { return f.array->insert(1, f.items[0]) == 5; });
    expectHarmless<F>("reserve", [](F& f) { return f.array->reserve(20), true; });
    expectHarmless<F>("resize", [](F& f) { return f.array->resize(20), true; });
    expectHarmless<F>("assign buffer",
                      [](F& f) { return f.array->assign(f.items.data(), 6) == 6; });
    expectHarmless<F>("assign array", [](F& f) { return f.array->assign(f.other.get()) == 6; });
    expectHarmless<F>("clone", [](F& f) { return ref_ptr(f.array->clone())->size() == 4; });
}

}  // namespace
