#include <zyn/point.h>
#include <zyn/referenced.h>

#include <QString>

namespace zyn {

namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // as in the base
class CZynGlobal final : public ZynGlobel {
public:
    bool isOrgPosGive() override { return given; }
    bool setOrgPosition(XPnt3f& position) override {
        origin = position;
        given = true;
        return isOrgPosGive();
    }

private:
    bool given = false;
    XPnt3f origin;
};
#pragma GCC diagnostic pop

// Initialised at compile time, so that no static object of an application runs before it; never
// destroyed.
constinit CZynGlobal moduleGlobal;

}  // namespace

constinit ZynGlobel* g_zynGlobal = &moduleGlobal;

bool ZynGlobel::isOrgPosGive() { return false; }

bool ZynGlobel::setOrgPosition(XPnt3f&) { return false; }

std::int32_t getVersion() noexcept { return 1; }

QString newString() { return {}; }

}  // namespace zyn
