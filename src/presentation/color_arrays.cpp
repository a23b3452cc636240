#include <zyn/color.h>

#include "containers/array_imp.h"

namespace zyn {

using namespace detail;

Color3bArray* newColor3bArray() { return new ArrayImp<Color3bArray>; }
Color4bArray* newColor4bArray() { return new ArrayImp<Color4bArray>; }
Color3cArray* newColor3cArray() { return new ArrayImp<Color3cArray>; }
Color4cArray* newColor4cArray() { return new ArrayImp<Color4cArray>; }
Color3fArray* newColor3fArray() { return new ArrayImp<Color3fArray>; }
Color4fArray* newColor4fArray() { return new ArrayImp<Color4fArray>; }
Color3bArrayArray* newColor3bArrayArray() { return new ArrayRefPointerImp<Color3bArrayArray>; }
Color4bArrayArray* newColor4bArrayArray() { return new ArrayRefPointerImp<Color4bArrayArray>; }

}  // namespace zyn
