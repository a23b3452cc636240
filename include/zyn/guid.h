/// @file
/// A 128-bit identifier as a counted value. The library stores and prints identifiers, and
/// generates none.
///
///     ref_ptr<IZynGUID> id = new IZynGUID;
///     id->setData1(0x12ab);
///     id->setData2(3);
///     id->setData3(0xff);
///     if (id->isValid()) {
///         QString text = id->toString();          // "12ab-3-ff-"
///     }
#pragma once

#include <zyn/export.h>
#include <zyn/referenced.h>

#include <cstdint>

class QString;

namespace zyn {

/// A new identifier is all zeros. There is no factory: a host makes it by `new`.
class ZYN_EXPORT IZynGUID : public ZynReferenced {
public:
    IZynGUID() = default;
    IZynGUID(const IZynGUID&) = default;
    IZynGUID& operator=(const IZynGUID&) = default;
    ~IZynGUID() override;

    /// Does nothing.
    void generate() noexcept;
    /// Returns or sets a field.
    /// @{
    [[nodiscard]] std::uint32_t getData1() const noexcept { return data1; }
    [[nodiscard]] std::uint16_t getData2() const noexcept { return data2; }
    [[nodiscard]] std::uint16_t getData3() const noexcept { return data3; }
    void setData1(std::uint32_t value) noexcept { data1 = value; }
    void setData2(std::uint16_t value) noexcept { data2 = value; }
    void setData3(std::uint16_t value) noexcept { data3 = value; }
    /// @}
    /// Copies eight bytes into the fourth field, which cannot be read back.
    void setData4(const unsigned char* bytes) noexcept;
    /// Returns whether the first three fields are all different from 0.
    [[nodiscard]] bool isValid() const noexcept { return data1 != 0 && data2 != 0 && data3 != 0; }
    /// Returns the first three fields in hexadecimal, with a "-" after each: "12ab-3-ff-". The
    /// first is printed as a signed number.
    [[nodiscard]] QString toString() const;
    /// Does nothing and returns 0.
    std::int32_t frString(const QString& text) noexcept;

private:
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    unsigned char data4[8] = {};
};

}  // namespace zyn
