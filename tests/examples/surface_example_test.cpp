// The program `surface`.
#include <cstdint>
#include <string>
#include <utility>

#include <QImage>

#include "program_test.h"

namespace {

class SurfaceExample : public ProgramTest {
protected:
    SurfaceExample() : ProgramTest(SURFACE_PROGRAM) {}

    /// Runs the program on a file of these contents and gives its report.
    std::string reportOn(const std::string& contents, const std::string& options = "") const {
        write("input", contents);
        return report("input --out out " + options);
    }
    /// The points that terrain.obj has, in the order of their lines' characters.
    std::string objPoints() const { return shell("grep ^v out/terrain.obj | LC_ALL=C sort"); }
    /// The number of lines of terrain.obj with points, and of those with faces.
    std::string objCounts() const {
        return shell("grep -c ^v out/terrain.obj; grep -c ^f out/terrain.obj");
    }
};

TEST_F(SurfaceExample, MakesASurfaceOfTheShippedTerrain) {
    // A grid of 344 x 403 points, 92.474972 m and 74.573157 m apart.
    expectParts(report("'" TERRAIN_FILE "' --out 'new folders/out'"),
                {"138632 read, 0 skipped, 0 refused\n", "triangles   275772\n",
                 " 950882622.4 in plan\n", "236.000 to 1076.000\n"});
    fs::rename(folder / "new folders/out", folder / "out");
    EXPECT_EQ(outFiles(), "terrain.obj\nterrain.png\nterrain.tin\n");
    EXPECT_EQ(objCounts(), "138632\n275772\n");

    // The corners of the frame are vertices too.
    constexpr std::uintmax_t vertices = 138632 + 4, triangles = 2 + 2 * 138632;
    EXPECT_EQ(fs::file_size(folder / "out/terrain.tin"), 72 + 24 * (vertices + triangles));
    // The picture: the bar runs from the end's white to the start's green, the highest peak (in the
    // south) is bright, the plain in the east is green. Below is a length of 5000.
    const QImage picture((folder / "out/terrain.png").c_str());
    ASSERT_EQ(picture.size(), QSize(1000, 967));
    constexpr int barWidth = int(5000 * 900 / (343 * 92.474972) + 0.5);
    EXPECT_EQ(picture.pixelColor(20 + barWidth - 1, 940), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(20 + barWidth, 940), QColor(Qt::white));
    EXPECT_GT(picture.pixelColor(900, 31).blue(), 240);
    EXPECT_EQ(picture.pixelColor(900, 908), QColor(38, 92, 64));
    const QColor peak = picture.pixelColor(470, 790), plain = picture.pixelColor(840, 880);
    EXPECT_TRUE(peak.blue() > plain.blue() + 50 && plain.green() > 1.5 * plain.red());
}

TEST_F(SurfaceExample, ReadsLinesOfPointsAndGridsOfCells) {
    const char* const lines[] = {
        "\xEF\xBB\xBF\t0,0,1\r\nx;y;z\r\n8,0,2\r\n\r\n0,8,3\r\n",
        "# hill\n0\t0\t1\t255 grey\n 8 \t0  2 7\n0 8 +3",
        "name\n0.0 , 0e0 , 1.\n8,0,2,near, the wall\n0,.8e1,3,\n",
    };
    for (const char* const input : lines) {
        expectParts(reportOn(input), {"3 read, 1 skipped"});
        EXPECT_EQ(objPoints(), "v 0 0 1\nv 0 8 3\nv 8 0 2\n") << input;
    }
    const char* const grids[] = {
        "ncols 3\nnrows 2\nxllcorner 100\nyllcorner 200\ncellsize 10\nNODATA_value -1\n"
        "1 2 -1\n4 5 6\n",
        "NODATA_VALUE nan\r\ndy 10\r\nDX 10\r\nYLLCENTER 205\r\nXLLCENTER 105\r\nNROWS 2\r\n"
        "NCOLS 3\r\n1 2\r\nnan 4\r\n5 6",
        "ncols 3\nnrows 2\nxllcorner 100\nyllcenter 205\ncellsize 10\n\n1 2 -9999 4 5 6\n\n",
    };
    for (const char* const input : grids) {
        expectParts(reportOn(input), {"5 read, 1 skipped, 0 refused\n"});
        EXPECT_EQ(objPoints(), "v 105 205 4\nv 105 215 1\nv 115 205 5\nv 115 215 2\nv 125 205 6\n")
            << input;
    }
}

TEST_F(SurfaceExample, RecognizesPointNumbers) {
    const std::string xyz = "v 0.5 0 1\nv 0.5 8.5 3\nv 8 0 2\n";
    const std::string said = "; the first column is a point number\n";
    for (const char* const numbered :
         {"7;0.5;0;1\n8;8;0;2\n9;0.5;8.5;3\n", "7 .5 0.0 1 a\n3 8 0 2 b\n\n99 0.5 8.5 3,c\n"}) {
        expectParts(reportOn(numbered), {"3 read, 0 skipped, 0 refused" + said});
        EXPECT_EQ(objPoints(), xyz) << numbered;
    }
    // The first column is x if it repeats or has decimals, if a line has three columns or another
    // separator behind them, and if it has gaps while x and y are whole or have exponents.
    for (const char* const plain :
         {"0 0.5 1.5 1\n8 0.5 2.5 2\n0 8.5 3.5 3\n", "0.0 0.5 1.5 1\n1 8.5 2.5 2\n2 0.5 3.5 3\n",
          "0 .5 1.5 1\n1 8.5 2.5 1\n2 .5 3.5\n", "0 0 1 5\n8 1 2 5\n9 8 3 5\n",
          "0,.5,1.5 1\n1,8.5,2.5 1\n2,.5,3.5 1\n",
          "4 5.1e6 1.5 1\n8 5.2e6 2.5 2\n9 5.2e6 3.5 3\n"}) {
        expectParts(reportOn(plain), {"3 read, 0 skipped, 0 refused\n"});
    }
    reportOn("0 9 1 1\n1 9 5 2\n2 1 8 3\n", "--columns xyz");
    EXPECT_EQ(objPoints(), "v 0 9 1\nv 1 9 5\nv 2 1 8\n");
    expectParts(
        reportOn("n x y z\nP7 0.5 0 1\n20230401001 8 0 2\nP7 0.5 8.5 3\n", "--columns nxyz"),
        {"3 read, 1 skipped, 0 refused" + said});
    EXPECT_EQ(objPoints(), xyz);
    // A closed breakline comes back to its first number.
    write("ring", "5 1.5 1.5 2\n9 2.5 1.5 2\n7 1.5 2.5 2\n5 1.5 1.5 2\n");
    expectParts(reportOn("0 0 1\n8 0 2\n0 8 3\n", "--breaklines ring"),
                {"breaklines  1 with 3 edges, 0 crossings, 0 lost, 0 without length" + said});
}

TEST_F(SurfaceExample, TakesDegreesAndWarnsOfRefusedPoints) {
    // A grid of 20 x 20 points a hundred-thousandth of a degree apart, and a strip of 100 x 1.
    std::string degrees, strip;
    for (int i = 0; i < 400; ++i) {
        degrees += "11." + std::to_string(50000 + i / 20) + " 48." +
                   std::to_string(13000 + i % 20) + " " + std::to_string(500 + i % 7) + "\n";
        if (i < 202) { strip += std::to_string(i / 2) + " " + std::to_string(i % 2) + " 1\n"; }
    }
    expectParts(reportOn(degrees), {"400 read, 0 skipped, 0 refused\n", "triangles   722\n",
                                    ", 0.00000003610 in plan\n"});
    write("input", degrees + "11.500000000001 48.13 9\n");
    const Result result = run("input --out out");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.err,
        "surface: warning: refused 1 of 401 points that are within 1.9e-11 of another in x and y; "
        "--tolerance 0 refuses only duplicate points\n");

    // The strip is drawn a quarter as high as it is wide, to the corner.
    reportOn(strip);
    const QImage picture((folder / "out/terrain.png").c_str());
    EXPECT_EQ(picture.height(), 20 + 225 + 27 + 27 + 20);
    EXPECT_NE(picture.pixelColor(20 + 450, 20 + 224), QColor(Qt::white));
}

TEST_F(SurfaceExample, HeedsItsOptions) {
    const std::string doubles = "0 0 1\n8 0 2\n0 8 3\n8.0005 0 4\n0 0 5\n";
    expectParts(reportOn(doubles, "--tolerance 0"), {"5 read, 0 skipped, 1 refused\n"});
    expectParts(reportOn(doubles, "--tolerance 0.001"), {"5 read, 0 skipped, 2 refused\n"});

    const std::string squareAndFarPoint = "0 0 0\n10 0 0\n0 10 0\n10 10 0\n5 90 7\n";
    expectParts(reportOn(squareAndFarPoint), {"triangles   3\n"});
    expectParts(reportOn(squareAndFarPoint, "--max-edge 15"),
                {"triangles   2\narea        100.0 on the surface, 100.0 in", "0.000 to 0.000\n"});
    EXPECT_EQ(objCounts(), "4\n2\n");
    // The network is written whole: 9 vertices with those of the frame, 12 triangles.
    EXPECT_EQ(fs::file_size(folder / "out/terrain.tin"), 72U + 24 * (9 + 12));
    // Two squares far apart: the profile leaves out the long triangles between them, as the area does.
    const std::string islands = "0 0 0\n4 0 0\n0 4 0\n4 4 0\n90 0 0\n94 0 0\n90 4 0\n94 4 0\n";
    expectParts(
        reportOn(islands, "--max-edge 6"),
        {"triangles   4\n", "32.00 in plan\n", "west to east 8.000, up 0.0, down 0.0, across 2"});
    // The surface goes out to the convex hull, however flat its triangles are there: to y = 0.
    expectParts(reportOn("0 0 0\n100 0.01 0\n200 0 0\n100 100 0\n"),
                {"triangles   3\narea        10000.0 on the surface, 10000.0 in plan\n"});

    // A pyramid on a square of 4: 32 below 6, of which 4 are above the middle.
    expectParts(reportOn("0 0 0\n4 0 0\n4 4 0\n0 4 0\n2 2 6\n", "--contours 1"),
                {"volume      cut 4.000 above 3.000, fill 20.00 below\n",
                 "profile     west to east 12.65, up 6.000, down 6.000, across 1"});
}

TEST_F(SurfaceExample, MakesBreaklinesEdges) {
    // Four points of a rhombus: Delaunay's rule takes the short diagonal, a valley.
    const std::string rhombus = "-10 0 5\n10 0 5\n0 -1 0\n0 1 0\n";
    expectParts(reportOn(rhombus), {"area        22.36 on"});
    write("ridge", "-10 0 5\n10 0 5\n");
    expectParts(reportOn(rhombus, "--breaklines ridge"),
                {"breaklines  1 with 1 edges, 0 crossings, 0 lost, 0 without length\n",
                 "area        102.0 on"});
    // The ditch shares a vertex with the ridge, at its height, and gives its own heights to the points
    // at its ends. Breaklines without length only add a point.
    write("crossing",
          "# ridge\n-10 0 5\n10 0 5\n\n> ditch\n0 -1 -2\n0 1 -2\n\n#\n20 20 9\n"
          "#\n30 0 1\n30 0 1\n");
    expectParts(reportOn(rhombus, "--breaklines crossing"),
                {"breaklines  4 with 4 edges, 1 crossings, 0 lost, 2 without length\n",
                 "4 read, 0 skipped, 0 refused\n"});
    EXPECT_EQ(objPoints(),
              "v -10 0 5\nv 0 -1 -2\nv 0 0 5\nv 0 1 -2\nv 10 0 5\nv 20 20 9\nv 30 0 1\n");
}

TEST_F(SurfaceExample, NamesTheFileAndTheLineOfBadInput) {
    const std::string header = "ncols 3\nnrows 2\nxllcorner 0\nyllcorner 0\n";
    for (const auto& [contents, message] :
         std::initializer_list<std::pair<std::string, std::string>>{
             {"", "is empty"},
             {"It was a dark\nand stormy night.\n", "has no line of x y z"},
             {std::string("1 2 3\n\0\n", 8), "not a text file"},
             {"1 2 3\n4 5 6\n", "three points, not 2"},
             {"1 1 3\n2 2 5\n3 3 4\n9 9 1\n", "on one line"},
             {"x y z\n1 2 3\n4 nan 6\n7 8 8\n", ", line 3: 'nan' is not"},
             {"1 2 3\n4 5 6O\n", ", line 2: '6O' is not"},
             {"1 2 3\n\n4 5\n", ", line 3: a point is three numbers"},
             {"1,,3,4\n", ", line 1: '' is not"},
             {"0,5 1,5 2,5\n", ", line 1: different separators"},
             {"1 2 3\n4 5 6,5\n", ", line 2: different separators"},
             {"1;2;3;4\n2;5;6;7,5\n", ", line 2: different separators"},
             {header + "1 2 3\n4 5 6\n", "cellsize"},
             {header + "cellsize x\n1 2 3\n4 5 6\n", ", line 5: 'cellsize' needs"},
             {header + "cellsize 1\nNcols 3\n1 2 3\n4 5 6\n", ", line 6: 'Ncols' occurs twice"},
             {header + "cellsize 1\n1 2 3\n4 5\n", ", line 7: ends after 5 of 6"},
             {header + "cellsize 1\n1 2 3\n4 5 6 7\n", ", line 7: continues after the last of 6"},
             {header + "cellsize 1\n1 2 3\n4 nan 6\n", ", line 7: 'nan' is not"},
             {"ncols 99999\nnrows 99999\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2\n",
              "fewer cells"}}) {
        write("input", contents);
        const Result result = run("input --out out");
        expectFailure(result, message);
        EXPECT_TRUE(result.err.starts_with("surface: input")) << result.err;
    }
    expectFailure(run("missing.xyz --out out"), "missing.xyz: No such file");
    expectFailure(run(". --out out"), ".: is a directory");

    write("input", "0 0 1\n8 0 2\n0 8 3\n");
    write("lines", "1 1 1\n\n2 2 x\n");
    expectFailure(run("input --breaklines lines --out out"), "lines, line 3: 'x' is not");
    expectFailure(run("input --max-edge 0.5 --out out"), "longer than --max-edge");
    expectFailure(run("input --tolerance 100 --out out"), "within --tolerance");
    expectHelp();
    expectFailure(run("input input2"), "'input2'", 2);
    expectFailure(run("input --breaklines --out out"), "--breaklines needs a value", 2);
    expectFailure(run("input --max-edge 5m --out out"), "--max-edge needs a length", 2);
    expectFailure(run("input --tolerance -1 --out out"), "--tolerance needs a length", 2);
    expectFailure(run("input --columns zyx"), "--columns needs xyz or nxyz", 2);
}

TEST_F(SurfaceExample, LeavesNothingBehindWhereItCannotWrite) {
    write("input", "0 0 1\n8 0 2\n0 8 3\n");
    write("file", "");
    expectFailure(run("input --out file"), "file: ");
    expectFailure(run("input --out /proc"), "/proc/terrain.tin: cannot be written");

    // A limit on the size of files acts like a full disk once its signal is ignored.
    const std::string fullDisk = "trap '' XFSZ; ulimit -f 2048;";
    expectFailure(run("'" TERRAIN_FILE "' --out out", fullDisk), "out/terrain.tin: cannot be");
    for (const std::string name : {"terrain.obj", "terrain.png"}) {
        fs::create_directories(folder / "out" / name);
        EXPECT_EQ(run("input --out out").exitCode, 1);
        EXPECT_EQ(outFiles(), name + "\n") << "the directory of that name";
        fs::remove_all(folder / "out");
    }
}

}  // namespace
