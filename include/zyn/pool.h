/// @file
/// Pools: counted containers for bulk data whose elements never move.
///
/// A pool is a chain of blocks of 65536 elements, filled at its end. The address of an element stays
/// valid until the pool is emptied. All members have the same operations in the same order
/// (TypedPool) and are made by a factory of their own, with count 0. Pools of pointers hold plain
/// pointers: what these point to is the caller's.
///
///     auto pool = make<Pnt3dPool>();                        // a ref_ptr
///     XPnt3d* first = pool->append(XPnt3d(1, 2, 3));        // stays where it is
///     pool->rewind();
///     while (XPnt3d* p = pool->next()) { use(*p); }
///     pool->rewindBlocks();
///     while (std::size_t n = pool->currentBlockSize()) { use(pool->nextBlock(), n); }
///
/// Both cursors belong to the pool: two walks at a time disturb each other, and a pool is for one
/// thread at a time. A block is allocated whole; without memory for it std::bad_alloc is thrown. The
/// pool then stays as it was, but for appending a pool or a vector of pointers, which stops half way.
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

/// Base of every pool.
class ZYN_EXPORT ZynPool : public ZynReferenced {
public:
    /// A kind that the library does not use.
    enum class Type : std::int32_t {
        Unspecified = 0,  ///< every pool of the library
    };

    ZynPool() = default;
    ZynPool(const ZynPool&) = default;
    ZynPool& operator=(const ZynPool&) = default;

    /// Unspecified in every pool that the library makes.
    [[nodiscard]] Type getType() const noexcept { return type; }

    /// As TypedPool::clear().
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
    /// The element, as standard containers call it.
    using value_type = E;

    TypedPool() = default;
    /// The block size means something to implementations only.
    explicit TypedPool(std::size_t) {}
    // Elements are not copied, here and in assignment.
    TypedPool(const TypedPool&) = default;
    TypedPool& operator=(const TypedPool&) = default;
    ~TypedPool() override = default;

    /// Number of elements. The time of this, and of contains(), grows with the number of blocks.
    [[nodiscard]] virtual std::size_t size() const = 0;
    /// Number of blocks, each of getBlockSize() elements but for the last.
    [[nodiscard]] virtual std::size_t blockCount() const = 0;

    // Adding

    /// Rewinds `other`, appends a copy of each element that its next() returns until null, and
    /// returns the size of `other`. A pool that is appended to itself is doubled.
    virtual std::size_t append(Derived* other) = 0;
    /// Appends copies of `count` elements; `count`, or -1 with nothing done when `items` is null or
    /// `count` below 1.
    virtual int append(const E* items, int count) = 0;
    /// Appends a copy, and gives its address.
    virtual E* append(const E& value) = 0;
    /// Appends copies, and gives the size of the vector. Pointers must not be null.
    /// @{
    virtual std::size_t append(const std::vector<E>& values) = 0;
    virtual std::size_t append(const std::vector<E*>& values) = 0;
    /// @}

    /// The address of an element, or null.
    [[nodiscard]] virtual E* at(std::size_t index) = 0;
    /// Removes all elements, frees their blocks, and sets the cursors to the start, as removeAll().
    virtual void clear() = 0;

    // The cursor over elements

    /// The element under the cursor, which moves on; null at the end.
    [[nodiscard]] virtual E* next() = 0;
    /// Sets the cursor to the first element.
    virtual void rewind() = 0;

    // The cursor over blocks. The size of a block is asked for before its start.

    /// Returns the start of the block under the cursor, which moves on; null at the end and at an
    /// empty block. Behind the last block the cursor is at the end. It stays there until
    /// rewindBlocks(), also when a block is added.
    [[nodiscard]] virtual E* nextBlock() = 0;
    /// Sets the cursor to the first block.
    virtual void rewindBlocks() = 0;
    /// Number of elements in the block under the cursor; 0 at the end.
    [[nodiscard]] virtual std::size_t currentBlockSize() const = 0;

    /// Whether the address is that of an element of this pool.
    [[nodiscard]] virtual bool contains(const E* element) const = 0;
    /// Elements a block.
    [[nodiscard]] virtual std::size_t getBlockSize() const = 0;

    /// `append(0)` on numbers and `append(nullptr)` on pointers append that element; `append(0)` on
    /// pointers and `append(nullptr)` on anything else do not compile.
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
/// And its factory.
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

// Pointers, which nobody counts

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

// Pools of pools: the library has no implementation of these

ZYN_POOL_CLASS(PPnt3dPoolPool, PPnt3dPool*);
ZYN_POOL_CLASS(PPnt3fPoolPool, PPnt3fPool*);

}  // namespace zyn
