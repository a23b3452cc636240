/// @file
/// Typed arrays: counted, growable, contiguous, one class per element type.
///
/// All array classes have the same operations in the same order (TypedArray), and each has a
/// factory, which makes it with count 0. A plain array holds its elements by value. Sizes,
/// capacities and indices are int; indices count from 0.
///
///     auto points = make<Pnt3dArray>();             // a ref_ptr
///     points->reserve(1000);                        // no element moves up to 1000 points
///     points->append(XPnt3d(1.0, 2.0, 3.0));        // the new size: 1
///     points->getRef(0).z = 5.0;
///     for (const XPnt3d& p : *points) { use(p); }
///     points->get(7);                               // throws std::out_of_range
///
///     auto lines = make<Pnt3dArrayArray>();
///     lines->append(points.get());                  // the row is now held twice
///
/// Capacities grow by half: 1, 2, 3, 4, 6, 9, 13, ... Growth invalidates every pointer and
/// reference into the array. Errors throw as in the standard containers, and leave the array
/// unchanged:
/// - std::out_of_range, "invalid vector<T> subscript";
/// - std::length_error, "vector<T> too long";
/// - std::bad_alloc.
///
/// Ownership: a raw pointer in a plain array is a value like any other; what it points to is the
/// caller's. A reference-holding array (`...ArrayArray`) holds pointers to counted objects, and one
/// count of each.
///
/// Threads: use an array on one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/referenced.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

class QString;

namespace zyn {

/// The base of every array.
class ZYN_EXPORT ZynArray : public ZynReferenced {
public:
    ZynArray() = default;
    ZynArray(const ZynArray&) = default;
    ZynArray& operator=(const ZynArray&) = default;

    /// Sets the size to 0; the capacity stays. A reference-holding array releases its count of each
    /// row.
    virtual void removeAll() = 0;
    /// Does nothing: no array returns memory before its end.
    virtual void trim();

protected:
    ~ZynArray() override;
};

/// The interface of the array of E whose class is Derived. Below, "rows" are the elements of a
/// reference-holding array.
template <class Derived, class E>
class ZYN_EXPORT TypedArray : public ZynArray {
public:
    /// The element type, named as in standard containers.
    using value_type = E;

    // Adding. Each operation returns the new size.

    /// Appends copies of `count` elements; a count below 1 changes nothing. REQUIRES: `items` does
    /// not point into this array.
    virtual int append(const E* items, int count) = 0;
    /// Appends a copy of each element of `other`, which may be this array. If the application
    /// implements `other`, reads its size again before each element.
    virtual int append(const Derived* other) = 0;
    /// Appends one element. A row gains a count; a null row is allowed.
    virtual int append(E value) = 0;
    /// Inserts an element before position `index`. REQUIRES: 0 <= index <= size().
    virtual int insert(int index, E value) = 0;

    // Reading and removing. Reading a row adds no count; removing one releases a count.

    /// Returns element `index`. Throws std::out_of_range for an index outside the array.
    [[nodiscard]] virtual E get(int index) const = 0;
    /// Returns a reference to element `index`. Throws std::out_of_range for an index outside the
    /// array. The reference is valid until the storage grows, or an element is inserted or removed
    /// at or before this one. Writing a row through it changes no count.
    [[nodiscard]] virtual E& getRef(int index) = 0;
    /// Returns or removes the last or the first element. REQUIRES: the array is not empty.
    /// @{
    [[nodiscard]] virtual E last() const = 0;
    [[nodiscard]] virtual E first() const = 0;
    virtual void removeLast() = 0;
    virtual void removeFirst() = 0;
    /// @}
    /// Removes the elements from `from` up to but not including `to`. REQUIRES, in a plain array: 0
    /// <= from <= to <= size(). A reference-holding array throws std::out_of_range and removes
    /// nothing if an element of the range does not exist.
    virtual void removeRange(int from, int to) = 0;
    /// Removes element `index`. REQUIRES, in a plain array: 0 <= index < size(). A
    /// reference-holding array throws std::out_of_range for an index outside.
    virtual void removeAt(int index) = 0;

    // Size

    /// Returns the number of elements, or the number that the storage has room for.
    /// @{
    [[nodiscard]] virtual int size() const = 0;
    [[nodiscard]] virtual int capacity() const = 0;
    /// @}
    /// Enlarges the capacity to exactly `count`, if it is smaller. Throws std::length_error for a
    /// negative count; for elements of one byte, std::bad_alloc.
    virtual void reserve(int count) = 0;
    /// Truncates the array, or appends default elements: 0, null, or default-constructed objects.
    /// Throws as reserve() does. Changes no count of a row.
    virtual void resize(int count) = 0;

    // Whole arrays

    /// Replaces the elements by copies of those of `other`, and returns the new size. Assigning an
    /// array to itself changes nothing.
    virtual int assign(const Derived* other) = 0;
    /// Replaces the elements by copies of `count` elements, and returns the new size. REQUIRES:
    /// `items` does not point into this array.
    virtual int assign(const E* items, int count) = 0;
    /// Returns a new array with count 0 and copies of the elements. Rows are shared, not copied.
    [[nodiscard]] virtual Derived* clone() const = 0;
    /// Returns the address of the first element; null in an empty plain array. Valid until the
    /// storage grows.
    /// @{
    [[nodiscard]] virtual E* data() = 0;
    [[nodiscard]] virtual const E* data() const = 0;
    /// @}
    /// Returns the start of the storage; null only if the array never had any.
    [[nodiscard]] virtual E* begin() = 0;

    // Not virtual: for range-based `for` loops, subscripts and literals.

    /// Returns the address after the last element.
    /// @{
    [[nodiscard]] E* end() { return begin() + size(); }
    [[nodiscard]] const E* end() const { return begin() + size(); }
    /// @}
    /// Returns the address of the first element; null in an empty plain array.
    [[nodiscard]] const E* begin() const { return data(); }
    /// Returns element `index`, without a check. Each use is a virtual call: a loop over all
    /// elements is faster from begin() to end(). REQUIRES: 0 <= index < size().
    /// @{
    [[nodiscard]] E& operator[](int index) { return begin()[index]; }
    [[nodiscard]] const E& operator[](int index) const { return begin()[index]; }
    /// @}

    /// Appends the element: `append(0)` on numbers, `append(nullptr)` on pointers. On any other
    /// element `append(nullptr)` does not compile.
    /// @{
    template <std::integral N>
        requires std::is_arithmetic_v<E>
    int append(N value) {
        return append(static_cast<E>(value));
    }
    int append(std::nullptr_t)
        requires std::is_pointer_v<E>
    {
        return append(E(nullptr));
    }
    int append(std::nullptr_t)
        requires(!std::is_pointer_v<E>)
    = delete;
    /// @}
    /// Refuses a null pointer: it is not an array.
    int assign(std::nullptr_t) = delete;
};

/// Declares the array class `Name` of `Element` and its factory.
#define ZYN_ARRAY(Name, ...)                                                  \
    class Name;                                                               \
    [[nodiscard]] ZYN_EXPORT Name* new##Name();                               \
    constexpr auto factoryOf(std::type_identity<Name>) { return &new##Name; } \
    class ZYN_EXPORT Name : public TypedArray<Name, __VA_ARGS__> {}

// Numbers and strings

ZYN_ARRAY(CharArray, char);
ZYN_ARRAY(ByteArray, unsigned char);
ZYN_ARRAY(ShortArray, short);
ZYN_ARRAY(WCharArray, char16_t);
ZYN_ARRAY(IntArray, int);
ZYN_ARRAY(UIntArray, unsigned int);
ZYN_ARRAY(LongArray, std::int32_t);
ZYN_ARRAY(FloatArray, float);
ZYN_ARRAY(DoubleArray, double);
ZYN_ARRAY(StringArray, QString);

// Points

ZYN_ARRAY(Pnt2dArray, XPnt2d);
ZYN_ARRAY(Pnt2fArray, XPnt2f);
ZYN_ARRAY(Pnt2iArray, PT2<std::int32_t>);
ZYN_ARRAY(Pnt3dArray, XPnt3d);
ZYN_ARRAY(Pnt3fArray, XPnt3f);
ZYN_ARRAY(TagPnt2dArray, TagPnt2d);
ZYN_ARRAY(TagPnt3dArray, TagPnt3d);
ZYN_ARRAY(EllipseArray, ZynEllipse);

// Raw pointers, which are not counted

ZYN_ARRAY(PCharArray, char*);
ZYN_ARRAY(PByteArray, unsigned char*);
ZYN_ARRAY(PShortArray, short*);
ZYN_ARRAY(PIntArray, int*);
ZYN_ARRAY(PLongArray, std::int32_t*);
ZYN_ARRAY(PFloatArray, float*);
ZYN_ARRAY(PDoubleArray, double*);
ZYN_ARRAY(PPnt2dArray, XPnt2d*);
ZYN_ARRAY(PPnt2iArray, PT2<std::int32_t>*);
ZYN_ARRAY(PPnt3fArray, XPnt3f*);
ZYN_ARRAY(PPnt3dArray, XPnt3d*);

// Reference-holding

ZYN_ARRAY(ByteArrayArray, ByteArray*);
ZYN_ARRAY(IntArrayArray, IntArray*);
ZYN_ARRAY(UIntArrayArray, UIntArray*);
ZYN_ARRAY(FloatArrayArray, FloatArray*);
ZYN_ARRAY(DoubleArrayArray, DoubleArray*);
ZYN_ARRAY(Pnt2dArrayArray, Pnt2dArray*);
ZYN_ARRAY(Pnt2iArrayArray, Pnt2iArray*);
ZYN_ARRAY(Pnt3fArrayArray, Pnt3fArray*);
ZYN_ARRAY(Pnt3dArrayArray, Pnt3dArray*);
ZYN_ARRAY(PPnt3fArrayArray, PPnt3fArray*);
ZYN_ARRAY(PPnt3dArrayArray, PPnt3dArray*);
ZYN_ARRAY(TagPnt2dArrayArray, TagPnt2dArray*);
ZYN_ARRAY(EllipseArrayArray, EllipseArray*);

// Conversions between point arrays. REQUIRES: the source is not null.

/// Returns the points rounded to float, in order, with `inten` 0.
[[nodiscard]] ZYN_EXPORT ref_ptr<Pnt3fArray> Pnt3dToPnt3fArr(const Pnt3dArray* source);
/// Returns the points widened to double, in order, with `inten` 0.
[[nodiscard]] ZYN_EXPORT ref_ptr<Pnt3dArray> Pnt3fToPnt3dArr(const Pnt3fArray* source);

/// Returns the address of each point. The result holds no count of `source`, and is valid as long
/// as the points stay in place.
/// @{
[[nodiscard]] ZYN_EXPORT ref_ptr<PPnt3fArray> PntsToPnt3f(Pnt3fArray* source);
[[nodiscard]] ZYN_EXPORT ref_ptr<PPnt3fArray> PntsToPnt3f(std::vector<XPnt3f*> source);
/// @}

}  // namespace zyn
