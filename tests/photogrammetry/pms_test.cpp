// The block: a random walk against a model that searches, the cascades, and bad arguments.
#include <zyn/pms.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "int_lists.h"
#include "seed.h"

namespace {

using namespace zyn;

ref_ptr<Pnt2dArray> seenOn(int images, const std::vector<std::pair<int, XPnt2d>>& seen) {
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

/// All that can be seen of a table, to the last bit.
std::vector<double> contentOf(IZynPMSDataTable& table) {
    std::vector<double> content;
    const auto add = [&content](auto... numbers) { (content.push_back(double(numbers)), ...); };
    const zynCamInParam in = table.getCamInParam();
    add(table.getImgNum(), table.getWrdPntNum(), in.f, in.x0, in.y0);
    for (int pnt = 0; pnt < table.getWrdPntNum(); ++pnt) {
        const XPnt3d p = table.getWrdPnt(pnt);
        add(p.x, p.y, p.z);
        const ref_ptr<Pnt2dArray> seen = table.getWrdPntImgPnts(pnt);
        for (const XPnt2d& xy : *seen) { add(xy.x, xy.y); }
    }
    for (int img = 0; img < table.getImgNum(); ++img) {
        const ref_ptr<DoubleArray> cam = table.getCamOutParam(img).toArray();
        for (const double v : *cam) { add(v); }
        const ref_ptr<TagPnt2dArray> tagged = table.getImgTagPnts(img);
        for (const TagPnt2d& t : *tagged) { add(t.x, t.y, t.tag); }
        // Indices tell of what was removed before them.
        const ref_ptr<Pnt2dArray> a = newPnt2dArray(), b = newPnt2dArray();
        const ref_ptr<IntArray> onA = newIntArray(), onB = newIntArray();
        table.getCommonPnts(img, img, a.get(), b.get(), onA.get(), onB.get());
        for (const int n : *onA) { add(n); }
    }
    const Export exported(table);
    for (const int n : list(exported.camMap)) { add(n); }
    for (const int n : list(exported.wrdMap)) { add(n); }
    for (int i = 0; i < exported.cams->size(); ++i) {
        for (int n = 0; n < exported.imgPnts->get(i)->size(); ++n) {
            const XPnt2d xy = exported.imgPnts->get(i)->get(n);
            add(xy.x, xy.y, exported.imgPntIds->get(i)->get(n));
        }
    }
    return content;
}

/// The same block without links: every one is found by search.
struct Model {
    struct Measurement {
        XPnt2d xy;
        int pnt;
    };
    std::vector<bool> live;
    std::vector<std::vector<Measurement>> images;
    std::vector<XPnt3d> points;

    explicit Model(int n) : live(std::size_t(n), true), images(std::size_t(n)) {}

    Measurement* find(std::size_t img, int pnt) {
        for (Measurement& m : images[img]) {
            if (m.pnt == pnt) { return &m; }
        }
        return nullptr;
    }
    int count(int pnt) {
        int found = 0;
        for (std::size_t i = 0; i < images.size(); ++i) { found += find(i, pnt) != nullptr; }
        return found;
    }
    void removePoint(int pnt) {
        for (std::size_t i = 0; i < images.size(); ++i) {
            if (Measurement* const m = find(i, pnt)) { *m = {XPnt2d(), -1}; }
        }
        points[std::size_t(pnt)].setInvalid();
    }
    void drop(Measurement& m) {
        const int pnt = m.pnt;
        m = {XPnt2d(), -1};
        if (pnt != -1 && count(pnt) < 2) { removePoint(pnt); }
    }
    void removeImage(std::size_t img) {
        live[img] = false;
        for (Measurement& m : images[img]) { drop(m); }
    }
    void remove(std::size_t img, std::size_t idx) {
        const int pnt = images[img][idx].pnt;
        images[img][idx] = {XPnt2d(), -1};
        const bool any =
            std::ranges::any_of(images[img], [](const auto& m) { return m.xy.isValid(); });
        if (!any) { removeImage(img); }
        if (pnt != -1 && count(pnt) < 2) { removePoint(pnt); }
    }
    bool merge(int a, int b, XPnt3d xyz) {
        for (std::size_t i = 0; i < images.size(); ++i) {
            if (find(i, a) != nullptr && find(i, b) != nullptr) { return false; }
        }
        for (std::size_t i = 0; i < images.size(); ++i) {
            if (Measurement* const m = find(i, std::max(a, b))) { m->pnt = std::min(a, b); }
        }
        points[std::size_t(std::min(a, b))] = xyz;
        points[std::size_t(std::max(a, b))].setInvalid();
        return true;
    }
    void swap(int a, int b) {
        for (auto& image : images) {
            for (Measurement& m : image) { m.pnt = m.pnt == a ? b : m.pnt == b ? a : m.pnt; }
        }
        std::swap(points[std::size_t(a)], points[std::size_t(b)]);
    }
};

class PmsTest : public testing::Test {
protected:
    static constexpr int imageCount = 5;
    const ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();

    PmsTest() { EXPECT_EQ(setImgNum(table.get(), imageCount), 0); }

    void expectModel(Model& model) {
        ASSERT_EQ(table->getWrdPntNum(), int(model.points.size()));
        const Export exported(*table);
        int kept = 0;
        for (int pnt = 0; pnt < table->getWrdPntNum(); ++pnt) {
            const XPnt3d p = model.points[std::size_t(pnt)];
            ASSERT_EQ(table->getWrdPnt(pnt), p);
            ASSERT_EQ(exported.wrdMap->get(pnt), p.isValid() ? kept++ : -1);
            for (int img = 0; img < imageCount; ++img) {
                const auto* const m = model.find(std::size_t(img), pnt);
                ASSERT_EQ(table->getImgPnt(img, pnt), m != nullptr ? m->xy : XPnt2d());
            }
        }
        int image = 0;
        for (int img = 0; img < imageCount; ++img) {
            const auto& measured = model.images[std::size_t(img)];
            const bool live = model.live[std::size_t(img)];
            ASSERT_EQ(table->getCamOutParam(img).imageIndex, live ? img : -1);
            ASSERT_EQ(exported.camMap->get(img), live ? image : -1);
            const ref_ptr<TagPnt2dArray> tagged = table->getImgTagPnts(img);
            int n = 0, exports = 0, common[imageCount] = {};
            for (const auto& m : measured) {
                if (m.pnt == -1) { continue; }
                ASSERT_TRUE(n < tagged->size() && tagged->get(n).tag == m.pnt);
                ASSERT_EQ(tagged->get(n++), m.xy);
                exports += model.points[std::size_t(m.pnt)].isValid();
                for (std::size_t b = 0; b < imageCount; ++b) {
                    common[b] += model.find(b, m.pnt) != nullptr;
                }
            }
            ASSERT_EQ(tagged->size(), n);
            for (int b = 0; b < imageCount; ++b) {
                ASSERT_EQ(table->getCommonPntNum(img, b), common[b]);
            }
            if (!live) { continue; }
            ASSERT_EQ(exported.imgPnts->get(image)->size(), exports);
            IntArray& ids = *exported.imgPntIds->get(image++);
            ASSERT_TRUE(ids.size() == exports && std::is_sorted(ids.begin(), ids.end()));
        }
    }
};

TEST_F(PmsTest, ARandomWalkKeepsEveryLink) {
    std::mt19937 random(support::newSeed());
    const auto pick = [&random](std::size_t n) {
        return int(std::uniform_int_distribution<std::size_t>(0, n - 1)(random));
    };
    Model model(imageCount);
    for (int step = 0; step < 3000 && !HasFailure(); ++step) {
        const int img = pick(imageCount), count = int(model.points.size());
        auto& image = model.images[std::size_t(img)];
        const XPnt2d xy(step, step + 0.5);
        const XPnt3d xyz(step, 1, 2);
        if (count < 2 || pick(100) < 45) {
            std::vector<std::pair<int, XPnt2d>> seen;
            for (int i = 0; i < imageCount; ++i) {
                if (pick(3) > 0) { seen.emplace_back(i, xy); }
            }
            ASSERT_EQ(table->addWrdPnt(seenOn(imageCount, seen), xyz), seen.size() < 2 ? -1 : 0);
            if (seen.size() < 2) { continue; }
            for (const auto& [i, p] : seen) { model.images[std::size_t(i)].push_back({p, count}); }
            model.points.push_back(xyz);
            continue;
        }
        const int a = pick(model.points.size()), b = pick(model.points.size());
        switch (pick(image.empty() ? 4 : 9)) {
        case 0:
            if (model.find(std::size_t(img), a) != nullptr) { break; }
            ASSERT_EQ(table->addImgPnt(img, xy, a), 0);
            image.push_back({xy, a});
            break;
        case 1:
            ASSERT_EQ(table->mergeWrdPnts(a, b, xyz), a != b && model.merge(a, b, xyz) ? 0 : -1);
            break;
        case 2:
            ASSERT_EQ(table->swapWrdPnts(a, b), a == b ? -1 : 0);
            model.swap(a, b);
            break;
        case 3:
            table->removeWrdPnt(a);
            model.removePoint(a);
            break;
        case 4: {
            const int pnt = image[std::size_t(pick(image.size()))].pnt;
            if (pnt == -1) { break; }
            const auto* const m = model.find(std::size_t(img), pnt);
            ASSERT_EQ(table->removeImgPnt(img, pnt), 0);
            model.remove(std::size_t(img), std::size_t(m - image.data()));
            break;
        }
        case 5:
            if (pick(20) > 0) { break; }
            ASSERT_EQ(table->removeImg(img), 0);
            model.removeImage(std::size_t(img));
            break;
        case 6: {
            const int idx = pick(image.size()), pnt = image[std::size_t(idx)].pnt;
            ASSERT_EQ(table->removeWrdPntOfImgPnt(img, idx), pnt == -1 ? -1 : 0);
            if (pnt != -1) { model.removePoint(pnt); }
            break;
        }
        case 7:
            table->scale(step % 2 == 0 ? 2 : 0.5);
            for (XPnt3d& p : model.points) {
                if (p.isValid()) { p *= step % 2 == 0 ? 2 : 0.5; }
            }
            break;
        default: {
            const int idx = pick(image.size());
            ASSERT_EQ(table->removeImgPntAt(img, idx), 0);
            model.remove(std::size_t(img), std::size_t(idx));
        }
        }
        if (step % 10 == 0) { expectModel(model); }
    }
}

TEST_F(PmsTest, ObservationsComeInTheirOrder) {
    // Point 0 on images 0, 1, 2; point 1 on 2, 1; point 2 on 0, 1 without coordinates.
    const auto at = [](int img, int pnt) { return std::pair(img, XPnt2d(img, pnt)); };
    table->addWrdPnt(seenOn(imageCount, {at(0, 0), at(1, 0), at(2, 0)}), XPnt3d(1, 1, 1));
    table->addWrdPnt(seenOn(imageCount, {at(2, 1), at(1, 1)}), XPnt3d(5, 1, 9));
    EXPECT_EQ(table->addWrdPnt(seenOn(imageCount, {at(0, 2), at(1, 2)})), 0);
    EXPECT_EQ(table->addWrdPnt(seenOn(imageCount, {at(0, 3)})), 0);  // too few: nothing is added
    EXPECT_EQ(table->getWrdPntNum(), 3);
    EXPECT_TRUE(table->getValidWrdPnts()->size() == 2 && table->getImgPnt(1, 2) == XPnt2d(1, 2));
    EXPECT_EQ(table->getEnvelope(), Enve3d(1, 1, 1, 5, 1, 9));

    const ref_ptr<Pnt2dArray> a = newPnt2dArray(), b = newPnt2dArray(), c = newPnt2dArray();
    const ref_ptr<IntArray> onA = newIntArray(), onB = newIntArray();
    onA->append(77);
    EXPECT_EQ(table->getCommonPnts(1, 0, a.get(), b.get(), onA.get(), nullptr), 0);
    EXPECT_EQ(list(onA), std::vector{77});
    table->getCommonPnts(1, 0, a.get(), b.get(), onA.get(), onB.get());
    EXPECT_TRUE(list(onA) == std::vector({0, 2}) && list(onB) == std::vector({0, 1}));
    EXPECT_TRUE(a->get(1) == XPnt2d(1, 2) && b->get(1) == XPnt2d(0, 2));
    table->getCommonPnts3(0, 1, 2, a.get(), b.get(), c.get());
    EXPECT_TRUE(a->size() == 1 && b->get(0) == XPnt2d(1, 0) && c->get(0) == XPnt2d(2, 0));
    EXPECT_EQ(list(table->getCommonWrdPnts(listOf({0, 1}))), (std::vector{0, 2}));
    EXPECT_EQ(list(table->getCommonWrdPnts(listOf({0, 1, 2}))), std::vector{0});
    EXPECT_EQ(list(table->getCommonWrdPnts(listOf({0, 7}))), std::vector<int>{});
    EXPECT_EQ(table->getCommonWrdPnts(listOf({0})), nullptr);

    const ref_ptr<CamParaArray> cams = newCamParaArray();
    EXPECT_EQ(table->getWrdPntObservations(1, a.get(), cams.get()), 0);
    EXPECT_TRUE(a->get(0) == XPnt2d(1, 1) && cams->get(1).imageIndex == 2);
    // An earlier measurement is left behind.
    EXPECT_EQ(table->addImgPnt(0, XPnt2d(9, 9), 0), 0);
    EXPECT_EQ(table->getImgPnt(0, 0), XPnt2d(9, 9));
    EXPECT_EQ(table->getImgTagPnts(0)->size(), 3);
    EXPECT_EQ(list(table->getCommonWrdPnts(listOf({1, 0}))), (std::vector{0, 2, 0}));
    table->removeImgPntAt(0, 0);  // takes the link along
    EXPECT_FALSE(table->getImgPnt(0, 0).isValid());
}

TEST_F(PmsTest, ResultsComeBackByTheirMaps) {
    for (int n = 0; n < 4; ++n) {
        table->addWrdPnt(
            seenOn(imageCount, {{0, XPnt2d(n, 0)}, {2, XPnt2d(n, 2)}, {4, XPnt2d(n, 4)}}),
            XPnt3d(n, n, n));
    }
    table->removeWrdPnt(1);
    table->removeImg(2);
    const Export out(*table);
    EXPECT_EQ(list(out.camMap), (std::vector{0, 1, -1, 2, 3}));
    EXPECT_EQ(list(out.wrdMap), (std::vector{0, -1, 1, 2}));
    EXPECT_EQ(list(out.imgPntIds->get(3)), (std::vector{0, 1, 2}));
    EXPECT_EQ(out.cams->get(3).imageIndex, 4);
    out.cams->getRef(3).X = 44;
    out.wrdPnts->getRef(1) = XPnt3d(8, 8, 8);
    EXPECT_EQ(table->importData(out.cams, out.camMap, out.wrdPnts, out.wrdMap), 0);
    EXPECT_TRUE(table->getCamOutParam(4).X == 44 && table->getWrdPnt(2) == XPnt3d(8, 8, 8));
    EXPECT_EQ(table->scale(2), 0);
    EXPECT_TRUE(table->getCamOutParam(4).X == 88 && table->getWrdPnt(2) == XPnt3d(16, 16, 16));
    EXPECT_TRUE(table->getCamOutParam(2).X == unsetCamera && !table->getWrdPnt(1).isValid());
    // More images later: the links of points reach none of them yet.
    EXPECT_EQ(setImgNum(table.get(), 7), 0);
    EXPECT_FALSE(table->getImgPnt(6, 0).isValid());
    EXPECT_TRUE(table->addImgPnt(6, XPnt2d(6, 6), 0) == 0 && table->getCommonPntNum(6, 0) == 1);
    const Export more(*table);  // image 2 is live again, its measurements are gone
    EXPECT_EQ(list(more.camMap), (std::vector{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_TRUE(more.imgPnts->get(2)->size() == 0 && more.imgPnts->get(5)->size() == 0);
    EXPECT_TRUE(list(more.imgPntIds->get(6)) == std::vector{0} &&
                more.imgPnts->get(6)->get(0) == XPnt2d(6, 6));
    zynCamInParam interior = {};
    interior.f = 5;
    table->setCamInParam(interior);
    table->clear();
    EXPECT_TRUE(table->getImgNum() == 0 && table->getWrdPntNum() == 0);
    EXPECT_EQ(table->getCamInParam().f, 5);
}

TEST_F(PmsTest, WhatIsLeftUnsupportedGoes) {
    const auto at = [](int img, int pnt) { return std::pair(img, XPnt2d(img, pnt)); };
    zynCamOutParam cam;
    cam.X = cam.Y = cam.Z = 10;
    cam.imageIndex = 4;
    table->setCamOutParam(4, cam);
    const auto fill = [&] {
        table->addWrdPnt(seenOn(imageCount, {at(0, 0), at(1, 0)}), XPnt3d(1, 2, 5e9));
        table->addWrdPnt(seenOn(imageCount, {at(1, 1), at(2, 1), at(3, 1)}), XPnt3d(3, 4, 6e9));
    };
    fill();
    EXPECT_EQ(table->getEnvelope(), Enve3d(1, 2, 5e9, 3, 4, 6e9));
    table->scale(-2);
    EXPECT_EQ(table->getEnvelope(), Enve3d(-6, -8, -12e9, -2, -4, -10e9));
    cam = table->getCamOutParam(4);
    EXPECT_TRUE(cam.X == -20 && cam.Y == -20 && cam.Z == -20 && cam.phi == unsetCamera);

    // The only measurement of image 0: the image goes, then the point and what it has on image 1.
    EXPECT_EQ(table->removeImgPnt(0, 0), 0);
    EXPECT_EQ(table->getCamOutParam(0).imageIndex, -1);
    EXPECT_FALSE(table->getWrdPnt(0).isValid() || table->getImgPnt(1, 0).isValid());
    EXPECT_EQ(table->getEnvelope(), Enve3d::invalid());  // of one point
    EXPECT_EQ(table->getCamOutParam(1).imageIndex, 1);
    // A point takes no image along.
    table->addImgPnt(4, XPnt2d(), 1);  // not valid: a link, but nothing that keeps the image
    EXPECT_EQ(table->getImgTagPnts(4)->size(), 0);
    table->addImgPnt(4, XPnt2d(9, 9), 0);
    const ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    EXPECT_EQ(table->getWrdPntObservations(0, pnts.get(), cams.get()), -1);
    EXPECT_TRUE(pnts->size() == 1 && pnts->get(0) == XPnt2d(9, 9) && cams->size() == 1);
    table->removeWrdPnt(1);
    EXPECT_EQ(table->getCamOutParam(2).imageIndex, 2);
    EXPECT_EQ(table->removeImgPntAt(4, 1), 0);
    EXPECT_EQ(table->getCamOutParam(4).imageIndex, -1);

    table->clear();
    setImgNum(table.get(), imageCount);
    fill();
    EXPECT_TRUE(table->getImgPnt(1, 1) == XPnt2d(1, 1) && table->getCommonPntNum(1, 0) == 1);
}

TEST_F(PmsTest, BadArgumentsChangeNothing) {
    for (int n = 0; n < 3; ++n) {
        table->addWrdPnt(seenOn(imageCount, {{0, XPnt2d(n, 0)}, {1, XPnt2d(n, 1)}}),
                         XPnt3d(n, 2, 3));
    }
    zynCamInParam interior = {};
    table->setCamInParam(interior);
    table->addImgPnt(3, XPnt2d(3, 3), 1);
    table->addImgPnt(2, XPnt2d(4, 3), 1);
    table->removeImg(2);
    table->addWrdPnt(seenOn(imageCount, {{0, XPnt2d(7, 0)}, {4, XPnt2d(7, 1)}}), XPnt3d(7, 2, 3));
    table->removeWrdPnt(3);
    const std::vector<double> before = contentOf(*table);
    auto& t = *table;
    const ref_ptr<Pnt2dArray> p = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    const ref_ptr<Pnt3dArray> w = newPnt3dArray();
    const XPnt2d xy(1, 1);
    const XPnt3d xyz(1, 1, 1);
    for (const int bad : {-1, 5, 1 << 30, -(1 << 30)}) {
        EXPECT_FALSE(t.getCamOutParam(bad).imageIndex != -99999 || t.getWrdPnt(bad).isValid());
        EXPECT_FALSE(t.getImgPnt(bad, 0).isValid() || t.getImgPnt(0, bad).isValid());
        EXPECT_TRUE(t.getWrdPntImgPnts(bad) == nullptr && t.getImgTagPnts(bad) == nullptr);
        EXPECT_EQ(t.getCommonPntNum(bad, 0) + t.getCommonPntNum(0, bad), 0);
        EXPECT_EQ(t.getCommonPnts3(0, bad, 1, p.get(), p.get(), p.get()), 0);
        EXPECT_EQ(t.setCamOutParam(bad, {}) + t.setWrdPnt(bad, xyz) + t.addImgPnt(bad, xy, 0) +
                      t.addImgPnt(0, xy, bad) + t.removeImg(bad) + t.removeWrdPnt(bad) +
                      t.removeWrdPntOfImgPnt(bad, 0) + t.removeWrdPntOfImgPnt(0, bad) +
                      t.removeImgPntAt(bad, 0) + t.removeImgPntAt(0, bad) + t.removeImgPnt(bad, 0) +
                      t.removeImgPnt(0, bad) + t.mergeWrdPnts(bad, 0, xyz) +
                      t.mergeWrdPnts(0, bad, xyz) + t.swapWrdPnts(bad, 0) + t.swapWrdPnts(0, bad) +
                      t.getWrdPntObservations(bad, p.get(), cams.get()),
                  -17);
    }
    EXPECT_EQ(t.removeImgPntAt(3, 1) + t.removeImgPnt(3, 0) + t.mergeWrdPnts(0, 1, xyz) +
                  t.mergeWrdPnts(1, 1, xyz) + t.swapWrdPnts(2, 2),
              -5);
    EXPECT_EQ(t.addWrdPnt(nullptr, xyz) + t.addWrdPnt(nullptr) + t.addWrdPnt(p) +
                  t.addWrdPnt(seenOn(4, {{0, xy}, {1, xy}}), xyz) +
                  t.addWrdPnt(seenOn(imageCount, {{0, xy}}), xyz),
              -5);
    EXPECT_EQ(t.getCommonPnts(0, 1, p.get(), nullptr, nullptr, nullptr) +
                  t.getCommonPnts(0, 1, nullptr, p.get(), nullptr, nullptr) +
                  t.getCommonPnts3(0, 1, 2, p.get(), p.get(), nullptr) +
                  t.getCommonPnts3(0, 1, 2, p.get(), nullptr, p.get()) +
                  t.getCommonPnts3(0, 1, 2, nullptr, p.get(), p.get()) +
                  t.getWrdPntObservations(0, nullptr, cams.get()) +
                  t.getWrdPntObservations(0, p.get(), nullptr),
              -7);
    EXPECT_EQ(t.getCommonWrdPnts(nullptr), nullptr);
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
    for (const std::vector<int>& bad : {std::vector{0, 1, 2}, {0, 1, 2, 3, 5}, {0, 1, 2, 3, -2}}) {
        EXPECT_EQ(t.importData(out.cams, listOf(bad), out.wrdPnts, out.wrdMap), -1);
    }
    out.wrdPnts->removeLast();
    EXPECT_EQ(t.importData(out.cams, out.camMap, out.wrdPnts, out.wrdMap), -1);
    EXPECT_EQ(setImgNum(&t, 0) + setImgNum(&t, -1), 0);
    EXPECT_EQ(setImgNum(nullptr, 4), -1);
    EXPECT_EQ(contentOf(t), before);
    t.clear();  // no list of measurements fits a table without images
    EXPECT_EQ(t.addWrdPnt(newPnt2dArray(), xyz) + t.addWrdPnt(newPnt2dArray()), -2);
}

}  // namespace
