// OBJ, PLY and LandXML files of networks, read by other programs or compared with the format.
#include <zyn/network.h>

#include <QXmlStreamReader>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "file_content.h"
#include "network.h"
#include "testing.h"

namespace {

using namespace zyn;
using support::bytes;
using support::contentOf;
namespace fs = std::filesystem;

bool runs(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

/// A network in a UTM zone, where a float resolves half a metre.
template <class Real>
class SurfaceFile : public testing::Test, protected support::Network<Real> {
protected:
    SurfaceFile()
        : support::Network<Real>(450000, 5350000, 550000, 5450000),
          folder(testing::TempDir() + "zyn_surface_file_test" + std::to_string(getpid())) {
        fs::create_directory(folder);
    }
    ~SurfaceFile() override { fs::remove_all(folder); }

    /// Adds more points than fit into the buffer of a writer.
    void addHills() {
        for (int n = 0; n < 3600; ++n) {
            const int x = n % 60, y = n / 60;
            this->add(500000 + 64 * x + y, 5400000 + 64 * y + n % 7, x * y % 50 + 0.125);
        }
    }
    /// Returns the coordinates of the corners of all faces.
    std::vector<double> corners() {
        std::vector<double> result;
        for (const auto& t : this->records()) {
            if (this->engine->isFrameTriangle(&t)) { continue; }
            for (const Real* const v : t.vertex) { result.insert(result.end(), v, v + 3); }
        }
        return result;
    }
    /// Returns the expected PLY file, with the bytes of a normal for each vertex.
    template <class NormalOf>
    std::string plyOf(NormalOf normalOf) {
        std::vector<Real*> known;
        std::string vertices, faces;
        int faceCount = 0;
        for (const auto& t : this->records()) {
            if (this->engine->isFrameTriangle(&t)) { continue; }
            ++faceCount;
            faces += '\3';
            for (Real* const v : t.vertex) {
                const auto place = std::find(known.begin(), known.end(), v);
                faces += bytes(std::int32_t(place - known.begin()));
                if (place != known.end()) { continue; }
                known.push_back(v);
                vertices += bytes(v[0], v[1], v[2]) + normalOf(v);
            }
        }
        const std::string real = sizeof(Real) == 8 ? "double " : "float ";
        return "ply\nformat binary_little_endian 1.0\ncomment ZynBase\nelement vertex " +
               std::to_string(known.size()) + "\nproperty " + real + "x\nproperty " + real +
               "y\nproperty " + real +
               "z\nproperty float nx\nproperty float ny\nproperty float nz\nelement face " +
               std::to_string(faceCount) +
               "\nproperty list uchar int vertex_indices\nend_header\n" + vertices + faces;
    }
    std::string writtenPly() {
        const std::string path = file + "ply";
        EXPECT_TRUE(writePly(this->engine.get(), path.c_str(), anyEdge, PlyNormals::vertex));
        return contentOf(path);
    }

    std::string folder, file = folder + "/surface.";
};
TYPED_TEST_SUITE(SurfaceFile, support::Precisions);

TYPED_TEST(SurfaceFile, AnotherProgramFindsTheFacesOfObjAndPly) {
    if (!runs("assimp version")) { GTEST_SKIP() << "there is no assimp"; }
    this->addHills();
    ASSERT_TRUE(writeObj(this->engine.get(), (this->file + "obj").c_str()));
    ASSERT_TRUE(writePly(this->engine.get(), (this->file + "ply").c_str()));
    for (const std::string suffix : {"obj", "ply"}) {
        const std::string facets = this->folder + "/" + suffix + ".stl";
        ASSERT_TRUE(runs("assimp export '" + this->file + suffix + "' '" + facets + "'"));
        std::istringstream words(contentOf(facets));
        std::vector<double> found;
        double x = 0, y = 0, z = 0;
        for (std::string word; words >> word;) {
            if (word == "vertex" && words >> x >> y >> z) { found.insert(found.end(), {x, y, z}); }
        }
        EXPECT_EQ(found, this->corners()) << suffix;
    }
}

TYPED_TEST(SurfaceFile, PlyHasTheBytesOfTheFormat) {
    using Real = TypeParam;
    // A fold, whose two sides have plan areas of 1 : 3.
    const Real fold = 500000, y = 5400000;
    this->add(fold, y), this->add(fold, y + 2000);
    this->add(fold - 1000, y + 1000, -3000), this->add(fold + 3000, y + 1000);
    EXPECT_EQ(this->writtenPly(), this->plyOf([fold](const Real* v) {
        return v[0] < fold   ? bytes(float(-3 / std::sqrt(10)), 0.F, float(std::sqrt(0.1)))
               : v[0] > fold ? bytes(0.F, 0.F, 1.F)
                             : bytes(-0.6F, 0.F, 0.8F);
    }));
    // A vertex without a computable normal has a vertical one.
    for (auto& p : this->points) { p.z = std::numeric_limits<Real>::quiet_NaN(); }
    EXPECT_EQ(this->writtenPly(), this->plyOf([](const Real*) { return bytes(0.F, 0.F, 1.F); }));
}

TYPED_TEST(SurfaceFile, LandXmlHoldsTheSurfaceUnderItsName) {
    const std::string path = this->file + "xml";
    const QString name = QString::fromUtf8("<\"Höhe\"> &amp; 'x'\t\r\n𝄞");
    const QString dirty = QChar(1) + name + QChar(0xFFFE) + QChar(0xD800) + QChar(0xDBFF);
    const bool canLint = runs("xmllint --version");
    for (const std::size_t count : {0U, 3600U}) {
        if (count != 0) { this->addHills(); }
        ASSERT_TRUE(writeLandXml(this->engine.get(), path.c_str(), dirty));
        if (canLint) { EXPECT_TRUE(runs("xmllint --noout '" + path + "'")); }
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
                EXPECT_EQ(id.toULong(), listed.size());
                EXPECT_EQ(listed.back().size(), 3);
            } else if (xml.name() == QString("F")) {
                for (const QString& number : xml.readElementText().split(' ')) {
                    const QStringList& point = listed.at(number.toULong() - 1);
                    for (const int i : {1, 0, 2}) { found.push_back(point[i].toDouble()); }
                }
            }
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
        EXPECT_EQ(listed.size(), count);
        EXPECT_EQ(found, this->corners());
    }
    this->points[1800].z = std::nanf("");
    this->points[1801].z = HUGE_VALF;
    this->points[1802].z = -HUGE_VALF;
    ASSERT_TRUE(writeLandXml(this->engine.get(), path.c_str(), name));
    for (const char* const height : {" NaN</P>", " INF</P>", " -INF</P>"}) {
        EXPECT_THAT(contentOf(path), testing::HasSubstr(height));
    }
}

TYPED_TEST(SurfaceFile, LandXmlNamesTheUnitOfLength) {
    const std::string path = this->file + "xml";
    const auto unitOf = [&path](const char* system) {
        QXmlStreamReader xml(QByteArray::fromStdString(contentOf(path)));
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QString(system)) {
                return xml.attributes().value("linearUnit").toString().toStdString();
            }
        }
        return std::string();
    };
    auto* const e = this->engine.get();
    ASSERT_TRUE(writeLandXml(e, path.c_str(), "a", -1));
    EXPECT_EQ(unitOf("Metric"), "meter");
    ASSERT_TRUE(writeLandXml(e, path.c_str(), "a", LengthUnit::foot));
    EXPECT_EQ(unitOf("Imperial"), "foot");
    ASSERT_TRUE(writeLandXml(e, path.c_str(), "a", LengthUnit::usSurveyFoot));
    EXPECT_EQ(unitOf("Imperial"), "USSurveyFoot");
    if (runs("xmllint --version")) { EXPECT_TRUE(runs("xmllint --noout '" + path + "'")); }
    EXPECT_FALSE(writeLandXml(e, path.c_str(), "a", LengthUnit(3)));
}

TYPED_TEST(SurfaceFile, RefusesNullEnginesAndNullPaths) {
    using Real = TypeParam;
    DelaunayInterface<Real>*const surface = this->engine.get(), *const none = nullptr;
    const std::string any = this->file + "any";
    const char* const path = any.c_str();
    EXPECT_FALSE(writeObj(surface, nullptr));
    EXPECT_FALSE(writeObj(none, path));
    EXPECT_FALSE(writePly(surface, nullptr));
    EXPECT_FALSE(writePly(none, path));
    EXPECT_FALSE(writeLandXml(surface, nullptr, "a"));
    EXPECT_FALSE(writeLandXml(none, path, "a"));
    EXPECT_FALSE(writeBinary(none, path));
    EXPECT_FALSE(writeText(none, path));
    EXPECT_FALSE(fs::exists(path));
    Real marker = 0, low[3] = {7, 7, 7}, high[3] = {};
    Real* vertices = &marker;
    int count = 7;
    EXPECT_FALSE(readBinary(none, path, vertices, count));
    EXPECT_EQ(vertices, nullptr);
    EXPECT_EQ(count, 0);
    EXPECT_FALSE(bounds(none, low[0], low[1], low[2], high[0], high[1], high[2]));
    EXPECT_EQ(low[0], 7);
    for (const int number : {vertexCount(none), allVertexCount(none), compactVertices(none)}) {
        EXPECT_EQ(number, 0);
    }
    EXPECT_EQ(surfaceArea(none), 0);
    EXPECT_EQ(surfaceAreaHorizen(none), 0);
}

TEST(ExportObj, WritesNumberedPointsAndTheFacesBelowTheLimit) {
    std::vector<XPnt3d> points{{2, 2, 0}, {5, 2, 1.5}, {2, 2, 5}, {2, 5, 0}};
    const ref_ptr<IZynDelaunayD> e = newZynDelaunayDouble(0, 0, 0, 10, 10);
    for (XPnt3d& p : points) { EXPECT_EQ(e->addPoint(&p, 0), p.z != 5); }
    const std::string file = testing::TempDir() + "zyn_export.obj";
    const char* const path = file.c_str();
    testing::internal::CaptureStdout();
    EXPECT_TRUE(e->exportObj(points, path, 4.4));
    std::fflush(stdout);
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "Writing File \"" + file + "\"...\nWriting vertices...Done!\nWriting triangles...Done!");
    const std::string vertices = contentOf(file);  // the refused point keeps its line
    EXPECT_EQ(vertices,
              "v 2.000000 2.000000 0.000000\nv 5.000000 2.000000 1.500000\n"
              "v 2.000000 2.000000 5.000000\nv 2.000000 5.000000 0.000000\n");
    EXPECT_TRUE(e->exportObj(points, path, 4.5));
    EXPECT_THAT(contentOf(file), testing::StartsWith(vertices + "f "));
    // writeObj has the same limit for any engine.
    EXPECT_TRUE(writeObj<double>(e.get(), path, 4.4));
    EXPECT_THAT(contentOf(file), testing::Not(testing::HasSubstr("f")));
    EXPECT_TRUE(writeObj<double>(e.get(), path, 4.5));
    EXPECT_THAT(contentOf(file), testing::HasSubstr("f"));
    EXPECT_FALSE(e->exportObj(points, (file + "/no/file").c_str(), 1));
    EXPECT_FALSE(e->exportObj(points, nullptr, 1));
    points[2].inten = 0;  // it has no number of its own now
    EXPECT_TRUE(e->exportObj(points, path, 4.4));
    EXPECT_EQ(contentOf(file), vertices.substr(0, 58) + vertices.substr(87));
    std::vector<XPnt3d> many(32770);  // the last two have a number that does not fit
    for (std::size_t i = 0; i < many.size(); ++i) { many[i].inten = static_cast<std::int16_t>(i); }
    EXPECT_TRUE(e->exportObj(many, path, 0));
    const std::string lines = contentOf(file);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), 'v'), 32768);
    compactVertices(e.get());  // vertices without a number
    EXPECT_FALSE(e->exportObj(points, path, 1));
    fs::remove(path);
}

}  // namespace
