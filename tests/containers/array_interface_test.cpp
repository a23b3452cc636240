// The arrays as an application meets them, from the shared library.
#include <gtest/gtest.h>
#include <zyn/array.h>

#include <QString>

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

TEST(ArrayInterface, LiteralsMeanTheElement) {
    const ref_ptr<DoubleArray> numbers = newDoubleArray();
    EXPECT_EQ(numbers->append(0), 1);
    EXPECT_EQ(numbers->append(2.5f), 2);
    EXPECT_EQ(numbers->get(0), 0.0);
    const ref_ptr<PPnt3dArray> pointers = newPPnt3dArray();
    EXPECT_EQ(pointers->append(nullptr), 1);
    EXPECT_EQ(pointers->get(0), nullptr);
}

TEST(ArrayInterface, ResizeFillsWithDefaultElements) {
    const auto filled = [](auto* array) {
        const ref_ptr held = array;
        held->resize(5);
        EXPECT_EQ(held->size(), 5);
        return held->last();
    };
    EXPECT_EQ(filled(newIntArray()), 0);
    EXPECT_EQ(filled(newPCharArray()), nullptr);
    EXPECT_EQ(filled(newByteArrayArray()), nullptr);
    EXPECT_TRUE(filled(newStringArray()).isNull());
    EXPECT_EQ(filled(newPnt2iArray()).y, -99999);
    EXPECT_EQ(filled(newPnt3dArray()), XPnt3d(0, 0, 0));
    EXPECT_FALSE(filled(newPnt2dArray()).isValid());
    EXPECT_EQ(filled(newTagPnt3dArray()).tag, -1);
}

TEST(PointConversion, RoundsCoordinatesAndLeavesIntensityBehind) {
    const ref_ptr<Pnt3dArray> source = newPnt3dArray();
    EXPECT_EQ(Pnt3dToPnt3fArr(source.get())->referenceCount(), 1);
    EXPECT_EQ(Pnt3dToPnt3fArr(source.get())->size(), 0);

    source->append(XPnt3d(0.1, 16777217.0, -1e300, 7));
    source->append(XPnt3d(1, 2, 3, -8));
    const ref_ptr<Pnt3fArray> narrowed = Pnt3dToPnt3fArr(source.get());
    ASSERT_EQ(narrowed->size(), 2);
    EXPECT_EQ(narrowed->get(0), XPnt3f(0.1f, 16777216.0f, -INFINITY));
    EXPECT_EQ(narrowed->get(0).inten, 0);

    narrowed->getRef(1).inten = 5;
    const ref_ptr<Pnt3dArray> widened = Pnt3fToPnt3dArr(narrowed.get());
    EXPECT_EQ(widened->get(0).x, double(0.1f));
    EXPECT_EQ(widened->get(1), XPnt3d(1, 2, 3));
    EXPECT_EQ(widened->get(1).inten, 0);
}

TEST(PointConversion, ViewsPointIntoTheSource) {
    const ref_ptr<Pnt3fArray> source = newPnt3fArray();
    source->resize(3);
    const ref_ptr<PPnt3fArray> view = PntsToPnt3f(source.get());
    ASSERT_EQ(view->size(), 3);
    EXPECT_EQ(view->get(2), &source->getRef(2));
    EXPECT_EQ(source->referenceCount(), 1);

    const ref_ptr<PPnt3fArray> picked = PntsToPnt3f({view->get(2), nullptr, view->get(0)});
    ASSERT_EQ(picked->size(), 3);
    EXPECT_EQ(picked->get(0), view->get(2));
    EXPECT_EQ(picked->get(1), nullptr);
}

}  // namespace
