#include <zyn/envelope.h>
#include <zyn/geometry.h>
#include <zyn/transform.h>

#include <cstdio>

using namespace zyn;

int main() {
    const XPnt3d a(0, 0, 0), b(4, 0, 0), c(0, 4, 0), p(1, 1, 3);

    std::printf("distance to the triangle, squared: %g\n", dist2_tri(p, a, b, c));
    std::printf("p is %s of a-b\n",
                left_right(a.to2d(), b.to2d(), p.to2d()) > 0 ? "left" : "right");

    double t = 0, u = 0;  // parameters of the crossing: 0 to 1 within the segments
    if (intersect_seg(XPnt2d(0, 0), XPnt2d(4, 4), XPnt2d(0, 2), XPnt2d(4, 2), t, u)) {
        std::printf("the segments cross at %g and %g of their lengths\n", t, u);
    }

    Enve3d box;  // invalid: the first point replaces it
    for (const XPnt3d& corner : {a, b, c, p}) { box.SetBox(corner); }
    std::printf("the box is %g by %g by %g\n", box.Width(), box.HightY(), box.HightZ());

    ZynQuad turn(1, 0, 0, 0);
    turn.rotate(0, 0, 1, 1.5707963267948966);  // a quarter turn about z
    ZynMatrix4d world_from_local = turn.toMatrix();
    world_from_local[0][3] = 100;  // the translation is in the last column
    const XPnt3d moved = world_from_local * b;
    std::printf("b comes to %.1f %.1f %.1f\n", moved.x, moved.y, moved.z);
}
