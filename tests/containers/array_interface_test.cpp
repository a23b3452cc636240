// The arrays as an application sees them, from the shared library.
#include <zyn/array.h>
#include <zyn/delaunay.h>
#include <zyn/pms.h>
#include <zyn/variant.h>

#include <QString>

#include "testing.h"

namespace {

using namespace zyn;

template <class Array, class Argument>
concept Appends = requires(Array& array, Argument argument) { array.append(argument); };

template <class Array>
concept AppendsZero = requires(Array& array) { array.append(0); };

static_assert(AppendsZero<CharArray> && AppendsZero<IntArray> && AppendsZero<DoubleArray>);
static_assert(!AppendsZero<Pnt3dArray> && !AppendsZero<Pnt2iArray> && !AppendsZero<StringArray>);
static_assert(Appends<PPnt3dArray, std::nullptr_t> && Appends<ByteArrayArray, std::nullptr_t>);
static_assert(!Appends<Pnt3dArray, std::nullptr_t> && !Appends<StringArray, std::nullptr_t>);
static_assert(!Appends<IntArray, std::nullptr_t> && !Appends<ByteArrayArray, IntArray*>);

template <class T, class... Arguments>
concept IsMade = requires(Arguments... arguments) { make<T>(arguments...); };

static_assert(IsMade<IZynPMSDataTable> && IsMade<IZynVariant> && IsMade<DelaunayArray>);
static_assert(!IsMade<PPnt3dPoolPool> && !IsMade<IZynDelaunayD> && !IsMade<IntArray, int>);

TEST(Make, HoldsOneReferenceToTheNewObject) {
    const auto point = make<Pnt3dPool>();
    EXPECT_EQ(point->referenceCount(), 1);
    const auto engine = make<IZynDelaunayD>(5, -1, -2, 3, 4.5);
    EXPECT_EQ(engine->referenceCount(), 1);
    const double* const corner = engine->nextTriangle()->vertex[2];
    EXPECT_EQ(XPnt3d(corner), XPnt3d(3, 4.5, 5));
}

TEST(ArrayInterface, AppendTakesLiteralsAsElements) {
    const ref_ptr<DoubleArray> numbers = newDoubleArray();
    EXPECT_EQ(numbers->append(0), 1);
    EXPECT_EQ(numbers->append(2.5f), 2);
    EXPECT_EQ(numbers->get(0), 0.0);
    const DoubleArray& read = *numbers;
    EXPECT_EQ(read[1], 2.5);
    EXPECT_EQ(read.end() - read.begin(), 2);
    const ref_ptr<PPnt3dArray> pointers = newPPnt3dArray();
    EXPECT_EQ(pointers->append(nullptr), 1);
    EXPECT_EQ(pointers->get(0), nullptr);
}

/// An application's own array of 0, 1, 2, ... that loses its last element at each read.
struct ShrinkingArray : IntArray {
    int get(int index) const override { return --count, index; }
    int size() const override { return count; }
    mutable int count = 0;

    // The tests call none of these.
    void removeAll() override {}
    int append(const int*, int) override { return 0; }
    int append(const IntArray*) override { return 0; }
    int append(int) override { return 0; }
    int insert(int, int) override { return 0; }
    int& getRef(int) override { return count; }
    int last() const override { return 0; }
    int first() const override { return 0; }
    void removeLast() override {}
    void removeFirst() override {}
    void removeRange(int, int) override {}
    void removeAt(int) override {}
    int capacity() const override { return 0; }
    void reserve(int) override {}
    void resize(int) override {}
    int assign(const IntArray*) override { return 0; }
    int assign(const int*, int) override { return 0; }
    IntArray* clone() const override { return nullptr; }
    int* data() override { return nullptr; }
    const int* data() const override { return nullptr; }
    int* begin() override { return nullptr; }
};

TEST(ArrayInterface, AppendAsksForTheSizeOfAnotherArrayBeforeEachElement) {
    const ref_ptr<ShrinkingArray> source = new ShrinkingArray;
    source->count = 6;
    const ref_ptr<IntArray> target = newIntArray();
    target->append(7);
    EXPECT_EQ(target->append(source.get()), 4);
    EXPECT_EQ(target->last(), 2);
    EXPECT_EQ(target->append(target.get()), 8);
}

TEST(ArrayInterface, NarrowingRoundsPointsAndDropsTheirIntensity) {
    const ref_ptr<Pnt3dArray> source = newPnt3dArray();
    source->append(XPnt3d(0.1, 16777217.0, -1e300, 7));
    source->append(XPnt3d(1, 2, 3, -8));
    const ref_ptr<Pnt3fArray> narrowed = Pnt3dToPnt3fArr(source.get());
    EXPECT_EQ(narrowed->get(0), XPnt3f(0.1f, 16777216.0f, -INFINITY));
    EXPECT_EQ(narrowed->get(0).inten, 0);

    narrowed->getRef(1).inten = 5;
    const ref_ptr<Pnt3dArray> widened = Pnt3fToPnt3dArr(narrowed.get());
    ASSERT_EQ(widened->size(), 2);
    EXPECT_EQ(widened->get(0).x, double(0.1f));
    EXPECT_EQ(widened->get(1), XPnt3d(1, 2, 3));
    EXPECT_EQ(widened->get(1).inten, 0);
}

TEST(ArrayInterface, ViewsPointAtTheElementsOfTheirArray) {
    const ref_ptr<Pnt3fArray> points = newPnt3fArray();
    points->resize(2);
    const ref_ptr<PPnt3fArray> view = PntsToPnt3f(points.get());
    ASSERT_EQ(view->size(), 2);
    EXPECT_EQ(view->get(1), &points->getRef(1));
    EXPECT_EQ(points->referenceCount(), 1);
    const ref_ptr<PPnt3fArray> picked = PntsToPnt3f({view->get(1), nullptr});
    ASSERT_EQ(picked->size(), 2);
    EXPECT_EQ(picked->get(0), view->get(1));
    EXPECT_EQ(picked->get(1), nullptr);
}

}  // namespace
