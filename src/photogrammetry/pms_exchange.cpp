// Export of a block to compact arrays, and import of the adjusted values.
#include "photogrammetry/pms_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace zyn::detail {

namespace {

/// Numbers the places that are kept, from 0 without gaps.
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

/// Returns whether the map has an entry for each of `count` places, each of them -1 or below
/// `limit`.
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

/// Exports a block in three steps. The constructor numbers the images and points that are kept,
/// fillColumns() collects the measurements, and handOver() changes the arrays of the host. The last
/// step allocates before it changes anything. So a failed allocation, or one array passed twice,
/// does no harm.
struct CZynPMSDataTable::Export {
    /// Collects the measurements of one image through plain pointers.
    struct Column {
        int img;
        const XPnt2d* measured;  // null without measurements
        int count = 0;
        ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
        ref_ptr<IntArray> ids = newIntArray();
        XPnt2d* xy = nullptr;  // the next places to write to
        int* id = nullptr;
    };
    struct Host {
        Pnt2dArrayArray& imgPnts;
        IntArrayArray& imgPntIds;
        CamParaArray& cams;
        IntArray& camMap;
        Pnt3dArray& wrdPnts;
        IntArray& wrdMap;
    };

    explicit Export(const CZynPMSDataTable& table_);
    void fillColumns();
    void handOver(const Host& host) const;

private:
    template <class Use>
    void forEachLink(Use use);

    const CZynPMSDataTable& table;
    const Compact images, points;
    std::vector<Column> columns;  // of the images that are kept
};

int CZynPMSDataTable::exportData(const ref_ptr<Pnt2dArrayArray>& imgPnts,
                                 const ref_ptr<IntArrayArray>& imgPntIds,
                                 const ref_ptr<CamParaArray>& cams, const ref_ptr<IntArray>& camMap,
                                 const ref_ptr<Pnt3dArray>& wrdPnts,
                                 const ref_ptr<IntArray>& wrdMap) {
    if (!imgPnts || !imgPntIds || !cams || !camMap || !wrdPnts || !wrdMap) { return -1; }
    Export block(*this);
    block.fillColumns();
    block.handOver({*imgPnts, *imgPntIds, *cams, *camMap, *wrdPnts, *wrdMap});
    return 0;
}

CZynPMSDataTable::Export::Export(const CZynPMSDataTable& table_)
    : table(table_),
      images(table.cameras->size(), [this](int img) { return table.cameras->isLive(img); }),
      points(table.points->size(), [this](int pnt) { return table.points->isValid(pnt); }) {
    columns.reserve(images.places.size());
    for (const int img : images.places) {
        const _ZynImgPntsData* const found = table.record(img);
        columns.push_back({img, found != nullptr ? found->pnts->data() : nullptr});
    }
}

void CZynPMSDataTable::Export::fillColumns() {
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
}

/// Calls use(column, idx, number) for each link of a kept point to the image of a column. `idx` is
/// the measurement and `number` the new number of the point. Visits the points in tiles, so that
/// each column is written in runs.
template <class Use>
void CZynPMSDataTable::Export::forEachLink(Use use) {
    constexpr int tile = 64;
    std::array<std::span<const int>, tile> links;
    for (int first = 0; first < points.size(); first += tile) {
        const int count = std::min(tile, points.size() - first);
        for (int n = 0; n < count; ++n) {
            const auto number = static_cast<std::size_t>(first) + static_cast<std::size_t>(n);
            links[static_cast<std::size_t>(n)] = table.points->linksOf(points.places[number]);
        }
        for (Column& column : columns) {
            const auto img = static_cast<std::size_t>(column.img);
            for (int n = 0; n < count; ++n) {
                const std::span<const int> link = links[static_cast<std::size_t>(n)];
                if (img < link.size() && link[img] != -1) { use(column, link[img], first + n); }
            }
        }
    }
}

void CZynPMSDataTable::Export::handOver(const Host& host) const {
    host.imgPnts.reserve(images.size());
    host.imgPntIds.reserve(images.size());
    host.cams.reserve(images.size());
    host.wrdPnts.reserve(points.size());
    host.camMap.reserve(table.cameras->size());
    host.wrdMap.reserve(table.points->size());
    // Keeps the old rows until the last change is done, since a delete handler may call the table.
    const ref_ptr<Pnt2dArrayArray> oldPnts = host.imgPnts.clone();
    const ref_ptr<IntArrayArray> oldIds = host.imgPntIds.clone();
    host.imgPnts.removeAll();
    host.imgPntIds.removeAll();
    host.cams.removeAll();
    host.wrdPnts.removeAll();
    for (const Column& column : columns) {
        host.imgPnts.append(column.pnts.get());
        host.imgPntIds.append(column.ids.get());
        host.cams.append(table.cameras->get(column.img));
    }
    for (const int pnt : points.places) { host.wrdPnts.append(table.points->getPnt(pnt)); }
    host.camMap.assign(images.numbers.data(), static_cast<int>(images.numbers.size()));
    host.wrdMap.assign(points.numbers.data(), static_cast<int>(points.numbers.size()));
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
