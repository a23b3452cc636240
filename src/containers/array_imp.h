// The implementations behind the typed arrays, which callers reach through virtual calls only. A
// family creates its factories from them, one line each:
//
//     IntArray* newIntArray() { return new ArrayImp<IntArray>; }
//     ByteArrayArray* newByteArrayArray() { return new ArrayRefPointerImp<ByteArrayArray>; }
//
// An operation that throws leaves the array as it was: it allocates everything first, and copies of
// elements do not throw.
#pragma once

#include <zyn/array.h>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace zyn::detail {

/// Throws std::out_of_range, "invalid vector<T> subscript".
[[noreturn]] void throwInvalidSubscript();
/// Throws std::length_error, "vector<T> too long".
[[noreturn]] void throwTooLong();

template <class E>
concept CountedPointer =
    std::is_pointer_v<E> && std::derived_from<std::remove_pointer_t<E>, ZynReferenced>;

/// Implements what both kinds of array have in common. `Self` is the final class. It removes the
/// elements, and its `retain` is called for each element that the array is about to own.
template <class Self, class Derived>
class ArrayStorage : public Derived {
public:
    using E = typename Derived::value_type;
    static_assert(std::is_nothrow_copy_constructible_v<E> && std::is_nothrow_move_assignable_v<E>);

    ArrayStorage(const ArrayStorage&) = delete;
    ArrayStorage& operator=(const ArrayStorage&) = delete;

    int append(const E* source, int count) final {
        if (count > 0) {
            makeRoom(count);
            retainAll(source, count);
            items.insert(items.end(), source, source + count);
        }
        return size();
    }
    int append(const Derived* other) final {
        const auto* const own = dynamic_cast<const ArrayStorage*>(other);
        return own == nullptr || own == this ? appendRead(*other)
                                             : append(own->items.data(), own->size());
    }
    int append(E value) final { return insert(size(), std::move(value)); }
    int insert(int index, E value) final {
        makeRoom(1);
        Self::retain(value);
        items.insert(items.begin() + index, std::move(value));
        return size();
    }

    E get(int index) const final { return items[checked(index)]; }
    E& getRef(int index) final { return items[checked(index)]; }
    E last() const final { return items.back(); }
    E first() const final { return items.front(); }

    int size() const final { return static_cast<int>(items.size()); }
    int capacity() const final { return static_cast<int>(items.capacity()); }
    void reserve(int count) final { items.reserve(asSize(count)); }
    void resize(int count) final {
        const std::size_t newSize = asSize(count);
        const E filler{};
        if (count > capacity()) { reserve(std::max(count, halfAsMuchAgain(capacity()))); }
        items.resize(newSize, filler);
    }

    int assign(const Derived* other) final {
        return other == this ? size() : assign(other->data(), other->size());
    }
    // The array owns the new elements before it releases the old ones, as in ref_ptr: the new
    // elements may be rows that only this array keeps alive.
    int assign(const E* source, int count) final {
        reserve(count);
        retainAll(source, count);
        this->removeAll();
        items.assign(source, source + count);
        return size();
    }
    Derived* clone() const final {
        auto copy = std::make_unique<Self>();
        copy->assign(this);
        return copy.release();
    }
    E* begin() final { return items.data(); }

protected:
    ArrayStorage() = default;

    /// Returns `index` as an index into `items`, or throws.
    std::size_t checked(int index) const {
        if (index < 0 || index >= size()) { throwInvalidSubscript(); }
        return static_cast<std::size_t>(index);
    }

    std::vector<E> items;

private:
    static constexpr int maxSize = std::numeric_limits<int>::max();

    /// Returns `count` as a size; throws if it is negative.
    static std::size_t asSize(int count) {
        if (count < 0) {
            // Only the address space limits elements of one byte.
            if constexpr (sizeof(E) == 1) { throw std::bad_alloc(); }
            throwTooLong();
        }
        return static_cast<std::size_t>(count);
    }

    static int halfAsMuchAgain(std::int64_t room) {
        return static_cast<int>(std::min<std::int64_t>(room + room / 2, maxSize));
    }

    /// Grows to the same capacity as appending `more` elements one at a time.
    void makeRoom(int more) {
        if (more <= capacity() - size()) { return; }
        if (more > maxSize - size()) { throwTooLong(); }
        const int needed = size() + more;
        int room = capacity();
        while (room < needed) { room = std::max(room + 1, halfAsMuchAgain(room)); }
        reserve(room);
    }

    /// Copies the elements of `other` before it appends them. `other` may be this array. It may
    /// also be a class of the application, which may throw, change its size, or change this array
    /// while it is read.
    int appendRead(const Derived& other) {
        std::vector<E> read;
        read.reserve(static_cast<std::size_t>(std::max(other.size(), 0)));
        for (int i = 0; i < other.size(); ++i) { read.push_back(other.get(i)); }
        return append(read.data(), static_cast<int>(read.size()));
    }

    static void retainAll(const E* source, int count) noexcept {
        for (int i = 0; i < count; ++i) { Self::retain(source[i]); }
    }
};

/// Holds its elements by value.
template <class Derived>
class ArrayImp final : public ArrayStorage<ArrayImp<Derived>, Derived> {
public:
    using E = typename Derived::value_type;
    static_assert(!CountedPointer<E>, "pointers to counted objects: use ArrayRefPointerImp");

    void removeAll() override { items.clear(); }
    void removeLast() override { items.pop_back(); }
    void removeFirst() override { removeAt(0); }
    void removeRange(int from, int to) override {
        if (from < to) { items.erase(items.begin() + from, items.begin() + to); }
    }
    void removeAt(int index) override { items.erase(items.begin() + index); }

    E* data() override { return items.empty() ? nullptr : items.data(); }
    const E* data() const override { return items.empty() ? nullptr : items.data(); }

    static void retain(const E&) noexcept {}

private:
    using ArrayStorage<ArrayImp, Derived>::items;
};

/// Holds pointers to counted objects and one count of each pointer that is not null. A row leaves
/// the array before its count is released, because its destructor or a delete handler may read and
/// change this array.
template <class Derived>
class ArrayRefPointerImp final : public ArrayStorage<ArrayRefPointerImp<Derived>, Derived> {
public:
    using E = typename Derived::value_type;
    static_assert(CountedPointer<E>);

    ~ArrayRefPointerImp() override { removeAll(); }

    // Sets the rows to null in place, since nothing may be allocated here. Repeats as long as the
    // destructor of a row moves or adds rows behind the loop.
    void removeAll() override {
        while (std::ranges::any_of(items, [](E row) { return row != nullptr; })) {
            for (std::size_t i = 0; i < items.size(); ++i) {
                release(std::exchange(items[i], nullptr));
            }
        }
        items.clear();
    }
    void removeLast() override { removeAt(this->size() - 1); }
    void removeFirst() override { removeAt(0); }
    void removeRange(int from, int to) override {
        if (from >= to) { return; }
        this->checked(from);
        this->checked(to - 1);
        const auto first = items.begin() + from;
        const auto behind = items.begin() + to;
        const std::vector<E> leaving(first, behind);
        items.erase(first, behind);
        for (E row : leaving) { release(row); }
    }
    void removeAt(int index) override {
        E row = this->get(index);
        items.erase(items.begin() + index);
        release(row);
    }

    E* data() override { return items.data(); }
    const E* data() const override { return items.data(); }

    static void retain(E row) noexcept {
        if (row != nullptr) { row->ref(); }
    }

private:
    using ArrayStorage<ArrayRefPointerImp, Derived>::items;

    static void release(E row) {
        if (row != nullptr) { row->unref(); }
    }
};

}  // namespace zyn::detail
