// A block in compact form, out and back.
#include "photogrammetry/pms_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace zyn::detail {

namespace {

/// Which places are kept, and their numbers among those that are.
struct Compact {
    std::vector<int> places;   // of the kept ones, in order
    std::vector<int> numbers;  // of all places; -1 of those left out

    template <class IsKept>
    Compact(int count, IsKept isKept) {
        for (int place = 0; place < count; ++place) {
            const bool kept = isKept(place);
            numbers.push_back(kept ? static_cast<int>(places.size()) : -1);
            if (kept) { places.push_back(place); }
        }
    }
    int size() const { return static_cast<int>(places.size()); }
};

/// Whether the map has an entry for each of `count` places, each -1 or below `limit`.
bool isMap(IntArray& map, int count, int limit) {
    return map.size() >= count && std::all_of(map.begin(), map.begin() + count, [=](int number) {
               return number >= -1 && number < limit;
           });
}

}  // namespace

ref_ptr<Pnt3dArray> CZynPMSDataTable::getValidWrdPnts() {
    ref_ptr<Pnt3dArray> valid = newPnt3dArray();
    for (const XPnt3d& p : *points->getPnts()) {
        if (p.isValid()) { valid->append(p); }
    }
    return valid;
}

// Everything is made first: running out of memory, and one array given for two, spoil nothing.
int CZynPMSDataTable::exportData(const ref_ptr<Pnt2dArrayArray>& imgPnts,
                                 const ref_ptr<IntArrayArray>& imgPntIds,
                                 const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                                 const ref_ptr<Pnt3dArray>& wrdPnts,
                                 const ref_ptr<IntArray>& wrdMap) {
    if (!imgPnts || !imgPntIds || !cams || !camMap || !wrdPnts || !wrdMap) { return -1; }
    const Compact images(getImgNum(), [this](int img) { return cameras->isLive(img); });
    const Compact kept(getWrdPntNum(), [this](int pnt) { return points->isValid(pnt); });

    // An image's column of the block, written through plain pointers.
    struct Column {
        int img;
        const XPnt2d* measured;  // null without measurements
        int count = 0;
        ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
        ref_ptr<IntArray> ids = newIntArray();
        XPnt2d* xy = nullptr;  // the next places to write to
        int* id = nullptr;
    };
    std::vector<Column> columns;
    columns.reserve(images.places.size());
    for (const int img : images.places) {
        const _ZynImgPntsData* const found = record(img);
        columns.push_back({img, found != nullptr ? found->pnts->data() : nullptr});
    }
    // In tiles of points, so that each column is written in runs.
    const auto forEachLink = [&](auto use) {
        constexpr int tile = 64;
        std::array<std::span<const int>, tile> links;
        for (int first = 0; first < kept.size(); first += tile) {
            const int count = std::min(tile, kept.size() - first);
            for (int n = 0; n < count; ++n) {
                const auto number = static_cast<std::size_t>(first) + static_cast<std::size_t>(n);
                links[static_cast<std::size_t>(n)] = points->linksOf(kept.places[number]);
            }
            for (Column& column : columns) {
                const auto img = static_cast<std::size_t>(column.img);
                for (int n = 0; n < count; ++n) {
                    const std::span<const int> link = links[static_cast<std::size_t>(n)];
                    if (img < link.size() && link[img] != -1) { use(column, link[img], first + n); }
                }
            }
        }
    };
    forEachLink([](Column& column, int, int) { ++column.count; });
    for (Column& column : columns) {
        column.pnts->resize(column.count);
        column.ids->resize(column.count);
        column.xy = column.pnts->data();
        column.id = column.ids->data();
    }
    forEachLink([](Column& column, int idx, int number) {
        *column.xy++ = column.measured[idx];
        *column.id++ = number;
    });

    const int imageTotal = images.size(), pointTotal = kept.size();
    imgPnts->reserve(imageTotal);
    imgPntIds->reserve(imageTotal);
    cams->reserve(imageTotal);
    wrdPnts->reserve(pointTotal);
    camMap->reserve(getImgNum());
    wrdMap->reserve(getWrdPntNum());
    // The rows before end behind the last change: a delete handler may call the table.
    const ref_ptr<Pnt2dArrayArray> oldPnts = imgPnts->clone();
    const ref_ptr<IntArrayArray> oldIds = imgPntIds->clone();
    imgPnts->removeAll();
    imgPntIds->removeAll();
    cams->removeAll();
    wrdPnts->removeAll();
    for (const Column& column : columns) {
        imgPnts->append(column.pnts.get());
        imgPntIds->append(column.ids.get());
        cams->append(cameras->get(column.img));
    }
    for (const int pnt : kept.places) { wrdPnts->append(points->getPnt(pnt)); }
    camMap->assign(images.numbers.data(), static_cast<int>(images.numbers.size()));
    wrdMap->assign(kept.numbers.data(), static_cast<int>(kept.numbers.size()));
    return 0;
}

int CZynPMSDataTable::importData(const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                                 const ref_ptr<Pnt3dArray>& wrdPnts,
                                 const ref_ptr<IntArray>& wrdMap) {
    if (!cams || !camMap || !wrdPnts || !wrdMap || !isMap(*camMap, getImgNum(), cams->size()) ||
        !isMap(*wrdMap, getWrdPntNum(), wrdPnts->size())) {
        return -1;
    }
    for (int img = 0; img < getImgNum(); ++img) {
        if (const int number = camMap->get(img); number != -1) {
            cameras->set(img, cams->get(number));
        }
    }
    for (int pnt = 0; pnt < getWrdPntNum(); ++pnt) {
        if (const int number = wrdMap->get(pnt); number != -1) {
            points->setPnt(pnt, wrdPnts->get(number));
        }
    }
    return 0;
}

}  // namespace zyn::detail
