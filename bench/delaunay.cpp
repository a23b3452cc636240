// Compares the double engine with CGAL's Delaunay triangulation, in one run: insertion, memory,
// files.
//
// usage: bench_delaunay [POINTS [RUNS]]
//
// Both get the same uniform points: the engine in Hilbert order by one addPoint each, CGAL in
// random order by insert(begin, end), which sorts them itself. The two take turns; the medians of
// all runs are compared.
#include "heap.h"
#include "measure.h"

#include <zyn/delaunay.h>

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/hilbert_sort.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace zyn;
using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Triangulation = CGAL::Delaunay_triangulation_2<Kernel>;

constexpr double extent = 1000.0;

struct Times {
    std::vector<double> engine;
    std::vector<double> peer;

    void print(const char* what, double scale, const char* unit) const {
        const double a = bench::median(engine) * scale;
        const double b = bench::median(peer) * scale;
        std::printf("| %-28s | %8.3f %-4s | %8.3f %-4s | %6.2f |\n", what, a, unit, b, unit, a / b);
    }
};

ref_ptr<IZynDelaunayD> triangulated(std::vector<XPnt3d>& points) {
    ref_ptr<IZynDelaunayD> engine = newZynDelaunayDouble(0.0, -1.0, -1.0, extent + 1, extent + 1);
    for (XPnt3d& p : points) { engine->addPoint(&p, 0.0); }
    return engine;
}

}  // namespace

int main(int argc, char** argv) {
    const auto n = static_cast<std::size_t>(argc > 1 ? std::atol(argv[1]) : 1000000);
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;

    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> coordinate(0.0, extent);
    std::vector<Kernel::Point_2> shuffled;
    for (std::size_t i = 0; i < n; ++i) {
        const double x = coordinate(random);
        shuffled.emplace_back(x, coordinate(random));
    }
    std::vector<Kernel::Point_2> sorted = shuffled;
    CGAL::hilbert_sort(sorted.begin(), sorted.end());
    std::vector<XPnt3d> points;
    for (const auto& p : sorted) { points.emplace_back(p.x(), p.y(), 0.0); }

    Times insertion, writing, reading;
    double engineBytes = 0.0, peerBytes = 0.0;
    const auto folder = std::filesystem::temp_directory_path();
    const std::string engineFile = folder / "bench_engine.tin";
    const std::string peerFile = folder / "bench_peer.bin";
    const double perPoint = 1.0 / static_cast<double>(n);
    for (int run = 0; run < runs; ++run) {
        {
            bench::resetPeak();
            const std::size_t before = bench::liveBytes();
            ref_ptr<IZynDelaunayD> engine;
            insertion.engine.push_back(bench::seconds([&] { engine = triangulated(points); }));
            engineBytes = static_cast<double>(bench::peakBytes() - before) * perPoint;

            writing.engine.push_back(
                bench::seconds([&] { (void)writeBinary(engine.get(), engineFile.c_str()); }));
            double* vertices = nullptr;
            int count = 0;
            engine = newZynDelaunayDouble(0.0, 0.0, 0.0, 1.0, 1.0);
            reading.engine.push_back(bench::seconds(
                [&] { (void)readBinary(engine.get(), engineFile.c_str(), vertices, count); }));
            engine = nullptr;
            delete[] vertices;
        }
        {
            bench::resetPeak();
            const std::size_t before = bench::liveBytes();
            Triangulation peer;
            insertion.peer.push_back(
                bench::seconds([&] { peer.insert(shuffled.begin(), shuffled.end()); }));
            peerBytes = static_cast<double>(bench::peakBytes() - before) * perPoint;

            writing.peer.push_back(bench::seconds([&] {
                std::ofstream file(peerFile, std::ios::binary);
                CGAL::IO::set_binary_mode(file);
                file << peer;
            }));
            // CGAL 5.5 writes the indices of a binary file as digits without separators, which
            // cannot be read back. So it reads its text form.
            {
                std::ofstream file(peerFile);
                file.precision(17);
                file << peer;
            }
            Triangulation back;
            reading.peer.push_back(bench::seconds([&] {
                std::ifstream file(peerFile);
                file >> back;
            }));
            if (back.number_of_vertices() != peer.number_of_vertices()) {
                std::fprintf(stderr, "CGAL did not read its own file back\n");
                return 1;
            }
        }
    }
    std::filesystem::remove(engineFile);
    std::filesystem::remove(peerFile);

    std::printf("%zu points, medians of %d runs\n\n", n, runs);
    std::printf("| %-28s | %-13s | %-13s | %-6s |\n", "", "ZynBase", "CGAL", "ratio");
    std::printf("|%s|%s|%s|%s|\n", "------------------------------", "---------------",
                "---------------", "--------");
    insertion.print("insertion, a point", 1e6 * perPoint, "us");
    writing.print("writing a binary file", 1.0, "s");
    reading.print("reading it (CGAL: as text)", 1.0, "s");
    std::printf("| %-28s | %8.1f %-4s | %8.1f %-4s | %6.2f |\n", "peak memory, a point",
                engineBytes, "B", peerBytes, "B", engineBytes / peerBytes);
    return 0;
}
