#include "containers/array_imp.h"

namespace zyn {

using namespace detail;

PCharArray* newPCharArray() { return new ArrayImp<PCharArray>; }
PByteArray* newPByteArray() { return new ArrayImp<PByteArray>; }
PShortArray* newPShortArray() { return new ArrayImp<PShortArray>; }
PIntArray* newPIntArray() { return new ArrayImp<PIntArray>; }
PLongArray* newPLongArray() { return new ArrayImp<PLongArray>; }
PFloatArray* newPFloatArray() { return new ArrayImp<PFloatArray>; }
PDoubleArray* newPDoubleArray() { return new ArrayImp<PDoubleArray>; }
PPnt2dArray* newPPnt2dArray() { return new ArrayImp<PPnt2dArray>; }
PPnt2iArray* newPPnt2iArray() { return new ArrayImp<PPnt2iArray>; }
PPnt3fArray* newPPnt3fArray() { return new ArrayImp<PPnt3fArray>; }
PPnt3dArray* newPPnt3dArray() { return new ArrayImp<PPnt3dArray>; }

}  // namespace zyn
