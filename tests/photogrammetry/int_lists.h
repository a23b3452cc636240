// Arrays of numbers, as vectors and of them.
#pragma once

#include <zyn/array.h>

#include <vector>

inline std::vector<int> list(const zyn::ref_ptr<zyn::IntArray>& a) {
    return {a->begin(), a->end()};
}
inline zyn::ref_ptr<zyn::IntArray> listOf(const std::vector<int>& numbers) {
    zyn::ref_ptr<zyn::IntArray> result = zyn::newIntArray();
    result->assign(numbers.data(), int(numbers.size()));
    return result;
}
