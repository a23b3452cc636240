/// @file
/// Counted objects and the module frame.
///
/// Every object with a lifetime of its own derives from ZynReferenced, comes from a `new...` factory
/// with count 0, and belongs to whoever puts it into a ref_ptr. When the last holder lets go, the
/// object is deleted, or handed to the DeleteHandler that the application installed. Counts are
/// plain integers: an object is for one thread at a time, and so is the handler slot, which is to be
/// set before a second thread can release anything.
///
///     auto points = make<Pnt3dArray>();                // a ref_ptr; count 1
///     points->append(XPnt3d(1.0, 2.0, 3.0));
///     {
///         ref_ptr<Pnt3dArray> other = points;          // count 2
///     }                                                // count 1
///     points = nullptr;                                // deleted
///
/// An object that never went into a ref_ptr, such as one from `newPnt3dArray()` in an `auto`, is
/// discarded by one `unref()`.
#pragma once

#include <zyn/export.h>

#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

class QString;

/// Everything that the library offers.
namespace zyn {

template <class T>
class XPnt3;
class ZynReferenced;

/// The application's hook into deletion. Once installed with ZynReferenced::setDeleteHandler, it
/// receives every object whose count falls to zero, and the library owns it: it must be made by
/// `new`, and is deleted when another handler replaces it and when the module is unloaded.
class ZYN_EXPORT DeleteHandler {
public:
    DeleteHandler() = default;
    DeleteHandler(const DeleteHandler&) = delete;
    DeleteHandler& operator=(const DeleteHandler&) = delete;
    virtual ~DeleteHandler();

    /// Holds its place in the interface; does nothing and is never called.
    virtual void reserved();

    /// Takes over `object`, whose count has reached zero. The library does not look at it again;
    /// it stays alive until the handler calls destroy() on it. Must not throw: a count may be given
    /// up in a destructor.
    virtual void deleteObject(const ZynReferenced* object) = 0;

protected:
    /// Deletes an object that deleteObject received; its destructor is closed to everyone else.
    static void destroy(const ZynReferenced* object);
};

/// First base of every counted class: one signed 32-bit count, 0 in a new object.
class ZYN_EXPORT ZynReferenced {
public:
    ZynReferenced() noexcept = default;
    /// The same; the flag has no effect.
    explicit ZynReferenced(bool) noexcept {}
    /// A copy starts at count 0.
    ZynReferenced(const ZynReferenced&) noexcept {}
    /// Neither count moves.
    ZynReferenced& operator=(const ZynReferenced&) noexcept { return *this; }

    /// The count.
    [[nodiscard]] int referenceCount() const noexcept { return refCount; }

    /// One count more.
    /// @{
    void ref() const noexcept { ++refCount; }
    void AddRef() const noexcept { ref(); }
    /// @}

    /// Lets one count go; an object whose count is then not above 0 ends. So a fresh object from a
    /// factory, with count 0, is deleted by a single unref(). Not to be touched afterwards.
    /// @{
    void unref() const {
        if (--refCount <= 0) { endOfLife(); }
    }
    void Release() const { unref(); }
    /// @}

    /// Lets one count go and nothing else, whatever the count becomes.
    void unref_nodelete() const noexcept { --refCount; }

    /// The installed handler, or null. It stays the library's.
    [[nodiscard]] static DeleteHandler* getDeleteHandler() noexcept;

    /// Installs `handler`, which may be null, and takes it over; the one installed before is
    /// deleted first. The handler that is already installed changes nothing.
    static void setDeleteHandler(DeleteHandler* handler);

protected:
    virtual ~ZynReferenced();

private:
    friend class DeleteHandler;
    void endOfLife() const;

    mutable std::int32_t refCount = 0;
};

/// Holder of one count of a T, or of nothing. Made from a raw pointer implicitly, never turned back
/// into one by itself. REQUIRES: T derives from ZynReferenced.
template <class T>
class ref_ptr {
public:
    constexpr ref_ptr() noexcept = default;
    /// Holds a count of its own; one that is moved hands its count over.
    /// @{
    ref_ptr(T* object) noexcept : held(object) { refHeld(); }
    ref_ptr(const ref_ptr& other) noexcept : held(other.held) { refHeld(); }
    ref_ptr(ref_ptr&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
    template <class U>
        requires std::convertible_to<U*, T*>
    ref_ptr(const ref_ptr<U>& other) noexcept : held(other.get()) {
        refHeld();
    }
    /// @}

    /// The new object is counted before the old one is released, so that it may be one that only
    /// the old one keeps alive.
    /// @{
    ref_ptr& operator=(T* object) {
        if (object == held) { return *this; }
        T* const old = std::exchange(held, object);
        refHeld();
        if (old != nullptr) { old->unref(); }
        return *this;
    }
    ref_ptr& operator=(const ref_ptr& other) { return *this = other.held; }
    ref_ptr& operator=(ref_ptr&& other) noexcept {
        ref_ptr(std::move(other)).swap(*this);
        return *this;
    }
    /// @}

    ~ref_ptr() {
        if (T* const old = std::exchange(held, nullptr); old != nullptr) { old->unref(); }
    }

    /// The object, which stays held; null for nothing.
    /// @{
    [[nodiscard]] T* get() const noexcept { return held; }
    T* operator->() const noexcept { return held; }
    T& operator*() const noexcept { return *held; }
    explicit operator bool() const noexcept { return held != nullptr; }
    /// @}

    /// Returns the object and leaves its count to the caller, who gives it up with unref(); null if
    /// there is no object. Holds nothing afterwards.
    [[nodiscard]] T* release() noexcept { return std::exchange(held, nullptr); }

    /// Moves no count.
    void swap(ref_ptr& other) noexcept { std::swap(held, other.held); }

    /// Compares and orders addresses. A pointer is compared as it is: a temporary ref_ptr would end
    /// an object of count 0.
    /// @{
    template <class U>
    friend bool operator==(const ref_ptr& a, const ref_ptr<U>& b) noexcept {
        return a.get() == b.get();
    }
    template <class U>
    friend bool operator==(const ref_ptr& a, U* b) noexcept {
        return a.get() == b;
    }
    friend bool operator==(const ref_ptr& a, std::nullptr_t) noexcept { return a.held == nullptr; }
    template <class U>
    friend std::strong_ordering operator<=>(const ref_ptr& a, const ref_ptr<U>& b) noexcept {
        return std::compare_three_way()(a.get(), b.get());
    }
    template <class U>
    friend std::strong_ordering operator<=>(const ref_ptr& a, U* b) noexcept {
        return std::compare_three_way()(a.get(), b);
    }
    /// @}

private:
    void refHeld() const noexcept {
        if (held != nullptr) { held->ref(); }
    }

    T* held = nullptr;
};

/// Returns a new T that the result holds. It comes from the factory of T, which takes `args`; a class
/// without a factory does not compile. A class has the factory that `factoryOf(std::type_identity<T>)`
/// in its own namespace returns.
///
///     auto engine = make<IZynDelaunayD>(0.0, minX, minY, maxX, maxY);
template <class T, class... Args>
    requires requires(Args&&... args) {
        factoryOf(std::type_identity<T>())(std::forward<Args>(args)...);
    }
[[nodiscard]] ref_ptr<T> make(Args&&... args) {
    return factoryOf(std::type_identity<T>())(std::forward<Args>(args)...);
}

// A ZynGlobel is a value: nothing is ever deleted through a pointer to it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
/// Keeps whether the application gave an origin; see g_zynGlobal. This base never has one.
class ZYN_EXPORT ZynGlobel {
public:
    /// There is nothing to copy.
    /// @{
    ZynGlobel() noexcept = default;
    ZynGlobel(const ZynGlobel&) noexcept {}
    ZynGlobel& operator=(const ZynGlobel&) noexcept { return *this; }
    /// @}

    /// Whether a position was ever given.
    virtual bool isOrgPosGive();
    /// Takes a copy of `position`; gives what isOrgPosGive() then answers.
    virtual bool setOrgPosition(XPnt3<float>& position);
};
#pragma GCC diagnostic pop

/// The module's one ZynGlobel, made at load and kept until the process ends.
ZYN_EXPORT extern ZynGlobel* g_zynGlobal;

/// The version of the interface: 1, and no part of ZYN_VERSION (version.h).
[[nodiscard]] ZYN_EXPORT std::int32_t getVersion() noexcept;

/// A number between `a` and `b`, both included; the same one for the same arguments.
[[nodiscard]] ZYN_EXPORT std::int32_t Rand(std::int32_t a, std::int32_t b) noexcept;

/// Fills `byteCount` bytes at `target` with copies of `value`. Bytes at the end that are fewer than
/// a whole value stay as they are. `target` may be unaligned; a count below 1 writes nothing.
///
/// An int is a value of four bytes: `MemSet(p, 0, 10)` sets eight bytes to 0 and leaves two, and
/// `MemSet(p, 1, 8)` writes the int 1 twice. Other types of value do not compile.
/// @{
ZYN_EXPORT void MemSet(void* target, float value, std::int32_t byteCount) noexcept;
ZYN_EXPORT void MemSet(void* target, double value, std::int32_t byteCount) noexcept;
ZYN_EXPORT void MemSet(void* target, bool value, std::int32_t byteCount) noexcept;
ZYN_EXPORT void MemSet(void* target, std::int32_t value, std::int32_t byteCount) noexcept;
template <class T>
void MemSet(void* target, T value, std::int32_t byteCount) = delete;
/// @}

/// A null string.
[[nodiscard]] ZYN_EXPORT QString newString();

}  // namespace zyn

/// The hash of the address.
template <class T>
struct std::hash<zyn::ref_ptr<T>> {
    /// Equal for holders of one object.
    std::size_t operator()(const zyn::ref_ptr<T>& p) const noexcept {
        return std::hash<T*>()(p.get());
    }
};
