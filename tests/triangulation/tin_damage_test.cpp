// Networks in files: their bytes, reading them back, and damage. A damaged file reads as a network
// that can be used, or as nothing. Reading takes no more memory than the size of the file allows.
#include <zyn/network.h>

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "failing_allocation.h"
#include "file_content.h"
#include "memory_file.h"
#include "network.h"
#include "network_check.h"
#include "seed.h"
#include "testing.h"
#include "triangulation/vertex_numbers.h"

namespace {

using namespace zyn;
using namespace zyn::detail;

constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max(), least = -most - 1;

/// Returns the file of a network, in either encoding.
template <class Real>
std::string fileOf(support::Network<Real>& net, bool isText) {
    const MemoryFile file;
    const char* const path = file.path.c_str();
    EXPECT_TRUE(isText ? writeText(*net.engine, path) : writeBinary(*net.engine, path));
    return support::contentOf(file.path);
}

/// An engine that reads one file after another.
template <class Real>
class TinHost {
public:
    /// Reads the file. Returns the first broken promise, or null.
    const char* faultOfRead(const std::string& path, bool isText) {
        std::error_code error;
        const bool isFile = std::filesystem::is_regular_file(path, error);
        const std::size_t size = isFile ? std::filesystem::file_size(path) : 0;
        auto& e = *net.engine;
        Real* array = &marker;
        int count = -7;
        const support::PeakMemory memory;
        taken = isText ? readText<Real>(&e, path.c_str(), array, count)
                       : readBinary<Real>(&e, path.c_str(), array, count);
        if (memory.bytes() > 16 * size + (1U << 20U)) { return "took too much memory"; }
        vertices.reset(array);  // nothing uses the old vertices any more
        lines.clear();
        e.rewindTriangles();
        if (taken) {
            const bool isWhole = array != nullptr && count >= 4 && e.nextTriangle() != nullptr;
            return isWhole ? nullptr : "read a part of the network";
        }
        const bool isNothing = array == nullptr && count == 0 && e.triangleCount() == 0 &&
                               e.nextTriangle() == nullptr && e.locate(0, 0) == nullptr &&
                               !e.addPoint(&some, 0) && !e.removePoint(nullptr, 0, 0, 9) &&
                               e.enforceEdge(&marker, &marker, nullptr) == nullptr;
        return isNothing ? nullptr : "left something behind";
    }
    /// Uses the network as an application does. Then it must still be possible to write it and to
    /// read it again. Returns the first broken promise, or null.
    const char* faultInUse() {
        auto* const e = net.engine.get();
        (void)validate<Real>(e, true);
        double z = 0;
        heightAt<Real>(e, 5, 5, z);
        net.add(4.5, 3.5, 1);
        (void)profile<Real>(e, {0, 0}, {9, 8});
        const ref_ptr<DoubleArray> levels = newDoubleArray();
        levels->append(3);
        (void)contours<Real>(e, levels.get());
        (void)contours<Real>(e, levels.get(), 5);
        (void)volume<Real>(e, 4);
        const ref_ptr<MatrixDbl> cells = newMatrixDbl();
        rasterize<Real>(e, Enve2d(-1, -1, 11, 11), 22, 22, cells.get());
        lines.push_back(support::arrayOf<Real>({{1, 2, 1}, {8, 7, 1}, {3, 9, 1}, {9, 1, 1}}));
        addBreakline<Real>(e, lines.back().get(), 0);
        closeHull<Real>(e);
        e->rewindTriangles();
        auto *const first = e->nextTriangle(), *const second = e->nextTriangle();
        if (second != nullptr) { e->enforceEdge(first->vertex[0], second->vertex[1], nullptr); }
        e->deleteTriangle(first);
        addBreakline<Real>(e, lines.back().get(), 0);
        e->removePoint(nullptr, 5, 2, 9);
        restoreDelaunay<Real>(e);
        compactVertices<Real>(e);
        if (!writeBinary<Real>(e, scratch.path.c_str())) { return "cannot be written"; }
        const char* const fault = faultOfRead(scratch.path, false);
        return fault != nullptr ? fault : taken ? nullptr : "what was written cannot be read";
    }

    bool taken = false;
    support::Network<Real> net{-5, -5, 5, 5};

private:
    std::unique_ptr<Real[]> vertices;
    std::vector<ref_ptr<Pnt3Array<Real>>> lines;  // own the points that become vertices
    MemoryFile scratch;
    Real marker = 0;
    XPnt3<Real> some{0, 0, 0};
};

/// Returns the position of the first byte in which two files differ, or npos.
std::size_t firstDifference(const std::string& a, const std::string& b) {
    const auto [inA, inB] = std::ranges::mismatch(a, b);
    return inA == a.end() && inB == b.end() ? std::string::npos : std::size_t(inA - a.begin());
}

template <class Real>
class TinFile : public testing::Test {
protected:
    support::Network<Real> net{0, 0, 10, 10};
    MemoryFile file;
    TinHost<Real> host;
};
TYPED_TEST_SUITE(TinFile, support::Precisions);

TYPED_TEST(TinFile, WritesTheBytesOfTheFormat) {
    using Real = TypeParam;
    const auto i32 = [](auto... n) { return support::bytes(std::int32_t(n)...); };
    const auto reals = [](auto... c) { return support::bytes(Real(c)...); };
    const std::string head = "ZynTINFile10" + std::string(52, '\0');
    const std::string frame = reals(0, 0, 1, 10, 0, 1, 10, 10, 1, 0, 10, 1);
    EXPECT_EQ(fileOf(this->net, false),
              head + i32(4, 2) + frame + i32(0, 1, 2, -1, 1, -1) + i32(2, 3, 0, -1, 0, -1));
    ASSERT_TRUE(this->net.add(5, 2, -0.1));
    EXPECT_EQ(fileOf(this->net, false), head + i32(5, 4) + frame + reals(5, 2, -0.1) +
                                            i32(4, 1, 2, -1, 2, 3) + i32(4, 3, 0, -1, 3, 2) +
                                            i32(4, 2, 3, -1, 1, 0) + i32(4, 0, 1, -1, 0, 1));
    this->net.points[0].set(Real(1.5e-7), Real(1234567), Real(0.1));
    EXPECT_EQ(
        fileOf(this->net, true),
        "ZynTINFile10\n5\n4\n0\t0\t1\n10\t0\t1\n10\t10\t1\n0\t10\t1\n1.5e-07\t1.23457e+06\t0.1\n"
        "4\t1\t2\t-1\t2\t3\t\n4\t3\t0\t-1\t3\t2\t\n4\t2\t3\t-1\t1\t0\t\n4\t0\t1\t-1\t0\t1\t\n");
}

TYPED_TEST(TinFile, ReadsBackWhatItWrote) {
    using Real = TypeParam;
    for (const XPnt3d& p : support::uniformPoints(2000, support::newSeed()).points) {
        this->net.add(10 * p.x, 10 * p.y, p.z);
    }
    for (const bool text : {true, false}) {  // text rounds to six digits, once
        if (!text) {
            this->net.points[9].z = std::numeric_limits<Real>::denorm_min();
            this->net.points[10].z = Real(std::nan(""));
        }
        const std::string first = fileOf(this->net, text);
        const std::string same = (text ? "\n " : "any head") + first.substr(text ? 0 : 8) + "more";
        this->file.fill(same.data(), same.size());
        EXPECT_STREQ(this->host.faultOfRead(this->file.path, text), nullptr);
        ASSERT_TRUE(this->host.taken);
        EXPECT_EQ(firstDifference(fileOf(this->host.net, text), first), std::string::npos);
        const int count = 3 + this->net.engine->triangleCount() / 2;
        if (!text) { EXPECT_EQ(support::faultOf(*this->host.net.engine, {.vertices = count}), ""); }
    }
}

TYPED_TEST(TinFile, RefusesPathsThatAreNoFiles) {
    const std::string folder = testing::TempDir(), fifo = folder + "zyn_fifo";
    std::filesystem::remove(fifo);
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& path : {fifo, folder + "zyn_no/file", folder}) {
        for (const bool text : {false, true}) {
            EXPECT_STREQ(this->host.faultOfRead(path, text), nullptr) << path;
            EXPECT_FALSE(this->host.taken);
        }
    }
    std::filesystem::remove(fifo);
    EXPECT_FALSE(writeBinary(this->net.engine.get(), nullptr));
    EXPECT_TRUE(writeText(this->net.engine.get(), nullptr)) << "it reports no failure";
}

/// What reading a file may yield.
enum Result { nothing, network, either };

TEST(VertexNumbers, TakeLittleMemoryWhereverTheVerticesAre) {
    constexpr int count = 30000;
    for (const std::uintptr_t stride : {24U, 32U, 64U, 4096U, 1U << 20U}) {
        const auto at = [stride](int n) {
            return reinterpret_cast<double*>(std::uintptr_t(n + 1) * stride);
        };
        const support::PeakMemory memory;
        VertexNumbers<double> numbers(0);
        for (int n = 0; n < count; ++n) { ASSERT_EQ(numbers(at(n)), n); }
        EXPECT_LE(memory.bytes(), std::size_t(64 * count)) << stride;
        for (int n = 0; n < count; ++n) { ASSERT_EQ(numbers.find(at(n)), n); }
        EXPECT_EQ(numbers.find(at(count)), -1);
    }
}

template <class Real>
class DamagedTin : public TinFile<Real> {
protected:
    DamagedTin() {
        this->net.add(5, 2);
        this->net.add(6, 7);
        binary = fileOf(this->net, false);
        text = fileOf(this->net, true);
        std::istringstream all(text);
        for (std::string word; all >> word;) { words.push_back(word); }
    }
    void expect(Result wanted, const std::string& content, bool isText, std::size_t size = 0) {
        this->file.fill(content.data(), content.size(), size);
        const auto description = [&] {
            return testing::PrintToString(content.substr(0, 1000)) + " of " + std::to_string(size);
        };
        ASSERT_STREQ(this->host.faultOfRead(this->file.path, isText), nullptr) << description();
        if (wanted != either) { EXPECT_EQ(this->host.taken, wanted == network) << description(); }
        if (this->host.taken) { ASSERT_STREQ(this->host.faultInUse(), nullptr) << description(); }
    }
    /// Returns the binary file with another integer at `at`.
    std::string withNumber(std::size_t at, std::int32_t n) {
        std::string damaged = binary;
        std::memcpy(&damaged[at], &n, sizeof n);
        return damaged;
    }
    /// Returns the text file with another word `at`. Word 0 is the head, words 1 and 2 are counts
    /// and words 3 to 20 coordinates; the records follow.
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
};
TYPED_TEST_SUITE(DamagedTin, support::Precisions);

TYPED_TEST(DamagedTin, ATruncatedFileReadsAsNothing) {
    for (std::size_t n = 0; n < this->binary.size(); ++n) {
        this->expect(nothing, this->binary.substr(0, n), false);
    }
    // The text is complete with its last number.
    for (std::size_t n = 0; n < this->text.size(); ++n) {
        this->expect(n < this->text.size() - 2 ? nothing : network, this->text.substr(0, n), true);
    }
}

TYPED_TEST(DamagedTin, AFlippedBitReadsAsANetworkOrNothing) {
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

TYPED_TEST(DamagedTin, NumbersAreAcceptedInTheirRangeOnly) {
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

TYPED_TEST(DamagedTin, AWordThatIsNoNumberReadsAsNothing) {
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
TYPED_TEST(DamagedTin, CountsTakeNoMoreMemoryThanTheFileCanFill) {
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

/// Damages the file as disks, transfers and editors do.
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

/// Reads `count` damaged files with engines of either precision, and uses every eighth network.
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
    for (const std::size_t points : {0U, 2U, 5U, 20U, 90U}) {
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
        for (std::size_t times = random() % (n % 8 == 0 ? 50 : 4) + 1; times > 0; --times) {
            damage(content, isText, random);
        }
        file.fill(content.data(), content.size());
        const auto faultOf = [&](auto& host) {
            const char* const fault = host.faultOfRead(file.path, isText);
            taken += host.taken;
            return fault == nullptr && host.taken && n % 8 == 0 ? host.faultInUse() : fault;
        };
        ASSERT_STREQ(faultOf(doubleHost), nullptr) << testing::PrintToString(content);
        ASSERT_STREQ(faultOf(floatHost), nullptr) << testing::PrintToString(content);
    }
    std::printf("%d files read, %d times a network\n", count, taken);
}

/// ZYN_DAMAGED_FILES sets the number of files. Each hundred thousand have their own seed.
TEST(RandomDamage, ReadsAsANetworkOrNothing) {
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
