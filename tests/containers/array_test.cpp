// What arrays refuse, and in which order they release rows. fuzz_containers compares them with a
// vector.
#include <algorithm>
#include <limits>
#include <stdexcept>
#include <vector>

#include "array_elements.h"
#include "testing.h"
#include "traced_row.h"

namespace {

using namespace zyn;

template <class ArrayClass>
class Array : public testing::Test {};
using ArrayClasses = testing::Types<ByteArray, StringArray, TracedRowArray>;
TYPED_TEST_SUITE(Array, ArrayClasses);

template <class Error, class Misuse>
void expectThrown(const char* text, Misuse misuse) {
    try {
        misuse();
        ADD_FAILURE() << text;
    } catch (const Error& error) { EXPECT_STREQ(error.what(), text); }
}

TYPED_TEST(Array, ThrowsOnMisuseAndStaysUnchanged) {
    using E = typename TypeParam::value_type;
    const std::vector<E> three{element<E>(1), element<E>(2), element<E>(3)};
    const ref_ptr<TypeParam> array = newArrayOf<TypeParam>();
    array->append(three.data(), 3);
    volatile int most = std::numeric_limits<int>::max();  // hides it from compilers, which warn
    for (const int index : {-1, 3, int(most)}) {
        constexpr const char* text = "invalid vector<T> subscript";
        expectThrown<std::out_of_range>(text, [&] { (void)array->get(index); });
        expectThrown<std::out_of_range>(text, [&] { (void)array->getRef(index); });
    }
    const auto appendMost = [&] { array->append(three.data(), most); };
    expectThrown<std::length_error>("vector<T> too long", appendMost);
    using Refusal = std::conditional_t<sizeof(E) == 1, std::bad_alloc, std::length_error>;
    EXPECT_THROW(array->reserve(-1), Refusal);
    EXPECT_THROW(array->resize(-1), Refusal);
    EXPECT_THROW(array->assign(three.data(), -1), Refusal);
    EXPECT_EQ(array->append(three.data(), -5), 3);
    EXPECT_EQ(std::vector<E>(array->begin(), array->end()), three);
    EXPECT_EQ(array->capacity(), 3);
}

/// Each row records its end, and then checks that the array holds live rows alone.
class RowArray : public testing::Test {
protected:
    /// Adds rows with the names 0, 1, 2, ..., held by the array alone.
    void fill(int count) {
        for (int name = 0; name < count; ++name) { addRow(array->size(), name); }
    }
    void addRow(int at, int name) {
        auto* const row = new TracedRow;
        row->onEnd = [this, row, name] {
            std::erase(alive, row);
            ended.push_back(name);
            for (int i = 0; array && i < array->size(); ++i) {
                TracedRow* const left = array->get(i);
                if (left != nullptr) { EXPECT_EQ(std::ranges::count(alive, left), 1) << i; }
            }
            whenRowEnds(name);
        };
        alive.push_back(row);
        array->insert(at, row);
    }

    std::vector<TracedRow*> alive;
    std::vector<int> ended;
    std::function<void(int)> whenRowEnds = [](int) {};
    ref_ptr<TracedRowArray> array = newArrayOf<TracedRowArray>();
};

TEST_F(RowArray, ReleasesRowsInAscendingOrder) {
    fill(7);
    EXPECT_THROW(array->removeRange(-1, 2), std::out_of_range);
    EXPECT_THROW(array->removeRange(2, 8), std::out_of_range);
    EXPECT_THROW(array->removeAt(7), std::out_of_range);
    array->removeRange(3, 1);
    EXPECT_THAT(ended, testing::IsEmpty());
    array->removeRange(2, 5);
    array->removeAt(1);
    array->removeLast();
    array->removeFirst();
    fill(3);
    array->removeAll();
    fill(2);
    array = nullptr;
    EXPECT_EQ(ended, (std::vector{2, 3, 4, 1, 6, 0, 5, 0, 1, 2, 0, 1}));
}

TEST_F(RowArray, MayBeChangedByARowThatEnds) {
    fill(4);
    whenRowEnds = [this](int name) {
        if (name == 1) { addRow(array->size(), 10); }
        if (name == 2) { array->removeFirst(); }
        if (name == 3) { addRow(0, 11); }
    };
    array->removeAll();
    EXPECT_EQ(array->size(), 0);
    EXPECT_EQ(ended.size(), 6U);

    ended.clear();
    fill(6);
    whenRowEnds = [this](int name) {
        if (name == 2) { array->removeAll(); }
        if (name == 3) { addRow(array->size(), 12); }
    };
    array->removeRange(1, 4);
    EXPECT_EQ(ended, (std::vector{1, 2, 0, 4, 5, 3}));
    EXPECT_EQ(array->size(), 1);
}

}  // namespace
