#include <zyn/referenced.h>

#include <utility>

namespace zyn {

namespace {

constinit DeleteHandler* installedHandler = nullptr;

/// Its end is the module's unload: the handler's code may be gone soon after.
struct HandlerTeardown {
    ~HandlerTeardown() { ZynReferenced::setDeleteHandler(nullptr); }
} handlerTeardown;

}  // namespace

ZynReferenced::~ZynReferenced() = default;

DeleteHandler* ZynReferenced::getDeleteHandler() noexcept { return installedHandler; }

void ZynReferenced::setDeleteHandler(DeleteHandler* handler) {
    if (handler == installedHandler) { return; }
    // Without a handler in the slot, what the old one releases in its destructor is deleted at once.
    // That destructor may install one, which then goes in its turn.
    while (installedHandler != nullptr) { delete std::exchange(installedHandler, nullptr); }
    installedHandler = handler;
}

void ZynReferenced::endOfLife() const {
    if (installedHandler != nullptr) {
        installedHandler->deleteObject(this);
    } else {
        delete this;
    }
}

DeleteHandler::~DeleteHandler() = default;

void DeleteHandler::reserved() {}

void DeleteHandler::destroy(const ZynReferenced* object) { delete object; }

}  // namespace zyn
