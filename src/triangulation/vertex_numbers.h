// Numbers for the vertices of a network, which are told apart by address.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace zyn {

/// Gives each new address the next number. Vertices mostly lie side by side in the caller's arrays,
/// so the numbers stand in pages that cover 4096 bytes of addresses each, and the page of the last
/// call is kept: looking up neighbours touches neighbouring memory, where a hash of each address
/// would not.
template <class Real>
class VertexNumbers {
public:
    /// The number of `p`; a new one is appended to vertices().
    std::int32_t operator()(Real* p) {
        if (!turnTo(p)) {
            std::unique_ptr<Page>& page = pages[latestKey];
            page = std::make_unique<Page>();
            latest = page.get();
        }
        std::int32_t& number = (*latest)[placeOf(p)];
        if (number < 0) {
            known.push_back(p);
            number = static_cast<std::int32_t>(known.size() - 1);
        }
        return number;
    }
    /// The number of `p`, or -1. Needs no memory.
    [[nodiscard]] std::int32_t find(const Real* p) noexcept {
        return turnTo(p) ? (*latest)[placeOf(p)] : -1;
    }
    /// Every address so far, by number.
    [[nodiscard]] const std::vector<Real*>& vertices() const { return known; }

private:
    static constexpr std::size_t pageBytes = 4096;
    struct Page : std::array<std::int32_t, pageBytes / alignof(Real)> {
        Page() { this->fill(-1); }
    };

    static std::size_t placeOf(const Real* p) noexcept {
        return reinterpret_cast<std::uintptr_t>(p) % pageBytes / alignof(Real);
    }
    /// Makes the page of `p` the latest one; false when there is none yet.
    bool turnTo(const Real* p) noexcept {
        const std::uintptr_t key = reinterpret_cast<std::uintptr_t>(p) / pageBytes;
        if (latest == nullptr || key != latestKey) {
            const auto page = pages.find(key);
            latest = page == pages.end() ? nullptr : page->second.get();
            latestKey = key;
        }
        return latest != nullptr;
    }

    std::unordered_map<std::uintptr_t, std::unique_ptr<Page>> pages;
    Page* latest = nullptr;
    std::uintptr_t latestKey = 0;
    std::vector<Real*> known;
};

}  // namespace zyn
