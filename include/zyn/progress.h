/// @file
/// How a long operation reports to its host.
///
/// The library implements neither interface: a host derives from IZynProgress and passes its object
/// as a raw pointer, null when nobody listens. Functions that take one hold no count of it and call
/// it on the thread that called them: setTotal() once, then step() any number of times.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

class QString;

namespace zyn {

/// What a host implements to see how far an operation is.
class ZYN_EXPORT IZynProgress : public ZynReferenced {
public:
    /// What the steps add up to at the most.
    virtual void setTotal(double total) = 0;
    /// How far it is, from 0 to the total. The library does not call these.
    /// @{
    virtual void setPosition(double position) = 0;
    [[nodiscard]] virtual double getPosition() = 0;
    /// @}
    /// Moves on by `amount`.
    virtual void step(double amount) = 0;
    /// What is being done. The library does not call it.
    virtual void setMessage(QString message) = 0;
    /// Whether the user wants an end. Only addPoints() of network.h asks.
    [[nodiscard]] virtual bool isCanceled() = 0;
    /// The end. The library does not call it.
    virtual void finish() = 0;

protected:
    ~IZynProgress() override = default;
};

/// For a host whose user interface needs turns of its own during a long operation.
class ZYN_EXPORT IZynProgressEvent : public ZynReferenced {
public:
    /// Lets the user interface work. The library does not call it.
    virtual void processEvents() = 0;

protected:
    ~IZynProgressEvent() override = default;
};

}  // namespace zyn
