#include "containers/array_imp.h"

#include <stdexcept>

namespace zyn {

ZynArray::~ZynArray() = default;

void ZynArray::trim() {}

}  // namespace zyn

namespace zyn::detail {

void throwInvalidSubscript() { throw std::out_of_range("invalid vector<T> subscript"); }

void throwTooLong() { throw std::length_error("vector<T> too long"); }

}  // namespace zyn::detail
