// Operations on the table of a block, also with bad indices. After every few of them the links must
// agree with each other. A refused operation must change none.
#include <zyn/pms.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>

#include "bytes.h"

namespace {

using namespace zyn;

class TableRun {
public:
    explicit TableRun(Bytes& bytes_) : bytes(bytes_), leavesNone(bytes.below(4) != 0) {
        setImgNum(table.get(), 1 + bytes.below(8));
    }

    void run() {
        for (int n = 0; n < 300 && !bytes.isEmpty(); ++n) {
            const Links before = links();
            FUZZ_REQUIRE(operate() != -1 || links() == before);
            if (n % 4 == 0) { check(links()); }
        }
        check(links());
    }

private:
    using Links = std::map<double, std::pair<int, int>>;  // from a measurement to image and point

    int index(int count) {
        const int kind = bytes.take(), odd = kind % 2 == 0 ? INT_MIN : INT_MAX;
        return kind < 248 ? kind % (count + 1) : kind < 252 ? -1 : odd;
    }
    int image() { return index(table->getImgNum()); }
    int point() { return index(table->getWrdPntNum()); }
    bool isPoint(int pnt) { return pnt >= 0 && pnt < table->getWrdPntNum(); }
    XPnt2d xy() { return leavesNone || bytes.below(8) > 0 ? XPnt2d(++serial, 1) : XPnt2d(); }
    XPnt3d xyz() { return {bytes.below(8) > 0 ? bytes.take() : std::nan(""), 2, 3}; }
    static int refusable(int result, bool mayBe) { return exactly(result, result == 0 && mayBe); }
    static int exactly(int result, bool isPossible) {
        FUZZ_REQUIRE(result == (isPossible ? 0 : -1));
        return result;
    }

    int operate() {
        const int kind = bytes.below(20), img = image(), pnt = point(), other = point();
        const bool onImage = img >= 0 && img < table->getImgNum(), isThere = isPoint(pnt),
                   areTwo = isThere && isPoint(other) && pnt != other;
        switch (kind) {
        case 0: return setImgNum(table.get(), bytes.below(10) - 1);
        case 1:
            if (leavesNone && table->getImgPnt(img, pnt).isValid()) { return 0; }
            return exactly(table->addImgPnt(img, xy(), pnt), onImage && isThere);
        case 2: return exactly(table->removeImg(img), onImage);
        case 3: return exactly(table->removeWrdPnt(pnt), isThere);
        case 4: return refusable(table->removeImgPntAt(img, pnt), onImage && pnt >= 0);
        case 5: return refusable(table->removeImgPnt(img, pnt), onImage && isThere);
        case 6: return refusable(table->removeWrdPntOfImgPnt(img, pnt), onImage && pnt >= 0);
        case 7: return refusable(table->mergeWrdPnts(pnt, other, xyz()), areTwo);
        case 8: return exactly(table->swapWrdPnts(pnt, other), areTwo);
        case 9: return exactly(table->setCamOutParam(img, table->getCamOutParam(other)), onImage);
        case 10: return exactly(table->setWrdPnt(pnt, xyz()), isThere);
        case 11: return exactly(table->scale(xyz().x), true);
        case 12: return exchange();
        case 13: return other == 0 ? table->clear() : 0;
        case 18: return exactly(withNothing(bytes.below(6)), false);
        }
        const ref_ptr<Pnt2dArray> seen = newPnt2dArray();
        seen->resize(table->getImgNum() + (other % 16 == 15));
        for (XPnt2d& p : *seen) { p = bytes.below(2) != 0 ? xy() : XPnt2d(); }
        return kind == 14 ? table->addWrdPnt(seen) : table->addWrdPnt(seen, xyz());
    }
    /// Calls an operation with a null argument.
    int withNothing(int kind) {
        const ref_ptr<IntArray> map = newIntArray();
        const ref_ptr<Pnt3dArray> none;
        switch (kind) {
        case 0: return table->addWrdPnt(nullptr);
        case 1: return table->addWrdPnt(nullptr, xyz());
        case 2: return table->importData(cams, map, none, map);
        case 3: return table->exportData(nullptr, nullptr, cams, map, none, map);
        case 4: return table->getCommonPnts(0, 1, pnts.get(), nullptr, map.get(), map.get());
        default: return table->getWrdPntObservations(0, pnts.get(), nullptr);
        }
    }
    int exchange() {  // exports and imports, with any number for image 0
        const ref_ptr<Pnt2dArrayArray> imgPnts = newPnt2dArrayArray();
        const ref_ptr<IntArrayArray> ids = newIntArrayArray();
        const ref_ptr<IntArray> camMap = newIntArray(), wrdMap = newIntArray();
        const ref_ptr<Pnt3dArray> wrdPnts = newPnt3dArray();
        exactly(table->exportData(imgPnts, ids, cams, camMap, wrdPnts, wrdMap), true);
        FUZZ_REQUIRE(camMap->size() == table->getImgNum() && imgPnts->size() == cams->size());
        for (int img = 0; leavesNone && img < camMap->size(); ++img) {
            const int number = camMap->get(img);
            int n = 0;
            for (int pnt = 0; number != -1 && pnt < wrdMap->size(); ++pnt) {
                const XPnt2d seen = table->getImgPnt(img, pnt);
                if (wrdMap->get(pnt) == -1 || !seen.isValid()) { continue; }
                FUZZ_REQUIRE(ids->get(number)->get(n) == wrdMap->get(pnt));
                FUZZ_REQUIRE(imgPnts->get(number)->get(n++) == seen);
            }
            FUZZ_REQUIRE(number == -1 || imgPnts->get(number)->size() == n);
        }
        if (camMap->size() == 0) { return 0; }
        const int entry = camMap->getRef(0) = index(cams->size());
        const bool isCut = bytes.below(8) == 0 && wrdMap->size() > 0;
        if (isCut) { wrdMap->removeLast(); }
        const bool isMap = entry >= -1 && entry < cams->size() && !isCut;
        return exactly(table->importData(cams, camMap, wrdPnts, wrdMap), isMap);
    }

    Links links() {
        Links result;
        for (int img = 0; img < table->getImgNum(); ++img) {
            const ref_ptr<TagPnt2dArray> tagged = table->getImgTagPnts(img);
            for (const TagPnt2d& t : *tagged) {
                FUZZ_REQUIRE(result.emplace(t.x, std::pair(img, t.tag)).second);
            }
        }
        return result;
    }
    /// Checks that every link leads to a measurement that leads back. The reverse holds unless a
    /// measurement was left behind.
    void check(const Links& measured) {
        std::size_t linked = 0;
        for (int pnt = 0; pnt < table->getWrdPntNum(); ++pnt) {
            const ref_ptr<Pnt2dArray> seen = table->getWrdPntImgPnts(pnt);
            int count = 0;
            for (int img = 0; img < seen->size(); ++img) {
                const XPnt2d m = seen->get(img);
                count += m.isValid();
                FUZZ_REQUIRE(!m.isValid() || measured.at(m.x) == std::pair(img, pnt));
            }
            (void)table->getWrdPntObservations(pnt, pnts.get(), cams.get());
            FUZZ_REQUIRE(leavesNone ? pnts->size() == count : pnts->size() >= count);
            linked += static_cast<std::size_t>(count);
        }
        FUZZ_REQUIRE(leavesNone ? linked == measured.size() : linked <= measured.size());
        const int imgA = image(), imgB = image(), common = table->getCommonPntNum(imgA, imgB);
        exactly(table->getCommonPnts(imgA, imgB, pnts.get(), pnts.get(), nullptr, nullptr), true);
        FUZZ_REQUIRE(pnts->size() == 2 * common);
        exactly(table->getCommonPnts3(imgA, imgB, imgA, pnts.get(), pnts.get(), pnts.get()), true);
        FUZZ_REQUIRE(!leavesNone || pnts->size() == 3 * table->getCommonPntNum(imgB, imgA));
        const ref_ptr<IntArray> imgs = newIntArray();
        imgs->append(imgA);
        imgs->append(imgB);
        const ref_ptr<IntArray> seenOnBoth = table->getCommonWrdPnts(imgs);
        FUZZ_REQUIRE(!leavesNone || seenOnBoth->size() == table->getCommonPntNum(imgB, imgA));
        const Enve3d box = table->getEnvelope();
        const ref_ptr<Pnt3dArray> valid = table->getValidWrdPnts();
        FUZZ_REQUIRE(valid->size() > 1 || !box.isValid());
    }

    Bytes& bytes;
    const bool leavesNone;  // every measurement has a link of its world point
    const ref_ptr<IZynPMSDataTable> table = newZynPMSDataTable();
    const ref_ptr<Pnt2dArray> pnts = newPnt2dArray();
    const ref_ptr<CamParaArray> cams = newCamParaArray();
    double serial = 0;  // of the last measurement; each has its own x
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    TableRun(bytes).run();
    return 0;
}
