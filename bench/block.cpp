// Measures the photogrammetric block with doubling sizes: a linear operation takes the same time
// per item.
//
// usage: bench_block
//
// Each line has a peer in the same run:
// - for common points, a linear search;
// - for the export, a plain copy of as many bytes;
// - for removals, the first size;
// - for many projected points, a call for each.
#include "measure.h"

#include <zyn/pms.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

using namespace zyn;

/// Makes a block in which every point is measured on every image.
ref_ptr<IZynPMSDataTable> block(int images, int points) {
    ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
    setImgNum(table.get(), images);
    const ref_ptr<Pnt2dArray> seen = newPnt2dArray();
    seen->resize(images);
    for (int pnt = 0; pnt < points; ++pnt) {
        for (int img = 0; img < images; ++img) { seen->getRef(img).set(pnt, img); }
        table->addWrdPnt(seen, XPnt3d(pnt, 0, 0));
    }
    return table;
}

void printHead(const char* what, const char* unit, const char* peer) {
    std::printf("\n%s\n\n| n | %s | %s | ratio |\n|---|---|---|---|\n", what, unit, peer);
}
void print(int n, double value, double peer) {
    std::printf("| %d | %.3f | %.3f | %.3f |\n", n, value, peer, value / peer);
}

void commonPoints() {
    printHead("World points common to two images with n measurements", "ms", "linear search, ms");
    for (int n = 5000; n <= 40000; n *= 2) {
        const auto table = block(2, n);
        const ref_ptr<IntArray> images = newIntArray();
        images->append(0);
        images->append(1);
        std::vector<double> times;
        for (int run = 0; run < 9; ++run) {
            times.push_back(bench::seconds([&] { (void)table->getCommonWrdPnts(images)->size(); }));
        }
        std::vector<int> running(static_cast<std::size_t>(n)), found;
        for (int i = 0; i < n; ++i) { running[static_cast<std::size_t>(i)] = i; }
        const double searched = bench::seconds([&] {
            for (int i = 0; i < n; ++i) {
                if (std::find(running.begin(), running.end(), i) != running.end()) {
                    found.push_back(i);
                }
            }
        });
        print(n, bench::median(times) * 1e3, searched * 1e3);
    }
}

void removals() {
    printHead("Removing all n measurements of an image one by one", "ns each", "at 20000");
    double first = 0;
    for (int n = 20000; n <= 160000; n *= 2) {
        const auto table = block(3, n);
        const double time = bench::seconds([&] {
                                for (int i = 0; i < n; ++i) { table->removeImgPntAt(1, i); }
                            }) *
                            1e9 / n;
        if (first == 0) { first = time; }
        print(n, time, first);
    }
}

void exports() {
    printHead("Exporting 200 images x n points", "ms", "copying the result, ms");
    for (int n = 12500; n <= 100000; n *= 2) {
        const auto table = block(200, n);
        const ref_ptr<Pnt2dArrayArray> imgPnts = newPnt2dArrayArray();
        const ref_ptr<IntArrayArray> ids = newIntArrayArray();
        const ref_ptr<CamParaArray> cams = newCamParaArray();
        const ref_ptr<IntArray> camMap = newIntArray(), wrdMap = newIntArray();
        const ref_ptr<Pnt3dArray> wrdPnts = newPnt3dArray();
        std::vector<double> times, copies;
        for (int run = 0; run < 3; ++run) {
            times.push_back(bench::seconds(
                [&] { table->exportData(imgPnts, ids, cams, camMap, wrdPnts, wrdMap); }));
            std::vector<ref_ptr<Pnt2dArray>> rows;
            std::vector<ref_ptr<IntArray>> idRows;
            copies.push_back(bench::seconds([&] {
                for (int img = 0; img < 200; ++img) {
                    rows.emplace_back(imgPnts->get(img)->clone());
                    idRows.emplace_back(ids->get(img)->clone());
                }
            }));
        }
        print(n, bench::median(times) * 1e3, bench::median(copies) * 1e3);
    }
}

void projections() {
    printHead("Projecting n points with one camera", "us each", "by project, us each");
    zynCamOutParam cam;
    cam.X = 5e5, cam.Y = 5.4e6, cam.Z = 1200;
    cam.phi = 0.02, cam.omega = -0.03, cam.kappa = 1.5;
    bool areEqual = true;
    for (int n = 1000; n <= 1000000; n *= 10) {
        std::vector<XPnt3d> points;
        for (int i = 0; i < n; ++i) {
            points.emplace_back(cam.X + i % 1000, cam.Y + i % 997, i % 300);
        }
        std::vector<XPnt2d> images, singles(points.size());
        std::vector<double> times, peers;
        for (int run = 0; run < 5; ++run) {
            times.push_back(bench::seconds([&] { images = projectAll(cam, 0.15, points); }));
            peers.push_back(bench::seconds([&] {
                std::transform(points.begin(), points.end(), singles.begin(),
                               [&](const XPnt3d& p) { return project(cam, 0.15, p); });
            }));
        }
        print(n, bench::median(times) * 1e6 / n, bench::median(peers) * 1e6 / n);
        areEqual = areEqual && images == singles;
    }
    std::printf("\nThe results %s equal to the bit.\n", areEqual ? "are" : "are not all");
}

}  // namespace

int main() {
    commonPoints();
    removals();
    exports();
    projections();
    return 0;
}
