// Calls every library on which ZynBase depends, and prints what it finds.
#include <zyn/camera.h>
#include <zyn/delaunay.h>
#include <zyn/textfile.h>
#include <zyn/version.h>

#include <cstdio>

int main() {
    zyn::zynCamOutParam camera;
    camera.X = camera.Y = 500;
    camera.Z = 1000;
    camera.phi = camera.omega = camera.kappa = 0;
    const zyn::XPnt2d image = project(camera, 0.1, zyn::XPnt3d(510, 500, 0));  // by Armadillo

    zyn::ref_ptr<zyn::Pnt3dArray> points = zyn::newPnt3dArray();
    points->append({0, 0, 1});
    points->append({9, 0, 2});
    points->append({0, 9, 3});
    zyn::ref_ptr<zyn::IZynDelaunayD> engine = zyn::newZynDelaunayDouble(0, -1, -1, 10, 10);
    const bool triangulates = engine->triangulate(points.get());  // by the mesh generator

    const QString name = zyn::getFileName(QStringLiteral("/terrain/hills.xyz"));  // by Qt
    std::printf("\nversion %s %d, image %.3f, generator %d, %s\n", ZYN_VERSION_STRING, ZYN_VERSION,
                image.x, triangulates, qPrintable(name));
}
