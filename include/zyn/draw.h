/// @file
/// The display of a point cloud: classes of points, and drawing parameters. Threads: use an object
/// on one thread at a time.
///
///     ref_ptr<IZynLasDrawParam> param = newZynLasDrawParam();
///     param->ramp = newZynColorRamp();
///     param->classes[2].value = 2;                        // the application knows class 2
///     ref_ptr<PntClassArray> read = newPntClassArray();
///     read->append(PntClass(2, true, ZynColor4b::Brown(), QStringLiteral("GROUND")));
///     param->assignPntClass(read);                        // copies visibility, colour, name
#pragma once

#include <zyn/array.h>
#include <zyn/color.h>
#include <zyn/export.h>
#include <zyn/referenced.h>

#include <QString>
#include <cstdint>
#include <type_traits>

namespace zyn {

/// A class of points.
struct ZYN_EXPORT PntClass {
    /// The number of a free entry.
    static constexpr std::int32_t freeValue = -2147483647;

    std::int32_t value;  ///< number of the class
    bool visible;        ///< whether the points are drawn
    ZynColor4b color;    ///< colour of the points
    QString name;        ///< name for the user

    /// Makes a free entry, unless a number is given.
    PntClass(std::int32_t value_ = freeValue, bool visible_ = true,
             ZynColor4b color_ = ZynColor4b::White(), QString name_ = defaultName());

    /// Returns "Default".
    [[nodiscard]] static QString defaultName();

    /// Replaces all fields.
    void setVal(std::int32_t value_, bool visible_, ZynColor4b color_, QString name_);
    /// Returns whether the entry is in use.
    [[nodiscard]] bool isValid() const noexcept { return value != freeValue; }
    /// Frees the entry; changes nothing but `value`.
    void setInvalid() noexcept { value = freeValue; }
};

ZYN_ARRAY(PntClassArray, PntClass);

/// Drawing parameters. Except for the ramp and the classes, their meaning is the application's.
/// Ownership: copies share the ramp.
class ZYN_EXPORT IZynLasDrawParam : public ZynReferenced {
public:
    IZynLasDrawParam() = default;
    IZynLasDrawParam(const IZynLasDrawParam&) = default;
    IZynLasDrawParam& operator=(const IZynLasDrawParam&) = default;

    /// Returns a new object with a copy of the ramp, or without a ramp if this has none.
    [[nodiscard]] IZynLasDrawParam* clone() const;
    /// Copies each element's visibility, colour and name to the first entry of `classes` with its
    /// value, if there is one. Returns the number of elements; 0 for null.
    std::int32_t assignPntClass(const ref_ptr<PntClassArray>& a);

    /// Fields of the application.
    /// @{
    std::uint8_t head[5] = {};
    std::int32_t param0 = 0, param1 = 0;
    double range0Min = 0.0, range0Max = 1.0;
    double range1Min = 0.0, range1Max = 1.0;
    std::int32_t mode0 = 0, mode1 = 2, mode2 = 0;
    /// @}
    ref_ptr<IZynColorRamp> ramp;  ///< the colours of a scalar; null in a new object
    PntClass classes[256];        ///< free in a new object
    /// Fields of the application: bytes in sequence without a gap.
    /// @{
    std::uint8_t flag0 = 0xFF;
    ZynColor4b colors[4] = {ZynColor4b::Yellow(), ZynColor4b::Yellow(), ZynColor4b::Yellow(),
                            ZynColor4b::Yellow()};
    std::uint8_t flag1 = 0xFF, flag2 = 0xFF;
    std::uint8_t flag3 = 0;
    /// @}

protected:
    ~IZynLasDrawParam() override;
};

/// Returns a new object without a ramp, with all classes free.
[[nodiscard]] ZYN_EXPORT IZynLasDrawParam* newZynLasDrawParam();
constexpr auto factoryOf(std::type_identity<IZynLasDrawParam>) { return &newZynLasDrawParam; }

}  // namespace zyn
