/// @file
/// A holder with a slot for each of five kinds of value, and a type code that is the host's.
///
/// Nothing is converted, and the code is tied to no slot: all can be set at once, and a getter reads
/// its own whatever the code says. A slot that was never set gives -99999, the string a null string.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <type_traits>

class QString;

namespace zyn {

/// The holder.
class ZYN_EXPORT IZynVariant : public ZynReferenced {
public:
    /// Whether the type code differs from 0, its first value.
    [[nodiscard]] virtual bool isValid() = 0;
    /// Reads or sets a slot, or the type code.
    /// @{
    [[nodiscard]] virtual int getType() = 0;
    virtual void setType(int type) = 0;
    virtual void setString(QString value) = 0;
    virtual void setLong(long long value) = 0;
    virtual void setInt(int value) = 0;
    virtual void setDouble(double value) = 0;
    virtual void setFloat(float value) = 0;
    [[nodiscard]] virtual float getFloat() = 0;
    [[nodiscard]] virtual double getDouble() = 0;
    [[nodiscard]] virtual int getInt() = 0;
    [[nodiscard]] virtual long long getLong() = 0;
    [[nodiscard]] virtual QString getString() = 0;
    /// @}

protected:
    ~IZynVariant() override = default;
};

/// New, with nothing set.
[[nodiscard]] ZYN_EXPORT IZynVariant* newZynVarint();
constexpr auto factoryOf(std::type_identity<IZynVariant>) { return &newZynVarint; }

}  // namespace zyn
