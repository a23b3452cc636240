// How an array of counted rows holds them and lets them go.
#include "containers/array_imp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "traced_row.h"

namespace {

using namespace zyn;
using Names = std::vector<int>;

/// Rows tell in which order they end, and look at the whole array each time.
class RowArrayTest : public testing::Test {
private:
    std::vector<TracedRow*> alive;

protected:
    /// Adds rows with the names 0, 1, 2, ..., held by the array alone.
    void fill(int count) {
        for (int name = 0; name < count; ++name) { addRow(0, name); }
    }
    void addRow(int placesFromEnd, int name) {
        auto* const row = new TracedRow;
        row->onEnd = [this, row, name] {
            std::erase(alive, row);
            ended.push_back(name);
            expectLivingRows();
            whenRowEnds(name);
        };
        alive.push_back(row);
        array->insert(array->size() - placesFromEnd, row);
    }

    Names ended;
    std::function<void(int)> whenRowEnds = [](int) {};
    ref_ptr<TracedRowArray> array = new ArrayRefPointerImp<TracedRowArray>;

private:
    void expectLivingRows() const {
        for (int i = 0; array && i < array->size(); ++i) {
            TracedRow* const row = array->get(i);
            EXPECT_TRUE(row == nullptr || std::ranges::count(alive, row) == 1)
                << "row " << i << " when " << ended.back() << " ends";
        }
    }
};

TEST_F(RowArrayTest, HoldsOneCountForEachPlace) {
    const ref_ptr<TracedRow> row = new TracedRow;
    array->append(row.get());
    array->insert(0, row.get());
    array->append(nullptr);
    array->append(array.get());
    EXPECT_EQ(row->referenceCount(), 5);

    const ref_ptr<TracedRowArray> copy = array->clone();
    EXPECT_EQ(row->referenceCount(), 9);
    array = nullptr;
    EXPECT_EQ(row->referenceCount(), 5);
    copy->removeAll();
    EXPECT_EQ(row->referenceCount(), 1);
}

TEST_F(RowArrayTest, ReleasesInAscendingOrder) {
    fill(7);
    array->removeRange(2, 5);
    EXPECT_EQ(ended, (Names{2, 3, 4}));
    array->removeAt(1);
    array->removeLast();
    array->removeFirst();
    EXPECT_EQ(ended, (Names{2, 3, 4, 1, 6, 0}));
    ended.clear();
    fill(3);
    array->removeAll();
    fill(2);
    array = nullptr;
    EXPECT_EQ(ended, (Names{5, 0, 1, 2, 0, 1}));
}

TEST_F(RowArrayTest, ChecksARangeBeforeItReleasesAnything) {
    fill(4);
    EXPECT_THROW(array->removeRange(-1, 2), std::out_of_range);
    EXPECT_THROW(array->removeRange(2, 5), std::out_of_range);
    EXPECT_THROW(array->removeAt(4), std::out_of_range);
    array->removeRange(2, 2);
    array->removeRange(3, 1);
    EXPECT_EQ(array->size(), 4);
    EXPECT_EQ(ended, Names{});
}

TEST_F(RowArrayTest, MayBeChangedByARowThatEnds) {
    fill(4);
    whenRowEnds = [this](int name) {
        if (name == 1) { addRow(0, 10); }
        if (name == 2) { array->removeFirst(); }
        if (name == 3) { addRow(array->size(), 11); }
    };
    array->removeAll();
    EXPECT_EQ(array->size(), 0);
    EXPECT_EQ(ended.size(), 6u);

    ended.clear();
    fill(6);
    whenRowEnds = [this](int name) {
        if (name == 2) { array->removeAll(); }
        if (name == 3) { addRow(0, 12); }
    };
    array->removeRange(1, 4);
    EXPECT_EQ(ended, (Names{1, 2, 0, 4, 5, 3}));
    EXPECT_EQ(array->size(), 1);
}

}  // namespace
