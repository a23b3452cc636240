// A module that uses the library as an application does, for a program that does not link it.
#include <zyn/point.h>
#include <zyn/referenced.h>

namespace {

struct TracedObject : zyn::ZynReferenced {
    explicit TracedObject(int* ends_) : ends(ends_) {}
    ~TracedObject() override { ++*ends; }
    int* ends;
};

/// Holds an object until its own destructor has run, as a handler with a queue does.
struct TracedHandler : zyn::DeleteHandler {
    TracedHandler(int* ends_, int* objectEnds)
        : ends(ends_), object(new TracedObject(objectEnds)) {}
    ~TracedHandler() override { ++*ends; }
    void deleteObject(const zyn::ZynReferenced*) override {}
    int* ends;
    zyn::ref_ptr<TracedObject> object;
};

}  // namespace

/// Sets the origin. Returns whether there was none before and there is one now.
extern "C" bool probeGiveOrigin() {
    zyn::XPnt3f origin(1, 2, 3);
    return !zyn::g_zynGlobal->isOrgPosGive() && zyn::g_zynGlobal->setOrgPosition(origin) &&
           zyn::g_zynGlobal->isOrgPosGive();
}

/// Installs a handler. Returns how many handlers have ended so far.
extern "C" int probeInstallHandler(int* handlerEnds, int* objectEnds) {
    zyn::ZynReferenced::setDeleteHandler(new TracedHandler(handlerEnds, objectEnds));
    return *handlerEnds;
}
