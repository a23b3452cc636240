/// @file
/// How a long operation reports to its host.
///
///     class Bar : public IZynProgress {           // with the other operations, which may be empty
///         void setTotal(double total) override { draw(0, total); }
///         void step(double amount) override { draw(done += amount); }
///         bool isCanceled() override { return stopPressed; }
///     };
///     ref_ptr<Bar> bar = new Bar;
///     surface.addPoints(points, bar.get());
///
/// The library implements neither interface: a host derives from IZynProgress. Functions take its
/// object as a raw pointer, which may be null. They call setTotal() once, then step() any number of
/// times.
///
/// Ownership: the functions hold no count of the object.
///
/// Threads: the functions call the object on the thread that called them.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

class QString;

namespace zyn {

/// The interface that a host implements to see how far an operation is.
class ZYN_EXPORT IZynProgress : public ZynReferenced {
public:
    /// Receives the total. All steps together advance the position to the total or less.
    virtual void setTotal(double total) = 0;
    /// Sets or returns the position, from 0 to the total. The library does not call these.
    /// @{
    virtual void setPosition(double position) = 0;
    [[nodiscard]] virtual double getPosition() = 0;
    /// @}
    /// Advances the position by `amount`.
    virtual void step(double amount) = 0;
    /// Receives a text about what is being done. The library does not call it.
    virtual void setMessage(QString message) = 0;
    /// Returns whether the user wants to stop. Only addPoints() of network.h, and the constructors
    /// and addPoints() of Surface (surface.h), call it.
    [[nodiscard]] virtual bool isCanceled() = 0;
    /// Receives the end of the operation. The library does not call it.
    virtual void finish() = 0;

protected:
    ~IZynProgress() override = default;
};

/// An interface for a host whose user interface needs turns of its own during a long operation.
class ZYN_EXPORT IZynProgressEvent : public ZynReferenced {
public:
    /// Lets the user interface work. The library does not call it.
    virtual void processEvents() = 0;

protected:
    ~IZynProgressEvent() override = default;
};

}  // namespace zyn
