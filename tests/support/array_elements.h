// Arrays of any class and distinct elements for them, for typed tests.
#pragma once

#include "containers/array_imp.h"

#include <QString>
#include <array>
#include <concepts>
#include <cstdint>
#include <type_traits>

inline constexpr int elementCount = 100;

/// Returns element `i` of `elementCount`, the same one at each call.
template <class E>
E element(int i) {
    using namespace zyn;
    using namespace zyn::detail;
    if constexpr (std::is_arithmetic_v<E>) {
        return static_cast<E>(i);
    } else if constexpr (std::same_as<E, QString>) {
        return QString::number(i);
    } else if constexpr (std::same_as<E, XPnt3d>) {
        return {double(i), -double(i), 0.5, static_cast<std::int16_t>(i)};
    } else if constexpr (std::same_as<E, PT2<std::int32_t>>) {
        return {i, -i};
    } else if constexpr (CountedPointer<E>) {
        static const auto rows = [] {
            std::array<ref_ptr<std::remove_pointer_t<E>>, elementCount> made;
            for (auto& row : made) { row = new std::remove_pointer_t<E>; }
            return made;
        }();
        return rows[static_cast<std::size_t>(i)].get();
    } else {
        static std::array<std::remove_pointer_t<E>, elementCount> targets;
        return &targets[static_cast<std::size_t>(i)];
    }
}

/// Returns a new array of the implementation that suits its elements.
template <class Array>
Array* newArrayOf() {
    if constexpr (zyn::detail::CountedPointer<typename Array::value_type>) {
        return new zyn::detail::ArrayRefPointerImp<Array>;
    } else {
        return new zyn::detail::ArrayImp<Array>;
    }
}
