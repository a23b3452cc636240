// What the interface refuses: each of the numbered cases must not compile, and the rest of the file must.
#include <zyn/array.h>
#include <zyn/geometry.h>
#include <zyn/transform.h>

#include <QString>

void use(zyn::DoubleArray& numbers, zyn::XPnt3d p, double* address, zyn::ZynQuad q) {
    numbers.append(0);
    (void)(p == zyn::XPnt3d(1, 2, 3));
    address = p;
    q = zyn::ZynQuad(1, 0, 0, 0);

#if REFUSED == 1
    numbers.append(nullptr);
#elif REFUSED == 2
    (void)(p == address);
#elif REFUSED == 3
    (void)(p < address);
#elif REFUSED == 4
    (void)(p - address);
#elif REFUSED == 5
    zyn::XPnt3d none(nullptr);
#elif REFUSED == 6
    zyn::XPnt3d implicit = address;
#elif REFUSED == 7
    q = 0;
#elif REFUSED == 8
    zyn::newPnt3dArray()->assign(nullptr);
#endif
}
