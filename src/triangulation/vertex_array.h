// Arrays of pointers to vertices, in either precision.
#pragma once

#include <zyn/tin.h>

#include <concepts>

namespace zyn::detail {

/// Returns a new array of pointers to vertices.
template <class Real>
[[nodiscard]] ref_ptr<typename TinRecord<Real>::RealPtrArray> newVertexArray() {
    if constexpr (std::same_as<Real, double>) {
        return newPDoubleArray();
    } else {
        return newPFloatArray();
    }
}

/// Returns a new array of the same vertices, or an empty one for null.
template <class Real>
[[nodiscard]] ref_ptr<typename TinRecord<Real>::RealPtrArray> copyOf(
    const typename TinRecord<Real>::RealPtrArray* vertices) {
    if (vertices == nullptr) { return newVertexArray<Real>(); }
    return vertices->clone();
}

}  // namespace zyn::detail
