// What the interface refuses. Each numbered case must fail to compile, with a message that matches
// the expression beside it; the rest of the file must compile.
#include <zyn/array.h>
#include <zyn/geometry.h>
#include <zyn/matrix.h>
#include <zyn/transform.h>

#include <QString>

void use(zyn::DoubleArray& numbers, zyn::XPnt3d p, double* address, zyn::ZynQuad q) {
    numbers.append(0);
    (void)(p == zyn::XPnt3d(1, 2, 3));
    address = p;
    q = zyn::ZynQuad(1, 0, 0, 0);

#if REFUSED == 1  // deleted.*append
    numbers.append(nullptr);
#elif REFUSED == 2  // deleted.*operator *'?==
    (void)(p == address);
#elif REFUSED == 3  // deleted.*operator *'?<=>
    (void)(p < address);
#elif REFUSED == 4  // deleted.*operator *'?-
    (void)(p - address);
#elif REFUSED == 5  // no matching (function|constructor)
    zyn::XPnt3d none(nullptr);
#elif REFUSED == 6  // conversion from
    zyn::XPnt3d implicit = address;
#elif REFUSED == 7  // ambiguous
    q = 0;
#elif REFUSED == 8  // deleted.*assign
    zyn::newPnt3dArray()->assign(nullptr);
#elif REFUSED == 9  // constraint
    zyn::matrix<long> wide(2, 2);
#endif
}
