#include <zyn/referenced.h>

#include <cstring>

namespace zyn {

namespace {

template <class T>
void fillBytes(void* target, T value, std::int32_t byteCount) noexcept {
    constexpr std::ptrdiff_t width = sizeof(T);
    auto* const bytes = static_cast<unsigned char*>(target);
    for (std::ptrdiff_t i = byteCount / width - 1; i >= 0; --i) {
        std::memcpy(bytes + i * width, &value, sizeof(T));
    }
}

}  // namespace

void MemSet(void* target, float value, std::int32_t byteCount) noexcept {
    fillBytes(target, value, byteCount);
}

void MemSet(void* target, double value, std::int32_t byteCount) noexcept {
    fillBytes(target, value, byteCount);
}

void MemSet(void* target, bool value, std::int32_t byteCount) noexcept {
    fillBytes(target, value, byteCount);
}

void MemSet(void* target, std::int32_t value, std::int32_t byteCount) noexcept {
    fillBytes(target, value, byteCount);
}

}  // namespace zyn
