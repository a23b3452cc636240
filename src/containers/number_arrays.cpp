#include "containers/array_imp.h"

#include <QString>

namespace zyn {

using namespace detail;

CharArray* newCharArray() { return new ArrayImp<CharArray>; }
ByteArray* newByteArray() { return new ArrayImp<ByteArray>; }
ShortArray* newShortArray() { return new ArrayImp<ShortArray>; }
WCharArray* newWCharArray() { return new ArrayImp<WCharArray>; }
IntArray* newIntArray() { return new ArrayImp<IntArray>; }
UIntArray* newUIntArray() { return new ArrayImp<UIntArray>; }
LongArray* newLongArray() { return new ArrayImp<LongArray>; }
FloatArray* newFloatArray() { return new ArrayImp<FloatArray>; }
DoubleArray* newDoubleArray() { return new ArrayImp<DoubleArray>; }
StringArray* newStringArray() { return new ArrayImp<StringArray>; }

}  // namespace zyn
