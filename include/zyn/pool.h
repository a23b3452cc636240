/// @file
/// Pools: counted containers for bulk data whose elements never move.
///
/// A pool is a chain of blocks of 65536 elements, and grows at its end. The address of an element
/// stays valid until the pool is emptied. All pool classes have the same operations in the same
/// order (TypedPool). Each except the pools of pools has a factory, which makes it with count 0.
///
///     auto pool = make<Pnt3dPool>();                        // a ref_ptr
///     XPnt3d* first = pool->append(XPnt3d(1, 2, 3));        // stays where it is
///     pool->rewind();
///     while (XPnt3d* p = pool->next()) { use(*p); }
///     pool->rewindBlocks();
///     while (std::size_t n = pool->currentBlockSize()) { use(pool->nextBlock(), n); }
///
/// Both cursors belong to the pool, so two concurrent iterations disturb each other. A block is
/// allocated whole. If allocation fails, an operation throws std::bad_alloc and leaves the pool
/// unchanged, except when it appends a pool or a vector of pointers: the elements before the
/// failure then stay.
///
/// Ownership: a pool of pointers holds plain pointers; what these point to is the caller's.
///
/// Threads: use a pool on one thread at a time.
#pragma once

#include <zyn/export.h>
#include <zyn/point.h>
#include <zyn/referenced.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace zyn {

/// The base of every pool.
class ZYN_EXPORT ZynPool : public ZynReferenced {
public:
    /// The kind of a pool; the library does not use it.
    enum class Type : std::int32_t {
        Unspecified = 0,  ///< every pool of the library
    };

    ZynPool() = default;
    ZynPool(const ZynPool&) = default;
    ZynPool& operator=(const ZynPool&) = default;

    /// Returns Unspecified for every pool that the library makes.
    [[nodiscard]] Type getType() const noexcept { return type; }

    /// Removes all elements, as TypedPool::clear().
    virtual void removeAll();
    /// Does nothing.
    virtual void trim();

protected:
    ~ZynPool() override;

private:
    Type type = Type::Unspecified;
};

/// The interface of the pool of E whose class is Derived.
template <class Derived, class E>
class ZYN_EXPORT TypedPool : public ZynPool {
public:
    /// The element type, named as in standard containers.
    using value_type = E;

    TypedPool() = default;
    /// Takes a block size, which only implementations use.
    explicit TypedPool(std::size_t) {}
    // Copying and assigning copy no elements.
    TypedPool(const TypedPool&) = default;
    TypedPool& operator=(const TypedPool&) = default;
    ~TypedPool() override = default;

    /// Returns the number of elements.
    [[nodiscard]] virtual std::size_t size() const = 0;
    /// Returns the number of blocks. Each has getBlockSize() elements, except the last.
    [[nodiscard]] virtual std::size_t blockCount() const = 0;

    // Adding

    /// Rewinds `other`, appends a copy of each element that its next() returns until null, and
    /// returns the size of `other`. A pool that is appended to itself is doubled.
    virtual std::size_t append(Derived* other) = 0;
    /// Appends copies of `count` elements and returns `count`. Returns -1 and does nothing if
    /// `items` is null or `count` is below 1.
    virtual int append(const E* items, int count) = 0;
    /// Appends a copy, and returns its address.
    virtual E* append(const E& value) = 0;
    /// Appends copies, and returns the size of the vector. REQUIRES: no pointer in the vector is
    /// null.
    /// @{
    virtual std::size_t append(const std::vector<E>& values) = 0;
    virtual std::size_t append(const std::vector<E*>& values) = 0;
    /// @}

    /// Returns the address of element `index`, or null if there is none.
    [[nodiscard]] virtual E* at(std::size_t index) = 0;
    /// Removes all elements, frees their blocks, and sets the cursors to the start. removeAll()
    /// does the same.
    virtual void clear() = 0;

    // The cursor over elements

    /// Returns the element at the cursor and advances the cursor; returns null at the end.
    [[nodiscard]] virtual E* next() = 0;
    /// Sets the cursor to the first element.
    virtual void rewind() = 0;

    // The cursor over blocks. Ask for the size of a block before its start.

    /// Returns the start of the block at the cursor and advances the cursor; returns null at the
    /// end and at an empty block. After the last block the cursor stays at the end until
    /// rewindBlocks(), even if a block is added.
    [[nodiscard]] virtual E* nextBlock() = 0;
    /// Sets the cursor to the first block.
    virtual void rewindBlocks() = 0;
    /// Returns the number of elements in the block at the cursor; 0 at the end.
    [[nodiscard]] virtual std::size_t currentBlockSize() const = 0;

    /// Returns whether the address is that of an element of this pool. The time is proportional to
    /// the number of blocks.
    [[nodiscard]] virtual bool contains(const E* element) const = 0;
    /// Returns the number of elements in a full block.
    [[nodiscard]] virtual std::size_t getBlockSize() const = 0;

    /// Appends the element: `append(0)` on numbers, `append(nullptr)` on pointers. `append(0)` on
    /// pointers and `append(nullptr)` on any other element do not compile.
    /// @{
    template <std::integral N>
        requires(std::is_arithmetic_v<E> && !std::same_as<N, E>)
    E* append(N value) {
        return append(static_cast<const E&>(static_cast<E>(value)));
    }
    E* append(std::nullptr_t)
        requires std::is_pointer_v<E>
    {
        return append(static_cast<const E&>(E(nullptr)));
    }
    E* append(std::nullptr_t)
        requires(!std::is_pointer_v<E>)
    = delete;
    /// @}
};

/// Declares the pool class `Name` of `Element`.
#define ZYN_POOL_CLASS(Name, ...)                                 \
    class ZYN_EXPORT Name : public TypedPool<Name, __VA_ARGS__> { \
    public:                                                       \
        using TypedPool::TypedPool;                               \
    }
/// Declares the pool class `Name` of `Element` and its factory.
#define ZYN_POOL(Name, ...)                                                   \
    class Name;                                                               \
    [[nodiscard]] ZYN_EXPORT Name* new##Name();                               \
    constexpr auto factoryOf(std::type_identity<Name>) { return &new##Name; } \
    ZYN_POOL_CLASS(Name, __VA_ARGS__)

// Numbers

ZYN_POOL(BytePool, unsigned char);
ZYN_POOL(CharPool, char);
ZYN_POOL(ShortPool, short);
ZYN_POOL(IntPool, int);
ZYN_POOL(LongPool, std::int32_t);
ZYN_POOL(FloatPool, float);
ZYN_POOL(DoublePool, double);

// Points

ZYN_POOL(Pnt2dPool, XPnt2d);
ZYN_POOL(Pnt3fPool, XPnt3f);
ZYN_POOL(Pnt3dPool, XPnt3d);

// Raw pointers, which are not counted

ZYN_POOL(PBytePool, unsigned char*);
ZYN_POOL(PCharPool, char*);
ZYN_POOL(PShortPool, short*);
ZYN_POOL(PIntPool, int*);
ZYN_POOL(PLongPool, std::int32_t*);
ZYN_POOL(PFloatPool, float*);
ZYN_POOL(PDoublePool, double*);
ZYN_POOL(PPnt2dPool, XPnt2d*);
ZYN_POOL(PPnt3fPool, XPnt3f*);
ZYN_POOL(PPnt3dPool, XPnt3d*);

// Pools of pools, which the library does not implement

ZYN_POOL_CLASS(PPnt3dPoolPool, PPnt3dPool*);
ZYN_POOL_CLASS(PPnt3fPoolPool, PPnt3fPool*);

}  // namespace zyn
