#include <zyn/envelope.h>

#include "containers/array_imp.h"

namespace zyn {

using namespace detail;

Enve2dArray* newEnve2dArray() { return new ArrayImp<Enve2dArray>; }
Enve2iArray* newEnve2iArray() { return new ArrayImp<Enve2iArray>; }
Enve3dArray* newEnve3dArray() { return new ArrayImp<Enve3dArray>; }

}  // namespace zyn
