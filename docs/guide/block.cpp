#include <zyn/pms.h>

#include <cstdio>

using namespace zyn;

int main() {
    const double focalLength = 0.1;
    const XPnt3d ground(520, 480, 100);

    ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
    setImgNum(table.get(), 3);
    for (int img = 0; img < 3; ++img) {
        zynCamOutParam cam;
        cam.X = 400.0 + 100 * img;
        cam.Y = 500.0;
        cam.Z = 1100.0;
        cam.phi = cam.omega = cam.kappa = 0.0;
        cam.imageIndex = img;  // before the record is set
        table->setCamOutParam(img, cam);
    }

    ref_ptr<Pnt2dArray> seen = newPnt2dArray();
    seen->resize(3);  // one entry per image, invalid if the point is not seen
    for (int img = 0; img < 3; ++img) {
        seen->getRef(img) = project(table->getCamOutParam(img), focalLength, ground);
    }
    const int pnt = table->getWrdPntNum();  // the index of the next point
    table->addWrdPnt(seen);  // the point, its measurements, and the links between them

    ref_ptr<Pnt2dArray> xy = newPnt2dArray();
    ref_ptr<CamParaArray> cams = newCamParaArray();
    table->getWrdPntObservations(pnt, xy.get(), cams.get());
    for (int i = 0; i < xy->size(); ++i) {
        std::printf("image %d: %.1f %.1f mm\n", cams->get(i).imageIndex, xy->get(i).x * 1000,
                    xy->get(i).y * 1000);
    }
    table->setWrdPnt(pnt, ground);  // the result of the program's own intersection

    table->removeImgPnt(2, pnt);  // a bad measurement: image 2 has no other and is removed too
    const bool isThere = table->getCamOutParam(2).imageIndex != -1;
    std::printf("image 2 is %s, valid points: %d\n", isThere ? "there" : "removed",
                table->getValidWrdPnts()->size());
    table->removeImgPnt(1, pnt);  // one measurement is not enough
    std::printf("valid points: %d, places: %d\n", table->getValidWrdPnts()->size(),
                table->getWrdPntNum());
}
