// What all arrays do alike, run over several kinds of element.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <stdexcept>
#include <vector>

#include "array_elements.h"
#include "seed.h"
#include "traced_row.h"

namespace {

using namespace zyn;

/// An array and the vector that it should equal, changed in step.
template <class Array>
class Twin {
public:
    using E = typename Array::value_type;

    explicit Twin(unsigned seed) : array(newArrayOf<Array>()), random(seed) {}

    void changeOnce() {
        const E value = element<E>(below(elementCount));
        const int index = below(length(model) + 1);
        const bool any = !model.empty();
        switch (below(any ? 12 : 7)) {
        case 0:
            add(length(model), value);
            EXPECT_EQ(array->append(value), length(model));
            break;
        case 1:
            add(index, value);
            EXPECT_EQ(array->insert(index, value), length(model));
            break;
        case 2: {
            const std::vector<E> added(static_cast<std::size_t>(below(8)), value);
            for (const E& item : added) { add(length(model), item); }
            EXPECT_EQ(array->append(added.data(), length(added)), length(model));
            break;
        }
        case 3:
            for (const E& item : std::vector<E>(model)) { add(length(model), item); }
            EXPECT_EQ(array->append(array.get()), length(model));
            break;
        case 4: {
            const std::vector<E> source(static_cast<std::size_t>(below(20)), value);
            model = source;
            room = std::max(room, length(model));
            EXPECT_EQ(array->assign(source.data(), length(source)), length(model));
            break;
        }
        case 5:
            room = std::max(room, index);
            array->reserve(index);
            break;
        case 6: resize(below(40)); break;
        case 7:
            model.erase(model.begin());
            array->removeFirst();
            break;
        case 8:
            model.pop_back();
            array->removeLast();
            break;
        case 9: {
            const int at = below(length(model));
            model.erase(model.begin() + at);
            array->removeAt(at);
            break;
        }
        case 10: {
            const int to = index + below(length(model) + 1 - index);
            model.erase(model.begin() + index, model.begin() + to);
            array->removeRange(index, to);
            break;
        }
        default: model.clear(); array->removeAll();
        }
    }

    void expectEqual() const {
        ASSERT_EQ(array->size(), length(model));
        ASSERT_EQ(array->capacity(), room);
        ASSERT_TRUE(std::equal(array->begin(), array->end(), model.begin(), model.end()));
        ASSERT_EQ(array->begin() == nullptr, room == 0);
        ASSERT_EQ(array->data(), model.empty() && !CountedPointer<E> ? nullptr : array->begin());
        ASSERT_EQ(std::as_const(*array).data(), array->data());
        if constexpr (CountedPointer<E>) {
            for (int i = 0; i < elementCount; ++i) {
                E row = element<E>(i);
                ASSERT_EQ(row->referenceCount(), 1 + std::ranges::count(model, row));
            }
        }
    }

private:
    static int length(const std::vector<E>& items) { return static_cast<int>(items.size()); }
    int below(int bound) { return std::uniform_int_distribution(0, bound - 1)(random); }

    void add(int index, E value) {
        if (room == length(model)) { room = std::max(room + 1, room + room / 2); }
        model.insert(model.begin() + index, value);
    }
    void resize(int count) {
        if (count > room) { room = std::max(count, room + room / 2); }
        if constexpr (CountedPointer<E>) {
            // The counts of rows that are cut off stay behind.
            for (int i = count; i < length(model); ++i) {
                if (array->get(i) != nullptr) { array->get(i)->unref_nodelete(); }
            }
        }
        model.resize(static_cast<std::size_t>(count), E());
        array->resize(count);
    }

    ref_ptr<Array> array;
    std::vector<E> model;
    int room = 0;
    std::mt19937 random;
};

template <class Array>
class ArrayTest : public testing::Test {
protected:
    using Element = typename Array::value_type;

    static ref_ptr<Array> arrayOf(int count) {
        ref_ptr<Array> array = newArrayOf<Array>();
        for (int i = 0; i < count; ++i) { array->append(element<Element>(i)); }
        return array;
    }
    static std::vector<Element> elements(int count) { return contents(*arrayOf(count)); }
    static std::vector<Element> contents(Array& array) { return {array.begin(), array.end()}; }
};

using ArrayClasses = testing::Types<CharArray, ByteArray, DoubleArray, StringArray, Pnt3dArray,
                                    Pnt2iArray, PPnt3dArray, TracedRowArray>;
TYPED_TEST_SUITE(ArrayTest, ArrayClasses);

TYPED_TEST(ArrayTest, FollowsAVectorThroughRandomOperations) {
    Twin<TypeParam> twin(support::newSeed());
    for (int step = 0; step < 3000 && !this->HasFailure(); ++step) {
        twin.changeOnce();
        twin.expectEqual();
    }
}

TYPED_TEST(ArrayTest, GrowsByHalfAndReservesExactly) {
    using E = typename TypeParam::value_type;
    const ref_ptr<TypeParam> array = this->arrayOf(0);
    for (int capacity : {1, 2, 3, 4, 6, 9, 13, 19, 28}) {
        array->append(element<E>(0));
        EXPECT_EQ(array->capacity(), capacity);
        while (array->size() < capacity) { array->append(element<E>(1)); }
    }
    array->reserve(30);
    array->reserve(10);
    array->trim();
    EXPECT_EQ(array->capacity(), 30);

    const std::vector<E> ten = this->elements(10);
    const ref_ptr<TypeParam> appended = this->arrayOf(0);
    appended->append(ten.data(), 10);
    EXPECT_EQ(appended->capacity(), 13);
    EXPECT_EQ(ref_ptr(appended->clone())->capacity(), 10);
}

TYPED_TEST(ArrayTest, ThrowsOnMisuseAndStaysAsItWas) {
    constexpr int most = std::numeric_limits<int>::max();
    const ref_ptr<TypeParam> array = this->arrayOf(4);
    for (int index : {-1, 4, most}) {
        EXPECT_THROW(static_cast<void>(array->getRef(index)), std::out_of_range);
        try {
            static_cast<void>(array->get(index));
            ADD_FAILURE() << "get(" << index << ")";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "invalid vector<T> subscript");
        }
    }

    const auto one = this->elements(1);
    try {
        array->append(one.data(), most);
        ADD_FAILURE() << "more elements than an int counts";
    } catch (const std::length_error& error) { EXPECT_STREQ(error.what(), "vector<T> too long"); }
    using Refusal = std::conditional_t<sizeof(one[0]) == 1, std::bad_alloc, std::length_error>;
    EXPECT_THROW(array->reserve(-1), Refusal);
    EXPECT_THROW(array->resize(-1), Refusal);
    EXPECT_THROW(array->assign(one.data(), -1), Refusal);

    EXPECT_EQ(array->append(one.data(), -5), 4);
    EXPECT_EQ(this->contents(*array), this->elements(4));
    EXPECT_EQ(array->capacity(), 4);
}

}  // namespace
