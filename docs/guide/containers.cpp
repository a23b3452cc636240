#include <zyn/array.h>
#include <zyn/matrix.h>
#include <zyn/pool.h>

#include <cstdio>

using namespace zyn;

int main() {
    auto points = make<Pnt3dArray>();  // a ref_ptr
    points->reserve(2);                // points do not move up to this size
    points->append(XPnt3d(1, 2, 3));
    points->append(XPnt3d(4, 5, 6));
    points->getRef(0).z = 9;

    auto lines = make<Pnt3dArrayArray>();
    lines->append(points.get());          // shares the row: one more holder
    lines->append(points->clone());       // a copy that only the array holds
    lines->get(1)->append(points.get());  // all points of another array
    const XPnt3d last = lines->get(1)->last();
    std::printf("%d points, %d holders; the copy has %d, the last at z = %g\n", points->size(),
                points->referenceCount(), lines->get(1)->size(), last.z);

    auto pool = make<Pnt3dPool>();
    const XPnt3d* const first = pool->append(XPnt3d(0, 0, 1));
    for (int i = 1; i < 100000; ++i) { pool->append(XPnt3d(i, 0, 1)); }
    double sum = 0;
    pool->rewind();
    while (const XPnt3d* const p = pool->next()) { sum += p->z; }
    std::printf("%g points in %zu blocks, the first still in place: %s\n", sum, pool->blockCount(),
                first == pool->at(0) ? "yes" : "no");

    auto m = make<MatrixDbl>();
    m->setSize(2, 2);  // zeros
    m->set(0, 0, 2.0);
    m->set(1, 1, 4.0);
    ref_ptr<MatrixDbl> inverse = m->inverse();
    std::printf("the inverse: %g and %g on the diagonal\n", inverse->get(0, 0), inverse->get(1, 1));
    const matrix<double> unit = m->toMatrix() * inverse->toMatrix();  // plain values
    std::printf("their product: %g and %g on the diagonal\n", unit.get(0, 0), unit.get(1, 1));
}
