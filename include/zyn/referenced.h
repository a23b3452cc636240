/// @file
/// Counted objects, their holders, and a few functions of the whole library.
///
/// Every object with a lifetime of its own derives from ZynReferenced. It comes from a `new...`
/// factory with count 0, and belongs to the ref_ptr that takes it. When the last holder releases
/// it, the object is deleted, or passed to the DeleteHandler that the application installed.
///
///     auto points = make<Pnt3dArray>();                // a ref_ptr; count 1
///     points->append(XPnt3d(1.0, 2.0, 3.0));
///     {
///         ref_ptr<Pnt3dArray> other = points;          // count 2
///     }                                                // count 1
///     points = nullptr;                                // deleted
///
/// One `unref()` deletes an object that never went into a ref_ptr, such as one from
/// `newPnt3dArray()` in an `auto`.
///
/// Threads: counts are plain integers, so use an object on one thread at a time. Install a handler
/// before a second thread can release anything.
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

/// The namespace of the whole library.
namespace zyn {

template <class T>
class XPnt3;
class ZynReferenced;

/// The application's hook into deletion, installed with ZynReferenced::setDeleteHandler. It
/// receives every object whose count falls to zero. Ownership: the library owns the handler, which
/// must be made by `new`. The library deletes it when another handler replaces it and when the
/// module is unloaded.
class ZYN_EXPORT DeleteHandler {
public:
    DeleteHandler() = default;
    DeleteHandler(const DeleteHandler&) = delete;
    DeleteHandler& operator=(const DeleteHandler&) = delete;
    virtual ~DeleteHandler();

    /// Does nothing and is never called. The function only keeps its place in the interface.
    virtual void reserved();

    /// Takes over `object`, whose count has reached zero. The library does not use it again; the
    /// object lives until the handler calls destroy() on it. Must not throw, because destructors
    /// release counts.
    virtual void deleteObject(const ZynReferenced* object) = 0;

protected:
    /// Deletes an object that deleteObject received. Only a handler has access to its destructor.
    static void destroy(const ZynReferenced* object);
};

/// The first base of every counted class: one signed 32-bit count, 0 in a new object.
class ZYN_EXPORT ZynReferenced {
public:
    ZynReferenced() noexcept = default;
    /// Makes an object with count 0; ignores the flag.
    explicit ZynReferenced(bool) noexcept {}
    /// Makes an object with count 0, whatever the count of the original is.
    ZynReferenced(const ZynReferenced&) noexcept {}
    /// Changes neither count.
    ZynReferenced& operator=(const ZynReferenced&) noexcept { return *this; }

    /// Returns the count.
    [[nodiscard]] int referenceCount() const noexcept { return refCount; }

    /// Adds one to the count.
    /// @{
    void ref() const noexcept { ++refCount; }
    void AddRef() const noexcept { ref(); }
    /// @}

    /// Releases one count, and deletes the object if the count is then not above 0. So a single
    /// unref() deletes a fresh object from a factory, with count 0. Do not use the object
    /// afterwards.
    /// @{
    void unref() const {
        if (--refCount <= 0) { endOfLife(); }
    }
    void Release() const { unref(); }
    /// @}

    /// Releases one count and does nothing else, whatever the count becomes.
    void unref_nodelete() const noexcept { --refCount; }

    /// Returns the installed handler, or null. Ownership: it stays the library's.
    [[nodiscard]] static DeleteHandler* getDeleteHandler() noexcept;

    /// Installs `handler`, which may be null, and takes it over. First deletes the handler that was
    /// installed before. Does nothing if `handler` is installed already.
    static void setDeleteHandler(DeleteHandler* handler);

protected:
    virtual ~ZynReferenced();

private:
    friend class DeleteHandler;
    void endOfLife() const;

    mutable std::int32_t refCount = 0;
};

/// The holder of one count of a T, or of nothing. It converts implicitly from a raw pointer, and
/// not back. REQUIRES: T derives from ZynReferenced.
template <class T>
class ref_ptr {
public:
    constexpr ref_ptr() noexcept = default;
    /// Takes a count of its own. A moved ref_ptr passes its count on.
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

    /// Holds the new object, then releases the old one. So the new object may be one that only the
    /// old one keeps alive.
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

    /// Returns the object, which is still held; null if there is none.
    /// @{
    [[nodiscard]] T* get() const noexcept { return held; }
    T* operator->() const noexcept { return held; }
    T& operator*() const noexcept { return *held; }
    explicit operator bool() const noexcept { return held != nullptr; }
    /// @}

    /// Returns the object and passes its count to the caller, who releases it with unref(). Returns
    /// null if there is no object. Holds nothing afterwards.
    [[nodiscard]] T* release() noexcept { return std::exchange(held, nullptr); }

    /// Exchanges two holders. Changes no count.
    void swap(ref_ptr& other) noexcept { std::swap(held, other.held); }

    /// Compares and orders addresses. A raw pointer is compared without a temporary ref_ptr, which
    /// would delete an object of count 0.
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

/// Returns a new T that the result holds. It comes from the factory of T, which takes `args`. A
/// class has the factory that `factoryOf(std::type_identity<T>)` in its own namespace returns; a
/// class without one does not compile.
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
/// An interface that records whether the application gave an origin; see g_zynGlobal. This base
/// never has one.
class ZYN_EXPORT ZynGlobel {
public:
    /// Does nothing: there is nothing to copy.
    /// @{
    ZynGlobel() noexcept = default;
    ZynGlobel(const ZynGlobel&) noexcept {}
    ZynGlobel& operator=(const ZynGlobel&) noexcept { return *this; }
    /// @}

    /// Returns whether a position was ever given.
    virtual bool isOrgPosGive();
    /// Copies `position`, and returns what isOrgPosGive() then returns.
    virtual bool setOrgPosition(XPnt3<float>& position);
};
#pragma GCC diagnostic pop

/// The module's one ZynGlobel, made at load and kept until the process ends.
ZYN_EXPORT extern ZynGlobel* g_zynGlobal;

/// Returns the version of the interface: 1. It is not related to ZYN_VERSION (version.h).
[[nodiscard]] ZYN_EXPORT std::int32_t getVersion() noexcept;

/// Returns a number between `a` and `b`, both included: always the same one for the same arguments.
[[nodiscard]] ZYN_EXPORT std::int32_t Rand(std::int32_t a, std::int32_t b) noexcept;

/// Fills `byteCount` bytes at `target` with copies of `value`. Bytes at the end that do not hold a
/// whole value stay as they are. `target` may be unaligned; a count below 1 writes nothing.
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

/// Returns a null string.
[[nodiscard]] ZYN_EXPORT QString newString();

}  // namespace zyn

/// The hash of the address.
template <class T>
struct std::hash<zyn::ref_ptr<T>> {
    /// Returns the same hash for all holders of one object.
    std::size_t operator()(const zyn::ref_ptr<T>& p) const noexcept {
        return std::hash<T*>()(p.get());
    }
};
