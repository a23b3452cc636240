// docs/read_tin.py reads from a binary file the numbers that the text file of the engine has.
#include <zyn/delaunay.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "testing.h"

namespace zyn {
namespace {

/// Returns what the script prints for the file.
std::string scriptOn(const std::string& path) {
    std::FILE* const pipe = ::popen((READ_TIN " '" + path + "' 2>&1").c_str(), "r");
    std::string text;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) { text += static_cast<char>(c); }
    ::pclose(pipe);
    return text;
}

std::vector<double> numbersIn(std::istream&& text) {
    std::vector<double> numbers;
    for (double number = 0; text >> number;) { numbers.push_back(number); }
    return numbers;
}

template <class Real, class Engine>
void expectReads(Engine* made) {
    const ref_ptr<Engine> engine = made;
    std::vector<XPnt3<Real>> points;
    for (int i = 0; i < 60; ++i) {  // coordinates of at most six digits
        points.emplace_back(Real(i % 8), Real(i / 8) + Real(i % 8) / 16, Real(i) / 8);
    }
    for (auto& p : points) { engine->addPoint(&p, 0); }
    const std::string binary = testing::TempDir() + "binary", text = testing::TempDir() + "text";
    ASSERT_TRUE(writeBinary<Real>(engine.get(), binary.c_str()));
    ASSERT_TRUE(writeText<Real>(engine.get(), text.c_str()));
    std::ifstream file(text);
    std::string magic;
    file >> magic;
    std::vector<double> numbers = numbersIn(std::istringstream(scriptOn(binary)));
    ASSERT_EQ(numbers.size(), 3U + 3 * 64 + 6 * std::size_t(engine->triangleCount()));
    EXPECT_EQ(numbers[2], sizeof(Real));
    numbers.erase(numbers.begin() + 2);
    EXPECT_EQ(numbers, numbersIn(std::move(file)));

    std::ofstream(binary, std::ios::binary | std::ios::app) << "x";
    EXPECT_THAT(scriptOn(binary), testing::HasSubstr("fits neither width"));
}

TEST(ReadTin, ReadsBinaryFilesOfDoubles) {
    expectReads<double>(newZynDelaunayDouble(-1, -1, -1, 9, 9));
}

TEST(ReadTin, ReadsBinaryFilesOfFloats) { expectReads<float>(newZynDelaunay(-1, -1, -1, 9, 9)); }

}  // namespace
}  // namespace zyn
