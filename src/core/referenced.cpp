#include <zyn/referenced.h>

#include <utility>

namespace zyn {

namespace {

constinit DeleteHandler* installedHandler = nullptr;

/// Deletes the handler when the module is unloaded, because the handler's code may disappear soon
/// after.
struct HandlerTeardown {
    ~HandlerTeardown() { ZynReferenced::setDeleteHandler(nullptr); }
} handlerTeardown;

}  // namespace

ZynReferenced::~ZynReferenced() = default;

DeleteHandler* ZynReferenced::getDeleteHandler() noexcept { return installedHandler; }

void ZynReferenced::setDeleteHandler(DeleteHandler* handler) {
    if (handler == installedHandler) { return; }
    // The slot is emptied first, so that objects which the old handler releases in its destructor
    // are deleted at once. That destructor may install another handler, which is then deleted too.
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
