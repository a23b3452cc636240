#include <zyn/las.h>

#include "containers/array_imp.h"
#include "containers/pool_imp.h"

namespace zyn {

using namespace detail;

LasPntPool* newLasPntPool() { return new ZynPoolImp<LasPntPool>(poolBlockSize); }
LasPntPoold* newLasPntPoold() { return new ZynPoolImp<LasPntPoold>(poolBlockSize); }
PLasPntPool* newPLasPntPool() { return new ZynPoolImp<PLasPntPool>(poolBlockSize); }
PLasPntPoold* newPLasPntPoold() { return new ZynPoolImp<PLasPntPoold>(poolBlockSize); }

LasPntArray* newLasPntArray() { return new ArrayImp<LasPntArray>; }
LasPntdArray* newLasPntdArray() { return new ArrayImp<LasPntdArray>; }
PLasPntArray* newPLasPntArray() { return new ArrayImp<PLasPntArray>; }
PLasPntdArray* newPLasPntdArray() { return new ArrayImp<PLasPntdArray>; }
PLasPntArrayArray* newPLasPntArrayArray() { return new ArrayRefPointerImp<PLasPntArrayArray>; }
PLasPntdArrayArray* newPLasPntdArrayArray() { return new ArrayRefPointerImp<PLasPntdArrayArray>; }

}  // namespace zyn
