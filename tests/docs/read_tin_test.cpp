// docs/read_tin.py reads what the engines write.
#include <zyn/delaunay.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace zyn {
namespace {

/// What the script prints for the file.
std::string scriptOn(const std::string& path) {
    std::FILE* const pipe = ::popen((READ_TIN " '" + path + "' 2>&1").c_str(), "r");
    std::string text;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) { text += static_cast<char>(c); }
    ::pclose(pipe);
    return text;
}

template <class Engine, class Points, class Real>
void expectReads(Engine* made, Points* newPoints, Real unit) {
    const ref_ptr<Engine> engine = made;
    const ref_ptr<Points> points = newPoints;
    for (int i = 0; i < 60; ++i) {
        points->append({unit * Real(i % 8) / 3, unit * Real(i / 8) / 7, unit * Real(i) / 9});
    }
    for (auto& p : *points) { engine->addPoint(&p, 0); }
    const std::string path = testing::TempDir() + "read_tin_" + std::to_string(sizeof(Real));
    ASSERT_TRUE(writeBinary<Real>(engine.get(), path.c_str()));

    std::istringstream out(scriptOn(path));
    int vertexTotal = 0, triangleTotal = 0, width = 0;
    ASSERT_TRUE(out >> vertexTotal >> triangleTotal >> width) << out.str();
    EXPECT_EQ(vertexTotal, 64);
    ASSERT_EQ(triangleTotal, engine->triangleCount());
    EXPECT_EQ(width, int(sizeof(Real)));
    std::vector<double> xyz(3 * std::size_t(vertexTotal));
    for (double& c : xyz) { ASSERT_TRUE(out >> c); }

    std::vector<const TinRecord<Real>*> triangles;
    std::map<const TinRecord<Real>*, int> numbers{{nullptr, -1}};
    engine->rewindTriangles();
    while (const TinRecord<Real>* const t = engine->nextTriangle()) {
        numbers[t] = int(triangles.size());
        triangles.push_back(t);
    }
    for (const TinRecord<Real>* const t : triangles) {
        for (const Real* const v : t->vertex) {
            std::size_t n = 0;
            ASSERT_TRUE(out >> n);
            ASSERT_EQ(engine->isFrameVertex(v), n < 4);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                ASSERT_EQ(double(v[axis]), xyz.at(3 * n + axis));
            }
        }
        for (const TinRecord<Real>* const neighbor : t->neighbor) {
            int n = 0;
            ASSERT_TRUE(out >> n);
            ASSERT_EQ(n, numbers.at(neighbor));
        }
    }
    std::string rest;
    EXPECT_FALSE(out >> rest);

    std::ofstream(path, std::ios::binary | std::ios::app) << "x";
    EXPECT_NE(scriptOn(path).find("fits neither width"), std::string::npos);
    std::remove(path.c_str());
}

TEST(ReadTinTest, DoubleAndFloat) {
    expectReads(newZynDelaunayDouble(-1, -1, -1, 9e6, 9e6), newPnt3dArray(), 1e6);
    expectReads(newZynDelaunay(-1, -1, -1, 9, 9), newPnt3fArray(), 1.0F);
}

}  // namespace
}  // namespace zyn
