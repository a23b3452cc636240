// Damaged files of networks: whatever stands in one, reading it gives a network that can be used, or nothing, and takes
// no more memory than the size of the file allows.
#include <zyn/surface.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "counted_memory.h"
#include "memory_file.h"
#include "network.h"
#include "seed.h"

namespace {

using namespace zyn;

constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max(), least = -most - 1;

/// The file of a small network, in either encoding.
template <class Real>
std::string fileOf(support::Network<Real>& net, bool isText) {
    const MemoryFile file;
    EXPECT_TRUE(
        (isText ? writeText<Real> : writeBinary<Real>)(net.engine.get(), file.path.c_str()));
    std::ifstream content(file.path, std::ios::binary);
    return {std::istreambuf_iterator<char>(content), {}};
}

/// An engine that reads one file after another.
template <class Real>
class Host {
public:
    /// Reads the file. The first promise that is broken, or null when all are kept.
    const char* faultOfRead(const MemoryFile& file, bool isText) {
        auto& e = *net.engine;
        Real* array = &marker;
        int count = -7;
        const support::PeakMemory memory;
        taken = (isText ? readText<Real> : readBinary<Real>)(&e, file.path.c_str(), array, count);
        if (memory.bytes() > 16 * file.size() + (1U << 20U)) { return "took too much memory"; }
        vertices.reset(array);  // what the last network stood on is not needed any more
        e.rewindTriangles();
        if (taken) {
            const bool isWhole = array != nullptr && count >= 4 && e.nextTriangle() != nullptr;
            return isWhole ? nullptr : "gave a part";
        }
        const bool isNothing = array == nullptr && count == 0 && e.triangleCount() == 0 &&
                               e.nextTriangle() == nullptr && e.locate(0, 0) == nullptr &&
                               !e.addPoint(&some, 0) && !e.removePoint(nullptr, 0, 0, 9);
        return isNothing ? nullptr : "left something";
    }
    /// Does with the network what a host does; whatever comes of that, it can be written and read
    /// again.
    const char* faultInUse() {
        auto* const e = net.engine.get();
        (void)validate<Real>(e, true);
        double z = 0;
        heightAt<Real>(e, 5, 5, z);
        net.add(4.5, 3.5, 1);
        (void)profile<Real>(e, {0, 0}, {9, 8});
        e->rewindTriangles();
        Tri *const first = e->nextTriangle(), *const second = e->nextTriangle();
        if (second != nullptr) { e->enforceEdge(first->vertex[0], second->vertex[1], nullptr); }
        e->removePoint(nullptr, 5, 2, 9);
        restoreDelaunay<Real>(e);
        compactVertices<Real>(e);
        if (!writeBinary<Real>(e, scratch.path.c_str())) { return "cannot be written"; }
        const char* const fault = faultOfRead(scratch, false);
        return fault != nullptr ? fault : taken ? nullptr : "what was written cannot be read";
    }
    bool taken = false;

private:
    using Tri = TinRecord<Real>;

    std::unique_ptr<Real[]> vertices;
    support::Network<Real> net{-5, -5, 5, 5};
    MemoryFile scratch;
    Real marker = 0;
    XPnt3<Real> some{0, 0, 0};
};

/// What may come of reading a file.
enum Result { nothing, network, either };

template <class Real>
class TinDamageTest : public testing::Test {
protected:
    TinDamageTest() {
        net.add(5, 2);
        net.add(6, 7);
        binary = fileOf(net, false);
        text = fileOf(net, true);
        std::istringstream all(text);
        for (std::string word; all >> word;) { words.push_back(word); }
    }
    void expect(Result wanted, const std::string& content, bool isText, std::size_t size = 0) {
        file.fill(content.data(), content.size(), size);
        const auto told = [&] {
            return testing::PrintToString(content.substr(0, 1000)) + " of " + std::to_string(size);
        };
        ASSERT_STREQ(host.faultOfRead(file, isText), nullptr) << told();
        if (wanted != either) { EXPECT_EQ(host.taken, wanted == network) << told(); }
        if (host.taken) { ASSERT_STREQ(host.faultInUse(), nullptr) << told(); }
    }
    /// The binary file with another integer at `at`.
    std::string withNumber(std::size_t at, std::int32_t n) {
        std::string damaged = binary;
        std::memcpy(&damaged[at], &n, sizeof n);
        return damaged;
    }
    /// The text file with another word `at`. Word 0 is the head; 1 and 2 are counts; 3 to 20
    /// coordinates; then come the records.
    std::string withWord(std::size_t at, const std::string& word) {
        std::string damaged;
        for (std::size_t n = 0; n < words.size(); ++n) {
            damaged += (n == at ? word : words[n]) + "\n";
        }
        return damaged;
    }

    support::Network<Real> net{0, 0, 10, 10};
    std::string binary, text;
    std::vector<std::string> words;
    MemoryFile file;
    Host<Real> host;
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(TinDamageTest, Precisions);

TYPED_TEST(TinDamageTest, AFileCutOffGivesNothing) {
    for (std::size_t n = 0; n < this->binary.size(); ++n) {
        this->expect(nothing, this->binary.substr(0, n), false);
    }
    // The text is whole when its last number is.
    for (std::size_t n = 0; n < this->text.size(); ++n) {
        this->expect(n < this->text.size() - 2 ? nothing : network, this->text.substr(0, n), true);
    }
}

TYPED_TEST(TinDamageTest, AFlippedBitGivesANetworkOrNothing) {
    const std::size_t records = 72 + 18 * sizeof(TypeParam);
    for (const bool isText : {false, true}) {
        std::string damaged = isText ? this->text : this->binary;
        for (std::size_t bit = 0; bit < 8 * damaged.size(); ++bit) {
            const std::size_t at = bit / 8;
            const bool hasNoMeaning = !isText && (at < 64 || (at >= 72 && at < records));
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit % 8);
            this->expect(hasNoMeaning ? network : either, damaged, isText);
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit % 8);
        }
    }
}

TYPED_TEST(TinDamageTest, NumbersAreTakenWhenTheyAreInRange) {
    const std::int32_t total = 6;  // of vertices, and of triangles
    for (const int at : {0, 1}) {
        for (const std::int32_t n : {-1, least, 0, 3, 5, 7, 1 << 28, most}) {
            this->expect(nothing, this->withNumber(64 + 4 * std::size_t(at), n), false);
            this->expect(nothing, this->withWord(1 + std::size_t(at), std::to_string(n)), true);
        }
    }
    for (std::size_t at = 0; at < 36; ++at) {
        const std::int32_t lowest = at % 6 < 3 ? 0 : -1;
        for (const std::int32_t n : {least, -2, -1, 0, 1, total - 1, total, most}) {
            const auto wanted = n >= lowest && n < total ? network : nothing;
            const std::size_t records = 72 + 18 * sizeof(TypeParam);
            this->expect(wanted, this->withNumber(records + 4 * at, n), false);
            this->expect(wanted, this->withWord(21 + at, std::to_string(n)), true);
        }
    }
}

TYPED_TEST(TinDamageTest, AWordThatIsNoNumberGivesNothing) {
    const auto expectNothing = [this](std::size_t at, const std::vector<std::string>& values) {
        for (const std::string& value : values) {
            this->expect(nothing, this->withWord(at, value), true);
        }
    };
    expectNothing(0, {"ZynTINFile1", "ZynTINFile100", "zynTINFile10", std::string(3000000, 'Z')});
    expectNothing(1, {"2147483648", "6.0", "0x6", std::string(3000000, '6')});
    for (const std::size_t at : {3U, 20U}) { expectNothing(at, {"x", "1,5", "1.5x", "--1", "1e"}); }
    for (const std::size_t at : {2U, 21U, 24U}) { expectNothing(at, {"1.5", "99999999999", "x"}); }
}

/// Files of 100 MB, all zeros behind the counts.
TYPED_TEST(TinDamageTest, CountsTakeNoMoreMemoryThanTheFileCanFill) {
    constexpr std::size_t size = 100'000'000;
    const std::size_t points = (size - 96) / (3 * sizeof(TypeParam)),
                      records = (size - 72 - 12 * sizeof(TypeParam)) / 24;
    struct Claim {
        std::size_t vertices, triangles;
        Result result;
    };
    const Claim claims[] = {{most, most, nothing},     {most, 1, nothing},
                            {4, most, nothing},        {points + 2, 1, nothing},
                            {4, records + 1, nothing}, {points, 1, network},
                            {4, records, network}};
    for (const auto& [vertices, triangles, result] : claims) {
        std::string head = this->binary.substr(0, 72);
        const std::int32_t counts[] = {std::int32_t(vertices), std::int32_t(triangles)};
        std::memcpy(&head[64], counts, sizeof counts);
        this->expect(result, head, false, size);
        this->expect(
            nothing,
            "ZynTINFile10 " + std::to_string(vertices) + " " + std::to_string(triangles) + " ",
            true, size);
    }
}

/// What happens to files.
class Damage {
public:
    explicit Damage(unsigned seed) : random(seed) {}

    std::size_t below(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    }
    template <class Choices>
    auto& oneOf(Choices& choices) {
        return choices[below(std::size(choices))];
    }
    void operator()(std::string& file, bool isText) {
        if (file.empty()) { return; }
        const std::size_t at = below(file.size()), from = below(file.size());
        const std::size_t length = std::min({below(64) + 1, file.size() - at, file.size() - from});
        switch (below(12)) {
        case 0: file.resize(at); break;
        case 1: file.insert(at, file, from, length); break;
        case 2: swapPieces(file, std::min(at, from), std::max(at, from), length); break;
        case 3:
        case 4: file[at] = static_cast<char>(below(256)); break;
        case 5:
        case 6:
        case 7: file[at] = static_cast<char>(file[at] ^ 1 << below(8)); break;
        default: isText ? replaceWord(file, at) : replaceNumber(file, at); break;
        }
    }

private:
    static void swapPieces(std::string& file, std::size_t low, std::size_t high,
                           std::size_t length) {
        const auto first = file.begin() + std::ptrdiff_t(low),
                   second = file.begin() + std::ptrdiff_t(high);
        std::swap_ranges(first, first + std::ptrdiff_t(std::min(length, high - low)), second);
    }
    void replaceNumber(std::string& file, std::size_t at) {
        static constexpr std::uint32_t nasty[] = {
            0,          1,          2,          3,          4,          5,          7,
            1023,       1024,       0xFFFFFFFF, 0xFFFFFFFE, 0x7FFFFFFF, 0x80000000, 0x10000000,
            0x3F800000,              // 1 as a float
            0x7F800000, 0xFF800000,  // infinite as a float
            0x7FF00000, 0xFFF80000,  // infinite, and no number, as the upper half of a double
            0x7F7FFFFF, 0x7FEFFFFF, 0x00100000, 0x00800000};
        const std::uint32_t n = oneOf(nasty);
        if (file.size() < sizeof n) { return; }
        std::memcpy(&file[std::min(at, file.size() - sizeof n) / 4 * 4], &n, sizeof n);
    }
    void replaceWord(std::string& file, std::size_t at) {
        static constexpr std::string_view nasty[] = {
            "0",      "-0",   "1",          "2",           "3",           "5",   "1024",
            "-1",     "-2",   "2147483647", "-2147483648", "99999999999", "+1",  "1e308",
            "-1e308", "1e38", "1e-320",     "5e-324",      "1e999",       "nan", "inf",
            "-inf",   "0x1",  "1.5",        "-",           "e",           ""};
        const auto isSpace = [](char c) { return c <= ' '; };
        const auto begin = std::find_if_not(file.begin() + std::ptrdiff_t(at), file.end(), isSpace);
        file.replace(begin, std::find_if(begin, file.end(), isSpace), oneOf(nasty));
    }

    std::mt19937 random;
};

/// Reads so many damaged files with engines of either width, and uses what each sixteenth gives.
void readDamaged(unsigned seed, int count) {
    Damage damage(seed);
    struct Whole {
        std::string content;
        bool isText;
    };
    std::vector<Whole> files;
    const auto addFiles = [&]<class Real>(support::Network<Real> net, std::size_t points) {
        while (net.points.size() < points) {
            net.add(double(damage.below(11)), double(damage.below(1000)) / 100, 3);
        }
        files.push_back({fileOf(net, false), false});
        files.push_back({fileOf(net, true), true});
    };
    for (const std::size_t points : {0U, 2U, 5U, 20U}) {
        addFiles(support::Network<double>(0, 0, 10, 10), points);
        addFiles(support::Network<float>(0, 0, 10, 10), points);
    }
    Host<double> doubleHost;
    Host<float> floatHost;
    MemoryFile file;
    int taken = 0;
    for (int n = 0; n < count; ++n) {
        auto [content, isText] = damage.oneOf(files);
        for (std::size_t times = damage.below(4) + 1; times > 0; --times) {
            damage(content, isText);
        }
        file.fill(content.data(), content.size());
        const auto faultOf = [&, isText = isText](auto& host) {
            const char* const fault = host.faultOfRead(file, isText);
            taken += host.taken;
            return fault == nullptr && host.taken && n % 16 == 0 ? host.faultInUse() : fault;
        };
        ASSERT_STREQ(faultOf(doubleHost), nullptr) << testing::PrintToString(content);
        ASSERT_STREQ(faultOf(floatHost), nullptr) << testing::PrintToString(content);
    }
    std::printf("%d files read, %d times a network\n", count, taken);
}

/// ZYN_DAMAGED_FILES says how many. Each hundred thousand have a seed of their own.
TEST(TinDamage, AnyDamageGivesANetworkOrNothing) {
    const char* const wanted = std::getenv("ZYN_DAMAGED_FILES");
    unsigned seed = support::newSeed();
    constexpr int round = 100'000;
    for (int left = wanted != nullptr ? std::atoi(wanted) : 2000; left > 0; left -= round) {
        std::printf("seed %u\n", seed);
        std::fflush(stdout);
        readDamaged(seed++, std::min(left, round));
        if (HasFatalFailure()) { return; }
    }
}

}  // namespace
