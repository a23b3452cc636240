// Reading an engine by reference, the ranges of its triangles, and files whose vertices it keeps.
#include <zyn/network.h>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <future>
#include <ranges>
#include <string>
#include <vector>

#include "file_content.h"
#include "network.h"
#include "testing.h"

namespace {

using namespace zyn;
using support::contentOf;

static_assert(std::ranges::forward_range<TriangleRange<double>>);
static_assert(std::ranges::common_range<TriangleRange<float>>);
static_assert(std::ranges::view<TriangleRange<double>>);
static_assert(std::ranges::borrowed_range<TriangleRange<float>>);

/// An application's own engine.
template <class Real>
struct HostEngine : DelaunayInterface<Real> {
    using Tri = TinRecord<Real>;
    int getGeoType() const override { return 0; }
    Tri* nextTriangle() override { return nullptr; }
    void rewindTriangles() override {}
    int triangleCount() const override { return 1; }
    bool deleteTriangle(Tri*) override { return false; }
    std::int32_t reservedA() override { return 0; }
    Tri* locate(Real, Real) override { return nullptr; }
    bool isFrameTriangle(const Tri*) const override { return false; }
    bool isFrameVertex(const Real*) const override { return false; }
    Tri* enforceEdge(Real*, Real*, Tri*) override { return nullptr; }
    bool addPoint(XPnt3<Real>*, Real) override { return false; }
};

template <class Real>
class EngineReading : public testing::Test, protected support::Network<Real> {
protected:
    using Triangles = std::vector<const TinRecord<Real>*>;

    EngineReading() : support::Network<Real>(-100, -100, 200, 200) {}
    ~EngineReading() override { std::filesystem::remove(path); }

    /// Adds points until there are `count`, all in different places.
    void grow(int count) {
        for (int n = static_cast<int>(this->points.size()); n < count; ++n) {
            this->add(37 * n % 97 + n / 4096.0, 53 * n % 89, n % 17);
        }
    }
    static Triangles listOf(const TriangleRange<Real>& range) {
        Triangles list;
        for (const TinRecord<Real>& t : range) { list.push_back(&t); }
        return list;
    }
    template <class Write>
    std::string fileOf(Write write) {
        EXPECT_TRUE(write(path.c_str()));
        return contentOf(path);
    }

    const std::string path = testing::TempDir() + "zyn_reading_test";
    const ref_ptr<DelaunayInterface<Real>> host = new HostEngine<Real>;
};
TYPED_TEST_SUITE(EngineReading, support::Precisions);

TYPED_TEST(EngineReading, ByReferenceAgreesWithByPointer) {
    auto& e = *this->engine;
    EXPECT_FALSE(bounds(e).has_value());
    this->grow(500);
    auto* const p = this->engine.get();
    const auto& read = e;
    const DelaunayInterface<TypeParam>& base = e;
    for (const int count : {vertexCount(e), vertexCount(read), vertexCount(base)}) {
        EXPECT_EQ(count, 500);
    }
    EXPECT_EQ(allVertexCount(read), 504);
    EXPECT_EQ(bounds(read)->minY, 0);
    EXPECT_EQ(bounds(read)->maxZ, 16);
    EXPECT_EQ(validate(read, true), QString());
    double z = 0;
    ASSERT_TRUE(heightAt(p, 40.5, 30.25, z));
    EXPECT_EQ(heightAt(read, 40.5, 30.25), z);
    EXPECT_EQ(heightAt(read, 150, 30), std::nullopt);
    std::vector<XPnt3d> places{{150, 30, 0}, {40.5, 30.25, 0}};
    EXPECT_EQ(heightAt(read, places), 1);
    EXPECT_TRUE(std::isnan(places[0].z)) << places[0].z;
    EXPECT_EQ(places[1].z, z);
    const Enve2d cell(40, 30, 41, 30.5);
    EXPECT_NEAR(rasterize(read, cell, 1, 1)->get(0, 0), z, 1e-9);
    EXPECT_TRUE(std::isnan(rasterize(read, cell, 1, 1, -1)->get(0, 0)));
    EXPECT_EQ(rasterize(read, cell, 0, 1), nullptr);
    EXPECT_EQ(profile(read, {1, 2}, {80, 70})->size(), profile(p, {1, 2}, {80, 70})->size());
    const auto level = make<DoubleArray>();
    level->append(7.5);
    EXPECT_EQ(contours(read, *level, 9)->size(), contours(p, level.get(), 9)->size());
    EXPECT_EQ(volume(read, 8, 9).fillArea, volume(p, 8, 9).fillArea);
    using Path = const char*;
    EXPECT_EQ(this->fileOf([&](Path to) { return writeObj(read, to, 9); }),
              this->fileOf([&](Path to) { return writeObj(p, to, 9); }));
    constexpr auto normals = PlyNormals::vertex;
    EXPECT_EQ(this->fileOf([&](Path to) { return writePly(read, to, 9, normals); }),
              this->fileOf([&](Path to) { return writePly(p, to, 9, normals); }));
    constexpr auto foot = LengthUnit::foot;
    const auto landXml = [&](Path to) { return writeLandXml(read, to, "a", foot, -1); };
    EXPECT_THAT(this->fileOf(landXml), testing::HasSubstr(R"(linearUnit="foot")"));
    EXPECT_THAT(this->fileOf(landXml), testing::Not(testing::HasSubstr("<F>")));
}

TYPED_TEST(EngineReading, RangesHaveTheTrianglesOfTheCursor) {
    using Real = TypeParam;
    for (const int count : {0, 1, 30, 31, 32, 511, 512, 700}) {  // 2 triangles, 4, 62, 64, 66 ...
        this->grow(count);
        const auto all = this->triangles();
        ASSERT_EQ(all.size(), 2 * unsigned(count) + 2);
        EXPECT_THAT(this->listOf(triangles(*this->engine)), testing::ElementsAreArray(all));
        for (const double most : {anyEdge, 40.0, 6.5, 0.0, -1.0, std::nan("")}) {
            typename EngineReading<Real>::Triangles expected;
            for (const auto* const t : all) {
                double longest = 0;
                for (int i = 0; i < 3; ++i) {
                    const XPnt3d d =
                        support::pointOf(t->vertex[i]) - support::pointOf(t->vertex[(i + 1) % 3]);
                    longest = std::max(longest, std::hypot(d.x, d.y, d.z));
                }
                if (!this->engine->isFrameTriangle(t) && !(longest > most)) {
                    expected.push_back(t);
                }
            }
            EXPECT_EQ(this->listOf(surfaceTriangles(*this->engine, most)), expected) << most;
        }
    }
    this->engine->rewindTriangles();
    const auto* const first = this->engine->nextTriangle();
    std::size_t pairs = 0;
    for (const auto& t : triangles(*this->engine)) {
        for (const auto& n : triangles(*this->engine)) { pairs += &t == &n ? 1 : 0; }
    }
    EXPECT_EQ(pairs, 1402U);
    EXPECT_EQ(this->engine->nextTriangle(), first + 1) << "the cursor has moved";
    EXPECT_TRUE(triangles(*this->host).empty());
    EXPECT_TRUE(surfaceTriangles(*this->host).empty());
}

TYPED_TEST(EngineReading, ThreadsMayReadOneEngine) {
    this->grow(700);
    const auto read = [&engine = *this->engine] {
        double sum = 0;
        for (const auto& t : surfaceTriangles(engine, 20)) { sum += double(t.Area()); }
        for (int x = 0; x < 90; ++x) { sum += heightAt(engine, x, 44.5).value_or(0); }
        return sum + contours(engine, std::array{3.5, 8.0})->size() + volume(engine, 8).cut +
               profile(engine, {1, 2}, {80, 70})->size() + vertexCount(engine);
    };
    auto other = std::async(std::launch::async, read), third = std::async(std::launch::async, read);
    const double sum = read();
    EXPECT_EQ(other.get(), sum);
    EXPECT_EQ(third.get(), sum);
}

TYPED_TEST(EngineReading, KeepsTheVerticesOfReadOnlyFiles) {
    const char* const file = this->path.c_str();
    for (const bool isText : {false, true}) {
        this->grow(isText ? 200 : 100);
        const auto write = [&](const char* to) {
            return isText ? writeText(*this->engine, to) : writeBinary(*this->engine, to);
        };
        const std::string written = this->fileOf(write);
        support::Network<TypeParam> other(0, 0, 1, 1);
        const auto read = [&] {
            return isText ? readText(*other.engine, file) : readBinary(*other.engine, file);
        };
        ASSERT_TRUE(read());
        const TypeParam* const early = surfaceTriangles(*other.engine).begin()->vertex[0];
        const TypeParam x = early[0];
        const uid_t user = geteuid(), reader = user == 0 ? 65534 : user;  // root may write any file
        std::filesystem::permissions(testing::TempDir(), std::filesystem::perms(0755));
        ASSERT_EQ(chmod(file, 0444), 0);
        ASSERT_EQ(seteuid(reader), 0);
        const bool isRead = read();
        ASSERT_EQ(seteuid(user), 0);
        EXPECT_TRUE(isRead) << isText;
        EXPECT_EQ(early[0], x) << "a vertex of the first read";
        EXPECT_TRUE(other.add(-99.5, -99)) << isText;
        EXPECT_EQ(vertexCount(*other.engine), static_cast<int>(this->points.size()) + 1);
        EXPECT_FALSE(isText ? readText(*other.engine, "/nowhere")
                            : readBinary(*other.engine, "/nowhere"));
        EXPECT_TRUE(triangles(*other.engine).empty());
        std::filesystem::remove(file);
        EXPECT_EQ(this->fileOf(write), written);
    }
    EXPECT_FALSE(readBinary(*this->host, file));
}

}  // namespace
