// The photogrammetric block with its size doubling: what is linear takes the same time an item.
//
// usage: bench_block
//
// Each line has a peer in the same run: for common points a search in the running set, for the
// export a plain copy of as many bytes, for removals the first size.
#include "measure.h"

#include <zyn/pms.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

using namespace zyn;

/// Every point measured on every image.
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
    std::printf("| %d | %.2f | %.2f | %.3f |\n", n, value, peer, value / peer);
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

}  // namespace

int main() {
    commonPoints();
    removals();
    exports();
    return 0;
}
