/// @file
/// Colours: values, the ramp through which a scalar is displayed, and the scale that fills it.
///
///     ref_ptr<IZynGradeColor> grade = newZynGradeColor();           // black at 0 to white at 1
///     grade->addPeg(0x000000FF, 0.3f);                              // red at 0.3
///     grade->setMode(IZynColorRamp::Linear);
///     ref_ptr<IZynColorRamp> ramp = newZynColorRamp();
///     grade->fillTable(ramp->pcolor(), ramp->size());
///     ZynColor4b c = ramp->clr(int(255 * (z - low) / (high - low)));
///
/// A packed colour is 0x00BBGGRR. Byte channels run from 0 to 255, float channels from 0 to 1;
/// alpha is opacity. Threads: use an object on one thread at a time; several threads may make
/// scales and pegs.
#pragma once

#include <zyn/array.h>
#include <zyn/export.h>
#include <zyn/referenced.h>

#include <atomic>
#include <cstdint>
#include <type_traits>

namespace zyn {

/// Three channels. T is signed char, unsigned char or float.
template <class T>
struct ZynColorBase3 {
    T r, g, b;  ///< red, green, blue

    /// Sets all channels.
    constexpr void setVal(T r_, T g_, T b_) noexcept {
        r = r_;
        g = g_;
        b = b_;
    }
    /// Compares all channels.
    friend constexpr bool operator==(const ZynColorBase3&, const ZynColorBase3&) noexcept = default;
};

/// Three channels and opacity.
template <class T>
struct ZynColorBase4 {
    T r, g, b, a;  ///< red, green, blue, opacity

    /// Sets all channels.
    constexpr void setVal(T r_, T g_, T b_, T a_) noexcept {
        r = r_;
        g = g_;
        b = b_;
        a = a_;
    }
    /// Compares all channels.
    friend constexpr bool operator==(const ZynColorBase4&, const ZynColorBase4&) noexcept = default;
};

/// An opaque colour in bytes. A new one is white.
struct ZynColor3b : ZynColorBase3<unsigned char> {
    constexpr ZynColor3b() noexcept : ZynColor3b(255, 255, 255) {}
    /// Sets the channels.
    constexpr ZynColor3b(unsigned char r_, unsigned char g_, unsigned char b_) noexcept
        : ZynColorBase3{r_, g_, b_} {}
};

/// A colour in signed bytes. A new one has all bits set: -1 in each channel.
struct ZynColor3c : ZynColorBase3<signed char> {
    constexpr ZynColor3c() noexcept : ZynColor3c(-1, -1, -1) {}
    /// Sets the channels.
    constexpr ZynColor3c(signed char r_, signed char g_, signed char b_) noexcept
        : ZynColorBase3{r_, g_, b_} {}
};

/// A colour in floats. A new one is black.
struct ZynColor3f : ZynColorBase3<float> {
    constexpr ZynColor3f() noexcept : ZynColor3f(0, 0, 0) {}
    /// Sets the channels.
    constexpr ZynColor3f(float r_, float g_, float b_) noexcept : ZynColorBase3{r_, g_, b_} {}
};

/// A colour in bytes, with opacity. A new one is white and transparent.
struct ZynColor4b : ZynColorBase4<unsigned char> {
    constexpr ZynColor4b() noexcept : ZynColor4b(255, 255, 255, 0) {}
    /// Sets the channels.
    constexpr ZynColor4b(unsigned char r_, unsigned char g_, unsigned char b_,
                         unsigned char a_) noexcept
        : ZynColorBase4{r_, g_, b_, a_} {}

    /// Returns the colour without the opacity.
    /// @{
    [[nodiscard]] constexpr ZynColor3b toColor3b() const noexcept { return {r, g, b}; }
    [[nodiscard]] constexpr ZynColor3f toColor3f() const noexcept {
        return {static_cast<float>(r / 255.0), static_cast<float>(g / 255.0),
                static_cast<float>(b / 255.0)};
    }
    /// @}

    /// Returns a named colour, opaque.
    /// @{
    [[nodiscard]] static constexpr ZynColor4b Black() noexcept { return {0, 0, 0, 255}; }
    [[nodiscard]] static constexpr ZynColor4b Blue() noexcept { return {0, 0, 255, 255}; }
    [[nodiscard]] static constexpr ZynColor4b Brown() noexcept { return {165, 42, 42, 255}; }
    [[nodiscard]] static constexpr ZynColor4b Green() noexcept { return {0, 255, 0, 255}; }
    [[nodiscard]] static constexpr ZynColor4b Grey() noexcept { return {73, 73, 73, 255}; }
    [[nodiscard]] static constexpr ZynColor4b Red() noexcept { return {255, 0, 0, 255}; }
    [[nodiscard]] static constexpr ZynColor4b White() noexcept { return {255, 255, 255, 255}; }
    [[nodiscard]] static constexpr ZynColor4b Yellow() noexcept { return {255, 255, 0, 255}; }
    /// @}
};

/// A colour in signed bytes, with opacity. A new one is -1, -1, -1, 0.
struct ZynColor4c : ZynColorBase4<signed char> {
    constexpr ZynColor4c() noexcept : ZynColor4c(-1, -1, -1, 0) {}
    /// Sets the channels.
    constexpr ZynColor4c(signed char r_, signed char g_, signed char b_, signed char a_) noexcept
        : ZynColorBase4{r_, g_, b_, a_} {}
};

/// A colour in floats, with opacity. A new one is white and transparent.
struct ZynColor4f : ZynColorBase4<float> {
    constexpr ZynColor4f() noexcept : ZynColor4f(1, 1, 1, 0) {}
    /// Sets the channels.
    constexpr ZynColor4f(float r_, float g_, float b_, float a_) noexcept
        : ZynColorBase4{r_, g_, b_, a_} {}
};

// Arrays of colours, and rows of them

ZYN_ARRAY(Color3bArray, ZynColor3b);
ZYN_ARRAY(Color4bArray, ZynColor4b);
ZYN_ARRAY(Color3cArray, ZynColor3c);
ZYN_ARRAY(Color4cArray, ZynColor4c);
ZYN_ARRAY(Color3fArray, ZynColor3f);
ZYN_ARRAY(Color4fArray, ZynColor4f);
ZYN_ARRAY(Color3bArrayArray, Color3bArray*);
ZYN_ARRAY(Color4bArrayArray, Color4bArray*);

/// Converts a colour and returns 0. Hue is in degrees, 0 to 360; saturation, value and channels run
/// from 0 to 1, ends included. Returns -1 and writes nothing if an argument is out of range or NaN.
/// REQUIRES: the pointers are not null.
/// @{
ZYN_EXPORT int HSV2RGB(double h, double s, double v, double* r, double* g, double* b) noexcept;
ZYN_EXPORT int RGB2HSV(double r, double g, double b, double* h, double* s, double* v) noexcept;
/// @}
/// Returns the packed colour; 0 for an argument out of range. A channel between two steps rounds to
/// the nearest; one exactly in the middle rounds down.
[[nodiscard]] ZYN_EXPORT std::uint32_t HSV2RGB(double h, double s, double v) noexcept;
/// Converts a packed colour, whose bytes count as 256ths: white has the value 0.99609375.
ZYN_EXPORT void RGB2HSV(std::int32_t c, double& h, double& s, double& v) noexcept;

/// A table of 256 colours, and the ways to interpolate between two colours.
class ZYN_EXPORT IZynColorRamp : public ZynReferenced {
public:
    /// The ways to interpolate between two colours; the functions below describe them.
    enum Mode : int {
        Linear,
        FlatStart,
        FlatMid,
        FlatEnd,
        Cosine,
        HSLClockwise,
        HSLAntiClockwise,
        HSLShortest,
        HSLLongest,
        Reverse,
    };

    /// Makes a ramp of opaque greys, black to white.
    IZynColorRamp() noexcept;
    IZynColorRamp(const IZynColorRamp&) noexcept = default;
    IZynColorRamp& operator=(const IZynColorRamp&) noexcept = default;

    /// Returns the first of the 256 colours, to be read and written.
    [[nodiscard]] virtual ZynColor4b* pcolor() noexcept;
    /// Returns 256.
    [[nodiscard]] virtual int size() const noexcept;
    /// Returns colour `i`; transparent white for an `i` outside 0..255.
    [[nodiscard]] virtual ZynColor4b clr(int i) const noexcept;

    /// Returns a new ramp with these colours.
    [[nodiscard]] IZynColorRamp* clone() const;

    // Interpolation. Each function returns the colour at `pos` on the stretch from `start`,
    // coloured `c0`, to `end`, coloured `c1`. Channels are truncated, and only their low 8 bits
    // count, also if `pos` is outside. On a stretch of length 0 the two linear forms return c0; the
    // cosine and HSL forms return black. At `end` the HSL forms differ from c1 by at most 1 in each
    // channel. The functions are in the order of the modes.

    /// Blends the channels linearly (mode 0).
    static std::uint32_t InterpolateLinear(std::uint32_t c0, std::uint32_t c1, float pos,
                                           float start, float end) noexcept;
    /// Returns c0 (mode 1).
    static std::uint32_t InterpolateFlatStart(std::uint32_t c0, std::uint32_t c1, float pos,
                                              float start, float end) noexcept;
    /// Returns the mean of both (mode 2).
    static std::uint32_t InterpolateFlatMid(std::uint32_t c0, std::uint32_t c1, float pos,
                                            float start, float end) noexcept;
    /// Returns c1 (mode 3).
    static std::uint32_t InterpolateFlatEnd(std::uint32_t c0, std::uint32_t c1, float pos,
                                            float start, float end) noexcept;
    /// Blends by a cosine, which changes slowly at both ends (mode 4).
    static std::uint32_t InterpolateCosine(std::uint32_t c0, std::uint32_t c1, float pos,
                                           float start, float end) noexcept;
    /// Blends hue, saturation and lightness, with rising hue (mode 5).
    static std::uint32_t InterpolateHSLClockwise(std::uint32_t c0, std::uint32_t c1, float pos,
                                                 float start, float end) noexcept;
    /// Blends them with falling hue to a lower hue, with rising hue to a higher one (mode 6).
    static std::uint32_t InterpolateHSLAntiClockwise(std::uint32_t c0, std::uint32_t c1, float pos,
                                                     float start, float end) noexcept;
    /// Blends them the short way round the hues (mode 7).
    static std::uint32_t InterpolateHSLShortest(std::uint32_t c0, std::uint32_t c1, float pos,
                                                float start, float end) noexcept;
    /// Blends them the long way round the hues (mode 8).
    static std::uint32_t InterpolateHSLLongest(std::uint32_t c0, std::uint32_t c1, float pos,
                                               float start, float end) noexcept;
    /// Blends the channels linearly from c1 to c0 (mode 9).
    static std::uint32_t InterpolateReverse(std::uint32_t c0, std::uint32_t c1, float pos,
                                            float start, float end) noexcept;

protected:
    ~IZynColorRamp() override;

private:
    ZynColor4b table[256];
};

/// Returns a new ramp of greys.
[[nodiscard]] ZYN_EXPORT IZynColorRamp* newZynColorRamp();
constexpr auto factoryOf(std::type_identity<IZynColorRamp>) { return &newZynColorRamp; }

/// A colour at a place on a scale, with an identity that survives moves.
struct ZYN_EXPORT ZynColorPeg {
    std::uint32_t color = 0;  ///< packed
    float pos = 0;            ///< from 0 to 1
    int id;                   ///< -1 for a peg made of a colour and a place

    /// Makes a black peg at 0 with the next id.
    ZynColorPeg() noexcept : id(newID()) {}
    /// Makes a peg without an identity: the id is -1.
    ZynColorPeg(std::uint32_t color_, float pos_) noexcept : color(color_), pos(pos_), id(-1) {}

    /// Returns the id.
    [[nodiscard]] int getID() const noexcept { return id; }

    /// Returns the next id and advances the counter. Threads: any number may call it at once.
    [[nodiscard]] static int newID() noexcept {
        return std::atomic_ref(uniqueID).fetch_add(1, std::memory_order_relaxed);
    }

    static int uniqueID;  ///< the next id; not to be read or set while another thread makes a peg
};

/// A scale of colours from 0 to 1: a start, an end, any number of inner pegs between them, a mode
/// of interpolation, and bands. Inner pegs are numbered from 0 by ascending place; three negative
/// indices name the fixed pegs.
class ZYN_EXPORT IZynGradeColor : public ZynReferenced {
public:
    /// The index of a fixed peg.
    /// @{
    static constexpr int startIndex = -3;
    static constexpr int endIndex = -2;
    static constexpr int zeroIndex = -4;
    /// @}

    /// Returns the number of inner pegs.
    [[nodiscard]] virtual int getPegCount() = 0;
    /// Returns the peg at `index`. Any negative index other than those of start and end returns the
    /// zero peg. An index that is too large returns a black peg at 0 with the id -1.
    [[nodiscard]] virtual ZynColorPeg getPeg(int index) = 0;
    /// Sets colour and place of an inner peg, which keeps its id, and returns its new index. Sets
    /// only the colour of a fixed peg, and returns -1. Returns -1 and changes nothing for an index
    /// that does not exist. The place is clamped to 0..1; the form with `peg` also clamps the place
    /// in `peg`.
    /// @{
    virtual int setPeg(int index, ZynColorPeg& peg) = 0;
    virtual int setPeg(int index, std::uint32_t color, float pos) = 0;
    /// @}
    /// Adds an inner peg with a new id, after those at the same place, and returns its index. The
    /// place is clamped to 0..1.
    /// @{
    virtual int addPeg(const ZynColorPeg& peg) = 0;
    virtual int addPeg(std::uint32_t color, float pos) = 0;
    /// @}
    /// Removes inner peg `index`; does nothing if there is none.
    virtual void removePeg(int index) = 0;
    /// Returns the index of the inner peg at the lower end of the stretch that contains `pos`. On
    /// the border of two stretches, the lower stretch counts; at the first of several pegs the
    /// result is 0. Returns startIndex below the first peg. Returns -1 above the last peg, at a
    /// single peg, and without inner pegs.
    [[nodiscard]] virtual int findSegment(float pos) = 0;

    /// Returns or sets the packed colour of a fixed peg.
    /// @{
    virtual void setStartColor(std::uint32_t color) = 0;
    [[nodiscard]] virtual std::uint32_t getStartColor() = 0;
    virtual void setEndColor(std::uint32_t color) = 0;
    [[nodiscard]] virtual std::uint32_t getEndColor() = 0;
    virtual void setZeroColor(std::uint32_t color) = 0;
    [[nodiscard]] virtual std::uint32_t getZeroColor() = 0;
    /// @}
    /// Returns or sets whether exactly 0 has the zero colour; any value other than 0 means yes.
    /// @{
    virtual void setUseZero(int use) = 0;
    [[nodiscard]] virtual int getUseZero() = 0;
    /// @}
    /// Returns or sets the mode of interpolation, an IZynColorRamp::Mode; Cosine in a new scale.
    /// @{
    [[nodiscard]] virtual int getMode() = 0;
    virtual void setMode(int mode) = 0;
    /// @}
    /// Returns or sets the number of bands of one colour. Any number below 1 means no bands; a new
    /// scale has -1.
    /// @{
    [[nodiscard]] virtual int getSteps() = 0;
    virtual void setSteps(int steps) = 0;
    /// @}

    /// Returns the packed colour at `t`; 0 outside 0..1, for NaN, and in an unknown mode. With
    /// bands, returns the colour in the middle of the band of `t`. At 1 exactly that middle is
    /// beyond the end of the scale, and the colour depends on the mode.
    [[nodiscard]] virtual std::uint32_t getColor(float t) = 0;
    /// Fills `out` with the opaque colours at i / count, the first with the zero colour if that is
    /// in use. Returns false and writes nothing in an unknown mode, and for a null `out` unless
    /// there is nothing to write. REQUIRES: room for `count` colours, and for one if the zero
    /// colour is in use.
    virtual bool fillTable(ZynColor4b* out, int count) = 0;

protected:
    ~IZynGradeColor() override = default;
};

/// Returns a new scale from black to white, without inner pegs.
[[nodiscard]] ZYN_EXPORT IZynGradeColor* newZynGradeColor();
constexpr auto factoryOf(std::type_identity<IZynGradeColor>) { return &newZynGradeColor; }

}  // namespace zyn
