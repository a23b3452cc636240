// Factories of engines, and of arrays and pools of triangle records.
#include <zyn/delaunay.h>

#include "containers/array_imp.h"
#include "containers/pool_imp.h"
#include "triangulation/engine.h"

namespace zyn {

using namespace detail;

IZynDelaunay* newZynDelaunay(float z, float minX, float minY, float maxX, float maxY) {
    return new delaunayF(z, minX, minY, maxX, maxY);
}
IZynDelaunayD* newZynDelaunayDouble(double z, double minX, double minY, double maxX, double maxY) {
    return new delaunayD(z, minX, minY, maxX, maxY);
}

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
