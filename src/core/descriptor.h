// File handles that close themselves.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <utility>

namespace zyn::detail {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Owns a file descriptor of the operating system, or none, which is -1.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int handle_) : handle(handle_) {}
    Descriptor(Descriptor&& other) noexcept : handle(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(handle, other.handle);
        return *this;
    }
    ~Descriptor() {
        if (isOpen()) { close(handle); }
    }

    [[nodiscard]] bool isOpen() const { return handle >= 0; }
    [[nodiscard]] int get() const { return handle; }
    [[nodiscard]] int release() { return std::exchange(handle, -1); }

private:
    int handle = -1;
};

}  // namespace zyn::detail
