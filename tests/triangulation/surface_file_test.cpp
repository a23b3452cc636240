// Surfaces as OBJ, PLY and LandXML files, as other programs and the formats read them.
#include <zyn/surface.h>

#include <QXmlStreamReader>

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "network.h"

namespace {

using namespace zyn;
namespace fs = std::filesystem;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
bool runs(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}
template <class... Numbers>
std::string bytes(Numbers... numbers) {  // of a little-endian machine
    std::string result;
    (result.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    return result;
}

/// On the ground of a UTM zone, where a float holds halves of a metre.
template <class Real>
class SurfaceFileTest : public testing::Test, protected support::Network<Real> {
protected:
    SurfaceFileTest()
        : support::Network<Real>(450000, 5350000, 550000, 5450000),
          folder(testing::TempDir() + "zyn_surface_file_test" + std::to_string(getpid())) {
        fs::remove_all(folder);
        fs::create_directory(folder);
    }
    ~SurfaceFileTest() override { fs::remove_all(folder); }

    /// More than fits a writer's buffer.
    void addHills() {
        for (int n = 0; n < 3600; ++n) {
            const int x = n % 60, y = n / 60;
            this->add(500000 + 64 * x + y, 5400000 + 64 * y + n % 7, x * y % 50 + 0.125);
        }
    }
    /// Of the corners of all faces, one after the other.
    std::vector<double> corners() {
        std::vector<double> result;
        for (const auto& t : this->records()) {
            if (this->engine->isFrameTriangle(&t)) { continue; }
            for (const Real* const v : t.vertex) { result.insert(result.end(), v, v + 3); }
        }
        return result;
    }

    std::string folder, file = folder + "/surface.";
};
using Precisions = testing::Types<double, float>;
TYPED_TEST_SUITE(SurfaceFileTest, Precisions);

TYPED_TEST(SurfaceFileTest, AnotherProgramFindsTheFacesOfObjAndPly) {
    if (!runs("assimp version")) { GTEST_SKIP() << "there is no assimp"; }
    this->addHills();
    ASSERT_TRUE(writeObj(this->engine.get(), (this->file + "obj").c_str()));
    ASSERT_TRUE(writePly(this->engine.get(), (this->file + "ply").c_str()));
    ASSERT_TRUE(
        writePly(this->engine.get(), (this->file + "n.ply").c_str(), anyEdge, PlyNormals::vertex));
    for (const std::string suffix : {"obj", "ply", "n.ply"}) {
        const std::string facets = this->folder + "/" + suffix + ".stl";
        ASSERT_TRUE(runs("assimp export '" + this->file + suffix + "' '" + facets + "'"));
        std::istringstream words(contentOf(facets));
        std::vector<double> found;
        double x = 0, y = 0, z = 0;
        for (std::string word; words >> word;) {
            if (word == "vertex" && words >> x >> y >> z) { found.insert(found.end(), {x, y, z}); }
        }
        EXPECT_TRUE(found == this->corners()) << suffix << ", " << found.size();
    }
}

TYPED_TEST(SurfaceFileTest, PlyIsMadeOfTheBytesOfTheFormat) {
    using Real = TypeParam;
    // A fold; its two sides weigh 1 : 3 in plan.
    const Real fold = 500000, y = 5400000;
    this->add(fold, y), this->add(fold, y + 2000);
    this->add(fold - 1000, y + 1000, -3000), this->add(fold + 3000, y + 1000);
    std::vector<Real*> known;
    std::string vertices, faces;
    for (const auto& t : this->records()) {
        if (this->engine->isFrameTriangle(&t)) { continue; }
        faces += '\3';
        for (Real* const v : t.vertex) {
            const auto place = std::find(known.begin(), known.end(), v);
            faces += bytes(std::int32_t(place - known.begin()));
            if (place != known.end()) { continue; }
            known.push_back(v);
            vertices += bytes(v[0], v[1], v[2]);
            vertices += v[0] < fold   ? bytes(float(-3 / std::sqrt(10)), 0.F, float(std::sqrt(0.1)))
                        : v[0] > fold ? bytes(0.F, 0.F, 1.F)
                                      : bytes(-0.6F, 0.F, 0.8F);
        }
    }
    const std::string real = sizeof(Real) == 8 ? "double " : "float ";
    ASSERT_TRUE(
        writePly(this->engine.get(), (this->file + "ply").c_str(), anyEdge, PlyNormals::vertex));
    EXPECT_EQ(contentOf(this->file + "ply"),
              "ply\nformat binary_little_endian 1.0\ncomment ZynBase\nelement vertex 4\nproperty " +
                  real + "x\nproperty " + real + "y\nproperty " + real +
                  "z\nproperty float nx\nproperty float ny\nproperty float nz\nelement face 2\n"
                  "property list uchar int vertex_indices\nend_header\n" +
                  vertices + faces);
}

TYPED_TEST(SurfaceFileTest, PlyHasAnUprightNormalWhereThereIsNone) {
    using Real = TypeParam;
    this->add(500000, 5400000), this->add(500100, 5400000), this->add(500000, 5400100);
    for (const Real z :
         {std::numeric_limits<Real>::quiet_NaN(), std::numeric_limits<Real>::max()}) {
        this->points[0].z = z;
        ASSERT_TRUE(writePly(this->engine.get(), (this->file + "ply").c_str(), anyEdge,
                             PlyNormals::vertex));
        const std::string content = contentOf(this->file + "ply");
        const std::string upright = bytes(0.F, 0.F, 1.F);
        int count = 0;
        for (std::size_t at = 0; (at = content.find(upright, at)) != std::string::npos; ++at) {
            ++count;
        }
        const bool overflows = std::isnan(z) || sizeof(Real) == 8;
        EXPECT_EQ(count, overflows ? 3 : 0) << z;
    }
}

TYPED_TEST(SurfaceFileTest, LandXmlHoldsTheSurfaceUnderItsName) {
    const std::string path = this->file + "xml";
    const QString name = QString::fromUtf8("<\"Höhe\"> &amp; 'x'\t\r\n𝄞");
    const QString dirty = QChar(1) + name + QChar(0xFFFE) + QChar(0xD800) + QChar(0xDBFF);
    const bool canLint = runs("xmllint --version");
    for (const std::size_t count : {0U, 3600U}) {
        if (count != 0) { this->addHills(); }
        ASSERT_TRUE(writeLandXml(this->engine.get(), path.c_str(), dirty));
        EXPECT_TRUE(!canLint || runs("xmllint --noout '" + path + "'"));
        QXmlStreamReader xml(QByteArray::fromStdString(contentOf(path)));
        std::vector<QStringList> listed;
        std::vector<double> found;
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement) { continue; }
            EXPECT_EQ(xml.namespaceUri(), QString("http://www.landxml.org/schema/LandXML-1.2"));
            const QString id = xml.attributes().value("id").toString();
            if (xml.name() == QString("Surface")) {
                EXPECT_EQ(xml.attributes().value("name"), name);
            } else if (xml.name() == QString("P")) {
                listed.push_back(xml.readElementText().split(' '));
                EXPECT_TRUE(id.toULong() == listed.size() && listed.back().size() == 3);
            } else if (xml.name() == QString("F")) {
                for (const QString& number : xml.readElementText().split(' ')) {
                    const QStringList& point = listed.at(number.toULong() - 1);
                    for (const int i : {1, 0, 2}) { found.push_back(point[i].toDouble()); }
                }
            }
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        EXPECT_EQ(listed.size(), count);
        EXPECT_TRUE(found == this->corners());
    }
    this->points[1800].z = std::nanf("");
    this->points[1801].z = HUGE_VALF;
    this->points[1802].z = -HUGE_VALF;
    ASSERT_TRUE(writeLandXml(this->engine.get(), path.c_str(), name));
    for (const char* const height : {" NaN</P>", " INF</P>", " -INF</P>"}) {
        EXPECT_NE(contentOf(path).find(height), std::string::npos) << height;
    }
}

TYPED_TEST(SurfaceFileTest, NobodysSurfaceAndNoPathAreRefused) {
    using Surface = DelaunayInterface<TypeParam>;
    Surface *const surface = this->engine.get(), *const none = nullptr;
    const std::string path = this->file + "any";
    EXPECT_FALSE(writeObj(surface, nullptr) || writeObj(none, path.c_str()));
    EXPECT_FALSE(writePly(surface, nullptr) || writePly(none, path.c_str()));
    EXPECT_FALSE(writeLandXml(surface, nullptr, "a") || writeLandXml(none, path.c_str(), "a"));
    EXPECT_FALSE(fs::exists(path));
}

}  // namespace
