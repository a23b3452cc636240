#include "containers/pool_imp.h"

namespace zyn {

using namespace detail;

ZynPool::~ZynPool() = default;
void ZynPool::removeAll() {}
void ZynPool::trim() {}

BytePool* newBytePool() { return new ZynPoolImp<BytePool>(poolBlockSize); }
CharPool* newCharPool() { return new ZynPoolImp<CharPool>(poolBlockSize); }
ShortPool* newShortPool() { return new ZynPoolImp<ShortPool>(poolBlockSize); }
IntPool* newIntPool() { return new ZynPoolImp<IntPool>(poolBlockSize); }
LongPool* newLongPool() { return new ZynPoolImp<LongPool>(poolBlockSize); }
FloatPool* newFloatPool() { return new ZynPoolImp<FloatPool>(poolBlockSize); }
DoublePool* newDoublePool() { return new ZynPoolImp<DoublePool>(poolBlockSize); }
Pnt2dPool* newPnt2dPool() { return new ZynPoolImp<Pnt2dPool>(poolBlockSize); }
Pnt3fPool* newPnt3fPool() { return new ZynPoolImp<Pnt3fPool>(poolBlockSize); }
Pnt3dPool* newPnt3dPool() { return new ZynPoolImp<Pnt3dPool>(poolBlockSize); }
PBytePool* newPBytePool() { return new ZynPoolImp<PBytePool>(poolBlockSize); }
PCharPool* newPCharPool() { return new ZynPoolImp<PCharPool>(poolBlockSize); }
PShortPool* newPShortPool() { return new ZynPoolImp<PShortPool>(poolBlockSize); }
PIntPool* newPIntPool() { return new ZynPoolImp<PIntPool>(poolBlockSize); }
PLongPool* newPLongPool() { return new ZynPoolImp<PLongPool>(poolBlockSize); }
PFloatPool* newPFloatPool() { return new ZynPoolImp<PFloatPool>(poolBlockSize); }
PDoublePool* newPDoublePool() { return new ZynPoolImp<PDoublePool>(poolBlockSize); }
PPnt2dPool* newPPnt2dPool() { return new ZynPoolImp<PPnt2dPool>(poolBlockSize); }
PPnt3fPool* newPPnt3fPool() { return new ZynPoolImp<PPnt3fPool>(poolBlockSize); }
PPnt3dPool* newPPnt3dPool() { return new ZynPoolImp<PPnt3dPool>(poolBlockSize); }

}  // namespace zyn
