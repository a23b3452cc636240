#include "containers/array_imp.h"

namespace zyn {

using namespace detail;

ByteArrayArray* newByteArrayArray() { return new ArrayRefPointerImp<ByteArrayArray>; }
IntArrayArray* newIntArrayArray() { return new ArrayRefPointerImp<IntArrayArray>; }
UIntArrayArray* newUIntArrayArray() { return new ArrayRefPointerImp<UIntArrayArray>; }
FloatArrayArray* newFloatArrayArray() { return new ArrayRefPointerImp<FloatArrayArray>; }
DoubleArrayArray* newDoubleArrayArray() { return new ArrayRefPointerImp<DoubleArrayArray>; }
Pnt2dArrayArray* newPnt2dArrayArray() { return new ArrayRefPointerImp<Pnt2dArrayArray>; }
Pnt2iArrayArray* newPnt2iArrayArray() { return new ArrayRefPointerImp<Pnt2iArrayArray>; }
Pnt3fArrayArray* newPnt3fArrayArray() { return new ArrayRefPointerImp<Pnt3fArrayArray>; }
Pnt3dArrayArray* newPnt3dArrayArray() { return new ArrayRefPointerImp<Pnt3dArrayArray>; }
PPnt3fArrayArray* newPPnt3fArrayArray() { return new ArrayRefPointerImp<PPnt3fArrayArray>; }
PPnt3dArrayArray* newPPnt3dArrayArray() { return new ArrayRefPointerImp<PPnt3dArrayArray>; }
TagPnt2dArrayArray* newTagPnt2dArrayArray() { return new ArrayRefPointerImp<TagPnt2dArrayArray>; }
EllipseArrayArray* newEllipseArrayArray() { return new ArrayRefPointerImp<EllipseArrayArray>; }

}  // namespace zyn
