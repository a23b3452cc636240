// Damaged files of networks: whatever stands in one, reading it gives a network that can be used, or nothing, and takes
// no more memory than the size of the file allows.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "seed.h"
#include "tin_host.h"

namespace {

using namespace zyn;

constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max(), least = -most - 1;

/// What may come of reading a file.
enum Result { nothing, network, either };

template <class Real>
class TinDamageTest : public testing::Test {
protected:
    TinDamageTest() {
        support::Network<Real> net{0, 0, 10, 10};
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
        ASSERT_STREQ(host.faultOfRead(file.path, isText), nullptr) << told();
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

    static constexpr std::size_t records = 72 + 18 * sizeof(Real);  // where they start
    std::string binary, text;
    std::vector<std::string> words;
    MemoryFile file;
    TinHost<Real> host;
};
TYPED_TEST_SUITE(TinDamageTest, support::Precisions);

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
    for (const bool isText : {false, true}) {
        const std::string& whole = isText ? this->text : this->binary;
        for (std::size_t bit = 0; bit < 8 * whole.size(); ++bit) {
            const std::size_t at = bit / 8;
            const bool hasNoMeaning = !isText && (at < 64 || (at >= 72 && at < this->records));
            std::string damaged = whole;
            damaged[at] = static_cast<char>(damaged[at] ^ 1 << bit % 8);
            this->expect(hasNoMeaning ? network : either, damaged, isText);
        }
    }
}

TYPED_TEST(TinDamageTest, NumbersAreTakenWhenTheyAreInRange) {
    constexpr std::int32_t total = 6;          // of vertices, and of triangles
    for (std::size_t at = 0; at < 38; ++at) {  // two counts, then the records
        const bool isCount = at < 2, isVertex = (at - 2) % 6 < 3;
        for (const std::int32_t n : {least, -2, -1, 0, 1, 3, 5, total, 7, 1 << 28, most}) {
            const bool isIn = isCount ? n == total : n >= (isVertex ? 0 : -1) && n < total;
            const std::size_t place = isCount ? 64 + 4 * at : this->records + 4 * (at - 2);
            this->expect(isIn ? network : nothing, this->withNumber(place, n), false);
            this->expect(isIn ? network : nothing,
                         this->withWord(isCount ? 1 + at : 19 + at, std::to_string(n)), true);
        }
    }
}

TYPED_TEST(TinDamageTest, AWordThatIsNoNumberGivesNothing) {
    const std::string endless(3000000, '6');
    const std::pair<std::size_t, std::vector<std::string>> bad[] = {
        {0, {"ZynTINFile1", "ZynTINFile100", "zynTINFile10", endless}},
        {1, {"2147483648", "6.0", "0x6", endless}},
        {3, {"x", "1,5", "1.5x", "--1", "+-1", "++1", "+", "1e"}},
        {21, {"1.5", "99999999999", "x", "+-1"}}};
    for (const auto& [at, values] : bad) {
        for (const std::string& value : values) {
            this->expect(nothing, this->withWord(at, value), true);
        }
    }
    this->expect(network, this->withWord(1, "+6"), true);
    this->expect(network, this->withWord(3, "+1.5"), true);
}

/// Files of 100 MB, all zeros behind the counts.
TYPED_TEST(TinDamageTest, CountsTakeNoMoreMemoryThanTheFileCanFill) {
    constexpr std::size_t size = 100'000'000;
    constexpr std::int32_t points = (size - 96) / (3 * sizeof(TypeParam)),
                           triples = (size - 72 - 12 * sizeof(TypeParam)) / 24;
    struct Claim {
        std::int32_t vertices, triangles;
        Result result;
    };
    constexpr Claim claims[] = {{most, most, nothing},     {most, 1, nothing},
                                {4, most, nothing},        {points + 2, 1, nothing},
                                {4, triples + 1, nothing}, {points, 1, network},
                                {4, triples, network}};
    for (const auto& [vertices, triangles, result] : claims) {
        this->expect(result, this->binary.substr(0, 64) + support::bytes(vertices, triangles),
                     false, size);
        this->expect(
            nothing,
            "ZynTINFile10 " + std::to_string(vertices) + " " + std::to_string(triangles) + " ",
            true, size);
    }
}

/// Does to the file what happens to files.
void damage(std::string& file, bool isText, std::mt19937& random) {
    static constexpr std::uint32_t numbers[] = {
        0,          1,          2,          3,          4,          5,
        7,          1023,       1024,       0xFFFFFFFF, 0xFFFFFFFE, 0x7FFFFFFF,
        0x80000000, 0x10000000, 0x3F800000, 0x7F800000, 0xFF800000,  // 1 and infinite as a float
        0x7FF00000, 0xFFF80000, 0x7FEFFFFF, 0x00100000};             // upper halves of doubles
    static constexpr const char* words[] = {
        "0",          "-0",          "1",     "2",    "3",      "5",      "1024",  "-1",  "-2",
        "2147483647", "+1",          "1e308", "1e38", "1e-320", "5e-324", "1e999", "nan", "inf",
        "-inf",       "99999999999", "0x1",   "1.5",  "-",      "e",      ""};
    const auto below = [&random](std::size_t count) { return random() % count; };
    if (file.size() < 4) { return; }
    const std::size_t at = below(file.size()), from = below(file.size());
    switch (below(10)) {
    case 0: file.resize(at); break;
    case 1: file.insert(at, file.substr(from, below(64) + 1)); break;
    case 2: file.replace(at, below(64) + 1, file.substr(from, below(64) + 1)); break;
    case 3: file[at] = static_cast<char>(below(256)); break;
    case 4:
    case 5: file[at] = static_cast<char>(file[at] ^ 1 << below(8)); break;
    default:
        if (isText) {
            const std::size_t begin = std::min(file.find_first_not_of("\n\t", at), file.size());
            const std::size_t length = file.find_first_of("\n\t", begin) - begin;
            file.replace(begin, length, words[below(std::size(words))]);
        } else {
            const std::uint32_t number = numbers[below(std::size(numbers))];
            std::memcpy(&file[std::min(at, file.size() - 4) / 4 * 4], &number, sizeof number);
        }
    }
}

/// Reads so many damaged files with engines of either width, and uses what each sixteenth gives.
void readDamaged(unsigned seed, int count) {
    std::mt19937 random(seed);
    std::vector<std::string> files;  // binary and text in turn
    const auto addFiles = [&]<class Real>(support::Network<Real> net, std::size_t points) {
        while (net.points.size() < points) {
            net.add(double(random() % 11), double(random() % 1000) / 100, 3);
        }
        files.push_back(fileOf(net, false));
        files.push_back(fileOf(net, true));
    };
    for (const std::size_t points : {0U, 2U, 5U, 20U}) {
        addFiles(support::Network<double>(0, 0, 10, 10), points);
        addFiles(support::Network<float>(0, 0, 10, 10), points);
    }
    TinHost<double> doubleHost;
    TinHost<float> floatHost;
    MemoryFile file;
    int taken = 0;
    for (int n = 0; n < count; ++n) {
        const std::size_t number = random() % files.size();
        const bool isText = number % 2 == 1;
        std::string content = files[number];
        for (std::size_t times = random() % 4 + 1; times > 0; --times) {
            damage(content, isText, random);
        }
        file.fill(content.data(), content.size());
        const auto faultOf = [&](auto& host) {
            const char* const fault = host.faultOfRead(file.path, isText);
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
