/// @file
/// A holder with a slot for each of five kinds of value, and a type code that the host defines.
///
///     ref_ptr<IZynVariant> value = newZynVarint();
///     value->setDouble(2.5);
///     value->setType(3);                          // 3 means a double to this host
///     if (value->isValid()) { use(value->getDouble()); }
///     int number = value->getInt();               // -99999: this slot was never set
///     value->setString(QStringLiteral("2.5 m"));  // the double stays
///
/// The holder converts nothing. The type code is tied to no slot: all slots can be set at once, and
/// a getter reads its own slot whatever the code is. A number that was never set is -99999, and the
/// string is a null string.
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <type_traits>

class QString;

namespace zyn {

/// The holder of one value of each kind.
class ZYN_EXPORT IZynVariant : public ZynReferenced {
public:
    /// Returns whether the type code differs from 0, its initial value.
    [[nodiscard]] virtual bool isValid() = 0;
    /// Returns or sets a slot, or the type code.
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

/// Returns a new holder with nothing set.
[[nodiscard]] ZYN_EXPORT IZynVariant* newZynVarint();
constexpr auto factoryOf(std::type_identity<IZynVariant>) { return &newZynVarint; }

}  // namespace zyn
