// Factories of the arrays of triangle records and of engines.
#include <zyn/delaunay.h>

#include "containers/array_imp.h"
#include "containers/pool_imp.h"

namespace zyn {

using namespace detail;

TinArray* newTinArray() { return new ArrayImp<TinArray>; }
TinDArray* newTinDArray() { return new ArrayImp<TinDArray>; }
PTinArray* newPTinArray() { return new ArrayImp<PTinArray>; }
PTinDArray* newPTinDArray() { return new ArrayImp<PTinDArray>; }
PTinArrayArray* newPTinArrayArray() { return new ArrayRefPointerImp<PTinArrayArray>; }
PTinDArrayArray* newPTinDArrayArray() { return new ArrayRefPointerImp<PTinDArrayArray>; }

DelaunayArray* newDelaunayArray() { return new ArrayRefPointerImp<DelaunayArray>; }
DelaunayDArray* newDelaunayDArray() { return new ArrayRefPointerImp<DelaunayDArray>; }

PTinPool* newPTinPool() { return new ZynPoolImp<PTinPool>(poolBlockSize); }
PTindPool* newPTindPool() { return new ZynPoolImp<PTindPool>(poolBlockSize); }

}  // namespace zyn
