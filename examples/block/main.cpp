// Makes a photogrammetric block over a terrain, as a measuring program would: measures points on
// images, intersects them, exports and imports the block, and removes bad measurements.
#include "block_file.h"
#include "failure.h"
#include "folder.h"
#include "intersection.h"
#include "program.h"

#include <zyn/pms.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <string>

using namespace zyn;

namespace {

constexpr const char* help = R"(usage: block INPUT [OUT]

Simulates measurements of a photogrammetric block, intersects its points, removes bad measurements,
and writes the remaining images and points to OUT/results.txt.

INPUT is a text file in metres and radians; # begins a comment:
  camera F WIDTH HEIGHT             focal length and size of the images; once
  image X Y Z PHI OMEGA KAPPA       projection centre and rotation of an image
  point X Y Z                       a point on the ground
  bad IMAGE POINT DX DY             an error to add to a measurement; numbers count from 0
OUT is a folder, created if it is missing; default: .

example: block data/block.txt out
)";

constexpr double noise = 2e-6;  ///< noise of a measurement, on the image
constexpr double limit = 2e-5;  ///< a larger residual means a bad measurement

/// Adds the measurements that a person at the instrument would make: the projections that are on
/// the image, each with a little noise, and the errors that the file requests.
void measure(IZynPMSDataTable& table, const BlockFile& block) {
    std::mt19937 random(1);
    const auto noisy = [&random](double v) {
        return v + noise * (double(random()) / double(std::mt19937::max()) - 0.5);
    };
    const int images = table.getImgNum();
    for (int pnt = 0; pnt < int(block.points.size()); ++pnt) {
        const XPnt3d& ground = block.points[std::size_t(pnt)];
        const ref_ptr<Pnt2dArray> seen = newPnt2dArray();
        seen->resize(images);  // invalid if the point is not on the image
        for (int img = 0; img < images; ++img) {
            const zynCamOutParam cam = table.getCamOutParam(img);
            XPnt2d xy = project(cam, block.focalLength, ground);
            if (cam.Z <= ground.z || std::abs(xy.x) > block.width / 2 ||
                std::abs(xy.y) > block.height / 2) {
                continue;
            }
            for (const BadMeasurement& bad : block.bad) {
                if (bad.image == img && bad.point == pnt) { xy += bad.error; }
            }
            seen->getRef(img).set(noisy(xy.x), noisy(xy.y));
        }
        table.addWrdPnt(seen);  // adds nothing for a point on fewer than two images
    }
}

void printState(IZynPMSDataTable& table, const char* when) {
    int live = 0, measured = 0;
    for (int img = 0; img < table.getImgNum(); ++img) {
        live += table.getCamOutParam(img).imageIndex != -1;
        measured += table.getImgTagPnts(img)->size();
    }
    std::printf("%-12s %d images, %d world points of %d, %d measurements\n", when, live,
                table.getValidWrdPnts()->size(), table.getWrdPntNum(), measured);
}

/// Intersects a point. As long as its worst residual is above the limit, removes that measurement
/// and repeats. Returns false if the point was removed.
bool intersectPoint(IZynPMSDataTable& table, int pnt, double f) {
    const ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    while (table.getWrdPntObservations(pnt, pnts.get(), cams.get()) == 0) {
        const auto result = intersect(*pnts, *cams, f);
        if (result && result->worstResidual <= limit) {
            table.setWrdPnt(pnt, result->point);
            return true;
        }
        if (!result) {
            table.removeWrdPnt(pnt);
            std::printf("removed      world point %d, whose rays are parallel\n", pnt);
            return false;
        }
        const int img = cams->get(result->worst).imageIndex;
        table.removeImgPnt(img, pnt);
        std::printf("removed      world point %d on image %d, off by %.1e, of %d measurements\n",
                    pnt, img, result->worstResidual, pnts->size());
    }
    return false;
}

/// Exports the block, moves it to the middle of its cameras, and imports the result.
void centre(IZynPMSDataTable& table) {
    const ref_ptr<Pnt2dArrayArray> imgPnts = newPnt2dArrayArray();
    const ref_ptr<IntArrayArray> imgPntIds = newIntArrayArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    const ref_ptr<IntArray> camMap = newIntArray(), wrdMap = newIntArray();
    const ref_ptr<Pnt3dArray> wrdPnts = newPnt3dArray();
    table.exportData(imgPnts, imgPntIds, cams, camMap, wrdPnts, wrdMap);
    XPnt3d middle(0, 0, 0);
    for (const zynCamOutParam& cam : *cams) { middle += XPnt3d(cam.X, cam.Y, 0) / cams->size(); }
    for (zynCamOutParam& cam : *cams) {
        cam.X -= middle.x;
        cam.Y -= middle.y;
    }
    for (XPnt3d& p : *wrdPnts) { p -= middle; }
    table.importData(cams, camMap, wrdPnts, wrdMap);
    std::printf("centred      %d images and %d world points by (%.3f, %.3f)\n", cams->size(),
                wrdPnts->size(), -middle.x, -middle.y);
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

void write(IZynPMSDataTable& table, const std::string& path) {
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "w"));
    if (!file) { throw Failure(path, "cannot be written"); }
    for (int img = 0; img < table.getImgNum(); ++img) {
        const zynCamOutParam cam = table.getCamOutParam(img);
        if (cam.imageIndex == -1) { continue; }
        std::fprintf(file.get(), "image %d %.4f %.4f %.4f %.6f %.6f %.6f\n", img, cam.X, cam.Y,
                     cam.Z, cam.phi, cam.omega, cam.kappa);
    }
    for (int pnt = 0; pnt < table.getWrdPntNum(); ++pnt) {
        const XPnt3d p = table.getWrdPnt(pnt);
        if (p.isValid()) {
            std::fprintf(file.get(), "point %d %.4f %.4f %.4f\n", pnt, p.x, p.y, p.z);
        }
    }
    const bool failed = std::ferror(file.get()) != 0;
    if (std::fclose(file.release()) != 0 || failed) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
        throw Failure(path, "cannot be written");
    }
    std::printf("file         %s\n", path.c_str());
}

void run(Arguments arguments) {
    const auto& [input, out] = InputAndOut(arguments);
    const BlockFile block = readBlock(input);
    makeFolder(out);
    const ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
    setImgNum(table.get(), int(block.images.size()));
    zynCamInParam interior = {};
    interior.f = block.focalLength;
    table->setCamInParam(interior);
    for (int img = 0; img < table->getImgNum(); ++img) {
        zynCamOutParam cam = block.images[std::size_t(img)];
        cam.imageIndex = img;  // marks the image as live
        table->setCamOutParam(img, cam);
    }
    measure(*table, block);
    printState(*table, "measured");
    int lost = 0;
    for (int pnt = 0; pnt < table->getWrdPntNum(); ++pnt) {
        if (!intersectPoint(*table, pnt, block.focalLength)) { ++lost; }
    }
    printState(*table, "intersected");
    std::printf("lost         %d world points with fewer than two good measurements\n", lost);
    centre(*table);
    table->removeImg(0);
    printState(*table, "without 0");
    write(*table, std::filesystem::path(out) / "results.txt");
}

}  // namespace

int main(int argc, char** argv) { return runProgram("block", help, argc, argv, run); }
