// The block: a random walk against a model without links, cascades of removals, bad arguments, and
// the two sub-tables.
#include <zyn/pms.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "photogrammetry/pms_image_points.h"
#include "photogrammetry/pms_world_points.h"
#include "seed.h"
#include "testing.h"

namespace {

using namespace zyn;
using namespace zyn::detail;
using testing::ElementsAre;

constexpr int imageCount = 5;
using Seen = std::vector<std::pair<int, XPnt2d>>;

std::vector<int> list(const ref_ptr<IntArray>& a) { return {a->begin(), a->end()}; }
ref_ptr<IntArray> listOf(const std::vector<int>& numbers) {
    ref_ptr<IntArray> result = newIntArray();
    result->assign(numbers.data(), int(numbers.size()));
    return result;
}
ref_ptr<Pnt2dArray> seenOn(const Seen& seen, int images = imageCount) {
    const ref_ptr<Pnt2dArray> result = newPnt2dArray();
    result->resize(images);
    for (const auto& [img, xy] : seen) { result->getRef(img) = xy; }
    return result;
}

struct Export {
    ref_ptr<Pnt2dArrayArray> imgPnts = newPnt2dArrayArray();
    ref_ptr<IntArrayArray> imgPntIds = newIntArrayArray();
    ref_ptr<CamParaArray> cams = newCamParaArray();
    ref_ptr<IntArray> camMap = newIntArray();
    ref_ptr<Pnt3dArray> wrdPnts = newPnt3dArray();
    ref_ptr<IntArray> wrdMap = newIntArray();

    explicit Export(IZynPMSDataTable& table) {
        EXPECT_EQ(table.exportData(imgPnts, imgPntIds, cams, camMap, wrdPnts, wrdMap), 0);
    }
};

/// A block without links: it holds where each world point is seen.
struct Model {
    struct Point {
        XPnt3d xyz = XPnt3d::invalid();
        XPnt2d seen[imageCount] = {};
    };
    std::map<int, Point> points;
    bool live[imageCount] = {true, true, true, true, true};

    void remove(int img, int pnt) {
        Point& point = points[pnt];
        point.seen[img].setInvalid();
        live[img] = live[img] && std::ranges::any_of(points, [img](const auto& entry) {
                        return entry.second.seen[img].isValid();
                    });
        if (std::ranges::count_if(point.seen, &XPnt2d::isValid) < 2) { point = {}; }
    }
    void removeImage(int img) {
        live[img] = false;
        for (const auto& [pnt, point] : points) {
            if (point.seen[img].isValid()) { remove(img, pnt); }
        }
    }
    bool merge(int a, int b, const XPnt3d& xyz) {
        Point merged{xyz, {}};
        for (int img = 0; img < imageCount; ++img) {
            const XPnt2d ofA = points[a].seen[img], ofB = points[b].seen[img];
            if (ofA.isValid() && ofB.isValid()) { return false; }
            merged.seen[img] = ofA.isValid() ? ofA : ofB;
        }
        points[std::min(a, b)] = merged;
        points[std::max(a, b)] = {};
        return true;
    }
};

class PmsTable : public testing::Test {
protected:
    PmsTable() { EXPECT_EQ(setImgNum(table.get(), imageCount), 0); }

    int pick(int n) { return std::uniform_int_distribution(0, n - 1)(random); }
    int add(const Seen& seen, const XPnt3d& xyz) { return table->addWrdPnt(seenOn(seen), xyz); }
    void walk(int steps);
    void addRandomPoint(const XPnt2d& xy, const XPnt3d& xyz);
    void operate(const XPnt2d& xy, const XPnt3d& xyz);
    void expectModel();

    const ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
    Model model;
    std::mt19937 random{support::newSeed()};
};

void PmsTable::walk(int steps) {
    for (int step = 0; step < steps && !HasFailure(); ++step) {
        const bool adds = model.points.size() < 2 || pick(100) < 45;
        (this->*(adds ? &PmsTable::addRandomPoint : &PmsTable::operate))(XPnt2d(step, step + 0.5),
                                                                         XPnt3d(step, 1, 2));
        if (step % 10 == 0) { expectModel(); }
    }
}

void PmsTable::addRandomPoint(const XPnt2d& xy, const XPnt3d& xyz) {
    Seen seen;
    Model::Point point{xyz, {}};
    for (int img = 0; img < imageCount; ++img) {
        if (pick(img == 4 ? 20 : 3) > 1) { continue; }  // image 4 may become empty
        seen.emplace_back(img, xy);
        point.seen[img] = xy;
    }
    ASSERT_EQ(add(seen, xyz), seen.size() < 2 ? -1 : 0);
    if (seen.size() > 1) { model.points.emplace(int(model.points.size()), point); }
}

void PmsTable::operate(const XPnt2d& xy, const XPnt3d& xyz) {
    const int img = pick(imageCount), a = pick(int(model.points.size())),
              b = pick(int(model.points.size()));
    const ref_ptr<TagPnt2dArray> tagged = table->getImgTagPnts(img);
    const ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
    const ref_ptr<IntArray> indices = newIntArray(), same = newIntArray();
    table->getCommonPnts(img, img, pnts.get(), pnts.get(), indices.get(), same.get());
    ASSERT_EQ(tagged->size(), indices->size());
    // A measurement of the image.
    const int nth = tagged->size() == 0 ? -1 : pick(tagged->size());
    const int pnt = nth == -1 ? -1 : tagged->get(nth).tag, idx = nth == -1 ? -1 : indices->get(nth);
    switch (pick(nth == -1 ? 5 : 9)) {
    case 0:
        if (model.points[a].seen[img].isValid()) { break; }
        ASSERT_EQ(table->addImgPnt(img, xy, a), 0);
        model.points[a].seen[img] = xy;
        break;
    case 1:
        ASSERT_EQ(table->mergeWrdPnts(a, b, xyz), a != b && model.merge(a, b, xyz) ? 0 : -1);
        break;
    case 2:
        ASSERT_EQ(table->swapWrdPnts(a, b), a == b ? -1 : 0);
        std::swap(model.points[a], model.points[b]);
        break;
    case 3:
        ASSERT_EQ(table->removeWrdPnt(a), 0);
        model.points[a] = {};
        break;
    case 4:
        if (pick(20) > 0) { break; }
        ASSERT_EQ(table->removeImg(img), 0);
        model.removeImage(img);
        break;
    case 5:
        ASSERT_EQ(table->removeImgPnt(img, pnt), 0);
        model.remove(img, pnt);
        break;
    case 6:
        ASSERT_EQ(table->removeWrdPntOfImgPnt(img, idx), 0);
        model.points[pnt] = {};
        break;
    default:
        ASSERT_EQ(table->removeImgPntAt(img, idx), 0);
        model.remove(img, pnt);
        ASSERT_EQ(table->removeWrdPntOfImgPnt(img, idx), -1);
    }
}

void PmsTable::expectModel() {
    const Export out(*table);
    ASSERT_EQ(table->getWrdPntNum(), int(model.points.size()));
    int kept = 0;
    for (const auto& [pnt, point] : model.points) {
        ASSERT_EQ(table->getWrdPnt(pnt), point.xyz);
        ASSERT_EQ(out.wrdMap->get(pnt), point.xyz.isValid() ? kept++ : -1);
    }
    for (int img = 0, image = 0; img < imageCount; ++img) {
        const bool live = model.live[img];
        ASSERT_EQ(table->getCamOutParam(img).imageIndex, live ? img : -1);
        ASSERT_EQ(out.camMap->get(img), live ? image : -1);
        int measured = 0, exported = 0, common[imageCount] = {};
        for (const auto& [pnt, point] : model.points) {
            const XPnt2d xy = point.seen[img];
            ASSERT_EQ(table->getImgPnt(img, pnt), xy);
            if (!xy.isValid()) { continue; }
            ++measured;
            for (int b = 0; b < imageCount; ++b) { common[b] += point.seen[b].isValid(); }
            if (!live || !point.xyz.isValid()) { continue; }
            ASSERT_EQ(out.imgPntIds->get(image)->get(exported), out.wrdMap->get(pnt));
            ASSERT_EQ(out.imgPnts->get(image)->get(exported++), xy);
        }
        const ref_ptr<TagPnt2dArray> tagged = table->getImgTagPnts(img);
        for (const TagPnt2d& t : *tagged) { ASSERT_EQ(model.points[t.tag].seen[img], t); }
        ASSERT_EQ(tagged->size(), measured);
        for (int b = 0; b < imageCount; ++b) {
            ASSERT_EQ(table->getCommonPntNum(img, b), common[b]);
        }
        if (live) { ASSERT_EQ(out.imgPnts->get(image++)->size(), exported); }
    }
}

TEST_F(PmsTable, ARandomWalkKeepsEveryLink) { walk(3000); }

/// Returns a measurement of a point on an image; its coordinates are the two numbers.
std::pair<int, XPnt2d> at(int img, int pnt) { return {img, XPnt2d(img, pnt)}; }

/// Point 0 is on images 0, 1 and 2; point 1 on 2 and 1; point 2 on 0 and 1, without coordinates.
struct SmallPmsTable : PmsTable {
    SmallPmsTable() {
        add({at(0, 0), at(1, 0), at(2, 0)}, XPnt3d(1, 1, 5e9));
        add({at(2, 1), at(1, 1)}, XPnt3d(5, 1, 6e9));
        EXPECT_EQ(table->addWrdPnt(seenOn({at(0, 2), at(1, 2)})), 0);
    }

    const ref_ptr<Pnt2dArray> a = newPnt2dArray(), b = newPnt2dArray(), c = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
};

TEST_F(SmallPmsTable, CommonPointsAndObservationsKeepTheOrderOfAddition) {
    EXPECT_EQ(table->addWrdPnt(seenOn({at(0, 3)})), 0);  // adds nothing: one measurement is too few
    EXPECT_EQ(table->getWrdPntNum(), 3);
    EXPECT_EQ(table->getValidWrdPnts()->size(), 2);
    EXPECT_EQ(table->getEnvelope(), Enve3d(1, 1, 5e9, 5, 1, 6e9));

    const ref_ptr<IntArray> onA = listOf({77}), onB = newIntArray();
    EXPECT_EQ(table->getCommonPnts(1, 0, a.get(), b.get(), onA.get(), nullptr), 0);
    EXPECT_THAT(list(onA), ElementsAre(77));
    table->getCommonPnts(1, 0, a.get(), b.get(), onA.get(), onB.get());
    EXPECT_THAT(list(onA), ElementsAre(0, 2));
    EXPECT_THAT(list(onB), ElementsAre(0, 1));
    EXPECT_EQ(a->get(1), XPnt2d(1, 2));
    EXPECT_EQ(b->get(1), XPnt2d(0, 2));
    table->addImgPnt(2, XPnt2d(2, 2), 2);
    table->getCommonPnts3(0, 1, 2, a.get(), b.get(), c.get());
    ASSERT_EQ(a->size(), 2);
    EXPECT_EQ(a->get(1), XPnt2d(0, 2));
    EXPECT_EQ(b->get(1), XPnt2d(1, 2));
    EXPECT_EQ(c->get(1), XPnt2d(2, 2));
    EXPECT_THAT(list(table->getCommonWrdPnts(listOf({0, 1, 2}))), ElementsAre(0, 2));
    EXPECT_THAT(list(table->getCommonWrdPnts(listOf({0, 7}))), testing::IsEmpty());
    EXPECT_EQ(table->getCommonWrdPnts(listOf({0})), nullptr);

    EXPECT_EQ(table->getWrdPntObservations(1, a.get(), cams.get()), 0);
    EXPECT_EQ(a->get(0), XPnt2d(1, 1));
    EXPECT_EQ(cams->get(1).imageIndex, 2);
}

TEST_F(SmallPmsTable, ALaterMeasurementReplacesTheLinkAndLeavesTheEarlierOneBehind) {
    table->addImgPnt(0, XPnt2d(9, 9), 0);
    EXPECT_EQ(std::as_const(*table).getImgPnt(0, 0), XPnt2d(9, 9));
    EXPECT_EQ(getImgPntNum(table.get(), 0), 3);
    EXPECT_EQ(getImgPntAt(table.get(), 0, 0), XPnt2d(0, 0));
    EXPECT_EQ(getImgPntAt(table.get(), 0, 0).tag, 0);
    EXPECT_THAT(list(table->getCommonWrdPnts(listOf({1, 0}))), ElementsAre(0, 2, 0));
    table->removeImgPntAt(0, 0);  // removes the link too
    EXPECT_FALSE(table->getImgPnt(0, 0).isValid());
}

TEST_F(SmallPmsTable, AnImageWithoutValidMeasurementsIsRemovedWithItsLastOne) {
    // An invalid measurement is a link, but does not keep its image.
    table->addImgPnt(4, XPnt2d(), 1);
    EXPECT_EQ(table->getImgTagPnts(4)->size(), 0);
    table->addImgPnt(4, XPnt2d(9, 9), 0);
    table->removeWrdPnt(0);
    EXPECT_EQ(table->getEnvelope(), Enve3d::invalid()) << "one point is left";
    EXPECT_EQ(table->getCamOutParam(4).imageIndex, 4) << "removing a point removes no image";
    table->removeImgPntAt(4, 0);
    EXPECT_EQ(table->getCamOutParam(4).imageIndex, -1);
    table->addImgPnt(3, XPnt2d(8, 8), 0);
    EXPECT_EQ(table->getWrdPntObservations(0, a.get(), cams.get()), -1);
    EXPECT_EQ(a->size(), 1);
    EXPECT_EQ(a->get(0), XPnt2d(8, 8));
    EXPECT_EQ(cams->size(), 1);
    EXPECT_EQ(table->removeImgPntAt(3, 1), -1);
    EXPECT_EQ(table->removeWrdPntOfImgPnt(3, 1), -1);
}

TEST_F(PmsTable, ImportsResultsByTheMapsOfTheExport) {
    EXPECT_EQ(table->getCamInParam().f, -1);
    for (int n = 0; n < 4; ++n) {
        add({{0, XPnt2d(n, 0)}, {2, XPnt2d(n, 2)}, {4, XPnt2d(n, 4)}}, XPnt3d(n, n, n));
    }
    table->removeWrdPnt(1);
    table->removeImg(2);
    const Export out(*table);
    EXPECT_EQ(out.cams->get(3).imageIndex, 4);
    out.cams->getRef(3).X = 44;
    out.wrdPnts->getRef(1) = XPnt3d(8, 8, 8);
    EXPECT_EQ(table->importData(out.cams, out.camMap, out.wrdPnts, out.wrdMap), 0);
    EXPECT_EQ(table->scale(2), 0);
    EXPECT_EQ(table->getCamOutParam(4).X, 88);
    EXPECT_EQ(table->getWrdPnt(2), XPnt3d(16, 16, 16));
    EXPECT_EQ(table->getCamOutParam(2).X, unsetCamera);
    EXPECT_FALSE(table->getWrdPnt(1).isValid());
    EXPECT_EQ(table->getWrdPnt(0), XPnt3d(0, 0, 0));
    // The links of points do not reach the images that are added now.
    EXPECT_EQ(setImgNum(table.get(), 7), 0);
    EXPECT_FALSE(table->getImgPnt(6, 0).isValid());
    EXPECT_EQ(table->addImgPnt(6, XPnt2d(6, 6), 0), 0);
    EXPECT_EQ(table->getCommonPntNum(6, 0), 1);
    const Export more(*table);  // image 2 is live again, without its measurements
    EXPECT_THAT(list(more.camMap), ElementsAre(0, 1, 2, 3, 4, 5, 6));
    EXPECT_EQ(more.imgPnts->get(2)->size(), 0);
    EXPECT_EQ(more.imgPnts->get(5)->size(), 0);
    zynCamInParam interior = {};
    interior.f = 5;
    table->setCamInParam(interior);
    table->clear();
    EXPECT_EQ(table->getImgNum(), 0);
    EXPECT_EQ(table->getWrdPntNum(), 0);
    EXPECT_EQ(table->getCamInParam().f, 5);
    setImgNum(table.get(), imageCount);
    add({{0, XPnt2d(3, 3)}, {1, XPnt2d(4, 4)}}, XPnt3d(1, 1, 1));
    EXPECT_EQ(table->getImgPnt(1, 0), XPnt2d(4, 4));
    EXPECT_EQ(table->getImgTagPnts(0)->size(), 1);
}

/// Calls a function whenever an object ends, except during that function.
struct CallingHandler : DeleteHandler {
    explicit CallingHandler(std::function<void()> call_) : call(std::move(call_)) {}
    void deleteObject(const ZynReferenced* object) override {
        destroy(object);
        if (std::exchange(isCalling, true)) { return; }
        call();
        isCalling = false;
    }
    std::function<void()> call;
    bool isCalling = false;
};

TEST_F(PmsTable, ADeleteHandlerMayCallTheTable) {
    const auto onTwo = [](int img) { return Seen{{img, {0.5, 1}}, {img + 1, {2, 3}}}; };
    const XPnt3d xyz(1, 2, 3);
    const auto calling = [&](const std::function<void()>& call, auto operation) {
        add(onTwo(0), xyz);
        add(onTwo(2), xyz);
        ZynReferenced::setDeleteHandler(new CallingHandler(call));
        EXPECT_EQ(operation(), 0);
        ZynReferenced::setDeleteHandler(nullptr);
    };
    calling([&] { table->removeWrdPnt(1); }, [&] { return table->mergeWrdPnts(0, 1, xyz); });
    EXPECT_EQ(table->getImgPnt(3, 0), XPnt2d(2, 3));
    const Export out(*table);
    calling([&] { table->clear(); },
            [&] {
                return table->exportData(out.imgPnts, out.imgPntIds, out.cams, out.camMap,
                                         out.wrdPnts, out.wrdMap);
            });
    EXPECT_EQ(out.cams->get(4).imageIndex, 4);
    EXPECT_EQ(out.wrdPnts->get(0), xyz);
    const ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    const auto fill = [&] {
        table->getWrdPntObservations(0, pnts.get(), cams.get());
        setImgNum(table.get(), imageCount);
        add(onTwo(1), xyz);
    };
    fill();
    calling(fill, [&] { return table->clear(); });
    ASSERT_GT(table->getWrdPntNum(), 0);
    EXPECT_EQ(getImgPntNum(table.get(), 2), table->getWrdPntNum());
    for (int pnt = 0; pnt < table->getWrdPntNum(); ++pnt) {
        EXPECT_EQ(getImgPntAt(table.get(), 2, pnt).tag, pnt);
        EXPECT_EQ(table->getImgPnt(2, pnt), XPnt2d(2, 3));
    }
}

TEST_F(PmsTable, BadArgumentsChangeNothing) {
    walk(300);
    auto& t = *table;
    const ref_ptr<Pnt2dArray> p = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    const XPnt2d xy(1, 1);
    const XPnt3d xyz(1, 1, 1);
    for (const int img : {-1, imageCount, 1 << 30, -(1 << 30)}) {
        const int pnt = img == imageCount ? t.getWrdPntNum() : img;
        EXPECT_EQ(t.getCamOutParam(img).imageIndex, -99999);
        EXPECT_FALSE(t.getWrdPnt(pnt).isValid());
        EXPECT_FALSE(t.getImgPnt(img, 0).isValid());
        EXPECT_FALSE(t.getImgPnt(0, pnt).isValid());
        EXPECT_EQ(t.getWrdPntImgPnts(pnt), nullptr);
        EXPECT_EQ(t.getImgTagPnts(img), nullptr);
        EXPECT_EQ(t.getCommonPntNum(img, 0), 0);
        EXPECT_EQ(t.getCommonPntNum(0, img), 0);
        EXPECT_EQ(getImgPntNum(&t, img), -1);
        EXPECT_EQ(getImgPntAt(&t, img, 0).tag, -1);
        EXPECT_FALSE(getImgPntAt(&t, 0, img == imageCount ? getImgPntNum(&t, 0) : img).isValid());
        EXPECT_EQ(t.getCommonPnts3(0, img, 1, p.get(), p.get(), p.get()), 0);
        EXPECT_EQ(t.getWrdPntObservations(pnt, p.get(), cams.get()), -1);
    }
    for (const int result :
         {t.addWrdPnt(p), t.addWrdPnt(seenOn({{0, xy}, {1, xy}}, 4), xyz), setImgNum(nullptr, 4),
          t.getCommonPnts(0, 1, nullptr, p.get(), nullptr, nullptr),
          t.getCommonPnts3(0, 1, 2, p.get(), p.get(), nullptr),
          t.getCommonPnts3(0, 1, 2, p.get(), nullptr, p.get()),
          t.getCommonPnts3(0, 1, 2, nullptr, p.get(), p.get()),
          t.getWrdPntObservations(0, nullptr, cams.get())}) {
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(t.getCommonWrdPnts(nullptr), nullptr);
    EXPECT_EQ(setImgNum(&t, 0), 0);
    EXPECT_EQ(setImgNum(&t, -1), 0);
    const Export out(t);
    for (int missing = 0; missing < 6; ++missing) {
        const auto given = [&](int n, const auto& array) { return n == missing ? nullptr : array; };
        EXPECT_EQ(t.exportData(given(0, out.imgPnts), given(1, out.imgPntIds), given(2, out.cams),
                               given(3, out.camMap), given(4, out.wrdPnts), given(5, out.wrdMap)),
                  -1);
        EXPECT_EQ(t.importData(given(2, out.cams), given(3, out.camMap), given(4, out.wrdPnts),
                               given(5, out.wrdMap)),
                  missing < 2 ? 0 : -1);
    }
    out.cams->resize(1);
    out.cams->getRef(0).imageIndex = 77;
    const ref_ptr<IntArray> map = listOf({0, 0, 0, 0, 0});
    for (const int bad : {1, -2}) {
        map->getRef(4) = bad;
        EXPECT_EQ(t.importData(out.cams, map, out.wrdPnts, out.wrdMap), -1);
    }
    map->getRef(4) = 0;
    EXPECT_EQ(t.importData(out.cams, map, newPnt3dArray(), out.wrdMap), -1);
    map->removeLast();
    EXPECT_EQ(t.importData(out.cams, map, out.wrdPnts, out.wrdMap), -1);
    expectModel();
    t.clear();  // no list of measurements fits a table without images
    EXPECT_EQ(t.addWrdPnt(newPnt2dArray(), xyz), -1);
    EXPECT_EQ(t.addWrdPnt(newPnt2dArray()), -1);
}

TEST(PmsImagePoints, InvalidMeasurementsKeepTheirPlaces) {
    CZynPMSImgPntsTable t;
    EXPECT_EQ(t.getCount(3), -1);
    EXPECT_EQ(t.getValidCount(3), -1);
    EXPECT_EQ(t.getPnts(3), nullptr);
    EXPECT_EQ(t.getIds(3), nullptr);
    EXPECT_EQ(t.add(3, XPnt2d(1, 2), 7), 1);
    EXPECT_EQ(t.add(3, XPnt2d(), 9), 2);
    for (const int index : {0, 0, 2}) { EXPECT_EQ(t.invalidate(3, index), 0) << index; }
    EXPECT_EQ(t.getCount(3), 2);
    EXPECT_EQ(t.getValidCount(3), 0);
    EXPECT_THAT(list(t.getIds(3)), ElementsAre(-1, 9));
    t.clearIds();
    EXPECT_EQ(t.getIds(3)->size(), 0);
    EXPECT_EQ(t.getCount(3), 2);
    t.clearPnts();
    EXPECT_EQ(t.getCount(3), 0);
}

TEST(PmsWorldPoints, OwnTheirLinks) {
    CZynPMSWrdPntsTable t;
    const ref_ptr<IntArray> first = listOf({0, -1, 5}), other = listOf({4});
    EXPECT_EQ(t.addPnt(XPnt3d(1, 2, 3)), 0);
    EXPECT_EQ(t.addIds(first.get()), 0);
    for (const int bad : {-1, 1}) {
        EXPECT_FALSE(t.getPnt(bad).isValid());
        EXPECT_EQ(t.getIds(bad), nullptr);
        EXPECT_EQ(t.setPnt(bad, XPnt3d()), -1);
        EXPECT_EQ(t.invalidatePnt(bad), -1);
        EXPECT_EQ(t.getValidCount(bad), -1);
        EXPECT_EQ(t.setIds(bad, other.get()), -1);
        EXPECT_EQ(t.resetIds(bad), -1);
    }
    EXPECT_EQ(t.getValidCount(0), 2);
    EXPECT_EQ(t.setIds(0, other.get()), 0);
    EXPECT_EQ(first->referenceCount(), 1);
    EXPECT_EQ(t.getIds(0), other);
    t.clear();  // empties the arrays of links, too
    EXPECT_EQ(t.size(), 0);
    EXPECT_EQ(t.getIdArrays()->size(), 0);
    EXPECT_EQ(other->size(), 0);
}

}  // namespace
