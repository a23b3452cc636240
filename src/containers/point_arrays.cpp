#include "containers/array_imp.h"

namespace zyn {

using namespace detail;

Pnt2dArray* newPnt2dArray() { return new ArrayImp<Pnt2dArray>; }
Pnt2fArray* newPnt2fArray() { return new ArrayImp<Pnt2fArray>; }
Pnt2iArray* newPnt2iArray() { return new ArrayImp<Pnt2iArray>; }
Pnt3dArray* newPnt3dArray() { return new ArrayImp<Pnt3dArray>; }
Pnt3fArray* newPnt3fArray() { return new ArrayImp<Pnt3fArray>; }
TagPnt2dArray* newTagPnt2dArray() { return new ArrayImp<TagPnt2dArray>; }
TagPnt3dArray* newTagPnt3dArray() { return new ArrayImp<TagPnt3dArray>; }
EllipseArray* newEllipseArray() { return new ArrayImp<EllipseArray>; }

}  // namespace zyn
